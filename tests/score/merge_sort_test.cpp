// Both sorts: the order of the keys, and equal entries left as they were.
#include "score/merge_sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

int compare3(std::vector<long> a, std::vector<long> b) {
  return CMP_3GERR(a.data(), b.data());
}

// 0 to nb: the identity ordering with its unused element 0.
std::vector<int> identity(int nb) {
  std::vector<int> num((size_t)nb + 1);
  std::iota(num.begin(), num.end(), 0);
  return num;
}

std::vector<long> random_keys(std::mt19937 *chance, int nb, long low, long high) {
  std::uniform_int_distribution<long> key(low, high);
  std::vector<long> keys((size_t)nb + 1);
  std::generate(keys.begin(), keys.end(), [&] { return key(*chance); });
  return keys;
}

// What a score weighs: never asked above all.
long weight(long err) {
  return err < 0 ? 1000000 : err;
}

TEST(MergeSort, NeverAskedGoesBeforeEveryScore) {
  EXPECT_EQ(COMPARE_ERR(-1, 0), -1);
  EXPECT_EQ(COMPARE_ERR(-1, 42), -1);
  EXPECT_EQ(COMPARE_ERR(0, -1), 1);
  EXPECT_EQ(COMPARE_ERR(-1, -7), 0);
}

TEST(MergeSort, TheLargerScoreGoesFirst) {
  EXPECT_EQ(COMPARE_ERR(5, 4), -1);
  EXPECT_EQ(COMPARE_ERR(4, 5), 1);
  EXPECT_EQ(COMPARE_ERR(0, 0), 0);
}

TEST(MergeSort, OfThreeKeysTheScoreThenTheMissesThenTheDayDecide) {
  EXPECT_EQ(compare3({0, 5, 0, 0}, {0, 4, 9, 9}), -1);
  EXPECT_EQ(compare3({0, 4, 9, 9}, {0, 5, 0, 0}), 1);
  EXPECT_EQ(compare3({0, 5, 2, 0}, {0, 5, 1, 9}), -1);
  EXPECT_EQ(compare3({0, 5, 1, 9}, {0, 5, 2, 0}), 1);
  EXPECT_EQ(compare3({0, 5, 2, 7}, {0, 5, 2, 6}), -1);
  EXPECT_EQ(compare3({0, 5, 2, 6}, {0, 5, 2, 7}), 1);
  EXPECT_EQ(compare3({1, 5, 2, 7}, {9, 5, 2, 7}), 0);
}

TEST(MergeSort, ANegativeScoreIgnoresTheOtherTwoKeys) {
  EXPECT_EQ(compare3({0, -1, 9, 9}, {0, -1, 0, 0}), 0);
  EXPECT_EQ(compare3({0, -3, 0, 0}, {0, -1, 9, 9}), 0);
  EXPECT_EQ(compare3({0, -1, 0, 0}, {0, 99, 9, 9}), -1);
  EXPECT_EQ(compare3({0, 99, 9, 9}, {0, -1, 0, 0}), 1);
}

TEST(MergeSort, FiveEntriesRankNeverAskedThenHeaviestWithTiesAsTheyWere) {
  std::vector<int> num = identity(5);
  std::vector<long> err = {0, 5, -1, 7, 5, -1};
  MERGESORT(1, 5, num.data(), err.data());
  EXPECT_THAT(num, ElementsAre(0, 2, 5, 3, 1, 4));
}

TEST(MergeSort, NothingIsDoneWhenTheRangeIsEmptyOrOneEntry) {
  std::vector<int> num = {0, 2, 1};
  std::vector<long> err = {0, 1, 9};
  MERGESORT(1, 0, num.data(), err.data());
  MERGESORT(1, 1, num.data(), err.data());
  MERGESORT(1, -3, num.data(), err.data());
  EXPECT_THAT(num, ElementsAre(0, 2, 1));
}

TEST(MergeSort, OnlyTheRanksBetweenTheBoundsAreSorted) {
  std::vector<int> num = identity(6);
  std::vector<long> err = {0, 1, 2, 3, 4, 5, 6};
  MERGESORT(2, 4, num.data(), err.data());
  EXPECT_THAT(num, ElementsAre(0, 1, 4, 3, 2, 5, 6));
}

TEST(MergeSort, AgreesWithAStableSortOnRandomKeys) {
  std::mt19937 chance(2);
  for (int nb = 0; nb < 200; nb++) {
    std::vector<long> err = random_keys(&chance, nb, -3, 12);
    std::vector<int> num = identity(nb);
    std::shuffle(num.begin() + 1, num.end(), chance);
    std::vector<int> expected = num;
    std::stable_sort(expected.begin() + 1, expected.end(),
                     [&](int a, int b) { return weight(err[(size_t)a]) > weight(err[(size_t)b]); });
    MERGESORT(1, nb, num.data(), err.data());
    ASSERT_EQ(num, expected);
  }
}

TEST(MergeSort, TiesOnAllThreeKeysKeepTheirOrder) {
  std::vector<int> num = {0, 3, 1, 2, 4};
  std::vector<long> err = {0, 5, 5, 5, 6};
  std::vector<long> nok = {0, 1, 1, 1, 0};
  std::vector<long> date = {0, 9, 9, 9, 0};
  MERGESORT_3ERR(1, 4, num.data(), err.data(), nok.data(), date.data());
  EXPECT_THAT(num, ElementsAre(0, 4, 3, 1, 2));
}

TEST(MergeSort, OnThreeKeysAgreesWithAStableSortOnRandomKeys) {
  std::mt19937 chance(3);
  for (int nb = 0; nb < 150; nb++) {
    std::vector<long> err = random_keys(&chance, nb, -2, 4);
    std::vector<long> nok = random_keys(&chance, nb, 0, 3);
    std::vector<long> date = random_keys(&chance, nb, 0, 3);
    std::vector<int> num = identity(nb);
    std::vector<int> expected = num;
    auto key = [&](int entry) {
      size_t i = (size_t)entry;
      return err[i] < 0 ? std::make_tuple(1000000L, 0L, 0L)
                        : std::make_tuple(err[i], nok[i], date[i]);
    };
    std::stable_sort(expected.begin() + 1, expected.end(),
                     [&](int a, int b) { return key(a) > key(b); });
    MERGESORT_3ERR(1, nb, num.data(), err.data(), nok.data(), date.data());
    ASSERT_EQ(num, expected);
  }
}

TEST(MergeSort, OnThreeKeysListsTheArraysOnlyAsTrace) {
  std::vector<int> num = {0, 1, 2};
  std::vector<long> err = {0, 3, 8};
  std::vector<long> nok = {0, 1, 4};
  std::vector<long> date = {0, 70, 80};
  unsetenv("MERTU_TRACE");
  testing::internal::CaptureStdout();
  MERGESORT_3ERR(1, 2, num.data(), err.data(), nok.data(), date.data());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  num = {0, 1, 2};
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  MERGESORT_3ERR(1, 2, num.data(), err.data(), nok.data(), date.data());
  unsetenv("MERTU_TRACE");
  std::string listing = testing::internal::GetCapturedStdout();
  EXPECT_THAT(listing, HasSubstr("i=1 num=1 err=3 nb_nok=1 date=70"));
  EXPECT_THAT(listing, HasSubstr("i=1 num=2 err=8 nb_nok=4 date=80"));
}

} // namespace
