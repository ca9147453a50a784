// One entry moved to the rank that its new score deserves.
#ifndef MERTU_SCORE_REORDER_H
#define MERTU_SCORE_REORDER_H

struct Trf_posit;

// Moves the entry at rank old_ord (1 to nb_posit) of the ordering of direction sens_qr (1 Q->R,
// any other R->Q) behind every entry whose score is at least new_err or negative and ahead of all
// others, stores new_err (0 or more) as its score and returns its new rank. The other ranks keep
// their order. A negative old score weighs 500000.
// Ends the program with status 3 where the ordering is broken:
//   "  error 1 i0 > i2 i0=..." (moving up), "  error 2 i0 < i1 i0=..." (moving down).
int RE_ORDERING_POSIT(int sens_qr, int old_ord, long new_err, Trf_posit *t_posit);

// Bisection between the ranks i1 and i2 (i1 <= i2, both included) of an ordering: writes into *i0
// the first rank whose entry is lighter than new_err (score 0 or more and below it), or i2 when
// none before it is.
//   ord_posit   the ordering, by rank;   cum_err   the scores, by entry
void PLACE_IN_SERIES(long new_err, int i1, int i2, int *ord_posit, long *cum_err, int *i0);

#endif
