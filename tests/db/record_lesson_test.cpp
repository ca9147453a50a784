// Tests of writing a lesson's counts back.
#include "db/record_lesson.h"

#include "record_desk.h"

#include <signal.h>
#include <sys/resource.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string DONE = "RECORD_LESSON 1 DONE  nb_errors=0\n";

const std::string BLANK_AS_ZEROS = history_line(0, 0, 0, 0);

std::string faulty_line(const std::string &path, const std::string &alias) {
  return "RECORD_LESSON and CHECK_4LINTsome error in file : " + path + " of lesson : " + alias +
         " \n";
}

} // namespace

TEST(RecordLesson, NothingAnsweredLeavesEveryFileByteForByte) {
  Record_desk desk;
  desk.word("one", "mot", {3, 2, 2900, 2800}, {1, 0, 2000, 0});
  desk.word("two", "tag", NEVER_ASKED);
  desk.write();
  auto before = std::filesystem::last_write_time(Record_desk::path("one"));
  EXPECT_EQ(desk.record(), "");
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_EQ(desk.idx1("two"), desk.files["two"] + idx1_trailer(0));
  EXPECT_EQ(std::filesystem::last_write_time(Record_desk::path("one")), before);
  EXPECT_EQ(desk.log(), DONE);
  EXPECT_EQ(desk.book.fp_gene, nullptr);
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
}

TEST(RecordLesson, AKnownAnswerOnScoreZeroCountsOnceHoweverOftenItWasGiven) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.table.QRcum_nb[i] = 9;
  desk.table.QRcum_err[i] = 0;
  desk.write();
  desk.record();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(4, 2, 3000, 2800)));
}

TEST(RecordLesson, OneOrTwoKnownAnswersOnAScoreKeepTheCountAndChangeTheDay) {
  for (long given : {1, 2}) {
    Record_desk desk;
    int i = desk.word("one", "mot", {3, 2, 2900, 2800});
    desk.table.QRcum_nb[i] = 3 + given;
    desk.write();
    desk.record();
    EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(3, 2, 3000, 2800))) << given;
  }
}

TEST(RecordLesson, ThreeKnownAnswersOnAScoreCountOnce) {
  for (long score : {1, -1, 5000}) {
    Record_desk desk;
    int i = desk.word("one", "mot", {3, 2, 2900, 2800});
    desk.table.QRcum_nb[i] = 6;
    desk.table.QRcum_err[i] = score;
    desk.write();
    desk.record();
    EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(4, 2, 3000, 2800))) << score;
  }
}

TEST(RecordLesson, AMissChangesFieldsTwoAndFourAlone) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.table.QRcum_nb[i] = 8;
  desk.table.QRcum_nok[i] = 6;
  desk.table.QRcum_err[i] = 0;
  desk.write();
  desk.record();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(3, 6, 2900, 3000)));
}

TEST(RecordLesson, EachDirectionGoesToItsOwnLineByItsOwnCounts) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800}, {5, 4, 2700, 2600});
  desk.table.RQcum_nb[i] = 6;
  desk.table.RQcum_err[i] = 0;
  desk.write();
  desk.record();
  EXPECT_EQ(desk.idx1("one"),
            desk.with(0, history_line(3, 2, 2900, 2800) + history_line(6, 4, 3000, 2600)));
  desk.table.QRcum_nok[i] = 3;
  desk.table.RQcum_nok[i] = 5;
  desk.record();
  EXPECT_EQ(desk.idx1("one"),
            desk.with(0, history_line(3, 3, 2900, 3000) + history_line(6, 5, 3000, 3000)));
}

TEST(RecordLesson, WordsAreFoundByTheirPlaceInTheLessonFile) {
  Record_desk desk;
  int i = desk.word("one", "first", NEVER_ASKED);
  int k = desk.word("one", "second", NEVER_ASKED);
  desk.table.QRcum_nok[i] = 1;
  desk.write();
  std::swap(desk.table.posit[i], desk.table.posit[k]);
  desk.record();
  EXPECT_EQ(desk.idx1("one"), desk.with(1, history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, WordsOfSeveralDictionariesGoEachToItsOwn) {
  Record_desk desk;
  for (int round = 1; round <= 3; round++)
    for (const char *name : {"one", "two", "three"})
      desk.table.QRcum_nok[desk.word(name, "mot" + std::to_string(round), NEVER_ASKED)] = round;
  desk.write();
  EXPECT_EQ(desk.record(), "");
  for (size_t entry = 0; entry < 9; entry++) {
    std::string text = desk.idx1(desk.places[entry].first);
    EXPECT_EQ(text.substr(desk.places[entry].second, 54),
              history_line(0, (long)entry / 3 + 1, 0, 3000));
  }
}

TEST(RecordLesson, AComposedLessonIsReadFromItsOwnFile) {
  Record_desk desk;
  desk.book.ilesson = 0;
  desk.table.QRcum_nok[desk.word("two", "mot", NEVER_ASKED)] = 1;
  desk.write();
  EXPECT_FALSE(desk.dir.exists("idx1_gene"));
  desk.record();
  EXPECT_EQ(desk.idx1("two"), desk.with(0, history_line(0, 1, 0, 3000)));
  EXPECT_EQ(desk.log(), "RECORD_LESSON 0 DONE  nb_errors=0\n");
}

TEST(RecordLesson, APathOfAccentedLettersIsOpenedAsItIsWritten) {
  for (const char *directory : {"IDX1\xC3\xA9", "IDX1\xE9"}) {
    Record_desk desk;
    desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
    std::string *record = desk.lesson.data();
    record->replace(record->find("IDX1"), 4, directory);
    desk.write();
    std::filesystem::rename("IDX1", directory);
    EXPECT_EQ(desk.record(), "");
    EXPECT_EQ(desk.dir.read(std::string(directory) + "/idx1_one"),
              desk.with(0, history_line(0, 1, 0, 3000)));
  }
}

TEST(RecordLesson, ANegativeLessonNumberDoesNothing) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
  desk.write();
  desk.book.ilesson = -1;
  EXPECT_EQ(desk.record(), "");
  EXPECT_EQ(desk.log(), "");
}

TEST(RecordLesson, AfterDay10000TheProgramEndsWithStatus10) {
  Record_desk desk;
  desk.write();
  SET_PRESENT_DAY(2028, 5, 19);
  desk.record();
  EXPECT_EQ(desk.log(), DONE);
  SET_PRESENT_DAY(2028, 5, 20);
  ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 10, "RECORD_LESSON error 10 \n");
  EXPECT_EQ(desk.log(), DONE + "RECORD_LESSON error 10 \n");
  desk.book.ilesson = -1;
  ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 10, "RECORD_LESSON error 10 \n");
}

TEST(RecordLesson, ACountAbove10000EndsTheProgramWithStatus1) {
  for (int which = 0; which < 4; which++) {
    Record_desk desk;
    int i = desk.word("one", "mot", {3, 2, 2900, 2800}, {3, 2, 2900, 2800});
    long *counts[] = {desk.table.QRcum_nb, desk.table.QRcum_nok, desk.table.RQcum_nb,
                      desk.table.RQcum_nok};
    counts[which][i] = 10000;
    desk.write();
    desk.record();
    EXPECT_EQ(desk.log(), DONE);
    counts[which][i] = 10001;
    ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 1, "RECORD_LESSON error 1 \n");
    EXPECT_EQ(desk.log(), DONE + "RECORD_LESSON error 1 \n");
  }
}

TEST(RecordLesson, ACountBelowTheFilesEndsTheProgramWithStatus2) {
  for (int which = 0; which < 4; which++) {
    Record_desk desk;
    int i = desk.word("one", "mot", {3, 2, 2900, 2800}, {3, 2, 2900, 2800});
    long *counts[] = {desk.table.QRcum_nb, desk.table.QRcum_nok, desk.table.RQcum_nb,
                      desk.table.RQcum_nok};
    counts[which][i] -= 1;
    desk.write();
    ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 2, "^RECORD_LESSON error 2 \n");
    EXPECT_EQ(desk.log(), "RECORD_LESSON error 2 \n");
  }
}

TEST(RecordLesson, ACountAbove10000IsSeenBeforeOneBelowTheFiles) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.table.QRcum_nb[i] = 1;
  desk.table.QRcum_nok[i] = 10001;
  desk.write();
  ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 1, "RECORD_LESSON error 1 \n");
}

TEST(RecordLesson, WhatWasRecordedBeforeAnEndOfTheProgramIsInTheFile) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "first", NEVER_ASKED)] = 1;
  desk.table.QRcum_nok[desk.word("one", "second", NEVER_ASKED)] = 10001;
  desk.write();
  ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 1, "RECORD_LESSON error 1 \n");
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, WhatWasRecordedBeforeABadRecordIsInTheFile) {
  const std::string texts[] = {"RECORD_LESSON error 1 stop 2 \n",
                               "RECORD_FILE error cannot extract nc1"};
  for (int status : {2, 1}) {
    Record_desk desk;
    desk.table.QRcum_nok[desk.word("one", "first", NEVER_ASKED)] = 1;
    desk.table.RQcum_nok[desk.word("two", "second", NEVER_ASKED)] = 1;
    desk.word("one", "third", NEVER_ASKED);
    desk.lesson[2].resize(desk.lesson[2].find('\n') + 1);
    desk.lesson[2] += status == 2 ? "" : " ./IDX1/idx1_one \n";
    desk.write();
    ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), status, texts[2 - status]);
    EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(0, 1, 0, 3000)));
    EXPECT_EQ(desk.idx1("two"), desk.with(1, BLANK_AS_ZEROS + history_line(0, 1, 0, 3000)));
    EXPECT_FALSE(desk.dir.exists("mertu_pending"));
  }
}

TEST(RecordLesson, AnEntryThatStandsTwiceIsNamedBeforeTheEnd) {
  Record_desk desk;
  int i = desk.word("one", "la maison", {3, 2, 2900, 2800});
  desk.take("#la maison *a1 0 * x ");
  desk.known(2, {3, 2, 2900, 2800});
  desk.table.QRcum_nok[i] = 3;
  desk.write();
  ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 2,
                   "^entry la maison stands twice in the lesson \nRECORD_LESSON error 2 \n");
  EXPECT_EQ(desk.log(), "RECORD_LESSON error 2 \n");
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(3, 3, 2900, 3000)));
}

TEST(RecordLesson, AnEntryThatStandsTwiceIsRecordedWhereItsCountsGrow) {
  Record_desk desk;
  desk.word("one", "la maison", {3, 2, 2900, 2800});
  int k = desk.take("#la maison *a1 0 * x ");
  desk.known(k, {3, 2, 2900, 2800});
  desk.table.QRcum_nok[k] = 3;
  desk.write();
  EXPECT_EQ(desk.record(), "");
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(3, 3, 2900, 3000)));
}

// The back-up that its damaged line asks for comes between the two.
TEST(RecordLesson, ALineWrittenForABackUpIsReadAsItStandsThen) {
  Record_desk desk;
  std::string future = history_line(9, 2, 3001, 2800);
  desk.known(desk.take(desk.entry("one", "mot", future + NEVER_LINE)), {0, 2, 0, 2800});
  desk.known(desk.take("#mot *a1 0 * x "), {0, 2, 0, 2800});
  desk.table.RQcum_nok[1] = 1;
  desk.write();
  ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 2,
                   "entry mot stands twice in the lesson \nRECORD_LESSON error 2 \n");
  EXPECT_EQ(desk.idx1("one"), desk.with(0, future + history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, WhereNoNoteCanBeWrittenTheLessonIsRecordedAndThatIsTold) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
  desk.write();
  std::filesystem::create_directory(".new_mertu_pending");
  std::string told = "cannot write file ./mertu_pending: File exists \n";
  EXPECT_EQ(desk.record(), told);
  EXPECT_EQ(desk.log(), told + DONE);
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, ARecordThatCannotBeReadIsPassedOverWithItsWordAlone) {
  for (const char *bad : {"mot *a1 0\n", "#mot\n", "# END_OF_FILE * 12 \n", ""}) {
    Record_desk desk;
    desk.table.QRcum_nok[desk.word("one", "first", NEVER_ASKED)] = 1;
    desk.table.QRcum_nok[desk.word("one", "second", NEVER_ASKED)] = 2;
    desk.table.QRcum_nok[desk.word("one", "third", NEVER_ASKED)] = 3;
    std::string second = desk.lesson[1];
    desk.lesson[1] = bad + second.substr(second.find('\n') + 1);
    desk.write();
    EXPECT_EQ(desk.record(), "");
    std::string text = desk.with(2, history_line(0, 3, 0, 3000));
    EXPECT_EQ(desk.idx1("one"),
              text.replace(desk.places[0].second, 54, history_line(0, 1, 0, 3000)));
    EXPECT_EQ(desk.log(), DONE);
  }
}

TEST(RecordLesson, APlaceBehindTheLessonFileIsPassedOver) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "first", NEVER_ASKED)] = 1;
  desk.table.QRcum_nok[desk.word("one", "second", NEVER_ASKED)] = 2;
  desk.write();
  desk.table.posit[1] = 100000;
  EXPECT_EQ(desk.record(), "");
  EXPECT_EQ(desk.idx1("one"), desk.with(1, history_line(0, 2, 0, 3000)));
}

TEST(RecordLesson, AMissingSecondLineEndsTheProgramWithStatus2) {
  for (int ilesson : {1, 0}) {
    Record_desk desk;
    desk.book.ilesson = ilesson;
    desk.word("one", "first", NEVER_ASKED);
    desk.word("one", "second", NEVER_ASKED);
    desk.lesson[1].resize(desk.lesson[1].find('\n') + 1);
    desk.write();
    std::string texts = "RECORD_LESSON error 1 stop 2 \n"
                        "Error no detection of values icont=2 stop \n"
                        "in file : ./idx" +
                        std::to_string(2 - ilesson) + "_gene \n";
    ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 2, texts);
    EXPECT_EQ(desk.log(), texts);
  }
}

TEST(RecordLesson, ASecondLineWithoutAnOffsetEndsTheProgramWithStatus1) {
  for (const char *bad : {" ./IDX1/idx1_one 55 \n", " ./IDX1/idx1_one * \n",
                          " ./IDX1/idx1_one *"
                          "\n"}) {
    Record_desk desk;
    desk.word("one", "first", NEVER_ASKED);
    desk.lesson[0] = desk.lesson[0].substr(0, desk.lesson[0].find('\n') + 1) + bad;
    desk.write();
    ENDS_WITH_STATUS(RECORD_LESSON(&desk.book), 1, "RECORD_FILE error cannot extract nc1 \n");
    EXPECT_EQ(desk.log(), "RECORD_FILE error cannot extract nc1 \n");
  }
}

TEST(RecordLesson, ALessonFileThatCannotBeOpenedIsTold) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
  desk.write();
  std::filesystem::remove("idx1_gene");
  EXPECT_EQ(desk.record(), "RECORD_LESSON cannot open file ./idx1_gene \n");
  EXPECT_EQ(desk.log(), "RECORD_LESSON cannot open file ./idx1_gene \n");
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
}

TEST(RecordLesson, AnIndexThatCannotBeOpenedIsToldOnceAndTheOthersAreRecorded) {
  Record_desk desk;
  for (const char *name : {"one", "two", "one", "two", "three"})
    desk.table
        .QRcum_nok[desk.word(name, "mot" + std::to_string(desk.table.nb_posit), NEVER_ASKED)] = 1;
  desk.write();
  std::filesystem::remove(Record_desk::path("two"));
  std::string told = "RECORD_LESSON cannot open file ./IDX1/idx1_two \n";
  EXPECT_EQ(desk.record(), told);
  EXPECT_EQ(desk.log(), told + DONE);
  EXPECT_EQ(desk.idx1("three"), desk.with(4, history_line(0, 1, 0, 3000)));
  std::string one = desk.with(0, history_line(0, 1, 0, 3000));
  EXPECT_EQ(desk.idx1("one"), one.replace(desk.places[2].second, 54, history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, ALineOfAnotherLengthIsLoggedAndRewrittenAtItsOwnLength) {
  for (size_t length : {51, 53, 60, 45}) {
    Record_desk desk;
    std::string damaged = "     3      ;     2      ;    2900    ;    2800";
    damaged.resize(length, ' ');
    int i = desk.take(desk.entry("one", "mot", damaged + "\r\n" + NEVER_LINE));
    desk.word("one", "next", {7, 0, 2500, 0});
    desk.known(i, {3, 2, 2900, 0});
    desk.table.QRcum_nok[i] = 3;
    desk.write();
    desk.record();
    // The correction has made the index anew; its back-up is the file as it was recorded.
    std::string recorded = desk.dir.read("IDX1/cpy_idx1_one");
    std::string line = recorded.substr(desk.places[0].second, length);
    long values[5];
    CHECK_EXTRACT_4LINT(3000, line.data(), values);
    EXPECT_THAT(std::vector<long>(values + 1, values + 5), testing::ElementsAre(3, 3, 2900, 3000));
    std::string expected = desk.files["one"] + idx1_trailer(0);
    EXPECT_EQ(recorded, expected.replace(desk.places[0].second, length, line));
    EXPECT_THAT(desk.idx1("one"), HasSubstr(history_line(3, 3, 2900, 3000) + BLANK_AS_ZEROS));
    EXPECT_THAT(desk.log(),
                StartsWith("RECORD_LESSON  file : ./IDX1/idx1_one  needs regeneration\n" +
                           faulty_line("./IDX1/idx1_one", "a1")));
  }
}

TEST(RecordLesson, ALineWithATabIsRewrittenInTheBytesItHas) {
  Record_desk desk;
  std::string damaged = "3\t;     2      ;    2900    ;    2800    ;";
  int i = desk.take(desk.entry("one", "mot", damaged + "\r\n" + NEVER_LINE));
  desk.word("one", "next", {7, 0, 2500, 0});
  desk.known(i, {3, 2, 2900, 2800});
  desk.table.QRcum_nok[i] = 3;
  desk.write();
  desk.record();
  std::string recorded = desk.dir.read("IDX1/cpy_idx1_one");
  EXPECT_EQ(recorded.substr(desk.places[0].second + damaged.size(), 56), "\r\n" + NEVER_LINE);
  EXPECT_EQ(recorded.size(), (desk.files["one"] + idx1_trailer(0)).size());
}

TEST(RecordLesson, AMissingLineHasLengthZeroAndNothingIsWritten) {
  Record_desk desk;
  int i = desk.take(desk.entry("one", "mot", history_line(3, 2, 2900, 2800)));
  desk.known(i, {3, 2, 2900, 2800});
  desk.table.RQcum_nok[i] = 1;
  desk.write_lesson();
  desk.dir.write("IDX1/idx1_one", desk.files["one"]);
  std::string before = desk.files["one"];
  // The dictionary is not the alias's: nothing is corrected.
  g_free(desk.registry.record.st_alias);
  desk.registry.record.st_alias = g_strdup(" d4 b2 c3 ");
  desk.record();
  EXPECT_EQ(desk.idx1("one"), before);
  EXPECT_THAT(desk.log(), StartsWith("RECORD_LESSON  file : ./IDX1/idx1_one  needs regeneration\n" +
                                     faulty_line("./IDX1/idx1_one", "a1") +
                                     "RECORD_LESSON 1 DONE  nb_errors=1\n"));
}

TEST(RecordLesson, TheNextRecordsNameIsNeverWrittenOver) {
  Record_desk desk;
  int i = desk.take(desk.entry("one", "mot", history_line(3, 2, 2900, 2800)));
  desk.known(i, {3, 2, 2900, 2800});
  desk.word("one", "next", {7, 0, 2500, 0});
  desk.table.RQcum_nok[i] = 1;
  desk.write();
  desk.record();
  EXPECT_EQ(desk.dir.read("IDX1/cpy_idx1_one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_THAT(desk.idx1("one"), HasSubstr("#next *a1 "));
  EXPECT_THAT(desk.idx1("one"), HasSubstr(history_line(7, 0, 2500, 0)));
}

TEST(RecordLesson, ARecordWithoutLinesTakesNoneOfTheNextRecords) {
  Record_desk desk;
  int i = desk.take(desk.entry("one", "mot", ""));
  desk.entry("one", "next", history_line(7, 0, 2500, 0) + history_line(4, 0, 2400, 0));
  // As a load reads it: the next record's Q->R line is this word's R->Q line.
  desk.known(i, NEVER_ASKED, {7, 0, 2500, 0});
  desk.table.QRcum_nok[i] = 1;
  desk.table.RQcum_nok[i] = 1;
  desk.write();
  desk.record();
  EXPECT_EQ(desk.dir.read("IDX1/cpy_idx1_one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_THAT(desk.log(), HasSubstr("RECORD_LESSON 1 DONE  nb_errors=1\n"));
}

TEST(RecordLesson, CorrectedValuesAreCompared) {
  Record_desk desk;
  // A day in the future clears its count: the file counts as holding 0 known answers.
  int i = desk.take(desk.entry("one", "mot", history_line(9, 2, 3001, 2800) + NEVER_LINE));
  desk.known(i, {0, 2, 0, 2800});
  desk.table.QRcum_nb[i] = 1;
  desk.table.QRcum_err[i] = 0;
  desk.write();
  desk.record();
  EXPECT_EQ(desk.dir.read("IDX1/cpy_idx1_one"), desk.with(0, history_line(1, 2, 3000, 2800)));
}

TEST(RecordLesson, AFaultyLineWithEqualCountsStaysAsItIs) {
  Record_desk desk;
  int i = desk.take(desk.entry("one", "mot", history_line(9, 2, 3001, 2800) + NEVER_LINE));
  desk.known(i, {0, 2, 0, 2800});
  desk.write();
  desk.record();
  EXPECT_EQ(desk.dir.read("IDX1/cpy_idx1_one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_THAT(desk.log(), StartsWith(faulty_line("./IDX1/idx1_one", "a1") +
                                     "RECORD_LESSON 1 DONE  nb_errors=1\n"));
}

TEST(RecordLesson, FaultyLinesAreToldAndTheDictionaryCorrected) {
  Record_desk desk;
  std::string future = history_line(9, 2, 3001, 2800);
  desk.known(desk.take(desk.entry("one", "mot", future + future)), {0, 2, 0, 2800},
             {0, 2, 0, 2800});
  desk.write();
  desk.record();
  ASSERT_EQ(SCRIPT().told.size(), 2u);
  EXPECT_EQ(SCRIPT().told[0], "error: Errors found in data base. \n"
                              "Look at file mertu_log for details.\n"
                              "Compare in directory IDX1 the present \n"
                              "idx1_files to the previous cpy_idx1_files !\n");
  EXPECT_THAT(SCRIPT().told[1], StartsWith("warning: Check and correct single lesson"));
  std::string faulty = faulty_line("./IDX1/idx1_one", "a1");
  EXPECT_THAT(desk.log(), StartsWith(faulty + faulty +
                                     "RECORD_LESSON 1 DONE  nb_errors=1\n"
                                     "    \n"
                                     "Please compare corrected idx1 files \n"
                                     "with the original (and faulty) cpy_idx1 files \n"
                                     "    \n"
                                     "CHECK_CORR_SNG_DBASE num =1 s_idx1="));
  EXPECT_THAT(desk.log(), testing::EndsWith("CORRECTION of data base for lesson 1 DONE \n"));
  EXPECT_THAT(desk.idx1("one"), HasSubstr(history_line(0, 2, 0, 2800)));
  EXPECT_EQ(desk.book.fp_gene, nullptr);
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
}

TEST(RecordLesson, TheLogHoldsTheFaultsWhenTheNoticeNamesIt) {
  Record_desk desk;
  desk.book.fp_log = freopen("log", "w", desk.book.fp_log);
  setvbuf(desk.book.fp_log, nullptr, _IOFBF, 1 << 16);
  desk.known(desk.take(desk.entry("one", "mot", history_line(9, 2, 3001, 2800) + NEVER_LINE)),
             {0, 2, 0, 2800});
  desk.write();
  desk.record();
  ASSERT_EQ(SCRIPT().log_told.size(), 2u);
  EXPECT_THAT(SCRIPT().log_told[0], StartsWith(faulty_line("./IDX1/idx1_one", "a1")));
}

TEST(RecordLesson, OnlyTheLastFaultyDictionaryIsCorrected) {
  Record_desk desk;
  std::string future = history_line(9, 2, 3001, 2800) + NEVER_LINE;
  for (const char *name : {"one", "two", "one"})
    desk.known(desk.take(desk.entry(name, "mot" + std::to_string(desk.table.nb_posit), future)),
               {0, 2, 0, 2800});
  desk.write();
  desk.record();
  EXPECT_THAT(desk.log(), HasSubstr("RECORD_LESSON 1 DONE  nb_errors=2\n"));
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_EQ(desk.dir.read("IDX1/cpy_idx1_one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_THAT(desk.idx1("two"), HasSubstr(history_line(0, 2, 0, 2800)));
}

TEST(RecordLesson, ABackUpHoldsTheLinesRewrittenBeforeIt) {
  Record_desk desk;
  std::string future = history_line(9, 2, 3001, 2800) + NEVER_LINE;
  desk.table.QRcum_nok[desk.word("one", "first", NEVER_ASKED)] = 1;
  desk.known(desk.take(desk.entry("one", "second", future)), {0, 2, 0, 2800});
  desk.table.QRcum_nok[desk.word("one", "third", NEVER_ASKED)] = 1;
  desk.known(desk.take(desk.entry("one", "fourth", future)), {0, 2, 0, 2800});
  desk.table.QRcum_nok[desk.word("one", "fifth", NEVER_ASKED)] = 1;
  desk.known(desk.take(desk.entry("two", "last", future)), {0, 2, 0, 2800});
  desk.write();
  desk.record();
  std::string expected = desk.with(0, history_line(0, 1, 0, 3000));
  expected.replace(desk.places[2].second, 54, history_line(0, 1, 0, 3000));
  EXPECT_EQ(desk.dir.read("IDX1/cpy_idx1_one"), expected);
  expected.replace(desk.places[4].second, 54, history_line(0, 1, 0, 3000));
  EXPECT_EQ(desk.idx1("one"), expected);
}

TEST(RecordLesson, ABackUpThatCannotBeMadeIsToldAndTheLessonRecorded) {
  Record_desk desk;
  desk.known(desk.take(desk.entry("one", "mot", history_line(9, 2, 3001, 2800) + NEVER_LINE)),
             {0, 2, 0, 2800});
  desk.known(desk.take(desk.entry("two", "mot", history_line(9, 2, 3001, 2800) + NEVER_LINE)),
             {0, 2, 0, 2800});
  desk.table.RQcum_nok[1] = 1;
  desk.write();
  std::filesystem::create_directory("IDX1/cpy_idx1_one");
  EXPECT_THAT(desk.record(), HasSubstr("cannot back up file ./IDX1/idx1_one \n"));
  EXPECT_THAT(desk.log(), HasSubstr("cannot back up file ./IDX1/idx1_one \n"));
  EXPECT_EQ(desk.idx1("one"),
            desk.with(0, history_line(9, 2, 3001, 2800) + history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, AWriteThatFailsIsToldAndTheOthersAreRecorded) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "first", NEVER_ASKED)] = 1;
  for (int filling = 0; filling < 30; filling++)
    desk.entry("one", "filling" + std::to_string(filling), BLANK_HISTORY);
  desk.table.QRcum_nok[desk.word("one", "last", NEVER_ASKED)] = 1;
  desk.table.QRcum_nok[desk.word("two", "other", NEVER_ASKED)] = 1;
  desk.write();
  signal(SIGXFSZ, SIG_IGN);
  struct rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  struct rlimit small = {(rlim_t)desk.places[31].second, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  std::string said = desk.record();
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(said, "cannot write file ./IDX1/idx1_one: File too large \n");
  EXPECT_EQ(desk.log(), said + DONE);
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(0, 1, 0, 3000)));
  EXPECT_EQ(desk.idx1("two"), desk.with(32, history_line(0, 1, 0, 3000)));
}

TEST(RecordLesson, ARecordedLessonMayBeDrilledOnAndRecordedAgain) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.table.QRcum_nb[i] = 5;
  desk.write();
  desk.record();
  desk.table.QRcum_nb[i] = 6;
  desk.record();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(4, 2, 3000, 2800)));
}

TEST(RecordLesson, AnEmptyLessonIsDone) {
  Record_desk desk;
  desk.write();
  EXPECT_EQ(desk.record(), "");
  EXPECT_EQ(desk.log(), DONE);
}
