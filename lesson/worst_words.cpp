// The worst-words lesson: the twenty entries that the learner knows least, out of all dictionaries.
#include "lesson/worst_words.h"

#include <algorithm>
#include <vector>

#include "db/verify_lesson.h"
#include "lesson/compose.h"
#include "lesson/keep_twenty.h"
#include "lesson/worst_keys.h"
#include "score/merge_sort.h"
#include "score/position_table.h"
#include "util/book.h"
#include "util/report.h"

namespace {

// What the last lesson leaves to its completion, which is called with no more than a code.
struct Trf_worst_memory {
  long bound; // WORST_BOUND over all entries that were collected, kept or not; 0 before any lesson
};

Trf_worst_memory memory = {0};

const int CODE_OF_SCORES = 1; // the highest scores
const int CODE_FEWEST = 5;    // the least often answered

bool may_be_worst_below_bound(const Trf_side &asked, const Trf_side &other, int place, long today) {
  return MAY_BE_WORST(asked, other, place, today) && NB_ANSWERS(place, asked) < memory.bound;
}

const Trf_walk_texts TEXTS = {"WORST_WORDS_LESSON and CHECK_4LINT",
                              "WORST_WORDS_LESSON and CHECK_4LINT", ""};
const Trf_recipe WORST = {"WORST_WORDS_LESSON", TEXTS, "w+", true, false, MAY_BE_WORST};
// The completion of code 5: the first key of an entry counts down from the bound.
const Trf_recipe FEWEST_REST = {"WORST_WORDS_LESSON",    TEXTS, "w+", true, false,
                                may_be_worst_below_bound};

// Has the bound lie above every entry of the table, also of one that no lesson of the worst words
// has filled: a first key below 0 would be the heaviest of all.
void cover_the_table(int sens, Trf_posit *t_posit) {
  long least = WORST_BOUND(t_posit->nb_posit, SIDE_OF_TABLE(sens, t_posit));
  memory.bound = std::max(memory.bound, least);
}

// Sorts the ordering of the lesson's direction by the keys of the code.
void rank_by_keys(const Trf_worst_rule &rule, Trf_composition *composition) {
  Trf_posit *t_posit = composition->book->t_posit;
  int nb = t_posit->nb_posit;
  Trf_side side = SIDE_OF_TABLE(composition->sens, t_posit);
  std::vector<long> key[NB_WORST_KEYS + 1];
  for (std::vector<long> &of_all : key)
    of_all.resize((size_t)nb + 1);
  for (int icont = 1; icont <= nb; icont++) {
    long keys[NB_WORST_KEYS + 1] = {};
    WORST_KEYS(rule, icont, side, keys);
    for (int k = 1; k <= NB_WORST_KEYS; k++)
      key[k][(size_t)icont] = keys[k];
  }
  MERGESORT_3ERR(1, nb, side.ord, key[1].data(), key[2].data(), key[3].data());
}

// Compares the table with the files. False where the lesson file cannot be written whole: the
// lesson is then refused in the end, and its cut record would only look like a damaged one.
bool verify(Trf_composition *composition) {
  if (!WRITE_OUT(composition))
    return false;
  VERIF_LESSON(composition->book->fp_gene, composition->book);
  return true;
}

// The entries collected, ranked and cut down to twenty. False where the code is unknown: then all
// of them stay, as they were collected; and where the lesson file cannot be written whole.
bool keep_the_worst(int code_worst, Trf_composition *composition) {
  Trf_book *book = composition->book;
  int sens = composition->sens;
  int nb_words = book->t_posit->nb_posit;
  LOG_LINE(book->fp_log, "WORST_WORDS_LESSON before MERGESORT_3ERR sens_qr=%d  \n", sens);
  if (!verify(composition))
    return false;
  memory.bound = WORST_BOUND(nb_words, SIDE_OF_TABLE(sens, book->t_posit));
  // QUIRK unknown code: every entry collected stays, also beyond twenty, unranked and in the order
  // of the files. A reader would expect no lesson at all, or twenty entries. It is meant: without
  // keys none of them is worse than another, and what was collected can be drilled as it is. Test:
  // WorstWords.AnUnknownCodeKeepsEveryCandidateInTheOrderOfCollection
  if (!IS_WORST_CODE(code_worst)) {
    TELL_UNKNOWN_CODE(code_worst);
    return false;
  }
  rank_by_keys({code_worst, composition->today, memory.bound}, composition);
  LOG_LINE(book->fp_log, "WORST_WORDS_LESSON before limit number nb_words=%d sens_qr=%d  \n",
           nb_words, sens);
  if (!verify(composition))
    return false;
  KEEP_TWENTY(composition->recipe->name, sens, book);
  LOG_LINE(book->fp_log, "WORST_WORDS_LESSON after limit number sens_qr=%d  \n", sens);
  return verify(composition);
}

bool complete(int code_worst, Trf_composition *composition) {
  Trf_book *book = composition->book;
  if (composition->nb_begun < book->nbt_lesson)
    COMPLETE_WORST_LESSON(code_worst, composition->nb_begun, book->fp_gene, book);
  LOG_LINE(book->fp_log, "WORST_WORDS_LESSON after COMPLETE_WORST_LESSON sens_qr=%d  \n",
           composition->sens);
  return verify(composition);
}

// QUIRK by score in the end: whatever the code, the lesson is ranked from the highest score down,
// and the code only decides between equal scores. A reader would expect the longest unanswered, or
// the least often answered, to come first. It is meant: the code says which twenty words she gets,
// and the drill and its check know one order only.
// Test: WorstWords.TheCodeChoosesTheEntriesAndTheScoreTheirOrder
void order_by_score(int code_worst, Trf_composition *composition) {
  int sens = composition->sens == 1 ? 1 : 2;
  if (code_worst != CODE_OF_SCORES)
    SORT_BY_SCORE(sens, composition->book);
  SORT_BY_SCORE(3 - sens, composition->book);
}

// The stages behind the collection.
void make_lesson(int code_worst, Trf_composition *composition) {
  Trf_book *book = composition->book;
  if (!keep_the_worst(code_worst, composition))
    return;
  Trf_side side = SIDE_OF_TABLE(composition->sens, book->t_posit);
  long err_sup = side.cum_err[side.ord[1]];
  long err_min = side.cum_err[side.ord[book->t_posit->nb_posit]];
  if (!complete(code_worst, composition))
    return;
  order_by_score(code_worst, composition);
  LOG_LINE(book->fp_log, "WORST_WORDS_LESSON sens_qr=%d err_sup=%ld err_min=%ld \n",
           composition->sens, err_sup, err_min);
  verify(composition);
}

} // namespace

// QUIRK no trailer: a lesson of the worst words ends at its last record, where one of new words has
// a line of its own behind it. It looks as if the line had been forgotten; it is meant: records are
// still appended while the rest of the dictionaries is searched, and the position table knows where
// each of them stands. Test: WorstWords.TheLessonFileHasNoTrailer
void WORST_WORDS_LESSON(int code_worst, Trf_book *book) {
  LOG_LINE(book->fp_log, "enter WORST_WORDS_LESSON  code_worst=%d \n", code_worst);
  book->ilesson = 0;
  int nb_before = book->t_posit->nb_posit;
  Trf_composition composition(&WORST, nullptr, book);
  if (!BEGIN_COMPOSITION(&composition))
    return;
  COLLECT_ENTRIES(&composition);
  if (composition.nb == 0) {
    KEEP_NB_POSIT(nb_before, book->t_posit);
  } else {
    SCORE_ENTRIES(&composition);
    make_lesson(code_worst, &composition);
  }
  END_COMPOSITION(&composition);
}

void COMPLETE_WORST_LESSON(int code_worst, int prev_lesson, FILE *fp_gene, Trf_book *book) {
  if (!IS_WORST_CODE(code_worst))
    return TELL_UNKNOWN_CODE(code_worst);
  Trf_composition rest(code_worst == CODE_FEWEST ? &FEWEST_REST : &WORST, nullptr, book);
  cover_the_table(rest.sens, book->t_posit);
  Trf_worst_rule rule = {code_worst, rest.today, memory.bound};
  auto ahead = [&](int rank) {
    Trf_side side = SIDE_OF_TABLE(rest.sens, book->t_posit);
    long candidate[NB_WORST_KEYS + 1] = {};
    long ranked[NB_WORST_KEYS + 1] = {};
    WORST_KEYS(rule, book->t_posit->nb_posit + 1, side, candidate);
    WORST_KEYS(rule, side.ord[rank], side, ranked);
    return CMP_3GERR(candidate, ranked) < 0;
  };
  SEARCH_FOR_WORSE(prev_lesson, fp_gene, &rest, ahead, nullptr);
}
