// The alphabetical listing of all entries: what is listed, in which order, and how it fails.
#include "support/prelude.h"

#include "command/dictionary_listing.h"

#include "lesson/desk.h"
#include "util/owned.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

// The record of an entry never asked.
std::string record(const std::string &name_line) {
  return name_line + " \r\n" + NEVER() + NEVER();
}

// A desk whose listing is made; the dictionaries have no index until one is written.
class DictionaryListing : public testing::Test {
protected:
  DictionaryListing() {
    desk.book.nbt_lesson = 3;
    for (const char *name : {"one.txt", "two.txt", "three.txt"})
      desk.write_idx1(name, TRAILER());
  }
  void list() {
    testing::internal::CaptureStdout();
    MERTU_DICO(&desk.book);
    fflush(stdout);
    said = testing::internal::GetCapturedStdout();
  }
  // The names listed: the lines of ./mertu_dico between "##" and " *".
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    std::istringstream text(desk.dir.read("mertu_dico"));
    for (std::string line; std::getline(text, line) && line != "END_OF_FILE";)
      found.push_back(line.substr(2, line.find('*') - 2));
    return found;
  }
  // Lists one dictionary with these questions.
  std::vector<std::string> order_of(const std::vector<std::string> &questions) {
    std::string records;
    for (const std::string &question : questions)
      records += record("#" + question + "*a1 0 *");
    desk.write_idx1("one.txt", records + TRAILER());
    list();
    return names();
  }
  Desk desk;
  std::string said;
};

} // namespace

TEST_F(DictionaryListing, EveryEntryOfEveryDictionaryIsListedInAlphabeticalOrder) {
  desk.write_idx1("one.txt", record("#pain *a1 0 * food") + record("#arbre *a1 40 *") + TRAILER());
  desk.write_idx1("two.txt", record("#Lait *b2 0 * food") + TRAILER());
  desk.write_idx1("three.txt", record("#mer *c3 7 * x") + TRAILER());
  list();
  EXPECT_EQ(desk.dir.read("mertu_dico1"), "#pain *a1 0 * food \n#arbre *a1 40 * \n"
                                          "#Lait *b2 0 * food \n#mer *c3 7 * x \n");
  EXPECT_EQ(desk.dir.read("mertu_dico"),
            "##arbre *a1 40 * \n##Lait *b2 0 * food \n##mer *c3 7 * x \n"
            "##pain *a1 0 * food \nEND_OF_FILE\n");
  EXPECT_EQ(desk.log(), "file : ./mertu_dico1  done\nfile : ./mertu_dico  done\n");
  EXPECT_EQ(said, "");
}

TEST_F(DictionaryListing, EachLineBeginsWithTwoSigns) {
  order_of({"b", "a"});
  std::istringstream text(desk.dir.read("mertu_dico"));
  std::string line;
  for (const char *expected : {"##a*a1 0 * ", "##b*a1 0 * ", "END_OF_FILE"}) {
    std::getline(text, line);
    EXPECT_EQ(line, expected);
  }
}

TEST_F(DictionaryListing, ALineOfTheListingPutIntoADictionaryBorrowsItsEntry) {
  desk.write_idx1("one.txt", record("#b *a1 0 * x") + TRAILER());
  desk.write_idx1("two.txt", record("#a *b2 0 * y") + TRAILER());
  list();
  std::string listing = desk.dir.read("mertu_dico");
  std::string borrowed = listing.substr(0, listing.find("END_OF_FILE"));
  for (size_t at = borrowed.find('\n'); at != std::string::npos; at = borrowed.find('\n', at + 2))
    borrowed.replace(at, 1, "\r\n");
  desk.write_idx1("three.txt", borrowed + TRAILER());
  LOAD(&desk, 3);
  EXPECT_EQ(desk.table.nb_posit, 2);
  EXPECT_THAT(desk.dir.read("idx1_gene"), HasSubstr("#a *b2 0 * y"));
}

TEST_F(DictionaryListing, SummerWithAndWithoutAccentsKeepsTheOrderOfTheFile) {
  EXPECT_THAT(order_of({"\351t\351", "ete"}), ElementsAre("\351t\351", "ete"));
  EXPECT_THAT(order_of({"ete", "\351t\351"}), ElementsAre("ete", "\351t\351"));
  EXPECT_THAT(order_of({"\351tu", "ete", "\350tape"}), ElementsAre("\350tape", "ete", "\351tu"));
}

TEST_F(DictionaryListing, NameOfBlanksStandsFirst) {
  EXPECT_THAT(order_of({"a", "!", "  ", "", " "}), ElementsAre("  ", "", " ", "!", "a"));
}

TEST_F(DictionaryListing, CapitalsAreOrderedAsSmallLetters) {
  EXPECT_THAT(order_of({"Zoo", "b", "ABC", "abd"}), ElementsAre("ABC", "abd", "b", "Zoo"));
}

TEST_F(DictionaryListing, AccentedCapitalStandsBeforeSmallLetters) {
  EXPECT_THAT(order_of({"abc", "\311t\351", "Ete"}), ElementsAre("\311t\351", "abc", "Ete"));
}

TEST_F(DictionaryListing, CapitalAWithAnAccentStandsBehindSmallLetters) {
  EXPECT_THAT(order_of({"\300 table", "z", "\311t\351", "\340 pied"}),
              ElementsAre("\311t\351", "\340 pied", "z", "\300 table"));
}

TEST_F(DictionaryListing, LettersAreOrderedByTheirBytes) {
  EXPECT_THAT(order_of({"\337", "z", "a"}), ElementsAre("a", "z", "\337"));
}

TEST_F(DictionaryListing, LigatureIsOrderedAsItsTwoLetters) {
  EXPECT_THAT(order_of({"af", "\346", "\346\346", "ad"}),
              ElementsAre("ad", "\346", "\346\346", "af"));
}

TEST_F(DictionaryListing, WhatStandsBehindTheFirstStarDoesNotCount) {
  desk.write_idx1("one.txt", record("#a *zz 0 * z") + record("#a *a1 0 * a") + TRAILER());
  list();
  EXPECT_THAT(desk.dir.read("mertu_dico"), HasSubstr("##a *zz 0 * z \n##a *a1 0 * a \n"));
}

TEST_F(DictionaryListing, DoubleSignLinesAndOtherLinesAreLeftOut) {
  desk.write_idx1("one.txt", "free text\r\n##b *b2 \r\n" + record("#a *a1 0 *") + " #c *a1 \r\n" +
                                 TRAILER() + record("#behind *a1 0 *"));
  list();
  EXPECT_EQ(desk.dir.read("mertu_dico1"), "#a *a1 0 * \n");
  EXPECT_EQ(desk.dir.read("mertu_dico"), "##a *a1 0 * \nEND_OF_FILE\n");
}

TEST_F(DictionaryListing, IndexWithoutItsLastLineIsListedToItsEnd) {
  desk.write_idx1("one.txt", record("#b *a1 0 *") + record("#a *a1 0 *"));
  list();
  EXPECT_THAT(names(), ElementsAre("a ", "b "));
}

TEST_F(DictionaryListing, DictionariesWithoutAnEntryGiveAnEmptyListing) {
  list();
  EXPECT_EQ(desk.dir.read("mertu_dico1"), "");
  EXPECT_EQ(desk.dir.read("mertu_dico"), "END_OF_FILE\n");
}

TEST_F(DictionaryListing, WithoutALessonNothingIsWritten) {
  desk.book.nbt_lesson = 0;
  list();
  EXPECT_FALSE(desk.dir.exists("mertu_dico"));
  EXPECT_FALSE(desk.dir.exists("mertu_dico1"));
  EXPECT_EQ(desk.log(), "");
}

TEST_F(DictionaryListing, DictionaryListedTwiceIsReadOnce) {
  desk.set_list("words/one.txt &/two.txt words/one.txt ", 3);
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 b2 a1 ");
  EXPECT_THAT(order_of({"a"}), ElementsAre("a"));
}

TEST_F(DictionaryListing, IndexThatCannotBeOpenedIsSkipped) {
  std::filesystem::remove("IDX1/idx1_two.txt");
  EXPECT_THAT(order_of({"a"}), ElementsAre("a"));
  EXPECT_EQ(desk.log(), "cannot open file ./IDX1/idx1_two.txt, skipped \n"
                        "file : ./mertu_dico1  done\nfile : ./mertu_dico  done\n");
}

TEST_F(DictionaryListing, IndexWithoutHeaderEndsTheProgram) {
  desk.dir.write("IDX1/idx1_two.txt", "######\r\n#a *b2 0 *\r\n");
  ENDS_WITH_STATUS(MERTU_DICO(&desk.book), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt ");
  EXPECT_EQ(desk.log(), "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt \n");
}

TEST_F(DictionaryListing, TenThousandLinesBehindTheHeaderCount) {
  std::string records;
  for (int i = 1; i < 10000; i++)
    records += "\r\n";
  records += "#a *a1 0 *\r\n";
  desk.write_idx1("one.txt", records + "#b *a1 0 *\r\n");
  list();
  EXPECT_THAT(names(), ElementsAre("a "));
  EXPECT_EQ(said, "index ./IDX1/idx1_one.txt is longer than 10000 lines \n");
  desk.write_idx1("one.txt", records);
  list();
  EXPECT_EQ(said, "");
}

TEST_F(DictionaryListing, HundredEntriesOfThreeDictionariesAreAllListed) {
  std::vector<std::string> expected;
  for (const char *name : {"one.txt", "two.txt", "three.txt"}) {
    std::string records;
    for (int i = 0; i < 100; i++) {
      expected.push_back(name + std::to_string(i * 37 % 100));
      records += record("#" + expected.back() + "*a1 0 *");
    }
    desk.write_idx1(name, records + TRAILER());
  }
  std::sort(expected.begin(), expected.end());
  list();
  EXPECT_EQ(names(), expected);
}

TEST_F(DictionaryListing, MoreThanTenThousandEntriesAreListed) {
  std::string records;
  for (int i = 0; i < 4000; i++)
    records += "#a" + std::to_string(i) + "*a1 0 *\r\n";
  for (const char *name : {"one.txt", "two.txt", "three.txt"})
    desk.write_idx1(name, records + TRAILER());
  list();
  EXPECT_EQ(names().size(), 12000u);
  EXPECT_EQ(desk.log(), "file : ./mertu_dico1  done\nfile : ./mertu_dico  done\n");
}

TEST_F(DictionaryListing, TheTablesOffsetsAreThoseOfTheSortedLines) {
  order_of({"b", "a", "c"});
  EXPECT_THAT(ENTRIES_OF(desk.table.posit, 3), ElementsAre(11, 0, 22));
}

TEST_F(DictionaryListing, TheTableStaysSafeToUse) {
  for (int capacity : {0, 5, 12, 45}) {
    ALLOCATE_POSIT(capacity, &desk.table);
    desk.table.nb_posit = capacity;
    order_of({"b", "a"});
    EXPECT_EQ(desk.table.nbmx_posit, capacity);
    EXPECT_EQ(desk.table.nb_posit, capacity);
    for (int i = 3; i < capacity + NB_SPARE_POSIT; i++)
      EXPECT_EQ(desk.table.posit[i], 0) << i;
    GROW_POSIT(capacity + 20, &desk.table);
    EXPECT_EQ(desk.table.posit[capacity + 24], 0);
  }
}

TEST_F(DictionaryListing, AnUnreadableLineOfTheListedEntriesEndsTheProgram) {
  std::filesystem::create_symlink("/dev/null", "mertu_dico1");
  desk.write_idx1("one.txt", record("#a *a1 0 *") + TRAILER());
  ENDS_WITH_STATUS(MERTU_DICO(&desk.book), 14, "MERTU_DICO error 14 ");
  EXPECT_EQ(desk.log(), "file : ./mertu_dico1  done\nMERTU_DICO error 14 \n");
}

TEST_F(DictionaryListing, UnreadableLinesEndTheSortWithoutAWordInTheLog) {
  std::filesystem::create_symlink("/dev/null", "mertu_dico1");
  desk.write_idx1("one.txt", record("#a *a1 0 *") + record("#b *a1 0 *") + TRAILER());
  ENDS_WITH_STATUS(MERTU_DICO(&desk.book), 13, "MERGE_ABC_FILE error 13 ");
  EXPECT_EQ(desk.log(), "file : ./mertu_dico1  done\n");
}

TEST_F(DictionaryListing, FileThatCannotBeOpenedIsTold) {
  desk.dir.write("mertu_dico1/x", "");
  list();
  EXPECT_EQ(desk.log(), "cannot write file ./mertu_dico1: Is a directory \n");
  EXPECT_EQ(said, desk.log());
  EXPECT_FALSE(desk.dir.exists("mertu_dico"));
}

TEST_F(DictionaryListing, ListingThatCannotBeOpenedIsTold) {
  desk.dir.write("mertu_dico/x", "");
  list();
  EXPECT_EQ(desk.log(), "file : ./mertu_dico1  done\n"
                        "cannot write file ./mertu_dico: Is a directory \n");
  EXPECT_THAT(said, HasSubstr("cannot write file ./mertu_dico: Is a directory \n"));
}

TEST_F(DictionaryListing, FullDiskIsToldAndLeavesTheTableSafe) {
  ALLOCATE_POSIT(30, &desk.table);
  std::filesystem::create_symlink("/dev/full", "mertu_dico");
  list();
  EXPECT_THAT(desk.log(), HasSubstr("cannot write file ./mertu_dico: No space left on device \n"));
  EXPECT_THAT(desk.log(), Not(HasSubstr("./mertu_dico  done")));
  std::filesystem::remove("mertu_dico");
  std::filesystem::remove("mertu_dico1");
  std::filesystem::create_symlink("/dev/full", "mertu_dico1");
  order_of({"b", "a"});
  EXPECT_THAT(desk.log(), HasSubstr("cannot write file ./mertu_dico1: No space left on device \n"));
  EXPECT_FALSE(desk.dir.exists("mertu_dico"));
  EXPECT_EQ(desk.table.posit[34], 0);
}

TEST_F(DictionaryListing, ForgottenLessonsAreMendedFirst) {
  desk.write_idx1("one.txt", "#a *a1 0 *\r\n" + NEVER().substr(0, 52) + NEVER().substr(0, 52) +
                                 "; \r\n" + TRAILER());
  desk.dir.write("mertu_erased", "./IDX1/idx1_one.txt\n");
  list();
  EXPECT_FALSE(desk.dir.exists("mertu_erased"));
  EXPECT_THAT(desk.dir.read("IDX1/idx1_one.txt"), HasSubstr("*\r\n" + NEVER() + NEVER()));
}
