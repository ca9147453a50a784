// Sound files played through ALSA: the samples that reach the device, and what happens when not.
#include "support/prelude.h"

#include "sound/alsa_player.h"

#include <errno.h>
#include <limits.h>
#include <stdlib.h>

#include "sound/device.h"
#include "sound/recordings.h"
#include "support/scratch.h"

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::SizeIs;

namespace {

char NAME[] = "a.wav";

class AlsaPlayer : public testing::Test {
protected:
  // The samples that the device got for the range.
  std::vector<float> range(long start, long stop) {
    sound.floats.clear();
    sound.calls.clear();
    alsa_range_play(NAME, start, stop);
    return sound.floats;
  }

  template <typename Play> void hear(Play play) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    play();
    complaints = testing::internal::GetCapturedStderr();
    said = testing::internal::GetCapturedStdout();
  }

  // The samples of a float file, the loudest 32700.
  static std::vector<float> scaled(const std::vector<double> &samples, double loudest) {
    std::vector<float> floats;
    for (double sample : samples)
      floats.push_back(static_cast<float>(static_cast<float>(sample) * (32700.0 / loudest)));
    return floats;
  }

  Scratch_dir dir;
  Fake_sound sound;
  std::string said, complaints;
};

// Values from -0.5 to 0.499, -0.5 first.
std::vector<double> ramp(size_t nb) {
  std::vector<double> samples(nb);
  for (size_t k = 0; k < nb; k++)
    samples[k] = static_cast<double>(k % 1000) / 1000.0 - 0.5;
  return samples;
}

} // namespace

TEST_F(AlsaPlayer, WholeMonoFileIsWrittenInBuffersOf2048Frames) {
  std::vector<short> samples = noise(5000);
  make_sound(NAME, WAV_16, 1, samples);
  alsa_play_total(NAME);
  EXPECT_EQ(sound.floats, as_floats(cut(samples, 0, 5000, 6144)));
  EXPECT_THAT(sound.sizes, ElementsAre(2048, 2048, 2048));
  EXPECT_EQ(sound.channels, 1);
}

TEST_F(AlsaPlayer, WholeStereoFileIsWrittenInBuffersOf1024Frames) {
  std::vector<short> samples = noise(5000);
  make_sound(NAME, WAV_16, 2, samples, 22050);
  alsa_play_total(NAME);
  EXPECT_EQ(sound.floats, as_floats(cut(samples, 0, 5000, 6144)));
  EXPECT_THAT(sound.sizes, ElementsAre(1024, 1024, 1024));
  EXPECT_THAT(sound.calls_of("snd_pcm_hw_params_set_rate_near"),
              ElementsAre("snd_pcm_hw_params_set_rate_near 22050"));
}

TEST_F(AlsaPlayer, WholeFileIsDrainedAndThenClosed) {
  make_sound(NAME, WAV_16, 1, noise(10));
  alsa_play_total(NAME);
  ASSERT_GE(sound.calls.size(), 3u);
  EXPECT_THAT(std::vector<std::string>(sound.calls.end() - 3, sound.calls.end()),
              ElementsAre("snd_pcm_writei 2048", "snd_pcm_drain", "snd_pcm_close"));
}

TEST_F(AlsaPlayer, BothPlayersHaveFourPeriodsOf1024FramesAtTheRateOfTheFile) {
  make_sound(NAME, WAV_16, 2, noise(10), 22050);
  alsa_play_total(NAME);
  std::vector<std::string> total = sound.calls_of("snd_pcm_hw_params_set_");
  EXPECT_THAT(total, IsSupersetOf({"snd_pcm_hw_params_set_rate_near 22050",
                                   "snd_pcm_hw_params_set_channels 2",
                                   "snd_pcm_hw_params_set_buffer_size_near 4096",
                                   "snd_pcm_hw_params_set_period_size_near 1024"}));
  range(0, 5);
  EXPECT_EQ(sound.calls_of("snd_pcm_hw_params_set_"), total);
}

TEST_F(AlsaPlayer, FileThatEndsAtABufferEdgeGetsNoFurtherBuffer) {
  make_sound(NAME, WAV_16, 1, noise(4096));
  alsa_play_total(NAME);
  EXPECT_EQ(sound.floats, as_floats(noise(4096)));
}

TEST_F(AlsaPlayer, EmptyFileOpensTheDeviceAndWritesNothing) {
  make_sound(NAME, WAV_16, 1, std::vector<short>());
  alsa_play_total(NAME);
  range(0, 100);
  EXPECT_TRUE(sound.sizes.empty());
  EXPECT_THAT(sound.calls_of("snd_pcm_close"), SizeIs(1));
}

TEST_F(AlsaPlayer, SecondSecondOfAMonoFileIsPaddedWithSilence) {
  std::vector<short> samples = noise(3 * 44100);
  make_sound(NAME, WAV_16, 1, samples);
  // 44100 frames are 21 buffers and 1092 frames of the 22nd.
  EXPECT_EQ(range(44100, 88200), as_floats(cut(samples, 44100, 88200, 22 * 2048)));
}

TEST_F(AlsaPlayer, StereoRangeIsCountedInFrames) {
  std::vector<short> samples = noise(20000);
  make_sound(NAME, WAV_16, 2, samples);
  EXPECT_EQ(range(1000, 3500), as_floats(cut(samples, 2000, 7000, 6144)));
}

TEST_F(AlsaPlayer, RangesAtBufferEdges) {
  std::vector<short> samples = noise(10000);
  make_sound(NAME, WAV_16, 1, samples);
  EXPECT_EQ(range(5, 2052), as_floats(cut(samples, 5, 2052, 2048)));
  EXPECT_EQ(range(5, 2053), as_floats(cut(samples, 5, 2053, 2048)));
  EXPECT_EQ(range(5, 2054), as_floats(cut(samples, 5, 2054, 4096)));
  EXPECT_EQ(range(0, 1), as_floats(cut(samples, 0, 1, 2048)));
}

TEST_F(AlsaPlayer, RangeThatEndsAtABufferEdgeGetsNoFurtherBuffer) {
  std::vector<short> samples = noise(10000);
  make_sound(NAME, WAV_16, 2, samples);
  EXPECT_EQ(range(0, 2048), as_floats(cut(samples, 0, 4096, 4096)));
}

TEST_F(AlsaPlayer, FloatRangeThatEndsAtABufferEdgeGetsOneMoreSilentBuffer) {
  std::vector<double> samples = ramp(10000);
  for (int format : {WAV_FLOAT, WAV_DOUBLE}) {
    make_sound(NAME, format, 1, samples);
    EXPECT_EQ(range(0, 2048), cut(scaled(samples, 0.5), 0, 2048, 4096));
    EXPECT_EQ(range(0, 2047), cut(scaled(samples, 0.5), 0, 2047, 2048));
    EXPECT_EQ(range(100, 100), std::vector<float>(2048));
  }
}

TEST_F(AlsaPlayer, FloatFileIsScaledTo32700) {
  std::vector<double> samples = ramp(3000);
  for (int format : {WAV_FLOAT, WAV_DOUBLE}) {
    make_sound(NAME, format, 2, samples);
    sound.floats.clear();
    alsa_play_total(NAME);
    EXPECT_EQ(sound.floats, cut(scaled(samples, 0.5), 0, 3000, 4096));
    EXPECT_EQ(sound.floats[0], -32700.0f);
    EXPECT_EQ(range(100, 300), cut(scaled(samples, 0.5), 200, 600, 2048));
  }
}

TEST_F(AlsaPlayer, NearlySilentFloatFileIsNotScaled) {
  make_sound(NAME, WAV_DOUBLE, 1, std::vector<double>{9e-11, -9e-11, 0.0});
  alsa_play_total(NAME);
  EXPECT_THAT(std::vector<float>(sound.floats.begin(), sound.floats.begin() + 3),
              ElementsAre(9e-11f, -9e-11f, 0.0f));
}

TEST_F(AlsaPlayer, TwentyFourBitsArePlayedUnscaled) {
  std::vector<short> samples = noise(3000);
  make_sound(NAME, WAV_24, 1, samples);
  EXPECT_EQ(range(10, 2500), as_floats(cut(samples, 10, 2500, 4096)));
}

TEST_F(AlsaPlayer, FlacIsPlayedSampleBySample) {
  std::vector<short> samples = noise(20000);
  make_sound(NAME, FLAC_16, 2, samples);
  EXPECT_EQ(range(3000, 7000), as_floats(cut(samples, 6000, 14000, 8192)));
}

TEST_F(AlsaPlayer, OggIsPlayedUnscaled) {
  make_sound(NAME, OGG_VORBIS, 1, ramp(20000));
  SF_INFO info = {};
  SNDFILE *file = sf_open(NAME, SFM_READ, &info);
  std::vector<float> decoded(20000);
  ASSERT_EQ(sf_read_float(file, decoded.data(), 20000), 20000);
  sf_close(file);
  alsa_play_total(NAME);
  EXPECT_EQ(sound.floats, cut(decoded, 0, 20000, 20480));
  EXPECT_EQ(range(5000, 9000), cut(decoded, 5000, 9000, 4096));
}

TEST_F(AlsaPlayer, RangeBeyondTheEndIsCutThere) {
  std::vector<short> samples = noise(3000);
  make_sound(NAME, WAV_16, 1, samples);
  EXPECT_EQ(range(2000, 1000000), as_floats(cut(samples, 2000, 3000, 2048)));
  EXPECT_EQ(range(2000, LONG_MAX), as_floats(cut(samples, 2000, 3000, 2048)));
  EXPECT_THAT(sound.calls_of("snd_pcm_close"), SizeIs(1));
}

TEST_F(AlsaPlayer, FloatRangeBeyondTheEndIsCutThere) {
  std::vector<double> samples = ramp(3000);
  make_sound(NAME, WAV_FLOAT, 1, samples);
  for (long stop : {3000L, 1000000L, LONG_MAX})
    EXPECT_EQ(range(2000, stop), cut(scaled(samples, 0.5), 2000, 3000, 2048)) << stop;
}

TEST_F(AlsaPlayer, RangeThatStartsOutsideTheFilePlaysNothing) {
  make_sound(NAME, WAV_16, 2, noise(3000));
  for (long start : {1500L, 1501L, 100000L, LONG_MAX, -1L, LONG_MIN})
    for (long stop : {1600L, LONG_MAX})
      EXPECT_TRUE(range(start, stop).empty()) << start;
  EXPECT_THAT(sound.calls_of("snd_pcm_close"), SizeIs(1));
  make_sound(NAME, WAV_FLOAT, 2, ramp(3000));
  for (long start : {1500L, 100000L, LONG_MAX, -1L, LONG_MIN})
    EXPECT_TRUE(range(start, LONG_MAX).empty()) << start;
}

TEST_F(AlsaPlayer, EmptyAndBackwardRangesPlayNothing) {
  make_sound(NAME, WAV_16, 2, noise(9000));
  for (long stop : {1000L, 999L, 0L, -5L, LONG_MIN})
    EXPECT_TRUE(range(1000, stop).empty()) << stop;
  make_sound(NAME, WAV_FLOAT, 2, ramp(9000));
  for (long stop : {999L, 0L, -5L, LONG_MIN})
    EXPECT_TRUE(range(1000, stop).empty()) << stop;
}

TEST_F(AlsaPlayer, RangeEndsWithoutWaitingForTheDevice) {
  make_sound(NAME, WAV_16, 1, noise(3000));
  range(0, 100);
  EXPECT_TRUE(sound.calls_of("snd_pcm_drain").empty());
  EXPECT_EQ(sound.calls.back(), "snd_pcm_close");
}

TEST_F(AlsaPlayer, NothingOfAnEarlierSoundIsHeardBehindAShortOne) {
  make_sound(NAME, WAV_16, 1, noise(4096));
  alsa_play_total(NAME);
  range(0, 4096);
  make_sound(NAME, WAV_16, 1, std::vector<short>{1000, 2000, 3000});
  sound.floats.clear();
  alsa_play_total(NAME);
  EXPECT_EQ(sound.floats, as_floats(cut<short>({1000, 2000, 3000}, 0, 3, 2048)));
  EXPECT_EQ(range(1, 4000), as_floats(cut<short>({2000, 3000}, 0, 2, 2048)));
}

TEST_F(AlsaPlayer, MissingFileIsToldOnStandardOutput) {
  hear([] { alsa_play_total(NAME); });
  EXPECT_EQ(said, "alsa_play Not able to open file System error : No such file or directory.\n");
  hear([] { alsa_range_play(NAME, 0, 10); });
  EXPECT_EQ(said, "alsa_play Not able to open file System error : No such file or directory.\n");
  EXPECT_EQ(complaints, "");
  EXPECT_TRUE(sound.calls.empty());
}

TEST_F(AlsaPlayer, DamagedFileIsToldOnStandardOutput) {
  dir.write(NAME, "RIFFnothing of a sound");
  hear([] { alsa_play_total(NAME); });
  EXPECT_EQ(said.find("alsa_play Not able to open file "), 0u);
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);
  EXPECT_TRUE(sound.calls.empty());
}

TEST_F(AlsaPlayer, FileOfNoBytesAndDirectoryAreToldOnStandardOutput) {
  dir.write(NAME, "");
  dir.write("b.wav/inside", "");
  char directory[] = "b.wav";
  for (char *path : {NAME, directory}) {
    hear([&] { alsa_range_play(path, 0, 10); });
    EXPECT_EQ(said.find("alsa_play Not able to open file "), 0u) << path;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << path;
  }
  EXPECT_TRUE(sound.calls.empty());
}

TEST_F(AlsaPlayer, TruncatedFileIsPlayedAsFarAsItGoes) {
  std::vector<short> samples = noise(3000);
  make_sound(NAME, WAV_16, 1, samples);
  dir.write(NAME, dir.read(NAME).substr(0, 44 + 2 * 1000));
  alsa_play_total(NAME);
  EXPECT_EQ(sound.floats, as_floats(cut(samples, 0, 1000, 2048)));
}

TEST_F(AlsaPlayer, SixChannelsAreRefused) {
  make_sound(NAME, WAV_16, 6, noise(600));
  hear([] { alsa_play_total(NAME); });
  EXPECT_EQ(said, "Error : channels = 6.\n");
  hear([] { alsa_range_play(NAME, 0, 10); });
  EXPECT_EQ(said, "Error : channels = 6.\n");
  EXPECT_EQ(complaints, "");
  EXPECT_TRUE(sound.calls.empty());
}

TEST_F(AlsaPlayer, WithoutADeviceNothingIsPlayed) {
  make_sound(NAME, WAV_16, 1, noise(600));
  sound.fails["snd_pcm_open"] = -ENOENT;
  hear([] { alsa_play_total(NAME); });
  EXPECT_EQ(said, "");
  EXPECT_EQ(complaints, "cannot open audio device \"default\" (No such file or directory)\n");
  setenv("MERTU_TRACE", "1", 1);
  hear([] { alsa_range_play(NAME, 0, 10); });
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(said, "Playing a.wav\nalsa_range_play NULL level 1 return a.wav\n");
  EXPECT_THAT(sound.calls, Each(HasSubstr("snd_pcm_open")));
}

TEST_F(AlsaPlayer, BehindAWriteErrorTheRestIsOffered) {
  std::vector<short> samples = noise(6144);
  make_sound(NAME, WAV_16, 1, samples);
  sound.writes = {-EIO, 2048, -EIO};
  alsa_play_total(NAME);
  EXPECT_THAT(sound.sizes, ElementsAre(2048, 2048, 2048));
  EXPECT_EQ(sound.floats, as_floats(cut(samples, 2048, 4096, 2048)));
  EXPECT_THAT(sound.calls_of("snd_pcm_drain"), SizeIs(1));
  sound.writes = {-EIO};
  EXPECT_EQ(range(0, 6144), as_floats(cut(samples, 2048, 6144, 4096)));
}

TEST_F(AlsaPlayer, PlayingAllocatesNothing) {
  for (int format : {WAV_16, WAV_24, WAV_FLOAT}) {
    make_sound(NAME, format, 2, ramp(100000));
    alsa_play_total(NAME);
    range(1000, 45000);
    EXPECT_GT(sound.sizes.size(), 80u);
    EXPECT_EQ(sound.allocations, 0);
  }
}
