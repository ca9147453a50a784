// An entry that stands for one of another dictionary: found, not found, damaged.
#include "lesson/indirect_entry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lesson/desk.h"

namespace {

// A desk with an empty table and an open generated file; dictionary two.txt owns "la maison".
struct Indirect_desk : Desk {
  int icont = 0;
  int capacity = 10;
  FILE *fp_gene;

  Indirect_desk() : fp_gene(fopen("gene", "w")) {
    ALLOCATE_POSIT(capacity, &table);
    write_idx1("two.txt", "#le chat *b2 10 * the cat \r\n" + NEVER() + NEVER() +
                              "#la maison *b2 40 * the house \r\n" + HISTORY(3, 2, 2995, 2990) +
                              HISTORY(1, 0, 2990, 0) + TRAILER());
  }
  ~Indirect_desk() {
    fclose(fp_gene);
  }
  std::string append(std::string line) {
    INDIRECT_IDX1(fp_gene, &book, line.data(), &icont, &capacity);
    fflush(fp_gene);
    return line.c_str();
  }
};

TEST(IndirectEntry, IsAppendedWithTheHistoryOfItsOwner) {
  Indirect_desk desk;
  fputs("before\n", desk.fp_gene);
  desk.icont = 4;
  EXPECT_EQ(desk.append("##la maison *b2 whatever"), "##la maison *");
  EXPECT_EQ(desk.icont, 5);
  EXPECT_EQ(desk.capacity, 10);
  const Trf_posit &t = desk.table;
  EXPECT_EQ(t.posit[5], 7);
  EXPECT_EQ(t.QRord_posit[5], 5);
  EXPECT_EQ(t.RQord_posit[5], 5);
  EXPECT_EQ(t.QRcum_nb[5], 3);
  EXPECT_EQ(t.QRcum_nok0[5], 2);
  EXPECT_EQ(t.QR_date_ok[5], 2995);
  EXPECT_EQ(t.QR_date_nok[5], 2990);
  EXPECT_EQ(t.RQcum_nb0[5], 1);
  EXPECT_EQ(t.RQ_date_ok[5], 2990);
  std::string idx1 = desk.dir.read("IDX1/idx1_two.txt");
  std::string name = "#la maison *b2 40 * the house ";
  size_t history = idx1.find(name) + name.size() + 2;
  EXPECT_EQ(desk.dir.read("gene"),
            "before\n" + name + "\n ./IDX1/idx1_two.txt * " + std::to_string(history) + " \n");
  EXPECT_EQ(desk.log(), "");
}

TEST(IndirectEntry, GrowsTheTableWhenTheCapacityIsReached) {
  Indirect_desk desk;
  desk.icont = 9;
  desk.append("##la maison *b2");
  EXPECT_EQ(desk.icont, 10);
  EXPECT_EQ(desk.capacity, 30);
  EXPECT_EQ(desk.table.nbmx_posit, 30);
}

TEST(IndirectEntry, AnAliasEndsAtABlankOrTheEndOfTheLine) {
  Indirect_desk desk;
  desk.append("##la maison *b2");
  desk.append("##la maison *b2 x");
  desk.append("##la maison *b2x x");
  desk.append("##la maison *b2*x");
  EXPECT_EQ(desk.icont, 2);
}

TEST(IndirectEntry, WithoutAStarNothingIsAdded) {
  Indirect_desk desk;
  EXPECT_EQ(desk.append("##la maison"), "##la maison");
  EXPECT_EQ(desk.append(""), "");
  EXPECT_EQ(desk.icont, 0);
  EXPECT_EQ(desk.log(), "");
}

TEST(IndirectEntry, AnUnknownAliasIsPassedOverInSilence) {
  Indirect_desk desk;
  desk.append("##la maison *zz");
  desk.append("##la maison *");
  desk.append("##la maison * b2");
  EXPECT_EQ(desk.icont, 0);
  EXPECT_EQ(desk.log(), "");
  EXPECT_EQ(desk.dir.read("gene"), "");
}

TEST(IndirectEntry, AMissingIdx1FileIsPassedOverInSilence) {
  Indirect_desk desk;
  desk.append("##la maison *c3");
  EXPECT_EQ(desk.icont, 0);
  EXPECT_EQ(desk.log(), "");
}

TEST(IndirectEntry, ADictionaryWithoutTheEntryGivesTwoLogLines) {
  Indirect_desk desk;
  desk.append("##le chien *b2 the dog");
  EXPECT_EQ(desk.icont, 0);
  EXPECT_EQ(desk.log(), "in file : ./IDX1/idx1_two.txt \n"
                        "INDIRECT_IDX1 no detection of ssd=##le chien * \n");
  EXPECT_EQ(desk.dir.read("gene"), "");
}

TEST(IndirectEntry, TheNameIsFoundBehindBlanksAndInsideALine) {
  Indirect_desk desk;
  desk.write_idx1("two.txt", "x #la maison *b2 1 *\r\n   #un #la maison *b2 40 * \r\n" + NEVER() +
                                 NEVER() + TRAILER());
  desk.append("##la maison *b2");
  EXPECT_EQ(desk.icont, 1);
  EXPECT_EQ(desk.dir.read("gene").substr(0, 25), "#un #la maison *b2 40 * \n");
}

TEST(IndirectEntry, ANameThatOnlyEndsAlikeIsNoMatch) {
  Indirect_desk desk;
  desk.append("##maison *b2");
  EXPECT_EQ(desk.icont, 0);
}

TEST(IndirectEntry, ADoubleLineOfTheOtherDictionaryIsNoMatch) {
  Indirect_desk desk;
  desk.write_idx1("two.txt", "##la maison *c3 \r\n" + TRAILER());
  desk.append("##la maison *b2");
  EXPECT_EQ(desk.icont, 0);
}

TEST(IndirectEntry, TheSearchEndsAtTheEndMark) {
  Indirect_desk desk;
  desk.write_idx1("two.txt", TRAILER() + "#la maison *b2 40 * \r\n" + NEVER() + NEVER());
  desk.append("##la maison *b2");
  EXPECT_EQ(desk.icont, 0);
}

TEST(IndirectEntry, TheSearchEndsAfter9999Lines) {
  std::string record = "#la maison *b2 40 * \r\n" + NEVER() + NEVER();
  for (int nb : {9996, 9997}) { // and the two lines of the header
    Indirect_desk desk;
    std::string blanks;
    for (int i = 0; i < nb; i++)
      blanks += "\r\n";
    desk.write_idx1("two.txt", blanks + record + TRAILER());
    desk.append("##la maison *b2");
    EXPECT_EQ(desk.icont, nb == 9996 ? 1 : 0);
  }
}

TEST(IndirectEntry, DamagedHistoryLinesAreLoggedAndTheirValuesUsed) {
  Indirect_desk desk;
  desk.write_idx1("two.txt", "#la maison *b2 40 * \r\n" + HISTORY(3, 2, 3001, 2990) + "x\r\n");
  desk.append("##la maison *b2");
  EXPECT_EQ(desk.icont, 1);
  EXPECT_EQ(desk.table.QRcum_nb[1], 0);
  EXPECT_EQ(desk.table.QRcum_nok[1], 2);
  std::string line = "INDIRECT_IDX1 and CHECK_4LINTsome error in file : ./IDX1/idx1_two.txt \n";
  EXPECT_EQ(desk.log(), line + line);
}

TEST(IndirectEntryDeathTest, AMissingQuestionToResponseLineEndsTheProgramWithStatus2) {
  Indirect_desk desk;
  desk.icont = 6;
  desk.write_idx1("two.txt", "#la maison *b2 40 * \r\n");
  ENDS_WITH_STATUS(desk.append("##la maison *b2"), 2,
                   "INDIRECT_IDX1 Error no detection of values icont=7 stop \n"
                   "in file : ./IDX1/idx1_two.txt \n");
  EXPECT_EQ(desk.log(), "INDIRECT_IDX1 Error no detection of values icont=7 stop \n"
                        "in file : ./IDX1/idx1_two.txt \n");
}

TEST(IndirectEntryDeathTest, AMissingResponseToQuestionLineEndsTheProgramWithStatus3) {
  Indirect_desk desk;
  desk.write_idx1("two.txt", "#la maison *b2 40 * \r\n" + NEVER());
  ENDS_WITH_STATUS(desk.append("##la maison *b2"), 3,
                   "INDIRECT_IDX1 Error no detection of values icont=1 stop \n"
                   "in file : ./IDX1/idx1_two.txt \n");
  EXPECT_EQ(desk.log(), "INDIRECT_IDX1 Error no detection of values icont=1 stop \n"
                        "in file : ./IDX1/idx1_two.txt \n");
}

} // namespace
