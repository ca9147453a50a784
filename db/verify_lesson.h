// Files and memory compared: the counts of a lesson against its idx1 files.
#ifndef MERTU_DB_VERIFY_LESSON_H
#define MERTU_DB_VERIFY_LESSON_H

#include <stdio.h>

#include "util/book.h"

// Checks that the idx1 files hold exactly the counts of the position table, for every word of the
// generated lesson file. Nothing is written but the log: "VERIF_LESSON %d DONE  nb_errors=%d\n"
// with ilesson and the number of counts that differ.
// fp_gene: the generated lesson file, open for reading; stays open, and at its end. Null is told
// and nothing is checked. book: ilesson, t_posit and fp_log are read; fp_idx1 is null afterwards.
// A file that cannot be opened is told ("VERIF_LESSON cannot open file %s \n", log and standard
// output); the words of such an idx1 file count as never asked.
// Ends the program (texts in the log and on standard output):
//   10 "VERIF_LESSON error 10" after day 10000;
//   1 "VERIF_LESSON error 1" where a count is above 10000;
//   1 "VERIF_LESSON STOP  nb_errors > 0" where a count differs;
//   as NEXT_LESSON_WORD and MEND_FORGOTTEN do.
void VERIF_LESSON(FILE *fp_gene, Trf_book *book);

#endif
