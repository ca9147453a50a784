// Sound files played through the OSS device, in 16-bit samples.
//
// A file that cannot be opened (the library's reason) or has too many channels
// ("Error : channels = %d.\n") is told on standard output and not played, and the device is not
// touched.
#ifndef MERTU_SOUND_OSS_PLAYER_H
#define MERTU_SOUND_OSS_PLAYER_H

// Opens "/dev/dsp", or else "/dev/sound/dsp", for writing signed 16-bit little-endian samples:
// channels (1 or 2), srate in frames per second. Returns the descriptor, which the caller closes.
// Ends the program with status 1 when neither opens ("linux_open_dsp_device : open ") or the device
// refuses a step ("linux_open_dsp_device : stereo ", "reset ", "set format ", "channels ",
// "sample rate " or "sync "); the line, with the system's reason, goes to standard error and
// standard output, and to the log.
int linux_open_dsp_device(int channels, int srate);

// Plays the whole file. Ends of the program: those of linux_open_dsp_device.
void linux_play_total(char *sndfile_name);

// Plays the frames from rg_start (from 0) up to, but without, rg_stop; about the first half of them
// where the file is stereo and holds no float samples. Ends of the program: those of
// linux_open_dsp_device.
void linux_range_play(char *sndfile_name, long rg_start, long rg_stop);

#endif
