// The drill: questions, responses, verdicts, by real presses.
#include "support/prelude.h"

#include "quiz/answer_button.h"

#include <string.h>
#include <time.h>

#include "gui/window.h"
#include "quiz/locate_entry.h"
#include "quiz/pane.h"
#include "quiz/show_entry.h"
#include "score/position_table.h"
#include "support/present.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const char RULE[] = "==============================";
const char ASK[] = "  Question / Response ";
const char JUDGE[] = "        Verif: Yes/No       ";

// Confirms, describes and starts the lesson.
void start(Test_window *window) {
  for (int i = 0; i < 2; i++)
    window->press(window->book->Button1, LEFT);
}

// The presses of one entry: its response, and then the verdict.
void answer(int button, Test_window *window) {
  window->press(window->book->Button1, LEFT);
  window->press(window->book->Button1, button);
}

// The first line in the pane that begins so; "" when there is none.
std::string line_with(const std::string &beginning, const Test_window &window) {
  for (const std::string &line : window.pane_lines())
    if (line.compare(0, beginning.size(), beginning) == 0)
      return line;
  return "";
}

GdkEvent event_of(GdkEventType type, unsigned button) {
  GdkEvent event;
  memset(&event, 0, sizeof event);
  event.type = type;
  event.button.button = button;
  return event;
}

// The command entry gets the focus; its command names no lesson, and the drill is not recorded.
void use_command(Test_window *window) {
  gtk_widget_grab_focus(window->book->entry_book);
  window->dialogs.will_answer(GTK_RESPONSE_NO);
}

template <typename Action> std::string said(Action action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

class QuizDrill : public testing::Test {
protected:
  ~QuizDrill() override {
    SET_RAND({});
  }
};

} // namespace

TEST_F(QuizDrill, FirstQuestionIsHeadedAndWritten) {
  Test_window window(TWO_LESSONS());
  start(&window);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("Sound is ON now", "  ", "3  words in lesson  1 mn=-1 mx=-1",
                          "Question  1   lesson=aa   err=-1   mx=-1", "first run, d_ok=0   d_nok=0",
                          "  ", "chat", "  ", RULE));
  EXPECT_EQ(window.book_lines(), window.pane_lines());
  EXPECT_EQ(window.book->state, 1);
  EXPECT_EQ(LABEL_OF(window.book->Button1), ASK);
  EXPECT_EQ(NAME_OF(window.book->Button1), "buttonyellow");
}

TEST_F(QuizDrill, ResponseComesBelowTheQuestion) {
  Test_window window(TWO_LESSONS());
  start(&window);
  size_t before = window.pane_lines().size();
  window.press(window.book->Button1, RIGHT);
  std::vector<std::string> lines = window.pane_lines();
  lines.erase(lines.begin(), lines.begin() + static_cast<long>(before));
  EXPECT_THAT(lines, ElementsAre("Response  1", "  ", "cat", "  "));
  EXPECT_EQ(window.book->state, 2);
  EXPECT_EQ(LABEL_OF(window.book->Button1), JUDGE);
  EXPECT_EQ(NAME_OF(window.book->Button1), "buttonorange");
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, KnownEntryIsCountedAndTheNextAsked) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(LEFT, &window);
  EXPECT_EQ(window.book->t_posit->QRcum_nb[1], 1);
  EXPECT_EQ(window.book->t_posit->QRcum_err[1], 0);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("Question  2   lesson=aa   err=-1   mx=-1", "first run, d_ok=0   d_nok=0",
                          "  ", "chien", "  ", RULE));
  EXPECT_EQ(LABEL_OF(window.book->Button1), ASK);
  EXPECT_EQ(NAME_OF(window.book->Button1), "buttonyellow");
  EXPECT_EQ(window.book->state, 1);
  EXPECT_EQ(window.book->active, 1);
}

TEST_F(QuizDrill, NotKnownEntryIsCountedAsMissed) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(RIGHT, &window);
  EXPECT_EQ(window.book->t_posit->QRcum_nb[1], 0);
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 1);
  EXPECT_EQ(window.book->t_posit->QRcum_err[1], 9);
}

TEST_F(QuizDrill, SecondRunIsToldInTheHeading) {
  Test_window window(TWO_LESSONS());
  start(&window);
  for (int i = 0; i < 3; i++)
    answer(RIGHT, &window);
  EXPECT_EQ(line_with("second run", window), "second run, d_ok=0   d_nok=1");
}

TEST_F(QuizDrill, SkippedResponseIsNotRecordedAndSaysSo) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(MIDDLE, &window);
  EXPECT_EQ(window.book->t_posit->QRcum_nb[1], 0);
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 0);
  std::vector<std::string> lines = window.pane_lines();
  EXPECT_EQ(lines[0], "Recording of previous Q/R skipped");
  EXPECT_THAT(lines[1], StartsWith("Question  "));
  EXPECT_EQ(window.book->nb_line, static_cast<int>(lines.size()) - 1);
  answer(LEFT, &window);
  EXPECT_THAT(window.pane_lines(), Not(Contains("Recording of previous Q/R skipped")));
}

TEST_F(QuizDrill, MiddlePressOnAQuestionTakesTheVerdictBack) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(RIGHT, &window);
  std::vector<std::string> lines = window.pane_lines();
  window.press(window.book->Button1, MIDDLE);
  EXPECT_EQ(window.book->t_posit->QRcum_err[1], -1);
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 0);
  EXPECT_EQ(window.book->nb_line, static_cast<int>(lines.size()));
  lines.push_back("Record of preceding Q/R erased");
  EXPECT_EQ(window.pane_lines(), lines);
  EXPECT_EQ(window.book->state, 1);
  EXPECT_EQ(window.book->active, 1);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, SecondMiddlePressIsRefused) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(RIGHT, &window);
  window.press(window.book->Button1, MIDDLE);
  std::vector<std::string> lines = window.pane_lines();
  EXPECT_THAT(said([&] { window.press(window.book->Button1, MIDDLE); }),
              HasSubstr("new_ord=-1 jcontm=-1 is undefined ok_nok return\n"));
  EXPECT_EQ(window.pane_lines(), lines);
  EXPECT_EQ(window.book->active, 1);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, MiddlePressBeforeAnyVerdictIsRefused) {
  Test_window window(TWO_LESSONS());
  start(&window);
  EXPECT_THAT(said([&] { window.press(window.book->Button1, MIDDLE); }),
              HasSubstr("jcontm=-1 is undefined ok_nok return\n"));
}

// What is undone after it was recorded would have counts below those of the file, which ends the
// program at the next recording.
TEST_F(QuizDrill, RecordedVerdictIsNotTakenBackWhenItsComposedLessonBeginsAgain) {
  Test_window window(TWO_LESSONS());
  window.type("!new");
  start(&window);
  answer(RIGHT, &window);
  window.dialogs.will_answer(GTK_RESPONSE_YES);
  window.type("!help"); // the composed lesson stays the current one
  window.press(window.book->Button1, LEFT);
  start(&window);
  ASSERT_EQ(window.book->start_lesson, 3);
  EXPECT_THAT(said([&] { window.press(window.book->Button1, MIDDLE); }),
              HasSubstr("jcontm=-1 is undefined ok_nok return\n"));
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 1);
  window.dialogs.will_answer(GTK_RESPONSE_YES);
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->ilesson, 1);
}

TEST_F(QuizDrill, NoteOfAnUndoneVerdictGoesWithTheNextClearing) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(RIGHT, &window);
  window.press(window.book->Button1, MIDDLE);
  answer(LEFT, &window);
  EXPECT_THAT(window.pane_lines(), Not(Contains("Record of preceding Q/R erased")));
  EXPECT_EQ(window.book_lines(), window.pane_lines());
}

TEST_F(QuizDrill, OtherDirectionSwapsTheSidesAndTheirTitles) {
  Test_window window(TWO_LESSONS());
  window.book->sens_qr = 2;
  start(&window);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("Sound is ON now", "  ", "3  words in lesson  1 mn=-1 mx=-1",
                          "Response  1   lesson=aa   err=-1   mx=-1", "first run, d_ok=0   d_nok=0",
                          "  ", "cat", "  ", RULE));
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(line_with("Question", window), "Question  1");
  EXPECT_THAT(window.pane_lines(), Contains("chat"));
  window.press(window.book->Button1, RIGHT);
  EXPECT_EQ(window.book->t_posit->RQcum_nok[1], 1);
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 0);
}

TEST_F(QuizDrill, PressOfAnotherMouseButtonChangesNothing) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  std::vector<std::string> lines = window.pane_lines();
  window.press(window.book->Button1, 8);
  EXPECT_EQ(window.pane_lines(), lines);
  EXPECT_EQ(window.book->state, 2);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, EventsOfADoubleClickAreNoPresses) {
  Test_window window(TWO_LESSONS());
  start(&window);
  for (GdkEventType type : {GDK_2BUTTON_PRESS, GDK_3BUTTON_PRESS}) {
    GdkEvent event = event_of(type, LEFT);
    EXPECT_EQ(callback_ok_nok(window.book->Button1, &event, window.book), FALSE);
  }
  EXPECT_EQ(window.book->state, 1);
}

TEST_F(QuizDrill, OnlyTheMouseButtonOfAnEventIsLookedAt) {
  Test_window window(TWO_LESSONS());
  start(&window);
  GdkEvent event = event_of(GDK_NOTHING, LEFT);
  callback_ok_nok(window.book->Button1, &event, window.book);
  EXPECT_EQ(window.book->state, 2);
}

TEST_F(QuizDrill, DoublePressCountsOnce) {
  Test_window window(TWO_LESSONS());
  start(&window);
  // The button takes no press until the very end: the second one never reaches the drill.
  EXPECT_THAT(said([&] { window.press_twice(window.book->Button1, LEFT); }),
              Not(HasSubstr("ejected")));
  EXPECT_EQ(window.book->state, 2);
  EXPECT_EQ(window.book->t_posit->elem_nevez[0], 0);
}

TEST_F(QuizDrill, DoublePressCountsOnceWithTheRealPause) {
  USE_REAL_PAUSE();
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press_twice(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->state, 2);
}

TEST_F(QuizDrill, PressTakesAThirdOfASecondOfProcessorTime) {
  USE_REAL_PAUSE();
  Test_window window(TWO_LESSONS());
  start(&window);
  clock_t before = clock();
  window.press(window.book->Button1, LEFT);
  EXPECT_GT(3 * (clock() - before), 999999);
}

TEST_F(QuizDrill, ButtonStandsUpAgainAfterItsPress) {
  Test_window window(TWO_LESSONS());
  start(&window);
  EXPECT_NE(gtk_widget_get_state(window.book->Button1), GTK_STATE_ACTIVE);
  window.press(window.book->Button1, LEFT);
  EXPECT_NE(gtk_widget_get_state(window.book->Button1), GTK_STATE_ACTIVE);
}

TEST_F(QuizDrill, InactiveButtonIgnoresItsPress) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.book->active = 0;
  EXPECT_EQ(said([&] { window.press(window.book->Button1, LEFT); }),
            "callback_ok_nok ejected active = 0 \n");
  EXPECT_EQ(window.book->state, 1);
  EXPECT_EQ(window.book->active, 0);
}

TEST_F(QuizDrill, PressInsideAPressIsIgnoredThoughATogglePressFreedTheButton) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_press(window.book->button_sound, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  EXPECT_THAT(said([&] { window.handle(); }), HasSubstr("callback_ok_nok ejected active = 0 \n"));
  EXPECT_EQ(window.book->state, 1);
  EXPECT_EQ(window.book->QR_no, 2);
  EXPECT_EQ(window.book->sound, 0);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, NextInTheQueueOfAVerdictWins) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_press(window.button("Next"), LEFT);
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.handle();
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "Confirm display of lesson 2", "bb", "  ", RULE));
  EXPECT_EQ(window.book->t_posit->nb_posit, 0);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, DrillOfTheNextLessonBeginsWithAQuestion) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT); // a response is on screen
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.press(window.button("Next"), LEFT);
  start(&window);
  EXPECT_THAT(line_with("Question", window), StartsWith("Question  1   lesson=bb"));
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->state, 2);
  EXPECT_THAT(window.pane_lines(), Contains("apple"));
}

TEST_F(QuizDrill, QuitInTheQueueOfAVerdictEndsQuietly) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, RIGHT);
  window.queue_press(window.button("Quit"), LEFT);
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 1);
  EXPECT_EQ(window.pane_lines().size(), 0u);
}

TEST_F(QuizDrill, CloseInTheQueueOfAVerdictEndsQuietly) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, RIGHT);
  window.queue_close();
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.alive());
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 1);
}

TEST_F(QuizDrill, CloseInTheQueueOfAResponseEndsQuietly) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_close();
  window.handle();
  EXPECT_FALSE(window.alive());
}

TEST_F(QuizDrill, CloseInTheQueueOfAnUndoEndsQuietly) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(RIGHT, &window);
  window.queue_press(window.book->Button1, MIDDLE);
  window.queue_close();
  window.handle();
  EXPECT_FALSE(window.alive());
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 0);
}

TEST_F(QuizDrill, NothingBehindQuitInTheQueueIsHandled) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, RIGHT);
  window.queue_press(window.button("Quit"), LEFT);
  window.queue_press(window.button("Next"), LEFT);
  window.queue_press(window.book->button_sound, LEFT);
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.handle();
  EXPECT_TRUE(window.ended());
  EXPECT_EQ(window.book->ilesson, 1);
  EXPECT_EQ(window.book->start_lesson, 3);
  EXPECT_EQ(window.book->sound, 1);
}

TEST_F(QuizDrill, CommandInTheQueueOfAVerdictWins) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  use_command(&window);
  window.queue_press(window.book->Button1, MIDDLE);
  window.queue_keys("nix\n");
  window.handle();
  EXPECT_THAT(window.pane_lines(),
              ElementsAre("  ", "code is unknown,", "retour ancienne le\303\247on :", "  ",
                          "Confirm display of lesson 1", "aa", "  ", RULE));
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_EQ(window.book->t_posit->nb_posit, 0);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST_F(QuizDrill, CommandUnderAResponseLeavesTheButtonsLabelToTheNextLesson) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  use_command(&window);
  window.queue_keys("nix\n");
  window.handle();
  start(&window);
  EXPECT_EQ(window.book->state, 1);
  EXPECT_THAT(line_with("Question", window), StartsWith("Question  1   lesson=aa"));
  EXPECT_EQ(LABEL_OF(window.book->Button1), JUDGE);
  answer(LEFT, &window);
  EXPECT_EQ(window.book->t_posit->QRcum_nb[1], 1);
  EXPECT_EQ(LABEL_OF(window.book->Button1), ASK);
}

TEST_F(QuizDrill, DirectionInTheQueueOfAVerdictWaitsForTheNextOne) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.queue_press(window.book->Button1, LEFT);
  window.queue_press(window.book->button_qr, LEFT);
  window.handle();
  EXPECT_EQ(window.book->sens_qr, 1);
  EXPECT_EQ(window.book->sens_qrm, 1);
  EXPECT_EQ(window.book->toggle_sens_qr, 1);
  EXPECT_EQ(LABEL_OF(window.book->button_qr), "R->Q");
  EXPECT_THAT(window.pane_lines(), Contains("chien"));
}

TEST_F(QuizDrill, SoundNoticeComesOnlyWhenTheSoundHasChanged) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(LEFT, &window);
  EXPECT_EQ(line_with("Sound is", window), "");
  window.press(window.book->button_sound, LEFT);
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(line_with("Sound is", window), "Sound is OFF now");
}

TEST_F(QuizDrill, HeardQuestionShowsItsSoundsNameAndIsWrittenWithItsResponse) {
  Test_window window(
      {{"mertu.conf", CONFIGURATION({"a.txt"})},
       {"a.txt", "!# aa\n# chat * Q2\n<() chat.wav\nQ> chat\nR> cat\n# END_OF_FILE\n"}});
  start(&window);
  EXPECT_THAT(window.pane_lines(), Contains("chat.wav"));
  EXPECT_THAT(window.pane_lines(), Contains("(2)"));
  EXPECT_THAT(window.pane_lines(), Not(Contains("chat")));
  fflush(window.book->fp_log);
  EXPECT_THAT(window.dir().read("mertu_log"),
              HasSubstr("DISPLAY_QR snd_file=chat.wav not found \n"));
  window.press(window.book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(), Contains("chat"));
  EXPECT_THAT(window.pane_lines(), Contains("cat"));
}

TEST_F(QuizDrill, SoundThatIsFoundIsNotReported) {
  Test_window window(
      {{"mertu.conf", CONFIGURATION({"a.txt"})},
       {"chat.wav", ""},
       {"a.txt", "!# aa\n# chat *\n<() chat.wav\nQ> chat\nR> cat\n# END_OF_FILE\n"}});
  start(&window);
  fflush(window.book->fp_log);
  EXPECT_THAT(window.dir().read("mertu_log"), Not(HasSubstr("snd_file")));
}

TEST_F(QuizDrill, WorkingCopyThatIsGoneEndsTheProgram) {
  Test_window window(TWO_LESSONS());
  start(&window);
  remove("CPY/a.txt");
  ENDS_WITH_STATUS(DISPLAY_ARTICLE(window.book), 2,
                   " DISPLAY_ARTICLE fp = NULL Lesson not found stop ! \n");
  EXPECT_THAT(window.dir().read("mertu_log"),
              HasSubstr(" DISPLAY_ARTICLE fp = NULL Lesson not found stop ! \n"));
}

TEST_F(QuizDrill, NoPaneEndsTheProgram) {
  Test_window window(TWO_LESSONS());
  start(&window);
  GtkWidget *v_page = window.book->v_page;
  window.book->v_page = nullptr;
  ENDS_WITH_STATUS(DISPLAY_ARTICLE(window.book), 1, "DISPLAY_ARTICLE v_page= NULL error \n");
  window.book->v_page = v_page;
}

TEST_F(QuizDrill, EntryHeavierThanRankOneHasTheOrderingChecked) {
  Test_window window(TWO_LESSONS());
  start(&window);
  answer(RIGHT, &window);                   // entry 1: 9
  answer(RIGHT, &window);                   // entry 2: 9
  window.book->t_posit->QRcum_err[2] = 300; // rank 3, heavier than rank 2
  window.book->t_posit->elem_nevez[2] = 0;  // and due again
  window.book->t_posit->elem_nevez[3] = 1;
  SET_RAND({0});
  ENDS_WITH_STATUS(DISPLAY_ARTICLE(window.book);
                   DISPLAY_ARTICLE(window.book), 11, "VERIF_CLASSMENT Sens QR error present");
}

TEST_F(QuizDrill, ResponseWithoutAStreamIsLogged) {
  Test_window window(TWO_LESSONS());
  start(&window);
  DROP_STREAM(window.book);
  window.press(window.book->Button1, LEFT);
  fflush(window.book->fp_log);
  EXPECT_THAT(window.dir().read("mertu_log"), HasSubstr("DISPLAY_QR error 1 lecture \n"));
  EXPECT_EQ(window.book->state, 2);
}
