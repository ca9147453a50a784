// What a piece of work costs: time on the wall, processor time, and how much of the former went
// into putting files on the disk.
#ifndef MERTU_BENCH_COST_H
#define MERTU_BENCH_COST_H

#include <functional>

struct Cost {
  double wall = 0;  // seconds
  double cpu = 0;   // seconds of processor time besides the syncs, that of child processes too
  double syncs = 0; // seconds of `wall` spent in fsync
  int nb_syncs = 0; // calls of fsync
};

// Does the work and tells its cost. In a program that links this file every fsync is counted, and
// the present moment stands still (day 3000), so that what is scored is the same in every run.
Cost COST_OF(const std::function<void()> &work);

#endif
