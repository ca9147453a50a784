// Sound files played through ALSA.
//
// A file that cannot be opened ("alsa_play Not able to open file ...") or has too many channels
// ("Error : channels = %d.\n") is told on standard output and not played; a device that cannot be
// opened is told on standard error.
#ifndef MERTU_SOUND_ALSA_PLAYER_H
#define MERTU_SOUND_ALSA_PLAYER_H

// Plays the whole file and waits until the device has played it. The last buffer is written whole,
// silent behind the end of the file.
void alsa_play_total(char *sndfile_name);

// Plays the frames from rg_start (from 0) up to, but without, rg_stop. The last buffer is written
// whole, silent behind the stop. Does not wait for the device to play what it still holds.
void alsa_range_play(char *sndfile_name, long rg_start, long rg_stop);

#endif
