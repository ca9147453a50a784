// The buttons "Quit", "Prev" and "Next".
#include "app/navigation.h"

#include "quiz/confirm_lesson.h"
#include "quiz/pane.h"

namespace {

// Announces another lesson. The drill that ran is left behind.
void announce(long ilesson, Trf_book *book) {
  book->ilesson = (int)ilesson;
  book->start_lesson = 0;
  CONFIRM0_LESSON(book);
}

} // namespace

void ON_QUIT(GtkWidget *, Trf_book *) {
  LESSON_MOVES_ON();
  if (gtk_main_level() > 0)
    gtk_main_quit();
}

// QUIRK lessons below one: for the numbers 0 and below, "Next" and "Prev" are no mirror images
// (from 0 to 1 and to the last lesson, from -3 to 4 and to 2). A reader would take one of the two
// for a slip; both are meant. Test: Navigation.NumbersBelowOneMoveToTheirOwnNeighbours
void cback_next_less(GtkWidget *, Trf_book *data) {
  SET_ANSWER_BUTTON(true, data);
  long i = data->ilesson;
  i = i < 1 ? 1 - i : i + 1;
  announce(i > data->nbt_lesson ? 1 : i, data);
}

void cback_prev_less(GtkWidget *, Trf_book *data) {
  SET_ANSWER_BUTTON(true, data);
  long i = data->ilesson;
  i = i > 0 ? i - 1 : -i - 1;
  announce(i < 1 ? data->nbt_lesson : i, data);
}
