// The ALSA device opened step by step, and written to through every fault it may answer.
#include "support/prelude.h"

#include "sound/alsa_device.h"

#include <errno.h>
#include <stdlib.h>

#include "sound/device.h"
#include "sound/recordings.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

struct Step {
  const char *routine;
  const char *message; // for -EBUSY
};

const Step STEPS[] = {
    {"snd_pcm_open", "cannot open audio device \"default\" (Device or resource busy)\n"},
    {"snd_pcm_hw_params_malloc",
     "cannot allocate hardware parameter structure (Device or resource busy)\n"},
    {"snd_pcm_hw_params_any",
     "cannot initialize hardware parameter structure (Device or resource busy)\n"},
    {"snd_pcm_hw_params_set_access", "cannot set access type (Device or resource busy)\n"},
    {"snd_pcm_hw_params_set_format", "cannot set sample format (Device or resource busy)\n"},
    {"snd_pcm_hw_params_set_rate_near", "cannot set sample rate (Device or resource busy)\n"},
    {"snd_pcm_hw_params_set_channels", "cannot set channel count (Device or resource busy)\n"},
    {"snd_pcm_hw_params_set_buffer_size_near",
     "cannot set buffer size (Device or resource busy)\n"},
    {"snd_pcm_hw_params_set_period_size_near",
     "cannot set period size (Device or resource busy)\n"},
    {"snd_pcm_hw_params", "cannot set parameters (Device or resource busy)\n"},
    {"snd_pcm_sw_params_malloc", "alsa_open: snd_pcm_sw_params_malloc: Device or resource busy"},
    {"snd_pcm_sw_params_current", "alsa_open: snd_pcm_sw_params_current: Device or resource busy"},
    {"snd_pcm_sw_params_set_start_threshold",
     "cannot set start threshold (Device or resource busy)\n"},
    {"snd_pcm_sw_params", "alsa_open: snd_pcm_sw_params: Device or resource busy"},
};

// A device of two channels open, and what it says while it is written to.
class AlsaDevice : public testing::Test {
protected:
  AlsaDevice() {
    setenv("MERTU_TRACE", "1", 1);
    forget_underruns();
    device = alsa_open(2, 44100, 0);
    sound.calls.clear();
  }
  ~AlsaDevice() {
    unsetenv("MERTU_TRACE");
    forget_underruns();
  }

  // Each write makes an earlier underrun count for less.
  void forget_underruns() {
    for (int i = 0; i < 1000; i++)
      alsa_write_float(device, samples.data(), 0, 2);
  }

  int write(int frames) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int result = alsa_write_float(device, samples.data(), frames, 2);
    complaints = testing::internal::GetCapturedStderr();
    trace = testing::internal::GetCapturedStdout();
    return result;
  }

  Fake_sound sound;
  snd_pcm_t *device = nullptr;
  std::vector<float> samples = as_floats(noise(2048));
  std::string complaints, trace;
};

std::vector<std::string> opened_with(int realtime) {
  Fake_sound sound;
  EXPECT_NE(alsa_open(2, 22050, realtime), nullptr);
  return sound.calls;
}

} // namespace

TEST(AlsaOpen, SetsTheDeviceStepByStep) {
  EXPECT_THAT(
      opened_with(0),
      ElementsAre("snd_pcm_open default 0 0", "snd_pcm_nonblock 0", "snd_pcm_hw_params_malloc",
                  "snd_pcm_hw_params_any", "snd_pcm_hw_params_set_access 3",
                  "snd_pcm_hw_params_set_format FLOAT_LE", "snd_pcm_hw_params_set_rate_near 22050",
                  "snd_pcm_hw_params_set_channels 2", "snd_pcm_hw_params_set_buffer_size_near 4096",
                  "snd_pcm_hw_params_set_period_size_near 1024", "snd_pcm_hw_params",
                  "snd_pcm_hw_params_get_period_size", "snd_pcm_hw_params_get_buffer_size",
                  "snd_pcm_sw_params_malloc", "snd_pcm_sw_params_current",
                  "snd_pcm_sw_params_set_start_threshold 4096", "snd_pcm_sw_params",
                  "snd_pcm_reset"));
}

TEST(AlsaOpen, InRealTimeHasThreePeriodsOf256Frames) {
  std::vector<std::string> calls = opened_with(1);
  EXPECT_THAT(calls, testing::Contains("snd_pcm_hw_params_set_buffer_size_near 768"));
  EXPECT_THAT(calls, testing::Contains("snd_pcm_hw_params_set_period_size_near 256"));
  EXPECT_THAT(calls, testing::Contains("snd_pcm_sw_params_set_start_threshold 768"));
}

TEST(AlsaOpen, StartsWhenTheBufferThatTheDeviceTookIsFull) {
  Fake_sound sound;
  sound.period_size = 500;
  sound.buffer_size = 2000;
  EXPECT_NE(alsa_open(1, 44100, 0), nullptr);
  EXPECT_THAT(sound.calls, testing::Contains("snd_pcm_sw_params_set_start_threshold 2000"));
}

TEST(AlsaOpen, EachStepThatFailsSaysSoAndClosesTheDevice) {
  for (const Step &step : STEPS) {
    Fake_sound sound;
    sound.fails[step.routine] = -EBUSY;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_EQ(alsa_open(1, 44100, 0), nullptr) << step.routine;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), step.message);
    EXPECT_EQ(sound.calls_of("snd_pcm_close").size(), &step == STEPS ? 0u : 1u) << step.routine;
    EXPECT_EQ(sound.calls_of(step.routine).empty(), false);
    EXPECT_TRUE(sound.calls_of("snd_pcm_reset").empty());
  }
}

TEST(AlsaOpen, APeriodAsLongAsTheBufferIsRefused) {
  Fake_sound sound;
  sound.period_size = sound.buffer_size = 512;
  testing::internal::CaptureStderr();
  EXPECT_EQ(alsa_open(1, 44100, 0), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Can't use period equal to buffer size (512 == 512)");
  EXPECT_EQ(sound.calls_of("snd_pcm_close").size(), 1u);
  EXPECT_TRUE(sound.calls_of("snd_pcm_sw_params").empty());
}

TEST_F(AlsaDevice, TakesAllFrames) {
  EXPECT_EQ(write(1024), 1024);
  EXPECT_EQ(sound.floats, samples);
  EXPECT_EQ(complaints + trace, "");
}

TEST_F(AlsaDevice, ShortCountsAreFollowedByTheRest) {
  sound.writes = {1, 1000, 0, 22};
  EXPECT_EQ(write(1024), 1024);
  EXPECT_EQ(sound.floats, samples);
  EXPECT_THAT(sound.sizes, ElementsAre(1024, 1023, 23, 23, 1));
}

TEST_F(AlsaDevice, NothingToWriteIsNotWritten) {
  EXPECT_EQ(write(0), 0);
  EXPECT_EQ(write(-1), 0);
  EXPECT_TRUE(sound.calls.empty());
}

TEST_F(AlsaDevice, BusyDeviceIsAskedAgain) {
  sound.writes = {-EAGAIN, 24, -EAGAIN, -EAGAIN};
  EXPECT_EQ(write(1024), 1024);
  EXPECT_EQ(sound.floats, samples);
  EXPECT_EQ(trace,
            "alsa_write_float: EAGAIN\nalsa_write_float: EAGAIN\nalsa_write_float: EAGAIN\n");
}

TEST_F(AlsaDevice, OneUnderrunIsOvercomeAtOnce) {
  sound.writes = {100, -EPIPE};
  EXPECT_EQ(write(1024), 1024);
  EXPECT_EQ(sound.floats, samples);
  EXPECT_EQ(sound.calls_of("snd_pcm_prepare").size(), 1u);
  EXPECT_EQ(complaints + trace, "");
}

TEST_F(AlsaDevice, RepeatedUnderrunsGiveUpTheBuffer) {
  sound.writes = {-EPIPE, 24, -EPIPE, -EPIPE};
  EXPECT_EQ(write(1024), -EPIPE);
  EXPECT_EQ(sound.calls_of("snd_pcm_prepare").size(), 2u);
  EXPECT_EQ(trace, "alsa_write_float: EPIPE 100\nalsa_write_float: EPIPE 200\n");
  EXPECT_EQ(complaints, "");
  EXPECT_EQ(sound.floats.size(), 48u);
}

TEST_F(AlsaDevice, UnderrunsAreRememberedAcrossSounds) {
  sound.writes = {-EPIPE, -EPIPE};
  EXPECT_EQ(write(1024), 1024);
  device = alsa_open(2, 44100, 0);
  // 200 now; each write takes one off, and 140 is low enough again.
  for (int count = 199; count > 140; count--) {
    sound.writes = {-EPIPE};
    ASSERT_EQ(write(1024), -EPIPE);
    ASSERT_EQ(trace, "alsa_write_float: EPIPE " + std::to_string(count) + "\n");
  }
  sound.writes = {-EPIPE};
  EXPECT_EQ(write(1024), 1024);
  EXPECT_EQ(trace, "alsa_write_float: EPIPE 140\n");
}

TEST_F(AlsaDevice, AnUnderrunLongAgoCountsNoMore) {
  sound.writes = {-EPIPE};
  EXPECT_EQ(write(1024), 1024);
  for (int i = 0; i < 99; i++)
    write(1024);
  sound.writes = {-EPIPE};
  EXPECT_EQ(write(1024), 1024);
  EXPECT_EQ(trace, "");
}

TEST_F(AlsaDevice, SuspendAndBadStateEndInDotN) {
  sound.writes = {10, -ESTRPIPE};
  EXPECT_EQ(write(1024), 0);
  EXPECT_EQ(complaints, "alsa_write_float: Suspend event.n");
  sound.writes = {-EBADFD};
  EXPECT_EQ(write(1024), 0);
  EXPECT_EQ(complaints, "alsa_write_float: Bad PCM state.n");
  EXPECT_EQ(trace, "");
}

TEST_F(AlsaDevice, InputOutputErrorIsOnlyTraced) {
  sound.writes = {-EIO};
  EXPECT_EQ(write(1024), 0);
  EXPECT_EQ(complaints, "");
  EXPECT_EQ(trace, "alsa_write_float: EIO\n");
}

TEST_F(AlsaDevice, AnyOtherErrorIsToldByItsNumber) {
  sound.writes = {-ENODEV};
  EXPECT_EQ(write(1024), 0);
  EXPECT_EQ(complaints, "alsa_write_float: retval = -19\n");
  EXPECT_EQ(sound.sizes.size(), 1u);
}

TEST_F(AlsaDevice, TracesNothingUnlessAsked) {
  unsetenv("MERTU_TRACE");
  sound.writes = {-EAGAIN, -EPIPE, -EPIPE, -EIO};
  EXPECT_EQ(write(1024), 0);
  EXPECT_EQ(complaints + trace, "");
}
