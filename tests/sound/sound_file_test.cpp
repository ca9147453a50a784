// A sound file opened, read, and its range counted.
#include "support/prelude.h"

#include "sound/sound_file.h"

#include <limits.h>

#include "sound/recordings.h"
#include "support/scratch.h"

namespace {

Trf_sample_range counted(Trf_sample_range range, int nb_read, int silent_from) {
  EXPECT_EQ(COUNT_SAMPLES(nb_read, &range), silent_from);
  return range;
}

} // namespace

TEST(SoundFile, ChannelsRateAndSubformatAreTold) {
  Scratch_dir dir;
  for (int format : {WAV_16, WAV_24, WAV_FLOAT, WAV_DOUBLE, FLAC_16, OGG_VORBIS}) {
    make_sound("a", format, 2, std::vector<double>{0.5, -0.25}, 22050);
    Trf_sound_file sound;
    ASSERT_TRUE(OPEN_SOUND("a", "", &sound));
    EXPECT_EQ(sound.channels, 2);
    EXPECT_EQ(sound.samplerate, 22050);
    bool is_float = format == WAV_FLOAT || format == WAV_DOUBLE;
    EXPECT_EQ(sound.is_float, is_float);
    EXPECT_EQ(sound.scale, is_float ? 65400.0 : 1.0);
  }
}

TEST(SoundFile, OnlyOneAndTwoChannelsAreOpened) {
  Scratch_dir dir;
  for (int channels = 1; channels <= 6; channels++) {
    make_sound("a", WAV_16, channels, noise(60));
    Trf_sound_file sound;
    testing::internal::CaptureStdout();
    EXPECT_EQ(OPEN_SOUND("a", "complaint ", &sound), channels <= 2) << channels;
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              channels <= 2 ? "" : "Error : channels = " + std::to_string(channels) + ".\n");
  }
}

TEST(SoundFile, ScaleBeginsWithAMaximumOfTenToTheMinusTen) {
  Scratch_dir dir;
  for (double loudest : {0.0, 0.99e-10, 1.01e-10}) {
    make_sound("a", WAV_DOUBLE, 1, std::vector<double>{loudest});
    Trf_sound_file sound;
    ASSERT_TRUE(OPEN_SOUND("a", "", &sound));
    EXPECT_EQ(sound.scale, loudest < 1e-10 ? 1.0 : 32700.0 / loudest);
  }
}

TEST(SoundFile, FailedSeekLeavesTheFileWhereItStood) {
  Scratch_dir dir;
  std::vector<short> samples = noise(100);
  make_sound("a", WAV_16, 1, samples);
  Trf_sound_file sound;
  ASSERT_TRUE(OPEN_SOUND("a", "", &sound));
  EXPECT_TRUE(SEEK_SOUND(sound, 100));
  EXPECT_TRUE(SEEK_SOUND(sound, 40));
  EXPECT_FALSE(SEEK_SOUND(sound, 101));
  EXPECT_FALSE(SEEK_SOUND(sound, -1));
  std::vector<float> buffer(SOUND_BUFFER, 1.0f);
  EXPECT_EQ(READ_FLOATS(sound, buffer.data()), 60);
  EXPECT_EQ(buffer, as_floats(cut(samples, 40, 100, SOUND_BUFFER)));
}

TEST(SoundFile, ShortsBehindAShortReadAreSilent) {
  Scratch_dir dir;
  std::vector<float> scratch(SOUND_BUFFER);
  for (int format : {WAV_16, WAV_FLOAT}) {
    make_sound("a", format, 1, std::vector<double>{0.5, 0.5});
    Trf_sound_file sound;
    ASSERT_TRUE(OPEN_SOUND("a", "", &sound));
    std::vector<short> buffer(SOUND_BUFFER, 77);
    EXPECT_EQ(READ_SHORTS(sound, scratch.data(), buffer.data()), 2);
    EXPECT_GT(buffer[1], 16000);
    EXPECT_EQ(cut(buffer, 2, SOUND_BUFFER, SOUND_BUFFER), std::vector<short>(SOUND_BUFFER));
  }
}

TEST(SampleRange, CountsFramesTimesChannels) {
  Trf_sample_range range = RANGE_OF_FRAMES(1000, 2500, 2);
  EXPECT_EQ(range.count, 2000);
  EXPECT_EQ(range.stop, 5000);
}

TEST(SampleRange, HugeFrameNumbersBecomeTheNearestThatALongHolds) {
  Trf_sample_range range = RANGE_OF_FRAMES(LONG_MIN, LONG_MAX, 2);
  EXPECT_EQ(range.count, LONG_MIN);
  EXPECT_EQ(range.stop, LONG_MAX);
  range = counted({LONG_MAX - 5, LONG_MAX}, 2048, SOUND_BUFFER);
  EXPECT_EQ(range.count, LONG_MAX);
  counted({LONG_MIN, LONG_MIN}, 2048, 0);
  counted({LONG_MAX - 5, LONG_MIN}, 2048, 0);
}

TEST(SampleRange, SilenceBeginsAtTheStop) {
  EXPECT_EQ(counted({0, 5000}, 2048, SOUND_BUFFER).count, 2048);
  counted({4096, 5000}, 2048, 904);
  counted({4096, 6144}, 2048, SOUND_BUFFER);
  counted({4096, 6143}, 2048, 2047);
  counted({5000, 5000}, 2048, 0);
  // A short read that ends before the stop.
  counted({4096, 5000}, 904, SOUND_BUFFER);
  counted({4096, 5000}, 905, 904);
}
