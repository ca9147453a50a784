// The orderings checked, and listed for the curious.
#include "score/check_order.h"

#include "score/error_score.h"
#include "score/position_table.h"
#include "util/book.h"
#include "util/day_number.h"
#include "util/report.h"

namespace {

// QUIRK never asked weighs 500000: a negative score stands for this large number, and not for the
// largest of its type, wherever scores are compared by size. It reads like an arbitrary limit; it
// is meant: no score comes near it, and both the check and the move of an entry use the same one.
// Test: CheckOrder.AScoreAbove500000BehindANeverAskedEntryIsAFault
long weight_at(const Trf_side &side, int rank) {
  long err = side.cum_err[side.ord[rank]];
  return err < 0 ? ERR_NEVER_ASKED : err;
}

bool in_order(const Trf_side &side, int nb_posit) {
  for (int rank = 2; rank <= nb_posit; rank++) {
    if (weight_at(side, rank) > weight_at(side, rank - 1))
      return false;
  }
  return true;
}

[[noreturn]] void stop_on_disorder(const char *sens, const Trf_side &side, Trf_book *book) {
  FILE *fp_log = book->fp_log;
  LOG_LINE(fp_log, "   \n");
  LOG_AND_SAY(fp_log, "VERIF_CLASSMENT Sens %s error present sens_qr=%d\n", sens, book->sens_qr);
  LOG_LINE(fp_log, "   \n");
  int last = book->t_posit->nb_posit;
  for (int rank = 1; rank < last; rank++)
    LOG_AND_SAY(fp_log, "%d  elem=%d  err=%ld \n", rank, side.ord[rank],
                side.cum_err[side.ord[rank]]);
  STOP_PROGRAM(fp_log, 11, "%d  elem=%d  err=%ld \n", last, side.ord[last],
               side.cum_err[side.ord[last]]);
}

void list_side(const char *sens, const Trf_side &side, Trf_book *book, long today) {
  for (int rank = 1; rank <= book->t_posit->nb_posit; rank++) {
    int elem = side.ord[rank];
    long err = FCT_ERROR(book->t_err, side.nb[elem], side.nok[elem], today, side.date_ok[elem],
                         side.date_nok[elem]);
    TRACE("SORT_CLASSMENT %s rank=%d elem=%d err=%ld err today=%ld \n", sens, rank, elem,
          side.cum_err[elem], err);
  }
}

} // namespace

void VERIF_CLASSMENT(Trf_book *book) {
  Trf_posit *t_posit = book->t_posit;
  if (t_posit->nb_posit <= 0)
    return;
  Trf_side side = SIDE_OF_TABLE(1, t_posit);
  if (!in_order(side, t_posit->nb_posit))
    stop_on_disorder("QR", side, book);
  side = SIDE_OF_TABLE(2, t_posit);
  if (!in_order(side, t_posit->nb_posit))
    stop_on_disorder("RQ", side, book);
  SAY("VERIF_CLASSMENT two senses OK ");
}

void SORT_CLASSMENT(Trf_book *book) {
  if (!TRACING())
    return;
  long today = DIFF_JOUR();
  list_side("QR", SIDE_OF_TABLE(1, book->t_posit), book, today);
  list_side("RQ", SIDE_OF_TABLE(2, book->t_posit), book, today);
}
