// A sound file opened for playing: what it holds; its samples read, scaled and silenced.
#include "sound/sound_file.h"

#include <limits.h>

#include <algorithm>

#include "util/report.h"

namespace {

bool holds_floats(int format) {
  int kind = format & SF_FORMAT_SUBMASK;
  return kind == SF_FORMAT_FLOAT || kind == SF_FORMAT_DOUBLE;
}

// What makes the loudest sample 32700, in whatever unit the file holds its samples.
//
// QUIRK loud floats: the scale is that of 16-bit samples on ALSA too, whose float samples reach
// from -1 to 1: there a float file is far too loud and heard as noise. It looks like a scale
// forgotten. It is meant: recordings for lessons are made in 16 bits. Test:
// AlsaPlayer.FloatFileIsScaledTo32700
double scale_to_16_bit(SNDFILE *file) {
  double loudest = 0.0;
  sf_command(file, SFC_CALC_SIGNAL_MAX, &loudest, sizeof(loudest));
  return loudest < 1e-10 ? 1.0 : 32700.0 / loudest;
}

// Toward zero; what 16 bits cannot hold becomes their limit, and no number becomes silence.
short cut_to_16_bit(double sample) {
  if (!(sample > SHRT_MIN))
    return sample <= SHRT_MIN ? SHRT_MIN : 0;
  return sample >= SHRT_MAX ? SHRT_MAX : static_cast<short>(sample);
}

long saturated_product(long a, long b) {
  long product;
  if (!__builtin_mul_overflow(a, b, &product))
    return product;
  return (a < 0) == (b < 0) ? LONG_MAX : LONG_MIN;
}

long saturated_sum(long a, long b) {
  long sum;
  if (!__builtin_add_overflow(a, b, &sum))
    return sum;
  return b < 0 ? LONG_MIN : LONG_MAX;
}

} // namespace

bool OPEN_SOUND(const char *path, const char *complaint, Trf_sound_file *sound) {
  SF_INFO info = {};
  sound->file.reset(sf_open(path, SFM_READ, &info));
  if (sound->file == nullptr) {
    SAY("%s%s\n", complaint, sf_strerror(nullptr));
    return false;
  }
  if (info.channels != 1 && info.channels != 2) {
    SAY("Error : channels = %d.\n", info.channels);
    sound->file.reset();
    return false;
  }
  sound->channels = info.channels;
  sound->samplerate = info.samplerate;
  sound->is_float = holds_floats(info.format);
  sound->scale = sound->is_float ? scale_to_16_bit(sound->file.get()) : 1.0;
  return true;
}

bool SEEK_SOUND(const Trf_sound_file &sound, long frame) {
  return sf_seek(sound.file.get(), frame, SEEK_SET) >= 0;
}

int READ_FLOATS(const Trf_sound_file &sound, float *buffer) {
  sf_count_t nb_read = sf_read_float(sound.file.get(), buffer, SOUND_BUFFER);
  int count = static_cast<int>(std::clamp<sf_count_t>(nb_read, 0, SOUND_BUFFER));
  if (sound.is_float)
    std::transform(buffer, buffer + count, buffer,
                   [&](float sample) { return static_cast<float>(sample * sound.scale); });
  std::fill(buffer + count, buffer + SOUND_BUFFER, 0.0f);
  return count;
}

int READ_SHORTS(const Trf_sound_file &sound, float *scratch, short *buffer) {
  SNDFILE *file = sound.file.get();
  sf_count_t nb_read = sound.is_float ? sf_read_float(file, scratch, SOUND_BUFFER)
                                      : sf_read_short(file, buffer, SOUND_BUFFER);
  int count = static_cast<int>(std::clamp<sf_count_t>(nb_read, 0, SOUND_BUFFER));
  if (sound.is_float)
    std::transform(scratch, scratch + count, buffer,
                   [&](float sample) { return cut_to_16_bit(sample * sound.scale); });
  std::fill(buffer + count, buffer + SOUND_BUFFER, static_cast<short>(0));
  return count;
}

Trf_sample_range RANGE_OF_FRAMES(long rg_start, long rg_stop, int channels) {
  return {saturated_product(rg_start, channels), saturated_product(rg_stop, channels)};
}

int COUNT_SAMPLES(int nb_read, Trf_sample_range *range) {
  long before = range->count;
  range->count = saturated_sum(before, nb_read);
  if (range->count <= range->stop)
    return SOUND_BUFFER;
  return range->stop <= before ? 0 : static_cast<int>(range->stop - before);
}
