// How a question is headed and laid out in the quiz pane.
#include "support/prelude.h"

#include "quiz/show_entry.h"

#include "gui/window.h"
#include "quiz/pane.h"
#include "score/position_table.h"
#include "support/present.h"

using testing::ElementsAre;

namespace {

// How a child of a box is packed: "expand fill padding", as in "no no 0".
std::string packing_of(GtkWidget *child) {
  gboolean expand = TRUE;
  gboolean fill = TRUE;
  guint padding = 1;
  GtkPackType side = GTK_PACK_END;
  gtk_box_query_child_packing(GTK_BOX(gtk_widget_get_parent(child)), child, &expand, &fill,
                              &padding, &side);
  EXPECT_EQ(side, GTK_PACK_START);
  return std::string(expand ? "yes" : "no") + (fill ? " yes " : " no ") + std::to_string(padding);
}

// Lesson 1 on screen, its entries known so well that 2 ranks first and 1 last in both directions.
void start_with_scores(Test_window *window) {
  for (int i = 0; i < 2; i++)
    window->press(window->book->Button1, LEFT);
  for (int sens : {1, 2}) {
    Trf_side side = SIDE_OF_TABLE(sens, window->book->t_posit);
    int ranked[] = {0, 2, 3, 1};
    for (int rank = 1; rank <= 3; rank++) {
      side.ord[rank] = ranked[rank];
      side.cum_err[ranked[rank]] = 10 * sens + 9 - 3 * rank;
      side.nb[rank] = 5 * rank;
      side.nb0[rank] = 2 * rank;
      side.nok[rank] = 3 * rank;
      side.nok0[rank] = 1;
    }
  }
}

// The pane as it stands when the lesson begins again in a direction.
std::vector<std::string> first_lines(int sens, Test_window *window) {
  Trf_book *book = window->book;
  book->sens_qr = sens;
  book->start_lesson = 2;
  book->state = 1;
  CLEAR_PANE(book);
  DISPLAY_ARTICLE(book);
  return window->pane_lines();
}

class QuizShow : public testing::Test {
protected:
  ~QuizShow() override {
    SET_RAND({});
  }
};

} // namespace

TEST_F(QuizShow, HeadingTellsTheScoresOfLastAndFirstRank) {
  Test_window window(TWO_LESSONS());
  start_with_scores(&window);
  SET_RAND({2}); // of the entries never asked the third
  EXPECT_THAT(first_lines(1, &window),
              ElementsAre("3  words in lesson  1 mn=10 mx=16",
                          "Question  3   lesson=aa   err=13   mx=16", "first run, d_ok=9   d_nok=8",
                          "  ", "vache", "  ", "=============================="));
  EXPECT_EQ(window.book->QR_no, 3);
  EXPECT_EQ(window.book->QR_order, 2);
  EXPECT_EQ(window.book->sens_qrm, 1);
}

TEST_F(QuizShow, HeadingOfTheOtherDirectionHasItsOwnNumbers) {
  Test_window window(TWO_LESSONS());
  start_with_scores(&window);
  SET_RAND({0});
  EXPECT_THAT(first_lines(2, &window),
              ElementsAre("3  words in lesson  1 mn=20 mx=26",
                          "Response  1   lesson=aa   err=20   mx=26", "first run, d_ok=3   d_nok=2",
                          "  ", "cat", "  ", "=============================="));
  EXPECT_EQ(window.book->QR_order, 3);
  EXPECT_EQ(window.book->sens_qrm, 2);
}

TEST_F(QuizShow, LinesAreAddedBelowOneAnotherWithoutRoomBetween) {
  Test_window window(TWO_LESSONS());
  Trf_book *book = window.book;
  ASSERT_GT(book->nb_line, 1);
  for (int i = 0; i < book->nb_line; i++) {
    EXPECT_TRUE(GTK_IS_HBOX(book->lbox2[i]));
    EXPECT_EQ(gtk_widget_get_parent(book->lbox2[i]), book->v_page);
    EXPECT_EQ(gtk_widget_get_parent(book->wbutton[i]), book->lbox2[i]);
    EXPECT_EQ(packing_of(book->lbox2[i]), "no no 0");
    EXPECT_TRUE(gtk_widget_get_visible(book->lbox2[i]));
    EXPECT_TRUE(gtk_widget_get_visible(book->wbutton[i]));
  }
}
