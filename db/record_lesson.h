// What was learned is written back: the counts of the current lesson into the idx1 files.
#ifndef MERTU_DB_RECORD_LESSON_H
#define MERTU_DB_RECORD_LESSON_H

#include "util/book.h"

// Days that can be recorded: no later day number is taken.
const long LAST_RECORDED_DAY = 10000;
// Counts that can be recorded: no greater one is taken.
const long MAX_RECORDED_COUNT = 10000;

// Writes the counts of the current lesson (book->ilesson; nothing where it is negative) from the
// position table into the idx1 files, each changed history line in place (db/pending_changes), and
// syncs the files before it ends in whatever way. Says "RECORD_LESSON %d DONE  nb_errors=%d\n" in
// the log (nb_errors: dictionaries with faulty lines). With faulty lines: the idx1 file is backed
// up ("cannot back up file %s \n", log and standard output, where it cannot be), the learner told
// (util/dialogs), and the last dictionary checked and corrected (CHECK_CORR_SNG_DBASE). book:
// ilesson, t_posit and fp_log are read, G_kentel and nbt_lesson by the correction; fp_gene and
// fp_idx1 are closed and null afterwards. A generated lesson file or an idx1 file that cannot be
// opened is told ("RECORD_LESSON cannot open file %s \n", log and standard output) and its words
// are not recorded. A line or file that cannot be read or written is told
// ("cannot read file %s: %s \n", "cannot write file %s: %s \n", log and standard output), the
// others are recorded. Ends the program (texts in the log and on standard output):
//   10 "RECORD_LESSON error 10" after day 10000;
//   1 "RECORD_LESSON error 1" where a count is above 10000;
//   2 "RECORD_LESSON error 2" where a count is below the file's (before it, on standard output,
//   "entry %s stands twice in the lesson \n" where that is why);
//   as NEXT_LESSON_WORD, MEND_FORGOTTEN, back_up_file and CHECK_CORR_SNG_DBASE do.
void RECORD_LESSON(Trf_book *book);

// Asks whether the history of the current lesson is to be forgotten (util/dialogs). No: records it
// (RECORD_LESSON). Any other answer: erases it; each word's record then is its name line and one
// line of 106 characters, which db/mend_forgotten makes whole before anyone reads it. Nothing where
// ilesson is below 1; a composed lesson says "composed lesson: nothing recorded, nothing forgotten
// \n" on standard output. Nothing either where the window went, or another lesson came, while the
// question stood.
// A file that cannot be opened or written is told as by RECORD_LESSON. Ends the program as
// RECORD_LESSON does where that is called; else as MEND_FORGOTTEN and, under the name
// RECORD_LESSON, NEXT_LESSON_WORD do, before anything is erased.
void RAZ_LESSON(Trf_book *book);

#endif
