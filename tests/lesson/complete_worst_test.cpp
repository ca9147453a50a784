// The search for worse words in the dictionaries that the collection did not visit.
#include "lesson/worst_words.h"

#include <gtest/gtest.h>

#include "db/verify_lesson.h"
#include "lesson/worst_desk.h"

namespace {

// Twenty words a30 to a49 in dictionary 1; what the search then makes of dictionary 2.
struct Rest_desk : Worst_desk {
  explicit Rest_desk(const std::string &two) {
    words("one.txt", MISSED("a", 30, 49));
    words("two.txt", two);
  }
  std::vector<std::string> lesson(int code) {
    WORST_WORDS_LESSON(code, &book);
    expect_ended();
    EXPECT_EQ(table.nb_posit, 20);
    return ranking(1);
  }
};

TEST(CompleteWorst, EqualKeysAreNotEnough) {
  EXPECT_EQ(Rest_desk(MISSED("b", 30, 30)).lesson(1), DOWN("a", 49, 30));
  EXPECT_EQ(Rest_desk(MISSED("b", 30, 30, 101)).lesson(1), BOTH(DOWN("a", 49, 31), {"b30"}));
}

TEST(CompleteWorst, ACandidateGoesBehindEntriesOfEqualKeys) {
  EXPECT_EQ(Rest_desk(MISSED("b", 49, 49)).lesson(1), BOTH({"a49", "b49"}, DOWN("a", 48, 31)));
  EXPECT_EQ(Rest_desk(MISSED("b", 40, 40)).lesson(1),
            BOTH(BOTH(DOWN("a", 49, 40), {"b40"}), DOWN("a", 39, 31)));
  EXPECT_EQ(Rest_desk(MISSED("b", 31, 31)).lesson(1), BOTH(DOWN("a", 49, 31), {"b31"}));
}

TEST(CompleteWorst, ACandidateAheadOfTheFirstTakesTheFirstRank) {
  EXPECT_EQ(Rest_desk(MISSED("b", 50, 50)).lesson(1), BOTH({"b50"}, DOWN("a", 49, 31)));
}

TEST(CompleteWorst, ManyCandidatesLeaveTheWorstOfAll) {
  EXPECT_EQ(Rest_desk(MISSED("b", 1, 100)).lesson(1), DOWN("b", 100, 81));
}

TEST(CompleteWorst, LooksThroughAllDictionariesThatAreLeft) {
  Rest_desk desk(MISSED("b", 60, 60));
  desk.words("three.txt", MISSED("c", 61, 61));
  EXPECT_EQ(desk.lesson(1), BOTH({"c61", "b60"}, DOWN("a", 49, 32)));
}

TEST(CompleteWorst, ADictionaryRegisteredTwiceIsSearchedOnce) {
  Rest_desk desk(MISSED("b", 60, 60) + "##x *a1 10 * \r\n");
  desk.set_list("words/one.txt &/two.txt &/two.txt ", 3);
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 b2 b2 ");
  EXPECT_EQ(desk.lesson(1), BOTH({"b60"}, DOWN("a", 49, 31)));
}

TEST(CompleteWorst, TheRecordIsAppendedAndTheStorageTakesOver) {
  Rest_desk desk(WORD("b", HISTORY(2, 60, 2001, 2002), HISTORY(3, 4, 2003, 2004)));
  desk.lesson(1);
  // a30, in storage 1, left.
  const Trf_posit &t = desk.table;
  EXPECT_EQ(desk.storage_of("b"), 1);
  EXPECT_EQ(t.QRord_posit[1], 1);
  EXPECT_EQ(t.QRcum_nb[1], 2);
  EXPECT_EQ(t.QRcum_nok0[1], 60);
  EXPECT_EQ(t.QR_date_ok[1], 2001);
  EXPECT_EQ(t.QR_date_nok[1], 2002);
  EXPECT_EQ(t.RQcum_nb0[1], 3);
  EXPECT_EQ(t.RQcum_nok[1], 4);
  EXPECT_EQ(t.RQ_date_ok[1], 2003);
  EXPECT_EQ(t.RQ_date_nok[1], 2004);
  EXPECT_EQ(t.QRcum_err[1], 60 - 2 + 19);
  // The R->Q score is still that of a30, which was never asked.
  EXPECT_EQ(t.RQcum_err[1], -1);
  std::string gene = desk.dir.read("idx2_gene");
  size_t record = gene.find("#b *a1 10 * \n ./IDX1/idx1_two.txt * ");
  EXPECT_EQ((long)record, t.posit[1]);
  EXPECT_GT(record, gene.find("#a49"));
}

TEST(CompleteWorst, AnEntryThatLeavesKeepsItsRecordInTheFile) {
  Rest_desk desk(MISSED("b", 60, 60));
  desk.lesson(1);
  EXPECT_NE(desk.dir.read("idx2_gene").find("#a30 *"), std::string::npos);
}

TEST(CompleteWorst, SearchesByTheKeysOfTheCode) {
  std::string two = MISSED("old", 1, 1, 500) + MISSED("late", 2, 2, 5) + MISSED("often", 60, 60);
  EXPECT_EQ(Rest_desk(two).lesson(1), BOTH({"often60"}, DOWN("a", 49, 31)));
  // All of dictionary 1 is of one age, so that their scores rank them behind it.
  EXPECT_EQ(Rest_desk(two).lesson(2), BOTH(BOTH({"often60"}, DOWN("a", 49, 32)), {"old1"}));
  EXPECT_EQ(Rest_desk(two).lesson(3), BOTH(BOTH({"often60"}, DOWN("a", 49, 32)), {"late2"}));
  EXPECT_EQ(Rest_desk(two).lesson(4), BOTH({"often60"}, DOWN("a", 49, 31)));
  EXPECT_EQ(Rest_desk(two).lesson(5), BOTH(DOWN("a", 47, 30), {"late2", "old1"}));
}

TEST(CompleteWorst, CodeFiveRejectsWhatReachesTheBoundOfTheFirstCollection) {
  // The bound is 10 above 49. Beyond it the first key would be negative, the heaviest of all.
  std::string two = MISSED("b", 58, 61) + MISSED("b", 900, 900);
  EXPECT_EQ(Rest_desk(two).lesson(5), DOWN("a", 49, 30));
}

TEST(CompleteWorst, TheBoundCountsThoseThatDidNotStay) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 20) + MISSED("a", 500, 500));
  WORST_WORDS_LESSON(5, &desk.book);
  // 510 is the bound: an entry of 509 answers is a candidate, and counted as one.
  desk.write_idx1("two.txt", MISSED("b", 509, 511) + "#x *a1 10 * \r\n");
  FILE *fp_gene = fopen("idx2_gene", "a");
  ENDS_WITH_STATUS(COMPLETE_WORST_LESSON(5, 1, fp_gene, &desk.book), 2, "values icont=2 stop ");
  fclose(fp_gene);
}

// No lesson was composed of these entries, so none has left a bound that counts them.
TEST(CompleteWorst, TheBoundCountsTheEntriesOfATableThatWasFilledElsewhere) {
  Worst_desk desk;
  const Trf_side side = SIDE_OF_TABLE(1, &desk.table);
  desk.table.nb_posit = 2;
  for (int i : {1, 2}) {
    side.ord[i] = i;
    side.nok[i] = 8000 + i;
    side.date_nok[i] = TODAY - 100;
    side.cum_err[i] = SCORE_OF_MISSES(8000 + i);
  }
  // The bound is 8012.
  desk.words("two.txt", MISSED("b", 8012, 8013) + MISSED("b", 30, 30));
  FILE *fp_gene = fopen("idx2_gene", "w");
  COMPLETE_WORST_LESSON(5, 1, fp_gene, &desk.book);
  fclose(fp_gene);
  EXPECT_EQ(ENTRIES_OF(side.ord, 2), (std::vector<int>{2, 1}));
  EXPECT_EQ(side.nok[2], 30);
  EXPECT_EQ(side.nok[1], 8001);
}

TEST(CompleteWorst, CallsOfTheCodesBeforeTheFifthHaveNoBound) {
  EXPECT_EQ(Rest_desk(MISSED("b", 900, 900)).lesson(4), BOTH({"b900"}, DOWN("a", 49, 31)));
}

TEST(CompleteWorst, AnUnknownCodeIsToldAndNothingIsSearched) {
  Rest_desk desk(MISSED("b", 60, 60));
  desk.lesson(1);
  std::vector<std::string> before = desk.ranking(1);
  desk.words("two.txt", MISSED("b", 99, 99));
  FILE *fp_gene = fopen("idx2_gene", "a");
  testing::internal::CaptureStdout();
  COMPLETE_WORST_LESSON(7, 1, fp_gene, &desk.book);
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "WORST_WORD_LESSON code 7 is unknown \n");
  fclose(fp_gene);
  EXPECT_EQ(desk.ranking(1), before);
}

TEST(CompleteWorst, SearchesOnlyTheDictionariesAfterTheOneGiven) {
  Rest_desk desk("");
  desk.lesson(1);
  desk.words("two.txt", MISSED("b", 99, 99));
  desk.words("three.txt", MISSED("c", 98, 98));
  FILE *fp_gene = fopen("idx2_gene", "a");
  COMPLETE_WORST_LESSON(1, 2, fp_gene, &desk.book);
  fclose(fp_gene);
  EXPECT_EQ(desk.ranking(1), BOTH({"c98"}, DOWN("a", 49, 31)));
}

TEST(CompleteWorst, ResponseToQuestionPutsTheCandidateIntoItsOwnOrdering) {
  Worst_desk desk;
  desk.book.sens_qr = 2;
  std::string records;
  for (int i = 1; i <= 20; i++)
    records += WORD("a" + std::to_string(i), NEVER(), HISTORY(0, i, 0, 2000));
  desk.words("one.txt", records);
  desk.words("two.txt", WORD("b", HISTORY(0, 7, 0, 2000), HISTORY(0, 30, 0, 2000)));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(2), BOTH({"b"}, DOWN("a", 20, 2)));
  EXPECT_EQ(desk.table.RQcum_err[1], SCORE_OF_MISSES(30));
  EXPECT_EQ(desk.table.QRcum_err[1], -1);
}

TEST(CompleteWorst, ADamagedLineIsLoggedUnderTheNameOfTheBuilder) {
  std::string damaged = HISTORY(0, 60, 0, 2000);
  damaged[12] = ',';
  Rest_desk desk(WORD("b", damaged, NEVER()));
  EXPECT_EQ(desk.lesson(1), BOTH({"b"}, DOWN("a", 49, 31)));
  EXPECT_NE(desk.log().find(
                "WORST_WORDS_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_two.txt \n"),
            std::string::npos);
}

TEST(CompleteWorst, EndsTheProgramAsTheCollectionDoes) {
  Rest_desk desk("");
  desk.dir.write("IDX1/idx1_two.txt", "no header\r\n");
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt \n");
  // Dropped or not, a candidate is counted; the one never asked is none.
  std::string before = MISSED("b", 1, 1) + WORD("never", NEVER(), NEVER()) + MISSED("b", 90, 90);
  desk.write_idx1("two.txt", before + "#x *a1 10 * \r\n");
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 2,
                   "values icont=3 stop \nin file : ./IDX1/idx1_two.txt \n");
  desk.write_idx1("two.txt", before + "#x *a1 10 * \r\n" + NEVER());
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 3,
                   "values icont=3 stop \nin file : ./IDX1/idx1_two.txt \n");
}

TEST(CompleteWorst, EndsTheProgramAtACountThatIsVerifiedAsTooLarge) {
  Rest_desk desk(MISSED("b", 10001, 10001));
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 1, "VERIF_LESSON error 1 ");
}

} // namespace
