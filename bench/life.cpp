// Makes a full learner's life ready to be started:  bench_life DIRECTORY
//
// 100 dictionaries of 100 entries with their indexes and years of histories, all up to date.
#include <filesystem>

#include "bench/learner_life.h"
#include "bench/open_book.h"

int main(int argc, char **argv) {
  if (argc != 2)
    return 1;
  std::filesystem::create_directories(argv[1]);
  std::filesystem::current_path(argv[1]);
  WRITE_LIFE(FULL_LIFE);
  Open_book started;
  WRITE_HISTORIES(FULL_LIFE, true);
  SETTLE_TIMES(FULL_LIFE);
  return 0;
}
