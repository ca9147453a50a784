// Composed lessons of words to begin with: those never asked, and those asked one way only.
#include "lesson/new_words.h"

#include "db/generated_lesson.h"
#include "lesson/compose.h"
#include "score/check_order.h"
#include "util/book.h"
#include "util/report.h"

namespace {

bool is_asked(const Trf_side &side, int place) {
  return side.nb[place] >= 1 || side.nok[place] >= 1;
}

bool keeps_unbalanced(const Trf_side &asked, const Trf_side &other, int place, long) {
  return !is_asked(asked, place) && is_asked(other, place);
}

const Trf_recipe NEW_WORDS = {
    "NEW_WORDS_LESSON",
    {"NEW_WORDS_LESSON and CHECK_4LINT", "NEW_WORDS_LESSON and CHECK_4LINT", ""},
    "w",
    false,
    true,
    KEEPS_NEVER_ASKED};

const Trf_recipe BALANCE = {"BALANCE_WORDS",
                            {"BALANCE_WORDS and CHECK_4LINT", "BALANCE_WORDS and CHECK_4LINT", ""},
                            "w",
                            false,
                            false,
                            keeps_unbalanced};

} // namespace

bool KEEPS_NEVER_ASKED(const Trf_side &asked, const Trf_side &, int place, long) {
  return !is_asked(asked, place);
}

// QUIRK order as found: only the ordering of the direction not asked is sorted by score; the other
// stays as the entries were found. It looks as if one had been forgotten; it is meant: in the
// direction asked all entries are new and equal, so they come in the order of the dictionaries.
// Test: NewWords.OnlyTheOtherDirectionIsSorted
void COMPOSE_AS_FOUND(const Trf_recipe *recipe, const char *ss_tag, Trf_book *book) {
  Trf_composition composition(recipe, ss_tag, book);
  if (!BEGIN_COMPOSITION(&composition))
    return;
  COLLECT_ENTRIES(&composition);
  SCORE_ENTRIES(&composition);
  SORT_BY_SCORE(composition.sens == 1 ? 2 : 1, book);
  SORT_CLASSMENT(book);
  APPEND_GENE_TRAILER(book->fp_gene);
  if (!END_COMPOSITION(&composition))
    return;
  LOG_LINE(book->fp_log, "%s done\n", recipe->name);
  TRACE(" Present numb of days since January 1 2001 = %ld \n", composition.today);
}

void NEW_WORDS_LESSON(Trf_book *book) {
  COMPOSE_AS_FOUND(&NEW_WORDS, nullptr, book);
}

void BALANCE_WORDS(Trf_book *book) {
  COMPOSE_AS_FOUND(&BALANCE, nullptr, book);
}
