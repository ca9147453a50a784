// The orderings sorted: heaviest score first, equal ones in their previous order.
#ifndef MERTU_SCORE_MERGE_SORT_H
#define MERTU_SCORE_MERGE_SORT_H

// Which of two scores goes first: -1 the first, 1 the second, 0 they are equal. A negative score
// (never asked) goes before any other; two negative scores are equal; else the larger goes first.
int COMPARE_ERR(long err1, long err2);

// The same on three keys: elements 1, 2 and 3 of a and b are the score, the not-known answers and
// a day number (element 0 carries nothing). Scores as in COMPARE_ERR, but two negative scores are
// equal whatever the other keys; then the larger count, then the later day goes first.
int CMP_3GERR(long *a, long *b);

// Sorts the entry numbers num[left0] to num[right0] (both included) by their scores,
// cum_err[entry]. Stable. Nothing is done when right0 is not above left0.
void MERGESORT(int left0, int right0, int *num, long *cum_err);

// The same on three keys per entry: score, not-known answers, day number. Lists the four arrays
// before and after as trace.
void MERGESORT_3ERR(int left0, int right0, int *num, long *cum_err, long *nb_nok, long *date);

#endif
