// The transfer: index files with six-field histories written again with four-field ones.
//
// A transfer file, "\n" line ends:
//
//   | line  | content                                                                  |
//   | 1, 2  | the lines of the idx1 file up to the one that ends its header            |
//   | 3 ... | three lines per entry: its name line, the Q->R and the R->Q history line |
//   | last  | "# END_OF_FILE * %ld \n": the length of all lines before                 |
//
// What becomes of a direction's three values (total, wrong, day of the last answer; see
// db/history_line.h):
//
//   | field of the new line | value                                                 |
//   | 1 correct answers     | total - wrong                                         |
//   | 2 wrong answers       | wrong                                                 |
//   | 3 last correct answer | the day, 0 where field 1 is 0                         |
//   | 4 last wrong answer   | the day before, at least 0; 0 where field 2 is 0      |
#ifndef MERTU_DB_TRANSFER_H
#define MERTU_DB_TRANSFER_H

#include <stdio.h>

#include "util/book.h"

// Converts the idx1 file of every dictionary (1 to nbt_lesson) into "./IDX1_TRF/" and its own name.
// The directory is made where it cannot be opened ("Create directory IDX1_TRF " on standard
// output). book: G_kentel, nbt_lesson and fp_log (the log, may be null) are read.
// Ends the program as MEND_FORGOTTEN and TRF_IDX1_FILE do.
void TRF_ALL_DBASE(Trf_book *book);

// Converts one idx1 file. fp_log: the log, may be null. s_idx1: its path. s_trf: the transfer file,
// replaced as a whole (util/safe_write).
// "##" lines are left out; at most 10000 lines behind the header are read (history lines not
// counted), a longer file says "index %s is longer than 10000 lines \n". A damaged history line is
// logged ("TRF_IDX1_FILE and CHECK_6LINTsome error in file : %s \n") and goes on corrected. An idx1
// file that cannot be opened is told ("cannot read file %s: %s \n", log and standard output) and
// nothing is written.
// Ends the program before anything is written: status 1 where no header separator is found ("Error
// no detection of ####### stop \n"), where reading fails ("cannot read file %s: %s \n") or writing
// does ("cannot write file %s: %s \n"); status 2 where the file ends in place of a history line
// ("Error no detection of values icont=%d stop \n").
void TRF_IDX1_FILE(FILE *fp_log, char *s_idx1, char *s_trf);

#endif
