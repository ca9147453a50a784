// The table of figures.
#include "bench/table.h"

namespace {

// A number with so many digits behind the point.
std::string number(double value, int digits) {
  char text[64];
  snprintf(text, sizeof(text), "%.*f", digits, value);
  return text;
}

// A bar as it was set.
std::string plain(double value) {
  char text[64];
  snprintf(text, sizeof(text), "%g", value);
  return text;
}

std::string seconds(double s) {
  if (s < 0.001)
    return number(s * 1e6, 0) + " us";
  return s < 1 ? number(s * 1e3, 1) + " ms" : number(s, 2) + " s";
}

double beyond_syncs(const Cost &cost) {
  return cost.wall - cost.syncs;
}

double rate(const Figure &figure) {
  return figure.megabytes / figure.cost.wall;
}

std::string bar_of(const Figure &figure) {
  switch (figure.kind) {
  case BAR_RATIO:
    return plain(figure.bar) + " times";
  case BAR_SECONDS:
    return seconds(figure.bar);
  case BAR_BEYOND_SYNCS:
    return seconds(figure.bar) + " beyond syncs";
  case BAR_RATE:
    return plain(figure.bar) + " MB/s, or 2 times";
  case BAR_MEMORY:
    return plain(figure.bar) + " MB";
  default:
    return "";
  }
}

bool keeps_bar(const Figure &figure) {
  switch (figure.kind) {
  case BAR_RATIO:
    return figure.cost.wall <= figure.bar * figure.floor.wall;
  case BAR_SECONDS:
    return figure.cost.wall <= figure.bar;
  case BAR_BEYOND_SYNCS:
    return beyond_syncs(figure.cost) <= figure.bar;
  case BAR_RATE:
    return rate(figure) >= figure.bar || figure.cost.wall <= 2 * figure.floor.wall;
  case BAR_MEMORY:
    return figure.megabytes <= figure.bar;
  default:
    return true;
  }
}

std::string took(const Figure &figure) {
  if (figure.kind == BAR_MEMORY)
    return number(figure.megabytes, 1) + " MB";
  if (figure.kind == BAR_RATE)
    return number(rate(figure), 0) + " MB/s";
  return seconds(figure.cost.wall);
}

// The floor's time, and how many times it the work took: on the wall, and in processor time.
std::string beside_floor(const Figure &figure) {
  if (figure.floor.wall <= 0)
    return "| | |";
  return "| " + seconds(figure.floor.wall) + " | " +
         number(figure.cost.wall / figure.floor.wall, 2) + " | " +
         number(figure.cost.cpu / figure.floor.cpu, 2);
}

} // namespace

void PRINT_HEAD(FILE *out) {
  fprintf(out, "| what | input | took | of it syncs | processor | floor | times it | times it, "
               "processor | bar | kept |\n"
               "|---|---|--:|--:|--:|--:|--:|--:|---|---|\n");
}

void PRINT_FIGURE(const Figure &figure, FILE *out) {
  const Cost &cost = figure.cost;
  fprintf(out, "| %s | %s | %s | %s | %s %s | %s | %s |\n", figure.what.c_str(),
          figure.input.c_str(), took(figure).c_str(),
          cost.nb_syncs > 0 ? seconds(cost.syncs).c_str() : "",
          cost.cpu > 0 ? seconds(cost.cpu).c_str() : "", beside_floor(figure).c_str(),
          bar_of(figure).c_str(),
          figure.kind == NO_BAR ? ""
          : keeps_bar(figure)   ? "yes"
                                : "NO");
  fflush(out);
}

void PRINT_GROWTH_HEAD(FILE *out) {
  fprintf(out, "| what | input | instructions | times those of the small one | size times its "
               "logarithm | kept |\n"
               "|---|---|--:|--:|--:|---|\n");
}

void PRINT_GROWTH(const std::string &what, const std::string &large, double small_count,
                  double large_count, double due, FILE *out) {
  double grown = large_count / small_count;
  fprintf(out, "| %s | %s | %s M | %.1f | %.1f | %s |\n", what.c_str(), large.c_str(),
          number(large_count / 1e6, 1).c_str(), grown, due, grown <= due ? "yes" : "NO");
  fflush(out);
}
