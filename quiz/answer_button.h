// (G) The answer button, with which the learner works the whole drill.
//
//                left               middle                            right
//   question     response shown     the last verdict is taken back    response shown
//   response     known              the entry is skipped              not known
//
// Labels and widget names: "  Question / Response " / "buttonyellow" while a question is on screen,
// "        Verif: Yes/No       " / "buttonorange" while its response is.
#ifndef MERTU_QUIZ_ANSWER_BUTTON_H
#define MERTU_QUIZ_ANSWER_BUTTON_H

#include <gtk/gtk.h>

#include "util/book.h"

// "button_press_event" handler of the answer button: confirms or starts the lesson while it is
// being set up (start_lesson 0 to 2), else shows the response or records the verdict. Only single
// presses count. A press that comes while another is being handled, or while active is 0, is thrown
// away: "callback_ok_nok ejected active = 0 " on standard output. Waits a third of a second of
// processor time before the next press can be made. Returns FALSE.
gboolean callback_ok_nok(GtkWidget *widget, GdkEvent *event, Trf_book *book);

// The drill's memory between presses back at its start values (the verdict's too).
void FORGET_PRESSES();

#endif
