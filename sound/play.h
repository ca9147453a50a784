// A sound file played, whole or a range of its frames.
//
// Sound output is to come: until then both routines play nothing. They will play synchronously and
// return when the sound has been written.
#ifndef MERTU_SOUND_PLAY_H
#define MERTU_SOUND_PLAY_H

// Plays frames rg_start (from 0) up to rg_stop of the file at path `file`. Returns 0.
int play_range(char *file, long rg_start, long rg_stop);

// Plays the whole file at path `file`. Returns 0.
int play_total(char *file);

#endif
