// What the machine takes for the bare work: the same bytes read, converted, sorted and written,
// with the same syncs, and nothing learned.
#ifndef MERTU_BENCH_FLOORS_H
#define MERTU_BENCH_FLOORS_H

#include <string>
#include <vector>

#include "bench/learner_life.h"

// Reads every line of these files with the line reader. Returns the bytes of their texts.
long READ_LINES(const std::vector<std::string> &paths);

// Goes through the bytes one by one, and counts lines and their bytes.
long LOOP_OVER_BYTES(const std::string &bytes);

// An index made: each dictionary read, converted to CP1252 by iconv and written as its copy; the
// copy read; where there is an old index, that read, written as idx1_old and read again; the index
// written. Copies and indexes are synced. What was written stands in ./floor.
struct Index_floor {
  std::vector<std::string> dictionaries;
  std::vector<std::string> old_indexes; // empty for a first index
  std::vector<std::string> indexes;     // the bytes to be written

  // old: whether there is an old index.
  Index_floor(const Life &life, bool old);
  void run() const;
};

// A listing made: the lines of the indexes read with the line reader, the keys (./keys) sorted by
// `sort` in the C locale, ./mertu_dico1 and ./mertu_dico written.
struct Listing_floor {
  std::vector<std::string> indexes;
  std::string listed;
  std::string sorted;

  // The listing has been made; leaves ./keys.
  explicit Listing_floor(const Life &life);
  void run() const;
};

#endif
