// The program's records on the current directory, as its start makes them, without a window.
#ifndef MERTU_BENCH_OPEN_BOOK_H
#define MERTU_BENCH_OPEN_BOOK_H

#include "app/book_start.h"
#include "util/book.h"

// A start of the program: mertu.conf read, every index brought up to date.
struct Open_book {
  Trf_records records;
  Trf_book *book;

  Open_book();
  ~Open_book();
  Open_book(const Open_book &) = delete;
  Open_book &operator=(const Open_book &) = delete;
};

// Makes the directory of that name afresh in the directory of the moment, and it the current one
// until it goes.
struct Scratch_home {
  explicit Scratch_home(const char *name);
  ~Scratch_home();
  Scratch_home(const Scratch_home &) = delete;
  Scratch_home &operator=(const Scratch_home &) = delete;
};

#endif
