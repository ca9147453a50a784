// One entry moved to the rank that its new score deserves.
#include "score/reorder.h"

#include <algorithm>

#include "score/position_table.h"
#include "util/report.h"

namespace {

// Whether an entry of this score goes behind one of new_err. Never-asked entries go behind none.
bool lighter(long err, long new_err) {
  return err >= 0 && err < new_err;
}

// The rank of an entry that got worse, between 1 and old_ord.
int rank_toward_first(const Trf_side &side, int old_ord, long new_err) {
  int i0 = 0;
  PLACE_IN_SERIES(new_err, 1, old_ord, side.ord, side.cum_err, &i0);
  if (!lighter(side.cum_err[side.ord[i0]], new_err))
    i0++;
  if (i0 > old_ord)
    STOP_PROGRAM(SAVED_LOG(), 3, "  error 1 i0 > i2 i0=%d i2=%d \n", i0, old_ord);
  return i0;
}

// The rank of an entry that got better or stayed, between old_ord and the last rank.
int rank_toward_last(const Trf_side &side, int old_ord, int nb_posit, long new_err) {
  // QUIRK equals move back: an entry whose score stays the same still goes behind all others of
  // that score. It looks like a move for nothing; it is meant: of equal entries those not asked
  // just now come first. Test: Reorder.TheSameScoreMovesAnEntryBackPastItsEquals
  int i0 = 0;
  PLACE_IN_SERIES(new_err, old_ord, nb_posit, side.ord, side.cum_err, &i0);
  if (lighter(side.cum_err[side.ord[i0]], new_err))
    i0--;
  if (i0 < old_ord)
    STOP_PROGRAM(SAVED_LOG(), 3, "  error 2 i0 < i1 i0=%d i1=%d \n", i0, old_ord);
  return i0;
}

// Takes the entry at rank `from` out and puts it at rank `to`; those in between close the gap.
void move_entry(int *ord, int from, int to) {
  if (to < from)
    std::rotate(ord + to, ord + from, ord + from + 1);
  else
    std::rotate(ord + from, ord + from + 1, ord + to + 1);
}

} // namespace

void PLACE_IN_SERIES(long new_err, int i1, int i2, int *ord_posit, long *cum_err, int *i0) {
  auto err_at = [ord_posit, cum_err](int rank) { return cum_err[ord_posit[rank]]; };
  if (lighter(err_at(i1), new_err)) {
    *i0 = i1;
    return;
  }
  *i0 = i2;
  if (new_err < err_at(i2) || err_at(i2) < 0)
    return;
  while (i2 - i1 > 1) {
    int mid = (i1 + i2) / 2;
    if (lighter(err_at(mid), new_err))
      i2 = mid;
    else
      i1 = mid;
  }
  *i0 = i2;
}

int RE_ORDERING_POSIT(int sens_qr, int old_ord, long new_err, Trf_posit *t_posit) {
  Trf_side side = SIDE_OF_TABLE(sens_qr, t_posit);
  int elem = side.ord[old_ord];
  long old_err = side.cum_err[elem] < 0 ? ERR_NEVER_ASKED : side.cum_err[elem];
  int new_ord = new_err > old_err ? rank_toward_first(side, old_ord, new_err)
                                  : rank_toward_last(side, old_ord, t_posit->nb_posit, new_err);
  move_entry(side.ord, old_ord, new_ord);
  side.cum_err[elem] = new_err;
  return new_ord;
}
