// What the maintenance of a dictionary on request begins with: its paths, the back-up of its index,
// its working copy made anew.
#ifndef MERTU_DB_MAINTENANCE_H
#define MERTU_DB_MAINTENANCE_H

#include <stdio.h>

#include "config/registry.h"
#include "util/owned.h"

// What a notice about rebuilt index files ends with (text for TELL_LEARNER).
const char COMPARE_ALL_NOTICE[] = "Look at file mertu_log for details.\n"
                                  "Compare in directory IDX1 the present \n"
                                  "idx1_files to the previous cpy_idx1_files !\n";

// The three files of a dictionary.
struct Trf_dictionary_paths {
  Owned_text s_lesson; // the dictionary
  Owned_text s_cpy;    // its working copy
  Owned_text s_idx1;   // its idx1 file
};

// Looks the paths of dictionary num (from 1) up. Returns false where there is no such dictionary.
// Ends the program as S_LESSON_FROM_NUM does.
bool PATHS_OF_DICTIONARY(int num, Trf_registry_walk *walk, Trf_dictionary_paths *paths);

// Backs an idx1 file up (back_up_file). Returns 0, or the errno that tells why not: ENOENT where
// there is no idx1 file, never ENOENT where there is one. Ends the program as back_up_file does.
int BACK_UP_INDEX(char *s_idx1);

// Makes the working copy anew before its index is rebuilt (RENEW_COPY; a copy that cannot be made
// is told and leaves the older one). The idx1 file is first made a day older: should the
// program end before the rebuild, the next start sees that the index is out of date.
// Ends the program as RENEW_COPY does.
void RENEW_BEFORE_REBUILD(FILE *fp_log, const Trf_dictionary_paths &paths);

#endif
