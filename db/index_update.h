// Keeping working copies and idx1 files up to date with the dictionaries.
#ifndef MERTU_DB_INDEX_UPDATE_H
#define MERTU_DB_INDEX_UPDATE_H

#include <stdio.h>

#include "config/registry.h"
#include "score/position_table.h"

// The start-up step: CPY_ALL_LESSONS, MAKE_ST_ALIAS, IDX1_ALL_LESSONS, then INIT_CUM_ERR and
// INIT_ORDERING_POSIT on the position table. fp_log: the log, open. Ends the program as those do.
void CALC_INDEX(FILE *fp_log, Trf_string *G_dico, Trf_posit *t_posit);

// Refreshes the working copies (the directory CPY beside the index directory, made where missing):
// win_file copies every dictionary that is newer than its copy or has none. Dictionaries of one
// name, which share one copy and one index, are told on standard output.
// A dictionary or copy that cannot be opened is told ("cannot read file %s: %s \n", "cannot write
// file %s: %s \n") and leaves the older copy. Ends the program with status 1 where a dictionary is
// missing ("Error file %s  does not exist stop \n"), or where reading or writing fails after that
// (the same texts).
void CPY_ALL_LESSONS(FILE *fp_log, Trf_string *G_lesson);

// Rebuilds (UPDATE_IDX1_FILE) every idx1 file that is older than its working copy or missing; the
// index directory is made where missing.
void IDX1_ALL_LESSONS(FILE *fp_log, Trf_string *G_lesson);

// Rebuilds one idx1 file from one working copy, the old history carried over; the old file is
// replaced as a whole (util/safe_write). Its copy stays behind as "./idx1_old".
// scpy_lesson: path of the working copy. s_idx1: path of the idx1 file.
// Ends the program before anything is written: status 32 without a message where the working copy
// cannot be opened (a directory counts as such); status 1 where the old index exists but cannot be
// read ("cannot read file %s: %s \n") or copied ("cannot write file %s: %s \n"), where ./idx1_old
// cannot be opened ("sub IDX1_EACH_DICO error fp_class STOP \n"), or as CLASS_OLD_WORDS does. Also
// as IDX1_DICO does, and with status 1 where the working copy cannot be read to its end ("cannot
// read file %s: %s \n") or the new file cannot be written ("cannot write file %s: %s \n"): the old
// idx1 file then still stands.
void UPDATE_IDX1_FILE(FILE *fp_log, char *scpy_lesson, char *s_idx1);

#endif
