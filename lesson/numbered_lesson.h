// A numbered lesson loaded: the whole dictionary of that number becomes the current lesson.
#ifndef MERTU_LESSON_NUMBERED_LESSON_H
#define MERTU_LESSON_NUMBERED_LESSON_H

struct Trf_book;

// Loads the lesson whose number *ilesson is (not changed): reads the dictionary's idx1 file,
// writes ./idx1_gene, fills the book's position table afresh (statistics, scores, both orderings
// sorted, elem_nevez 0, -1 behind the Q->R ordering) and logs "INIT_LESSON of lesson %d done\n".
// The book's fp_idx1 and fp_gene are the open files meanwhile and null afterwards. With *ilesson 0
// only elem_nevez is renewed, for the table that a composed lesson has built.
//
// A lesson is refused, and counts as empty (nb_posit 0, a usable empty table), where its idx1 file
// cannot be opened or ./idx1_gene cannot be written whole; at the learner's press that starts it
// (the book's start_lesson 2) also where its dictionary cannot be opened. The log then says
// "INIT_LESSON cannot open file %s \n".
//
// Ends of the program:
//   1  "Error no detection of ####### stop"   no header within 10000 lines of the idx1 file
//   2  "Error no detection of values icont=..."   a name line without its Q->R line
//   3  the same, without its R->Q line; and the ends of INDIRECT_IDX1 and MEND_FORGOTTEN, which is
//      called first
void INIT_LESSON(int *ilesson, Trf_book *book);

#endif
