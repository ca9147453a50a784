// Checking and correcting the database: index files rebuilt, every history kept and validated.
//
// For one dictionary: its idx1 file is backed up ("cpy_" before its name), its working copy made
// anew whatever the file times, and the idx1 file rebuilt (UPDATE_IDX1_FILE), which carries every
// history over and corrects damaged lines. A dictionary whose back-up cannot be made is told
// ("cannot back up file %s: %s \n", log and standard output) and left as it is.
//
// What a lesson begun before holds of offsets in these files may no longer be true afterwards.
#ifndef MERTU_DB_CHECK_CORRECT_H
#define MERTU_DB_CHECK_CORRECT_H

#include "util/book.h"

// Tells the learner (a warning, see util/dialogs), then checks and corrects dictionaries 1 to
// nbt_lesson. book: G_kentel, nbt_lesson and fp_log (the log, may be null) are read.
// Ends the program as MEND_FORGOTTEN, UPDATE_IDX1_FILE, win_file and back_up_file do.
void CHECK_CORR_ALL_DBASE(Trf_book *book);

// Checks and corrects one dictionary, then tells the learner.
// ss: the dictionary: where its first word is all digits, its number (1 to nbt_lesson, what follows
// the word does not matter), else its alias (NUM_FROM_ALIAS), blanks around it allowed; not
// changed. book: as above. A blank text, a number out of range and an unknown alias are logged, the
// last is also told; nothing else happens then.
// Ends the program as above.
void CHECK_CORR_SNG_DBASE(char *ss, Trf_book *book);

#endif
