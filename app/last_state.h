// What is remembered from one run to the next: lesson, direction, place and size of the window.
//
// The file Mertu_last_state: text, six lines; the numbers are decimal, the words behind them are
// remarks that the reader passes over.
//
//   | line | written as                                                  | content               |
//   | 1    | "  %d    Last lesson\n"                                     | lesson, from 1        |
//   | 2    | "  %d   Sense of Q and R \n"                                | direction, 1 or 2     |
//   | 3    | "  %d  %d   Position of main window left upper corner\n"    | left and top edge     |
//   | 4    | "  %d  %d   Size of main window width height\n"             | width, height         |
//   | 5    | "  %d   Width of book window \n"                            | width of left pane    |
//   | 6    | "%s\n"                                                      | the registry's list   |
//
// Places and sizes are pixels of the screen. "Quit" writes the file and the next start takes it
// away: a run that ends otherwise leaves none.
#ifndef MERTU_APP_LAST_STATE_H
#define MERTU_APP_LAST_STATE_H

#include <stdio.h>

#include "util/book.h"

struct Trf_new_file;

// The values remembered. Each is used only when it is usable; see START_VALUES and
// WINDOW_GEOMETRY (app/book_start.h).
struct Start_State {
  int num_lesson;  // lesson to start with, from 1; 0 for none
  int root_x;      // left edge of the window on the screen, in pixels; negative for none
  int root_y;      // top edge
  int root_width;  // width of the window in pixels; 0 or less for none
  int root_height; // height
  int width_book;  // width of the left pane in pixels
  int sens_qr;     // direction of questioning, 1 Q->R, 2 R->Q; 0 for none
};

// Fills `S_state` with what the last run left in ./Mertu_last_state, and deletes the file. Without
// a file: lesson 1, no direction (0), and -1 in the five values of the window; so stands each value
// whose line or number is missing. The lesson is 0 when mertu.conf is younger than the file or the
// first line does not begin with a number. Lines hold 100 characters; the rest of a longer one is
// the next line. Numbers are read without their sign: a negative one is 0, and so is a word where
// the second number of a line is due.
// The book's fp and exfp are left as the reading made them (the stream read, closed since, and 1):
// the caller clears both. An empty file stays, its stream open.
// Ends the program: that of DIFF_TIME_FILE (status 1, no mertu.conf).
void START_PAGE_NUMBER(Start_State *S_state, Trf_book *book);

// Opens a new last state as Mertu_last_state.new. Returns false when it cannot be created; nothing
// is told then. COMMIT_NEW_FILE puts it under its name; a record dropped before takes it away.
bool OPEN_LAST_STATE(Trf_new_file *file);

// Writes the six lines to fp. st_lesson: the registry's list of dictionaries; null for none.
void WRITE_LAST_STATE(const Start_State *S_state, const char *st_lesson, FILE *fp);

#endif
