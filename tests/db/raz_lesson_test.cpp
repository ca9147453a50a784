// Tests of forgetting a lesson.
#include "db/record_lesson.h"

#include "record_desk.h"

#include <signal.h>
#include <sys/resource.h>

#include "db/mend_forgotten.h"

using testing::ElementsAre;

namespace {

const std::string BLANK = NEVER_LINE.substr(0, 52);

} // namespace

TEST(RazLesson, TwoBlankLinesInARowCoverTheEndOfTheFirst) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.word("one", "mot", {3, 2, 2900, 2800}, {1, 4, 2000, 2100});
  desk.word("one", "next", {7, 6, 2500, 2600}, {1, 0, 2700, 0});
  desk.entry("one", "other", history_line(1, 1, 1, 1) + history_line(2, 2, 2, 2));
  desk.write();
  EXPECT_EQ(desk.raz(), "");
  EXPECT_EQ(desk.log(), "");
  std::string expected = desk.with(0, BLANK + BLANK);
  expected.replace(desk.places[1].second, 104, BLANK + BLANK);
  EXPECT_EQ(desk.idx1("one"), expected);
  EXPECT_EQ(desk.idx1("one").substr(desk.places[0].second, 108), BLANK + BLANK + " ;\r\n");
  EXPECT_EQ(desk.dir.read("mertu_erased"), "./IDX1/idx1_one\n");
  EXPECT_EQ(desk.book.fp_gene, nullptr);
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
}

TEST(RazLesson, TheQuestionNamesTheDictionary) {
  Record_desk desk;
  desk.word("one", "mot", NEVER_ASKED);
  desk.write();
  desk.raz();
  EXPECT_THAT(SCRIPT().asked, ElementsAre("Really forget history of lesson : \n \n ./one ?"));
}

TEST(RazLesson, TheAnswerNoRecordsTheLesson) {
  Record_desk desk;
  desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
  desk.write();
  SCRIPT().answer = ANSWER_NO;
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, history_line(0, 1, 0, 3000)));
  EXPECT_EQ(desk.log(), "RECORD_LESSON 1 DONE  nb_errors=0\n");
  EXPECT_FALSE(desk.dir.exists("mertu_erased"));
}

TEST(RazLesson, EveryAnswerButNoForgets) {
  for (Trf_answer answer : {ANSWER_YES, ANSWER_FORGET, ANSWER_CLOSED}) {
    Record_desk desk;
    desk.table.QRcum_nok[desk.word("one", "mot", {3, 2, 2900, 2800})] = 10001;
    desk.write();
    SCRIPT().answer = answer;
    desk.raz();
    EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK)) << answer;
  }
}

TEST(RazLesson, AComposedLessonIsNeitherAskedForNorRecorded) {
  Record_desk desk;
  desk.book.ilesson = 0;
  desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
  desk.write();
  SCRIPT().answer = ANSWER_YES;
  EXPECT_EQ(desk.raz(), "composed lesson: nothing recorded, nothing forgotten \n");
  EXPECT_TRUE(SCRIPT().asked.empty());
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_EQ(desk.log(), "");
}

TEST(RazLesson, ANegativeLessonNumberDoesNothing) {
  Record_desk desk;
  desk.word("one", "mot", NEVER_ASKED);
  desk.write();
  desk.book.ilesson = -1;
  EXPECT_EQ(desk.raz(), "");
  EXPECT_TRUE(SCRIPT().asked.empty());
}

TEST(RazLesson, AWindowThatWentUnderTheQuestionLeavesAllAsItIs) {
  for (Trf_answer answer : {ANSWER_NO, ANSWER_YES, ANSWER_CLOSED}) {
    Record_desk desk;
    desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
    desk.write();
    desk.book.pWindow = reinterpret_cast<GtkWidget *>(&desk);
    SCRIPT().answer = answer;
    SCRIPT().window_goes = true;
    EXPECT_EQ(desk.raz(), "");
    EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  }
}

TEST(RazLesson, ALessonThatWentUnderTheQuestionLeavesAllAsItIs) {
  for (Trf_answer answer : {ANSWER_NO, ANSWER_YES, ANSWER_CLOSED}) {
    Record_desk desk;
    desk.table.QRcum_nok[desk.word("one", "mot", NEVER_ASKED)] = 1;
    desk.write();
    SCRIPT().answer = answer;
    SCRIPT().lesson_goes = true;
    EXPECT_EQ(desk.raz(), "");
    EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
    EXPECT_EQ(desk.log(), "");
  }
}

TEST(RazLesson, WordsOfOtherDictionariesAreForgottenThere) {
  Record_desk desk;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.word("two", "tag", {3, 2, 2900, 2800});
  desk.word("one", "other", {3, 2, 2900, 2800});
  desk.write();
  SCRIPT().answer = ANSWER_YES;
  desk.raz();
  EXPECT_EQ(desk.idx1("two"), desk.with(1, BLANK + BLANK));
  EXPECT_EQ(desk.dir.read("mertu_erased"), "./IDX1/idx1_one\n./IDX1/idx1_two\n");
}

TEST(RazLesson, ALongLessonIsForgottenToItsEnd) {
  const int NB_WORDS = 5100; // more than 10000 lines
  Record_desk desk;
  GROW_POSIT(NB_WORDS + 1, &desk.table);
  Fields fields = {3, 2, 2900, 2800};
  std::string name_line =
      desk.entry("one", "mot", Record_desk::line(fields) + Record_desk::line(fields));
  for (int i = 0; i < NB_WORDS; i++)
    desk.known(desk.take(name_line), fields, fields);
  desk.word("two", "tag", fields);
  desk.write();
  SCRIPT().answer = ANSWER_YES;
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK));
  EXPECT_EQ(desk.idx1("two"), desk.with(1, BLANK + BLANK));
}

TEST(RazLesson, FilesThatCannotBeOpenedAreToldUnderTheNameOfTheRecording) {
  Record_desk desk;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.word("two", "tag", {3, 2, 2900, 2800});
  desk.word("two", "more", {3, 2, 2900, 2800});
  desk.write();
  SCRIPT().answer = ANSWER_YES;
  std::filesystem::remove(Record_desk::path("two"));
  EXPECT_EQ(desk.raz(), "RECORD_LESSON cannot open file ./IDX1/idx1_two \n");
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK));
  std::filesystem::remove("idx1_gene");
  EXPECT_EQ(desk.raz(), "RECORD_LESSON cannot open file ./idx1_gene \n");
}

TEST(RazLesson, ABadRecordEndsTheProgramBeforeAnythingIsErased) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.word("one", "first", {3, 2, 2900, 2800});
  desk.word("one", "second", {3, 2, 2900, 2800});
  std::string second = desk.lesson[1];
  desk.lesson[1] = second.substr(0, second.find('\n') + 1);
  desk.write();
  ENDS_WITH_STATUS(RAZ_LESSON(&desk.book), 2,
                   "RECORD_LESSON error 1 stop 2 \nError no detection of values icont=2 stop \n"
                   "in file : ./idx1_gene \n");
  desk.lesson[1] += " ./IDX1/idx1_one \n";
  desk.write();
  ENDS_WITH_STATUS(RAZ_LESSON(&desk.book), 1, "RECORD_FILE error cannot extract nc1 \n");
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_FALSE(desk.dir.exists("mertu_erased"));
}

TEST(RazLesson, WhereTheNoteCannotBeWrittenNothingIsErased) {
  Record_desk desk;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.write();
  SCRIPT().answer = ANSWER_YES;
  std::filesystem::create_directory(".new_mertu_erased");
  EXPECT_EQ(desk.raz(), "cannot write file ./mertu_erased: File exists \n");
  EXPECT_EQ(desk.log(), "cannot write file ./mertu_erased: File exists \n");
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
}

TEST(RazLesson, LinesTooShortForTwoBlankOnesBecomeBlankEachForItself) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  std::string shorter = history_line(3, 2, 2900, 2800).substr(2);
  desk.take(desk.entry("one", "mot", shorter + shorter.substr(2)));
  desk.entry("one", "next", history_line(7, 0, 2500, 0) + NEVER_LINE);
  desk.write();
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK.substr(0, 50) + "\r\n" + BLANK.substr(0, 48)));
}

TEST(RazLesson, WhereTheSecondLineIsEmptyOrMissingTheFirstIsForgotten) {
  for (bool missing : {false, true}) {
    Record_desk desk;
    SCRIPT().answer = ANSWER_YES;
    desk.take(desk.entry("one", "mot", history_line(3, 2, 2900, 2800) + "\r\n"));
    desk.write();
    std::string expected = desk.with(0, BLANK);
    if (missing) {
      expected.resize(desk.places[0].second + 54);
      desk.dir.write(Record_desk::path("one"), desk.files["one"].substr(0, expected.size()));
    }
    EXPECT_EQ(desk.raz(), "");
    EXPECT_EQ(desk.log(), "");
    EXPECT_EQ(desk.idx1("one"), expected);
  }
}

TEST(RazLesson, ALineOfOneByteBecomesABlank) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.take(desk.entry("one", "mot", history_line(3, 2, 2900, 2800) + "3\r\n"));
  desk.write();
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + "\r\n \r\n"));
}

TEST(RazLesson, TheNextRecordsNameIsNeverWrittenOver) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.take(desk.entry("one", "mot", history_line(3, 2, 2900, 2800)));
  desk.entry("one", "next", history_line(7, 0, 2500, 0) + NEVER_LINE);
  desk.write();
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK));
}

TEST(RazLesson, ARecordWithoutLinesForgetsNoneOfTheNextRecords) {
  for (const char *next : {"next", "next with a question that is longer than a history line"}) {
    Record_desk desk;
    SCRIPT().answer = ANSWER_YES;
    desk.take(desk.entry("one", "mot", ""));
    desk.entry("one", next, history_line(7, 0, 2500, 0) + history_line(4, 0, 2400, 0));
    desk.write();
    desk.raz();
    EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  }
}

TEST(RazLesson, AnEntryThatStandsTwiceIsForgottenOnce) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.take("#mot *a1 0 * x ");
  desk.entry("one", "next", history_line(7, 0, 2500, 0) + NEVER_LINE);
  desk.write();
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK));
}

TEST(RazLesson, ForgettingTwiceMendsInBetween) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.entry("one", "next", history_line(7, 0, 2500, 0) + NEVER_LINE);
  desk.write();
  desk.raz();
  desk.raz();
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK));
  MEND_FORGOTTEN(nullptr);
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK_HISTORY));
}

TEST(RazLesson, WhereTheNoteOfTheLinesCannotBeWrittenTheyAreErasedAndThatIsTold) {
  Record_desk desk;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.write();
  SCRIPT().answer = ANSWER_YES;
  std::filesystem::create_directory(".new_mertu_pending");
  EXPECT_EQ(desk.raz(), "cannot write file ./mertu_pending: File exists \n");
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK));
}

TEST(RazLesson, AWriteThatFailsIsTold) {
  Record_desk desk;
  SCRIPT().answer = ANSWER_YES;
  desk.word("one", "first", {3, 2, 2900, 2800});
  for (int filling = 0; filling < 30; filling++)
    desk.entry("one", "filling" + std::to_string(filling), BLANK_HISTORY);
  desk.word("one", "last", {3, 2, 2900, 2800});
  desk.write();
  signal(SIGXFSZ, SIG_IGN);
  struct rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  struct rlimit small = {(rlim_t)desk.places[31].second, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  std::string said = desk.raz();
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(said, "cannot write file ./IDX1/idx1_one: File too large \n");
  EXPECT_EQ(desk.log(), said);
  EXPECT_EQ(desk.idx1("one"), desk.with(0, BLANK + BLANK));
}
