// What Mertu writes, one operation at a time, without a window.
#ifndef MERTU_TESTS_FAULTS_OPERATIONS_H
#define MERTU_TESTS_FAULTS_OPERATIONS_H

#include <ostream>
#include <vector>

struct Operation {
  const char *name;
  void (*prepare)(); // what stands in the directory before, on top of a healthy database
  void (*work)();    // the operation, from the start of the program on
  bool composes;     // what it answers hangs on the dictionaries that can be read
};

// How the tests show it.
inline void PrintTo(const Operation &operation, std::ostream *stream) {
  *stream << operation.name;
}

// Every operation that writes.
extern const std::vector<Operation> OPERATIONS;

// The start of the program, as far as its window; then both lessons are loaded. Says STARTED when
// each holds all its entries.
void START_AND_LOAD();
const char STARTED[] = "both lessons are there";

#endif
