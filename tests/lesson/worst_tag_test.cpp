// The lesson of the worst words with a tag, and the search that completes it.
#include <gtest/gtest.h>

#include "lesson/tag_lessons.h"
#include "lesson/worst_desk.h"

namespace {

struct Tag_desk : Worst_desk {
  void lesson(const std::string &tag) {
    std::string ss_tag = tag;
    WORST_TAG_LESSON(ss_tag.data(), &book);
    expect_ended();
  }
  void complete(const std::string &tag, int prev_lesson) {
    std::string ss_tag = tag;
    FILE *fp_gene = fopen("idx2_gene", "a");
    COMPLETE_TAG_LESSON(prev_lesson, fp_gene, ss_tag.data(), &book);
    fclose(fp_gene);
  }
};

const char *const VERBS = " verbs ";

std::string verbs(const std::string &prefix, int first, int last, long age = 100) {
  return MISSED(prefix, first, last, age, "verbs");
}

TEST(WorstTag, OnlyEntriesWithTheTagCount) {
  Tag_desk desk;
  desk.words("one.txt", verbs("v", 1, 2) + MISSED("n", 50, 51, 100, "nouns") + MISSED("u", 60, 60));
  desk.words("three.txt", MISSED("w", 3, 3, 100, "nouns verbs rare"));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"w3", "v2", "v1"}));
}

TEST(WorstTag, AnEmptyTagTakesTheEntriesWithoutTags) {
  Tag_desk desk;
  desk.words("one.txt",
             verbs("v", 1, 2) + MISSED("u", 60, 60) + MISSED("q", 61, 61, 100, "Q12 R3") +
                 MISSED("qt", 62, 62, 100, "Q12 verbs") + MISSED("qu", 63, 63, 100, "Quiet"));
  desk.lesson("");
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"q61", "u60"}));
}

TEST(WorstTag, AccentsInTheTagTextDoNotPreventAMatch) {
  Tag_desk desk;
  // "ete" with two acute accents; the lesson file keeps them.
  std::string summer = "\351t\351";
  desk.words("one.txt", MISSED("a", 1, 2, 100, summer));
  desk.lesson(" ete ");
  EXPECT_EQ(desk.ranking(1), DOWN("a", 2, 1));
  EXPECT_EQ(desk.dir.read("idx2_gene").rfind("#a1 *a1 10 * " + summer + "\n", 0), 0U);
}

TEST(WorstTag, ANameLineWithOneStarNeverEnters) {
  Tag_desk desk;
  desk.words("one.txt",
             "#x *a1 10 verbs \r\n" + HISTORY(0, 9, 0, 2000) + NEVER() + verbs("v", 1, 2));
  for (const char *tag : {VERBS, ""}) {
    desk.lesson(tag);
    EXPECT_EQ(desk.storage_of("x"), 0);
  }
}

TEST(WorstTag, WhatWasNeverAskedOrAnsweredTodayDoesNotCount) {
  Tag_desk desk;
  desk.words("one.txt", verbs("t", 9, 9, 0) +
                            WORD("k", HISTORY(1, 9, TODAY, 2000), NEVER(), "verbs") +
                            WORD("n", NEVER(), HISTORY(0, 9, 0, 2000), "verbs") + verbs("v", 1, 2));
  desk.words("two.txt", verbs("b", 1, 20));
  desk.words("three.txt", verbs("c", 90, 90, 0) + WORD("d", NEVER(), NEVER(), "verbs"));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(1), BOTH(DOWN("b", 20, 3), {"v2", "b2"}));
}

TEST(WorstTag, AWaitingDirectionIsAppliedFirst) {
  const int TURNS[][2] = {{1, 2}, {2, 1}, {0, 2}};
  for (auto turn : TURNS) {
    Tag_desk desk;
    desk.words("one.txt", WORD("qr1", HISTORY(0, 1, 0, 2000), NEVER(), "verbs") +
                              WORD("qr2", HISTORY(0, 2, 0, 2000), NEVER(), "verbs") +
                              WORD("rq1", NEVER(), HISTORY(0, 1, 0, 2000), "verbs") +
                              WORD("rq2", NEVER(), HISTORY(0, 2, 0, 2000), "verbs"));
    desk.book.toggle_sens_qr = 1;
    desk.book.sens_qr = turn[0];
    desk.lesson(VERBS);
    EXPECT_EQ(desk.book.toggle_sens_qr, 0);
    EXPECT_EQ(desk.book.sens_qr, turn[1]);
    EXPECT_EQ(desk.ranking(turn[1]), DOWN(turn[1] == 1 ? "qr" : "rq", 2, 1));
  }
}

TEST(WorstTag, ADirectionThatDoesNotWaitStays) {
  for (int toggle : {0, 2}) {
    Tag_desk desk;
    desk.book.toggle_sens_qr = toggle;
    desk.book.sens_qr = 2;
    desk.lesson(VERBS);
    EXPECT_EQ(desk.book.toggle_sens_qr, toggle);
    EXPECT_EQ(desk.book.sens_qr, 2);
  }
}

TEST(WorstTag, TheHighestScoresStayAndEqualOnesAsFound) {
  Tag_desk desk;
  // Age and misses do not rank here: the score alone does.
  desk.words("one.txt", verbs("a", 1, 12, 5) + verbs("b", 1, 12, 900));
  desk.lesson(VERBS);
  std::vector<std::string> expected;
  for (int i = 12; i >= 3; i--) {
    expected.push_back("a" + std::to_string(i));
    expected.push_back("b" + std::to_string(i));
  }
  EXPECT_EQ(desk.ranking(1), expected);
}

TEST(WorstTag, WholeDictionariesAreCollectedAndTheRestIsSearched) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 1, 12) + MISSED("x", 70, 90));
  desk.words("two.txt", verbs("b", 13, 27));
  desk.words("three.txt",
             verbs("c", 8, 8) + verbs("c", 10, 10) + MISSED("y", 70, 70) + verbs("c", 40, 40));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(1), BOTH(BOTH({"c40"}, DOWN("b", 27, 13)), {"a12", "a11", "a10", "c10"}));
}

TEST(WorstTag, ASingleCandidateIsNeitherSortedNorCompleted) {
  Tag_desk desk;
  // A count above 10000 would end the program where the lesson were verified.
  desk.words("two.txt", WORD("one", HISTORY(0, 10001, 0, 2000), HISTORY(1, 0, 1, 0), "verbs"));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"one"}));
  EXPECT_EQ(desk.ranking(2), (std::vector<std::string>{"one"}));
  EXPECT_EQ(desk.table.QRcum_err[1], 1018);
  EXPECT_GT(desk.table.RQcum_err[1], 0);
  EXPECT_EQ(desk.log(), "");
}

TEST(WorstTag, TheLogEndsWithTheScoresBeforeTheSearch) {
  Tag_desk desk;
  desk.book.ilesson = 2;
  desk.words("one.txt", verbs("a", 1, 20));
  desk.words("two.txt", verbs("b", 500, 520));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(1), DOWN("b", 520, 501));
  EXPECT_EQ(desk.log(), "WORST_TAG_LESSON sens_qr=1 err_sup=39 err_min=20 \n"
                        "VERIF_LESSON 2 DONE  nb_errors=0\n");
}

TEST(WorstTag, TheLessonNumberIsLeftAlone) {
  Tag_desk desk;
  desk.book.ilesson = 3;
  desk.words("one.txt", verbs("a", 1, 2));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.book.ilesson, 3);
}

TEST(WorstTag, TheLessonFileHasNoTrailer) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 1, 1));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.dir.read("idx2_gene").find("END_OF_FILE"), std::string::npos);
  EXPECT_NE(desk.dir.read("idx2_gene"), "");
}

TEST(WorstTag, NothingFoundLeavesTheNumberOfEntries) {
  for (int nb_before : {0, 40}) {
    Tag_desk desk;
    ALLOCATE_POSIT(60, &desk.table);
    desk.table.nb_posit = nb_before;
    desk.words("one.txt", MISSED("a", 1, 3));
    desk.lesson(VERBS);
    EXPECT_EQ(desk.table.nb_posit, nb_before);
    EXPECT_EQ(desk.log(), "");
  }
}

TEST(WorstTag, TheOtherOrderingIsSortedByTheScoresBesideIt) {
  Tag_desk desk;
  std::string records;
  for (int i = 1; i <= 21; i++)
    records +=
        WORD("w" + std::to_string(i), HISTORY(0, i, 0, 2000), HISTORY(0, 50 + i, 0, 2000), "verbs");
  desk.words("one.txt", records);
  desk.lesson(VERBS);
  EXPECT_EQ(desk.storage_of("w21"), 1);
  EXPECT_EQ(desk.ranking(2), BOTH(DOWN("w", 20, 2), {"w21"}));
}

TEST(WorstTag, ALessonFileThatCannotBeWrittenMakesAnEmptyLesson) {
  Tag_desk desk;
  desk.dir.write("idx2_gene/x", "");
  desk.words("one.txt", verbs("a", 1, 3));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.log(), "WORST_TAG_LESSON cannot open file ./idx2_gene \n");
}

TEST(WorstTag, ALessonFileThatCannotBeWrittenWholeMakesAnEmptyLesson) {
  for (rlim_t limit = 4200; limit < 4250; limit += 7) {
    Tag_desk desk;
    desk.words("one.txt", verbs("a", 1, 200));
    {
      File_limit full(limit);
      desk.lesson(VERBS);
    }
    EXPECT_EQ(desk.table.nb_posit, 0);
    EXPECT_NE(desk.log().find("WORST_TAG_LESSON cannot open file ./idx2_gene \n"),
              std::string::npos);
  }
}

TEST(WorstTag, ADamagedLineIsLogged) {
  Tag_desk desk;
  std::string damaged = HISTORY(0, 5, 0, 2000);
  damaged[12] = ',';
  desk.words("one.txt", WORD("x", damaged, damaged, "verbs") + verbs("a", 1, 20));
  desk.words("two.txt", WORD("y", NEVER(), damaged, "verbs"));
  desk.lesson(VERBS);
  std::string line = "WORST_TAG_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_";
  EXPECT_EQ(desk.log().rfind(line + "one.txt \n" + line + "one.txt \n" + line + "two.txt \n", 0),
            0U);
}

TEST(WorstTag, EndsTheProgramWithoutAHeader) {
  Tag_desk desk;
  desk.dir.write("IDX1/idx1_one.txt", "no header\r\n");
  ENDS_WITH_STATUS(desk.lesson(VERBS), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_one.txt \n");
  desk.words("one.txt", verbs("a", 1, 20));
  desk.dir.write("IDX1/idx1_two.txt", "no header\r\n");
  ENDS_WITH_STATUS(desk.lesson(VERBS), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt \n");
}

// The entries without the tag, and those that do not count, have no number.
TEST(WorstTag, EndsTheProgramAtAMissingLineOfAnEntryWithTheTag) {
  Tag_desk desk;
  std::string before = MISSED("n", 5, 9) + verbs("v", 1, 1) + WORD("x", NEVER(), NEVER(), "verbs");
  desk.write_idx1("one.txt", before + "#last *a1 10 * \r\n");
  desk.lesson(VERBS);
  EXPECT_EQ(desk.table.nb_posit, 1);
  std::string last = "#last *a1 10 * verbs\r\n";
  for (const char *name : {"one.txt", "two.txt"}) {
    desk.write_idx1(name, before + last);
    std::string where = std::string("values icont=2 stop \nin file : ./IDX1/idx1_") + name + " \n";
    ENDS_WITH_STATUS(desk.lesson(VERBS), 2, where);
    desk.write_idx1(name, before + last + NEVER());
    ENDS_WITH_STATUS(desk.lesson(VERBS), 3, where);
    desk.words("one.txt", verbs("a", 1, 20)); // dictionary 2 is then searched
  }
}

TEST(WorstTag, EndsTheProgramAtACountThatIsVerifiedAsTooLarge) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 10001, 10002));
  ENDS_WITH_STATUS(desk.lesson(VERBS), 1, "VERIF_LESSON error 1 ");
}

// Twenty verbs a30 to a49 in dictionary 1; the lesson after dictionary 2 was searched.
std::vector<std::string> completed(const std::string &two) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 30, 49));
  desk.words("two.txt", two);
  desk.lesson(VERBS);
  EXPECT_EQ(desk.table.nb_posit, 20);
  return desk.ranking(1);
}

TEST(CompleteTag, AScoreAsHighAsTheLastIsNotEnough) {
  EXPECT_EQ(completed(verbs("b", 30, 30, 900)), DOWN("a", 49, 30));
  EXPECT_EQ(completed(verbs("b", 31, 31)), BOTH(DOWN("a", 49, 31), {"b31"}));
}

TEST(CompleteTag, ACandidateGoesBehindAllThatScoreAsHigh) {
  EXPECT_EQ(completed(verbs("b", 49, 49)), BOTH({"a49", "b49"}, DOWN("a", 48, 31)));
  EXPECT_EQ(completed(verbs("b", 40, 40)),
            BOTH(BOTH(DOWN("a", 49, 40), {"b40"}), DOWN("a", 39, 31)));
}

TEST(CompleteTag, AHigherScoreThanTheFirstTakesTheFirstRank) {
  EXPECT_EQ(completed(verbs("b", 50, 50)), BOTH({"b50"}, DOWN("a", 49, 31)));
}

TEST(CompleteTag, TheLastScoreIsTakenAgainAfterEachCandidate) {
  // b40 pushes a30 out; b31 then only equals the last.
  EXPECT_EQ(completed(verbs("b", 40, 40) + verbs("b", 31, 31)),
            BOTH(BOTH(DOWN("a", 49, 40), {"b40"}), DOWN("a", 39, 31)));
}

TEST(CompleteTag, TheFirstScoreIsTakenAgainAfterEachCandidate) {
  EXPECT_EQ(completed(verbs("b", 60, 60) + verbs("c", 55, 55)),
            BOTH({"b60", "c55"}, DOWN("a", 49, 32)));
}

TEST(CompleteTag, TheRecordIsAppendedAndTheStorageTakesOver) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 30, 49));
  desk.words("two.txt", WORD("b", HISTORY(2, 60, 2001, 2002), HISTORY(3, 4, 2003, 2004), "verbs"));
  desk.lesson(VERBS);
  const Trf_posit &t = desk.table;
  EXPECT_EQ(desk.storage_of("b"), 1);
  EXPECT_EQ(t.QRcum_err[1], 60 - 2 + 19);
  EXPECT_EQ(t.RQcum_err[1], -1);
  EXPECT_EQ(t.QRcum_nok[1], 60);
  EXPECT_EQ(t.QR_date_nok[1], 2002);
  EXPECT_EQ(t.RQcum_nb0[1], 3);
  EXPECT_EQ(t.RQ_date_ok[1], 2003);
  EXPECT_EQ((long)desk.dir.read("idx2_gene").find("#b *a1 10 * verbs\n ./IDX1/idx1_two.txt * "),
            t.posit[1]);
}

TEST(CompleteTag, SearchesOnlyTheDictionariesAfterTheOneGiven) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 1, 20));
  desk.lesson(VERBS);
  desk.words("two.txt", verbs("b", 99, 99));
  desk.words("three.txt", verbs("c", 98, 98) + MISSED("d", 97, 97));
  desk.complete(VERBS, 2);
  EXPECT_EQ(desk.ranking(1), BOTH({"c98"}, DOWN("a", 20, 2)));
}

TEST(CompleteTag, ResponseToQuestionPutsTheCandidateIntoItsOwnOrdering) {
  Tag_desk desk;
  desk.book.sens_qr = 2;
  std::string records;
  for (int i = 1; i <= 20; i++)
    records += WORD("a" + std::to_string(i), NEVER(), HISTORY(0, i, 0, 2000), "verbs");
  desk.words("one.txt", records);
  desk.words("two.txt", WORD("b", HISTORY(0, 7, 0, 2000), HISTORY(0, 30, 0, 2000), "verbs") +
                            WORD("c", HISTORY(0, 90, 0, 2000), NEVER(), "verbs"));
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(2), BOTH({"b"}, DOWN("a", 20, 2)));
  EXPECT_EQ(desk.table.RQcum_err[1], SCORE_OF_MISSES(30));
  EXPECT_EQ(desk.table.QRcum_err[1], -1);
}

// How often a text stands in another.
int nb_found(const std::string &text, const std::string &in) {
  int nb = 0;
  for (size_t at = in.find(text); at != std::string::npos; at = in.find(text, at + 1))
    nb++;
  return nb;
}

TEST(CompleteTag, TheRankingIsListedAsTraceBeforeEachAdmittedCandidate) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 30, 49));
  desk.words("two.txt", verbs("b", 60, 60) + verbs("c", 2, 9) + verbs("d", 55, 55));
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  desk.lesson(VERBS);
  fflush(stdout);
  unsetenv("MERTU_TRACE");
  std::string trace = testing::internal::GetCapturedStdout();
  EXPECT_EQ(nb_found("SORT_COMPLETE err_sup=", trace), 2);
  EXPECT_EQ(nb_found("SORT_COMPLETE err_sup=68 err_min=49 nb_words=20 \n", trace), 1);
  EXPECT_EQ(nb_found("SORT_COMPLETE err_sup=79 err_min=50 nb_words=20 \n", trace), 1);
}

TEST(CompleteTag, ADictionaryRegisteredTwiceIsSearchedOnce) {
  Tag_desk desk;
  desk.set_list("words/one.txt &/two.txt &/two.txt ", 3);
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 b2 b2 ");
  desk.words("one.txt", verbs("a", 1, 20));
  desk.words("two.txt", verbs("b", 60, 60) + "##x *a1 10 * verbs\r\n");
  desk.lesson(VERBS);
  EXPECT_EQ(desk.ranking(1), BOTH({"b60"}, DOWN("a", 20, 2)));
}

std::string sort_complete_output(Trf_posit *table, Trf_book *book) {
  testing::internal::CaptureStdout();
  SORT_COMPLETE(9, 5, table->nb_posit, table->QRord_posit, table->QRcum_err, book);
  fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

TEST(SortComplete, ListsTheRankingAsTraceAndChangesNothing) {
  Tag_desk desk;
  desk.words("one.txt", verbs("a", 1, 2));
  desk.lesson(VERBS);
  EXPECT_EQ(sort_complete_output(&desk.table, &desk.book), "");
  std::vector<std::string> before = desk.ranking(1);
  setenv("MERTU_TRACE", "1", 1);
  std::string listing = sort_complete_output(&desk.table, &desk.book);
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(listing.rfind("SORT_COMPLETE err_sup=9 err_min=5 nb_words=2 \n", 0), 0U);
  size_t first = listing.find("rank=1 elem=2 err=21 ");
  EXPECT_NE(first, std::string::npos);
  EXPECT_LT(first, listing.find("rank=2 elem=1 err=20 "));
  EXPECT_EQ(desk.ranking(1), before);
}

} // namespace
