// What an answer does to the numbers of the lesson: a verdict recorded, and the last one undone.
//
// Before a verdict changes an entry its numbers are copied to the save slot, element nb_posit + 1
// of the table's arrays; the orderings hold the entry's number there, -1 when the slot is empty.
#ifndef MERTU_QUIZ_VERDICT_H
#define MERTU_QUIZ_VERDICT_H

#include "util/book.h"

// Verdicts, by the mouse button that gives them.
const int VERDICT_KNOWN = 1;     // left
const int VERDICT_SKIPPED = 2;   // middle
const int VERDICT_NOT_KNOWN = 3; // right

// The error score after an answer.
//   err            the score before; negative for an entry never asked
//   nb, nb0        known answers now and when the lesson was built
//   nok, nok0      not-known answers likewise
//   cof4           least decrease
// Returns it, 0 or more; says "err mise a zero cas 1 " or "err mise a zero cas 2 " where one of the
// two shortcuts applies.
long SCORE_WHEN_KNOWN(long err, long nb, long nb0, long nok, long nok0, long cof4);

// Records the verdict (one of the three above) on the entry QR_no, at rank QR_order, in the
// direction sens_qrm: saves its numbers, changes its counts and score and moves it to its new rank.
// A skip only lowers element 0 of elem_nevez. Nothing is done when QR_no is no entry of the table.
// Ends the program as VERIF_CLASSMENT (status 11) and RE_ORDERING_POSIT (3) do.
void RECORD_VERDICT(int verdict, Trf_book *book);

// Takes the last verdict back: the entry's numbers return from the save slot, the ordering of its
// direction is sorted afresh, QR_order becomes the rank of the entry on screen, the slot is
// emptied. Returns false, changing nothing, when no verdict is saved or the last was already taken
// back
// ("new_ord=%d jcontm=%d is undefined ok_nok return\n" on standard output).
bool UNDO_VERDICT(Trf_book *book);

// Empties the save slot: the last verdict can no longer be taken back. Nothing where the table has
// no orderings.
void EMPTY_SAVE_SLOT(Trf_posit *t_posit);

// The other direction takes effect when it was asked for: clears toggle_sens_qr and sets sens_qr to
// the other direction of sens_qrm (2 becomes 1, anything else 2).
void SWITCH_DIRECTION_IF_ASKED(Trf_book *book);

// The memory between verdicts back at its start values.
void FORGET_VERDICTS();

#endif
