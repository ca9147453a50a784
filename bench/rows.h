// The rows of the benchmark in the process: each piece of work and its floor.
#ifndef MERTU_BENCH_ROWS_H
#define MERTU_BENCH_ROWS_H

#include <stdio.h>

#include <functional>
#include <string>
#include <vector>

#include "bench/cost.h"
#include "bench/learner_life.h"
#include "bench/table.h"

struct Work {
  std::string what;
  Bar_kind kind = NO_BAR;
  double bar = 0;
  std::function<void()> prepare; // done before each time, not measured; may be empty
  std::function<void()> work;
  std::function<void()> floor; // may be empty
  double megabytes = 0;
};

// Each program of the benchmark does so in its own way: bench_core does the works in random turns
// with their floors, each so many times, and writes a row of medians for each to `out`;
// bench_growth does each once and keeps how many instructions it takes.
void MEASURE(const std::string &input, const std::vector<Work> &works, int times, FILE *out);

// A full learner's life: start, lessons, commands, recording; the line reader.
void LIFE_ROWS(FILE *out);
// What grows: indexing, synchronising and the commands that look at every word.
void LOAD_ROWS(const Life &life, int times, FILE *out);

#endif
