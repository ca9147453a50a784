// (G) The command entry "Cmd :" above the quiz pane.
#ifndef MERTU_COMMAND_COMMAND_ENTRY_H
#define MERTU_COMMAND_COMMAND_ENTRY_H

#include <gtk/gtk.h>

#include "util/book.h"

// "activate" handler of the entry, called when the learner presses Enter in it. The typed text is
// left as it is and nothing is done yet: the commands will come here.
void callback_entry_book(GtkWidget *widget, Trf_book *book);

// "button-press-event" handler of the entry: deletes the selected text, so that the learner can
// type over the last command; a double press is left to the entry. Returns FALSE: the press goes on
// to the entry.
gboolean clean_entry_book(GtkWidget *widget, GdkEvent *event, Trf_book *book);

#endif
