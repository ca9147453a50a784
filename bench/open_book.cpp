// The program's records on the current directory.
#include "bench/open_book.h"

#include <filesystem>

namespace fs = std::filesystem;

Open_book::Open_book() : records() {
  ALLOCATE_RECORDS(&records);
  book = records.book;
  PREPARE_WORDS(&records);
  START_VALUES(&records);
}

Open_book::~Open_book() {
  FREE_RECORDS(&records);
}

Scratch_home::Scratch_home(const char *name) {
  fs::remove_all(name);
  fs::create_directory(name);
  fs::current_path(name);
}

Scratch_home::~Scratch_home() {
  fs::current_path("..");
}
