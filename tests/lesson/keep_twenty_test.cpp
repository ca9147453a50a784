// The limiting step, and the place of a later candidate.
#include "lesson/keep_twenty.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "lesson/worst_desk.h"

namespace {

// A table of nb entries: every number of entry i tells i and what it is; both orderings count up.
struct Keep_desk : Worst_desk {
  explicit Keep_desk(int nb) {
    ALLOCATE_POSIT(65, &table);
    for (int i = 1; i <= nb; i++)
      fill(i);
    table.nb_posit = nb;
  }
  void fill(int i) {
    table.posit[i] = 1000 + i;
    for (int sens : {1, 2}) {
      Trf_side side = SIDE_OF_TABLE(sens, &table);
      side.ord[i] = i;
      long what = 10000L * sens;
      for (long *array :
           {side.cum_err, side.nb, side.nb0, side.nok, side.nok0, side.date_ok, side.date_nok})
        array[i] = (what += 1000) + i;
    }
  }
  // Storage i holds entry `from`, but for the score of the direction that is not `sens`.
  void expect_moved(int i, int from, int sens) {
    EXPECT_EQ(table.posit[i], 1000 + from);
    for (int each : {1, 2}) {
      Trf_side side = SIDE_OF_TABLE(each, &table);
      long what = 10000L * each;
      EXPECT_EQ(side.cum_err[i], (what += 1000) + (each == sens ? from : i)) << each;
      for (long *array : {side.nb, side.nb0, side.nok, side.nok0, side.date_ok, side.date_nok})
        EXPECT_EQ(array[i], (what += 1000) + from) << each;
    }
  }
  void order(int sens, const std::vector<int> &ord) {
    std::copy(ord.begin(), ord.end(), SIDE_OF_TABLE(sens, &table).ord + 1);
  }
};

// Numbers first to last.
std::vector<int> numbers(int first, int last) {
  std::vector<int> list((size_t)(last - first + 1));
  std::iota(list.begin(), list.end(), first);
  return list;
}

TEST(KeepTwenty, TwentyEntriesStayAsTheyAre) {
  Keep_desk desk(20);
  KEEP_TWENTY("WHO", 1, &desk.book);
  EXPECT_EQ(desk.table.nb_posit, 20);
  for (int i = 1; i <= 20; i++)
    desk.expect_moved(i, i, 1);
}

TEST(KeepTwenty, OfTwentyOneTheLastRankedLeaves) {
  Keep_desk desk(21);
  std::vector<int> ord = numbers(1, 21);
  std::reverse(ord.begin(), ord.end());
  desk.order(1, ord);
  KEEP_TWENTY("WHO", 1, &desk.book);
  EXPECT_EQ(desk.table.nb_posit, 20);
  EXPECT_EQ(desk.table.QRord_posit[1], 1);
  desk.expect_moved(1, 21, 1);
  desk.expect_moved(2, 2, 1);
}

TEST(KeepTwenty, FreeStoragesAreTakenInTheOrderOfTheirRanks) {
  Keep_desk desk(24);
  std::vector<int> ord = numbers(1, 24);
  // Ranks 5 and 9 are held by 23 and 21; 22 and 24 are dropped between the storages that are free.
  ord[4] = 23, ord[8] = 21;
  ord[20] = 22, ord[21] = 9, ord[22] = 24, ord[23] = 5;
  desk.order(2, ord);
  KEEP_TWENTY("WHO", 2, &desk.book);
  std::vector<int> kept = numbers(1, 20);
  kept[4] = 9, kept[8] = 5;
  EXPECT_EQ(ENTRIES_OF(desk.table.RQord_posit, 20), kept);
  desk.expect_moved(9, 23, 2);
  desk.expect_moved(5, 21, 2);
  desk.expect_moved(4, 4, 2);
}

TEST(KeepTwenty, TheScoreOfTheOtherDirectionStaysWithTheStorage) {
  Keep_desk desk(21);
  std::vector<int> ord = numbers(1, 21);
  std::swap(ord[6], ord[20]);
  desk.order(1, ord);
  KEEP_TWENTY("WHO", 1, &desk.book);
  EXPECT_EQ(desk.table.QRcum_err[7], 11000 + 21);
  EXPECT_EQ(desk.table.RQcum_err[7], 21000 + 7);
  EXPECT_EQ(desk.table.RQcum_nb[7], 22000 + 21);
}

TEST(KeepTwenty, EndsTheProgramWhereNoStorageIsLeft) {
  Keep_desk desk(23);
  std::vector<int> ord = numbers(1, 23);
  ord[2] = 21; // number 3 is nowhere
  desk.order(1, ord);
  for (const char *who : {"WORST_WORDS_LESSON", "WORST_TAG_LESSON"}) {
    std::string text = std::string(" ") + who + " error i=3 j=24 \n";
    ENDS_WITH_STATUS(KEEP_TWENTY(who, 1, &desk.book), 11, text);
    EXPECT_NE(desk.log().find(text), std::string::npos);
  }
}

TEST(KeepTwenty, AnyShuffleLeavesTheFirstTwentyInTheirRanks) {
  std::mt19937 chance(5);
  for (int round = 0; round < 30; round++) {
    int nb = 20 + (int)(chance() % 45);
    Keep_desk desk(nb);
    std::vector<int> ord = numbers(1, nb);
    std::shuffle(ord.begin(), ord.end(), chance);
    desk.order(1, ord);
    KEEP_TWENTY("WHO", 1, &desk.book);
    std::vector<int> kept = ENTRIES_OF(desk.table.QRord_posit, 20);
    for (size_t rank = 0; rank < 20; rank++)
      desk.expect_moved(kept[rank], ord[rank], 1);
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(kept, numbers(1, 20));
  }
}

TEST(KeepTwenty, ACollectionOfNothingLeavesTheNumberOfEntriesAndATableThatHoldsThem) {
  Keep_desk desk(0);
  ALLOCATE_POSIT(25, &desk.table);
  desk.fill(1); // an entry that was looked at and rejected
  KEEP_NB_POSIT(0, &desk.table);
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.table.nbmx_posit, 25);
  KEEP_NB_POSIT(200, &desk.table);
  EXPECT_EQ(desk.table.nb_posit, 200);
  EXPECT_GT(desk.table.nbmx_posit, 200);
  EXPECT_EQ(desk.table.QRord_posit[201], 0);
  desk.fill(1);
  KEEP_NB_POSIT(3, &desk.table);
  EXPECT_EQ(desk.table.nb_posit, 3);
  EXPECT_EQ(desk.table.QRcum_nok[1], 0);
  EXPECT_EQ(desk.table.RQord_posit[1], 0);
}

// The rank by walking from the top.
int plain_rank(const std::vector<int> &scores, int score) {
  for (size_t rank = 1; rank <= scores.size(); rank++)
    if (score > scores[rank - 1])
      return (int)rank;
  return 0;
}

TEST(RankOfCandidate, IsBehindAllThatAreEqual) {
  std::vector<int> scores = {9, 7, 7, 7, 3};
  auto rank = [&](int score) {
    return RANK_OF_CANDIDATE(5, [&](int at) { return score > scores[(size_t)at - 1]; });
  };
  EXPECT_EQ(rank(10), 1);
  EXPECT_EQ(rank(9), 2);
  EXPECT_EQ(rank(7), 5);
  EXPECT_EQ(rank(4), 5);
  EXPECT_EQ(rank(3), 0);
  EXPECT_EQ(rank(2), 0);
}

TEST(RankOfCandidate, OfNoRanksIsNone) {
  EXPECT_EQ(RANK_OF_CANDIDATE(0, [](int) { return true; }), 0);
  EXPECT_EQ(RANK_OF_CANDIDATE(1, [](int) { return true; }), 1);
}

TEST(RankOfCandidate, IsThatOfAPlainWalkInFewSteps) {
  std::mt19937 chance(6);
  for (int round = 0; round < 2000; round++) {
    std::vector<int> scores(1 + chance() % 40);
    for (int &score : scores)
      score = (int)(chance() % 12);
    std::sort(scores.rbegin(), scores.rend());
    int score = (int)(chance() % 13);
    int nb_asked = 0;
    int rank = RANK_OF_CANDIDATE((int)scores.size(), [&](int at) {
      nb_asked++;
      return score > scores[(size_t)at - 1];
    });
    EXPECT_EQ(rank, plain_rank(scores, score));
    EXPECT_LE(nb_asked, 8);
  }
}

TEST(PutAtRank, TheLastLeavesAndItsStorageTakesTheCandidate) {
  for (int sens : {1, 2}) {
    Keep_desk desk(5);
    desk.fill(6);
    desk.order(sens, {3, 1, 5, 2, 4});
    desk.order(3 - sens, {1, 2, 3, 4, 5});
    EXPECT_EQ(PUT_AT_RANK(2, sens, &desk.table), 4);
    EXPECT_EQ(ENTRIES_OF(SIDE_OF_TABLE(sens, &desk.table).ord, 5),
              (std::vector<int>{3, 4, 1, 5, 2}));
    EXPECT_EQ(ENTRIES_OF(SIDE_OF_TABLE(3 - sens, &desk.table).ord, 5), numbers(1, 5));
    desk.expect_moved(4, 6, sens);
    desk.expect_moved(1, 1, sens);
    EXPECT_EQ(desk.table.nb_posit, 5);
  }
}

TEST(PutAtRank, TheFirstAndTheLastRankAreRanksToo) {
  Keep_desk desk(3);
  desk.fill(4);
  EXPECT_EQ(PUT_AT_RANK(1, 1, &desk.table), 3);
  EXPECT_EQ(ENTRIES_OF(desk.table.QRord_posit, 3), (std::vector<int>{3, 1, 2}));
  EXPECT_EQ(PUT_AT_RANK(3, 1, &desk.table), 2);
  EXPECT_EQ(ENTRIES_OF(desk.table.QRord_posit, 3), (std::vector<int>{3, 1, 2}));
}

TEST(PutAtRank, TellsTheScoresAroundTheRankAsTrace) {
  Keep_desk desk(3);
  desk.fill(4);
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  PUT_AT_RANK(2, 1, &desk.table);
  fflush(stdout);
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "err=11004 <= err(icontp-1)= 11001  > err(icontp)= 11002 \n");
}

} // namespace
