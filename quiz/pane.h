// (G) The quiz pane: one label per line, cleared as a whole; and the draining of events.
//
// A handler that drains events may find the window gone or another lesson announced afterwards. It
// remembers the lesson's moment before, and ends at once where DRAIN_EVENTS says so:
//
//   long moment = LESSON_MOMENT();
//   ...
//   if (!DRAIN_EVENTS(moment, book))
//     return;
//
#ifndef MERTU_QUIZ_PANE_H
#define MERTU_QUIZ_PANE_H

#include "util/book.h"

typedef union _GdkEvent GdkEvent;

// Appends one line to the quiz pane.
//   ss         the text (CP1252, accent notation allowed, null for ""); not changed. Blanks at both
//              ends are cut; a line of blanks alone shows as two blanks.
//   tnb_line   lines in the pane, 0 to MAX_LINE; one more when the line was added
//   tlblanc    blank lines in a row just before this one; stored with the line
// A second blank line in a row is dropped ("DISPLAY_LINE too many blanc lines lblanc=%d \n" on
// standard output), a line beyond MAX_LINE silently. Nothing is shown when the book has no pane.
void DISPLAY_LINE(char *ss, int *tnb_line, int *tlblanc, Trf_book *book);

// A series of lines for the pane: begin with the book's nb_line, store it back at the end.
struct Trf_pane_writer {
  Trf_book *book;
  int nb_line;    // lines in the pane
  int lblanc = 0; // blank lines in a row
};

// Appends a formatted line with DISPLAY_LINE.
void WRITE_PANE(Trf_pane_writer *pane, const char *format, ...)
    __attribute__((format(printf, 2, 3)));

// Empties the whole pane when nb_line is above 0: destroys every line widget, sets lbox2 and
// wbutton to null and nb_line to 0. The caller redraws (REDRAW_PANE) where the screen must follow.
void CLEAR_PANE(Trf_book *book);

// Asks for a redraw of the pane; nothing when the book has none.
void REDRAW_PANE(Trf_book *book);

// Shows the pane. Ends the program with status 1 after "<who> v_page= NULL error \n" on standard
// output and in the log when the book has none.
void SHOW_PANE_OR_STOP(const char *who, Trf_book *book);

// A counter raised whenever another lesson is announced or started, the program is leaving, or the
// window goes.
long LESSON_MOMENT();

// Raises that counter.
void LESSON_MOVES_ON();

// Processes all pending events, up to one that ends the program ("Quit"): what waits behind it is
// handled no more. Returns false when the window is gone, the program is leaving, the moment (from
// LESSON_MOMENT) has passed or ilesson or start_lesson changed: the caller then ends without
// touching pane or table.
bool DRAIN_EVENTS(long moment, Trf_book *book);

// True for the event that a double or triple click brings beside the presses it consists of; the
// handlers of the quiz let it go by. False for any other, and for none (null).
bool REPEATS_A_PRESS(const GdkEvent *event);

// The window is gone: every widget pointer of the book becomes null, nb_line 0; the lesson moves
// on.
void FORGET_WIDGETS(Trf_book *book);

// Sets a button's label and, unless null, its widget name (ASCII both). Nothing when button is
// null.
void LABEL_BUTTON(GtkWidget *button, const char *label, const char *name);

// Labels the direction button with the direction of questioning: "Q->R" when sens_qr is 1, else
// "R->Q".
void LABEL_DIRECTION(Trf_book *book);

// Makes the answer button sensitive or not; nothing when it is gone.
void SET_ANSWER_BUTTON(bool sensitive, Trf_book *book);

#endif
