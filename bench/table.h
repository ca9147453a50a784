// The table of figures: what was measured beside its floor and its bar.
#ifndef MERTU_BENCH_TABLE_H
#define MERTU_BENCH_TABLE_H

#include <stdio.h>

#include <string>

#include "bench/cost.h"

enum Bar_kind {
  NO_BAR,
  BAR_RATIO,        // at most so many times the floor
  BAR_SECONDS,      // at most so many seconds
  BAR_BEYOND_SYNCS, // at most so many seconds besides the syncs
  BAR_RATE,         // at least so many MB/s, or half as fast as the floor
  BAR_MEMORY        // at most so many MB
};

struct Figure {
  std::string what;
  std::string input;
  Cost cost;
  Cost floor;    // wall 0 where there is none
  Bar_kind kind; // what `bar` is about
  double bar;
  double megabytes = 0; // of the input (BAR_RATE), or of memory (BAR_MEMORY)
};

// Writes the head of the table of figures.
void PRINT_HEAD(FILE *out);
// Writes one row of it.
void PRINT_FIGURE(const Figure &figure, FILE *out);

// The same of the table of growth: the instructions of the work on both inputs, and how many times
// longer the size of the larger with its logarithm is.
void PRINT_GROWTH_HEAD(FILE *out);
void PRINT_GROWTH(const std::string &what, const std::string &large, double small_count,
                  double large_count, double due, FILE *out);

#endif
