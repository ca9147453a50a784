// What Mertu writes, one operation at a time, without a window.
#include "faults/operations.h"

#include <filesystem>
#include <fstream>
#include <string>

#include "app/book_start.h"
#include "app/last_state.h"
#include "command/dictionary_listing.h"
#include "config/registry.h"
#include "db/check_correct.h"
#include "db/record_lesson.h"
#include "db/synchronise.h"
#include "db/transfer.h"
#include "faults/home.h"
#include "faults/program_run.h"
#include "lesson/new_words.h"
#include "lesson/numbered_lesson.h"
#include "lesson/worst_words.h"
#include "score/position_table.h"
#include "support/present.h"
#include "util/dialogs.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/safe_write.h"

namespace {

void nothing() {
}

void first_start() {
  for (const char *directory : {"CPY", "IDX1"})
    std::filesystem::remove_all(directory);
}

void start() {
  Program_run run;
}

void record() {
  Program_run run;
  run.load(ONE);
  run.answer_all();
  RECORD_LESSON(run.book);
}

void damage_a_line() {
  std::fstream index("IDX1/idx1_two.txt", std::ios::in | std::ios::out | std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(index), {});
  index.clear();
  index.seekp((long)text.find(";", text.find("#hello two *")));
  index << ":";
}

void forget() {
  Program_run run;
  run.load(ONE);
  RAZ_LESSON(run.book);
}

void forget_before() {
  forget();
  SETTLE();
}

void forget_and_edit_before() {
  forget_before();
  EDIT_DICTIONARY_ONE();
}

// Both lessons, and what is left of the first is made whole in between.
void forget_both() {
  Program_run run;
  run.load(TWO);
  RAZ_LESSON(run.book);
  run.load(ONE);
  RAZ_LESSON(run.book);
  run.load(TWO);
}

void correct_all() {
  Program_run run;
  CHECK_CORR_ALL_DBASE(run.book);
}

void correct_one() {
  Program_run run;
  char alias[] = "two";
  CHECK_CORR_SNG_DBASE(alias, run.book);
}

void transfer() {
  Program_run run;
  TRF_ALL_DBASE(run.book);
}

void synchronise() {
  Program_run run;
  char directory[] = "OTHER";
  SYNCHRO_ALL_DBASE(directory, run.book);
}

void list_words() {
  Program_run run;
  MERTU_DICO(run.book);
}

void compose(int sens_qr, void (*builder)(Trf_book *)) {
  Program_run run;
  run.book->sens_qr = sens_qr;
  run.book->t_posit->nb_posit = 0;
  run.book->ilesson = 0;
  builder(run.book);
  int n = 0;
  INIT_LESSON(&n, run.book);
  if (run.book->t_posit->nb_posit == 0)
    SAY("cannot load a composed lesson");
  run.answer_all();
  RECORD_LESSON(run.book);
}

void compose_new() {
  compose(2, NEW_WORDS_LESSON);
}

void compose_worst() {
  compose(1, [](Trf_book *book) { WORST_WORDS_LESSON(1, book); });
}

void leave() {
  Program_run run;
  Trf_new_file file;
  if (!OPEN_LAST_STATE(&file))
    return;
  Start_State state = {2, 10, 20, 900, 700, 400, 2};
  WRITE_LAST_STATE(&state, run.records.G_kentel->st_lesson, file.fp);
  COMMIT_OR_STOP(&file, "Mertu_last_state", run.book->fp_log);
}

} // namespace

const std::vector<Operation> OPERATIONS = {
    {"first start", first_start, start, false},
    {"start after an edit", EDIT_DICTIONARY_ONE, start, false},
    {"recording", nothing, record, false},
    {"recording after an edit", EDIT_DICTIONARY_ONE, record, false},
    {"recording with a damaged line", damage_a_line, record, false},
    {"forgetting", nothing, forget, false},
    {"start after forgetting", forget_before, start, false},
    {"start after forgetting and an edit", forget_and_edit_before, start, false},
    {"forgetting again", forget_before, forget_both, false},
    {"correcting everything", nothing, correct_all, false},
    {"correcting everything after an edit", EDIT_DICTIONARY_ONE, correct_all, false},
    {"correcting one", damage_a_line, correct_one, false},
    {"transfer", nothing, transfer, false},
    {"synchronising", nothing, synchronise, false},
    {"synchronising after an edit", EDIT_DICTIONARY_ONE, synchronise, false},
    {"listing", nothing, list_words, false},
    {"lesson of new words", nothing, compose_new, true},
    {"lesson of the worst words", nothing, compose_worst, true},
    {"leaving", nothing, leave, false},
    {"leaving twice", leave, leave, false},
};

void START_AND_LOAD() {
  Program_run run;
  run.load(ONE);
  int nb_one = run.book->t_posit->nb_posit;
  run.load(TWO);
  if (nb_one == NB_ONE && run.book->t_posit->nb_posit == NB_TWO)
    SAY("%s", STARTED);
}
