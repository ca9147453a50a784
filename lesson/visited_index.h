// The index of a dictionary that composed lessons and reports visit.
#ifndef MERTU_LESSON_VISITED_INDEX_H
#define MERTU_LESSON_VISITED_INDEX_H

#include <stdio.h>

#include "util/owned.h"

struct Trf_registry_walk;

// An idx1 file open for reading, and its path.
struct Trf_visited_index {
  Owned_text s_idx1;
  Owned_stream fp;
};

// Opens the idx1 file of dictionary k (from 1). Returns false where the dictionary is not to be
// visited (IS_FOUND_BY_ALIAS says no), and where the file cannot be opened: that is logged,
// "cannot open file %s, skipped \n". fp_log: may be null.
bool OPEN_VISITED_INDEX(int k, Trf_registry_walk *walk, FILE *fp_log, Trf_visited_index *index);

#endif
