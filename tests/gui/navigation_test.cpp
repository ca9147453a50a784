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

TEST(Navigation, FromPastTheLastLessonNextGoesToTheFirstAndPrevOneBack) {
  Test_window window(five_lessons());
  for (auto [from, prev] : {std::pair(6, 5), {8, 7}}) {
    window.book->ilesson = from;
    cback_next_less(nullptr, window.book);
    EXPECT_EQ(window.book->ilesson, 1) << from;
    window.book->ilesson = from;
    cback_prev_less(nullptr, window.book);
    EXPECT_EQ(window.book->ilesson, prev) << from;
  }
}

TEST(Navigation, WithoutALessonNextGoesToTheFirstAndPrevToNone) {
  Test_window window(five_lessons());
  window.book->nbt_lesson = 0;
  cback_prev_less(nullptr, window.book);
  EXPECT_EQ(window.book->ilesson, 0);
  cback_next_less(nullptr, window.book);
  EXPECT_EQ(window.book->ilesson, 1);
}

TEST(Navigation, NextAndPrevFreeTheAnswerButtonBeforeTheyAsk) {
  for (const char *label : {"Next", "Prev", "Quit"}) {
    Test_window window(five_lessons());
    for (int i = 0; i < 2; i++) // describe, start
      window.press(window.book->Button1, LEFT);
    gtk_widget_set_sensitive(window.book->Button1, FALSE);
    window.dialogs.will_do([&](GtkWidget *dialog) {
      EXPECT_EQ(SENSITIVE(window.book->Button1), label != std::string("Quit")) << label;
      QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
    });
    window.press(window.button(label), LEFT);
    EXPECT_EQ(window.dialogs.seen.size(), 1u);
  }
}

TEST(Navigation, ADrillIsLeftForTheLessonAsked) {
  Test_window window(five_lessons());
  for (int i = 0; i < 2; i++) // describe, start
    window.press(window.book->Button1, LEFT);
  ASSERT_EQ(window.book->start_lesson, 3);
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_EQ(window.book->exfp, 0);
  EXPECT_EQ(window.book->fp, nullptr);
  EXPECT_THAT(window.pane_lines(), Contains(announcement(2)));
}

// Handlers process the events that wait, so what waits behind a press may come in the middle of it.
class QueuedBehindAVerdict : public testing::Test {
protected:
  Test_window window{five_lessons()};

  QueuedBehindAVerdict() {
    for (int i = 0; i < 3; i++) // describe, start, response
      window.press(window.book->Button1, LEFT);
    EXPECT_EQ(window.book->state, 2);
    window.queue_press(window.book->Button1, RIGHT);
  }
};

TEST_F(QueuedBehindAVerdict, NextWinsAndItsAnnouncementStands) {
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.queue_press(window.button("Next"), LEFT);
  window.handle();
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_THAT(window.pane_lines(), testing::ElementsAre("  ", announcement(2), "l2", "  ",
                                                        "=============================="));
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
  EXPECT_EQ(window.book->active, 1);
}

TEST_F(QueuedBehindAVerdict, QuitEndsTheMainLoop) {
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.queue_press(window.button("Quit"), LEFT);
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_THAT(window.pane_lines(), testing::IsEmpty()); // no question for one who leaves
}

TEST_F(QueuedBehindAVerdict, TheWindowMayBeClosed) {
  window.queue_close();
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.alive());
}

TEST_F(QueuedBehindAVerdict, NextKeepsWhatWaitsBehindItFromTheWindowUntilItIsAnswered) {
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.queue_press(window.button("Next"), LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_press(window.button("Prev"), LEFT);
  window.queue_press(window.button("Quit"), LEFT);
  window.queue_press(window.book->button_sound, LEFT);
  window.queue_close();
  window.handle();
  EXPECT_FALSE(window.ended());
  EXPECT_EQ(window.dialogs.seen.size(), 1u);
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_EQ(window.book->sound, 1);
}

TEST(QueuedBeforeAVerdict, TheWindowMayGoWhileTheQuestionBehindItStands) {
  for (const char *label : {"Next", "Prev", "Quit"}) {
    Test_window window(five_lessons());
    for (int i = 0; i < 3; i++)
      window.press(window.book->Button1, LEFT);
    window.dialogs.will_do([&](GtkWidget *) { gtk_widget_destroy(window.book->pWindow); });
    window.queue_press(window.book->Button1, RIGHT);
    window.queue_press(window.button(label), LEFT);
    window.handle();
    EXPECT_TRUE(window.ended());
    EXPECT_FALSE(window.alive());
    EXPECT_EQ(window.book->ilesson, 1);
    EXPECT_EQ(window.book->start_lesson, 3);
    EXPECT_FALSE(window.dir().exists("Mertu_last_state"));
  }
}

TEST(QueuedBeforeAVerdict, NextTakesThePressBehindItsAnswerToTheNewLesson) {
  Test_window window(five_lessons());
  for (int i = 0; i < 3; i++) // describe, start, response
    window.press(window.book->Button1, LEFT);
  window.dialogs.will_do([&](GtkWidget *dialog) {
    QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
    window.queue_press(window.book->Button1, LEFT);
  });
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 2);
  EXPECT_THAT(window.pane_lines(), Contains("Confirm learning vocabulary of lesson 2"));
}

TEST(QueuedBeforeAVerdict, QuitAndAClosedWindowLeaveThePressUnheard) {
  {
    Test_window window(five_lessons());
    window.queue_press(window.button("Quit"), LEFT);
    window.queue_press(window.book->Button1, LEFT);
    window.handle();
    EXPECT_TRUE(window.ended());
    EXPECT_EQ(window.book->start_lesson, 1);
  }
  Test_window window(five_lessons());
  window.queue_close();
  window.queue_press(window.book->Button1, LEFT);
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.alive());
  EXPECT_EQ(window.book->start_lesson, 1);
}
