// (G) The buttons "Quit", "Prev" and "Next".
#ifndef MERTU_APP_NAVIGATION_H
#define MERTU_APP_NAVIGATION_H

#include <gtk/gtk.h>

#include "util/book.h"

// "clicked" handler of "Quit": ends the main loop. The question whether to record the lesson and
// the last-state file will come here.
void ON_QUIT(GtkWidget *widget, Trf_book *book);

// "clicked" handler of "Next": makes the answer button sensitive and announces the next lesson
// (after the last one the first). The question whether to record the lesson will come here;
// nothing is recorded yet.
void cback_next_less(GtkWidget *widget, Trf_book *data);

// "clicked" handler of "Prev": as cback_next_less for the lesson before (before the first one the
// last).
void cback_prev_less(GtkWidget *widget, Trf_book *data);

#endif
