// Tests of the comparison of files and memory.
#include "db/verify_lesson.h"

#include "record_desk.h"

using testing::HasSubstr;

namespace {

// Verifies; returns what was said.
std::string verify(Record_desk *desk) {
  Owned_stream fp = OPEN_STREAM(CURRENT_GENE_NAME(desk->book.ilesson), "r");
  return Record_desk::said([&] { VERIF_LESSON(fp.get(), &desk->book); });
}

} // namespace

TEST(VerifLesson, EqualCountsAreLoggedAndNothingIsWritten) {
  Record_desk desk;
  desk.word("one", "mot", {3, 2, 2900, 2800}, {1, 4, 2000, 2100});
  desk.word("two", "tag", NEVER_ASKED);
  desk.write();
  EXPECT_EQ(verify(&desk), "");
  EXPECT_EQ(desk.log(), "VERIF_LESSON 1 DONE  nb_errors=0\n");
  EXPECT_EQ(desk.idx1("one"), desk.files["one"] + idx1_trailer(0));
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
}

TEST(VerifLesson, EachDifferingCountIsOneErrorAndEndsTheProgram) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800}, {1, 4, 2000, 2100});
  int k = desk.word("one", "next", {3, 2, 2900, 2800});
  desk.table.QRcum_nb[i] = 4;
  desk.table.QRcum_nok[i] = 1;
  desk.table.RQcum_nb[i] = 2;
  desk.table.RQcum_nok[i] = 5;
  desk.table.RQcum_nok[k] = 1;
  desk.write();
  ENDS_WITH_STATUS(verify(&desk), 1, "");
  EXPECT_EQ(desk.log(), "VERIF_LESSON 1 DONE  nb_errors=5\nVERIF_LESSON STOP  nb_errors > 0\n");
  Owned_stream fp = OPEN_STREAM("idx1_gene", "r");
  ENDS_WITH_STATUS(VERIF_LESSON(fp.get(), &desk.book), 1, "^VERIF_LESSON STOP  nb_errors > 0\n");
}

TEST(VerifLesson, DaysAndScoresAreNotCompared) {
  Record_desk desk;
  int i = desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.table.QR_date_ok[i] = 1;
  desk.table.QR_date_nok[i] = 1;
  desk.table.QRcum_err[i] = 77;
  desk.write();
  verify(&desk);
  EXPECT_EQ(desk.log(), "VERIF_LESSON 1 DONE  nb_errors=0\n");
}

TEST(VerifLesson, AfterDay10000TheProgramEndsWithStatus10) {
  Record_desk desk;
  desk.write();
  SET_PRESENT_DAY(2028, 5, 19);
  verify(&desk);
  SET_PRESENT_DAY(2028, 5, 20);
  ENDS_WITH_STATUS(VERIF_LESSON(nullptr, &desk.book), 10, "VERIF_LESSON error 10 \n");
  EXPECT_THAT(desk.log(), HasSubstr("VERIF_LESSON error 10 \n"));
}

TEST(VerifLesson, ACountAbove10000EndsTheProgramWithStatus1) {
  for (int which = 0; which < 4; which++) {
    Record_desk desk;
    int i = desk.word("one", "mot", NEVER_ASKED);
    long *counts[] = {desk.table.QRcum_nb, desk.table.QRcum_nok, desk.table.RQcum_nb,
                      desk.table.RQcum_nok};
    counts[which][i] = 10001;
    desk.write();
    Owned_stream fp = OPEN_STREAM("idx1_gene", "r");
    ENDS_WITH_STATUS(VERIF_LESSON(fp.get(), &desk.book), 1, "^VERIF_LESSON error 1 \n");
    EXPECT_EQ(desk.log(), "VERIF_LESSON error 1 \n");
  }
}

TEST(VerifLesson, ACountOf10000IsNoFault) {
  Record_desk desk;
  desk.word("one", "mot", {10000, 10000, 2900, 2800}, {10000, 10000, 2000, 2100});
  desk.write();
  verify(&desk);
  EXPECT_EQ(desk.log(), "VERIF_LESSON 1 DONE  nb_errors=0\n");
}

TEST(VerifLesson, TheStreamStaysOpenAndAtItsEnd) {
  Record_desk desk;
  desk.book.ilesson = 0;
  desk.word("one", "mot", {3, 2, 2900, 2800});
  desk.word("one", "next", {3, 2, 2900, 2800});
  desk.write();
  // As a composition holds it: written, read again, written on.
  Owned_stream fp = OPEN_STREAM("idx2_gene", "w+");
  for (const std::string &record : desk.lesson)
    fputs(record.c_str(), fp.get());
  long end = ftell(fp.get());
  VERIF_LESSON(fp.get(), &desk.book);
  EXPECT_EQ(ftell(fp.get()), end);
  fputs("more\n", fp.get());
  fp.reset();
  EXPECT_EQ(desk.dir.read("idx2_gene"), desk.lesson[0] + desk.lesson[1] + "more\n");
}

TEST(VerifLesson, RecordMessagesStandUnderItsOwnName) {
  Record_desk desk;
  desk.word("one", "first", NEVER_ASKED);
  desk.lesson[0].resize(desk.lesson[0].find('\n') + 1);
  desk.write();
  std::string texts = "VERIF_LESSON error 1 stop 2 \n"
                      "Error no detection of values icont=1 stop \n"
                      "in file : ./idx1_gene \n";
  Owned_stream fp = OPEN_STREAM("idx1_gene", "r");
  ENDS_WITH_STATUS(VERIF_LESSON(fp.get(), &desk.book), 2, texts);
  EXPECT_EQ(desk.log(), texts);
}

TEST(VerifLesson, AMissingOffsetEndsTheProgramWithStatus1) {
  Record_desk desk;
  desk.word("one", "first", NEVER_ASKED);
  desk.lesson[0] = desk.lesson[0].substr(0, desk.lesson[0].find('\n')) + "\n ./IDX1/idx1_one\n";
  desk.write();
  Owned_stream fp = OPEN_STREAM("idx1_gene", "r");
  ENDS_WITH_STATUS(VERIF_LESSON(fp.get(), &desk.book), 1, "RECORD_FILE error cannot extract nc1 ");
}

TEST(VerifLesson, AFaultyLineIsLoggedAndNeitherBackedUpNorTold) {
  Record_desk desk;
  std::string damaged = history_line(3, 2, 2900, 2800).substr(1);
  desk.known(desk.take(desk.entry("one", "mot", damaged + NEVER_LINE)), {3, 2, 2900, 2800});
  desk.write();
  verify(&desk);
  EXPECT_EQ(desk.log(), "VERIF_LESSON  file : ./IDX1/idx1_one  needs regeneration\n"
                        "VERIF_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_one "
                        "of lesson : a1 \nVERIF_LESSON 1 DONE  nb_errors=0\n");
  EXPECT_FALSE(desk.dir.exists("IDX1/cpy_idx1_one"));
  EXPECT_TRUE(SCRIPT().told.empty());
}

TEST(VerifLesson, AnIndexThatCannotBeOpenedCountsAsNeverAsked) {
  Record_desk desk;
  desk.word("one", "first", NEVER_ASKED);
  desk.word("one", "second", NEVER_ASKED);
  desk.write();
  std::filesystem::remove(Record_desk::path("one"));
  std::string told = "VERIF_LESSON cannot open file ./IDX1/idx1_one \n";
  EXPECT_EQ(verify(&desk), told);
  EXPECT_EQ(desk.log(), told + "VERIF_LESSON 1 DONE  nb_errors=0\n");
  desk.table.QRcum_nok[1] = 1;
  ENDS_WITH_STATUS(verify(&desk), 1, "");
}

TEST(VerifLesson, AMissingLessonFileIsTold) {
  Record_desk desk;
  EXPECT_EQ(verify(&desk), "VERIF_LESSON cannot open file ./idx1_gene \n");
}
