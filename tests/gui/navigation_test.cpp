// "Quit", "Next" and "Prev".
#include "support/prelude.h"

#include "app/navigation.h"

#include "gui/window.h"

using testing::Contains;

namespace {

std::string announcement(int lesson) {
  return "Confirm display of lesson " + std::to_string(lesson);
}

Test_files five_lessons() {
  Test_files files = {{"mertu.conf", CONFIGURATION({"1.txt", "2.txt", "3.txt", "4.txt", "5.txt"})}};
  for (std::string number : {"1", "2", "3", "4", "5"})
    files[number + ".txt"] = DICTIONARY("l" + number, {{"mot" + number, "word"}});
  return files;
}

} // namespace

TEST(Navigation, QuitEndsTheMainLoop) {
  Test_window window(TWO_LESSONS());
  window.press(window.button("Quit"), LEFT);
  EXPECT_TRUE(window.ended());
  EXPECT_TRUE(window.alive());
}

TEST(Navigation, NextAnnouncesTheNextLesson) {
  Test_window window(five_lessons());
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_THAT(window.pane_lines(), Contains(announcement(2)));
  EXPECT_THAT(window.pane_lines(), Contains("l2"));
}

TEST(Navigation, AfterTheLastLessonComesTheFirst) {
  Test_window window(five_lessons());
  window.book->ilesson = 5;
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->ilesson, 1);
  EXPECT_THAT(window.pane_lines(), Contains(announcement(1)));
}

TEST(Navigation, BeforeTheFirstLessonComesTheLast) {
  Test_window window(five_lessons());
  window.press(window.button("Prev"), LEFT);
  EXPECT_EQ(window.book->ilesson, 5);
  EXPECT_THAT(window.pane_lines(), Contains(announcement(5)));
  window.press(window.button("Prev"), LEFT);
  EXPECT_EQ(window.book->ilesson, 4);
}

TEST(Navigation, NumbersBelowOneMoveToTheirOwnNeighbours) {
  Test_window window(five_lessons());
  for (auto [from, next, prev] : {std::tuple(0, 1, 5), {-3, 4, 2}, {-9, 1, 8}}) {
    window.book->ilesson = from;
    cback_next_less(nullptr, window.book);
    EXPECT_EQ(window.book->ilesson, next) << from;
    window.book->ilesson = from;
    cback_prev_less(nullptr, window.book);
    EXPECT_EQ(window.book->ilesson, prev) << from;
  }
}

TEST(Navigation, ADrillIsLeftForTheLessonAsked) {
  Test_window window(five_lessons());
  for (int i = 0; i < 3; i++) // confirm, describe, start
    window.press(window.book->Button1, LEFT);
  ASSERT_EQ(window.book->start_lesson, 3);
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_EQ(window.book->exfp, 0);
  EXPECT_EQ(window.book->fp, nullptr);
  EXPECT_THAT(window.pane_lines(), Contains(announcement(2)));
}
