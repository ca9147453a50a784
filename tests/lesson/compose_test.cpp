// The loop of the composed lessons: which dictionaries, which lines, the table, the ends.
#include "lesson/compose.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lesson/composed_desk.h"

namespace {

bool keeps_all(const Trf_side &, const Trf_side &, int, long) {
  return true;
}

bool keeps_known(const Trf_side &asked, const Trf_side &, int place, long) {
  return asked.nb[place] > 0;
}

const Trf_recipe ALL = {"ALL", {"QR ", "RQ ", ""}, "w", true, false, keeps_all};
const Trf_recipe KNOWN = {"KNOWN", {"QR ", "RQ ", ""}, "w+", true, false, keeps_known};
const Trf_recipe TWENTY = {"TWENTY", {"QR ", "RQ ", ""}, "w", false, false, keeps_all};

// A whole composition. Returns the number of the last dictionary begun.
int composed(const Trf_recipe *recipe, Composed_desk *desk, const char *ss_tag = nullptr) {
  Trf_composition composition(recipe, ss_tag, &desk->book);
  EXPECT_TRUE(BEGIN_COMPOSITION(&composition));
  COLLECT_ENTRIES(&composition);
  SCORE_ENTRIES(&composition);
  EXPECT_TRUE(END_COMPOSITION(&composition));
  return composition.nb_begun;
}

TEST(Compose, ADictionaryRegisteredTwiceIsVisitedOnce) {
  Composed_desk desk;
  desk.set_list("words/one.txt words/one.txt three.txt ", 3);
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 a1 c3 ");
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 2) + TRAILER());
  desk.write_idx1("three.txt", NEW_WORDS_OF("three", 1) + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"one1 ", "one2 ", "three1 "}));
}

TEST(Compose, ADictionaryWithoutAnAliasIsNotVisited) {
  Composed_desk desk;
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 ");
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 1) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 1) + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"one1 "}));
  EXPECT_EQ(desk.log(), "");
}

TEST(Compose, OnlyTheLessonsOfTheBookAreVisited) {
  Composed_desk desk;
  desk.book.nbt_lesson = 1;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 1) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 1) + TRAILER());
  EXPECT_EQ(composed(&ALL, &desk), 1);
  EXPECT_EQ(desk.table.nb_posit, 1);
}

TEST(Compose, AnIndexThatCannotBeOpenedIsSkippedWithALineInTheLog) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 1) + TRAILER());
  desk.write_idx1("three.txt", NEW_WORDS_OF("three", 1) + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.log(), "cannot open file ./IDX1/idx1_two.txt, skipped \n");
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"one1 ", "three1 "}));
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
}

TEST(Compose, AnIndexWithoutHeaderEndsTheProgram) {
  Composed_desk desk;
  desk.dir.write("IDX1/idx1_one.txt", "no header\r\n");
  ENDS_WITH_LOG(desk, composed(&ALL, &desk), 1,
                "Error no detection of ####### stop \nn file : ./IDX1/idx1_one.txt \n");
  ENDS_WITH_STATUS(composed(&ALL, &desk), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_one.txt \n");
}

TEST(Compose, AnEntryWithoutItsFirstLineEndsTheProgram) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 2) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 1) + "#cut *b2 10 * \r\n");
  const char *text = "Error no detection of values icont=2 stop \nin file : ./IDX1/idx1_two.txt \n";
  ENDS_WITH_LOG(desk, composed(&ALL, &desk), 2, text);
  ENDS_WITH_STATUS(composed(&ALL, &desk), 2, text);
}

TEST(Compose, AnEntryWithoutItsSecondLineEndsTheProgram) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 2) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 1) + "#cut *b2 10 * \r\n" + NEVER());
  const char *text = "Error no detection of values icont=2 stop \nin file : ./IDX1/idx1_two.txt \n";
  ENDS_WITH_LOG(desk, composed(&ALL, &desk), 3, text);
  ENDS_WITH_STATUS(composed(&ALL, &desk), 3, text);
}

TEST(Compose, TheNumberOfACutCandidateDoesNotCountTheRejected) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 5) + "#cut *a1 10 * \r\n");
  ENDS_WITH_STATUS(composed(&KNOWN, &desk), 2, "values icont=1 stop");
}

TEST(Compose, DoubleLinesNeverEnter) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", "##one1 *b2 \r\n" + NEW_WORDS_OF("one", 1) + "## two *b2 \r\n" +
                                 RECORD_OF("last", NEVER(), NEVER()) + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"one1 ", "last "}));
}

TEST(Compose, LinesWithoutAMarkArePassedOver) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", "stray\r\n\r\n" + NEW_WORDS_OF("one", 1) + "stray\r\n" + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"one1 "}));
}

TEST(Compose, NothingBehindTheEndOfTheFileIsTaken) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 1) + TRAILER() + NEW_WORDS_OF("behind", 1));
  composed(&ALL, &desk);
  EXPECT_EQ(desk.table.nb_posit, 1);
}

// The header has two lines; with `nb` further ones the next is line nb + 3.
int entries_behind_lines(int nb) {
  Composed_desk desk;
  desk.write_empty();
  std::string records;
  for (int i = 0; i < nb; i++)
    records += "-\r\n";
  desk.write_idx1("one.txt", records + NEW_WORDS_OF("one", 2) + TRAILER());
  composed(&ALL, &desk);
  return desk.table.nb_posit;
}

TEST(Compose, TheHeaderCountsAmongTheTenThousandLinesAndHistoriesDoNot) {
  EXPECT_EQ(entries_behind_lines(9996), 2);
  EXPECT_EQ(entries_behind_lines(9997), 1);
  EXPECT_EQ(entries_behind_lines(9998), 0);
}

TEST(Compose, ADictionaryOnceBegunIsReadToItsEnd) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 19) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 60) + TRAILER());
  EXPECT_EQ(composed(&ALL, &desk), 2);
  EXPECT_EQ(desk.table.nb_posit, 79);
  EXPECT_EQ(desk.log(), "");
}

TEST(Compose, TheTableGrowsWithTheEntriesKept) {
  Composed_desk desk;
  desk.write_empty();
  std::string records;
  for (int i = 1; i <= 60; i++)
    records +=
        RECORD_OF("one" + std::to_string(i), HISTORY(i, 1, 2900, 2800), HISTORY(2 * i, 0, 1, 0));
  desk.write_idx1("one.txt", records + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.table.nbmx_posit, 65);
  for (int i = 1; i <= 60; i++) {
    EXPECT_EQ(desk.table.QRcum_nb[i], i);
    EXPECT_EQ(desk.table.RQcum_nb[i], 2 * i);
    EXPECT_EQ(desk.table.QRord_posit[i], i);
    EXPECT_EQ(desk.table.RQord_posit[i], i);
    EXPECT_EQ(desk.question_at(i), "one" + std::to_string(i) + " ");
  }
}

TEST(Compose, TheCapacityIsTwentyFiveAndTwentyMoreWhereItIsReached) {
  for (auto [nb, capacity] : {std::pair(24, 25), std::pair(25, 45), std::pair(44, 45)}) {
    Composed_desk desk;
    desk.write_empty();
    desk.write_idx1("one.txt", NEW_WORDS_OF("one", nb) + TRAILER());
    composed(&ALL, &desk);
    EXPECT_EQ(desk.table.nbmx_posit, capacity) << nb;
  }
}

TEST(Compose, TwentyEntriesAreEnoughEvenInTheMiddleOfADictionary) {
  Composed_desk desk;
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 19) + TRAILER());
  desk.write_idx1("two.txt", NEW_WORDS_OF("two", 3) + TRAILER());
  EXPECT_EQ(composed(&TWENTY, &desk), 2);
  EXPECT_EQ(desk.table.nb_posit, 20);
  EXPECT_EQ(desk.questions().back(), "two1 ");
}

TEST(Compose, TheRecordNamesTheIndexAndTheOffsetOfTheFirstHistoryLine) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("two.txt", RECORD_OF("mot", NEVER(), NEVER()) + TRAILER());
  composed(&ALL, &desk);
  size_t offset = desk.dir.read("IDX1/idx1_two.txt").find(NEVER());
  EXPECT_EQ(desk.gene(),
            "#mot *a1 10 * word \n ./IDX1/idx1_two.txt * " + std::to_string(offset) + " \n");
  EXPECT_EQ(desk.table.posit[1], 0);
}

TEST(Compose, EveryValueOfBothHistoriesStandsInTheTable) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt",
                  RECORD_OF("mot", HISTORY(3, 4, 2500, 2600), HISTORY(5, 6, 2700, 2800)) +
                      TRAILER());
  composed(&ALL, &desk);
  for (int sens : {1, 2}) {
    Trf_side side = SIDE_OF_TABLE(sens, &desk.table);
    EXPECT_EQ(side.nb[1], 2 * sens + 1);
    EXPECT_EQ(side.nb0[1], 2 * sens + 1);
    EXPECT_EQ(side.nok[1], 2 * sens + 2);
    EXPECT_EQ(side.nok0[1], 2 * sens + 2);
    EXPECT_EQ(side.date_ok[1], 2300 + 200 * sens);
    EXPECT_EQ(side.date_nok[1], 2400 + 200 * sens);
  }
}

TEST(Compose, ScoresCountTheKnownAnswersAloneInBothDirections) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt",
                  RECORD_OF("asked", HISTORY(3, 4, 2999, 2998), HISTORY(3, 4, 2999, 2998)) +
                      RECORD_OF("never", NEVER(), NEVER()) + TRAILER());
  composed(&ALL, &desk);
  long score = FCT_ERROR(&desk.weights, 3, 4, 3000, 2999, 2998);
  ASSERT_NE(score, FCT_ERROR(&desk.weights, 7, 4, 3000, 2999, 2998));
  EXPECT_EQ(desk.table.QRcum_err[1], score);
  EXPECT_EQ(desk.table.RQcum_err[1], score);
  EXPECT_EQ(desk.table.QRcum_err[2], -1);
  EXPECT_EQ(desk.table.RQcum_err[2], -1);
}

TEST(Compose, SortsOneOrderingByScore) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt",
                  RECORD_OF("light", HISTORY(9, 0, 2999, 0), HISTORY(9, 0, 2999, 0)) +
                      RECORD_OF("heavy", HISTORY(0, 5, 0, 2999), HISTORY(0, 5, 0, 2999)) +
                      TRAILER());
  composed(&ALL, &desk);
  SORT_BY_SCORE(2, &desk.book);
  EXPECT_EQ(ENTRIES_OF(desk.table.RQord_posit, 2), (std::vector<int>{2, 1}));
  EXPECT_EQ(ENTRIES_OF(desk.table.QRord_posit, 2), (std::vector<int>{1, 2}));
}

TEST(Compose, BothOrderingsEndWithAnEmptySaveSlot) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", NEW_WORDS_OF("one", 3) + TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(ENTRIES_OF(desk.table.QRord_posit, 4), (std::vector<int>{1, 2, 3, -1}));
  EXPECT_EQ(ENTRIES_OF(desk.table.RQord_posit, 4), (std::vector<int>{1, 2, 3, -1}));
}

TEST(Compose, ADamagedLineIsLoggedAndItsCorrectedValuesCount) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt",
                  RECORD_OF("mot", HISTORY(3, 4, 3001, 2600), HISTORY(5, 6, 2700, 3001)) +
                      TRAILER());
  composed(&ALL, &desk);
  EXPECT_EQ(desk.log(), "QR some error in file : ./IDX1/idx1_one.txt \n"
                        "RQ some error in file : ./IDX1/idx1_one.txt \n");
  EXPECT_EQ(desk.table.QRcum_nb[1], 0);
  EXPECT_EQ(desk.table.QRcum_nok[1], 4);
  EXPECT_EQ(desk.table.RQcum_nb[1], 5);
  EXPECT_EQ(desk.table.RQcum_nok[1], 0);
}

TEST(Compose, TheDayIsThatOfItsBeginning) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("mot", HISTORY(3, 0, 3001, 0), NEVER()) + TRAILER());
  Trf_composition composition(&ALL, nullptr, &desk.book);
  ASSERT_TRUE(BEGIN_COMPOSITION(&composition));
  SET_PRESENT_DAY(2009, 3, 21); // midnight has passed
  COLLECT_ENTRIES(&composition);
  END_COMPOSITION(&composition);
  EXPECT_EQ(desk.log(), "QR some error in file : ./IDX1/idx1_one.txt \n");
  EXPECT_EQ(desk.table.QRcum_nb[1], 0);
}

int nb_open_files() {
  int nb = 0;
  for (int fd = 0; fd < 200; fd++)
    nb += fcntl(fd, F_GETFD) != -1 ? 1 : 0;
  return nb;
}

TEST(Compose, StreamsLeftOpenAreClosedAndNoneIsLeft) {
  Composed_desk desk;
  desk.write_empty();
  int nb_before = nb_open_files();
  desk.book.fp_gene = fopen("idx1_gene", "w");
  desk.book.fp_idx1 = fopen("IDX1/idx1_one.txt", "r");
  composed(&ALL, &desk);
  EXPECT_EQ(desk.book.fp_gene, nullptr);
  EXPECT_EQ(desk.book.fp_idx1, nullptr);
  EXPECT_EQ(nb_open_files(), nb_before);
}

TEST(Compose, AForgottenRecordIsMendedFirst) {
  Composed_desk desk;
  desk.write_empty();
  std::string blank = BLANK_HISTORY_LINE();
  desk.write_idx1("one.txt", "#gone *a1 10 * \r\n" + blank + blank + "\r\n" +
                                 RECORD_OF("kept", HISTORY(1, 0, 2000, 0), NEVER()) + TRAILER());
  desk.dir.write("mertu_erased", "./IDX1/idx1_one.txt\n");
  composed(&ALL, &desk);
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"gone ", "kept "}));
  EXPECT_FALSE(desk.dir.exists("mertu_erased"));
}

void expect_refused(const Composed_desk &desk) {
  EXPECT_EQ(desk.log(), "ALL cannot open file ./idx2_gene \n");
  EXPECT_EQ(desk.table.nb_posit, 0);
  EXPECT_EQ(desk.table.nbmx_posit, 25);
  EXPECT_EQ(desk.table.QRord_posit[1], -1);
  EXPECT_EQ(desk.table.RQord_posit[1], -1);
  EXPECT_EQ(desk.book.fp_gene, nullptr);
}

TEST(Compose, IsRefusedWhereTheGeneratedFileCannotBeOpened) {
  Composed_desk desk;
  mkdir("idx2_gene", 0777);
  Trf_composition composition(&ALL, nullptr, &desk.book);
  EXPECT_FALSE(BEGIN_COMPOSITION(&composition));
  expect_refused(desk);
}

TEST(Compose, IsRefusedWhereTheGeneratedFileCannotBeWrittenWhole) {
  for (int nb : {1, 400}) {
    Composed_desk desk;
    desk.write_empty();
    desk.write_idx1("one.txt", NEW_WORDS_OF("one", nb) + TRAILER());
    ASSERT_EQ(symlink("/dev/full", "idx2_gene"), 0);
    Trf_composition composition(&ALL, nullptr, &desk.book);
    EXPECT_TRUE(BEGIN_COMPOSITION(&composition));
    COLLECT_ENTRIES(&composition);
    EXPECT_FALSE(END_COMPOSITION(&composition));
    expect_refused(desk);
  }
}

TEST(Compose, IsRefusedWhereAFaultOfTheGeneratedFileCameBeforeItsEnd) {
  Composed_desk desk;
  desk.write_empty();
  Trf_composition composition(&ALL, nullptr, &desk.book);
  ASSERT_TRUE(BEGIN_COMPOSITION(&composition));
  EXPECT_EQ(fgetc(desk.book.fp_gene), EOF); // a file for writing: leaves the stream faulty
  EXPECT_FALSE(END_COMPOSITION(&composition));
  expect_refused(desk);
}

TEST(Compose, AFileOpenedForReadingToCanBeReadMeanwhile) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("mot", HISTORY(1, 0, 2000, 0), NEVER()) + TRAILER());
  Trf_composition composition(&KNOWN, nullptr, &desk.book);
  ASSERT_TRUE(BEGIN_COMPOSITION(&composition));
  COLLECT_ENTRIES(&composition);
  Trf_line_cursor cursor(desk.book.fp_gene);
  Trf_gene_record record;
  EXPECT_EQ(READ_GENE_RECORD(&cursor, &record), GENE_RECORD);
  END_COMPOSITION(&composition);
}

TEST(Compose, ACompletionSeesEachCandidateInTheSparePlaceAndSelectsNothing) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("first", HISTORY(1, 0, 2000, 0), NEVER()) + TRAILER());
  desk.write_idx1("two.txt", RECORD_OF("second", HISTORY(7, 0, 2000, 0), NEVER()) +
                                 RECORD_OF("never", NEVER(), NEVER()) +
                                 RECORD_OF("third", HISTORY(8, 0, 2000, 0), NEVER()) + TRAILER());
  desk.book.nbt_lesson = 1;
  composed(&KNOWN, &desk);
  std::string gene = desk.gene();
  desk.book.nbt_lesson = 3;
  std::vector<std::string> seen;
  Trf_composition rest(&KNOWN, nullptr, &desk.book);
  rest.take = [&](const Trf_candidate &candidate) {
    EXPECT_EQ(candidate.place, 2);
    EXPECT_STREQ(candidate.path, "./IDX1/idx1_two.txt");
    std::string text = desk.dir.read("IDX1/idx1_two.txt").substr((size_t)candidate.history, 52);
    EXPECT_EQ(text + "\r\n", HISTORY(desk.table.QRcum_nb[2], 0, 2000, 0));
    seen.push_back(QUESTION_OF_NAME_LINE(candidate.name_line));
  };
  for (int k = 2; k <= 3; k++)
    VISIT_DICTIONARY(k, &rest);
  EXPECT_EQ(seen, (std::vector<std::string>{"second ", "third "}));
  EXPECT_EQ(rest.nb, 0);
  EXPECT_EQ(desk.table.nb_posit, 1);
  EXPECT_EQ(desk.gene(), gene);
}

TEST(Compose, OnlyEntriesWithTheTagAreCounted) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("a", NEVER(), NEVER(), " verbs") +
                                 RECORD_OF("b", NEVER(), NEVER(), " nouns") +
                                 RECORD_OF("c", NEVER(), NEVER(), " irr verbs") + TRAILER());
  composed(&ALL, &desk, " verbs ");
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"a ", "c "}));
}

TEST(Compose, HistoriesOfEntriesWithoutTheTagDoNotCountAmongTheLines) {
  Composed_desk desk;
  desk.write_empty();
  std::string records;
  for (int i = 1; i <= 9997; i++)
    records += RECORD_OF("x", NEVER(), NEVER(), "");
  desk.write_idx1("one.txt", records + RECORD_OF("found", NEVER(), NEVER(), " verbs") +
                                 RECORD_OF("behind", NEVER(), NEVER(), " verbs") + TRAILER());
  composed(&ALL, &desk, " verbs ");
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"found "}));
}

TEST(Compose, ANameBehindAnEntryWithoutTheTagIsMetThoughALineIsMissing) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt",
                  RECORD_OF("short", NEVER(), "", "") + RECORD_OF("a", NEVER(), NEVER(), " verbs") +
                      RECORD_OF("bare", "", "", "") + RECORD_OF("b", NEVER(), NEVER(), " verbs") +
                      RECORD_OF("end", NEVER(), "", "") + TRAILER());
  composed(&ALL, &desk, " verbs ");
  EXPECT_EQ(desk.questions(), (std::vector<std::string>{"a ", "b "}));
}

TEST(Compose, TheEndOfTheFileIsMetBehindAnEntryWithoutTheTag) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("bare", NEVER(), "", "") + "END_OF_FILE\r\n" +
                                 RECORD_OF("behind", NEVER(), NEVER(), " verbs") + TRAILER());
  composed(&ALL, &desk, " verbs ");
  EXPECT_EQ(desk.questions(), std::vector<std::string>{});
}

TEST(Compose, HistoriesOfEntriesWithoutTheTagAreNotChecked) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("a", "damaged\r\n", "damaged\r\n", " nouns") + TRAILER());
  composed(&ALL, &desk, " verbs ");
  EXPECT_EQ(desk.log(), "");
  EXPECT_EQ(desk.table.nb_posit, 0);
}

} // namespace
