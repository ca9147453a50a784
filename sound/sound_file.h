// A sound file opened for playing: what it holds; its samples read, scaled and silenced.
//
// Positions are told in frames (one sample per channel) outside, and counted in samples inside the
// players. A buffer of a player holds SOUND_BUFFER samples.
#ifndef MERTU_SOUND_SOUND_FILE_H
#define MERTU_SOUND_SOUND_FILE_H

#include <sndfile.h>

#include <memory>

// Samples per read; divides by one and by two channels.
const int SOUND_BUFFER = 2048;

struct Close_sound {
  void operator()(SNDFILE *file) const {
    sf_close(file);
  }
};

struct Trf_sound_file {
  std::unique_ptr<SNDFILE, Close_sound> file; // closed at the end of the scope
  int channels = 0;                           // 1 or 2 once opened
  int samplerate = 0;                         // frames per second
  bool is_float = false;                      // holds FLOAT or DOUBLE samples, which are scaled
  double scale = 1.0;                         // what each sample of such a file is multiplied by
};

// A range while it is played, in samples from the start of the file.
struct Trf_sample_range {
  long count; // the next sample read
  long stop;  // the first sample that is to be silent
};

// Opens the file at `path` for playing. Writes to standard output, and returns false, when it is no
// readable sound file (`complaint`, a text of the player, before the library's reason) or has
// neither one nor two channels ("Error : channels = %d.\n").
bool OPEN_SOUND(const char *path, const char *complaint, Trf_sound_file *sound);

// Goes to a frame (from 0). False when the file has no such place (behind its last frame the end
// itself counts as a place); the file then stands where it stood.
bool SEEK_SOUND(const Trf_sound_file &sound, long frame);

// Reads up to SOUND_BUFFER samples into `buffer`, which holds as many; those of a float file are
// scaled. What the read did not fill is silence. Returns the samples read, 0 at the end.
int READ_FLOATS(const Trf_sound_file &sound, float *buffer);

// The same for 16-bit samples. The scaled samples of a float file go through `scratch` (as long as
// `buffer`) and are cut toward zero, and to what 16 bits hold.
int READ_SHORTS(const Trf_sound_file &sound, float *scratch, short *buffer);

// The range of samples of two frame numbers; a product that no long holds becomes the nearest one.
Trf_sample_range RANGE_OF_FRAMES(long rg_start, long rg_stop, int channels);

// Counts nb_read samples (0 to SOUND_BUFFER) as read. Returns the index, in the buffer that holds
// them, of the first sample behind the stop: the buffer is to be silent from there on;
// SOUND_BUFFER when the stop is not passed.
int COUNT_SAMPLES(int nb_read, Trf_sample_range *range);

#endif
