// (G) The main window: its tree of widgets and how it opens.
#ifndef MERTU_APP_MAIN_WINDOW_H
#define MERTU_APP_MAIN_WINDOW_H

#include <gtk/gtk.h>

#include "app/book_start.h"
#include "util/book.h"

struct Start_State;

// Builds the window with everything in it and fills the widget pointers and the style of the
// book. The book has its start values (START_VALUES): they decide the labels of the sound and
// direction buttons; a sound flag other than 1 becomes 0, a direction other than 2 becomes 1.
//   geometry        size of the window and place of the divider, in pixels
//   ss_font_lesson  font description of the lesson text
//   ss_font_vocab   font description of the command entry
// Returns the window, not yet shown. When it is destroyed it forgets its widgets in the book,
// releases the style and ends the main loop; nothing is asked or recorded.
GtkWidget *BUILD_MAIN_WINDOW(const Trf_geometry *geometry, const char *ss_font_lesson,
                             const char *ss_font_vocab, Trf_book *book);

// Shows the window, and moves it to the place of `S_state` when neither coordinate is negative.
void SHOW_MAIN_WINDOW(const Start_State *S_state, Trf_book *book);

// Everything between the start of GTK and its main loop: reads what the last run left, gives the
// book its start values, registers the real dialogs, builds the window, announces the first lesson
// and shows the window; then says "Mertu is ready \n" on standard output (./run tells an early end
// by its absence). Ends of the program: those of START_PAGE_NUMBER and CONFIRM0_LESSON.
void OPEN_MAIN_WINDOW(Trf_records *records);

#endif
