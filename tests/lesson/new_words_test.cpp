// Lessons of new words and of words asked one way only.
#include "lesson/new_words.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "db/record_lesson.h"
#include "lesson/composed_desk.h"

namespace {

using Questions = std::vector<std::string>;

const std::string KNOWN = HISTORY(2, 0, 2900, 0);
const std::string MISSED = HISTORY(0, 1, 0, 2900);

// The questions of the lesson out of these entries of the first dictionary.
Questions composed_of(int sens, const std::string &records, void (*builder)(Trf_book *)) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", records + TRAILER());
  desk.book.sens_qr = sens;
  builder(&desk.book);
  EXPECT_EQ((size_t)desk.table.nb_posit, desk.questions().size());
  return desk.questions();
}

// An entry of each kind, named by how it was asked: never, Q->R, R->Q, both ways.
std::string each_kind() {
  return RECORD_OF("never", NEVER(), NEVER()) + RECORD_OF("qr", KNOWN, NEVER()) +
         RECORD_OF("rq", NEVER(), KNOWN) + RECORD_OF("both", KNOWN, KNOWN) +
         RECORD_OF("qrmissed", MISSED, NEVER()) + RECORD_OF("rqmissed", NEVER(), MISSED);
}

TEST(NewWords, TakesTheFifteenOfTheFirstFiveOfTheSecondAndDoesNotOpenTheThird) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 15) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 10) + TRAILER());
  desk.dir.write("IDX1/idx1_three.txt", "opened, this would end the program");
  NEW_WORDS_LESSON(&desk.book);
  Questions questions = desk.questions();
  ASSERT_EQ(questions.size(), 20U);
  EXPECT_EQ(desk.table.nb_posit, 20);
  EXPECT_EQ(questions[14], "one15 ");
  EXPECT_EQ(questions[15], "two1 ");
  EXPECT_EQ(questions[19], "two5 ");
  EXPECT_EQ(desk.log(), "NEW_WORDS_LESSON done\n");
}

TEST(NewWords, ALessonThatCannotBeWrittenIsNotDone) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 3) + TRAILER());
  ASSERT_EQ(symlink("/dev/full", "idx2_gene"), 0);
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.log(), "NEW_WORDS_LESSON cannot open file ./idx2_gene \n");
}

TEST(NewWords, QuestionToResponseTakesWhatWasNeverAskedSo) {
  EXPECT_EQ(composed_of(1, each_kind(), NEW_WORDS_LESSON),
            (Questions{"never ", "rq ", "rqmissed "}));
}

TEST(NewWords, ResponseToQuestionTakesWhatWasNeverAskedSo) {
  EXPECT_EQ(composed_of(2, each_kind(), NEW_WORDS_LESSON),
            (Questions{"never ", "qr ", "qrmissed "}));
}

TEST(NewWords, AMissedEntryIsNotNew) {
  EXPECT_EQ(composed_of(1, RECORD_OF("missed", MISSED, NEVER()), NEW_WORDS_LESSON), Questions{});
  EXPECT_EQ(composed_of(2, RECORD_OF("missed", NEVER(), MISSED), NEW_WORDS_LESSON), Questions{});
}

TEST(NewWords, DoubleLinesNeverEnter) {
  EXPECT_EQ(
      composed_of(1, "##double *b2 \r\n" + RECORD_OF("new", NEVER(), NEVER()), NEW_WORDS_LESSON),
      Questions{"new "});
}

TEST(NewWords, StopsAtTwentyAndWritesItsTrailer) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 21) + "#cut, this would end the program\r\n");
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 20);
  EXPECT_EQ(desk.questions().back(), "one20 ");
  std::string gene = desk.gene();
  size_t trailer = gene.find("# END_OF_FILE");
  EXPECT_EQ(gene.substr(trailer), "# END_OF_FILE * " + std::to_string(trailer) + " \n");
}

TEST(NewWords, AnEmptyLessonHoldsTheTrailerWithOffsetZero) {
  Composed_desk desk;
  desk.write_empty();
  desk.table.nb_posit = 3;
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.table.nbmx_posit, 25);
  EXPECT_EQ(desk.gene(), "# END_OF_FILE * 0 \n");
  EXPECT_EQ(desk.log(), "NEW_WORDS_LESSON done\n");
  EXPECT_EQ(desk.table.QRord_posit[1], -1);
  EXPECT_EQ(desk.table.RQord_posit[1], -1);
}

TEST(NewWords, TracesTheDay) {
  Composed_desk desk;
  desk.write_empty();
  testing::internal::CaptureStdout();
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_THAT(testing::internal::GetCapturedStdout(),
              testing::HasSubstr(" Present numb of days since January 1 2001 = 3000 \n"));
  unsetenv("MERTU_TRACE");
}

TEST(NewWords, LeavesTheLessonNumberAndTheDirectionsAlone) {
  Composed_desk desk;
  desk.write_empty();
  desk.book.ilesson = 7;
  desk.book.toggle_sens_qr = 1;
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.book.ilesson, 7);
  EXPECT_EQ(desk.book.sens_qr, 1);
  EXPECT_EQ(desk.book.toggle_sens_qr, 1);
  EXPECT_EQ(desk.book.fp_gene, nullptr);
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
}

// Three new entries with histories the other way, the lightest first.
std::string light_to_heavy(int sens) {
  std::string records;
  for (const std::string &other :
       {HISTORY(9, 0, 2999, 0), HISTORY(1, 1, 2999, 2999), HISTORY(0, 7, 0, 2999)})
    records += RECORD_OF("mot", sens == 1 ? NEVER() : other, sens == 1 ? other : NEVER());
  return records;
}

TEST(NewWords, OnlyTheOtherDirectionIsSorted) {
  for (int sens : {1, 2}) {
    Composed_desk desk;
    desk.write_empty();
    desk.write_idx1("one.txt", light_to_heavy(sens) + TRAILER());
    desk.book.sens_qr = sens;
    NEW_WORDS_LESSON(&desk.book);
    Trf_side asked = SIDE_OF_TABLE(sens, &desk.table);
    Trf_side other = SIDE_OF_TABLE(3 - sens, &desk.table);
    EXPECT_EQ(ENTRIES_OF(asked.ord, 4), (std::vector<int>{1, 2, 3, -1}));
    EXPECT_EQ(ENTRIES_OF(asked.cum_err, 3), (std::vector<long>{-1, -1, -1}));
    EXPECT_EQ(ENTRIES_OF(other.ord, 4), (std::vector<int>{3, 2, 1, -1}));
    EXPECT_EQ(other.cum_err[3], FCT_ERROR(&desk.weights, 0, 7, 3000, 0, 2999));
  }
}

TEST(NewWords, TracesBothOrderingsAsSorted) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", light_to_heavy(1) + TRAILER());
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  NEW_WORDS_LESSON(&desk.book);
  unsetenv("MERTU_TRACE");
  std::string said = testing::internal::GetCapturedStdout();
  EXPECT_THAT(said, testing::HasSubstr("SORT_CLASSMENT QR rank=1 elem=1 err=-1 "));
  EXPECT_THAT(said, testing::HasSubstr("SORT_CLASSMENT RQ rank=1 elem=3 "));
}

// "kept" was known three times the other way; "passed", behind it, was asked both ways.
std::string kept_and_passed() {
  return RECORD_OF("kept", NEVER(), HISTORY(3, 0, 2900, 0)) +
         RECORD_OF("passed", KNOWN, HISTORY(4, 5, 2700, 2800));
}

TEST(NewWords, QuestionToResponseARejectedEntryLeavesItsOtherLineOnTheLastSelectedOne) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("first", NEVER(), HISTORY(6, 0, 2600, 0)) +
                                 kept_and_passed() + TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.questions(), (Questions{"first ", "kept "}));
  const Trf_posit &table = desk.table;
  EXPECT_EQ(ENTRIES_OF(table.RQcum_nb, 3), (std::vector<long>{6, 4, 0}));
  EXPECT_EQ(ENTRIES_OF(table.RQcum_nb0, 3), (std::vector<long>{6, 4, 0}));
  EXPECT_EQ(ENTRIES_OF(table.RQcum_nok, 3), (std::vector<long>{0, 5, 0}));
  EXPECT_EQ(ENTRIES_OF(table.RQcum_nok0, 3), (std::vector<long>{0, 5, 0}));
  EXPECT_EQ(ENTRIES_OF(table.RQ_date_ok, 3), (std::vector<long>{2600, 2700, 0}));
  EXPECT_EQ(ENTRIES_OF(table.RQ_date_nok, 3), (std::vector<long>{0, 2800, 0}));
  EXPECT_EQ(table.RQcum_err[2], FCT_ERROR(&desk.weights, 4, 5, 3000, 2700, 2800));
  EXPECT_EQ(ENTRIES_OF(table.RQord_posit, 3), (std::vector<int>{2, 1, -1}));
  EXPECT_EQ(ENTRIES_OF(table.QRcum_nb, 2), (std::vector<long>{0, 0}));
}

TEST(NewWords, TheOverwriteReachesTheEntryOfAnEarlierDictionary) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("kept", NEVER(), NEVER()) + TRAILER());
  desk.write_idx1("three.txt", RECORD_OF("passed", KNOWN, HISTORY(4, 5, 2700, 2800)) + TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 1);
  EXPECT_EQ(desk.table.RQcum_nb[1], 4);
}

TEST(NewWords, BeforeAnEntryIsSelectedTheOverwriteFallsOnElementZero) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("passed", KNOWN, HISTORY(4, 5, 2700, 2800)) +
                                 RECORD_OF("kept", NEVER(), HISTORY(3, 0, 2900, 0)) + TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.RQcum_nb[0], 4);
  EXPECT_EQ(desk.table.RQord_posit[0], 0);
  EXPECT_EQ(desk.table.RQcum_nb[1], 3);
}

TEST(NewWords, ResponseToQuestionNothingIsOverwritten) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("kept", HISTORY(3, 0, 2900, 0), NEVER()) +
                                 RECORD_OF("passed", HISTORY(4, 5, 2700, 2800), KNOWN) + TRAILER());
  desk.book.sens_qr = 2;
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 1);
  EXPECT_EQ(desk.table.QRcum_nb[1], 3);
  EXPECT_EQ(desk.table.RQcum_nb[1], 0);
}

TEST(NewWords, TheTwentiethEntryIsNotOverwritten) {
  Composed_desk desk;
  desk.write_idx1("one.txt",
                  NEW_WORDS_OF("one", 20) + RECORD_OF("passed", KNOWN, KNOWN) + TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.table.RQcum_nb[20], 0);
}

// The R->Q line of "kept" after a lesson of these records was recorded with no answer.
std::string recorded_history(const std::string &records) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", records + TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  desk.book.ilesson = 0;
  RECORD_LESSON(&desk.book);
  std::string index = desk.dir.read("IDX1/idx1_one.txt");
  return index.substr(index.find("#kept") + RECORD_OF("kept", NEVER(), "").size(), NEVER().size());
}

TEST(NewWords, RecordingWritesTheGreaterMissesOfTheEntryPassedOver) {
  EXPECT_EQ(recorded_history(kept_and_passed()), HISTORY(3, 5, 2900, 3000));
}

TEST(NewWords, RecordingCountsTheGreaterKnownAnswersOfTheEntryPassedOverAsOne) {
  EXPECT_EQ(recorded_history(RECORD_OF("kept", NEVER(), HISTORY(3, 0, 2900, 0)) +
                             RECORD_OF("passed", KNOWN, HISTORY(9, 0, 2700, 0))),
            HISTORY(4, 0, 3000, 0));
}

TEST(NewWords, RecordingASmallerCountOfTheEntryPassedOverEndsTheProgram) {
  ENDS_WITH_STATUS(recorded_history(RECORD_OF("kept", NEVER(), HISTORY(3, 0, 2900, 0)) +
                                    RECORD_OF("passed", KNOWN, NEVER())),
                   2, "RECORD_LESSON error 2");
}

TEST(NewWords, TellsOfDamagedLines) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("a", "damaged\r\n", NEVER()) + TRAILER());
  desk.write_idx1("two.txt", RECORD_OF("b", NEVER(), "damaged\r\n") + TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.log(),
            "NEW_WORDS_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_one.txt \n"
            "NEW_WORDS_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_two.txt \n"
            "NEW_WORDS_LESSON done\n");
  EXPECT_EQ(desk.table.nb_posit, 2);
}

TEST(NewWords, AnEntryRejectedEarlyIsUncountedWhenItsOtherLineIsMissing) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 2) + RECORD_OF("passed", KNOWN, ""));
  ENDS_WITH_STATUS(NEW_WORDS_LESSON(&desk.book), 3,
                   "Error no detection of values icont=2 stop \nin file : ./IDX1/idx1_one.txt \n");
}

TEST(NewWords, AMissingIndexIsSkipped) {
  Composed_desk desk;
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 1) + TRAILER());
  desk.write_idx1("three.txt", TRAILER());
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.log(), "cannot open file ./IDX1/idx1_one.txt, skipped \nNEW_WORDS_LESSON done\n");
  EXPECT_EQ(desk.questions(), Questions{"two1 "});
}

TEST(NewWords, WithoutItsFileTheLessonIsEmptyAndNotDone) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 1) + TRAILER());
  mkdir("idx2_gene", 0777);
  NEW_WORDS_LESSON(&desk.book);
  EXPECT_EQ(desk.log(), "NEW_WORDS_LESSON cannot open file ./idx2_gene \n");
  EXPECT_EQ(desk.table.nb_posit, 0);
}

TEST(BalanceWords, QuestionToResponseTakesWhatWasAskedTheOtherWayAlone) {
  EXPECT_EQ(composed_of(1, each_kind(), BALANCE_WORDS), (Questions{"rq ", "rqmissed "}));
}

TEST(BalanceWords, ResponseToQuestionTakesWhatWasAskedTheOtherWayAlone) {
  EXPECT_EQ(composed_of(2, each_kind(), BALANCE_WORDS), (Questions{"qr ", "qrmissed "}));
}

TEST(BalanceWords, DoubleLinesNeverEnter) {
  EXPECT_EQ(composed_of(1, "##double *b2 \r\n" + RECORD_OF("new", NEVER(), KNOWN), BALANCE_WORDS),
            Questions{"new "});
}

TEST(BalanceWords, StopsAtTwentyAndWritesItsTrailer) {
  Composed_desk desk;
  std::string records;
  for (int i = 1; i <= 21; i++)
    records += RECORD_OF("one" + std::to_string(i), NEVER(), KNOWN);
  desk.write_idx1("one.txt", records + TRAILER());
  BALANCE_WORDS(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 20);
  std::string gene = desk.gene();
  size_t trailer = gene.find("# END_OF_FILE");
  EXPECT_EQ(gene.substr(trailer), "# END_OF_FILE * " + std::to_string(trailer) + " \n");
  EXPECT_EQ(desk.log(), "BALANCE_WORDS done\n");
}

TEST(BalanceWords, AnEmptyLessonHoldsTheTrailerWithOffsetZero) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 5) + TRAILER());
  BALANCE_WORDS(&desk.book);
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.gene(), "# END_OF_FILE * 0 \n");
}

TEST(BalanceWords, ARejectedEntryOverwritesNothing) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", kept_and_passed() + TRAILER());
  BALANCE_WORDS(&desk.book);
  EXPECT_EQ(desk.questions(), Questions{"kept "});
  EXPECT_EQ(desk.table.RQcum_nb[1], 3);
  EXPECT_EQ(desk.table.RQcum_nok[1], 0);
}

TEST(BalanceWords, OnlyTheOtherDirectionIsSorted) {
  for (int sens : {1, 2}) {
    Composed_desk desk;
    desk.write_empty();
    desk.write_idx1("one.txt", light_to_heavy(sens) + TRAILER());
    desk.book.sens_qr = sens;
    BALANCE_WORDS(&desk.book);
    EXPECT_EQ(ENTRIES_OF(SIDE_OF_TABLE(sens, &desk.table).ord, 4), (std::vector<int>{1, 2, 3, -1}));
    EXPECT_EQ(ENTRIES_OF(SIDE_OF_TABLE(3 - sens, &desk.table).ord, 4),
              (std::vector<int>{3, 2, 1, -1}));
  }
}

TEST(BalanceWords, TellsOfDamagedLines) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("a", "damaged\r\n", KNOWN) + TRAILER());
  desk.write_idx1("two.txt", RECORD_OF("b", NEVER(), "damaged\r\n") + TRAILER());
  BALANCE_WORDS(&desk.book);
  EXPECT_EQ(desk.log(), "BALANCE_WORDS and CHECK_4LINTsome error in file : ./IDX1/idx1_one.txt \n"
                        "BALANCE_WORDS and CHECK_4LINTsome error in file : ./IDX1/idx1_two.txt \n"
                        "BALANCE_WORDS done\n");
}

TEST(BalanceWords, MissingPartsEndTheProgram) {
  Composed_desk desk;
  desk.dir.write("IDX1/idx1_one.txt", "no header\r\n");
  ENDS_WITH_STATUS(BALANCE_WORDS(&desk.book), 1, "Error no detection of ####### stop");
  desk.write_idx1("one.txt", RECORD_OF("kept", NEVER(), KNOWN) + RECORD_OF("cut", "", ""));
  ENDS_WITH_STATUS(BALANCE_WORDS(&desk.book), 2, "Error no detection of values icont=2 stop");
  desk.write_idx1("one.txt", RECORD_OF("kept", NEVER(), KNOWN) + RECORD_OF("cut", NEVER(), ""));
  ENDS_WITH_STATUS(BALANCE_WORDS(&desk.book), 3, "Error no detection of values icont=2 stop");
}

} // namespace
