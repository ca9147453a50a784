// The ALSA device: opened for playback, and given float samples.
#include "sound/alsa_device.h"

#include <errno.h>

#include "util/report.h"

namespace {

// What is remembered from one write to the next, and from one sound to the next.
struct {
  int epipe_count = 0; // 100 for each recent underrun, one less at each write
} memory;

struct Free_hardware {
  void operator()(snd_pcm_hw_params_t *parameters) const {
    snd_pcm_hw_params_free(parameters);
  }
};
struct Free_software {
  void operator()(snd_pcm_sw_params_t *parameters) const {
    snd_pcm_sw_params_free(parameters);
  }
};

// The wanted stream; the sizes are what the device took once the hardware is set.
struct Stream {
  int channels;
  unsigned samplerate;
  snd_pcm_uframes_t period_size; // frames
  snd_pcm_uframes_t buffer_size; // frames
};

// Whether a step succeeded; what did not is told on standard error.
bool done(int code, const char *complaint) {
  if (code < 0)
    COMPLAIN("cannot %s (%s)\n", complaint, snd_strerror(code));
  return code >= 0;
}

// The same for the steps that are told by the routine's name.
bool software_done(int code, const char *routine) {
  if (code < 0)
    COMPLAIN("%s: %s: %s", "alsa_open", routine, snd_strerror(code));
  return code >= 0;
}

bool set_samples(snd_pcm_t *device, snd_pcm_hw_params_t *hardware, Stream *stream) {
  return done(snd_pcm_hw_params_any(device, hardware), "initialize hardware parameter structure") &&
         done(snd_pcm_hw_params_set_access(device, hardware, SND_PCM_ACCESS_RW_INTERLEAVED),
              "set access type") &&
         done(snd_pcm_hw_params_set_format(device, hardware, SND_PCM_FORMAT_FLOAT),
              "set sample format") &&
         done(snd_pcm_hw_params_set_rate_near(device, hardware, &stream->samplerate, nullptr),
              "set sample rate") &&
         done(snd_pcm_hw_params_set_channels(device, hardware,
                                             static_cast<unsigned>(stream->channels)),
              "set channel count");
}

bool set_sizes(snd_pcm_t *device, snd_pcm_hw_params_t *hardware, Stream *stream) {
  return done(snd_pcm_hw_params_set_buffer_size_near(device, hardware, &stream->buffer_size),
              "set buffer size") &&
         done(snd_pcm_hw_params_set_period_size_near(device, hardware, &stream->period_size,
                                                     nullptr),
              "set period size");
}

bool set_hardware(snd_pcm_t *device, Stream *stream) {
  snd_pcm_hw_params_t *block = nullptr;
  if (!done(snd_pcm_hw_params_malloc(&block), "allocate hardware parameter structure"))
    return false;
  std::unique_ptr<snd_pcm_hw_params_t, Free_hardware> hardware(block);
  if (!set_samples(device, block, stream) || !set_sizes(device, block, stream) ||
      !done(snd_pcm_hw_params(device, block), "set parameters"))
    return false;
  snd_pcm_hw_params_get_period_size(block, &stream->period_size, nullptr);
  snd_pcm_hw_params_get_buffer_size(block, &stream->buffer_size);
  if (stream->period_size != stream->buffer_size)
    return true;
  COMPLAIN("Can't use period equal to buffer size (%lu == %lu)", stream->period_size,
           stream->buffer_size);
  return false;
}

// Playback begins when the device's buffer is full.
bool set_software(snd_pcm_t *device, const Stream &stream) {
  snd_pcm_sw_params_t *block = nullptr;
  if (!software_done(snd_pcm_sw_params_malloc(&block), "snd_pcm_sw_params_malloc"))
    return false;
  std::unique_ptr<snd_pcm_sw_params_t, Free_software> software(block);
  return software_done(snd_pcm_sw_params_current(device, block), "snd_pcm_sw_params_current") &&
         done(snd_pcm_sw_params_set_start_threshold(device, block, stream.buffer_size),
              "set start threshold") &&
         software_done(snd_pcm_sw_params(device, block), "snd_pcm_sw_params");
}

// QUIRK underruns are remembered: each underrun adds 100 to a count that every later write takes
// one from, and while it is above 140 an underrun gives up its buffer. It looks like a counter that
// should begin anew with each sound. It is meant: one underrun is mended at once, but a machine
// that cannot keep up loses sound instead of holding up the window. Tests:
// AlsaDevice.RepeatedUnderrunsGiveUpTheBuffer AlsaDevice.UnderrunsAreRememberedAcrossSounds
bool overcome_underrun(snd_pcm_t *device) {
  if (memory.epipe_count > 0) {
    TRACE("alsa_write_float: EPIPE %d\n", memory.epipe_count);
    if (memory.epipe_count > 140)
      return false;
  }
  memory.epipe_count += 100;
  snd_pcm_prepare(device);
  return true;
}

// Tells a fault that the buffer is given up for.
//
// QUIRK dot n: two of the texts end in ".n" and no line end. It looks like a line end misspelt. It
// is meant: whoever looks through saved error output for these texts finds them as they always are.
// Test: AlsaDevice.SuspendAndBadStateEndInDotN
void tell_fault(int fault) {
  switch (fault) {
  case -ESTRPIPE:
    COMPLAIN("alsa_write_float: Suspend event.n");
    break;
  case -EBADFD:
    COMPLAIN("alsa_write_float: Bad PCM state.n");
    break;
  case -EIO:
    TRACE("alsa_write_float: EIO");
    break;
  default:
    COMPLAIN("alsa_write_float: retval = %d\n", fault);
  }
}

// Whether a write that failed is to be tried again; if not, *result is what the buffer ends with.
bool try_again(snd_pcm_t *device, int fault, int *result) {
  if (fault == -EAGAIN) {
    TRACE("alsa_write_float: EAGAIN");
    return true;
  }
  if (fault == -EPIPE) {
    *result = fault;
    return overcome_underrun(device);
  }
  tell_fault(fault);
  *result = 0;
  return false;
}

} // namespace

snd_pcm_t *alsa_open(int channels, unsigned samplerate, int realtime) {
  snd_pcm_uframes_t period_size = realtime != 0 ? 256 : 1024;
  Stream stream = {channels, samplerate, period_size, period_size * (realtime != 0 ? 3 : 4)};
  snd_pcm_t *handle = nullptr;
  int code = snd_pcm_open(&handle, "default", SND_PCM_STREAM_PLAYBACK, 0);
  if (!done(code, "open audio device \"default\""))
    return nullptr;
  Owned_pcm device(handle);
  snd_pcm_nonblock(handle, 0);
  if (!set_hardware(handle, &stream) || !set_software(handle, stream))
    return nullptr;
  snd_pcm_reset(handle);
  return device.release();
}

int alsa_write_float(snd_pcm_t *alsa_dev, float *data, int frames, int channels) {
  if (memory.epipe_count > 0)
    memory.epipe_count--;
  int total = 0;
  while (total < frames) {
    const float *rest = data + static_cast<long>(total) * channels;
    snd_pcm_sframes_t retval =
        snd_pcm_writei(alsa_dev, rest, static_cast<snd_pcm_uframes_t>(frames - total));
    int result = 0;
    if (retval >= 0)
      total += static_cast<int>(retval);
    else if (!try_again(alsa_dev, static_cast<int>(retval), &result))
      return result;
  }
  return total;
}
