// A book with a position table filled by hand, both orderings sorted.
#ifndef MERTU_TESTS_QUIZ_LESSON_TABLE_H
#define MERTU_TESTS_QUIZ_LESSON_TABLE_H

#include <vector>

#include "quiz/choose_entry.h"
#include "quiz/verdict.h"
#include "score/error_score.h"
#include "score/merge_sort.h"
#include "score/position_table.h"
#include "util/book.h"

// The numbers of one entry in one direction.
struct Numbers {
  long err = -1;
  long nb = 0;
  long nb0 = 0;
  long nok = 0;
  long nok0 = 0;
};

inline bool operator==(const Numbers &a, const Numbers &b) {
  return a.err == b.err && a.nb == b.nb && a.nb0 == b.nb0 && a.nok == b.nok && a.nok0 == b.nok0;
}

inline std::ostream &operator<<(std::ostream &out, const Numbers &n) {
  return out << "{err " << n.err << " nb " << n.nb << "-" << n.nb0 << " nok " << n.nok << "-"
             << n.nok0 << "}";
}

struct Lesson_table {
  Trf_posit table = {};
  Trf_err weights = {9, 3, 2, 6, 10};
  Trf_book book = {};

  // The entries from 1 on, alike in both directions unless `back` gives the R->Q numbers.
  explicit Lesson_table(const std::vector<Numbers> &entries, std::vector<Numbers> back = {}) {
    if (back.empty())
      back = entries;
    ALLOCATE_POSIT(static_cast<int>(entries.size()) + 1, &table);
    table.nb_posit = static_cast<int>(entries.size());
    fill(1, entries);
    fill(2, back);
    table.QRord_posit[table.nb_posit + 1] = table.RQord_posit[table.nb_posit + 1] = -1;
    book.t_posit = &table;
    book.t_err = &weights;
    book.sens_qr = book.sens_qrm = 1;
    book.ilesson = 1;
    FORGET_CHOICES();
    FORGET_VERDICTS();
  }
  ~Lesson_table() {
    FREE_POSIT(&table);
  }
  Lesson_table(const Lesson_table &) = delete;
  Lesson_table &operator=(const Lesson_table &) = delete;

  // Announces and starts the lesson, as far as the choice is concerned.
  void start() {
    book.start_lesson = 0;
    PREPARE_CHOICE(&book);
    book.start_lesson = 2;
    PREPARE_CHOICE(&book);
    book.start_lesson = 3;
  }
  // Asks an entry, at its present rank.
  void ask(int entry) {
    book.QR_no = entry;
    std::vector<int> order = ranks(book.sens_qrm);
    for (int r = 1; r <= table.nb_posit; r++)
      if (order[r - 1] == entry)
        book.QR_order = r;
  }
  Numbers numbers(int sens, int entry) {
    Trf_side side = SIDE_OF_TABLE(sens, &table);
    return {side.cum_err[entry], side.nb[entry], side.nb0[entry], side.nok[entry],
            side.nok0[entry]};
  }
  std::vector<int> ranks(int sens) {
    Trf_side side = SIDE_OF_TABLE(sens, &table);
    return std::vector<int>(side.ord + 1, side.ord + 1 + table.nb_posit);
  }

private:
  void fill(int sens, const std::vector<Numbers> &entries) {
    Trf_side side = SIDE_OF_TABLE(sens, &table);
    for (int i = 1; i <= table.nb_posit; i++) {
      const Numbers &n = entries[i - 1];
      side.cum_err[i] = n.err;
      side.nb[i] = n.nb;
      side.nb0[i] = n.nb0;
      side.nok[i] = n.nok;
      side.nok0[i] = n.nok0;
      side.ord[i] = i;
    }
    MERGESORT(1, table.nb_posit, side.ord, side.cum_err);
  }
};

#endif
