// A lesson announced, described and started by real presses.
#include "support/prelude.h"

#include "quiz/confirm_lesson.h"

#include <string.h>

#include "gui/window.h"
#include "quiz/pane.h"
#include "score/position_table.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

const char RULE[] = "==============================";

// Five lessons with the aliases l1 to l5; lesson 4 has no entry.
Test_files five_lessons() {
  Test_files files = {{"mertu.conf", CONFIGURATION({"1.txt", "2.txt", "3.txt", "4.txt", "5.txt"})}};
  for (std::string number : {"1", "2", "3", "5"})
    files[number + ".txt"] = DICTIONARY("l" + number, {{"mot" + number, "word"}});
  files["4.txt"] = DICTIONARY("l4", {});
  return files;
}

// Announces a lesson as the program does at its start.
void announce(int ilesson, Test_window *window) {
  window->book->ilesson = ilesson;
  window->book->start_lesson = 0;
  CONFIRM0_LESSON(window->book);
}

void announce_after(int code, Test_window *window) {
  window->book->start_lesson = 0;
  CONFIRM0_NEW_LESSON(code, window->book);
}

// A press as a handler sees it.
GdkEvent press_of(unsigned button) {
  GdkEvent event;
  memset(&event, 0, sizeof event);
  event.type = GDK_BUTTON_PRESS;
  event.button.button = button;
  return event;
}

} // namespace

TEST(QuizConfirm, StartUpAnnouncesTheLesson) {
  Test_window window(five_lessons());
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 1", "l1", "  ", RULE));
  EXPECT_EQ(window.book_lines(), window.pane_lines());
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_EQ(window.book->active, 1);
  EXPECT_EQ(LABEL_OF(window.book->Button1), "  Question / Response ");
  EXPECT_EQ(NAME_OF(window.book->Button1), "buttonyellow");
}

TEST(QuizConfirm, FirstPressDescribesAndTheSecondShowsTheFirstQuestion) {
  Test_window window(five_lessons());
  announce(5, &window);
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 5", "l5", "  ", RULE, "  ",
                          "Confirm learning vocabulary of lesson 5", "5.txt", "  "));
  EXPECT_EQ(window.book->start_lesson, 2);
  EXPECT_STREQ(window.book->lessons, "5.txt");
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->start_lesson, 3);
  EXPECT_EQ(window.book->ilesson, 5);
  EXPECT_THAT(window.pane_lines(), Contains("Question  1   lesson=l5   err=-1   mx=-1"));
  EXPECT_THAT(window.pane_lines(), Not(Contains("Confirm display of lesson 5")));
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST(QuizConfirm, AnyButtonDescribesAnAnnouncedLesson) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, RIGHT);
  EXPECT_EQ(window.book->start_lesson, 2);
  EXPECT_THAT(window.pane_lines(), Contains("Confirm learning vocabulary of lesson 1"));
}

TEST(QuizConfirm, RightPressOnADescriptionDescribesTheNextLessonAtOnce) {
  Test_window window(five_lessons());
  announce(2, &window);
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, RIGHT);
  EXPECT_EQ(window.book->ilesson, 3);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm learning vocabulary of lesson 3", "3.txt", "  ", RULE));
  EXPECT_EQ(window.book_lines(), window.pane_lines());
}

TEST(QuizConfirm, MiddlePressSkipsTooAndClosesTheOpenText) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.book->fp = fopen("1.txt", "r");
  window.book->exfp = 1;
  window.press(window.book->Button1, MIDDLE);
  EXPECT_EQ(window.book->fp, nullptr);
  EXPECT_EQ(window.book->exfp, 0);
  EXPECT_EQ(window.book->ilesson, 2);
}

TEST(QuizConfirm, SkippedToLessonIsDescribedOnceMoreAndStarts) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, RIGHT);
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->start_lesson, 2);
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->start_lesson, 3);
  EXPECT_THAT(window.pane_lines(), Contains("Question  1   lesson=l2   err=-1   mx=-1"));
}

TEST(QuizConfirm, EmptyLessonPassesOnToTheNext) {
  Test_window window(five_lessons());
  announce(4, &window);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 4", "l4", "  ", RULE));
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "No word in lesson 4", "Trying next lesson 5"));
  EXPECT_EQ(window.book->start_lesson, 0);
  EXPECT_EQ(window.book->ilesson, 5);
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 5", "l5", "  ", RULE));
}

TEST(QuizConfirm, LessonZeroHasNoAliasAndNoDescription) {
  Test_window window(five_lessons());
  announce(0, &window);
  EXPECT_THAT(window.pane_lines(), ElementsAre("  ", "Confirm display of lesson 0", "  ", RULE));
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 0", "  ", RULE, "  ",
                          "Confirm learning vocabulary of lesson 0", "  "));
}

TEST(QuizConfirm, LessonPastTheLastHasNoAlias) {
  Test_window window(five_lessons());
  announce(6, &window);
  EXPECT_THAT(window.pane_lines(), ElementsAre("  ", "Confirm display of lesson 6", "  ", RULE));
}

// The two halves of such a press: the skip counts on, and describing what is not there ends the
// program (in a child, which must leave the parent's display alone).
TEST(QuizConfirm, SkippingPastTheLastLessonEndsTheProgram) {
  Test_window window(five_lessons());
  announce(3, &window);
  window.book->nbt_lesson = 3;
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, RIGHT);
  EXPECT_EQ(window.book->ilesson, 4);
  window.book->ilesson = 6;
  window.book->start_lesson = 0;
  GdkEvent event = press_of(RIGHT);
  ENDS_WITH_STATUS(CONFIRM_LESSON(&event, window.book), 2,
                   "LESSON_FROM_ORDER error 1 i_order=6 nb_lesson=5");
}

TEST(QuizConfirm, AnnouncingEmptiesTheTextPaneAndTheTable) {
  Test_window window(five_lessons());
  GtkTextView *view = GTK_TEXT_VIEW(window.book->text_view);
  gtk_text_buffer_set_text(gtk_text_view_get_buffer(view), "text", -1);
  window.book->t_posit->nb_posit = 3;
  window.book->active = 0;
  announce(1, &window);
  EXPECT_EQ(window.text(), "");
  EXPECT_EQ(window.book->t_posit->nb_posit, 0);
  EXPECT_EQ(window.book->active, 1);
}

TEST(QuizConfirm, ComposedLessonKeepsItsTable) {
  Test_window window(five_lessons());
  window.book->t_posit->nb_posit = 3;
  announce(0, &window);
  EXPECT_EQ(window.book->t_posit->nb_posit, 3);
}

TEST(QuizConfirm, LessonUnderWayIsLeftButNotAnnounced) {
  Test_window window(five_lessons());
  window.book->fp = fopen("1.txt", "r");
  window.book->exfp = 1;
  window.book->fp_gene = fopen("1.txt", "r");
  window.book->fp_idx1 = fopen("1.txt", "r");
  std::vector<std::string> before = window.pane_lines();
  long moment = LESSON_MOMENT();
  CONFIRM0_LESSON(window.book); // start_lesson is 1
  EXPECT_EQ(window.book->fp, nullptr);
  EXPECT_EQ(window.book->exfp, 0);
  EXPECT_EQ(window.book->fp_gene, nullptr);
  EXPECT_EQ(window.book->fp_idx1, nullptr);
  EXPECT_EQ(window.pane_lines(), before);
  EXPECT_NE(LESSON_MOMENT(), moment);
}

TEST(QuizConfirm, DirectionButtonTellsTheDirection) {
  Test_window window(five_lessons());
  window.book->sens_qr = 2;
  announce(1, &window);
  EXPECT_EQ(LABEL_OF(window.book->button_qr), "R->Q");
  window.book->sens_qr = 1;
  announce_after(1, &window);
  EXPECT_EQ(LABEL_OF(window.book->button_qr), "Q->R");
}

TEST(QuizConfirm, CommandWithoutAWordSaysSo) {
  Test_window window(five_lessons());
  announce_after(1, &window);
  EXPECT_THAT(window.pane_lines(), ElementsAre("  ", "Aucun mot dans la le\303\247on,",
                                               "retour ancienne le\303\247on :", "  ",
                                               "Confirm display of lesson 1", "l1", "  ", RULE));
  EXPECT_EQ(window.book->start_lesson, 1);
}

TEST(QuizConfirm, OtherCommandsTellTheirOutcome) {
  Test_window window(five_lessons());
  announce_after(2, &window);
  EXPECT_THAT(window.pane_lines(), Contains("Check and correct data base : DONE,"));
  announce_after(3, &window);
  EXPECT_THAT(window.pane_lines(), Contains("Dictionary file ./mertu_dico : DONE,"));
  announce_after(7, &window);
  EXPECT_THAT(window.pane_lines(), Contains("code is unknown,"));
}

TEST(QuizConfirm, CommandLeavesTheButtonsStateAndTheTextAlone) {
  Test_window window(five_lessons());
  GtkTextView *view = GTK_TEXT_VIEW(window.book->text_view);
  gtk_text_buffer_set_text(gtk_text_view_get_buffer(view), "text", -1);
  LABEL_BUTTON(window.book->Button1, "label", "name");
  window.book->active = 0;
  announce_after(1, &window);
  EXPECT_EQ(window.text(), "text");
  EXPECT_EQ(LABEL_OF(window.book->Button1), "label");
  EXPECT_EQ(NAME_OF(window.book->Button1), "name");
  EXPECT_EQ(window.book->active, 0);
}

TEST(QuizConfirm, DrillingLessonIsNotConfirmedAgain) {
  Test_window window(five_lessons());
  window.book->start_lesson = 3;
  std::vector<std::string> before = window.pane_lines();
  GdkEvent event = press_of(LEFT);
  CONFIRM_LESSON(&event, window.book);
  EXPECT_EQ(window.pane_lines(), before);
  EXPECT_EQ(window.book->start_lesson, 3);
}

TEST(QuizConfirm, DictionaryThatIsGoneIsRefusedAsEmpty) {
  Test_window window(five_lessons());
  remove("1.txt");
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->start_lesson, 2);
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "No word in lesson 1", "Trying next lesson 2"));
}

TEST(QuizConfirm, LongNameGrowsTheRoomForIt) {
  std::string name = std::string(60, 'n') + ".txt";
  Test_window window(
      {{"mertu.conf", CONFIGURATION({name})}, {name, DICTIONARY("aa", {{"chat", "cat"}})}});
  window.press(window.book->Button1, RIGHT); // a left one would show the text, and grow it too
  EXPECT_EQ(window.book->lessons, name);
  EXPECT_EQ(window.book->lenmx_str_lessons, 64 + 10);
}

TEST(QuizConfirm, NoPaneEndsTheProgramAtEveryStep) {
  Test_window window(five_lessons());
  GtkWidget *v_page = window.book->v_page;
  window.book->v_page = nullptr;
  GdkEvent left = press_of(LEFT);
  GdkEvent right = press_of(RIGHT);
  window.book->start_lesson = 0;
  ENDS_WITH_STATUS(CONFIRM0_LESSON(window.book), 1, "CONFIRM0_LESSON v_page= NULL error \n");
  ENDS_WITH_STATUS(CONFIRM0_NEW_LESSON(1, window.book), 1,
                   "CONFIRM0_NEW_LESSON v_page= NULL error \n");
  window.book->start_lesson = 1;
  ENDS_WITH_STATUS(CONFIRM_LESSON(&left, window.book), 1, "CONFIRM_LESSON v_page= NULL error \n");
  EXPECT_THAT(window.dir().read("mertu_log"), HasSubstr("CONFIRM_LESSON v_page= NULL error \n"));
  window.book->start_lesson = 2;
  ENDS_WITH_STATUS(CONFIRM_LESSON(&left, window.book), 1,
                   "CONFIRM_LESSON level 1 v_page= NULL error \n");
  ENDS_WITH_STATUS(CONFIRM_LESSON(&right, window.book), 1,
                   "CONFIRM_LESSON level 2 v_page= NULL error \n");
  window.book->v_page = v_page;
}

TEST(QuizConfirm, NextInTheQueueOfASkipWins) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, RIGHT);
  window.queue_press(window.button("Next"), LEFT);
  window.handle();
  EXPECT_EQ(window.book->ilesson, 3);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 3", "l3", "  ", RULE));
}

TEST(QuizConfirm, NextInTheQueueOfAStartWins) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_press(window.button("Next"), LEFT);
  window.handle();
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 2", "l2", "  ", RULE));
}

TEST(QuizConfirm, CloseInTheQueueOfAStartEndsQuietly) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_close();
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.alive());
}

TEST(QuizConfirm, CloseInTheQueueOfASkipEndsQuietly) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, RIGHT);
  window.queue_close();
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.alive());
}

TEST(QuizConfirm, QuitInTheQueueOfASkipOrAStartEndsQuietly) {
  for (int button : {LEFT, RIGHT}) {
    Test_window window(five_lessons());
    window.press(window.book->Button1, LEFT);
    window.queue_press(window.book->Button1, button);
    window.queue_press(window.button("Quit"), LEFT);
    window.handle();
    EXPECT_TRUE(window.ended());
    EXPECT_TRUE(window.pane_lines().empty());
    EXPECT_NE(window.book->start_lesson, 3);
  }
}

TEST(QuizConfirm, DirectionInTheQueueOfAStartCountsForTheFirstQuestion) {
  Test_window window(five_lessons());
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_press(window.book->button_qr, LEFT);
  window.handle();
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.book->sens_qrm, 2);
  EXPECT_THAT(window.pane_lines(), Contains("Response  1   lesson=l1   err=-1   mx=-1"));
  EXPECT_EQ(LABEL_OF(window.book->button_qr), "R->Q");
}
