// (G) The two toggles beside the answer button: direction of questioning, sound.
#include "quiz/toggles.h"

#include "quiz/pane.h"

namespace {

// A drill runs, and the direction can wait for its next verdict.
bool must_wait(const Trf_book *book) {
  // QUIRK direction under a response: pressed while a response is shown, the button changes the
  // direction at once and not with the verdict. One would expect the same waiting as under a
  // question; it is meant: the verdict still counts for the direction that was asked, and the next
  // question comes the other way. Test: QuizToggles.DirectionUnderAResponseChangesAtOnce
  return book->start_lesson > 2 && !(book->start_lesson == 3 && book->state == 2);
}

void set_other_direction(Trf_book *book) {
  book->toggle_sens_qr = 0;
  book->sens_qr = book->sens_qr == 2 ? 1 : 2;
  LABEL_BUTTON(book->button_qr, book->sens_qr == 2 ? "R->Q" : "Q->R", nullptr);
}

void ask_other_direction(Trf_book *book) {
  book->toggle_sens_qr = book->toggle_sens_qr != 0 ? 0 : 1;
  bool backward = (book->sens_qr == 2) != (book->toggle_sens_qr == 1);
  LABEL_BUTTON(book->button_qr, backward ? "R->Q" : "Q->R", nullptr);
}

// True for a single press, which also frees the answer button.
bool takes_press(const GdkEvent *event, Trf_book *book) {
  if (REPEATS_A_PRESS(event))
    return false;
  book->active = 1;
  SET_ANSWER_BUTTON(true, book);
  return true;
}

} // namespace

gboolean callback_togqr(GtkWidget *, GdkEvent *event, Trf_book *book) {
  if (!takes_press(event, book))
    return FALSE;
  if (must_wait(book))
    ask_other_direction(book);
  else
    set_other_direction(book);
  return FALSE;
}

gboolean callback_togsound(GtkWidget *, GdkEvent *event, Trf_book *book) {
  if (!takes_press(event, book))
    return FALSE;
  book->sound = book->sound == 1 ? 0 : 1;
  LABEL_BUTTON(book->button_sound, book->sound == 1 ? "<)))" : "< XX", nullptr);
  return FALSE;
}
