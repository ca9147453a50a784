// The position table: the current lesson in memory, and the arrays of one of its directions.
//
// Invariants, from ALLOCATE_POSIT or INIT_CUM_ERR on:
//   1. Every array has nbmx_posit + 5 elements.
//   2. nb_posit < nbmx_posit once a lesson is loaded (the start-up placeholder has both at 5), so
//      element nb_posit + 1, the save slot of the answer handling, always exists.
//   3. Entries are numbered from 1; element 0 is no entry.
//   4. Elements 1 to nb_posit of an ordering are the entries, each once, heaviest score first;
//      negative scores (never asked) are heavier than all others and equal among themselves.
#ifndef MERTU_SCORE_POSITION_TABLE_H
#define MERTU_SCORE_POSITION_TABLE_H

// Elements that every array has beyond nbmx_posit.
const int NB_SPARE_POSIT = 5;
// What a negative score (never asked) weighs where scores are compared by size.
const long ERR_NEVER_ASKED = 500000;

// The current lesson. One instance, the book's t_posit. In the R->Q set the current counts come
// before the counts at build time, unlike the Q->R set.
struct Trf_posit {
  int nb_posit = 0;   // entries in the lesson
  int nbmx_posit = 0; // capacity of the arrays, without the spare elements

  long *posit = nullptr;     // byte offset of the entry's first line in the generated lesson file
  int *elem_nevez = nullptr; // verdicts on the entry; element 0 is a counter of the whole lesson

  int *QRord_posit = nullptr; // Q->R ordering: the entry at each rank; -1 at nb_posit + 1 ends it
  int *RQord_posit = nullptr; // R->Q ordering

  long *QRcum_err = nullptr;   // Q->R error score; -1 never asked
  long *QRcum_nb = nullptr;    // known answers, now
  long *QRcum_nb0 = nullptr;   // known answers when the lesson was built
  long *QRcum_nok = nullptr;   // not-known answers, now
  long *QRcum_nok0 = nullptr;  // not-known answers when the lesson was built
  long *QR_date_ok = nullptr;  // day number of the last known answer, 0 never
  long *QR_date_nok = nullptr; // day number of the last not-known answer, 0 never

  long *RQcum_err = nullptr;   // R->Q error score; -1 never asked
  long *RQcum_nb = nullptr;    // known answers, now
  long *RQcum_nok = nullptr;   // not-known answers, now
  long *RQcum_nb0 = nullptr;   // known answers when the lesson was built
  long *RQcum_nok0 = nullptr;  // not-known answers when the lesson was built
  long *RQ_date_ok = nullptr;  // day number of the last known answer, 0 never
  long *RQ_date_nok = nullptr; // day number of the last not-known answer, 0 never
};

// The arrays of one direction, borrowed from the table until it is next allocated or grown.
struct Trf_side {
  int *ord;       // the ordering, by rank
  long *cum_err;  // error score, by entry
  long *nb;       // known answers, now
  long *nb0;      // known answers when the lesson was built
  long *nok;      // not-known answers, now
  long *nok0;     // not-known answers when the lesson was built
  long *date_ok;  // day of the last known answer
  long *date_nok; // day of the last not-known answer
};

// The arrays of direction sens: 1 Q->R, any other value R->Q.
inline Trf_side SIDE_OF_TABLE(int sens, Trf_posit *t_posit) {
  if (sens == 1)
    return {t_posit->QRord_posit, t_posit->QRcum_err,  t_posit->QRcum_nb,   t_posit->QRcum_nb0,
            t_posit->QRcum_nok,   t_posit->QRcum_nok0, t_posit->QR_date_ok, t_posit->QR_date_nok};
  return {t_posit->RQord_posit, t_posit->RQcum_err,  t_posit->RQcum_nb,   t_posit->RQcum_nb0,
          t_posit->RQcum_nok,   t_posit->RQcum_nok0, t_posit->RQ_date_ok, t_posit->RQ_date_nok};
}

// Frees what was there and allocates every array, elem_nevez too, with capacity + 5 zeroed
// elements. Sets nbmx_posit to capacity (0 or more) and nb_posit to 0. The table must have been
// zeroed or allocated before. FREE_POSIT frees the arrays.
void ALLOCATE_POSIT(int capacity, Trf_posit *t_posit);

// Gives every array capacity + 5 elements, contents kept, the new ones 0, and sets nbmx_posit.
// A capacity not above nbmx_posit changes nothing.
void GROW_POSIT(int capacity, Trf_posit *t_posit);

// Frees every array and sets it to null; nb_posit and nbmx_posit become 0.
void FREE_POSIT(Trf_posit *t_posit);

// Frees elem_nevez and allocates it afresh, all 0 (at least nb_posit + 5 elements).
void RENEW_ELEM_NEVEZ(Trf_posit *t_posit);

// Copies the scores, counts and counts at build time of both directions (ten arrays; not the
// dates, not posit, elem_nevez or the orderings) from element `from` to element `to`; both 0 to
// nbmx_posit + 4.
void COPY_SLOT(int from, int to, Trf_posit *t_posit);

// The placeholder until the first lesson is built: nb_posit and nbmx_posit 5; posit and the
// fourteen statistics arrays have 10 elements, element 0 holding 5 and elements 1 to 5 holding -1
// (the rest 0). Frees what was there. INIT_ORDERING_POSIT then makes the orderings.
void INIT_CUM_ERR(Trf_posit *t_posit);

// Allocates both orderings afresh for the current nbmx_posit (+ 5) and sets element i of both to
// i for i = 1 to nb_posit; the rest 0.
void INIT_ORDERING_POSIT(Trf_posit *t_posit);

#endif
