// Leaving a drill: the real question in the real window, and what the next start finds.
#include "support/prelude.h"

#include <locale.h>

#include <memory>

#include "app/gtk_dialogs.h"
#include "config/registry.h"
#include "gui/program.h"
#include "gui/window.h"
#include "util/dialogs.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char QUESTION[] = "Voulez-vous enregistrer la le\303\247on 1 ?";
const char FORGET[] = "Really forget history of lesson : \n \n ./a.txt ?";
const char IDX1[] = "IDX1/idx1_a.txt";

// A window in whose lesson 1 one word has been known and one not.
class Drilled : public Test_window {
public:
  explicit Drilled(const Test_files &files = TWO_LESSONS()) : Test_window(files) {
    for (int button : {LEFT, LEFT, LEFT, LEFT, LEFT, RIGHT}) // describe, start, two answers
      press(book->Button1, button);
    before = dir().read(IDX1);
  }
  // Answers the questions so, one after the other, and presses the button.
  void leave(const std::string &label, const std::vector<int> &responses) {
    for (int response : responses)
      dialogs.will_answer(response);
    press(button(label), LEFT);
  }
  // Gives the window another place and size.
  void place(int x, int y, int width, int height, int divider) {
    gtk_window_move(GTK_WINDOW(book->pWindow), x, y);
    gtk_window_resize(GTK_WINDOW(book->pWindow), width, height);
    handle(); // the divider keeps its share while the window grows
    gtk_paned_set_position(GTK_PANED(book->hpaned), divider);
    handle();
  }
  // The texts of the dialogs so far.
  std::vector<std::string> asked() const {
    std::vector<std::string> texts;
    for (const Seen_dialog &dialog : dialogs.seen)
      texts.push_back(dialog.text);
    return texts;
  }
  std::string idx1() const {
    return dir().read(IDX1);
  }

  std::string before; // the index before the drill
};

// The program as a process of its own, in the drill of lesson 1, the question of "Quit" standing.
class Leaving_program {
public:
  explicit Leaving_program(const std::string &locale = "C.UTF-8") : locale_(locale) {
    for (const auto &[name, bytes] : TWO_LESSONS())
      dir.write(name, bytes);
    start();
    asked = ask();
  }
  // Starts the program, or starts it again.
  void start() {
    const std::vector<std::string> settings = {"MERTU_TRACE=1", "LC_ALL=" + locale_};
    program = std::make_unique<Program>("./prog.x", dir.path(), settings);
  }

  Scratch_dir dir;
  std::unique_ptr<Program> program;
  bool asked = false; // the question came up as it should
  std::string before; // what the program had said when "Quit" was pressed

private:
  bool ask() {
    const std::string answer = "  Question / Response ";
    const std::string ready = "button " + answer + " at ";
    if (!program->says("button ReDr at ") ||
        !program->press(answer, {"pane: Confirm learning", ready}) ||
        !program->press(answer, {"pane: Question", ready}))
      return false;
    before = program->output();
    return program->press("Quit", {std::string("dialog: ") + QUESTION, "button Yes at ",
                                   "button No at ", "button RAZ ? at "});
  }
  std::string locale_;
};

// How many history lines of an index tell of an answer.
int nb_answered(const std::string &idx1) {
  int nb = 0;
  for (size_t at = 0; (at = idx1.find("     1      ;", at)) != std::string::npos; at++)
    nb++;
  return nb;
}

} // namespace

TEST(Leave, EachButtonAsksWithTheSameThreeButtons) {
  for (const char *label : {"Next", "Prev", "Quit"}) {
    Drilled window;
    window.leave(label, {GTK_RESPONSE_NO});
    ASSERT_THAT(window.asked(), ElementsAre(QUESTION)) << label;
    const Seen_dialog &dialog = window.dialogs.seen[0];
    EXPECT_EQ(dialog.type, GTK_MESSAGE_QUESTION);
    EXPECT_TRUE(dialog.modal);
    EXPECT_TRUE(dialog.of_window);
    EXPECT_THAT(dialog.buttons, testing::UnorderedElementsAre("Yes", "No", "RAZ ?"));
  }
}

TEST(Leave, YesRecordsTheLessonThatIsLeft) {
  for (const char *label : {"Next", "Prev", "Quit"}) {
    Drilled window;
    window.leave(label, {GTK_RESPONSE_YES});
    EXPECT_EQ(nb_answered(window.idx1()), 2) << label;
    EXPECT_EQ(window.idx1().size(), window.before.size());
    fflush(window.book->fp_log);
    EXPECT_THAT(window.dir().read("mertu_log"), HasSubstr("RECORD_LESSON 1 DONE  nb_errors=0\n"));
  }
}

TEST(Leave, NoAndAClosedQuestionRecordNothing) {
  for (int response : {(int)GTK_RESPONSE_NO, (int)GTK_RESPONSE_DELETE_EVENT})
    for (const char *label : {"Next", "Quit"}) {
      Drilled window;
      window.leave(label, {response});
      EXPECT_EQ(window.idx1(), window.before);
      EXPECT_EQ(window.ended(), label == std::string("Quit"));
      EXPECT_EQ(window.book->ilesson, window.ended() ? 1 : 2);
    }
}

TEST(Leave, RazAsksWhetherToForgetTheDictionary) {
  Drilled window;
  window.leave("Next", {GTK_RESPONSE_OK, GTK_RESPONSE_NO});
  EXPECT_THAT(window.asked(), ElementsAre(QUESTION, FORGET));
  const Seen_dialog &dialog = window.dialogs.seen[1];
  EXPECT_EQ(dialog.type, GTK_MESSAGE_QUESTION);
  EXPECT_TRUE(dialog.modal);
  EXPECT_TRUE(dialog.of_window);
  EXPECT_THAT(dialog.buttons, testing::UnorderedElementsAre("Yes", "No"));
  EXPECT_EQ(nb_answered(window.idx1()), 2); // No: recorded
}

TEST(Leave, RazForgetsTheLessonOnYesAndOnAClosedQuestion) {
  for (int response : {(int)GTK_RESPONSE_YES, (int)GTK_RESPONSE_DELETE_EVENT}) {
    Drilled window;
    window.leave("Quit", {GTK_RESPONSE_OK, response});
    EXPECT_EQ(nb_answered(window.idx1()), 0);
    EXPECT_NE(window.idx1(), window.before);
    EXPECT_TRUE(window.dir().exists("mertu_erased"));
  }
}

TEST(Leave, WhatWasForgottenIsWholeWhenTheLessonIsStartedAgain) {
  Drilled window;
  window.leave("Prev", {GTK_RESPONSE_OK, GTK_RESPONSE_YES});
  window.press(window.button("Next"), LEFT);
  for (int i = 0; i < 2; i++)
    window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->start_lesson, 3);
  EXPECT_EQ(window.idx1(), window.before);
  EXPECT_FALSE(window.dir().exists("mertu_erased"));
}

TEST(Leave, BeforeTheDrillNothingIsAsked) {
  for (const char *label : {"Next", "Prev", "Quit"})
    for (int step : {0, 1, 2}) {
      Test_window window(TWO_LESSONS());
      if (step == 2)
        window.press(window.book->Button1, LEFT);
      window.book->start_lesson = step;
      window.press(window.button(label), LEFT);
      EXPECT_THAT(window.dialogs.seen, IsEmpty());
    }
}

TEST(Leave, OnlyQuitAsksAboutALessonOutsideTheList) {
  for (int ilesson : {-3, 7}) {
    Drilled window;
    window.book->ilesson = ilesson;
    window.press(window.button("Next"), LEFT);
    EXPECT_THAT(window.asked(), IsEmpty());
  }
  Drilled window;
  window.book->ilesson = -3;
  window.leave("Quit", {GTK_RESPONSE_YES});
  EXPECT_THAT(window.asked(), ElementsAre("Voulez-vous enregistrer la le\303\247on -3 ?"));
  EXPECT_EQ(window.idx1(), window.before);
}

TEST(Leave, TheQuestionReadsTheSameInEveryLocale) {
  std::string now = setlocale(LC_ALL, nullptr);
  for (const char *locale : {"C", "C.UTF-8"}) {
    ASSERT_NE(setlocale(LC_ALL, locale), nullptr) << locale;
    Drilled window;
    window.leave("Next", {GTK_RESPONSE_NO});
    EXPECT_THAT(window.asked(), ElementsAre(QUESTION)) << locale;
  }
  setlocale(LC_ALL, now.c_str());
}

TEST(Leave, TheProgramsQuestionReadsTheSameInEveryLocale) {
  for (std::string locale : {"C", "C.UTF-8"}) {
    Leaving_program leaving(locale);
    EXPECT_TRUE(leaving.asked) << leaving.program->output();
    EXPECT_TRUE(leaving.program->press("No"));
    EXPECT_EQ(leaving.program->status(), 0) << leaving.program->output();
    EXPECT_TRUE(leaving.dir.exists("Mertu_last_state"));
  }
}

TEST(Leave, QuitListsTheOrderingsBeforeItAsks) {
  Leaving_program leaving;
  ASSERT_TRUE(leaving.asked) << leaving.program->output();
  std::string since = leaving.program->output().substr(leaving.before.size());
  size_t question = since.find(QUESTION);
  EXPECT_LT(since.find("SORT_CLASSMENT QR rank=1 "), question);
  EXPECT_LT(since.find("SORT_CLASSMENT RQ rank=3 "), question);
}

TEST(Leave, AProgramThatEndsUnderTheQuestionLeavesNoLastState) {
  Leaving_program leaving;
  ASSERT_TRUE(leaving.asked) << leaving.program->output();
  leaving.program.reset();
  EXPECT_FALSE(leaving.dir.exists("Mertu_last_state"));
  leaving.start();
  EXPECT_TRUE(leaving.program->says("pane: Confirm display of lesson 1"));
  EXPECT_TRUE(leaving.program->says("button ReDr at "));
  EXPECT_TRUE(leaving.program->press("Quit"));
  EXPECT_EQ(leaving.program->status(), 0) << leaving.program->output();
  EXPECT_THAT(leaving.dir.read("Mertu_last_state"), HasSubstr("  1    Last lesson\n"));
  EXPECT_FALSE(leaving.dir.exists("Mertu_last_state.new"));
}

TEST(Leave, ALastStateThatCannotTakeItsNameEndsTheProgramAndIsTold) {
  Leaving_program leaving;
  ASSERT_TRUE(leaving.asked) << leaving.program->output();
  std::filesystem::create_directory(leaving.dir.path() + "/Mertu_last_state");
  EXPECT_TRUE(leaving.program->press("No"));
  EXPECT_EQ(leaving.program->status(), 1);
  const char told[] = "cannot write file Mertu_last_state: Is a directory \n";
  EXPECT_THAT(leaving.program->output(), HasSubstr(told));
  EXPECT_THAT(leaving.dir.read("mertu_log"), HasSubstr(told));
  EXPECT_FALSE(leaving.dir.exists("Mertu_last_state.new"));
}

TEST(Leave, WhileTheQuestionStandsTheWindowTakesNothing) {
  for (const char *label : {"Next", "Quit"}) {
    Drilled window;
    window.dialogs.will_do([&](GtkWidget *dialog) {
      for (const char *other : {"Next", "Prev", "Quit", "< XX", "<)))"})
        if (GtkWidget *button = window.button(other))
          window.queue_press(button, LEFT);
      window.queue_press(window.book->Button1, RIGHT);
      window.queue_close();
      QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
    });
    window.press(window.button(label), LEFT);
    EXPECT_THAT(window.asked(), ElementsAre(QUESTION));
    EXPECT_TRUE(window.alive());
    EXPECT_EQ(window.book->sound, 1);
    EXPECT_EQ(window.book->ilesson, label == std::string("Next") ? 2 : 1);
    EXPECT_EQ(window.book->start_lesson, label == std::string("Next") ? 1 : 3);
    EXPECT_EQ(window.ended(), label == std::string("Quit"));
  }
}

TEST(Leave, WhatIsPressedBehindTheAnswerIsForTheNextLesson) {
  Drilled window;
  window.dialogs.will_do([&](GtkWidget *dialog) {
    QUEUE_ANSWER(dialog, GTK_RESPONSE_YES);
    window.queue_press(window.button("Next"), LEFT);
    window.queue_press(window.book->Button1, LEFT);
  });
  window.press(window.button("Prev"), LEFT);
  EXPECT_EQ(window.book->ilesson, 1); // Prev to 2, Next to 1
  EXPECT_EQ(window.book->start_lesson, 2);
  EXPECT_EQ(nb_answered(window.idx1()), 2);
}

TEST(Leave, AWindowThatGoesWhileTheQuestionStandsEndsItQuietly) {
  for (const char *label : {"Next", "Prev", "Quit"}) {
    Drilled window;
    window.dialogs.will_do([&](GtkWidget *) { gtk_widget_destroy(window.book->pWindow); });
    window.press(window.button(label), LEFT);
    EXPECT_TRUE(window.ended());
    EXPECT_FALSE(window.alive());
    EXPECT_EQ(window.book->ilesson, 1);
    EXPECT_EQ(window.book->start_lesson, 3);
    EXPECT_EQ(window.idx1(), window.before);
    EXPECT_FALSE(window.dir().exists("Mertu_last_state"));
    EXPECT_FALSE(window.dir().exists("Mertu_last_state.new"));
  }
}

TEST(Leave, AWindowThatGoesUnderTheSecondQuestionForgetsNothing) {
  Drilled window;
  window.dialogs.will_answer(GTK_RESPONSE_OK);
  window.dialogs.will_do([&](GtkWidget *) { gtk_widget_destroy(window.book->pWindow); });
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.asked().size(), 2u);
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.dir().exists("mertu_erased"));
  EXPECT_EQ(window.book->ilesson, 1);
}

TEST(Leave, QuitWritesWhereSheIs) {
  Drilled window;
  window.place(30, 40, 900, 600, 560);
  window.press(window.book->button_qr, LEFT);
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, LEFT); // from now on the other direction
  window.leave("Quit", {GTK_RESPONSE_NO});
  EXPECT_TRUE(window.ended());
  EXPECT_EQ(window.dir().read("Mertu_last_state"),
            "  1    Last lesson\n"
            "  2   Sense of Q and R \n"
            "  30  40   Position of main window left upper corner\n"
            "  900  600   Size of main window width height\n"
            "  560   Width of book window \n" +
                std::string(window.book->G_kentel->st_lesson) + "\n");
  EXPECT_FALSE(window.dir().exists("Mertu_last_state.new"));
}

TEST(Leave, TheNextStartOpensWhereSheLeft) {
  Test_files files;
  {
    Drilled window;
    window.place(30, 40, 900, 600, 560);
    window.leave("Next", {GTK_RESPONSE_NO});
    window.press(window.book->button_qr, LEFT);
    window.press(window.button("Quit"), LEFT);
    files = FILES_OF(window.dir());
  }
  Test_window window(files);
  EXPECT_FALSE(window.dir().exists("Mertu_last_state"));
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(LABEL_OF(window.book->button_qr), "R->Q");
  EXPECT_THAT(window.pane_lines(), Contains("Confirm display of lesson 2"));
  int values[4] = {};
  gtk_window_get_position(GTK_WINDOW(window.book->pWindow), &values[0], &values[1]);
  gtk_window_get_size(GTK_WINDOW(window.book->pWindow), &values[2], &values[3]);
  EXPECT_THAT(values, ElementsAre(30, 40, 900, 600));
  EXPECT_EQ(gtk_paned_get_position(GTK_PANED(window.book->hpaned)), 560);
  EXPECT_EQ(window.book->fp, nullptr);
  EXPECT_EQ(window.book->exfp, 0);
}

TEST(Leave, AChangedConfigurationStartsWithLessonOneInHerWindow) {
  Test_files files;
  {
    Drilled window;
    window.leave("Next", {GTK_RESPONSE_NO});
    window.press(window.book->button_qr, LEFT);
    window.place(30, 40, 900, 600, 560);
    window.press(window.button("Quit"), LEFT);
    files = FILES_OF(window.dir());
  }
  Test_window window(files, [] {
    namespace fs = std::filesystem;
    fs::last_write_time("mertu.conf",
                        fs::last_write_time("Mertu_last_state") + std::chrono::seconds(5));
  });
  EXPECT_EQ(window.book->ilesson, 1);
  EXPECT_EQ(window.book->sens_qr, 2);
  int width = 0;
  gtk_window_get_size(GTK_WINDOW(window.book->pWindow), &width, nullptr);
  EXPECT_EQ(width, 900);
}

TEST(Leave, AnEndOtherThanQuitLeavesNoLastState) {
  Test_window window(TWO_LESSONS());
  window.close();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.dir().exists("Mertu_last_state"));
}

TEST(Leave, QuitEndsThoughTheLastStateCannotBeWritten) {
  Drilled window;
  std::filesystem::create_directory("Mertu_last_state");
  window.leave("Quit", {GTK_RESPONSE_YES});
  EXPECT_TRUE(window.ended());
  EXPECT_EQ(nb_answered(window.idx1()), 2);
  EXPECT_TRUE(std::filesystem::is_empty("Mertu_last_state"));
}

TEST(Leave, QuitOpensTheNewLastStateBeforeItAsks) {
  Drilled window;
  bool beside = false;
  window.dialogs.will_do([&](GtkWidget *dialog) {
    beside = window.dir().exists("Mertu_last_state.new");
    EXPECT_FALSE(window.dir().exists("Mertu_last_state"));
    QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
  });
  window.press(window.button("Quit"), LEFT);
  EXPECT_TRUE(beside);
}

// The dialogs themselves.

TEST(GtkDialogs, ANoticeShowsItsTextAndWaitsForOk) {
  Test_window window(TWO_LESSONS());
  for (auto [kind, type] :
       {std::pair(NOTICE_ERROR, GTK_MESSAGE_ERROR), {NOTICE_WARNING, GTK_MESSAGE_WARNING}}) {
    window.dialogs.seen.clear();
    window.dialogs.will_answer(GTK_RESPONSE_OK);
    static Trf_notice notice;
    notice = kind;
    g_idle_add(
        [](gpointer book) -> gboolean {
          TELL_LEARNER(notice, "100 % of the le\347on: \200 \234\n", static_cast<Trf_book *>(book));
          return FALSE;
        },
        window.book);
    window.handle();
    ASSERT_EQ(window.dialogs.seen.size(), 1u);
    const Seen_dialog &dialog = window.dialogs.seen[0];
    EXPECT_EQ(dialog.text, "100 % of the le\303\247on: \342\202\254 \305\223\n");
    EXPECT_EQ(dialog.type, type);
    EXPECT_TRUE(dialog.modal);
    EXPECT_TRUE(dialog.of_window);
    EXPECT_THAT(dialog.buttons, ElementsAre("OK"));
  }
}

TEST(GtkDialogs, AByteThatStandsForNothingIsShownByASign) {
  Test_window window(TWO_LESSONS());
  window.dialogs.will_answer(GTK_RESPONSE_OK);
  g_idle_add(
      [](gpointer book) -> gboolean {
        TELL_LEARNER(NOTICE_ERROR, "le\347on \201", static_cast<Trf_book *>(book));
        return FALSE;
      },
      window.book);
  window.handle();
  ASSERT_EQ(window.dialogs.seen.size(), 1u);
  EXPECT_EQ(window.dialogs.seen[0].text, "le\303\247on \357\277\275");
}

TEST(GtkDialogs, AQuestionThatGoesWithItsWindowIsAnsweredNo) {
  for (Trf_question kind : {QUESTION_RECORD, QUESTION_FORGET}) {
    Test_window window(TWO_LESSONS());
    window.dialogs.will_do([&](GtkWidget *) { gtk_widget_destroy(window.book->pWindow); });
    struct {
      Trf_book *book;
      Trf_question kind;
      Trf_answer answer;
    } question = {window.book, kind, ANSWER_YES};
    auto ask = [](gpointer data) -> gboolean {
      auto *asked = static_cast<decltype(question) *>(data);
      asked->answer = ASK_LEARNER(asked->kind, "?", asked->book);
      return FALSE;
    };
    g_idle_add(ask, &question);
    window.handle();
    EXPECT_TRUE(window.ended());
    EXPECT_EQ(question.answer, ANSWER_NO);
  }
}

TEST(GtkDialogs, WithoutAWindowAQuestionIsAnsweredNoAndANoticeGoesUnseen) {
  REGISTER_GTK_DIALOGS();
  Trf_book book = {};
  EXPECT_EQ(ASK_LEARNER(QUESTION_RECORD, "?", &book), ANSWER_NO);
  EXPECT_EQ(ASK_LEARNER(QUESTION_FORGET, "?", &book), ANSWER_NO);
  TELL_LEARNER(NOTICE_ERROR, "!", &book);
}
