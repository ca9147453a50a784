// A numbered lesson loaded: table, generated file, scores, ranks, growth.
#include "lesson/numbered_lesson.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits.h>

#include <algorithm>
#include <random>

#include "lesson/desk.h"

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

TEST(NumberedLesson, EveryEntryHasItsRecordAndItsStatistics) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRY(1) + HISTORY(3, 2, 2995, 2990) + HISTORY(1, 0, 2990, 0) +
                                 ENTRY(2) + NEVER() + HISTORY(0, 1, 0, 2999) + TRAILER());
  LOAD(&desk, 1);
  const Trf_posit &t = desk.table;
  EXPECT_EQ(t.nb_posit, 2);
  EXPECT_EQ(t.nbmx_posit, 10);
  EXPECT_THAT(ENTRIES_OF(t.QRcum_nb, 2), ElementsAre(3, 0));
  EXPECT_THAT(ENTRIES_OF(t.QRcum_nb0, 2), ElementsAre(3, 0));
  EXPECT_THAT(ENTRIES_OF(t.QRcum_nok, 2), ElementsAre(2, 0));
  EXPECT_THAT(ENTRIES_OF(t.QRcum_nok0, 2), ElementsAre(2, 0));
  EXPECT_THAT(ENTRIES_OF(t.QR_date_ok, 2), ElementsAre(2995, 0));
  EXPECT_THAT(ENTRIES_OF(t.QR_date_nok, 2), ElementsAre(2990, 0));
  EXPECT_THAT(ENTRIES_OF(t.RQcum_nb, 2), ElementsAre(1, 0));
  EXPECT_THAT(ENTRIES_OF(t.RQcum_nb0, 2), ElementsAre(1, 0));
  EXPECT_THAT(ENTRIES_OF(t.RQcum_nok, 2), ElementsAre(0, 1));
  EXPECT_THAT(ENTRIES_OF(t.RQcum_nok0, 2), ElementsAre(0, 1));
  EXPECT_THAT(ENTRIES_OF(t.RQ_date_ok, 2), ElementsAre(2990, 0));
  EXPECT_THAT(ENTRIES_OF(t.RQ_date_nok, 2), ElementsAre(0, 2999));
  std::string idx1 = desk.dir.read("IDX1/idx1_one.txt");
  std::string gene = desk.dir.read("idx1_gene");
  std::string first = "#mot1 *a1 10 * word ";
  std::string second = "#mot2 *a1 20 * word ";
  EXPECT_EQ(gene, first + "\n ./IDX1/idx1_one.txt * " +
                      std::to_string(idx1.find(first) + first.size() + 2) + " \n" + second +
                      "\n ./IDX1/idx1_one.txt * " +
                      std::to_string(idx1.find(second) + second.size() + 2) + " \n");
  EXPECT_THAT(ENTRIES_OF(t.posit, 2), ElementsAre(0, (long)gene.find(second)));
  EXPECT_EQ(desk.log(), "INIT_LESSON of lesson 1 done\n");
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
  EXPECT_EQ(desk.book.fp_gene, nullptr);
}

TEST(NumberedLesson, NeverAskedComesFirstInEachDirection) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRY(1) + HISTORY(3, 2, 2995, 2990) + NEVER() + ENTRY(2) + NEVER() +
                                 HISTORY(1, 0, 2990, 0) + ENTRY(3) + HISTORY(0, 1, 0, 2999) +
                                 HISTORY(0, 1, 0, 2999) + TRAILER());
  LOAD(&desk, 1);
  EXPECT_THAT(ENTRIES_OF(desk.table.QRord_posit, 3), ElementsAre(2, 3, 1));
  EXPECT_THAT(ENTRIES_OF(desk.table.RQord_posit, 3), ElementsAre(1, 3, 2));
  EXPECT_EQ(desk.table.QRcum_err[2], -1);
  EXPECT_EQ(desk.table.RQcum_err[1], -1);
}

TEST(NumberedLesson, OnlyQuestionToResponseCountsMissesAsKnown) {
  Desk desk;
  desk.write_idx1("one.txt",
                  ENTRY(1) + HISTORY(3, 2, 2995, 2990) + HISTORY(3, 2, 2995, 2990) + TRAILER());
  LOAD(&desk, 1);
  // 2 x 9 - 5 x 3 = 3 against 2 x 9 - 3 x 3 = 9; ageing 2 and bonus 3 in both.
  EXPECT_EQ(desk.table.QRcum_err[1], 8);
  EXPECT_EQ(desk.table.RQcum_err[1], 14);
}

TEST(NumberedLesson, CountsWhoseSumLeavesTheTypeAreHeld) {
  Desk desk;
  // 52 characters; a number that fills its field takes the first character of the next.
  std::string line = std::to_string(LONG_MAX) + " 010" + std::string(17, ' ') + " 02990 02990";
  desk.write_idx1("one.txt", ENTRY(1) + line + "\r\n" + NEVER() + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.QRcum_nb[1], LONG_MAX);
  EXPECT_EQ(desk.table.QRcum_nok[1], 10);
  // Known so often, the misses weigh nothing: ageing 5 and bonus 18 are left.
  EXPECT_EQ(desk.table.QRcum_err[1], 23);
}

TEST(NumberedLesson, OnlyQuestionToResponseHasAnEndMark) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(3) + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.QRord_posit[4], -1);
  EXPECT_EQ(desk.table.RQord_posit[4], 0);
}

TEST(NumberedLesson, AHeaderWithoutEntriesGivesAnEmptyTableAndFile) {
  for (const std::string &end : {TRAILER(), std::string()}) {
    Desk desk;
    desk.dir.write("idx1_gene", "left over");
    desk.write_idx1("one.txt", end);
    LOAD(&desk, 1);
    EXPECT_EQ(desk.table.nb_posit, 0);
    EXPECT_EQ(desk.table.nbmx_posit, 10);
    EXPECT_EQ(desk.table.QRord_posit[1], -1);
    EXPECT_TRUE(desk.dir.exists("idx1_gene"));
    EXPECT_EQ(desk.dir.read("idx1_gene"), "");
    EXPECT_EQ(desk.log(), "INIT_LESSON of lesson 1 done\n");
  }
}

TEST(NumberedLesson, TheCapacityGrowsFromTenToThirtyToFifty) {
  const int SIZES[][2] = {{9, 10}, {10, 30}, {29, 30}, {30, 50}, {49, 50}, {50, 70}};
  for (auto [nb, capacity] : SIZES) {
    Desk desk;
    desk.write_idx1("one.txt", ENTRIES(nb) + TRAILER());
    LOAD(&desk, 1);
    EXPECT_EQ(desk.table.nb_posit, nb);
    EXPECT_EQ(desk.table.nbmx_posit, capacity);
    for (int i = 1; i <= nb; i++)
      ASSERT_EQ(desk.table.QRcum_nb[i], i);
  }
}

TEST(NumberedLesson, TheSaveSlotAndTheSpareElementsAreInsideEveryArray) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(29) + TRAILER());
  LOAD(&desk, 1);
  COPY_SLOT(29, 30, &desk.table);
  desk.table.elem_nevez[34] = 1;
  desk.table.posit[34] = 1;
  EXPECT_EQ(desk.table.QRcum_nb[30], 29);
}

TEST(NumberedLesson, ElemNevezStartsAtZero) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(3) + TRAILER());
  LOAD(&desk, 1);
  desk.table.elem_nevez[2] = 5;
  LOAD(&desk, 1);
  EXPECT_THAT(FIRST_OF(desk.table.elem_nevez, 8), Each(0));
}

TEST(NumberedLesson, LinesBetweenTheRecordsAreSkipped) {
  Desk desk;
  desk.write_idx1("one.txt", "\r\nfree text\r\n" + ENTRIES(1) + "\r\n #not first\r\n\n" +
                                 ENTRIES(2) + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 3);
}

TEST(NumberedLesson, NothingIsReadBehindTheEndMark) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(1) + "see END_OF_FILE here\r\n" + ENTRIES(2));
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 1);
}

TEST(NumberedLesson, AnIndirectEntryTakesItsPlaceInTheLesson) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRY(1) + NEVER() + NEVER() + "##la maison *b2 x \r\n" + ENTRY(3) +
                                 NEVER() + NEVER() + TRAILER());
  desk.write_idx1("two.txt",
                  "#la maison *b2 40 * \r\n" + HISTORY(7, 0, 2990, 0) + NEVER() + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 3);
  EXPECT_EQ(desk.table.QRcum_nb[2], 7);
  std::string gene = desk.dir.read("idx1_gene");
  EXPECT_EQ((size_t)desk.table.posit[2], gene.find("#la maison *b2 40 * \n ./IDX1/idx1_two.txt *"));
  EXPECT_EQ((size_t)desk.table.posit[3], gene.find("#mot3"));
}

TEST(NumberedLesson, AnIndirectEntryThatIsNotFoundLeavesTheCountAlone) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(1) + "##le chien *b2 \r\n" + ENTRIES(1) + TRAILER());
  desk.write_idx1("two.txt", TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 2);
  EXPECT_EQ(desk.log(), "in file : ./IDX1/idx1_two.txt \n"
                        "INDIRECT_IDX1 no detection of ssd=##le chien * \n"
                        "INIT_LESSON of lesson 1 done\n");
}

TEST(NumberedLesson, IndirectEntriesGrowTheTableToo) {
  Desk desk;
  std::string records;
  for (int i = 0; i < 31; i++)
    records += "##la maison *b2 \r\n";
  desk.write_idx1("one.txt", records + ENTRIES(1) + TRAILER());
  desk.write_idx1("two.txt",
                  "#la maison *b2 40 * \r\n" + HISTORY(7, 0, 2990, 0) + NEVER() + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 32);
  EXPECT_EQ(desk.table.nbmx_posit, 50);
  EXPECT_EQ(desk.table.QRcum_nb[31], 7);
  EXPECT_EQ(desk.table.QRcum_nb[32], 1);
}

TEST(NumberedLesson, DamagedHistoryLinesAreLoggedAndTheirValuesUsed) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRY(1) + HISTORY(3, 2, 3001, 2990) +
                                 HISTORY(3, 2, 2995, 2990).substr(0, 51) + "\r\n" + TRAILER());
  LOAD(&desk, 1);
  EXPECT_THAT(ENTRIES_OF(desk.table.QRcum_nb, 1), ElementsAre(0));
  EXPECT_THAT(ENTRIES_OF(desk.table.QRcum_nok, 1), ElementsAre(2));
  EXPECT_THAT(ENTRIES_OF(desk.table.RQcum_nb, 1), ElementsAre(3));
  std::string line = "INIT_LESSON and CHECK_4LINTsome error in file : ./IDX1/idx1_one.txt \n";
  EXPECT_EQ(desk.log(), line + line + "INIT_LESSON of lesson 1 done\n");
}

TEST(NumberedLesson, TheEndMarkWhereAHistoryLineIsDueIsADamagedLine) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRY(1) + TRAILER() + NEVER() + ENTRIES(1) + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 2);
  EXPECT_THAT(desk.log(), HasSubstr("INIT_LESSON and CHECK_4LINTsome error in file"));
}

TEST(NumberedLesson, TheLoopStopsAfter9999PassesEvenIfTheFileGoesOn) {
  Desk desk;
  std::string blanks;
  for (int i = 0; i < 9996; i++)
    blanks += "\r\n";
  desk.write_idx1("one.txt", blanks + ENTRIES(5) + TRAILER());
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 3);
}

TEST(NumberedLesson, AHeaderInLine10000IsFound) {
  Desk desk;
  std::string blanks;
  for (int i = 0; i < 9999; i++)
    blanks += "\r\n";
  desk.dir.write("IDX1/idx1_one.txt", blanks + "#######\r\n" + ENTRIES(1));
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 1);
}

TEST(NumberedLesson, WithLessonZeroOnlyElemNevezIsRenewed) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(3) + TRAILER());
  LOAD(&desk, 1);
  desk.table.elem_nevez[0] = 4;
  desk.table.elem_nevez[3] = 4;
  desk.table.QRcum_nb[2] = 77;
  std::string log = desk.log();
  LOAD(&desk, 0);
  EXPECT_THAT(FIRST_OF(desk.table.elem_nevez, 8), Each(0));
  EXPECT_EQ(desk.table.nb_posit, 3);
  EXPECT_EQ(desk.table.QRcum_nb[2], 77);
  EXPECT_EQ(desk.log(), log);
}

TEST(NumberedLesson, BothOrderingsAreListedAsTrace) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(2) + TRAILER());
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  LOAD(&desk, 1);
  unsetenv("MERTU_TRACE");
  std::string listing = testing::internal::GetCapturedStdout();
  EXPECT_THAT(listing, HasSubstr("SORT_CLASSMENT QR rank=2 elem=2"));
  EXPECT_THAT(listing, HasSubstr("SORT_CLASSMENT RQ rank=1 elem=1"));
}

TEST(NumberedLesson, StreamsThatAreStillOpenAreClosed) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(1) + TRAILER());
  desk.book.fp_idx1 = fopen("IDX1/idx1_one.txt", "r");
  desk.book.fp_gene = fopen("idx1_gene", "w");
  int fds[] = {fileno(desk.book.fp_idx1), fileno(desk.book.fp_gene)};
  LOAD(&desk, 1);
  EXPECT_EQ(desk.table.nb_posit, 1);
  for (int fd : fds)
    EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

TEST(NumberedLesson, TheLessonNumberIsNotChanged) {
  Desk desk;
  desk.write_idx1("two.txt", ENTRIES(2) + TRAILER());
  int n = 2;
  INIT_LESSON(&n, &desk.book);
  EXPECT_EQ(n, 2);
  EXPECT_EQ(desk.table.nb_posit, 2);
}

TEST(NumberedLesson, TheNextLoadReplacesTheWholeTable) {
  Desk desk;
  desk.write_idx1("one.txt", ENTRIES(35) + TRAILER());
  desk.write_idx1("two.txt", ENTRIES(2) + TRAILER());
  LOAD(&desk, 1);
  LOAD(&desk, 2);
  EXPECT_EQ(desk.table.nb_posit, 2);
  EXPECT_EQ(desk.table.nbmx_posit, 10);
  EXPECT_EQ(desk.table.QRcum_nb[3], 0);
}

// One entry of a random idx1 file, as a plain reader of the format sees it.
struct Model_entry {
  long posit;
  long qr[4];
  long rq[4];
};

struct Model {
  std::string idx1;
  std::string gene;
  std::vector<Model_entry> entries;
};

// A history with at most a few answers, its dates as the format keeps them.
std::string random_history(std::mt19937 *chance, long *values) {
  for (int k = 0; k < 2; k++) {
    values[k] = (long)((*chance)() % 4);
    values[k + 2] = values[k] == 0 ? 0 : 2900 + (long)((*chance)() % 100);
  }
  return HISTORY(values[0], values[1], values[2], values[3]);
}

Model random_model(std::mt19937 *chance) {
  Model model;
  model.idx1 = HEADER("./IDX1/idx1_one.txt", "a1");
  int nb = (int)((*chance)() % 70);
  for (int i = 1; i <= nb; i++) {
    if ((*chance)() % 4 == 0)
      model.idx1 += "between\r\n";
    Model_entry entry = {};
    std::string name = "#mot" + std::to_string(i) + std::string((*chance)() % 60, 'x') + " *a1 7 *";
    model.idx1 += name + "\r\n";
    entry.posit = (long)model.gene.size();
    model.gene += name + "\n ./IDX1/idx1_one.txt * " + std::to_string(model.idx1.size()) + " \n";
    model.idx1 += random_history(chance, entry.qr) + random_history(chance, entry.rq);
    model.entries.push_back(entry);
  }
  model.idx1 += TRAILER();
  return model;
}

std::vector<int> model_ranks(const std::vector<long> &errs) {
  std::vector<int> ranks;
  for (size_t i = 1; i <= errs.size(); i++)
    ranks.push_back((int)i);
  auto weight = [&](int i) { return errs[(size_t)i - 1] < 0 ? 999L : errs[(size_t)i - 1]; };
  std::stable_sort(ranks.begin(), ranks.end(), [&](int a, int b) { return weight(a) > weight(b); });
  return ranks;
}

TEST(NumberedLesson, AgreesWithAPlainModelOnRandomIdx1Files) {
  std::mt19937 chance(5);
  for (int round = 0; round < 60; round++) {
    Desk desk;
    Model model = random_model(&chance);
    desk.dir.write("IDX1/idx1_one.txt", model.idx1);
    LOAD(&desk, 1);
    int nb = (int)model.entries.size();
    ASSERT_EQ(desk.table.nb_posit, nb);
    ASSERT_EQ(desk.dir.read("idx1_gene"), model.gene);
    std::vector<long> qr_errs;
    std::vector<long> rq_errs;
    for (int i = 1; i <= nb; i++) {
      const Model_entry &entry = model.entries[(size_t)i - 1];
      ASSERT_EQ(desk.table.posit[i], entry.posit);
      ASSERT_EQ(desk.table.QRcum_nb[i], entry.qr[0]);
      ASSERT_EQ(desk.table.QR_date_nok[i], entry.qr[3]);
      ASSERT_EQ(desk.table.RQcum_nok[i], entry.rq[1]);
      ASSERT_EQ(desk.table.RQ_date_ok[i], entry.rq[2]);
      qr_errs.push_back(FCT_ERROR(&desk.weights, entry.qr[0] + entry.qr[1], entry.qr[1], 3000,
                                  entry.qr[2], entry.qr[3]));
      rq_errs.push_back(
          FCT_ERROR(&desk.weights, entry.rq[0], entry.rq[1], 3000, entry.rq[2], entry.rq[3]));
    }
    ASSERT_EQ(ENTRIES_OF(desk.table.QRcum_err, nb), qr_errs);
    ASSERT_EQ(ENTRIES_OF(desk.table.RQcum_err, nb), rq_errs);
    ASSERT_EQ(ENTRIES_OF(desk.table.QRord_posit, nb), model_ranks(qr_errs));
    ASSERT_EQ(ENTRIES_OF(desk.table.RQord_posit, nb), model_ranks(rq_errs));
  }
}

} // namespace
