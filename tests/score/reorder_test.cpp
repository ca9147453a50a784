// The move of one entry: every direction of it, its faults, and a plain model beside it.
#include "score/reorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "score/merge_sort.h"
#include "score/position_table.h"
#include "support/scratch.h"
#include "util/report.h"

using testing::ElementsAre;

namespace {

// A lesson whose entry i has the i-th score, ranked in both directions.
struct Lesson : Trf_posit {
  explicit Lesson(const std::vector<long> &errs) {
    ALLOCATE_POSIT((int)errs.size() + 1, this);
    nb_posit = (int)errs.size();
    INIT_ORDERING_POSIT(this);
    std::copy(errs.begin(), errs.end(), QRcum_err + 1);
    std::copy(errs.begin(), errs.end(), RQcum_err + 1);
    MERGESORT(1, nb_posit, QRord_posit, QRcum_err);
    MERGESORT(1, nb_posit, RQord_posit, RQcum_err);
  }
  ~Lesson() {
    FREE_POSIT(this);
  }
  std::vector<int> ranks(int sens) {
    int *ord = SIDE_OF_TABLE(sens, this).ord;
    return std::vector<int>(ord + 1, ord + 1 + nb_posit);
  }
};

TEST(Reorder, AnEntryThatGotWorseGoesBehindItsNewEquals) {
  Lesson lesson({9, 7, 7, 5, 3});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 5, 7, &lesson), 4);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2, 3, 5, 4));
  EXPECT_EQ(lesson.QRcum_err[5], 7);
}

TEST(Reorder, AnEntryThatGotBetterGoesBehindItsNewEquals) {
  Lesson lesson({9, 7, 7, 5, 3});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 1, 7, &lesson), 3);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 3, 1, 4, 5));
  EXPECT_EQ(lesson.QRcum_err[1], 7);
}

TEST(Reorder, TheSameScoreMovesAnEntryBackPastItsEquals) {
  Lesson lesson({7, 7, 7, 5});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 1, 7, &lesson), 3);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 3, 1, 4));
}

TEST(Reorder, TheLastEntryStaysLastWithASmallerScore) {
  Lesson lesson({7, 5, 3});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 3, 0, &lesson), 3);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2, 3));
  EXPECT_EQ(lesson.QRcum_err[3], 0);
}

TEST(Reorder, AScoreAboveAllOthersGoesToRankOne) {
  Lesson lesson({7, 5, 3});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 3, 8, &lesson), 1);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(3, 1, 2));
}

TEST(Reorder, NeverAskedEntriesStayAheadOfTheHeaviestScore) {
  Lesson lesson({-1, -1, 5, 3});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 4, 42, &lesson), 3);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2, 4, 3));
}

TEST(Reorder, ANeverAskedEntryGoesBehindTheRemainingNeverAskedOnes) {
  Lesson lesson({-1, -1, -1, 5, 3});
  EXPECT_EQ(RE_ORDERING_POSIT(1, 1, 28, &lesson), 3);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 3, 1, 4, 5));
}

TEST(Reorder, TheOnlyEntryKeepsRankOne) {
  for (long err : {-1, 0, 9})
    for (long new_err : {0, 5, 30}) {
      Lesson lesson({err});
      EXPECT_EQ(RE_ORDERING_POSIT(1, 1, new_err, &lesson), 1);
      EXPECT_EQ(lesson.QRcum_err[1], new_err);
    }
}

TEST(Reorder, TheOtherDirectionIsUntouched) {
  Lesson lesson({9, 7, 5});
  EXPECT_EQ(RE_ORDERING_POSIT(2, 1, 0, &lesson), 3);
  EXPECT_THAT(lesson.ranks(2), ElementsAre(2, 3, 1));
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2, 3));
  EXPECT_EQ(lesson.QRcum_err[1], 9);
  EXPECT_EQ(lesson.RQcum_err[1], 0);
}

TEST(Reorder, AnyDirectionButOneIsResponseToQuestion) {
  Lesson lesson({9, 7, 5});
  RE_ORDERING_POSIT(0, 1, 0, &lesson);
  EXPECT_THAT(lesson.ranks(2), ElementsAre(2, 3, 1));
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2, 3));
}

int place(long new_err, int i1, int i2, std::vector<long> errs) {
  std::vector<int> ord(errs.size() + 1);
  for (size_t i = 1; i < ord.size(); i++)
    ord[i] = (int)i;
  errs.insert(errs.begin(), 0);
  int i0 = -1;
  PLACE_IN_SERIES(new_err, i1, i2, ord.data(), errs.data(), &i0);
  return i0;
}

TEST(Reorder, TheBisectionGivesTheFirstLighterRank) {
  EXPECT_EQ(place(6, 1, 5, {9, 8, 7, 5, 3}), 4);
  EXPECT_EQ(place(10, 1, 5, {9, 8, 7, 5, 3}), 1);
  EXPECT_EQ(place(7, 1, 5, {9, 8, 7, 5, 3}), 4);
  EXPECT_EQ(place(4, 1, 5, {-1, -1, 7, 5, 3}), 5);
}

TEST(Reorder, TheBisectionGivesTheLastRankWhereNoneIsLighter) {
  EXPECT_EQ(place(2, 1, 5, {9, 8, 7, 5, 3}), 5);
  EXPECT_EQ(place(3, 2, 5, {9, 8, 7, 5, 3}), 5);
  EXPECT_EQ(place(99, 1, 2, {-1, -1}), 2);
  EXPECT_EQ(place(3, 5, 5, {9, 8, 7, 5, 3}), 5);
}

// Takes the entry out and puts it in front of the first lighter one.
std::vector<int> model_of_move(std::vector<int> ranks, std::vector<long> errs, int old_ord,
                               long new_err, int *new_ord) {
  int elem = ranks[(size_t)old_ord - 1];
  ranks.erase(ranks.begin() + old_ord - 1);
  auto lighter = [&](int entry) {
    long err = errs[(size_t)entry - 1];
    return err >= 0 && err < new_err;
  };
  auto place = std::find_if(ranks.begin(), ranks.end(), lighter);
  *new_ord = (int)(place - ranks.begin()) + 1;
  ranks.insert(place, elem);
  return ranks;
}

TEST(Reorder, AgreesWithAPlainModelOnRandomLessons) {
  std::mt19937 chance(4);
  std::uniform_int_distribution<long> err(-1, 15);
  std::uniform_int_distribution<int> size(1, 40);
  for (int i = 0; i < 3000; i++) {
    std::vector<long> errs((size_t)size(chance));
    std::generate(errs.begin(), errs.end(), [&] { return err(chance); });
    Lesson lesson(errs);
    int sens = 1 + i % 2;
    int old_ord = 1 + (int)(chance() % errs.size());
    long new_err = std::max(err(chance), 0L);
    int new_ord = 0;
    std::vector<int> expected = model_of_move(lesson.ranks(sens), errs, old_ord, new_err, &new_ord);
    ASSERT_EQ(RE_ORDERING_POSIT(sens, old_ord, new_err, &lesson), new_ord);
    ASSERT_EQ(lesson.ranks(sens), expected);
    ASSERT_EQ(SIDE_OF_TABLE(sens, &lesson).cum_err[expected[(size_t)new_ord - 1]], new_err);
  }
}

TEST(ReorderDeathTest, ANeverAskedEntryPast500000EndsTheProgramWithStatus3) {
  Lesson lesson({-1, -1, 5});
  ENDS_WITH_STATUS(RE_ORDERING_POSIT(1, 2, 500001, &lesson), 3, "  error 1 i0 > i2 i0=3 i2=2 \n");
}

TEST(ReorderDeathTest, ARankPastTheLastEndsTheProgramWithStatus3) {
  Lesson lesson({9, 7, 5});
  lesson.QRord_posit[4] = 1;
  ENDS_WITH_STATUS(RE_ORDERING_POSIT(1, 4, 6, &lesson), 3, "  error 2 i0 < i1 i0=2 i1=4 \n");
}

TEST(ReorderDeathTest, TheLastLineGoesToTheRegisteredLogToo) {
  Scratch_dir dir;
  Lesson lesson({9, 7, 5});
  lesson.QRord_posit[4] = 1;
  auto move_with_log = [&] {
    SET_SAVED_LOG(fopen("log", "w"));
    RE_ORDERING_POSIT(1, 4, 6, &lesson);
  };
  ENDS_WITH_STATUS(move_with_log(), 3, "error 2");
  EXPECT_EQ(dir.read("log"), "  error 2 i0 < i1 i0=2 i1=4 \n");
}

} // namespace
