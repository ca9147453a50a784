// The records of the program, allocated and filled before there is a window.
#ifndef MERTU_APP_BOOK_START_H
#define MERTU_APP_BOOK_START_H

#include "util/book.h"

struct Prenestro;
struct Start_State;

// Characters of a font name that fit in its buffer, the final NUL not counted.
const int LENMX_FONT = 100;

// Everything allocated at start-up and kept for the program's life.
struct Trf_records {
  Prenestro *Caract_win;               // appearance
  Start_State *S_state;                // what the last run left
  Trf_book *book;                      // the application record
  Trf_string *G_kentel;                // the lesson registry
  Trf_posit *t_posit;                  // the position table
  Trf_err *t_err;                      // weights of the error score
  char ss_font_lesson[LENMX_FONT + 1]; // font of the lesson text
  char ss_font_vocab[LENMX_FONT + 1];  // font of the command entry and the quiz pane
};

// Size of the window and of its left pane, in pixels.
struct Trf_geometry {
  int width;
  int height;
  int width_book; // where the divider stands
};

// Allocates every record of `records`, zeroed, gives the book its two first text buffers (lessons
// 49 characters, path_of_lesson 5), a label table without labels and the weights, and clears its
// line widgets. What `records` held before is not freed.
void ALLOCATE_RECORDS(Trf_records *records);

// Frees every record with what it owns and closes the book's streams, the log among them; all
// pointers of `records` become null. The program never does this; one that opens several windows
// one after the other, such as the window tests, does. The window must be gone.
void FREE_RECORDS(Trf_records *records);

// Sets the elements 0 to MAX_LINE - 1 of the book's two arrays of line widgets to null.
void CLEAR_LINE_WIDGETS(Trf_book *book);

// Reads mertu.conf into the records, switches the sound on, opens the log (mertu_log, emptied; each
// line is in the file once it is logged; a log that cannot be opened is null and nothing is logged)
// and brings every index up to date.
// Files and ends of the program: those of FURCH_SET and CALC_INDEX.
void PREPARE_WORDS(Trf_records *records);

// Gives the book the values it starts drilling with: lesson 1, direction Q->R, a question to be
// shown, no line in the pane, no change of direction waiting, questions with a sound only heard;
// then the lesson and the direction of `S_state` where they are not 0. A direction other than 1
// and 2 becomes 1. Hangs the registry and the position table on the book.
void START_VALUES(Trf_records *records);

// The size remembered in `S_state` when its width and height are both above 0, else the one of
// the configuration.
Trf_geometry WINDOW_GEOMETRY(const Start_State *S_state, const Prenestro *Caract_win);

#endif
