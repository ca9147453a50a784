// The buttons "Quit", "Prev" and "Next".
#include "app/navigation.h"

#include "app/last_state.h"
#include "config/registry.h"
#include "quiz/confirm_lesson.h"
#include "quiz/pane.h"
#include "quiz/record_question.h"
#include "score/check_order.h"
#include "util/safe_write.h"

namespace {

// Announces another lesson. The drill that ran is left behind.
void announce(long ilesson, Trf_book *book) {
  book->ilesson = (int)ilesson;
  book->start_lesson = 0;
  CONFIRM0_LESSON(book);
}

// Frees the answer button and asks the record question. False when there is nothing left to move.
bool may_move(Trf_book *book) {
  SET_ANSWER_BUTTON(true, book);
  long moment = LESSON_MOMENT();
  return RECORD_QUESTION_ON_MOVE(book) && moment == LESSON_MOMENT();
}

// What the next start shall find: lesson, direction and the window as it stands now.
Start_State state_now(Trf_book *book) {
  Start_State now = {};
  GtkWindow *window = GTK_WINDOW(book->pWindow);
  now.num_lesson = book->ilesson;
  now.sens_qr = book->sens_qr;
  gtk_window_get_position(window, &now.root_x, &now.root_y);
  gtk_window_get_size(window, &now.root_width, &now.root_height);
  now.width_book = gtk_paned_get_position(GTK_PANED(book->hpaned));
  return now;
}

void write_last_state(Trf_new_file *file, Trf_book *book) {
  if (file->fp == nullptr)
    return;
  Start_State now = state_now(book);
  WRITE_LAST_STATE(&now, book->G_kentel->st_lesson, file->fp);
  COMMIT_OR_STOP(file, "Mertu_last_state", book->fp_log);
}

} // namespace

void ON_QUIT(GtkWidget *, Trf_book *book) {
  SORT_CLASSMENT(book);
  Trf_new_file last_state;
  OPEN_LAST_STATE(&last_state);
  if (book->start_lesson > 2)
    RECORD_QUESTION(book);
  if (book->pWindow == nullptr)
    return;
  write_last_state(&last_state, book);
  LESSON_MOVES_ON();
  if (gtk_main_level() > 0)
    gtk_main_quit();
}

// QUIRK lessons below one: for the numbers 0 and below, "Next" and "Prev" are no mirror images
// (from 0 to 1 and to the last lesson, from -3 to 4 and to 2). A reader would take one of the two
// for a slip; both are meant. Test: Navigation.NumbersBelowOneMoveToTheirOwnNeighbours
void cback_next_less(GtkWidget *, Trf_book *data) {
  if (!may_move(data))
    return;
  long i = data->ilesson;
  i = i < 1 ? 1 - i : i + 1;
  announce(i > data->nbt_lesson ? 1 : i, data);
}

void cback_prev_less(GtkWidget *, Trf_book *data) {
  if (!may_move(data))
    return;
  long i = data->ilesson;
  i = i > 0 ? i - 1 : -i - 1;
  announce(i < 1 ? data->nbt_lesson : i, data);
}
