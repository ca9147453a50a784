// (G) Traces where the buttons and the command entry stand on the screen.
#ifndef MERTU_APP_BUTTON_PLACES_H
#define MERTU_APP_BUTTON_PLACES_H

#include <gtk/gtk.h>

#include "util/book.h"

// While TRACING: each time a button or the command entry of the book's window has been placed or
// has changed between taking presses and taking none, and each time the window has moved, one line
// for each button and one for the entry follows once all is placed and nothing else waits:
//   "button %s at %d %d %d %d"   label, left edge, top edge, width, height in pixels of the screen
//   "entry at %d %d %d %d"
// The label stands as the learner sees it, blanks included. A button that takes no presses is left
// out: a new line of the answer button after a press tells that it is ready for the next. Nothing
// is done while not TRACING.
void TRACE_BUTTON_PLACES(Trf_book *book);

// While TRACING: the same line for each button of a dialog, each time it has come to the screen or
// has moved. The dialog may go before. Nothing is done while not TRACING.
void TRACE_DIALOG_PLACES(GtkWidget *dialog);

// Takes back a line that waits to be traced; to be called when the window goes.
void FORGET_BUTTON_PLACES();

#endif
