// Which entry is asked next.
//
// Two runs. The first asks every entry of the lesson once: new entries as they come in the
// ordering, then entries drawn among those not yet asked. The second draws among the top-ranked
// entries (five at most), so that the worst-known come back most often. An entry is not asked again
// while it was one of the last two.
#ifndef MERTU_QUIZ_CHOOSE_ENTRY_H
#define MERTU_QUIZ_CHOOSE_ENTRY_H

#include "util/book.h"

// Draws at most before a choice stands whatever it is.
const int MAX_DRAWS = 32000;
// Entries among which the second run draws, at most.
const int SECOND_RUN_WINDOW = 5;

// The entry chosen.
struct Trf_choice {
  int jcont = 0;           // entry, 1 to nb_posit; 0 when the lesson has none
  int rank = 0;            // its rank in the ordering of the direction, from 1
  long err = 0;            // its error score
  long mx = 0;             // the error score of rank 1
  int d_ok = 0;            // known answers since the lesson was built
  int d_nok = 0;           // not-known answers since the lesson was built
  bool second_run = false; // every entry of the lesson has been asked
};

// Makes the memory of the drill ready, by the book's start_lesson: at 0 (a lesson is announced)
// forgets the last two entries; at 2 (it starts) seeds the chance (srand) with the present moment
// and begins the first run. Both clear element 0 of elem_nevez. Else nothing.
void PREPARE_CHOICE(Trf_book *book);

// Chooses the entry to ask next in the direction sens_qr, by rand(). Reads the position table,
// takes element 0 of elem_nevez (+1 per verdict, -1 per skip) into account and clears it. Stores
// the entry and its rank in the book's QR_no and QR_order. With no entry in the table nothing
// changes and jcont is 0.
Trf_choice CHOOSE_ENTRY(Trf_book *book);

// The entry chosen last, 0 before the first.
int LAST_CHOSEN();

// The memory of the drill back at its start values.
void FORGET_CHOICES();

#endif
