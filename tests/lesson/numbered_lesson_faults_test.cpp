// A numbered lesson that is refused, that ends the program, or that any bytes may make up.
#include "lesson/numbered_lesson.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "lesson/desk.h"
#include "score/check_order.h"

namespace {

// A refused lesson: an empty, usable table, and nothing open.
void expect_refused(const Desk &desk, const std::string &path) {
  EXPECT_EQ(desk.log(), "INIT_LESSON cannot open file " + path + " \n");
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.table.QRord_posit[1], -1);
  EXPECT_NE(desk.table.elem_nevez, nullptr);
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
  EXPECT_EQ(desk.book.fp_gene, nullptr);
}

TEST(NumberedLesson, IsRefusedWithoutItsIdx1File) {
  Desk desk;
  LOAD(&desk, 1);
  expect_refused(desk, "./IDX1/idx1_one.txt");
}

TEST(NumberedLesson, IsRefusedWithoutItsDictionaryAtThePressThatStartsIt) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(2) + TRAILER());
  unlink("words/one.txt");
  desk.book.start_lesson = 2;
  LOAD(&desk, 1);
  expect_refused(desk, "words/one.txt");
}

TEST(NumberedLesson, ALoadByItselfNeedsTheIdx1FileAlone) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(2) + TRAILER());
  unlink("words/one.txt");
  LOAD(&desk, 1);
  EXPECT_EQ(desk.log(), "INIT_LESSON of lesson 1 done\n");
  EXPECT_EQ(desk.table.nb_posit, 2);
}

TEST(NumberedLesson, IsRefusedWhereTheGeneratedFileCannotBeOpened) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(2) + TRAILER());
  mkdir("idx1_gene", 0777);
  LOAD(&desk, 1);
  expect_refused(desk, "./idx1_gene");
}

TEST(NumberedLesson, IsRefusedWhereTheGeneratedFileCannotBeWrittenWhole) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(200) + TRAILER());
  ASSERT_EQ(symlink("/dev/full", "idx1_gene"), 0);
  LOAD(&desk, 1);
  expect_refused(desk, "./idx1_gene");
}

TEST(NumberedLesson, ASmallGeneratedFileIsCheckedWhenItIsClosed) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(1) + TRAILER());
  ASSERT_EQ(symlink("/dev/full", "idx1_gene"), 0);
  LOAD(&desk, 1);
  expect_refused(desk, "./idx1_gene");
}

TEST(NumberedLesson, IsRefusedWhereTheRegistryHasNoSuchNumber) {
  for (int n : {-1, 4}) {
    Desk desk;
    LOAD(&desk, n);
    expect_refused(desk, "");
  }
}

TEST(NumberedLesson, ARefusedLessonReplacesTheOneBefore) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(15) + TRAILER());
  LOAD(&desk, 1);
  LOAD(&desk, 2);
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.table.nbmx_posit, 10);
}

TEST(NumberedLessonDeathTest, AFileWithoutItsHeaderEndsTheProgramWithStatus1) {
  Desk desk;
  desk.dir.write("IDX1/idx1_one.txt", "first line\r\n" + ENTRIES(2) + " #######\r\n");
  ENDS_WITH_STATUS(LOAD(&desk, 1), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_one.txt \n");
  EXPECT_EQ(desk.log(), "Error no detection of ####### stop \nn file : ./IDX1/idx1_one.txt \n");
}

TEST(NumberedLessonDeathTest, AHeaderBehindLine10000EndsTheProgramWithStatus1) {
  Desk desk;
  std::string blanks;
  for (int i = 0; i < 10000; i++)
    blanks += "\r\n";
  desk.dir.write("IDX1/idx1_one.txt", blanks + "#######\r\n" + ENTRIES(1));
  ENDS_WITH_STATUS(LOAD(&desk, 1), 1, "Error no detection of ####### stop \n");
}

TEST(NumberedLessonDeathTest, AnEmptyIdx1FileEndsTheProgramWithStatus1) {
  Desk desk;
  desk.dir.write("IDX1/idx1_one.txt", "");
  ENDS_WITH_STATUS(LOAD(&desk, 1), 1, "Error no detection of ####### stop \n");
}

TEST(NumberedLessonDeathTest, AMissingQuestionToResponseLineEndsTheProgramWithStatus2) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(2) + ENTRY(3));
  ENDS_WITH_STATUS(LOAD(&desk, 1), 2,
                   "Error no detection of values icont=3 stop \nin file : ./IDX1/idx1_one.txt \n");
  EXPECT_EQ(desk.log(),
            "Error no detection of values icont=3 stop \nin file : ./IDX1/idx1_one.txt \n");
}

TEST(NumberedLessonDeathTest, AMissingResponseToQuestionLineEndsTheProgramWithStatus3) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRY(1) + NEVER());
  ENDS_WITH_STATUS(LOAD(&desk, 1), 3,
                   "Error no detection of values icont=1 stop \nin file : ./IDX1/idx1_one.txt \n");
  EXPECT_EQ(desk.log(),
            "Error no detection of values icont=1 stop \nin file : ./IDX1/idx1_one.txt \n");
}

// A load of a file of any bytes ends in a sound table, or the program at a missing history line.
void load_any_bytes(Desk *desk) {
  LOAD(desk, 1);
  const Trf_posit &t = desk->table;
  bool sound = t.nb_posit < t.nbmx_posit && t.QRord_posit[t.nb_posit + 1] == -1;
  VERIF_CLASSMENT(&desk->book);
  exit(sound ? 0 : 99);
}

bool sound_end(int status) {
  int code = WIFEXITED(status) ? WEXITSTATUS(status) : 99;
  return code == 0 || code == 2 || code == 3;
}

TEST(NumberedLessonDeathTest, AnyBytesBehindAHeaderDoNoHarm) {
  std::mt19937 chance(6);
  // The last one reads as the end of the file; every other round does without it.
  const std::string PIECES[] = {"#",
                                "##",
                                "*",
                                " ",
                                "\r\n",
                                "\n",
                                "\r",
                                "\t",
                                "b2",
                                "##x *b2",
                                "\xE9",
                                "\xC3\xA9",
                                "12;",
                                "; ",
                                "-",
                                ".",
                                "99999",
                                "x",
                                std::string(1, '\0'),
                                "\xFF"};
  for (int round = 0; round < 100; round++) {
    Desk desk;
    std::string bytes;
    for (int i = 0; i < 400; i++)
      bytes += PIECES[chance() % (std::size(PIECES) - (size_t)(round % 2))];
    desk.write_idx1("one.txt", bytes + "\r\n\r\nx\r\nx\r\n" + TRAILER());
    desk.write_idx1("two.txt", "#x *b2 1 *\r\n" + bytes + "\r\n\r\nx\r\nx\r\n" + TRAILER());
    EXPECT_EXIT(load_any_bytes(&desk), sound_end, "");
  }
}

} // namespace
