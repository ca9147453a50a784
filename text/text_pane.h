// (G) The lesson text pane: the readable part of the current dictionary.
//
// The text itself is to come: until then DISPLAY_TEXT and the button "ReDr" leave the pane as it
// is. Emptying works.
#ifndef MERTU_TEXT_TEXT_PANE_H
#define MERTU_TEXT_TEXT_PANE_H

#include <gtk/gtk.h>

#include "util/book.h"

// Fills the pane with the text of the current lesson's dictionary. (To come; does nothing yet.)
void DISPLAY_TEXT(Trf_book *book);

// Empties the pane. Nothing is done when the book has no text view.
void CLR_TEXT(Trf_book *book);

// "clicked" handler of the button "Clr": CLR_TEXT.
void cback_clr_butt(GtkWidget *widget, Trf_book *book);

// "clicked" handler of the button "ReDr": DISPLAY_TEXT.
void cback_redr_butt(GtkWidget *widget, Trf_book *book);

#endif
