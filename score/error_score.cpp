// The error score: an entry's history of answers condensed into one number.
#include "score/error_score.h"

#include <limits.h>

#include <algorithm>

namespace {

// Beyond this a term is cut short: far above every cap, and sums of such terms stay in range.
const float LARGEST_TERM = 1.0e15F;

// The whole part of a number, cut toward zero; 0 for what is no number.
long whole_part(float number) {
  if (!(number == number))
    return 0;
  return (long)std::clamp(number, -LARGEST_TERM, LARGEST_TERM);
}

// first - second, held at the ends of the type.
long difference(long first, long second) {
  long result = 0;
  if (__builtin_sub_overflow(first, second, &result))
    return second > 0 ? LONG_MIN : LONG_MAX;
  return result;
}

// One point per cof3_err days since the last answer, at least 1.
long ageing_term(const Trf_err *t_err, long ddate) {
  return std::max(whole_part((float)ddate / t_err->cof3_err), 1L);
}

// Misses weighed against known answers, at least 0. Each product is rounded before the difference.
long balance_term(const Trf_err *t_err, long nb, long nok) {
  float missed = (float)nok * t_err->cof1_err;
  float known = (float)nb * t_err->cof2_err;
  return std::max(whole_part(missed - known), 0L);
}

// What a miss adds that is as recent as the last known answer, or up to 12 days older. The steps
// add up: 18, 8, 3, 1 or 0.
long recency_bonus(long d) {
  long bonus = 0;
  if (d <= 0)
    bonus += 10;
  if (d <= 3)
    bonus += 5;
  if (d <= 6)
    bonus += 2;
  if (d <= 12)
    bonus += 1;
  return bonus;
}

} // namespace

long FCT_ERROR(Trf_err *t_err, long nb, long nok, long date, long date_ok, long date_nok) {
  nb = std::max(nb, 0L);
  nok = std::max(nok, 0L);
  if (nb == 0)
    date_ok = 0;
  if (nok == 0)
    date_nok = 0;
  if (nb == 0 && nok == 0)
    return -1;
  long cap = whole_part(4.0F * t_err->cof4_err);
  long ddate = difference(date, std::max(date_ok, date_nok));
  long err = balance_term(t_err, nb, nok) + ageing_term(t_err, ddate);
  // QUIRK bonus above the cap: the bonus is added after the score was capped, so that a score may
  // lie up to 18 above four times cof4_err. It reads like two steps in the wrong order; it is
  // meant: a recent miss must outrank every entry that was merely forgotten with age.
  // Test: ErrorScore.TheBonusLiftsAScoreAboveTheCap
  return std::min(err, cap) + recency_bonus(difference(date_ok, date_nok));
}
