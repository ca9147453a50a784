// The rows of the benchmark in the process: each piece of work and its floor, measured in turns.
#ifndef MERTU_BENCH_ROWS_H
#define MERTU_BENCH_ROWS_H

#include <stdio.h>

#include <functional>
#include <map>
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

// What was measured of each work, on each input.
using Measured = std::map<std::pair<std::string, std::string>, Cost>;

// Measures the works in random turns, each so many times, and prints a row of medians for each.
void MEASURE(const std::string &input, const std::vector<Work> &works, int times, FILE *out,
             Measured *measured);

// A full learner's life: start, lessons, commands, recording; the line reader.
void LIFE_ROWS(FILE *out, Measured *measured);
// What grows: indexing, synchronising and the commands that look at every word.
void LOAD_ROWS(const Life &life, int times, FILE *out, Measured *measured);
// How it grew.
void GROWTH_ROWS(const Measured &measured, FILE *out);

#endif
