// What the codes of a worst-words lesson look at: three keys of an entry, the larger the worse.
#include "lesson/worst_keys.h"

#include <limits.h>

#include <algorithm>

#include "score/position_table.h"
#include "util/report.h"

namespace {

using Key = long (*)(const Trf_worst_rule &rule, int icont, const Trf_side &side);

long score_of(const Trf_worst_rule &, int icont, const Trf_side &side) {
  return side.cum_err[icont];
}

long misses_of(const Trf_worst_rule &, int icont, const Trf_side &side) {
  return side.nok[icont];
}

long day_of(const Trf_worst_rule &, int icont, const Trf_side &side) {
  return LAST_ANSWER_DAY(icont, side);
}

long age_of(const Trf_worst_rule &rule, int icont, const Trf_side &side) {
  return rule.today - LAST_ANSWER_DAY(icont, side);
}

long fewness_of(const Trf_worst_rule &rule, int icont, const Trf_side &side) {
  return rule.bound - NB_ANSWERS(icont, side);
}

const int NB_WORST_CODES = 5;

// The table at the head of worst_keys.h; code 1 is the first row.
const Key KEYS[NB_WORST_CODES][NB_WORST_KEYS] = {{score_of, misses_of, age_of},
                                                 {age_of, score_of, misses_of},
                                                 {day_of, score_of, misses_of},
                                                 {misses_of, score_of, age_of},
                                                 {fewness_of, age_of, score_of}};

// What the bound is above the largest number of answers.
const long ABOVE_MOST_ANSWERS = 10;

long held_sum(long first, long second) {
  long sum = 0;
  return __builtin_add_overflow(first, second, &sum) ? LONG_MAX : sum;
}

} // namespace

bool IS_WORST_CODE(int code) {
  return code >= 1 && code <= NB_WORST_CODES;
}

// QUIRK WORST_WORD: the message names WORST_WORD_LESSON, without the S of the routine that says
// it. It looks like a slip of the pen; it is meant: the line is looked for by these letters.
// Test: WorstKeys.AnUnknownCodeIsToldOnStandardOutput
void TELL_UNKNOWN_CODE(int code) {
  SAY("WORST_WORD_LESSON code %d is unknown \n", code);
}

bool MAY_BE_WORST(const Trf_side &asked, const Trf_side &, int place, long today) {
  bool was_asked = asked.nb[place] >= 1 || asked.nok[place] >= 1;
  return was_asked && asked.date_ok[place] != today && asked.date_nok[place] != today;
}

long NB_ANSWERS(int icont, const Trf_side &side) {
  return held_sum(side.nb[icont], side.nok[icont]);
}

long LAST_ANSWER_DAY(int icont, const Trf_side &side) {
  if (side.nb[icont] <= 0)
    return side.date_nok[icont];
  if (side.nok[icont] <= 0)
    return side.date_ok[icont];
  return std::max(side.date_ok[icont], side.date_nok[icont]);
}

long WORST_BOUND(int nb, const Trf_side &side) {
  long most = 0;
  for (int icont = 1; icont <= nb; icont++)
    most = std::max(most, NB_ANSWERS(icont, side));
  return held_sum(most, ABOVE_MOST_ANSWERS);
}

void WORST_KEYS(const Trf_worst_rule &rule, int icont, const Trf_side &side, long *keys) {
  for (int k = 1; k <= NB_WORST_KEYS; k++)
    keys[k] = KEYS[rule.code - 1][k - 1](rule, icont, side);
}
