// Sound files played through the OSS device: its set-up, the samples that reach it, its faults.
#include "support/prelude.h"

#include "sound/oss_player.h"

#include <errno.h>
#include <limits.h>
#include <math.h>
#include <stdlib.h>

#include "sound/device.h"
#include "sound/recordings.h"
#include "support/scratch.h"
#include "util/owned.h"
#include "util/report.h"

using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::SizeIs;

namespace {

char NAME[] = "a.wav";

class OssDevice : public testing::Test {
protected:
  Scratch_dir dir;
  Fake_sound sound;
};

class OssPlayer : public OssDevice {
protected:
  std::vector<short> range(long start, long stop) {
    sound.shorts.clear();
    sound.calls.clear();
    linux_range_play(NAME, start, stop);
    return sound.shorts;
  }
};

struct Step {
  const char *ioctl;
  const char *message;
};

// What a step that fails says on each of the two outputs.
const Step STEPS[] = {{"STEREO", "linux_open_dsp_device : stereo : Device or resource busy\n"},
                      {"RESET", "linux_open_dsp_device : reset : Device or resource busy\n"},
                      {"SETFMT", "linux_open_dsp_device : set format : Device or resource busy\n"},
                      {"CHANNELS", "linux_open_dsp_device : channels : Device or resource busy\n"},
                      {"SPEED", "linux_open_dsp_device : sample rate : Device or resource busy\n"},
                      {"SYNC", "linux_open_dsp_device : sync : Device or resource busy\n"}};

// As the device gets it: the loudest 32700, cut toward zero.
std::vector<short> scaled(const std::vector<double> &samples, double loudest) {
  std::vector<short> shorts;
  for (double sample : samples)
    shorts.push_back(static_cast<short>(trunc(static_cast<float>(sample) * (32700.0 / loudest))));
  return shorts;
}

// Values from -0.5 to 0.499, -0.5 first.
std::vector<double> ramp(size_t nb) {
  std::vector<double> samples(nb);
  for (size_t k = 0; k < nb; k++)
    samples[k] = static_cast<double>(k % 1000) / 1000.0 - 0.5;
  return samples;
}

} // namespace

TEST_F(OssDevice, IsSetStepByStep) {
  int fd = linux_open_dsp_device(2, 22050);
  EXPECT_GE(fd, 0);
  EXPECT_THAT(sound.calls, ElementsAre("open /dev/dsp 1", "STEREO 0", "RESET 0", "SETFMT 16",
                                       "CHANNELS 2", "SPEED 22050", "SYNC 0"));
}

TEST_F(OssDevice, SecondPathIsTriedWhenTheFirstIsNotThere) {
  sound.dsp = "/dev/sound/dsp";
  EXPECT_GE(linux_open_dsp_device(1, 44100), 0);
  EXPECT_THAT(sound.calls_of("open"), ElementsAre("open /dev/dsp 1", "open /dev/sound/dsp 1"));
}

TEST_F(OssDevice, MachineWithoutASoundDeviceEndsTheProgram) {
  sound.dsp = "";
  make_sound(NAME, WAV_16, 1, noise(10));
  const char *twice = "^linux_open_dsp_device : open : No such file or directory\n"
                      "linux_open_dsp_device : open : No such file or directory\n$";
  ENDS_WITH_STATUS(linux_open_dsp_device(1, 44100), 1, twice);
  ENDS_WITH_STATUS(linux_play_total(NAME), 1, twice);
  ENDS_WITH_STATUS(linux_range_play(NAME, 0, 10), 1, twice);
}

TEST_F(OssDevice, LastLineGoesToTheLogToo) {
  sound.dsp = "";
  auto stop = [] {
    Owned_stream log = OPEN_STREAM("log", "w");
    SET_SAVED_LOG(log.get());
    linux_open_dsp_device(1, 44100);
  };
  ENDS_WITH_STATUS(stop(), 1, "^(linux_open_dsp_device : open : No such file or directory\n){2}$");
  EXPECT_EQ(dir.read("log"), "linux_open_dsp_device : open : No such file or directory\n");
}

TEST_F(OssDevice, EachStepThatFailsEndsTheProgram) {
  for (const Step &step : STEPS) {
    sound.fails[step.ioctl] = EBUSY;
    std::string twice = std::string("^") + step.message + step.message + "$";
    ENDS_WITH_STATUS(linux_open_dsp_device(1, 44100), 1, twice);
    sound.fails.clear();
  }
}

TEST_F(OssPlayer, WholeFileIsWrittenToItsLastSample) {
  std::vector<short> samples = noise(5000);
  for (int channels : {1, 2}) {
    sound.shorts.clear();
    sound.sizes.clear();
    make_sound(NAME, WAV_16, channels, samples);
    linux_play_total(NAME);
    EXPECT_EQ(sound.shorts, samples);
    EXPECT_THAT(sound.sizes, ElementsAre(4096, 4096, 1808));
  }
}

TEST_F(OssPlayer, BothPlayersPostSyncAndClose) {
  make_sound(NAME, WAV_16, 1, noise(10));
  linux_play_total(NAME);
  EXPECT_THAT(std::vector<std::string>(sound.calls.end() - 4, sound.calls.end()),
              ElementsAre("write 20", "POST 0", "SYNC 0", "close"));
  range(0, 5);
  EXPECT_THAT(std::vector<std::string>(sound.calls.end() - 4, sound.calls.end()),
              ElementsAre("write 20", "POST 0", "SYNC 0", "close"));
}

TEST_F(OssPlayer, BothPlayersSetTheChannelsAndTheRateOfTheFile) {
  make_sound(NAME, WAV_16, 2, noise(10), 22050);
  linux_play_total(NAME);
  range(0, 5);
  EXPECT_THAT(sound.calls, IsSupersetOf({"CHANNELS 2", "SPEED 22050"}));
  make_sound(NAME, WAV_16, 1, noise(10), 8000);
  sound.calls.clear();
  linux_play_total(NAME);
  EXPECT_THAT(sound.calls, IsSupersetOf({"CHANNELS 1", "SPEED 8000"}));
}

TEST_F(OssPlayer, EmptyFileOpensTheDeviceAndWritesNothing) {
  for (int format : {WAV_16, WAV_FLOAT}) {
    make_sound(NAME, format, 1, std::vector<short>());
    linux_play_total(NAME);
    EXPECT_EQ(sound.calls.back(), "close");
    EXPECT_TRUE(range(0, 100).empty());
    EXPECT_EQ(sound.calls.back(), "close");
  }
  EXPECT_TRUE(sound.sizes.empty());
}

TEST_F(OssPlayer, PostAndSyncThatFailAreOnlyTold) {
  make_sound(NAME, WAV_16, 1, noise(10));
  sound.fails = {{"POST", EBUSY}, {"SYNC", EIO}};
  sound.passes = {{"SYNC", 1}};
  testing::internal::CaptureStderr();
  linux_play_total(NAME);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ioctl (SNDCTL_DSP_POST) : Device or resource busy\n"
            "ioctl (SNDCTL_DSP_SYNC) : Input/output error\n");
  EXPECT_EQ(sound.calls.back(), "close");
}

TEST_F(OssPlayer, MonoRangeIsSilentBehindItsStop) {
  std::vector<short> samples = noise(10000);
  make_sound(NAME, WAV_16, 1, samples);
  EXPECT_EQ(range(1000, 4000), cut(samples, 1000, 4000, 4096));
  // The last read stops at the end of the file.
  EXPECT_EQ(range(9000, 9500), cut(samples, 9000, 9500, 1000));
}

TEST_F(OssPlayer, RangeBeyondTheEndIsCutThere) {
  std::vector<short> samples = noise(3000);
  for (long stop : {3000L, 1000000L, LONG_MAX}) {
    make_sound(NAME, WAV_16, 1, samples);
    EXPECT_EQ(range(2000, stop), cut(samples, 2000, 3000, 1000)) << stop;
    make_sound(NAME, WAV_FLOAT, 1, ramp(3000));
    EXPECT_EQ(range(2000, stop), cut(scaled(ramp(3000), 0.5), 2000, 3000, 1000)) << stop;
  }
}

TEST_F(OssPlayer, StereoRangeOf16BitSoundStopsHalfWay) {
  std::vector<short> samples = noise(40000);
  make_sound(NAME, WAV_16, 2, samples);
  // Samples 0 to 20000 are asked for; reading ends behind sample 10000.
  EXPECT_EQ(range(0, 10000), cut(samples, 0, 10240, 10240));
  // Behind half the stop there is nothing left.
  EXPECT_TRUE(range(5001, 10000).empty());
  EXPECT_EQ(range(5000, 10000), cut(samples, 10000, 12048, 2048));
  // A range within one buffer is whole.
  EXPECT_EQ(range(100, 500), cut(samples, 200, 1000, 2048));
}

TEST_F(OssPlayer, StereoRangeOfFloatSoundIsWhole) {
  std::vector<double> samples = ramp(40000);
  make_sound(NAME, WAV_FLOAT, 2, samples);
  EXPECT_EQ(range(1000, 10000), cut(scaled(samples, 0.5), 2000, 20000, 18432));
}

TEST_F(OssPlayer, RangeThatEndsAtABufferEdgeGetsOneMoreSilentBuffer) {
  std::vector<short> samples = noise(10000);
  make_sound(NAME, WAV_16, 1, samples);
  EXPECT_EQ(range(0, 4096), cut(samples, 0, 4096, 6144));
  EXPECT_EQ(range(0, 4095), cut(samples, 0, 4095, 4096));
  EXPECT_EQ(range(0, 0), std::vector<short>(2048));
  for (int format : {WAV_FLOAT, WAV_DOUBLE}) {
    make_sound(NAME, format, 1, ramp(10000));
    EXPECT_EQ(range(0, 4096), cut(scaled(ramp(10000), 0.5), 0, 4096, 6144));
    EXPECT_EQ(range(0, 4095), cut(scaled(ramp(10000), 0.5), 0, 4095, 4096));
  }
}

TEST_F(OssPlayer, FloatFileIsScaledAndCutTowardZero) {
  std::vector<double> samples = {0.25, -0.25, 0.1, -0.1, 1e-6, -1e-6};
  for (int format : {WAV_FLOAT, WAV_DOUBLE}) {
    sound.shorts.clear();
    make_sound(NAME, format, 1, samples);
    linux_play_total(NAME);
    EXPECT_THAT(sound.shorts, ElementsAre(32700, -32700, 13080, -13080, 0, 0));
  }
}

TEST_F(OssPlayer, NearlySilentFloatFileIsSilent) {
  make_sound(NAME, WAV_DOUBLE, 1, std::vector<double>{9e-11, -9e-11});
  linux_play_total(NAME);
  EXPECT_THAT(sound.shorts, ElementsAre(0, 0));
}

TEST_F(OssPlayer, SamplesThatAreNoNumbersAreHarmless) {
  make_sound(NAME, WAV_FLOAT, 1, std::vector<double>{NAN, 0.5, -0.25});
  linux_play_total(NAME);
  EXPECT_THAT(sound.shorts, ElementsAre(0, 32700, -16350));
  sound.shorts.clear();
  make_sound(NAME, WAV_FLOAT, 1, std::vector<double>{INFINITY, -INFINITY, 0.5});
  linux_play_total(NAME);
  EXPECT_THAT(sound.shorts, ElementsAre(0, 0, 0));
}

TEST_F(OssPlayer, TwentyFourBitsAndFlacArePlayedAs16Bits) {
  std::vector<short> samples = noise(9000);
  for (int format : {WAV_24, FLAC_16}) {
    sound.shorts.clear();
    make_sound(NAME, format, 1, samples);
    linux_play_total(NAME);
    EXPECT_EQ(sound.shorts, samples);
    EXPECT_EQ(range(3000, 5000), cut(samples, 3000, 5000, 2048));
  }
}

TEST_F(OssPlayer, OggIsPlayedAs16Bits) {
  make_sound(NAME, OGG_VORBIS, 2, ramp(9000));
  SF_INFO info = {};
  SNDFILE *file = sf_open(NAME, SFM_READ, &info);
  std::vector<short> decoded(9000);
  ASSERT_EQ(sf_read_short(file, decoded.data(), 9000), 9000);
  sf_close(file);
  linux_play_total(NAME);
  EXPECT_EQ(sound.shorts, decoded);
}

TEST_F(OssPlayer, RangesOutsideTheFileAndBackwardsPlayNothing) {
  for (int format : {WAV_16, WAV_FLOAT}) {
    make_sound(NAME, format, 2, ramp(3000));
    for (long start : {1500L, 1501L, 100000L, LONG_MAX, -1L, LONG_MIN})
      EXPECT_TRUE(range(start, LONG_MAX).empty()) << start;
    for (long stop : {999L, 0L, -5L, LONG_MIN})
      EXPECT_TRUE(range(1000, stop).empty()) << stop;
    EXPECT_EQ(sound.calls.back(), "close");
  }
}

TEST_F(OssPlayer, UnplayableFilesAreToldAndTheDeviceIsNotTouched) {
  sound.dsp = "";
  testing::internal::CaptureStdout();
  linux_play_total(NAME);
  linux_range_play(NAME, 0, 10);
  make_sound(NAME, WAV_16, 6, noise(600));
  linux_play_total(NAME);
  linux_range_play(NAME, 0, 10);
  EXPECT_EQ(
      testing::internal::GetCapturedStdout(),
      "System error : No such file or directory.\n"
      "System error : No such file or directory.\nError : channels = 6.\nError : channels = 6.\n");
  EXPECT_TRUE(sound.calls.empty());
}

TEST_F(OssPlayer, ShortCountsAreFollowedByTheRest) {
  std::vector<short> samples = noise(3000);
  make_sound(NAME, WAV_16, 1, samples);
  sound.writes = {1, -EINTR, 1001};
  linux_play_total(NAME);
  EXPECT_EQ(sound.shorts, samples);
  EXPECT_THAT(sound.sizes, ElementsAre(4096, 4095, 4095, 3094, 1904));
}

TEST_F(OssPlayer, BehindAWriteErrorTheRestIsOffered) {
  std::vector<short> samples = noise(6144);
  make_sound(NAME, WAV_16, 1, samples);
  sound.writes = {-EIO, 4096, 0};
  linux_play_total(NAME);
  EXPECT_EQ(sound.shorts, cut(samples, 2048, 4096, 2048));
  EXPECT_THAT(sound.sizes, SizeIs(3));
}

TEST_F(OssPlayer, TracesWhatItPlays) {
  make_sound(NAME, WAV_16, 1, noise(10));
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  linux_play_total(NAME);
  linux_range_play(NAME, 0, 1);
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Playing a.wav\nPlaying a.wav\n");
}

TEST_F(OssPlayer, PlayingAllocatesNothing) {
  for (int format : {WAV_16, WAV_DOUBLE}) {
    make_sound(NAME, format, 2, ramp(100000));
    linux_play_total(NAME);
    range(100, 45000);
    EXPECT_GT(sound.sizes.size(), 60u);
    EXPECT_EQ(sound.allocations, 0);
  }
}
