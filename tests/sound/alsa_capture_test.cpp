// The real ALSA library, its device "default" a file: what would be heard, frame by frame.
#include "support/prelude.h"

#include "sound/play.h"

#include <alsa/asoundlib.h>
#include <stdlib.h>
#include <string.h>

#include "sound/device.h"
#include "sound/recordings.h"
#include "support/scratch.h"

namespace {

char NAME[] = "a.wav";

// A configuration of ALSA's own, whose device writes what it is given into "heard" and plays it
// nowhere. It needs no sound card, and takes no time to play.
class AlsaCapture : public testing::Test {
protected:
  AlsaCapture() {
    sound.alsa_answers = false;
    dir.write("asound.conf", "pcm.default {\n  type file\n  file \"" + dir.path() +
                                 "/heard\"\n  format raw\n  slave.pcm { type null }\n}\n");
    setenv("ALSA_CONFIG_PATH", (dir.path() + "/asound.conf").c_str(), 1);
  }
  ~AlsaCapture() {
    unsetenv("ALSA_CONFIG_PATH");
    snd_config_update_free_global();
  }

  std::vector<float> heard() const {
    std::string bytes = dir.read("heard");
    std::vector<float> samples(bytes.size() / sizeof(float));
    memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    return samples;
  }

  Scratch_dir dir;
  Fake_sound sound;
};

} // namespace

TEST_F(AlsaCapture, WholeFileIsHeardFrameByFrame) {
  for (int channels : {1, 2}) {
    std::vector<short> samples = noise(50000);
    make_sound(NAME, WAV_16, channels, samples);
    play_total(NAME);
    EXPECT_EQ(heard(), as_floats(cut(samples, 0, 50000, 51200)));
  }
}

TEST_F(AlsaCapture, SecondSecondIsHeardButWhatTheDeviceStillHeld) {
  std::vector<short> samples = noise(3 * 44100);
  make_sound(NAME, WAV_16, 1, samples);
  play_range(NAME, 44100, 88200);
  std::vector<float> asked = as_floats(cut(samples, 44100, 88200, 22 * 2048));
  EXPECT_EQ(sound.floats, asked);
  std::vector<float> got = heard();
  ASSERT_GE(got.size(), asked.size() - 4096);
  ASSERT_LE(got.size(), asked.size());
  asked.resize(got.size());
  EXPECT_EQ(got, asked);
}

TEST_F(AlsaCapture, RangeFromZeroToZeroIsTheWholeFile) {
  make_sound(NAME, FLAC_16, 2, noise(40960));
  testing::internal::CaptureStderr();
  play_range(NAME, 0, 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(sound.floats, as_floats(noise(40960)));
}

TEST_F(AlsaCapture, DeviceThatIsNotConfiguredIsTold) {
  dir.write("asound.conf", "pcm.other { type null }\n");
  make_sound(NAME, WAV_16, 1, noise(10));
  testing::internal::CaptureStderr();
  play_range(NAME, 0, 5);
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::HasSubstr("cannot open audio device \"default\" (No such file or "
                                 "directory)\n"));
  EXPECT_TRUE(sound.floats.empty());
}
