// How the work grows:  valgrind --tool=callgrind --callgrind-out-file=COUNTS bench_growth DIRECTORY
// COUNTS TABLE
//
// Each work is done once on forty dictionaries and on twenty-five times as many lines, and its
// instructions are counted: they are the same in every run and on every machine, where times grow
// with its caches and its disk too. Works in scratch directories that it makes in DIRECTORY, and
// appends its table to the file TABLE. What the program says goes nowhere.
#include <math.h>
#include <stdlib.h>
#include <valgrind/callgrind.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "bench/rows.h"

namespace {

namespace fs = std::filesystem;

// Where callgrind writes its counts: COUNTS.1, COUNTS.2, ...
std::string counts;

// The instructions of each work on each input.
std::map<std::pair<std::string, std::string>, double> counted;

// What the last count says; 0 where nothing was counted.
double read_count() {
  static int nth = 0;
  std::ifstream file(counts + "." + std::to_string(++nth));
  const std::string head = "totals: ";
  for (std::string line; std::getline(file, line);)
    if (line.compare(0, head.size(), head) == 0)
      return atof(line.c_str() + head.size());
  return 0;
}

double instructions_of(const std::function<void()> &work) {
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  work();
  CALLGRIND_STOP_INSTRUMENTATION;
  CALLGRIND_DUMP_STATS;
  return read_count();
}

double size_with_logarithm(const Life &life) {
  double nb = (double)life.nb_dictionaries * life.nb_lines;
  return nb * log(nb);
}

// False when something was not counted.
bool print_growth(FILE *out) {
  bool all = !counted.empty();
  PRINT_GROWTH_HEAD(out);
  for (const auto &[key, small] : counted) {
    if (key.second != FEW_DICTIONARIES.text)
      continue;
    for (const Life *life : {&LONG_DICTIONARIES, &MANY_DICTIONARIES}) {
      double large = counted[{key.first, life->text}];
      double due = size_with_logarithm(*life) / size_with_logarithm(FEW_DICTIONARIES);
      PRINT_GROWTH(key.first, life->text, small, large, due, out);
      all = all && small > 0 && large > 0;
    }
  }
  return all;
}

} // namespace

void MEASURE(const std::string &input, const std::vector<Work> &works, int, FILE *) {
  for (const Work &work : works) {
    if (work.prepare)
      work.prepare();
    counted[{work.what, input}] = instructions_of(work.work);
  }
}

int main(int argc, char **argv) {
  if (argc != 4)
    return 1;
  FILE *out = fopen(argv[3], "a");
  if (out == nullptr || freopen("/dev/null", "w", stdout) == nullptr)
    return 1;
  counts = fs::absolute(argv[2]);
  fs::current_path(argv[1]);
  for (const Life *life : {&FEW_DICTIONARIES, &LONG_DICTIONARIES, &MANY_DICTIONARIES})
    LOAD_ROWS(*life, 1, nullptr);
  bool all = print_growth(out);
  fclose(out);
  return all ? 0 : 1;
}
