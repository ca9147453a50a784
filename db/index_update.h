// Keeping working copies and idx1 files up to date with the dictionaries.
#ifndef MERTU_DB_INDEX_UPDATE_H
#define MERTU_DB_INDEX_UPDATE_H

#include <stdio.h>

#include "config/registry.h"
#include "score/position_table.h"
#include "util/owned.h"
#include "util/safe_write.h"

// The start-up step: CPY_ALL_LESSONS, MAKE_ST_ALIAS, MEND_FORGOTTEN, IDX1_ALL_LESSONS, then
// INIT_CUM_ERR and INIT_ORDERING_POSIT on the position table. fp_log: the log, open. Ends the
// program as those do.
void CALC_INDEX(FILE *fp_log, Trf_string *G_dico, Trf_posit *t_posit);

// Refreshes the working copies (the directory CPY beside the index directory, made where missing):
// win_file copies every dictionary that is newer than its copy or has none; its index is first
// marked (MARK_OUT_OF_DATE). Dictionaries of one name, which share one copy and one index, are told
// on standard output.
// A dictionary or copy that cannot be opened is told ("cannot read file %s: %s \n", "cannot write
// file %s: %s \n") and leaves the older copy, and its index the time it had. Ends the program with
// status 1 where a dictionary is missing ("Error file %s  does not exist stop \n"), or where
// reading or writing fails after that (the same texts).
void CPY_ALL_LESSONS(FILE *fp_log, Trf_string *G_lesson);

// Rebuilds (UPDATE_IDX1_FILE) every idx1 file that is older than its working copy or missing; the
// index directory is made where missing.
void IDX1_ALL_LESSONS(FILE *fp_log, Trf_string *G_lesson);

// Makes an idx1 file, where there is one, a day older than it is and than the present, so that it
// is rebuilt once its working copy is made anew. File times are compared to the second, and the
// clock may have been set back: a copy made in the second in which its index was written last, or
// before it, would pass for indexed, and its entries be looked for in the wrong places.
void MARK_OUT_OF_DATE(const char *s_idx1);

// Makes a working copy anew, whatever the file times. Returns false, with the older copy left,
// where the dictionary or the copy cannot be opened ("cannot read file %s: %s \n" or "cannot write
// file %s: %s \n" in the log and on standard output). s_lesson: path of the dictionary. s_cpy: path
// of the working copy. Ends the program with status 1 where reading or writing fails after that
// (the same texts, with the log of SAVED_LOG).
bool RENEW_COPY(FILE *fp_log, char *s_lesson, char *s_cpy);

// A working copy, and the idx1 file being made of it. A file not committed is dropped.
struct Trf_index_files {
  Owned_stream copy;  // the working copy
  Owned_text s_alias; // the dictionary's alias, or null
  Trf_new_file idx1;  // the new idx1 file
};

// Opens the working copy and takes the alias. Ends the program with status 32, without a message,
// where it cannot be opened (a directory counts as such).
void OPEN_COPY_OR_STOP(const char *scpy_lesson, Trf_index_files *files);

// Opens the idx1 file to be written. Ends the program with status 1, "cannot write file %s: %s \n".
void OPEN_INDEX_OR_STOP(FILE *fp_log, const char *s_idx1, Trf_index_files *files);

// Puts the idx1 file written in the place of the old one. Ends the program with status 1, the old
// one left, where the working copy was not read to its end ("cannot read file %s: %s \n") or the
// new file cannot be written ("cannot write file %s: %s \n").
void COMMIT_INDEX_OR_STOP(FILE *fp_log, const char *scpy_lesson, const char *s_idx1,
                          Trf_index_files *files);

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
