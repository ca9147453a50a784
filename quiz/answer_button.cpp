// (G) The answer button, with which the learner works the whole drill.
#include "quiz/answer_button.h"

#include <time.h>

#include "quiz/confirm_lesson.h"
#include "quiz/pane.h"
#include "quiz/show_entry.h"
#include "quiz/verdict.h"
#include "text/text_pane.h"
#include "util/report.h"

namespace {

const unsigned LEFT_BUTTON = 1;
const unsigned MIDDLE_BUTTON = 2;
const unsigned RIGHT_BUTTON = 3;

// Three times the processor time of the settling pause, at one million ticks per second.
const clock_t SETTLING_TICKS = 999999;

// The memory of the drill between presses.
struct Memory {
  int state = 1;       // 1 a question is on screen, 2 its response is
  bool inside = false; // a press is being handled
} press;

void show_state(int state, const char *label, const char *name, Trf_book *book) {
  LABEL_BUTTON(book->Button1, label, name);
  press.state = state;
  book->state = state;
}

// QUIRK note outside the count: what was done to the last entry is written without counting the
// line, so that the next line takes its place in the book's arrays. One would take the widget for
// lost; it is meant: the note leaves the numbering of the lines alone and goes when the pane is
// cleared as a whole. Test: QuizDrill.SkippedResponseIsNotRecordedAndSaysSo
void write_note(char *text, Trf_book *book) {
  int nb_line = book->nb_line;
  int lblanc = 0;
  DISPLAY_LINE(text, &nb_line, &lblanc, book);
}

void set_up_lesson(unsigned button, GdkEvent *event, Trf_book *book) {
  int step = book->start_lesson;
  if (step == 0) {
    CONFIRM0_LESSON(book);
    return;
  }
  if (step == 1 && book->ilesson != 0 && button == LEFT_BUTTON)
    DISPLAY_TEXT(book);
  CONFIRM_LESSON(event, book);
  if (step == 2)
    press.state = 1;
}

void show_response(Trf_book *book) {
  show_state(2, "        Verif: Yes/No       ", "buttonorange", book);
  DISPLAY_ARTICLE(book);
}

// Clears the pane for the next question. False when the lesson is no longer the one being drilled.
bool clear_for_question(Trf_book *book) {
  if (book->nb_line <= 0)
    return true;
  long moment = LESSON_MOMENT();
  CLEAR_PANE(book);
  REDRAW_PANE(book);
  return DRAIN_EVENTS(moment, book);
}

void take_verdict(unsigned button, Trf_book *book) {
  RECORD_VERDICT(static_cast<int>(button), book);
  show_state(1, "  Question / Response ", "buttonyellow", book);
  SWITCH_DIRECTION_IF_ASKED(book);
  if (!clear_for_question(book))
    return;
  char note[] = "Recording of previous Q/R skipped ";
  if (button == MIDDLE_BUTTON)
    write_note(note, book);
  DISPLAY_ARTICLE(book);
}

void undo_verdict(Trf_book *book) {
  char note[] = "Record of preceding Q/R erased ";
  if (UNDO_VERDICT(book))
    write_note(note, book);
}

// Does what the press asks for. Returns false when no settling pause is due.
bool handle_press(unsigned button, GdkEvent *event, Trf_book *book) {
  if (book->start_lesson <= 2) {
    set_up_lesson(button, event, book);
    return true;
  }
  if (button < LEFT_BUTTON || button > RIGHT_BUTTON)
    return true;
  if (press.state == 2) {
    take_verdict(button, book);
    return true;
  }
  if (button == MIDDLE_BUTTON) {
    undo_verdict(book);
    return false;
  }
  show_response(book);
  return true;
}

// Waits a third of a second of processor time, busily: a double press must not give two verdicts.
void settle() {
  clock_t ticks1 = clock();
  while (3 * (clock() - ticks1) <= SETTLING_TICKS) {
  }
}

void end_press(bool pause, Trf_book *book) {
  book->active = 1;
  if (pause && book->Button1 != nullptr)
    settle();
  DRAIN_EVENTS(LESSON_MOMENT(), book);
  SET_ANSWER_BUTTON(true, book);
  press.inside = false;
}

gboolean stand_up(gpointer button) {
  if (gtk_widget_get_realized(GTK_WIDGET(button)))
    gtk_button_released(GTK_BUTTON(button));
  return FALSE;
}

// The release of a press goes by while the button takes none, and would leave it looking pressed.
void stand_up_soon(Trf_book *book) {
  if (book->Button1 != nullptr)
    g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, stand_up, g_object_ref(book->Button1), g_object_unref);
}

void eject(Trf_book *book) {
  SAY("callback_ok_nok ejected active = 0 ");
  DRAIN_EVENTS(LESSON_MOMENT(), book);
}

} // namespace

gboolean callback_ok_nok(GtkWidget *, GdkEvent *event, Trf_book *book) {
  if (REPEATS_A_PRESS(event))
    return FALSE;
  if (press.inside || book->active == 0) {
    eject(book);
    stand_up_soon(book);
    return FALSE;
  }
  press.inside = true;
  book->active = 0;
  SET_ANSWER_BUTTON(false, book);
  bool pause = handle_press(event->button.button, event, book);
  end_press(pause, book);
  stand_up_soon(book);
  return FALSE;
}

void FORGET_PRESSES() {
  press = Memory();
  FORGET_VERDICTS();
}
