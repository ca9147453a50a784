// The lesson of the worst words: what is collected, which twenty stay, and in what order.
#include "lesson/worst_words.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "lesson/worst_desk.h"
#include "score/check_order.h"

namespace {

const char *const VERIFIED = "VERIF_LESSON 0 DONE  nb_errors=0\n";

TEST(WorstWords, TwelveAndFifteenAreBothReadWholeAndTheThirdDictionaryIsSearched) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 12));
  desk.words("two.txt", MISSED("b", 13, 27));
  desk.words("three.txt", MISSED("c", 5, 5) + MISSED("c", 10, 10) + MISSED("c", 40, 40));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), BOTH(BOTH({"c40"}, DOWN("b", 27, 13)), {"a12", "a11", "a10", "c10"}));
  EXPECT_NE(desk.log().find("before limit number nb_words=27 sens_qr=1  \n"), std::string::npos);
  desk.expect_ended();
}

TEST(WorstWords, FewerThanTwentyAreAllKeptAndNothingIsSearched) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 7));
  desk.words("two.txt", MISSED("b", 8, 9));
  desk.words("three.txt", MISSED("c", 10, 19));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), BOTH(BOTH(DOWN("c", 19, 10), DOWN("b", 9, 8)), DOWN("a", 7, 1)));
  desk.expect_ended();
}

TEST(WorstWords, ADictionaryIsNotBegunOnceTwentyAreHeld) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 20));
  desk.words("two.txt", MISSED("b", 1, 5));
  WORST_WORDS_LESSON(0, &desk.book);
  EXPECT_EQ(desk.ranking(1), UP("a", 1, 20));
}

TEST(WorstWords, WhatWasAnsweredTodayInThisDirectionNeverEnters) {
  Worst_desk desk;
  std::string today_missed = WORD("missed", HISTORY(0, 90, 0, TODAY), NEVER());
  std::string today_known = WORD("known", HISTORY(1, 90, TODAY, TODAY - 9), NEVER());
  std::string other_today = WORD("other", HISTORY(0, 2, 0, TODAY - 1), HISTORY(1, 0, TODAY, 0));
  desk.words("one.txt", today_missed + today_known + other_today + MISSED("a", 1, 1));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"other", "a1"}));
}

TEST(WorstWords, WhatWasAnsweredTodayIsNotFoundInTheSearchEither) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 20));
  desk.words("two.txt", MISSED("b", 90, 90, 0) + WORD("never", NEVER(), HISTORY(0, 9, 0, 5)));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), DOWN("a", 20, 1));
}

TEST(WorstWords, NeverAskedAndBorrowedEntriesDoNotCount) {
  Worst_desk desk;
  desk.words("one.txt",
             WORD("never", NEVER(), HISTORY(0, 9, 0, 2000)) + "##b1 *b2 \r\n" + MISSED("a", 2, 2));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"a2"}));
}

TEST(WorstWords, ResponseToQuestionLooksAtTheOtherHistory) {
  Worst_desk desk;
  desk.book.sens_qr = 2;
  desk.words("one.txt", WORD("x", HISTORY(0, 9, 0, TODAY), HISTORY(0, 1, 0, 2000)) +
                            WORD("y", HISTORY(0, 9, 0, 2000), HISTORY(0, 9, 0, TODAY)) +
                            WORD("z", NEVER(), HISTORY(0, 2, 0, 2000)));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(2), (std::vector<std::string>{"z", "x"}));
  // Never asked goes before all that was asked.
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"z", "x"}));
  EXPECT_EQ(desk.table.QRcum_err[2], -1);
  EXPECT_EQ(desk.table.RQcum_err[1], SCORE_OF_MISSES(1));
}

// Words of one score, the i-th answered i days ago.
std::string aged(int first, int last) {
  std::string records;
  for (int i = first; i <= last; i++)
    records += MISSED("age" + std::to_string(i) + "_", 1, 1, i);
  return records;
}

std::vector<std::string> ages(int from, int to) {
  std::vector<std::string> names = from < to ? UP("age", from, to) : DOWN("age", from, to);
  for (std::string &name : names)
    name += "_1";
  return names;
}

// Words of one score, the i-th known i times and missed i + 3 times.
std::string answered(int first, int last) {
  std::string records;
  for (int i = first; i <= last; i++)
    records += WORD("n" + std::to_string(i), HISTORY(i, i + 3, 2000, 2001), NEVER());
  return records;
}

std::vector<std::string> chosen(int code, const std::string &records) {
  Worst_desk desk;
  desk.words("one.txt", records);
  WORST_WORDS_LESSON(code, &desk.book);
  EXPECT_EQ(desk.table.QRcum_err[1], desk.table.QRcum_err[20]);
  return desk.ranking(1);
}

TEST(WorstWords, CodeOneTakesTheHighestScoresThenMissesThenAge) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 22));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), DOWN("a", 22, 3));
  EXPECT_EQ(chosen(1, answered(1, 22)), DOWN("n", 22, 3));
  EXPECT_EQ(chosen(1, aged(1, 22)), ages(22, 3));
}

TEST(WorstWords, CodeTwoTakesTheLongestUnanswered) {
  EXPECT_EQ(chosen(2, aged(1, 22)), ages(22, 3));
}

TEST(WorstWords, CodeThreeTakesTheMostLatelyAnswered) {
  EXPECT_EQ(chosen(3, aged(1, 22)), ages(1, 20));
}

TEST(WorstWords, CodeFourTakesTheMostOftenMissed) {
  EXPECT_EQ(chosen(4, answered(1, 22)), DOWN("n", 22, 3));
}

TEST(WorstWords, CodeFiveTakesTheLeastOftenAnswered) {
  EXPECT_EQ(chosen(5, answered(1, 22)), UP("n", 1, 20));
}

TEST(WorstWords, WhatIsEqualInAllKeysStaysInTheOrderOfTheFiles) {
  std::string records;
  for (int i = 1; i <= 22; i++)
    records += WORD("w" + std::to_string(i), HISTORY(1, 1, 2000, 2001), NEVER());
  for (int code = 1; code <= 5; code++)
    EXPECT_EQ(chosen(code, records), UP("w", 1, 20)) << code;
}

TEST(WorstWords, TheCodeChoosesTheEntriesAndTheScoreTheirOrder) {
  Worst_desk desk;
  std::string records;
  // The higher the score, the shorter the age: the two highest scores are not chosen.
  for (int i = 1; i <= 22; i++)
    records += MISSED("a", i, i, 1000 - 10 * i);
  desk.words("one.txt", records);
  WORST_WORDS_LESSON(2, &desk.book);
  EXPECT_EQ(desk.ranking(1), DOWN("a", 20, 1));
  testing::internal::CaptureStdout();
  VERIF_CLASSMENT(&desk.book);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "VERIF_CLASSMENT two senses OK \n");
}

TEST(WorstWords, TheOtherOrderingIsSortedByTheScoresBesideIt) {
  Worst_desk desk;
  std::string records;
  for (int i = 1; i <= 21; i++)
    records += WORD("w" + std::to_string(i), HISTORY(0, i, 0, 2000), HISTORY(0, 50 + i, 0, 2000));
  desk.words("one.txt", records);
  WORST_WORDS_LESSON(1, &desk.book);
  // w21 lives in the storage of w1, with the R->Q score of w1.
  EXPECT_EQ(desk.storage_of("w21"), 1);
  EXPECT_EQ(desk.table.RQcum_err[1], SCORE_OF_MISSES(51));
  EXPECT_EQ(desk.table.RQcum_nok[1], 71);
  EXPECT_EQ(desk.ranking(2), BOTH(DOWN("w", 20, 2), {"w21"}));
}

TEST(WorstWords, AnUnknownCodeKeepsEveryCandidateInTheOrderOfCollection) {
  for (int code : {0, 6}) {
    Worst_desk desk;
    desk.words("one.txt", MISSED("a", 1, 12));
    desk.words("two.txt", MISSED("b", 1, 15));
    desk.words("three.txt", MISSED("c", 90, 95));
    testing::internal::CaptureStdout();
    WORST_WORDS_LESSON(code, &desk.book);
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WORST_WORD_LESSON code " + std::to_string(code) + " is unknown \n");
    for (int sens : {1, 2})
      EXPECT_EQ(desk.ranking(sens), BOTH(UP("a", 1, 12), UP("b", 1, 15)));
    EXPECT_EQ(desk.table.QRcum_err[3], SCORE_OF_MISSES(3));
    EXPECT_EQ(desk.log(), "enter WORST_WORDS_LESSON  code_worst=" + std::to_string(code) +
                              " \nWORST_WORDS_LESSON before MERGESORT_3ERR sens_qr=1  \n" +
                              VERIFIED);
    desk.expect_ended();
  }
}

TEST(WorstWords, NothingFoundLeavesTheNumberOfEntries) {
  for (int nb_before : {0, 60}) {
    Worst_desk desk;
    ALLOCATE_POSIT(80, &desk.table);
    desk.table.nb_posit = nb_before;
    desk.book.ilesson = 2;
    WORST_WORDS_LESSON(1, &desk.book);
    EXPECT_EQ(desk.table.nb_posit, nb_before);
    EXPECT_EQ(desk.book.ilesson, 0);
    EXPECT_EQ(desk.dir.read("idx2_gene"), "");
    EXPECT_EQ(desk.log(), "enter WORST_WORDS_LESSON  code_worst=1 \n");
    desk.expect_ended();
  }
}

TEST(WorstWords, EachStageIsLoggedAndVerified) {
  Worst_desk desk;
  desk.book.ilesson = 3;
  desk.words("one.txt", MISSED("a", 4, 6));
  WORST_WORDS_LESSON(3, &desk.book);
  std::string stages;
  for (const char *stage :
       {"enter WORST_WORDS_LESSON  code_worst=3 \nWORST_WORDS_LESSON before MERGESORT_3ERR "
        "sens_qr=1  \n",
        "WORST_WORDS_LESSON before limit number nb_words=3 sens_qr=1  \n",
        "WORST_WORDS_LESSON after limit number sens_qr=1  \n",
        "WORST_WORDS_LESSON after COMPLETE_WORST_LESSON sens_qr=1  \n",
        "WORST_WORDS_LESSON sens_qr=1 err_sup=25 err_min=23 \n"})
    stages += std::string(stage) + VERIFIED;
  EXPECT_EQ(desk.log(), stages);
  EXPECT_EQ(desk.book.ilesson, 0);
}

TEST(WorstWords, TheScoresLoggedAreThoseBeforeTheSearchInTheOrderOfTheCode) {
  Worst_desk desk;
  std::string records;
  for (int i = 1; i <= 20; i++)
    records += MISSED("a", i, i, 100 + i % 20);
  desk.words("one.txt", records);
  desk.words("two.txt", MISSED("b", 500, 500, 400));
  WORST_WORDS_LESSON(2, &desk.book);
  EXPECT_EQ(desk.ranking(1)[0], "b500");
  // The oldest is the 19th, the youngest the 20th, which has the highest score.
  EXPECT_NE(desk.log().find("err_sup=" + std::to_string(SCORE_OF_MISSES(19)) +
                            " err_min=" + std::to_string(SCORE_OF_MISSES(20)) + " \n"),
            std::string::npos);
}

TEST(WorstWords, TheLessonFileHasNoTrailer) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 1));
  WORST_WORDS_LESSON(1, &desk.book);
  std::string name = "#a1 *a1 10 * ";
  size_t history = HEADER("./IDX1/idx1_one.txt", "a1").size() + name.size() + 2;
  EXPECT_EQ(desk.dir.read("idx2_gene"),
            name + "\n ./IDX1/idx1_one.txt * " + std::to_string(history) + " \n");
}

TEST(WorstWords, TheTableHoldsMoreThanItsFirstCapacity) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 19));
  desk.words("two.txt", MISSED("b", 20, 200));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), DOWN("b", 200, 181));
  desk.expect_ended();
}

TEST(WorstWords, ADictionaryRegisteredTwiceIsVisitedOnce) {
  Worst_desk desk;
  desk.set_list("words/one.txt words/one.txt three.txt ", 3);
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 a1 c3 ");
  desk.words("one.txt", MISSED("a", 1, 3));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), DOWN("a", 3, 1));
}

TEST(WorstWords, AnIndexThatCannotBeOpenedIsSkippedAndLogged) {
  Worst_desk desk;
  unlink("IDX1/idx1_one.txt");
  desk.words("two.txt", MISSED("b", 1, 20));
  unlink("IDX1/idx1_three.txt");
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), DOWN("b", 20, 1));
  for (const char *name : {"one", "three"})
    EXPECT_NE(
        desk.log().find(std::string("cannot open file ./IDX1/idx1_") + name + ".txt, skipped \n"),
        std::string::npos);
}

TEST(WorstWords, ALessonFileThatCannotBeWrittenMakesAnEmptyLesson) {
  Worst_desk desk;
  desk.dir.write("idx2_gene/x", "");
  desk.words("one.txt", MISSED("a", 1, 3));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.table.nb_posit, 0);
  desk.expect_ended();
}

// Cut in the middle of a record, in its name line, in its path or in its offset.
TEST(WorstWords, ALessonFileThatCannotBeWrittenWholeMakesAnEmptyLesson) {
  for (rlim_t limit = 4200; limit < 4250; limit += 7) {
    Worst_desk desk;
    desk.words("one.txt", MISSED("a", 1, 200));
    {
      File_limit full(limit);
      WORST_WORDS_LESSON(1, &desk.book);
    }
    EXPECT_EQ(desk.table.nb_posit, 0);
    EXPECT_EQ(desk.log(), "enter WORST_WORDS_LESSON  code_worst=1 \n"
                          "WORST_WORDS_LESSON before MERGESORT_3ERR sens_qr=1  \n"
                          "WORST_WORDS_LESSON cannot open file ./idx2_gene \n");
    desk.expect_ended();
  }
}

TEST(WorstWords, ARecordOfTheSearchThatCannotBeWrittenMakesAnEmptyLesson) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 20));
  desk.words("two.txt", MISSED("b", 21, 200));
  {
    File_limit full(4200);
    WORST_WORDS_LESSON(1, &desk.book);
  }
  EXPECT_EQ(desk.table.nb_posit, 0);
  std::string end = "WORST_WORDS_LESSON after COMPLETE_WORST_LESSON sens_qr=1  \n"
                    "WORST_WORDS_LESSON cannot open file ./idx2_gene \n";
  EXPECT_EQ(desk.log().substr(desk.log().size() - end.size()), end);
  desk.expect_ended();
}

TEST(WorstWords, ADamagedLineIsLoggedAndUsedAsCorrected) {
  Worst_desk desk;
  std::string damaged = HISTORY(0, 5, 0, 2000);
  damaged[12] = ',';
  desk.words("one.txt", WORD("x", damaged, damaged) + MISSED("a", 1, 1));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.ranking(1), (std::vector<std::string>{"x", "a1"}));
  std::string line =
      "WORST_WORDS_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_one.txt \n";
  EXPECT_NE(desk.log().find(line + line), std::string::npos);
}

TEST(WorstWords, EndsTheProgramWithoutAHeader) {
  Worst_desk desk;
  desk.dir.write("IDX1/idx1_two.txt", "no header\r\n");
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt \n");
  EXPECT_NE(desk.log().find("Error no detection of ####### stop \nn file : "), std::string::npos);
}

TEST(WorstWords, EndsTheProgramAtAMissingLineWithTheNumberWithinTheDictionary) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 1, 4));
  std::string before = MISSED("b", 1, 1) + WORD("never", NEVER(), NEVER()) + MISSED("b", 2, 2);
  std::string at_end = "#last *a1 10 * \r\n";
  desk.write_idx1("two.txt", before + at_end);
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 2,
                   "Error no detection of values icont=3 stop \nin file : "
                   "./IDX1/idx1_two.txt \n");
  desk.write_idx1("two.txt", before + at_end + NEVER());
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 3,
                   "Error no detection of values icont=3 stop \nin file : "
                   "./IDX1/idx1_two.txt \n");
  EXPECT_NE(desk.log().find("icont=3 stop \nin file : ./IDX1/idx1_two.txt \n"), std::string::npos);
}

TEST(WorstWords, EndsTheProgramAtACountThatIsVerifiedAsTooLarge) {
  Worst_desk desk;
  desk.words("one.txt", MISSED("a", 10001, 10001));
  ENDS_WITH_STATUS(WORST_WORDS_LESSON(1, &desk.book), 1, "VERIF_LESSON error 1 ");
  desk.words("one.txt", MISSED("a", 10000, 10000));
  WORST_WORDS_LESSON(1, &desk.book);
  EXPECT_EQ(desk.table.nb_posit, 1);
}

} // namespace
