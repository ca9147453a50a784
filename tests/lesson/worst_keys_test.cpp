// The three keys of each code, and which words may be among the worst at all.
#include "lesson/worst_keys.h"

#include <gtest/gtest.h>
#include <limits.h>

#include "lesson/worst_desk.h"

namespace {

// One entry of a direction.
struct Keys_desk {
  Trf_posit table;
  Keys_desk() {
    ALLOCATE_POSIT(10, &table);
  }
  ~Keys_desk() {
    FREE_POSIT(&table);
  }
  Trf_side side() {
    return SIDE_OF_TABLE(1, &table);
  }
  void history(int i, long nb, long nok, long date_ok, long date_nok) {
    const long values[] = {0, nb, nok, date_ok, date_nok};
    table.QRcum_nb[i] = values[1];
    table.QRcum_nok[i] = values[2];
    table.QR_date_ok[i] = values[3];
    table.QR_date_nok[i] = values[4];
  }
  std::vector<long> keys(int code) {
    long keys[4] = {-7, 0, 0, 0};
    WORST_KEYS({code, TODAY, 50}, 2, side(), keys);
    EXPECT_EQ(keys[0], -7);
    return {keys[1], keys[2], keys[3]};
  }
  bool may_be_worst() {
    return MAY_BE_WORST(side(), SIDE_OF_TABLE(2, &table), 2, TODAY);
  }
};

TEST(WorstKeys, EachCodeHasItsThreeKeys) {
  Keys_desk desk;
  desk.history(2, 4, 7, 2900, 2950);
  desk.table.QRcum_err[2] = 33;
  EXPECT_EQ(desk.keys(1), (std::vector<long>{33, 7, 50}));
  EXPECT_EQ(desk.keys(2), (std::vector<long>{50, 33, 7}));
  EXPECT_EQ(desk.keys(3), (std::vector<long>{2950, 33, 7}));
  EXPECT_EQ(desk.keys(4), (std::vector<long>{7, 33, 50}));
  EXPECT_EQ(desk.keys(5), (std::vector<long>{39, 50, 33}));
}

TEST(WorstKeys, TheLastAnswerIsTheLaterOneOfThoseThatCount) {
  Keys_desk desk;
  desk.history(2, 1, 1, 2900, 2950);
  EXPECT_EQ(LAST_ANSWER_DAY(2, desk.side()), 2950);
  desk.history(2, 1, 1, 2960, 2950);
  EXPECT_EQ(LAST_ANSWER_DAY(2, desk.side()), 2960);
  desk.history(2, 1, 0, 2900, 2950);
  EXPECT_EQ(LAST_ANSWER_DAY(2, desk.side()), 2900);
  desk.history(2, 0, 1, 2960, 2950);
  EXPECT_EQ(LAST_ANSWER_DAY(2, desk.side()), 2950);
}

TEST(WorstKeys, TheBoundIsTenAboveTheMostAnswers) {
  Keys_desk desk;
  desk.history(1, 3, 4, 1, 1);
  desk.history(2, 9, 0, 1, 1);
  desk.history(3, 100, 0, 1, 1);
  EXPECT_EQ(WORST_BOUND(2, desk.side()), 19);
  EXPECT_EQ(WORST_BOUND(3, desk.side()), 110);
}

TEST(WorstKeys, CountsAreHeldAtTheEndOfTheType) {
  Keys_desk desk;
  desk.history(1, LONG_MAX, LONG_MAX, 1, 1);
  EXPECT_EQ(NB_ANSWERS(1, desk.side()), LONG_MAX);
  EXPECT_EQ(WORST_BOUND(1, desk.side()), LONG_MAX);
}

TEST(WorstKeys, OnlyWhatWasAskedBeforeTodayMayBeWorst) {
  Keys_desk desk;
  desk.history(2, 0, 0, 0, 0);
  EXPECT_FALSE(desk.may_be_worst());
  desk.history(2, 1, 0, TODAY - 1, 0);
  EXPECT_TRUE(desk.may_be_worst());
  desk.history(2, 0, 1, 0, TODAY - 1);
  EXPECT_TRUE(desk.may_be_worst());
  desk.history(2, 1, 9, TODAY, TODAY - 1);
  EXPECT_FALSE(desk.may_be_worst());
  desk.history(2, 1, 9, TODAY - 1, TODAY);
  EXPECT_FALSE(desk.may_be_worst());
}

TEST(WorstKeys, TheCodesAreOneToFive) {
  for (int code = 1; code <= 5; code++)
    EXPECT_TRUE(IS_WORST_CODE(code)) << code;
  for (int code : {INT_MIN, -1, 0, 6, INT_MAX})
    EXPECT_FALSE(IS_WORST_CODE(code)) << code;
}

TEST(WorstKeys, AnUnknownCodeIsToldOnStandardOutput) {
  testing::internal::CaptureStdout();
  TELL_UNKNOWN_CODE(6);
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "WORST_WORD_LESSON code 6 is unknown \n");
}

} // namespace
