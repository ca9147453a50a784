// The lesson of the worst entries that carry a tag, or that carry none.
#include "db/verify_lesson.h"
#include "lesson/compose.h"
#include "lesson/keep_twenty.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_keys.h"
#include "score/position_table.h"
#include "util/book.h"
#include "util/report.h"

namespace {

const Trf_recipe WORST_TAG = {
    "WORST_TAG_LESSON",
    {"WORST_TAG_LESSON and CHECK_4LINT", "WORST_TAG_LESSON and CHECK_4LINT", ""},
    "w+",
    true,
    false,
    MAY_BE_WORST};

// Applies a change of direction that waits for the next verdict.
void turn_direction(Trf_book *book) {
  if (book->toggle_sens_qr != 1)
    return;
  book->toggle_sens_qr = 0;
  book->sens_qr = book->sens_qr == 2 ? 1 : 2;
}

void make_lesson(char *ss_tag, Trf_composition *composition) {
  Trf_book *book = composition->book;
  int sens = composition->sens == 1 ? 1 : 2;
  SORT_BY_SCORE(sens, book);
  KEEP_TWENTY(composition->recipe->name, sens, book);
  Trf_side side = SIDE_OF_TABLE(sens, book->t_posit);
  long err_sup = side.cum_err[side.ord[1]];
  long err_min = side.cum_err[side.ord[book->t_posit->nb_posit]];
  if (composition->nb_begun < book->nbt_lesson)
    COMPLETE_TAG_LESSON(composition->nb_begun, book->fp_gene, ss_tag, book);
  SORT_BY_SCORE(3 - sens, book);
  LOG_LINE(book->fp_log, "WORST_TAG_LESSON sens_qr=%d err_sup=%ld err_min=%ld \n",
           composition->sens, err_sup, err_min);
  // A cut record would only look like a damaged one; the lesson is refused in the end.
  if (WRITE_OUT(composition))
    VERIF_LESSON(book->fp_gene, book);
}

} // namespace

void WORST_TAG_LESSON(char *ss_tag, Trf_book *book) {
  turn_direction(book);
  int nb_before = book->t_posit->nb_posit;
  Trf_composition composition(&WORST_TAG, ss_tag, book);
  if (!BEGIN_COMPOSITION(&composition))
    return;
  COLLECT_ENTRIES(&composition);
  if (composition.nb == 0)
    KEEP_NB_POSIT(nb_before, book->t_posit);
  SCORE_ENTRIES(&composition);
  // QUIRK lone entry: a lesson of a single entry is not sorted, not checked against the files, and
  // nothing is logged of it. It looks as if the case had been left out; it is meant: one entry has
  // no order, and what a longer lesson logs are the scores at its two ends.
  // Test: WorstTag.ASingleCandidateIsNeitherSortedNorCompleted
  if (composition.nb > 1)
    make_lesson(ss_tag, &composition);
  END_COMPOSITION(&composition);
}

void COMPLETE_TAG_LESSON(int prev_lesson, FILE *fp_gene, char *ss_tag, Trf_book *book) {
  Trf_composition rest(&WORST_TAG, ss_tag, book);
  Trf_posit *t_posit = book->t_posit;
  auto ahead = [&](int rank) {
    Trf_side side = SIDE_OF_TABLE(rest.sens, t_posit);
    return side.cum_err[t_posit->nb_posit + 1] > side.cum_err[side.ord[rank]];
  };
  auto list_ranking = [&]() {
    Trf_side side = SIDE_OF_TABLE(rest.sens, t_posit);
    int nb_words = t_posit->nb_posit;
    SORT_COMPLETE(side.cum_err[side.ord[1]], side.cum_err[side.ord[nb_words]], nb_words, side.ord,
                  side.cum_err, book);
  };
  SEARCH_FOR_WORSE(prev_lesson, fp_gene, &rest, ahead, list_ranking);
}

void SORT_COMPLETE(long err_sup, long err_min, int nb_words, int *ord_posit, long *cum_err,
                   Trf_book *book) {
  if (!TRACING())
    return;
  TRACE("SORT_COMPLETE err_sup=%ld err_min=%ld nb_words=%d \n", err_sup, err_min, nb_words);
  for (int rank = 1; rank <= nb_words; rank++) {
    int elem = ord_posit[rank];
    TRACE("SORT_COMPLETE rank=%d elem=%d err=%ld \n", rank, elem, cum_err[elem]);
    for (int sens : {1, 2}) {
      Trf_side side = SIDE_OF_TABLE(sens, book->t_posit);
      TRACE("  sens=%d nb=%ld nb0=%ld nok=%ld nok0=%ld date_ok=%ld date_nok=%ld \n", sens,
            side.nb[elem], side.nb0[elem], side.nok[elem], side.nok0[elem], side.date_ok[elem],
            side.date_nok[elem]);
    }
  }
}
