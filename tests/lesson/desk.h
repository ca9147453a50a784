// A desk with dictionaries, their idx1 files and a book: what the tests of the lessons work on.
#ifndef MERTU_TESTS_LESSON_DESK_H
#define MERTU_TESTS_LESSON_DESK_H

#include <glib.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "config/registry.h"
#include "db/history_line.h"
#include "lesson/numbered_lesson.h"
#include "score/error_score.h"
#include "score/position_table.h"
#include "support/present.h"
#include "support/scratch.h"
#include "util/book.h"

// The history line of nb known and nok not-known answers, with its line end.
inline std::string HISTORY(long nb, long nok, long date_ok, long date_nok) {
  const long values[] = {0, nb, nok, date_ok, date_nok};
  char line[64] = {};
  WRITE_HISTORY_LINE(values, line);
  return std::string(line) + "\r\n";
}

inline std::string NEVER() {
  return std::string(BLANK_HISTORY_LINE()) + "\r\n";
}

inline std::string HEADER(const std::string &path, const std::string &alias) {
  return path + " " + alias + " \r\n" + std::string(53, '#') + "\r\n";
}

inline std::string TRAILER() {
  return "# END_OF_FILE * 99 \r\n";
}

// Three dictionaries one.txt, two.txt, three.txt with the aliases a1, b2, c3; today is day 3000.
struct Desk {
  Scratch_dir dir;
  Trf_string registry = {};
  Trf_posit table;
  Trf_err weights = {9.0F, 3.0F, 2.0F, 6.0F, 10.0F};
  Trf_book book = {};

  Desk() {
    SET_PRESENT_DAY(2009, 3, 20);
    START_REGISTRY(&registry);
    set_list("words/one.txt &/two.txt three.txt ", 3);
    g_free(registry.st_alias);
    registry.st_alias = g_strdup(" a1 b2 c3 ");
    dir.write("words/one.txt", "!# a1\n");
    dir.write("words/two.txt", "!# b2\n");
    dir.write("three.txt", "!# c3\n");
    book.G_kentel = &registry;
    book.t_posit = &table;
    book.t_err = &weights;
    book.fp_log = fopen("log", "w");
    setvbuf(book.fp_log, nullptr, _IONBF, 0);
  }
  ~Desk() {
    fclose(book.fp_log);
    FREE_POSIT(&table);
    FREE_REGISTRY(&registry);
    RESET_PRESENT();
  }
  void set_list(const char *list, int nb) {
    g_free(registry.st_lesson);
    registry.st_lesson = g_strdup(list);
    registry.nb_lesson = nb;
  }
  // The idx1 file of dictionary "one.txt" with this behind its header.
  void write_idx1(const std::string &name, const std::string &records) {
    dir.write("IDX1/idx1_" + name, HEADER("./IDX1/idx1_" + name, "a1") + records);
  }
  std::string log() const {
    return dir.read("log");
  }
};

// Loads lesson n.
inline void LOAD(Desk *desk, int n) {
  INIT_LESSON(&n, &desk->book);
}

// The name line of entry i, and nb entries known i times.
inline std::string ENTRY(int i) {
  return "#mot" + std::to_string(i) + " *a1 " + std::to_string(10 * i) + " * word \r\n";
}

inline std::string ENTRIES(int nb) {
  std::string records;
  for (int i = 1; i <= nb; i++)
    records += ENTRY(i) + HISTORY(i, 0, 2990, 0) + NEVER();
  return records;
}

template <typename Number> std::vector<Number> FIRST_OF(const Number *array, int nb) {
  return std::vector<Number>(array, array + nb);
}

// Elements 1 to nb of an array.
template <typename Number> std::vector<Number> ENTRIES_OF(const Number *array, int nb) {
  return std::vector<Number>(array + 1, array + 1 + nb);
}

#endif
