// Synchronising: the histories of another copy of the database merged into this one.
//
// Of each of an entry's eight values (four per direction) the larger one stands, whichever of the
// two copies holds it. Entries are known by their question, as in every rebuild (db/old_index.h).
#ifndef MERTU_DB_SYNCHRONISE_H
#define MERTU_DB_SYNCHRONISE_H

#include <stdio.h>

#include "db/old_index.h"
#include "util/book.h"

// Tells the learner (a warning, see util/dialogs), then for each dictionary (1 to nbt_lesson) makes
// the working copy anew, backs the idx1 file up and merges it (SYNCHRO_IDX1_FILE) with the file of
// the same name in another directory. A dictionary without such a file there is left as it is, its
// working copy too.
// path_synchro: that directory; blanks around it are dropped, "./" is put before a name that does
// not begin with '/', '\', "./" or ".\", '\' becomes '/', a '/' is added at its end; not changed. A
// blank path does nothing. book: G_kentel, nbt_lesson and fp_log (the log, may be null) are read.
// Ends the program with status 1 where the back-up cannot be made ("sub SYNCHRO_IDX1_FILE error
// fp_class STOP \n"), and as MEND_FORGOTTEN, SYNCHRO_IDX1_FILE, win_file and back_up_file do.
void SYNCHRO_ALL_DBASE(char *path_synchro, Trf_book *book);

// Writes an idx1 file anew from the working copy, each history the larger of two. The old file is
// replaced as a whole (util/safe_write).
// fp_log: the log, may be null. scpy_lesson: path of the working copy. s_idx1: path of the idx1
// file; its back-up, just made by back_up_file, is what is read. s_idx1_bis: path of the other idx1
// file; where it cannot be opened nothing is changed ("cannot read file %s: %s \n", in the log, and
// on standard output unless there is none of that name).
// A record that was forgotten there and not yet made whole counts as blank (db/mend_forgotten.h).
// Ends the program before anything is written: status 32 without a message where the working copy
// cannot be opened; status 1 where the back-up cannot be opened ("sub SYNCHRO_IDX1_FILE error
// fp_class STOP \n"), as CLASS_OLD_WORDS and SYNCHRO_IDX1 do, and where the other index or the
// working copy cannot be read to its end ("cannot read file %s: %s \n") or the new file cannot be
// written ("cannot write file %s: %s \n").
void SYNCHRO_IDX1_FILE(FILE *fp_log, char *scpy_lesson, char *s_idx1, char *s_idx1_bis);

// Writes a whole idx1 file as IDX1_DICO does (db/index_writer.h, the same parameters, messages and
// ends of the program), each history the larger of those of two old indexes.
// own, other: the old indexes as CLASS_OLD_WORDS left them, their s_idx1 set; both stay open. An
// entry that neither holds gets eight zeros. A damaged history line is logged ("IDX1_DICO and
// CHECK_4LINTsome error in file : %s \n", the index it stands in; "some error 2" for R->Q).
void SYNCHRO_IDX1(FILE *fp_log, FILE *fp, char *sfp1, char *st_alias, FILE *fpi, Trf_classmt *own,
                  Trf_classmt *other, int *nb);

#endif
