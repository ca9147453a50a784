// A sound file played, whole or a range of its frames, on the output that the machine has.
//
// Both routines return when the sound has been written; the window does not answer until then.
// The output is ALSA where "/proc/asound/cards" can be read, else OSS; it is looked for at every
// sound, so that a card plugged in later is found. A file that cannot be played is told on standard
// output and passed over. Through OSS a machine without any sound device ends the program with
// status 1, "linux_open_dsp_device : " first.
#ifndef MERTU_SOUND_PLAY_H
#define MERTU_SOUND_PLAY_H

// Plays the frames from rg_start (from 0) up to, but without, rg_stop of the file at path `file`.
// A frame holds one sample per channel. rg_start 0 with an rg_stop below 1 is the whole file; a
// range that starts outside the file plays nothing. Returns 0.
int play_range(char *file, long rg_start, long rg_stop);

// Plays the whole file at path `file`. Returns 0.
int play_total(char *file);

#endif
