// The program from its start to its end, without a window.
#ifndef MERTU_TESTS_FAULTS_PROGRAM_RUN_H
#define MERTU_TESTS_FAULTS_PROGRAM_RUN_H

#include <string>

#include "app/book_start.h"
#include "app/last_state.h"
#include "config/registry.h"
#include "lesson/numbered_lesson.h"
#include "score/position_table.h"
#include "support/present.h"
#include "util/dialogs.h"
#include "util/owned.h"
#include "util/report.h"

const char ONE[] = "./one.txt";
const char TWO[] = "./two.txt";
const int NB_ONE = 4; // entries; it borrows one
const int NB_TWO = 3;

inline Trf_answer ANSWER_ALWAYS_YES(Trf_question, const char *, Trf_book *) {
  return ANSWER_YES;
}

inline void SAY_NOTICE(Trf_notice, const char *text, Trf_book *) {
  SAY("%s", text);
}

// The program from its start to its end. Today is day 3000.
struct Program_run {
  Trf_records records = {};
  Trf_book *book = nullptr;

  explicit Program_run(int year = 2009, int month = 3, int day = 20) {
    static const Trf_dialogs dialogs = {ANSWER_ALWAYS_YES, SAY_NOTICE};
    SET_PRESENT_DAY(year, month, day);
    SET_DIALOGS(&dialogs);
    ALLOCATE_RECORDS(&records);
    book = records.book;
    PREPARE_WORDS(&records);
    START_PAGE_NUMBER(records.S_state, book);
    book->fp = nullptr;
    book->exfp = 0;
    START_VALUES(&records);
    if (book->nbt_lesson != 2)
      SAY("cannot find all lessons");
  }
  ~Program_run() {
    FREE_RECORDS(&records);
  }
  Program_run(const Program_run &) = delete;
  Program_run &operator=(const Program_run &) = delete;

  // A dictionary that could not be looked at is no lesson, and one that could not be loaded is
  // empty, or lacks what it borrows: the learner sees it.
  void load(const char *dictionary) {
    int n = 1;
    while (n <= book->nbt_lesson &&
           Owned_text(S_LESSON_FROM_NUM(n, book->G_kentel)).get() != std::string(dictionary))
      n++;
    book->ilesson = n;
    book->start_lesson = 2; // described: the learner's press loads it
    book->t_posit->nb_posit = 0;
    if (n <= book->nbt_lesson)
      INIT_LESSON(&n, book);
    if (book->t_posit->nb_posit != (std::string(dictionary) == ONE ? NB_ONE : NB_TWO))
      SAY("cannot load all of %s", dictionary);
  }
  // Every question missed once, every response known often.
  void answer_all() {
    for (int i = 1; i <= book->t_posit->nb_posit; i++) {
      book->t_posit->QRcum_nok[i] += 1;
      book->t_posit->RQcum_nb[i] += 3;
    }
  }
};

#endif
