// What a learner does with the program in one sitting, without the window.
#include "damage/session.h"

#include <glib.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>

#include "app/book_start.h"
#include "app/last_state.h"
#include "app/work_dir.h"
#include "command/command_forms.h"
#include "command/dictionary_listing.h"
#include "command/tag_list.h"
#include "config/registry.h"
#include "db/check_correct.h"
#include "db/record_lesson.h"
#include "db/synchronise.h"
#include "db/transfer.h"
#include "lesson/lesson_name.h"
#include "lesson/new_words.h"
#include "lesson/numbered_lesson.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_words.h"
#include "quiz/choose_entry.h"
#include "quiz/entry_lines.h"
#include "quiz/locate_entry.h"
#include "quiz/verdict.h"
#include "score/position_table.h"
#include "text/button_block.h"
#include "text/find_sound.h"
#include "text/paragraphs.h"
#include "util/dialogs.h"
#include "util/report.h"
#include "util/safe_write.h"

namespace {

struct Sitting {
  Trf_records records = {};
  std::mt19937 chance;

  int below(int limit) {
    return (int)(chance() % (unsigned)limit);
  }
};

Trf_answer answer_yes(Trf_question, const char *, Trf_book *) {
  return ANSWER_YES;
}

void read_notice(Trf_notice, const char *, Trf_book *) {
}

const Trf_dialogs DIALOGS = {answer_yes, read_notice};

void start(Sitting *sitting) {
  char path[] = "./mertu.x";
  WORK_DIR(path);
  LOCK_WORK_DIR();
  Trf_records *records = &sitting->records;
  ALLOCATE_RECORDS(records);
  PREPARE_WORDS(records);
  START_PAGE_NUMBER(records->S_state, records->book);
  records->book->fp = nullptr;
  records->book->exfp = 0;
  START_VALUES(records);
  SET_DIALOGS(&DIALOGS);
  SAY("%s", READY);
}

void pass_line(char *, void *) {
}
void pass_range(char *name, long, long, void *data) {
  char *path = nullptr;
  long size = 0;
  SEARCH_SND_FILE_NAME(&path, &size, name, static_cast<Trf_book *>(data));
  g_free(path);
}
void pass_total(char *name, void *data) {
  pass_range(name, 0, 0, data);
}

// Asks one entry, shows both of its sides and takes a verdict.
void ask_one(Sitting *sitting) {
  Trf_book *book = sitting->records.book;
  PREPARE_CHOICE(book);
  Trf_choice choice = CHOOSE_ENTRY(book);
  if (choice.jcont == 0)
    return;
  FILE *fp = nullptr;
  long add = 0;
  char s_alias[ALIAS_SIZE];
  DROP_STREAM(book);
  WHAT_QR(choice.jcont, s_alias, book, &fp, &add);
  book->sens_qrm = book->sens_qr;
  Trf_entry_out out = {pass_line, pass_range, pass_total, book};
  for (book->state = 1; book->state <= 2; book->state++)
    WALK_ENTRY(fp, book->state, add, book, &out);
  book->state = 1;
  book->start_lesson = 3;
  const int verdicts[] = {VERDICT_KNOWN, VERDICT_SKIPPED, VERDICT_NOT_KNOWN};
  RECORD_VERDICT(verdicts[sitting->below(3)], book);
  if (sitting->below(5) == 0)
    UNDO_VERDICT(book);
}

void drill(Sitting *sitting) {
  Trf_book *book = sitting->records.book;
  book->start_lesson = 2;
  for (int n = sitting->below(30); n > 0; n--)
    ask_one(sitting);
  RECORD_LESSON(book);
}

void load(Sitting *sitting) {
  Trf_book *book = sitting->records.book;
  book->ilesson = 1 + sitting->below(std::max(book->nbt_lesson, 1));
  char name[LESSON_NAME_SIZE];
  LESSON_FROM_ORDER(book->fp_log, book->G_kentel, book->ilesson, name);
  DROP_STREAM(book);
  OPEN_TEXT(book);
  TEXT_PIECES(book);
  INIT_LESSON(&book->ilesson, book);
}

void load_and_drill(Sitting *sitting) {
  load(sitting);
  drill(sitting);
}

void forget(Sitting *sitting) {
  load(sitting);
  RAZ_LESSON(sitting->records.book);
}

void compose(Sitting *sitting) {
  Trf_book *book = sitting->records.book;
  char tag[] = " noun ";
  char *ss_tag = sitting->below(2) == 0 ? tag : tag + sizeof tag - 1;
  book->sens_qr = 1 + sitting->below(2);
  book->t_posit->nb_posit = 0;
  book->ilesson = 0;
  switch (sitting->below(5)) {
  case 0:
    NEW_WORDS_LESSON(book);
    break;
  case 1:
    BALANCE_WORDS(book);
    break;
  case 2:
    WORST_WORDS_LESSON(1 + sitting->below(5), book);
    break;
  case 3:
    NEW_TAG_LESSON(ss_tag, book);
    break;
  default:
    WORST_TAG_LESSON(ss_tag, book);
  }
  INIT_LESSON(&book->ilesson, book);
  if (book->t_posit->nb_posit > 0)
    drill(sitting);
}

void report(Sitting *sitting) {
  Trf_book *book = sitting->records.book;
  MERTU_DICO(book);
  Trf_tags tags;
  COLLECT_TAGS(book, &tags);
  for (int k = 1; k <= tags.classmt.nb; k++)
    TAG_LINE(tags, k);
}

void correct(Sitting *sitting) {
  char alias[] = "two";
  if (sitting->below(2) == 0)
    CHECK_CORR_ALL_DBASE(sitting->records.book);
  else
    CHECK_CORR_SNG_DBASE(alias, sitting->records.book);
}

void transfer(Sitting *sitting) {
  TRF_ALL_DBASE(sitting->records.book);
}

void synchronise(Sitting *sitting) {
  char other[] = "OTHER";
  SYNCHRO_ALL_DBASE(other, sitting->records.book);
}

void leave(Sitting *sitting) {
  Trf_new_file file;
  if (!OPEN_LAST_STATE(&file))
    return;
  WRITE_LAST_STATE(sitting->records.S_state, sitting->records.G_kentel->st_lesson, file.fp);
  COMMIT_NEW_FILE(&file);
}

} // namespace

void START_AND_STOP() {
  Sitting sitting;
  start(&sitting);
  FREE_RECORDS(&sitting.records);
}

void WORK_A_WHILE(unsigned seed) {
  Sitting sitting;
  sitting.chance.seed(seed);
  start(&sitting);
  void (*const actions[])(Sitting *) = {load_and_drill, load_and_drill, forget,      compose,
                                        compose,        report,         correct,     transfer,
                                        synchronise,    load_and_drill, synchronise, compose};
  for (int n = 0; n < 4; n++)
    actions[sitting.below((int)std::size(actions))](&sitting);
  leave(&sitting);
  FREE_RECORDS(&sitting.records);
}
