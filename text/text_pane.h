// (G) The lesson text pane: the readable part of the current dictionary, with its sound buttons.
#ifndef MERTU_TEXT_TEXT_PANE_H
#define MERTU_TEXT_TEXT_PANE_H

#include <gtk/gtk.h>

#include "util/book.h"

// Fills the pane anew with the heading and the text of the current lesson's dictionary (OPEN_TEXT,
// TEXT_PIECES). A sound button stands in a child anchor; one whose label is known has the widget
// name "buttonyellow". Nothing is done when the book has no text view.
void DISPLAY_TEXT(Trf_book *book);

// Empties the pane. Nothing is done when the book has no text view.
void CLR_TEXT(Trf_book *book);

// "clicked" handler of the button "Clr": CLR_TEXT.
void cback_clr_butt(GtkWidget *widget, Trf_book *book);

// "clicked" handler of the button "ReDr": DISPLAY_TEXT, when ilesson is the number of a dictionary
// and the lesson has been described (start_lesson 2 or more); else the pane stays as it is.
void cback_redr_butt(GtkWidget *widget, Trf_book *book);

#endif
