// The orderings checked, and listed for the curious.
#ifndef MERTU_SCORE_CHECK_ORDER_H
#define MERTU_SCORE_CHECK_ORDER_H

struct Trf_book;

// Checks that along both orderings of the book's position table no entry is heavier than the one
// before it, and says "VERIF_CLASSMENT two senses OK ". Nothing is done, or said, while the table
// has no entries.
// Ends the program with status 11 on a fault, after "VERIF_CLASSMENT Sens QR error present ..." or
// "VERIF_CLASSMENT Sens RQ error present ..." and a line per rank, on standard output and in the
// log.
void VERIF_CLASSMENT(Trf_book *book);

// Lists both orderings rank by rank as trace: each entry's stored score beside the score computed
// for today. Changes nothing; nothing is computed while no trace is asked for.
void SORT_CLASSMENT(Trf_book *book);

#endif
