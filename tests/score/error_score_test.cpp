// The error score: the worked table, each limit, and every input without harm.
#include "score/error_score.h"

#include <gtest/gtest.h>
#include <limits.h>

#include <algorithm>
#include <random>

namespace {

Trf_err defaults() {
  return {9.0F, 3.0F, 2.0F, 6.0F, 10.0F};
}

long score(long nb, long nok, long date, long date_ok, long date_nok) {
  Trf_err t_err = defaults();
  return FCT_ERROR(&t_err, nb, nok, date, date_ok, date_nok);
}

TEST(ErrorScore, AnEntryNeverAskedScoresMinusOneWhateverTheDates) {
  EXPECT_EQ(score(0, 0, 3000, 0, 0), -1);
  EXPECT_EQ(score(0, 0, 3000, 2999, 2998), -1);
  EXPECT_EQ(score(0, 0, 0, -5, 9000), -1);
}

TEST(ErrorScore, NegativeCountsCountAsZero) {
  EXPECT_EQ(score(-3, -1, 3000, 2990, 2980), -1);
  EXPECT_EQ(score(-3, 1, 3000, 2990, 2999), score(0, 1, 3000, 2990, 2999));
  EXPECT_EQ(score(1, -2, 3000, 2990, 2999), score(1, 0, 3000, 2990, 2999));
}

TEST(ErrorScore, KnownOnceTenDaysAgoScoresFive) {
  EXPECT_EQ(score(1, 0, 3000, 2990, 0), 5);
}

TEST(ErrorScore, MissedOnceYesterdayScores28) {
  EXPECT_EQ(score(0, 1, 3000, 0, 2999), 28);
}

TEST(ErrorScore, KnownFiveDaysAfterTheMissScores14) {
  EXPECT_EQ(score(3, 2, 3000, 2995, 2990), 14);
}

TEST(ErrorScore, TheBonusLiftsAScoreAboveTheCap) {
  EXPECT_EQ(score(2, 5, 3100, 3000, 3002), 42);
}

TEST(ErrorScore, KnownAndMissedTodayScores25) {
  EXPECT_EQ(score(1, 1, 3000, 3000, 3000), 25);
}

TEST(ErrorScore, AgeAloneIsCappedAt24) {
  EXPECT_EQ(score(10, 0, 3200, 3000, 0), 24);
}

TEST(ErrorScore, AnswersInTheFutureAgeByOnePoint) {
  EXPECT_EQ(score(1, 1, 2990, 3000, 2995), 10);
}

TEST(ErrorScore, OtherWeightsAreCutTowardZeroAtEachStep) {
  Trf_err t_err = {5.5F, 2.5F, 1.5F, 3.7F, 1.0F};
  EXPECT_EQ(FCT_ERROR(&t_err, 4, 3, 100, 95, 90), 12);
  // The cap is the whole part of 14.8.
  EXPECT_EQ(FCT_ERROR(&t_err, 1, 0, 5000, 3000, 0), 14);
}

TEST(ErrorScore, KnownTodayAndNeverMissedScoresOne) {
  EXPECT_EQ(score(1, 0, 3000, 3000, 0), 1);
}

TEST(ErrorScore, MissedTodayAndNeverKnownScoresTheCappedBalanceAnd18) {
  for (long nok = 1; nok < 6; nok++)
    EXPECT_EQ(score(0, nok, 3000, 0, 3000), std::min(9 * nok + 1, 24L) + 18);
}

TEST(ErrorScore, ADateWithoutItsCountIsIgnored) {
  EXPECT_EQ(score(0, 1, 3000, 2999, 2990), score(0, 1, 3000, 0, 2990));
  EXPECT_EQ(score(1, 0, 3000, 2990, 2999), score(1, 0, 3000, 2990, 0));
}

TEST(ErrorScore, TheBonusFallsAfterZeroThreeSixAndTwelveDays) {
  auto bonus = [](long d) { return score(2, 1, 3000, 2990, 2990 - d) - 8; };
  EXPECT_EQ(score(2, 1, 3001, 2990, 2991) - 8, 18);
  EXPECT_EQ(bonus(0), 18);
  EXPECT_EQ(bonus(1), 8);
  EXPECT_EQ(bonus(3), 8);
  EXPECT_EQ(bonus(4), 3);
  EXPECT_EQ(bonus(6), 3);
  EXPECT_EQ(bonus(7), 1);
  EXPECT_EQ(bonus(12), 1);
  EXPECT_EQ(bonus(13), 0);
}

TEST(ErrorScore, HalfADayPerPointGivesTwoPointsADay) {
  Trf_err t_err = defaults();
  t_err.cof3_err = 0.5F;
  EXPECT_EQ(FCT_ERROR(&t_err, 1, 0, 3000, 2995, 0), 10);
}

TEST(ErrorScore, ProductsAreRoundedToSinglePrecision) {
  // 0.1 and 0.3 have no exact form: 30 x 0.1F and 10 x 0.3F both round to 3, so nothing is left.
  Trf_err t_err = {0.1F, 0.3F, 2.0F, 6.0F, 10.0F};
  EXPECT_EQ(FCT_ERROR(&t_err, 10, 30, 3000, 3000, 2980), 1);
  // 10 x 0.7F rounds up to 7 though 0.7F lies below 0.7.
  t_err.cof1_err = 0.7F;
  EXPECT_EQ(FCT_ERROR(&t_err, 0, 10, 3000, 0, 3000), 7 + 1 + 18);
  // And it is rounded before the 6 of the known answers goes off: 1 is left, not 0.99999988.
  t_err.cof2_err = 3.0F;
  EXPECT_EQ(FCT_ERROR(&t_err, 2, 10, 3000, 3000, 2980), 1 + 1);
}

TEST(ErrorScore, TheAgeIsRoundedToSinglePrecision) {
  // 0.1F lies above 0.1, yet 1 / 0.1F rounds to 10.
  Trf_err t_err = {9.0F, 3.0F, 0.1F, 6.0F, 10.0F};
  EXPECT_EQ(FCT_ERROR(&t_err, 1, 0, 3000, 2999, 0), 10);
}

TEST(ErrorScore, AnAskedEntryScoresBetweenOneAndTheCapAndTheBonus) {
  std::mt19937 chance(1);
  std::uniform_int_distribution<long> count(0, 30);
  std::uniform_int_distribution<long> day(0, 9000);
  for (int i = 0; i < 20000; i++) {
    long nb = count(chance);
    long nok = count(chance);
    long err = score(nb, nok, day(chance), day(chance), day(chance));
    if (nb == 0 && nok == 0)
      EXPECT_EQ(err, -1);
    else
      EXPECT_TRUE(err >= 1 && err <= 42) << err;
  }
}

TEST(ErrorScore, NumbersAtTheEndsOfTheirTypeDoNoHarm) {
  const long ENDS[] = {LONG_MIN, -1, 0, 1, LONG_MAX};
  for (long nb : ENDS)
    for (long nok : ENDS)
      for (long date : ENDS)
        for (long date_ok : ENDS)
          for (long date_nok : ENDS)
            EXPECT_LE(score(nb, nok, date, date_ok, date_nok), 42);
}

TEST(ErrorScore, WeightsOfZeroDoNoHarm) {
  Trf_err t_err = {};
  EXPECT_EQ(FCT_ERROR(&t_err, 1, 1, 3000, 3000, 3000), 18);
  EXPECT_EQ(FCT_ERROR(&t_err, 1, 1, 3000, 2000, 3000), 18);
}

} // namespace
