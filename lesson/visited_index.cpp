// The index of a dictionary that composed lessons and reports visit.
#include "lesson/visited_index.h"

#include "config/registry.h"
#include "util/report.h"

bool OPEN_VISITED_INDEX(int k, Trf_registry_walk *walk, FILE *fp_log, Trf_visited_index *index) {
  if (!IS_FOUND_BY_ALIAS(k, walk))
    return false;
  index->s_idx1.reset(S_IDX1_FROM_NUM(k, walk));
  if (index->s_idx1 == nullptr)
    return false;
  index->fp = OPEN_STREAM(index->s_idx1.get(), "r");
  if (index->fp == nullptr)
    LOG_LINE(fp_log, "cannot open file %s, skipped \n", index->s_idx1.get());
  return index->fp != nullptr;
}
