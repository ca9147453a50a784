// What is remembered from one run to the next: lesson, direction, place and size of the window.
#ifndef MERTU_APP_LAST_STATE_H
#define MERTU_APP_LAST_STATE_H

#include "util/book.h"

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

// Fills `S_state` with what the last run left. Nothing is remembered yet: lesson 1, no direction
// (0), and -1 in the five values of the window. Reading the last-state file will come here, with
// its writer beside it.
void START_PAGE_NUMBER(Start_State *S_state, Trf_book *book);

#endif
