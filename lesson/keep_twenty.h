// The twenty worst entries kept: the rest dropped, and a later candidate put in the place of the
// last.
//
// A rank is a place in the ordering of the lesson's direction, from 1; the storage of an entry is
// its number in the arrays of the position table. What is done here leaves ranks and storage
// numbers 1 to nb_posit in use, each once.
#ifndef MERTU_LESSON_KEEP_TWENTY_H
#define MERTU_LESSON_KEEP_TWENTY_H

#include <stdio.h>

#include <functional>

struct Trf_book;
struct Trf_composition;
struct Trf_posit;

// Keeps ranks 1 to 20 of direction sens; nothing is done with 20 entries or fewer. A kept entry
// whose number is above 20 moves to the storage of the next dropped entry (in the order of their
// ranks) whose number is 20 or less: its posit, its score of direction sens and its counts and
// days of both directions. nb_posit becomes 20.
//   who    the builder, for the message
//   sens   1 Q->R, any other R->Q
//   book   t_posit changes; fp_log
// Ends the program with status 11 where no such storage is left (" %s error i=%d j=%d \n": who,
// the rank, and the rank where the search ended; log and standard output).
void KEEP_TWENTY(const char *who, int sens, Trf_book *book);

// A collection that found nothing leaves the number of entries as it was: nb_posit becomes
// nb_before (0 or more), and the table, allocated afresh, holds as many entries, all of them 0.
void KEEP_NB_POSIT(int nb_before, Trf_posit *t_posit);

// The rank that a candidate takes among nb_words ranks, or 0 where it is not ahead of the last
// one. ahead(rank): true when the candidate goes strictly ahead of the entry at that rank; true
// from some rank on to the last. It is asked O(log nb_words) times.
int RANK_OF_CANDIDATE(int nb_words, const std::function<bool(int)> &ahead);

// Puts the candidate in the spare storage nb_posit + 1 at `rank` (1 to nb_posit) of direction sens:
// the ranks from there to the last but one move down, and the entry at the last rank leaves. Its
// storage takes over the candidate's posit, score of direction sens, counts and days. Returns the
// number of that storage.
int PUT_AT_RANK(int rank, int sens, Trf_posit *t_posit);

// Searches the dictionaries after prev_lesson (a number, from 1). Each entry that `rest` selects is
// scored in the direction of `rest` and goes to RANK_OF_CANDIDATE with `ahead`; one that is
// admitted is put at its rank and its record appended to fp_gene.
//   fp_gene    the generated lesson file, open for writing at its end; stays open
//   rest       recipe and tag; its `take` is set here
//   ahead      true when the entry in the spare storage goes strictly ahead of that rank
//   admitted   called before an admitted entry is put at its rank; may be empty
// Ends of the program as VISIT_DICTIONARY (lesson/compose.h).
void SEARCH_FOR_WORSE(int prev_lesson, FILE *fp_gene, Trf_composition *rest,
                      const std::function<bool(int)> &ahead, const std::function<void()> &admitted);

#endif
