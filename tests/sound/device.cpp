// The sound outputs as a test wants them: what the machine has, what fails, what has come.
#include "sound/device.h"

#include <alsa/asoundlib.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/soundcard.h>
#include <unistd.h>

#include <algorithm>

namespace {

// The outputs in use, the open OSS device, and the count of allocations.
struct {
  Fake_sound *now = nullptr;
  int dsp = -1;
  bool counting = false; // from the first write on
  int inside = 0;        // calls of this file under way; what they allocate is not counted
  long nb_allocations = 0;
} outputs;

void count_allocation() {
  if (outputs.counting && outputs.inside == 0)
    outputs.nb_allocations++;
}

struct Inside {
  Inside() {
    outputs.inside++;
  }
  ~Inside() {
    outputs.inside--;
  }
};

bool alsa_is_ours() {
  return outputs.now != nullptr && outputs.now->alsa_answers;
}

void note(const std::string &call) {
  if (outputs.now != nullptr)
    outputs.now->calls.push_back(call);
}

// A device is closed: nothing plays any more.
void end_counting() {
  outputs.counting = false;
}

// The code that a routine is to fail with, 0 when it is to succeed.
int fault_of(const std::string &routine) {
  auto found = outputs.now->fails.find(routine);
  if (found == outputs.now->fails.end() || outputs.now->passes[routine]-- > 0)
    return 0;
  return found->second;
}

// Notes an ALSA call and answers it.
int answer(const std::string &routine, const std::string &values = "") {
  note(routine + values);
  return fault_of(routine);
}

std::string value(unsigned long number) {
  return " " + std::to_string(number);
}

// How much of `size` the coming write takes, or its negative code.
long answer_of_write(long size) {
  Fake_sound *sound = outputs.now;
  sound->sizes.push_back(size);
  if (outputs.counting)
    sound->allocations = outputs.nb_allocations;
  outputs.counting = true;
  if (sound->writes.empty())
    return size;
  long next = sound->writes.front();
  sound->writes.pop_front();
  return std::min(next, size);
}

const char *name_of_ioctl(unsigned long request) {
  switch (request) {
  case SNDCTL_DSP_STEREO:
    return "STEREO";
  case SNDCTL_DSP_RESET:
    return "RESET";
  case SNDCTL_DSP_SETFMT:
    return "SETFMT";
  case SNDCTL_DSP_CHANNELS:
    return "CHANNELS";
  case SNDCTL_DSP_SPEED:
    return "SPEED";
  case SNDCTL_DSP_SYNC:
    return "SYNC";
  case SNDCTL_DSP_POST:
    return "POST";
  default:
    return "unknown";
  }
}

bool has_value(unsigned long request) {
  return request != SNDCTL_DSP_RESET && request != SNDCTL_DSP_SYNC && request != SNDCTL_DSP_POST;
}

void take_bytes(const char *bytes, long nb) {
  std::string &waiting = outputs.now->odd_byte;
  waiting.append(bytes, static_cast<size_t>(nb));
  for (; waiting.size() >= 2; waiting.erase(0, 2)) {
    short sample;
    memcpy(&sample, waiting.data(), 2);
    outputs.now->shorts.push_back(sample);
  }
}

int failed(int code) {
  errno = code;
  return -1;
}

} // namespace

#ifdef __SANITIZE_ADDRESS__
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void *, size_t),
                                                         void (*)(const volatile void *));
namespace {
const int hooked = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, size_t) { count_allocation(); }, [](const volatile void *) {});
} // namespace
#else
extern "C" void *__libc_malloc(size_t size);
extern "C" void *__libc_calloc(size_t nb, size_t size);
extern "C" void *__libc_realloc(void *block, size_t size);
extern "C" void *malloc(size_t size) noexcept {
  count_allocation();
  return __libc_malloc(size);
}
extern "C" void *calloc(size_t nb, size_t size) noexcept {
  count_allocation();
  return __libc_calloc(nb, size);
}
extern "C" void *realloc(void *block, size_t size) noexcept {
  count_allocation();
  return __libc_realloc(block, size);
}
#endif

Fake_sound::Fake_sound() {
  outputs = {};
  outputs.now = this;
}

Fake_sound::~Fake_sound() {
  outputs = {};
}

std::vector<std::string> Fake_sound::calls_of(const std::string &beginning) const {
  std::vector<std::string> found;
  for (const std::string &call : calls)
    if (call.compare(0, beginning.size(), beginning) == 0)
      found.push_back(call);
  return found;
}

// The linker sends every call of `routine` to __wrap_routine; __real_routine is the library's own.
#define WRAPPED(result, routine, ...)                                                              \
  extern "C" result __real_##routine(__VA_ARGS__);                                                 \
  extern "C" result __wrap_##routine(__VA_ARGS__)

// A routine that is given nothing worth noting.
#define WRAPPED_PLAIN(routine, type, parameter)                                                    \
  WRAPPED(int, routine, type parameter) {                                                          \
    Inside inside;                                                                                 \
    int code = alsa_is_ours() ? 0 : __real_##routine(parameter);                                   \
    int fault = outputs.now != nullptr ? answer(#routine) : 0;                                     \
    return fault < 0 ? fault : code;                                                               \
  }

// A routine that sets a value of a parameter block, told as `values`.
#define WRAPPED_SETTER(routine, block, type, parameter, values)                                    \
  WRAPPED(int, routine, snd_pcm_t *pcm, block *parameters, type parameter) {                       \
    Inside inside;                                                                                 \
    int fault = outputs.now != nullptr ? answer(#routine, values) : 0;                             \
    if (fault < 0 || alsa_is_ours())                                                               \
      return fault;                                                                                \
    return __real_##routine(pcm, parameters, parameter);                                           \
  }

// A routine that applies or fetches a parameter block.
#define WRAPPED_BLOCK(routine, block)                                                              \
  WRAPPED(int, routine, snd_pcm_t *pcm, block *parameters) {                                       \
    Inside inside;                                                                                 \
    int fault = outputs.now != nullptr ? answer(#routine) : 0;                                     \
    if (fault < 0 || alsa_is_ours())                                                               \
      return fault;                                                                                \
    return __real_##routine(pcm, parameters);                                                      \
  }

WRAPPED_PLAIN(snd_pcm_reset, snd_pcm_t *, pcm)
WRAPPED_PLAIN(snd_pcm_prepare, snd_pcm_t *, pcm)
WRAPPED_PLAIN(snd_pcm_drain, snd_pcm_t *, pcm)
WRAPPED_BLOCK(snd_pcm_hw_params_any, snd_pcm_hw_params_t)
WRAPPED_BLOCK(snd_pcm_hw_params, snd_pcm_hw_params_t)
WRAPPED_BLOCK(snd_pcm_sw_params_current, snd_pcm_sw_params_t)
WRAPPED_BLOCK(snd_pcm_sw_params, snd_pcm_sw_params_t)
WRAPPED_SETTER(snd_pcm_hw_params_set_access, snd_pcm_hw_params_t, snd_pcm_access_t, access,
               value(access))
WRAPPED_SETTER(snd_pcm_hw_params_set_format, snd_pcm_hw_params_t, snd_pcm_format_t, format,
               std::string(" ") + snd_pcm_format_name(format))
WRAPPED_SETTER(snd_pcm_hw_params_set_buffer_size_near, snd_pcm_hw_params_t, snd_pcm_uframes_t *,
               frames, value(*frames))
WRAPPED_SETTER(snd_pcm_sw_params_set_start_threshold, snd_pcm_sw_params_t, snd_pcm_uframes_t,
               frames, value(frames))

WRAPPED(int, snd_pcm_open, snd_pcm_t **pcm, const char *name, snd_pcm_stream_t stream, int mode) {
  Inside inside;
  static char handle[1];
  int fault = outputs.now != nullptr
                  ? answer("snd_pcm_open", std::string(" ") + name + value(stream) + value(mode))
                  : 0;
  if (fault < 0)
    return fault;
  if (!alsa_is_ours())
    return __real_snd_pcm_open(pcm, name, stream, mode);
  *pcm = reinterpret_cast<snd_pcm_t *>(handle);
  return 0;
}

WRAPPED(int, snd_pcm_close, snd_pcm_t *pcm) {
  Inside inside;
  note("snd_pcm_close");
  end_counting();
  return alsa_is_ours() ? 0 : __real_snd_pcm_close(pcm);
}

WRAPPED(int, snd_pcm_nonblock, snd_pcm_t *pcm, int nonblock) {
  Inside inside;
  note("snd_pcm_nonblock" + value(nonblock));
  return alsa_is_ours() ? 0 : __real_snd_pcm_nonblock(pcm, nonblock);
}

WRAPPED(int, snd_pcm_hw_params_malloc, snd_pcm_hw_params_t **block) {
  Inside inside;
  int fault = outputs.now != nullptr ? answer("snd_pcm_hw_params_malloc") : 0;
  return fault < 0 ? fault : __real_snd_pcm_hw_params_malloc(block);
}

WRAPPED(int, snd_pcm_sw_params_malloc, snd_pcm_sw_params_t **block) {
  Inside inside;
  int fault = outputs.now != nullptr ? answer("snd_pcm_sw_params_malloc") : 0;
  return fault < 0 ? fault : __real_snd_pcm_sw_params_malloc(block);
}

WRAPPED(int, snd_pcm_hw_params_set_rate_near, snd_pcm_t *pcm, snd_pcm_hw_params_t *parameters,
        unsigned *rate, int *direction) {
  Inside inside;
  int fault = outputs.now != nullptr ? answer("snd_pcm_hw_params_set_rate_near", value(*rate)) : 0;
  if (fault < 0 || alsa_is_ours())
    return fault;
  return __real_snd_pcm_hw_params_set_rate_near(pcm, parameters, rate, direction);
}

WRAPPED(int, snd_pcm_hw_params_set_channels, snd_pcm_t *pcm, snd_pcm_hw_params_t *parameters,
        unsigned channels) {
  Inside inside;
  int fault =
      outputs.now != nullptr ? answer("snd_pcm_hw_params_set_channels", value(channels)) : 0;
  if (outputs.now != nullptr)
    outputs.now->channels = static_cast<int>(channels);
  if (fault < 0 || alsa_is_ours())
    return fault;
  return __real_snd_pcm_hw_params_set_channels(pcm, parameters, channels);
}

WRAPPED(int, snd_pcm_hw_params_set_period_size_near, snd_pcm_t *pcm,
        snd_pcm_hw_params_t *parameters, snd_pcm_uframes_t *frames, int *direction) {
  Inside inside;
  int fault =
      outputs.now != nullptr ? answer("snd_pcm_hw_params_set_period_size_near", value(*frames)) : 0;
  if (fault < 0 || alsa_is_ours())
    return fault;
  return __real_snd_pcm_hw_params_set_period_size_near(pcm, parameters, frames, direction);
}

WRAPPED(int, snd_pcm_hw_params_get_period_size, const snd_pcm_hw_params_t *parameters,
        snd_pcm_uframes_t *frames, int *direction) {
  Inside inside;
  note("snd_pcm_hw_params_get_period_size");
  if (outputs.now != nullptr && outputs.now->period_size != 0)
    *frames = outputs.now->period_size;
  return alsa_is_ours() ? 0
                        : __real_snd_pcm_hw_params_get_period_size(parameters, frames, direction);
}

WRAPPED(int, snd_pcm_hw_params_get_buffer_size, const snd_pcm_hw_params_t *parameters,
        snd_pcm_uframes_t *frames) {
  Inside inside;
  note("snd_pcm_hw_params_get_buffer_size");
  if (outputs.now != nullptr && outputs.now->buffer_size != 0)
    *frames = outputs.now->buffer_size;
  return alsa_is_ours() ? 0 : __real_snd_pcm_hw_params_get_buffer_size(parameters, frames);
}

WRAPPED(snd_pcm_sframes_t, snd_pcm_writei, snd_pcm_t *pcm, const void *samples,
        snd_pcm_uframes_t frames) {
  Inside inside;
  if (outputs.now == nullptr)
    return __real_snd_pcm_writei(pcm, samples, frames);
  note("snd_pcm_writei" + value(frames));
  long taken = answer_of_write(static_cast<long>(frames));
  if (taken <= 0)
    return taken;
  if (!alsa_is_ours())
    taken = __real_snd_pcm_writei(pcm, samples, static_cast<snd_pcm_uframes_t>(taken));
  const float *first = static_cast<const float *>(samples);
  outputs.now->floats.insert(outputs.now->floats.end(), first,
                             first + std::max(taken, 0L) * std::max(outputs.now->channels, 1));
  return taken;
}

WRAPPED(int, access, const char *path, int mode) {
  if (outputs.now == nullptr || strcmp(path, "/proc/asound/cards") != 0)
    return __real_access(path, mode);
  Inside inside;
  note("access" + value(static_cast<unsigned long>(mode)));
  return outputs.now->alsa_cards ? 0 : failed(ENOENT);
}

extern "C" int __real_open(const char *path, int flags, ...);
extern "C" int __wrap_open(const char *path, int flags, ...) {
  va_list values;
  va_start(values, flags);
  int mode = (flags & O_CREAT) != 0 ? va_arg(values, int) : 0;
  va_end(values);
  bool is_dsp = strcmp(path, "/dev/dsp") == 0 || strcmp(path, "/dev/sound/dsp") == 0;
  if (outputs.now == nullptr || !is_dsp)
    return __real_open(path, flags, mode);
  Inside inside;
  note(std::string("open ") + path + value(static_cast<unsigned long>(flags)));
  if (outputs.now->dsp != path)
    return failed(ENOENT);
  outputs.dsp = __real_open("/dev/null", O_WRONLY);
  return outputs.dsp;
}

extern "C" int __real_ioctl(int fd, unsigned long request, ...);
extern "C" int __wrap_ioctl(int fd, unsigned long request, ...) {
  va_list values;
  va_start(values, request);
  void *given = va_arg(values, void *);
  va_end(values);
  if (outputs.now == nullptr || fd != outputs.dsp)
    return __real_ioctl(fd, request, given);
  Inside inside;
  long number = has_value(request) ? *static_cast<int *>(given) : reinterpret_cast<long>(given);
  std::string name = name_of_ioctl(request);
  note(name + " " + std::to_string(number));
  int fault = fault_of(name);
  return fault == 0 ? 0 : failed(fault);
}

WRAPPED(ssize_t, write, int fd, const void *bytes, size_t nb) {
  if (outputs.now == nullptr || fd != outputs.dsp)
    return __real_write(fd, bytes, nb);
  Inside inside;
  note("write" + value(nb));
  long taken = answer_of_write(static_cast<long>(nb));
  if (taken < 0)
    return failed(static_cast<int>(-taken));
  take_bytes(static_cast<const char *>(bytes), taken);
  return taken;
}

WRAPPED(int, close, int fd) {
  if (outputs.now == nullptr || fd != outputs.dsp)
    return __real_close(fd);
  Inside inside;
  note("close");
  end_counting();
  outputs.dsp = -1;
  return __real_close(fd);
}
