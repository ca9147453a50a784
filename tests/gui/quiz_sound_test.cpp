// Questions that are heard: by real presses, in the real window.
#include "support/prelude.h"

#include "gui/heard.h"
#include "gui/window.h"
#include "sound/device.h"
#include "sound/recordings.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// A lesson of one entry with these sound lines; the sounds lie beside it.
Test_files lesson_with(const std::string &sound_lines) {
  return {{"mertu.conf", CONFIGURATION({"words/a.txt"})},
          {"words/a.txt", "!# aa\n#######\n#######\n# chat * Q2\n" + sound_lines +
                              "Q> chat\nR> cat\n\n# END_OF_FILE\n"},
          {"words/chat.wav", ""}};
}

struct Drill : Test_window {
  explicit Drill(const std::string &sound_lines) : Test_window(lesson_with(sound_lines)) {
    HEARD();
    press(book->Button1, LEFT);
    press(book->Button1, LEFT);
  }
  void answer() {
    press(book->Button1, LEFT);
  }
  std::string log() const {
    fflush(book->fp_log);
    return dir().read("mertu_log");
  }
};

} // namespace

TEST(QuizSound, QuestionIsHeardAndNotRead) {
  Drill drill("<)) chat.wav 100 2000\n");
  EXPECT_THAT(HEARD(), ElementsAre("words/chat.wav 100 2000"));
  EXPECT_THAT(drill.pane_lines(), Contains("chat.wav"));
  EXPECT_THAT(drill.pane_lines(), Contains("(2)"));
  EXPECT_THAT(drill.pane_lines(), Not(Contains("chat")));
}

TEST(QuizSound, RangeOfAQuestionReachesTheDevice) {
  Drill drill("<)) chat.wav 100 2000\n");
  drill.answer();
  const std::vector<short> samples = noise(4000);
  make_sound("words/chat.wav", WAV_16, 1, samples);
  Fake_sound sound;
  Sounding sounding;
  drill.answer();
  EXPECT_EQ(sound.floats, cut(as_floats(samples), 100, 2000, 2048));
}

TEST(QuizSound, ResponseShowsTheQuestionAndIsSilent) {
  Drill drill("<() chat.wav\n");
  EXPECT_THAT(HEARD(), ElementsAre("words/chat.wav"));
  drill.answer();
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_THAT(drill.pane_lines(), Contains("chat"));
  EXPECT_EQ(drill.pane_lines().back(), "  ");
  EXPECT_THAT(drill.pane_lines(), Contains("cat"));
}

TEST(QuizSound, QuestionMarkLineIsHeardInPartAndThenWhole) {
  Drill drill("?<) chat.wav 1 2\n");
  EXPECT_THAT(HEARD(), ElementsAre("words/chat.wav 1 2", "words/chat.wav"));
}

TEST(QuizSound, SoundThatIsNotFoundIsNamedAndLogged) {
  Drill drill("? nowhere.wav 1 2\n");
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_THAT(drill.pane_lines(), Contains("nowhere.wav"));
  EXPECT_THAT(drill.log(), HasSubstr("DISPLAY_QR snd_file=nowhere.wav not found \n"
                                     "DISPLAY_QR snd_file=nowhere.wav not found \n"));
  EXPECT_THAT(drill.pane_lines(), Not(Contains("chat")));
}

TEST(QuizSound, SoundSwitchedOffIsReadAndSaysSo) {
  Drill drill("<() chat.wav\n");
  HEARD();
  drill.press(drill.book->button_sound, LEFT);
  drill.answer();
  EXPECT_THAT(drill.pane_lines(), Contains("Sound is OFF now"));
  drill.answer();
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_THAT(drill.pane_lines(), Contains("chat"));
  EXPECT_THAT(drill.pane_lines(), Not(Contains("chat.wav")));
  drill.press(drill.book->button_sound, LEFT);
  drill.answer();
  EXPECT_THAT(drill.pane_lines(), Contains("Sound is ON now"));
}

TEST(QuizSound, OtherDirectionIsHeardWithTheResponse) {
  Test_window window(lesson_with("<() chat.wav\n"));
  HEARD();
  window.press(window.book->button_qr, LEFT);
  for (int i = 0; i < 2; i++)
    window.press(window.book->Button1, LEFT);
  EXPECT_THAT(HEARD(), IsEmpty());
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(HEARD(), ElementsAre("words/chat.wav"));
}
