// The lines of an entry that a question or a response shows, and the sounds it plays.
//
// An entry in the working copy:
//
//   | line                        | meaning                                                     |
//   |-----------------------------|-------------------------------------------------------------|
//   | # question * Q2 tags        | header; behind the '*' "Q" and a number: how often the      |
//   |                             | question is repeated in its sound                           |
//   | <)) name start stop         | sound of the question: a range of frames of a file          |
//   | <() name                    | the same: a whole file                                      |
//   | ? name start stop           | both: the range, then the whole file                        |
//   | Q> text                     | question; goes on over the following lines                  |
//   | R> text                     | response; likewise                                          |
//   | ! text                      | remark, never shown (the first character that is no blank)  |
//   | #...                        | the next entry                                              |
//   | ...END_OF_FILE...           | end of the dictionary                                       |
#ifndef MERTU_QUIZ_ENTRY_LINES_H
#define MERTU_QUIZ_ENTRY_LINES_H

#include <stdio.h>

#include "util/book.h"

// Where the walk hands what it finds; `data` is the caller's and passed through.
struct Trf_entry_out {
  void (*line)(char *text, void *data);                         // a line for the pane (CP1252)
  void (*range)(char *name, long start, long stop, void *data); // a range of a sound file
  void (*total)(char *name, void *data);                        // a whole sound file
  void *data;
};

// Walks the entry at offset `add` of the working copy `fp` (null: as an empty file) and hands its
// lines and sounds out in the order met.
//   istate   1: the question side, whose sound lines are examined while the book's sound is 1
// Which part is shown (Q> or R>) follows from the book's state, sens_qr and interro_sound, and from
// whether the question was only heard. Faults go to the log: "DISPLAY_QR error 1 lecture \n" (no
// line there), "DISPLAY_QR error 2 lecture \n" (no header there; the last of five lines is handed
// out), "DISPLAY_QR error 3 lecture \n" (the part is missing); a sound line without its two numbers
// says "DISPLAY_QR error detect 2 long int ? ss=%s \n" on standard output.
void WALK_ENTRY(FILE *fp, int istate, long add, Trf_book *book, const Trf_entry_out *out);

// Forgets whether the last question was only heard, as at the program's start.
void FORGET_HEARD();

#endif
