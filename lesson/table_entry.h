// An entry put into the position table while a lesson is built: its place and its history.
#ifndef MERTU_LESSON_TABLE_ENTRY_H
#define MERTU_LESSON_TABLE_ENTRY_H

struct Trf_idx1_walk;
struct Trf_posit;

// Capacity of the table at the start of a numbered lesson, and what is added when it is reached.
const int FIRST_CAPACITY = 10;
const int MORE_CAPACITY = 20;

// Makes room for entry icont: the capacity *nbmx_posit, and the table with it, grows by 20 where it
// is not greater than icont. *nbmx_posit is what the arrays hold, whatever the table's own
// nbmx_posit was before.
void MAKE_ROOM_FOR_ENTRY(int icont, int *nbmx_posit, Trf_posit *t_posit);

// Stores one history line of entry icont: element icont of the ordering of direction sens (1 Q->R,
// any other R->Q) becomes icont; values[1] to values[4] become its counts, its counts at build time
// and its days.
void STORE_HISTORY(int sens, int icont, const long *values, Trf_posit *t_posit);

// Reads the two history lines at walk->line.next and stores them for entry icont. A missing line
// ends the program as READ_HISTORY does.
void READ_ENTRY_HISTORY(int icont, Trf_idx1_walk *walk, Trf_posit *t_posit);

#endif
