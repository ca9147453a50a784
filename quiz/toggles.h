// (G) The two toggles beside the answer button: direction of questioning, sound.
#ifndef MERTU_QUIZ_TOGGLES_H
#define MERTU_QUIZ_TOGGLES_H

#include <gtk/gtk.h>

#include "util/book.h"

// "button_press_event" handler of the direction button. While a drill runs it asks for the other
// direction (toggle_sens_qr, and the label), which comes with the next verdict; a second press
// takes that back. Before a drill, or while a response is shown, the direction (sens_qr) and label
// change at once. Sets active and makes the answer button sensitive. Only single presses count;
// a call without an event (null) is one. Returns FALSE.
gboolean callback_togqr(GtkWidget *widget, GdkEvent *event, Trf_book *book);

// "button_press_event" handler of the sound button: switches the sound; label "<)))" when it is on,
// "< XX" when off. The rest as above.
gboolean callback_togsound(GtkWidget *widget, GdkEvent *event, Trf_book *book);

#endif
