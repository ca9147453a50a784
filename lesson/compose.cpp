// The one loop of every composed lesson: the dictionaries in the order of the registry, their
// entries, and what a recipe keeps of them.
#include "lesson/compose.h"

#include <string>

#include "db/generated_lesson.h"
#include "db/mend_forgotten.h"
#include "lesson/table_entry.h"
#include "lesson/tag_test.h"
#include "lesson/visited_index.h"
#include "score/error_score.h"
#include "score/merge_sort.h"
#include "util/book.h"
#include "util/day_number.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const int OF_A_COMPOSED_LESSON = 0; // ilesson of ./idx2_gene

// Marks the end of both orderings, which is also an empty save slot: an undo before the first
// verdict finds nothing to bring back.
void mark_ends(Trf_posit *t_posit) {
  for (int sens : {1, 2})
    SIDE_OF_TABLE(sens, t_posit).ord[t_posit->nb_posit + 1] = -1;
}

// The lesson counts as empty.
void refuse(Trf_composition *composition) {
  Trf_book *book = composition->book;
  LOG_LINE(book->fp_log, "%s cannot open file %s \n", composition->recipe->name,
           CURRENT_GENE_NAME(OF_A_COMPOSED_LESSON));
  ALLOCATE_POSIT(COMPOSED_CAPACITY, book->t_posit);
  mark_ends(book->t_posit);
}

// One dictionary at work.
struct Trf_visit {
  Trf_composition *composition;
  Trf_idx1_walk walk;
  int nb_candidates = 0; // candidates counted in this dictionary, rejected ones taken off again

  Trf_visit(FILE *fp, const char *s_idx1, Trf_composition *c)
      : composition(c), walk(fp, s_idx1, c->book->fp_log, &c->recipe->texts) {
    walk.date0 = c->today;
  }
};

// The place in the table of the candidate counted last: behind those selected before it, or the
// spare place where a completion looks at one candidate after the other.
int place_of(const Trf_visit &visit) {
  const Trf_composition &composition = *visit.composition;
  if (composition.take)
    return composition.book->t_posit->nb_posit + 1;
  return composition.nb + visit.nb_candidates;
}

// Reads the next history line, and stores it for the candidate counted last.
void read_side(int sens, Trf_visit *visit) {
  long values[NB_FIELDS + 1] = {};
  READ_HISTORY(sens, visit->nb_candidates, &visit->walk, values);
  STORE_HISTORY(sens, place_of(*visit), values, visit->composition->book->t_posit);
}

// Asks the recipe; a candidate that it rejects is uncounted.
bool decide(Trf_visit *visit) {
  const Trf_composition &composition = *visit->composition;
  Trf_posit *t_posit = composition.book->t_posit;
  int asked = composition.sens == 1 ? 1 : 2;
  if (composition.recipe->keeps(SIDE_OF_TABLE(asked, t_posit), SIDE_OF_TABLE(3 - asked, t_posit),
                                place_of(*visit), composition.today))
    return true;
  visit->nb_candidates--;
  return false;
}

// Reads both histories of the next candidate. Returns whether it is kept.
bool read_candidate(Trf_visit *visit) {
  const Trf_composition &composition = *visit->composition;
  visit->nb_candidates++;
  int nbmx_posit = composition.book->t_posit->nbmx_posit;
  MAKE_ROOM_FOR_ENTRY(place_of(*visit), &nbmx_posit, composition.book->t_posit);
  read_side(1, visit);
  if (!composition.recipe->early || composition.sens != 1) {
    read_side(2, visit);
    return decide(visit);
  }
  // QUIRK early decision: Q->R, a lesson of new words rejects an entry before its R->Q line is
  // read, so that this line lands on the entry selected before it (on element 0, which is no entry,
  // where there is none yet). It looks as if a rejected entry spoiled a kept one; it is meant: the
  // R->Q counts of a kept entry are those of the last entry passed over behind it, its R->Q score
  // and rank follow from them, and so does what recording the lesson writes. Test:
  // NewWords.QuestionToResponseARejectedEntryLeavesItsOtherLineOnTheLastSelectedOne
  bool kept = decide(visit);
  read_side(2, visit);
  return kept;
}

void select(const Trf_candidate &candidate, Trf_book *book) {
  book->t_posit->posit[candidate.place] =
      APPEND_GENE_RECORD(book->fp_gene, candidate.name_line, candidate.path, candidate.history);
}

// Passes over the history lines of an entry without the tag, so that they do not count among the
// lines allowed either.
void pass_histories(Trf_idx1_walk *walk) {
  for (int i = 1; i <= 2; i++)
    if (!PASS_HISTORY(walk))
      return;
}

void visit_entry(Trf_visit *visit) {
  Trf_composition *composition = visit->composition;
  const char *name_line = visit->walk.line.text;
  if (composition->ss_tag != nullptr && !CARRIES_TAG(name_line, composition->ss_tag))
    return pass_histories(&visit->walk);
  long history = visit->walk.line.next;
  if (!read_candidate(visit))
    return;
  Trf_candidate candidate = {place_of(*visit), name_line, visit->walk.path, history};
  if (composition->take)
    composition->take(candidate);
  else
    select(candidate, composition->book);
}

bool is_enough(const Trf_visit &visit) {
  const Trf_composition &composition = *visit.composition;
  return !composition.recipe->whole && composition.nb + visit.nb_candidates >= MAX_COMPOSED;
}

void visit_entries(const char *s_idx1, Trf_composition *composition) {
  Trf_visit visit(composition->book->fp_idx1, s_idx1, composition);
  SKIP_HEADER(&visit.walk);
  while (!is_enough(visit)) {
    Trf_walk_line kind = NEXT_NAME(&visit.walk);
    if (kind == WALK_END)
      break;
    if (kind == WALK_ENTRY)
      visit_entry(&visit);
  }
  if (!composition->take)
    composition->nb += visit.nb_candidates;
}

} // namespace

Trf_composition::Trf_composition(const Trf_recipe *row, const char *tag, Trf_book *b)
    : recipe(row), ss_tag(tag), book(b), dictionaries(b->G_kentel), today(DIFF_JOUR()),
      sens(b->sens_qr) {
}

bool BEGIN_COMPOSITION(Trf_composition *composition) {
  Trf_book *book = composition->book;
  CLOSE_STREAM(&book->fp_idx1);
  CLOSE_STREAM(&book->fp_gene);
  MEND_FORGOTTEN(book->fp_log);
  book->fp_gene = fopen(CURRENT_GENE_NAME(OF_A_COMPOSED_LESSON), composition->recipe->mode);
  if (book->fp_gene == nullptr) {
    refuse(composition);
    return false;
  }
  ALLOCATE_POSIT(COMPOSED_CAPACITY, book->t_posit);
  return true;
}

void VISIT_DICTIONARY(int k, Trf_composition *composition) {
  Trf_book *book = composition->book;
  Trf_visited_index index;
  if (!OPEN_VISITED_INDEX(k, &composition->dictionaries, book->fp_log, &index))
    return;
  book->fp_idx1 = index.fp.release();
  visit_entries(index.s_idx1.get(), composition);
  CLOSE_STREAM(&book->fp_idx1);
}

void COLLECT_ENTRIES(Trf_composition *composition) {
  Trf_book *book = composition->book;
  int *k = &composition->nb_begun;
  while (*k < book->nbt_lesson && composition->nb < MAX_COMPOSED)
    VISIT_DICTIONARY(++*k, composition);
  book->t_posit->nb_posit = composition->nb;
}

long SCORE_ENTRY(int sens, int i, long today, Trf_book *book) {
  Trf_side side = SIDE_OF_TABLE(sens, book->t_posit);
  side.cum_err[i] =
      FCT_ERROR(book->t_err, side.nb[i], side.nok[i], today, side.date_ok[i], side.date_nok[i]);
  return side.cum_err[i];
}

void SCORE_ENTRIES(Trf_composition *composition) {
  for (int i = 1; i <= composition->nb; i++)
    for (int sens : {1, 2})
      SCORE_ENTRY(sens, i, composition->today, composition->book);
}

void SORT_BY_SCORE(int sens, Trf_book *book) {
  Trf_side side = SIDE_OF_TABLE(sens, book->t_posit);
  MERGESORT(1, book->t_posit->nb_posit, side.ord, side.cum_err);
}

bool WRITE_OUT(Trf_composition *composition) {
  FILE *fp_gene = composition->book->fp_gene;
  return fflush(fp_gene) == 0 && ferror(fp_gene) == 0;
}

bool END_COMPOSITION(Trf_composition *composition) {
  Trf_book *book = composition->book;
  mark_ends(book->t_posit);
  bool whole = WRITE_OUT(composition);
  if (fclose(book->fp_gene) != 0)
    whole = false;
  book->fp_gene = nullptr;
  if (!whole)
    refuse(composition);
  return whole;
}
