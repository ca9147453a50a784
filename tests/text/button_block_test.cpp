// The button block: labels recognised, the table of a block, the ranges of a label.
#include "support/prelude.h"

#include "text/button_block.h"

#include <stdlib.h>

#include <random>

#include "text/text_book.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Lines = std::vector<std::string>;

// The label that a line begins with, and its indices; "none -1 -1" without one.
std::string label_in(std::string line) {
  int i0 = 7;
  int i1 = 7;
  bool there = PERHAPS_BUTTON(line.data(), &i0, &i1) == 1;
  std::string label =
      there ? line.substr(static_cast<size_t>(i0), static_cast<size_t>(i1 - i0 + 1)) : "none";
  return label + " " + std::to_string(i0) + " " + std::to_string(i1);
}

void keep_range(char *name, long start, long stop, void *data) {
  static_cast<Lines *>(data)->push_back(std::string(name) + " " + std::to_string(start) + " " +
                                        std::to_string(stop));
}

class ButtonBlock : public testing::Test {
protected:
  // Reads the block that begins at `offset` of the text; returns where reading ended.
  long read(const std::string &text, long offset = 0) {
    files.open(text);
    char *line = nullptr;
    long capacity = 0;
    EXTRACT_LABEL_BUTTONS(&offset, &line, &capacity, &book);
    free(line);
    return offset;
  }
  int number_of(std::string label) {
    return WHAT_BUTTON(label.data(), &book);
  }
  std::vector<long> offsets() const {
    return std::vector<long>(book.nc_label, book.nc_label + book.nc_label[0] + 1);
  }
  Text_book files;
  Trf_book &book = files.book;
};

class LabelWalk : public ButtonBlock {
protected:
  // The ranges handed out for a label of the table.
  Lines ranges_of(std::string label) {
    Lines ranges;
    Trf_range_out out = {keep_range, &ranges};
    WALK_LABEL(label.data(), &book, &out);
    return ranges;
  }
};

const char LESSON[] = "A>1 lecon1.wav 0 88200\nlecon1.wav 132300 176400\nB>2 lecon2.wav 0 44100\n"
                      "<)end)\nA>1 Bonjour, madame.\n";

} // namespace

TEST(Label, CapitalLetterThenSignThenDigitUpToTheNextBlank) {
  EXPECT_EQ(label_in("A>1 Bonjour"), "A>1 0 2");
  EXPECT_EQ(label_in("S>12"), "S>12 0 3");
  EXPECT_EQ(label_in("B>3x, y"), "B>3x, 0 4");
}

TEST(Label, BlanksMayPrecede) {
  EXPECT_EQ(label_in("   Z>9 a"), "Z>9 3 5");
}

TEST(Label, AnythingElseIsNone) {
  for (const char *line : {"a>1 x", "A> 1", "A>x", "A1>", "AB1", "AB>1", "1>1", "A >1", ">1", "   ",
                           "\311>1 accented", "A>\262 raised two", "\tA>1", "say A>1"})
    EXPECT_EQ(label_in(line), "none -1 -1") << line;
}

TEST(Label, LineShorterThanThreeBytesIsNone) {
  for (const char *line : {"", "A", "A>", "  ", " A>"})
    EXPECT_EQ(label_in(line), "none -1 -1") << line;
}

TEST_F(ButtonBlock, TableStartsWithoutLabels) {
  EXPECT_STREQ(book.s_label, " ");
  EXPECT_EQ(book.nc_label[0], 0);
  EXPECT_EQ(number_of("A>1"), 0);
  EXPECT_EQ(number_of(""), 0);
}

TEST_F(ButtonBlock, StartingAgainKeepsTheTable) {
  read(LESSON);
  START_LABELS(&book);
  EXPECT_STREQ(book.s_label, " A>1 B>2 ");
}

TEST_F(ButtonBlock, LabelsAreNumberedFromOneWithTheOffsetsOfTheirLines) {
  read(LESSON);
  EXPECT_STREQ(book.s_label, " A>1 B>2 ");
  EXPECT_THAT(offsets(), ElementsAre(2, 0, 48));
  EXPECT_EQ(number_of("A>1"), 1);
  EXPECT_EQ(number_of("B>2"), 2);
}

TEST_F(ButtonBlock, OffsetsHaveRoomForAnyNumberOfLabels) {
  std::string text;
  std::vector<long> expected = {0};
  for (long nb = 1; nb <= 40; nb++) {
    expected.push_back(static_cast<long>(text.size()));
    expected[0] = nb;
    text += "A>" + std::to_string(nb) + " a.wav 0 1\n";
    read(text + "<)end)\n");
    EXPECT_EQ(offsets(), expected);
  }
}

TEST_F(ButtonBlock, ReadingGoesOnBehindTheLineThatClosesTheBlock) {
  std::string text = "x\n" + std::string(LESSON);
  long offset = read(text, 2);
  EXPECT_EQ(text.substr(static_cast<size_t>(offset)), "A>1 Bonjour, madame.\n");
  EXPECT_EQ(offsets()[1], 2);
  EXPECT_EQ(files.logged_and_said(), "");
}

TEST_F(ButtonBlock, ClosingMarkMayStandAnywhereInItsLine) {
  EXPECT_EQ(read("A>1 a.wav 0 1\nB>1 here <)end) it ends\nC>1 c.wav 0 1\n"), 38);
  EXPECT_STREQ(book.s_label, " A>1 ");
}

TEST_F(ButtonBlock, PartOfALabelIsUnknown) {
  read("A>12 a.wav 0 1\n<)end)\n");
  for (const char *label : {"A>1", "2", ">12", "A>12 ", "", " "})
    EXPECT_EQ(number_of(label), 0) << label;
  EXPECT_EQ(number_of("A>12"), 1);
}

TEST_F(ButtonBlock, UnknownLabelIsTraced) {
  setenv("MERTU_TRACE", "1", 1);
  number_of("X>1");
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Unknown  button X>1  \n");
  testing::internal::CaptureStdout();
  number_of("X>1");
  EXPECT_EQ(files.logged_and_said(), "");
}

TEST_F(ButtonBlock, FirstDefinitionOfALabelCounts) {
  read("A>1 a.wav 0 1\nB>1 b.wav 0 1\nA>1 c.wav 0 1\nC>1 d.wav 0 1\n<)end)\n");
  EXPECT_STREQ(book.s_label, " A>1 B>1 C>1 ");
  EXPECT_THAT(offsets(), ElementsAre(3, 0, 14, 42));
}

TEST_F(ButtonBlock, LinesWithoutALabelAreSkipped) {
  read("\n   \nnot a label\na.wav 0 1\n  A>1   a.wav 0 1\n<)end)\n");
  EXPECT_STREQ(book.s_label, " A>1 ");
  EXPECT_THAT(offsets(), ElementsAre(1, 27));
}

TEST_F(ButtonBlock, LabelAloneInItsLineIsDefined) {
  read("A>1\n<)end)\n");
  EXPECT_EQ(number_of("A>1"), 1);
}

TEST_F(ButtonBlock, BlockWithoutItsEndIsLoggedAndKept) {
  EXPECT_EQ(read("A>1 a.wav 0 1\nB>2 b.wav 0 1\n"), 28);
  EXPECT_STREQ(book.s_label, " A>1 B>2 ");
  EXPECT_EQ(files.logged_and_said(), "EXTRACT_LABEL_BUTTON no <)end) return \n");
}

TEST_F(ButtonBlock, EmptyBlockEmptiesTheTable) {
  read(LESSON);
  read("<)end)\n");
  EXPECT_STREQ(book.s_label, " ");
  EXPECT_THAT(offsets(), ElementsAre(0));
}

TEST_F(ButtonBlock, TenThousandLinesAreRead) {
  std::string text;
  for (int i = 0; i < 10000; i++)
    text += "A>" + std::to_string(i) + " a.wav 0 1\n";
  read(text + "A>10000 a.wav 0 1\n<)end)\n");
  EXPECT_EQ(book.nc_label[0], 10000);
  EXPECT_EQ(number_of("A>9999"), 10000);
  EXPECT_EQ(number_of("A>10000"), 0);
  EXPECT_EQ(files.logged_and_said(), "EXTRACT_LABEL_BUTTON no <)end) return \n");
}

TEST_F(ButtonBlock, CallersBufferIsUsedAndGrows) {
  files.open("A>1 " + std::string(2000, 'x') + "\n<)end)\n");
  long offset = 0;
  long capacity = 10;
  char *line = static_cast<char *>(malloc(15));
  EXTRACT_LABEL_BUTTONS(&offset, &line, &capacity, &book);
  EXPECT_GT(capacity, 2000);
  EXPECT_STREQ(line, "<)end)");
  free(line);
}

TEST_F(ButtonBlock, NoStreamIsABlockWithoutItsEnd) {
  long offset = 3;
  long capacity = 0;
  char *line = nullptr;
  EXTRACT_LABEL_BUTTONS(&offset, &line, &capacity, &book);
  EXPECT_EQ(offset, 3);
  EXPECT_EQ(files.logged_and_said(), "EXTRACT_LABEL_BUTTON no <)end) return \n");
  free(line);
}

TEST_F(LabelWalk, OneButtonHasItsRangesOneAfterTheOther) {
  read(LESSON);
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("lecon1.wav 0 88200", "lecon1.wav 132300 176400"));
  EXPECT_THAT(ranges_of("B>2"), ElementsAre("lecon2.wav 0 44100"));
  EXPECT_EQ(files.logged_and_said(), "");
}

TEST_F(LabelWalk, LineWithTheSameLabelIsAFurtherRange) {
  read("A>1 a.wav 0 1\n  A>1 a.wav 2 3\nb.wav 4 5\nB>1 c.wav 6 7\nA>1 d.wav 8 9\n<)end)\n");
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("a.wav 0 1", "a.wav 2 3", "b.wav 4 5"));
}

TEST_F(LabelWalk, LineWithoutTwoNumbersPlaysNothing) {
  read("A>1 a.wav 0\nb.wav 1\nc.wav\n\nd.wav zero 1\ne.wav 2 3\n<)end)\n");
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("e.wav 2 3"));
}

TEST_F(LabelWalk, LabelAloneTakesTheRangesBelowIt) {
  read("A>1\na.wav 0 1\n<)end)\n");
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("a.wav 0 1"));
}

TEST_F(LabelWalk, BlanksMayBeMany) {
  read("  A>1    a.wav    10   20   and more\n    b.wav  -3  +4\n<)end)\n");
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("a.wav 10 20", "b.wav -3 4"));
}

TEST_F(LabelWalk, LineThatClosesTheBlockPlaysNothing) {
  read("A>1 a.wav 0 1\nb.wav 0 1 <)end)\nc.wav 0 1\n");
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("a.wav 0 1"));
}

TEST_F(LabelWalk, UnknownLabelPlaysNothingAndIsNotLogged) {
  read(LESSON);
  EXPECT_THAT(ranges_of("C>3"), IsEmpty());
  EXPECT_EQ(files.logged_and_said(), "");
}

TEST_F(LabelWalk, NoOpenCopyIsLogged) {
  read(LESSON);
  book.exfp = 0;
  EXPECT_THAT(ranges_of("A>1"), IsEmpty());
  book.exfp = 1;
  files.close();
  book.exfp = 1;
  EXPECT_THAT(ranges_of("A>1"), IsEmpty());
  EXPECT_EQ(files.logged_and_said(),
            "cback_button error fp == NULL \ncback_button error fp == NULL \n");
}

TEST_F(LabelWalk, CopyOfAnotherDictionaryHasNoLineForTheLabel) {
  read("# line\n" + std::string(LESSON), 7);
  files.open("# another dictionary\n# with other lines\n");
  EXPECT_THAT(ranges_of("A>1"), IsEmpty());
  files.open("short\n");
  EXPECT_THAT(ranges_of("B>2"), IsEmpty());
  EXPECT_EQ(files.logged_and_said(),
            "cback_button not found button A>1 \ncback_button not found button B>2 \n");
}

TEST_F(LabelWalk, BlockWithoutItsEndIsLoggedOnceItsRangesArePlayed) {
  read("A>1 a.wav 0 1\nb.wav 2 3\n");
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("a.wav 0 1", "b.wav 2 3"));
  EXPECT_EQ(files.logged_and_said(),
            "EXTRACT_LABEL_BUTTON no <)end) return \ncback_button no <)end) return \n");
}

TEST_F(LabelWalk, TenThousandLinesBehindTheDefinitionAreRead) {
  std::string text = "A>1 first.wav 0 1\n";
  for (int i = 0; i < 9999; i++)
    text += "\n";
  read(text + "last.wav 0 1\nbeyond.wav 0 1\n<)end)\n");
  std::string log = files.log();
  EXPECT_THAT(ranges_of("A>1"), ElementsAre("first.wav 0 1", "last.wav 0 1"));
  EXPECT_EQ(files.log(), log);
}

TEST_F(LabelWalk, TableOfAnyBytesIsSafe) {
  std::mt19937 chance(5);
  const std::string signs = "AB>12 \n\n<)end\377\200\r\t";
  for (int round = 0; round < 300; round++) {
    std::string text;
    for (int i = 0; i < 200; i++)
      text += signs[chance() % signs.size()];
    read(text);
    std::string labels = book.s_label;
    for (int i = 1; i <= book.nc_label[0]; i++) {
      labels.erase(0, 1);
      std::string label = labels.substr(0, labels.find(' '));
      labels.erase(0, label.size());
      EXPECT_EQ(number_of(label), i);
      ranges_of(label);
    }
    EXPECT_EQ(labels, " ");
  }
}
