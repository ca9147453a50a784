// What happens to the files and to the clock while a lesson is drilled in the real window.
#include "support/prelude.h"

#include <stdio.h>

#include "gui/window.h"
#include "support/present.h"

using testing::HasSubstr;

namespace {

const char IDX1[] = "IDX1/idx1_a.txt";

// Describes and starts lesson 1, then a response and a verdict for each of two words.
const int PRESSES[] = {LEFT, LEFT, LEFT, LEFT, LEFT, RIGHT};

// Presses on; `happens` before press `moment`. Then "Next", and the answer "Yes".
void drill_and_record(Test_window *window, size_t moment, const std::function<void()> &happens) {
  for (size_t i = 0; i < std::size(PRESSES); i++) {
    if (i == moment)
      happens();
    window->press(window->book->Button1, PRESSES[i]);
  }
  window->dialogs.will_answer(GTK_RESPONSE_YES);
  window->press(window->button("Next"), LEFT);
}

// Each file is gone, or the clock moved, at every press of the drill in turn.
class OddMoments : public testing::Test {
protected:
  ~OddMoments() override {
    RESET_PRESENT();
  }
  // The index after the same drill with nothing in the way.
  static std::string recorded() {
    SET_PRESENT_DAY(2009, 3, 20);
    Test_window window(TWO_LESSONS());
    drill_and_record(&window, 99, [] {});
    return window.dir().read(IDX1);
  }
};

} // namespace

TEST_F(OddMoments, AFileThatVanishesBetweenTwoPressesDoesNotHinderTheRecording) {
  std::string expected = recorded();
  for (const char *name : {"a.txt", "b.txt", "mertu.conf", "mertu_log"})
    for (size_t moment = 2; moment < std::size(PRESSES); moment++) {
      Test_window window(TWO_LESSONS());
      drill_and_record(&window, moment, [name] { remove(name); });
      EXPECT_TRUE(window.alive()) << name << moment;
      EXPECT_EQ(window.dir().read(IDX1), expected) << name << moment;
    }
}

TEST_F(OddMoments, ADictionaryChangedBetweenTwoPressesDoesNotHinderTheRecording) {
  std::string expected = recorded();
  for (size_t moment = 2; moment < std::size(PRESSES); moment++) {
    Test_window window(TWO_LESSONS());
    drill_and_record(&window, moment, [&window] { window.dir().write("a.txt", "!# aa\n"); });
    EXPECT_EQ(window.dir().read(IDX1), expected) << moment;
  }
}

TEST_F(OddMoments, AnIndexThatVanishesBetweenTwoPressesIsToldAndTheNextLessonAnnounced) {
  for (size_t moment = 2; moment < std::size(PRESSES); moment++) {
    Test_window window(TWO_LESSONS());
    testing::internal::CaptureStdout();
    drill_and_record(&window, moment, [] { remove(IDX1); });
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("RECORD_LESSON cannot open file ./IDX1/idx1_a.txt"));
    EXPECT_EQ(window.book->ilesson, 2);
  }
}

TEST_F(OddMoments, MidnightBetweenTwoPressesDatesTheWholeRecordingOfTheNewDay) {
  std::string expected = recorded();
  ASSERT_THAT(expected, HasSubstr("3000"));
  for (size_t at = expected.find("3000"); at != std::string::npos; at = expected.find("3000"))
    expected.replace(at, 4, "3001");
  for (size_t moment = 2; moment < std::size(PRESSES); moment++) {
    SET_PRESENT_DAY(2009, 3, 20);
    Test_window window(TWO_LESSONS());
    drill_and_record(&window, moment, [] { SET_PRESENT_DAY(2009, 3, 21); });
    EXPECT_EQ(window.dir().read(IDX1), expected) << moment;
  }
}

// Back by five years: what was learned today lies in no future yet.
TEST_F(OddMoments, AClockSetBackBetweenTwoPressesRecordsTheDayItShows) {
  for (size_t moment = 2; moment < std::size(PRESSES); moment++) {
    SET_PRESENT_DAY(2009, 3, 20);
    Test_window window(TWO_LESSONS());
    drill_and_record(&window, moment, [] { SET_PRESENT_DAY(2004, 3, 1); });
    EXPECT_THAT(window.dir().read(IDX1), HasSubstr("1155")) << moment;
  }
}
