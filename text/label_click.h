// (G) A click on a sound button of the lesson text.
#ifndef MERTU_TEXT_LABEL_CLICK_H
#define MERTU_TEXT_LABEL_CLICK_H

#include <gtk/gtk.h>

#include "util/book.h"

// "clicked" handler of every sound button: plays the ranges of the button's label one after the
// other (WALK_LABEL) and returns when they have been played, whether the sound is switched on or
// off. A sound file that is not found: "cback_button snd_file=%s not found \n" in the log and on
// standard output.
// Ends of the program: those of play_range.
void cback_button(GtkWidget *button, Trf_book *book);

#endif
