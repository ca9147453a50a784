// A book on a scratch directory with two dictionaries, "aa" and "bb", without a window.
#ifndef MERTU_TESTS_QUIZ_BOOK_OF_FILES_H
#define MERTU_TESTS_QUIZ_BOOK_OF_FILES_H

#include <glib.h>

#include <string>

#include "config/registry.h"
#include "quiz/locate_entry.h"
#include "score/position_table.h"
#include "support/scratch.h"
#include "util/book.h"

struct Book_of_files {
  Scratch_dir dir;
  Trf_string registry = {};
  Trf_posit table = {};
  Trf_book book = {};

  Book_of_files() {
    START_REGISTRY(&registry);
    g_free(registry.st_lesson);
    registry.st_lesson = g_strdup("words/a.txt &/b.txt ");
    registry.nb_lesson = 2;
    g_free(registry.st_alias);
    registry.st_alias = g_strdup(" aa bb ");
    ALLOCATE_POSIT(4, &table);
    table.nb_posit = 2;
    book.t_posit = &table;
    book.G_kentel = &registry;
    book.ilesson = 1;
    book.sens_qr = 1;
    book.state = 1;
    book.sound = 1;
    book.interro_sound = 1;
    book.fp_log = fopen("log", "w");
  }
  ~Book_of_files() {
    DROP_STREAM(&book);
    g_free(book.path_of_lesson);
    if (book.fp_log != nullptr)
      fclose(book.fp_log);
    FREE_POSIT(&table);
    FREE_REGISTRY(&registry);
  }
  Book_of_files(const Book_of_files &) = delete;
  Book_of_files &operator=(const Book_of_files &) = delete;

  // What the log holds.
  std::string log() {
    fflush(book.fp_log);
    return dir.read("log");
  }
};

#endif
