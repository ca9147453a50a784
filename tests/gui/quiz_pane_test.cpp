// The quiz pane: lines written and cleared.
#include "support/prelude.h"

#include "quiz/pane.h"

#include "gui/window.h"

using testing::ElementsAre;

namespace {

class QuizPane : public testing::Test {
protected:
  QuizPane() {
    CLEAR_PANE(window.book);
  }
  void write(std::string text) {
    DISPLAY_LINE(text.data(), &nb_line, &lblanc, window.book);
  }
  Test_window window{TWO_LESSONS()};
  int nb_line = 0;
  int lblanc = 0;
};

} // namespace

TEST_F(QuizPane, LineIsWrittenWithoutTheBlanksAtItsEnds) {
  write("   a b   ");
  EXPECT_THAT(window.pane_lines(), ElementsAre("a b"));
  EXPECT_EQ(nb_line, 1);
  EXPECT_NE(window.book->lbox2[0], nullptr);
  EXPECT_EQ(LABEL_OF(window.book->wbutton[0]), "a b");
  EXPECT_EQ(gtk_widget_get_style(window.book->wbutton[0]), window.book->style);
}

TEST_F(QuizPane, LineOfBlanksShowsTwoBlanks) {
  write("");
  EXPECT_THAT(window.pane_lines(), ElementsAre("  "));
  EXPECT_EQ(lblanc, 1);
}

TEST_F(QuizPane, SecondBlankLineInARowIsDropped) {
  write("a");
  write("  ");
  testing::internal::CaptureStdout();
  write("");
  write("     ");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "DISPLAY_LINE too many blanc lines lblanc=2 \n"
            "DISPLAY_LINE too many blanc lines lblanc=2 \n");
  write("b");
  write("");
  EXPECT_THAT(window.pane_lines(), ElementsAre("a", "  ", "b", "  "));
}

TEST_F(QuizPane, LineTwoHundredAndOneIsNotShown) {
  for (int i = 1; i <= 201; i++)
    write(std::to_string(i));
  EXPECT_EQ(nb_line, 200);
  EXPECT_EQ(window.pane_lines().size(), 200u);
  EXPECT_EQ(window.pane_lines().back(), "200");
}

TEST_F(QuizPane, AccentNotationAndCp1252AreShownAsUtf8) {
  write("\\'et\\'e \351t\351 \222\\");
  EXPECT_THAT(window.pane_lines(), ElementsAre("\303\251t\303\251 \303\251t\303\251 '"));
}

TEST_F(QuizPane, TabsHaveRoomForTheirEightBlanks) {
  write("a\t\t\tb");
  EXPECT_EQ(window.pane_lines()[0], "a" + std::string(24, ' ') + "b");
}

TEST_F(QuizPane, ClearingEmptiesTheWholePane) {
  write("a");
  write("b");
  int uncounted = 1;
  char note[] = "note";
  DISPLAY_LINE(note, &uncounted, &lblanc, window.book);
  window.book->nb_line = nb_line;
  CLEAR_PANE(window.book);
  EXPECT_TRUE(window.pane_lines().empty());
  EXPECT_EQ(window.book->nb_line, 0);
  EXPECT_EQ(window.book->wbutton[0], nullptr);
  EXPECT_EQ(window.book->lbox2[1], nullptr);
}

TEST_F(QuizPane, PaneWithoutCountedLinesIsLeftAsItIs) {
  write("a");
  CLEAR_PANE(window.book); // nb_line of the book is 0
  EXPECT_THAT(window.pane_lines(), ElementsAre("a"));
}

TEST_F(QuizPane, WritingWithoutAPaneShowsNothing) {
  GtkWidget *v_page = window.book->v_page;
  window.book->v_page = nullptr;
  write("a");
  EXPECT_EQ(nb_line, 0);
  window.book->v_page = v_page;
}

TEST_F(QuizPane, GoneWindowLeavesNoPointer) {
  long moment = LESSON_MOMENT();
  write("a");
  gtk_widget_destroy(window.book->pWindow);
  EXPECT_EQ(window.book->pWindow, nullptr);
  EXPECT_EQ(window.book->v_page, nullptr);
  EXPECT_EQ(window.book->Button1, nullptr);
  EXPECT_EQ(window.book->text_view, nullptr);
  EXPECT_EQ(window.book->wbutton[0], nullptr);
  EXPECT_EQ(window.book->lbox2[0], nullptr);
  EXPECT_EQ(window.book->nb_line, 0);
  EXPECT_FALSE(DRAIN_EVENTS(moment, window.book));
  EXPECT_FALSE(DRAIN_EVENTS(LESSON_MOMENT(), window.book));
}

TEST_F(QuizPane, DrainingTellsWhetherTheLessonMovedOn) {
  long moment = LESSON_MOMENT();
  EXPECT_TRUE(DRAIN_EVENTS(moment, window.book));
  LESSON_MOVES_ON();
  EXPECT_FALSE(DRAIN_EVENTS(moment, window.book));
}

TEST_F(QuizPane, DrainingTellsWhetherTheStepOrTheNumberOfTheLessonChanged) {
  auto go_back = [](gpointer step) -> gboolean {
    *static_cast<int *>(step) = 0;
    return FALSE;
  };
  for (int *number : {&window.book->start_lesson, &window.book->ilesson}) {
    g_idle_add(go_back, number);
    EXPECT_FALSE(DRAIN_EVENTS(LESSON_MOMENT(), window.book));
    EXPECT_TRUE(DRAIN_EVENTS(LESSON_MOMENT(), window.book));
  }
}
