// The lesson of new words with a tag.
#include <gtest/gtest.h>

#include "lesson/composed_desk.h"
#include "lesson/tag_lessons.h"

namespace {

using Questions = std::vector<std::string>;

const std::string KNOWN = HISTORY(2, 0, 2900, 0);

void compose(std::string tag, Composed_desk *desk) {
  NEW_TAG_LESSON(tag.data(), &desk->book);
}

Questions composed_of(int sens, const std::string &tag, const std::string &records) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", records + TRAILER());
  desk.book.sens_qr = sens;
  compose(tag, &desk);
  EXPECT_EQ(desk.log(), "NEW_TAG_LESSON done\n");
  return desk.questions();
}

TEST(NewTagLesson, TakesTheNewEntriesWithTheTag) {
  std::string records = RECORD_OF("new", NEVER(), KNOWN, " verbs") +
                        RECORD_OF("other", NEVER(), NEVER(), " nouns") +
                        RECORD_OF("known", KNOWN, NEVER(), " verbs") +
                        RECORD_OF("accent", NEVER(), NEVER(), " v\350rbs");
  EXPECT_EQ(composed_of(1, " verbs ", records), (Questions{"new ", "accent "}));
  EXPECT_EQ(composed_of(2, " verbs ", records), (Questions{"known ", "accent "}));
}

TEST(NewTagLesson, NoTagTakesTheUntaggedEntries) {
  std::string records = RECORD_OF("empty", NEVER(), NEVER(), "") +
                        RECORD_OF("marks", NEVER(), NEVER(), " Q12 R3") +
                        RECORD_OF("word", NEVER(), NEVER(), " Q12 verbs") +
                        RECORD_OF("capital", NEVER(), NEVER(), " Quick");
  EXPECT_EQ(composed_of(1, "", records), (Questions{"empty ", "marks "}));
}

TEST(NewTagLesson, ANameLineWithOneStarNeverEnters) {
  std::string records = "#bare *a1 10 verbs \r\n" + NEVER() + NEVER();
  EXPECT_EQ(composed_of(1, " verbs ", records), Questions{});
  EXPECT_EQ(composed_of(1, "", records), Questions{});
}

TEST(NewTagLesson, TheNameLineIsWrittenAsRead) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("\351t\351", NEVER(), NEVER(), " v\350rbs") + TRAILER());
  compose(" verbs ", &desk);
  EXPECT_EQ(desk.gene().substr(0, desk.gene().find('\n')), "#\351t\351 *a1 10 * v\350rbs ");
}

TEST(NewTagLesson, OnlyRejectedEntriesWithTheTagOverwriteTheLastSelectedOne) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("kept", NEVER(), HISTORY(3, 0, 2900, 0), " verbs") +
                                 RECORD_OF("passed", KNOWN, HISTORY(4, 5, 2700, 2800), " verbs") +
                                 RECORD_OF("other", KNOWN, HISTORY(8, 9, 2700, 2800), " nouns") +
                                 TRAILER());
  compose(" verbs ", &desk);
  EXPECT_EQ(desk.table.nb_posit, 1);
  EXPECT_EQ(desk.table.RQcum_nb[1], 4);
  EXPECT_EQ(desk.table.RQcum_err[1], FCT_ERROR(&desk.weights, 4, 5, 3000, 2700, 2800));
}

TEST(NewTagLesson, StopsAtTwentyAndWritesItsTrailer) {
  Composed_desk desk;
  std::string records;
  for (int i = 1; i <= 21; i++)
    records += RECORD_OF("one", NEVER(), NEVER(), " verbs");
  desk.write_idx1("one.txt", records + TRAILER());
  compose(" verbs ", &desk);
  EXPECT_EQ(desk.table.nb_posit, 20);
  std::string gene = desk.gene();
  size_t trailer = gene.find("# END_OF_FILE");
  EXPECT_EQ(gene.substr(trailer), "# END_OF_FILE * " + std::to_string(trailer) + " \n");
  EXPECT_EQ(desk.table.QRord_posit[21], -1);
  EXPECT_EQ(desk.table.RQord_posit[21], -1);
}

TEST(NewTagLesson, AnEmptyLessonHoldsTheTrailerWithOffsetZero) {
  Composed_desk desk;
  desk.write_empty();
  compose(" verbs ", &desk);
  EXPECT_EQ(desk.gene(), "# END_OF_FILE * 0 \n");
  EXPECT_EQ(desk.table.nb_posit, 0);
}

TEST(NewTagLesson, OnlyTheOtherDirectionIsSorted) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("light", NEVER(), HISTORY(9, 0, 2999, 0), " verbs") +
                                 RECORD_OF("heavy", NEVER(), HISTORY(0, 7, 0, 2999), " verbs") +
                                 TRAILER());
  compose(" verbs ", &desk);
  EXPECT_EQ(ENTRIES_OF(desk.table.QRord_posit, 3), (std::vector<int>{1, 2, -1}));
  EXPECT_EQ(ENTRIES_OF(desk.table.RQord_posit, 3), (std::vector<int>{2, 1, -1}));
}

TEST(NewTagLesson, TellsOfDamagedLinesUnderBorrowedNames) {
  Composed_desk desk;
  desk.write_empty();
  desk.write_idx1("one.txt", RECORD_OF("a", "damaged\r\n", NEVER(), " verbs") + TRAILER());
  desk.write_idx1("two.txt", RECORD_OF("b", NEVER(), "damaged\r\n", " verbs") + TRAILER());
  compose(" verbs ", &desk);
  EXPECT_EQ(desk.log(), "NEW_TAG_LESSON and CHECK_6LINTsome error in file : ./IDX1/idx1_one.txt \n"
                        "NEW_WORDS_LESSON and CHECK_4LINTsome error in file : "
                        "./IDX1/idx1_two.txt \n"
                        "NEW_TAG_LESSON done\n");
}

TEST(NewTagLesson, MissingPartsEndTheProgramAndEntriesWithoutTheTagAreNotCounted) {
  Composed_desk desk;
  desk.dir.write("IDX1/idx1_one.txt", "no header\r\n");
  ENDS_WITH_STATUS(compose(" verbs ", &desk), 1, "Error no detection of ####### stop");
  std::string other = RECORD_OF("other", NEVER(), NEVER(), " nouns");
  desk.write_idx1("one.txt", other + RECORD_OF("cut", "", "", " verbs"));
  ENDS_WITH_STATUS(compose(" verbs ", &desk), 2, "Error no detection of values icont=1 stop");
  desk.write_idx1("one.txt", other + RECORD_OF("cut", NEVER(), "", " verbs"));
  ENDS_WITH_STATUS(compose(" verbs ", &desk), 3, "Error no detection of values icont=1 stop");
}

TEST(NewTagLesson, LeavesTheDirectionThatWaitsAlone) {
  Composed_desk desk;
  desk.write_empty();
  desk.book.toggle_sens_qr = 1;
  compose(" verbs ", &desk);
  EXPECT_EQ(desk.book.toggle_sens_qr, 1);
  EXPECT_EQ(desk.book.sens_qr, 1);
}

} // namespace
