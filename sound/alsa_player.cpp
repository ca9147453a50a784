// Sound files played through ALSA.
#include "sound/alsa_player.h"

#include <algorithm>

#include "sound/alsa_device.h"
#include "sound/sound_file.h"
#include "util/report.h"

namespace {

// The samples on their way to the device, kept so that playing allocates nothing.
struct {
  float total[SOUND_BUFFER]; // of alsa_play_total
  float range[SOUND_BUFFER]; // of alsa_range_play
} buffers;

bool open_sound(const char *path, Trf_sound_file *sound) {
  return OPEN_SOUND(path, "alsa_play Not able to open file ", sound);
}

Owned_pcm open_device(const Trf_sound_file &sound) {
  return Owned_pcm(alsa_open(sound.channels, static_cast<unsigned>(sound.samplerate), 0));
}

// Writes the whole buffer: behind a short read it is silent.
void write_buffer(snd_pcm_t *device, float *buffer, const Trf_sound_file &sound) {
  alsa_write_float(device, buffer, SOUND_BUFFER / sound.channels, sound.channels);
}

// Whether the range has another buffer to come.
//
// QUIRK one more buffer: for a float file the loop runs up to the stop and with it, for any other
// file only below it. It looks like a comparison mistyped. It is meant: a float range whose buffers
// end exactly at the stop is followed by one silent buffer, any other range ends at once.
// Tests: AlsaPlayer.FloatRangeThatEndsAtABufferEdgeGetsOneMoreSilentBuffer
// AlsaPlayer.RangeThatEndsAtABufferEdgeGetsNoFurtherBuffer
bool goes_on(const Trf_sample_range &range, const Trf_sound_file &sound) {
  return sound.is_float ? range.count <= range.stop : range.count < range.stop;
}

void write_range(snd_pcm_t *device, Trf_sample_range range, const Trf_sound_file &sound) {
  while (goes_on(range, sound)) {
    int nb_read = READ_FLOATS(sound, buffers.range);
    if (nb_read == 0)
      return;
    int silent = COUNT_SAMPLES(nb_read, &range);
    std::fill(buffers.range + silent, buffers.range + SOUND_BUFFER, 0.0f);
    write_buffer(device, buffers.range, sound);
  }
}

} // namespace

void alsa_play_total(char *sndfile_name) {
  Trf_sound_file sound;
  if (!open_sound(sndfile_name, &sound))
    return;
  TRACE("Playing %s\n", sndfile_name);
  Owned_pcm device = open_device(sound);
  if (device == nullptr)
    return;
  SEEK_SOUND(sound, 0);
  while (READ_FLOATS(sound, buffers.total) > 0)
    write_buffer(device.get(), buffers.total, sound);
  snd_pcm_drain(device.get());
}

void alsa_range_play(char *sndfile_name, long rg_start, long rg_stop) {
  Trf_sound_file sound;
  if (!open_sound(sndfile_name, &sound))
    return;
  TRACE("Playing %s\n", sndfile_name);
  Owned_pcm device = open_device(sound);
  if (device == nullptr) {
    TRACE("alsa_range_play NULL level 1 return %s\n", sndfile_name);
    return;
  }
  if (SEEK_SOUND(sound, rg_start))
    write_range(device.get(), RANGE_OF_FRAMES(rg_start, rg_stop, sound.channels), sound);
  // QUIRK range without drain: the device is closed at once, with up to 4096 frames of the sound
  // still in its buffer; they may be cut, and a range shorter than that may not be heard at all. It
  // looks like a drain forgotten. It is meant: the drill goes on as soon as the range is written,
  // and ranges are chosen with a little silence behind the phrase.
  // Test: AlsaPlayer.RangeEndsWithoutWaitingForTheDevice
}
