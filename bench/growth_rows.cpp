// The rows of growth: the same work on twenty-five times as many lines.
#include <math.h>

#include "bench/rows.h"

namespace {

double size_with_logarithm(const Life &life) {
  double nb = (double)life.nb_dictionaries * life.nb_lines;
  return nb * log(nb);
}

} // namespace

void GROWTH_ROWS(const Measured &measured, FILE *out) {
  PRINT_GROWTH_HEAD(out);
  for (const auto &[key, small] : measured) {
    if (key.second != FEW_DICTIONARIES.text)
      continue;
    for (const Life *life : {&LONG_DICTIONARIES, &MANY_DICTIONARIES}) {
      auto large = measured.find({key.first, life->text});
      if (large == measured.end())
        continue;
      double took = large->second.cpu / small.cpu;
      double due = size_with_logarithm(*life) / size_with_logarithm(FEW_DICTIONARIES);
      PRINT_GROWTH(key.first, FEW_DICTIONARIES.text, life->text, took, due, out);
    }
  }
}
