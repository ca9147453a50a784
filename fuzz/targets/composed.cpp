// A lesson composed out of two dictionaries: no more than it may hold, each entry with the counts
// of its index, both orderings whole, and only entries that belong there.
//
// Pieces: what is asked for (a byte that tells the lesson and the direction, then a tag); the
// indexes of the dictionaries, damaged in any way.
#include <set>

#include "db/generated_lesson.h"
#include "db/record_lesson.h"
#include "db/verify_lesson.h"
#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "lesson/compose.h"
#include "lesson/new_words.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_words.h"
#include "util/owned.h"

namespace {

const char ONE[] = "IDX1/idx1_one";
const char TWO[] = "IDX1/idx1_two";

enum Lesson { NEW, BALANCE, WORST, NEW_TAG, WORST_TAG, NB_LESSONS };

struct Asked {
  Lesson lesson;
  int code;
  std::string tag;
};

Asked asked_of(const std::string &piece, Trf_book *book) {
  unsigned byte = piece.empty() ? 0 : (unsigned char)piece[0];
  book->sens_qr = 1 + (int)(byte & 1);
  byte >>= 1;
  Asked asked = {(Lesson)(byte % NB_LESSONS), 1 + (int)(byte / NB_LESSONS % 5), ""};
  if (piece.size() > 1)
    asked.tag = " " + TEXT_OF(piece.substr(1)) + " ";
  return asked;
}

void compose(Asked *asked, Trf_book *book) {
  book->t_posit->nb_posit = 0;
  book->ilesson = 0;
  switch (asked->lesson) {
  case NEW:
    return NEW_WORDS_LESSON(book);
  case BALANCE:
    return BALANCE_WORDS(book);
  case WORST:
    return WORST_WORDS_LESSON(asked->code, book);
  case NEW_TAG:
    return NEW_TAG_LESSON(asked->tag.data(), book);
  default:
    return WORST_TAG_LESSON(asked->tag.data(), book);
  }
}

bool is_new(Lesson lesson) {
  return lesson == NEW || lesson == BALANCE || lesson == NEW_TAG;
}

// New words were never asked in the direction, worst words were, and not today.
void check_entry(const Asked &asked, const Trf_side &side, int i) {
  bool never = side.nb[i] == 0 && side.nok[i] == 0;
  HOLDS(never == is_new(asked.lesson));
  if (!never)
    HOLDS(side.date_ok[i] != FUZZ_DAY && side.date_nok[i] != FUZZ_DAY);
}

bool counts_fit(int i, const Trf_side &side) {
  return side.nb[i] <= MAX_RECORDED_COUNT && side.nok[i] <= MAX_RECORDED_COUNT;
}

// Every entry has its record, and the tag, and no other has the same. False where one cannot be
// read, or is too much for a recording.
bool check_entries(const Asked &asked, Trf_book *book) {
  Owned_stream fp = OPEN_STREAM("idx2_gene", "r");
  HOLDS(fp != nullptr);
  std::set<std::pair<std::string, long>> met;
  bool whole = true;
  Trf_posit *table = book->t_posit;
  for (int i = 1; i <= table->nb_posit; i++) {
    Trf_line_cursor cursor(fp.get());
    cursor.next = table->posit[i];
    Trf_gene_record record;
    bool read = READ_GENE_RECORD(&cursor, &record) == GENE_RECORD;
    whole = whole && read && counts_fit(i, SIDE_OF_TABLE(1, table)) &&
            counts_fit(i, SIDE_OF_TABLE(2, table));
    HOLDS(!read || met.emplace(record.path, record.history).second);
    check_entry(asked, SIDE_OF_TABLE(book->sens_qr, table), i);
    if (read && asked.lesson >= NEW_TAG && !MAY_BE_REREAD(record.name))
      HOLDS(CARRIES_TAG(record.name.c_str(), asked.tag.c_str()));
  }
  return whole;
}

} // namespace

FUZZ_TARGET(composed) {
  std::vector<std::string> pieces = PIECES(input, 3);
  PUT_FILE(ONE, pieces[1]);
  PUT_FILE(TWO, pieces[2]);
  Learner learner("one two ", " a1 b2 ", 2);
  Asked asked = asked_of(pieces[0], &learner.book);
  if (STATUS_OF([&] { compose(&asked, &learner.book); }) >= 0)
    return;
  Trf_posit *table = &learner.table;
  HOLDS(learner.book.fp_gene == nullptr && learner.book.fp_idx1 == nullptr);
  HOLDS(table->nb_posit >= 0 && table->nb_posit <= MAX_COMPOSED);
  HOLDS(table->nb_posit < table->nbmx_posit);
  if (table->nb_posit == 0)
    return;
  for (int sens : {1, 2}) {
    CHECK_ORDER(sens, table);
    HOLDS(SIDE_OF_TABLE(sens, table).ord[table->nb_posit + 1] == -1);
  }
  if (!check_entries(asked, &learner.book))
    return;
  // In an early decision the other direction may hold the counts of an entry passed over.
  if (learner.book.sens_qr == 1 && (asked.lesson == NEW || asked.lesson == NEW_TAG))
    return;
  Owned_stream fp = OPEN_STREAM("idx2_gene", "r");
  HOLDS(STATUS_OF([&] { VERIF_LESSON(fp.get(), &learner.book); }) == -1);
}
