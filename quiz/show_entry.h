// (G) A question or its response written into the quiz pane, and its sound played.
#ifndef MERTU_QUIZ_SHOW_ENTRY_H
#define MERTU_QUIZ_SHOW_ENTRY_H

#include <stdio.h>

#include "util/book.h"

// Shows, by the book's state, the next question (1: chosen, headed, located; QR_no, QR_order and
// sens_qrm are set) or the response of the question on screen (else), and plays its sound. Reads
// start_lesson: at 2 the lesson begins (chance seeded, one line with its size). Writes nothing when
// a question is due and the lesson has no entry. Lines are appended to those in the pane; nb_line
// is stored.
// Ends of the program:
//   2  " DISPLAY_ARTICLE fp = NULL Lesson not found stop ! \n"   the entry's working copy is not
//      found
//   1  "DISPLAY_ARTICLE v_page= NULL error \n"                   no quiz pane
// and those of WHAT_QR (5) and VERIF_CLASSMENT (11).
void DISPLAY_ARTICLE(Trf_book *book);

// Writes the question or response of the entry at offset `add` of the working copy `fp` (null: as
// an empty file) as WALK_ENTRY finds it, and plays its sounds.
//   istate     1: the question side, whose sounds are played while the sound is on; 2: the response
//              side
//   tnb_line   lines in the pane; grows by those written
// A sound file that is not found: "DISPLAY_QR snd_file=%s not found \n" in the log.
void DISPLAY_QR(FILE *fp, int istate, int *tnb_line, long int add, Trf_book *book);

// The memory between questions (last sound notice, offset of the entry) at its start values.
void FORGET_SHOWN();

#endif
