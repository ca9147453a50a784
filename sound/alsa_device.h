// The ALSA device: opened for playback, and given float samples.
#ifndef MERTU_SOUND_ALSA_DEVICE_H
#define MERTU_SOUND_ALSA_DEVICE_H

#include <alsa/asoundlib.h>

#include <memory>

struct Close_pcm {
  void operator()(snd_pcm_t *device) const {
    snd_pcm_close(device);
  }
};

// An open device, closed at the end of its scope.
using Owned_pcm = std::unique_ptr<snd_pcm_t, Close_pcm>;

// Opens the device "default" for blocking playback of interleaved float samples: channels (1 or 2),
// samplerate in frames per second (the device takes the nearest it has). Periods of 1024 frames, 4
// to the buffer; with `realtime` non-zero periods of 256, 3 to the buffer. Playback begins when the
// buffer is full. Returns the handle, which the caller closes with snd_pcm_close; null when a step
// fails, after a message on standard error ("cannot ...", "alsa_open: ..." or "Can't use ...").
snd_pcm_t *alsa_open(int channels, unsigned samplerate, int realtime);

// Writes `frames` frames of `channels` samples each from `data` to the device, and waits until it
// has taken them. Returns the frames written; 0 or a negative code when the device refuses
// (standard error or the trace tells why), and what was not taken is lost.
int alsa_write_float(snd_pcm_t *alsa_dev, float *data, int frames, int channels);

#endif
