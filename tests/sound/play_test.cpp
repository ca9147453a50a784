// Which output plays, and the range that means the whole file.
#include "support/prelude.h"

#include "sound/play.h"

#include <errno.h>

#include "sound/alsa_device.h"
#include "sound/device.h"
#include "sound/recordings.h"
#include "support/scratch.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

char NAME[] = "a.wav";

class Play : public testing::Test {
protected:
  Scratch_dir dir;
  Fake_sound sound;
};

} // namespace

TEST_F(Play, CardsThatCanBeReadMeanAlsa) {
  make_sound(NAME, WAV_16, 1, noise(2048));
  EXPECT_EQ(play_total(NAME), 0);
  EXPECT_EQ(play_range(NAME, 100, 200), 0);
  EXPECT_THAT(sound.calls_of("access"), ElementsAre("access 4", "access 4"));
  EXPECT_THAT(sound.calls_of("snd_pcm_open"), SizeIs(2));
  EXPECT_THAT(sound.shorts, IsEmpty());
}

TEST_F(Play, WithoutCardsOssPlays) {
  sound.alsa_cards = false;
  make_sound(NAME, WAV_16, 1, noise(2048));
  EXPECT_EQ(play_total(NAME), 0);
  EXPECT_EQ(play_range(NAME, 100, 200), 0);
  EXPECT_THAT(sound.calls_of("open /dev/dsp"), SizeIs(2));
  EXPECT_THAT(sound.calls_of("snd_pcm"), IsEmpty());
}

TEST_F(Play, TheCardsAreLookedForAtEverySound) {
  make_sound(NAME, WAV_16, 1, noise(2048));
  play_total(NAME);
  sound.alsa_cards = false;
  play_total(NAME);
  EXPECT_EQ(sound.floats, as_floats(noise(2048)));
  EXPECT_EQ(sound.shorts, noise(2048));
}

TEST_F(Play, RangeFromZeroToZeroPlaysTheWholeFile) {
  make_sound(NAME, WAV_16, 2, noise(4096));
  EXPECT_EQ(play_range(NAME, 0, 0), 0);
  EXPECT_EQ(sound.floats, as_floats(noise(4096)));
  sound.floats.clear();
  EXPECT_EQ(play_range(NAME, 0, -7), 0);
  EXPECT_EQ(sound.floats, as_floats(noise(4096)));
  sound.floats.clear();
  EXPECT_EQ(play_range(NAME, 1, 0), 0);
  EXPECT_THAT(sound.floats, IsEmpty());
  EXPECT_EQ(play_range(NAME, 0, 1), 0);
  EXPECT_EQ(sound.floats, as_floats(cut(noise(4096), 0, 2, 2048)));
}

TEST_F(Play, WholeFileRangeGoesOnToTheEmptyRange) {
  std::vector<double> samples(2048, 0.5);
  make_sound(NAME, WAV_16, 1, samples);
  play_range(NAME, 0, 0);
  EXPECT_THAT(sound.calls_of("snd_pcm_open"), SizeIs(2));
  EXPECT_THAT(sound.calls_of("snd_pcm_close"), SizeIs(2));
  EXPECT_THAT(sound.floats, SizeIs(2048));
  // A float file, and every file on OSS, gets one buffer of silence behind it.
  make_sound(NAME, WAV_FLOAT, 1, samples);
  sound.floats.clear();
  play_range(NAME, 0, 0);
  EXPECT_EQ(sound.floats, cut(std::vector<float>(2048, 32700.0f), 0, 2048, 4096));
  sound.alsa_cards = false;
  play_range(NAME, 0, 0);
  EXPECT_EQ(sound.shorts, cut(std::vector<short>(2048, 32700), 0, 2048, 4096));
  make_sound(NAME, WAV_16, 1, noise(2048));
  sound.shorts.clear();
  play_range(NAME, 0, 0);
  EXPECT_EQ(sound.shorts, cut(noise(2048), 0, 2048, 4096));
}

TEST_F(Play, FirstSoundOfAMachineWithoutAnyDeviceEndsTheProgram) {
  sound.alsa_cards = false;
  sound.dsp = "";
  make_sound(NAME, WAV_16, 1, noise(10));
  ENDS_WITH_STATUS(play_range(NAME, 0, 5), 1, "linux_open_dsp_device : open : ");
  ENDS_WITH_STATUS(play_total(NAME), 1, "linux_open_dsp_device : open : ");
}

TEST_F(Play, FileThatCannotBePlayedReturns) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(play_range(NAME, 0, 5), 0);
  EXPECT_EQ(play_total(NAME), 0);
  sound.alsa_cards = false;
  EXPECT_EQ(play_range(NAME, 0, 5), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "alsa_play Not able to open file System error : No such file or directory.\n"
            "alsa_play Not able to open file System error : No such file or directory.\nSystem "
            "error : No such file or directory.\n");
}

TEST_F(Play, TheCountOfAllocationsSeesOne) {
  std::vector<float> samples(2048);
  snd_pcm_t *device = alsa_open(1, 44100, 0);
  alsa_write_float(device, samples.data(), 2048, 1);
  std::string text(1000, 'x');
  alsa_write_float(device, samples.data(), 2048, 1);
  EXPECT_GE(sound.allocations, 1) << text;
}
