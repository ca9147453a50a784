// The twenty worst entries kept: the rest dropped, and a later candidate put in the place of the
// last.
#include "lesson/keep_twenty.h"

#include <algorithm>

#include "db/generated_lesson.h"
#include "lesson/compose.h"
#include "score/position_table.h"
#include "util/book.h"
#include "util/report.h"

namespace {

void copy_history(int from, int to, const Trf_side &side) {
  for (long *array : {side.nb, side.nb0, side.nok, side.nok0, side.date_ok, side.date_nok})
    array[to] = array[from];
}

// Entry `from` moves to the storage `to`.
//
// QUIRK foreign score: of the two scores only that of the lesson's direction moves with an entry;
// the score of the other direction stays the one of the entry that owned the storage. It looks as
// if a line had been forgotten; it is meant: a lesson of the worst is ranked by the direction it
// was asked for, and the other ordering only has to agree with the scores beside it.
// Test: KeepTwenty.TheScoreOfTheOtherDirectionStaysWithTheStorage
void move_entry(int from, int to, int sens, Trf_posit *t_posit) {
  t_posit->posit[to] = t_posit->posit[from];
  for (int each : {1, 2})
    copy_history(from, to, SIDE_OF_TABLE(each, t_posit));
  Trf_side side = SIDE_OF_TABLE(sens, t_posit);
  side.cum_err[to] = side.cum_err[from];
}

// What is done with an entry in the spare storage.
void admit(const Trf_candidate &candidate, FILE *fp_gene, Trf_composition *rest,
           const std::function<bool(int)> &ahead, const std::function<void()> &admitted) {
  Trf_posit *t_posit = rest->book->t_posit;
  if (SCORE_ENTRY(rest->sens, candidate.place, rest->today, rest->book) < 0)
    return;
  int rank = RANK_OF_CANDIDATE(t_posit->nb_posit, ahead);
  if (rank == 0)
    return;
  if (admitted)
    admitted();
  int icont = PUT_AT_RANK(rank, rest->sens, t_posit);
  t_posit->posit[icont] =
      APPEND_GENE_RECORD(fp_gene, candidate.name_line, candidate.path, candidate.history);
}

// The next rank, from `rank` on, whose entry stands in a storage that stays; nb + 1 for none.
int next_free_rank(int rank, int nb, const int *ord) {
  while (rank <= nb && ord[rank] > MAX_COMPOSED)
    rank++;
  return rank;
}

} // namespace

void KEEP_TWENTY(const char *who, int sens, Trf_book *book) {
  Trf_posit *t_posit = book->t_posit;
  int nb = t_posit->nb_posit;
  if (nb <= MAX_COMPOSED)
    return;
  int *ord = SIDE_OF_TABLE(sens, t_posit).ord;
  int j = MAX_COMPOSED + 1;
  for (int i = 1; i <= MAX_COMPOSED; i++) {
    if (ord[i] <= MAX_COMPOSED)
      continue;
    j = next_free_rank(j, nb, ord);
    if (j > nb)
      STOP_PROGRAM(book->fp_log, 11, " %s error i=%d j=%d \n", who, i, j);
    move_entry(ord[i], ord[j], sens, t_posit);
    ord[i] = ord[j++];
  }
  t_posit->nb_posit = MAX_COMPOSED;
}

void KEEP_NB_POSIT(int nb_before, Trf_posit *t_posit) {
  ALLOCATE_POSIT(std::max(COMPOSED_CAPACITY, nb_before + 1), t_posit);
  t_posit->nb_posit = nb_before;
}

int RANK_OF_CANDIDATE(int nb_words, const std::function<bool(int)> &ahead) {
  if (nb_words < 1 || !ahead(nb_words))
    return 0;
  if (ahead(1))
    return 1;
  int low = 1;
  int high = nb_words;
  while (high - low >= 2) {
    int mid = (low + high) / 2;
    (ahead(mid) ? high : low) = mid;
  }
  return high;
}

int PUT_AT_RANK(int rank, int sens, Trf_posit *t_posit) {
  int nb = t_posit->nb_posit;
  Trf_side side = SIDE_OF_TABLE(sens, t_posit);
  if (rank > 1)
    TRACE("err=%ld <= err(icontp-1)= %ld  > err(icontp)= %ld \n", side.cum_err[nb + 1],
          side.cum_err[side.ord[rank - 1]], side.cum_err[side.ord[rank]]);
  std::rotate(side.ord + rank, side.ord + nb, side.ord + nb + 1);
  move_entry(nb + 1, side.ord[rank], sens, t_posit);
  return side.ord[rank];
}

void SEARCH_FOR_WORSE(int prev_lesson, FILE *fp_gene, Trf_composition *rest,
                      const std::function<bool(int)> &ahead,
                      const std::function<void()> &admitted) {
  rest->take = [&](const Trf_candidate &candidate) {
    admit(candidate, fp_gene, rest, ahead, admitted);
  };
  for (int k = std::max(prev_lesson, 0) + 1; k <= rest->book->nbt_lesson; k++)
    VISIT_DICTIONARY(k, rest);
}
