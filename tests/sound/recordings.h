// Sound files made by a test, and the samples that a player is to give for them.
#ifndef MERTU_TESTS_SOUND_RECORDINGS_H
#define MERTU_TESTS_SOUND_RECORDINGS_H

#include <sndfile.h>

#include <random>
#include <string>
#include <vector>

const int WAV_16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
const int WAV_24 = SF_FORMAT_WAV | SF_FORMAT_PCM_24;
const int WAV_FLOAT = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
const int WAV_DOUBLE = SF_FORMAT_WAV | SF_FORMAT_DOUBLE;
const int FLAC_16 = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
const int OGG_VORBIS = SF_FORMAT_OGG | SF_FORMAT_VORBIS;

inline SNDFILE *new_sound(const char *path, int format, int channels, int rate) {
  SF_INFO info = {};
  info.format = format;
  info.channels = channels;
  info.samplerate = rate;
  return sf_open(path, SFM_WRITE, &info);
}

// Samples of which none is 0, so that silence shows.
inline std::vector<short> noise(size_t nb) {
  std::mt19937 chance(20020226);
  std::vector<short> samples(nb);
  for (short &sample : samples)
    sample = static_cast<short>(chance() % 30000 + 1);
  for (size_t k = 0; k < nb; k += 3)
    samples[k] = static_cast<short>(-samples[k]);
  return samples;
}

inline void make_sound(const char *path, int format, int channels,
                       const std::vector<short> &samples, int rate = 44100) {
  SNDFILE *file = new_sound(path, format, channels, rate);
  sf_write_short(file, samples.data(), static_cast<sf_count_t>(samples.size()));
  sf_close(file);
}

inline void make_sound(const char *path, int format, int channels,
                       const std::vector<double> &samples, int rate = 44100) {
  SNDFILE *file = new_sound(path, format, channels, rate);
  sf_write_double(file, samples.data(), static_cast<sf_count_t>(samples.size()));
  sf_close(file);
}

// The 16-bit samples as ALSA gets them.
inline std::vector<float> as_floats(const std::vector<short> &samples) {
  std::vector<float> floats;
  for (short sample : samples)
    floats.push_back(static_cast<float>(sample) / 32768.0f);
  return floats;
}

// The samples [first, stop), silence behind them up to `size` samples.
template <typename Sample>
std::vector<Sample> cut(const std::vector<Sample> &samples, size_t first, size_t stop,
                        size_t size) {
  std::vector<Sample> part(samples.begin() + static_cast<long>(first),
                           samples.begin() + static_cast<long>(stop));
  part.resize(size);
  return part;
}

#endif
