// The text of a dictionary as pieces of the pane.
#include "support/prelude.h"

#include "text/paragraphs.h"

#include <random>

#include "text/text_book.h"

namespace {

const char HEADING[] = "KENTEL : words/a.txt\n \nEILSKRID : ./CPY/a.txt\n \n";

class Paragraphs : public testing::Test {
protected:
  // All pieces joined; a button is "[A>1]", or "[A>1+]" when its label is known.
  std::string pieces() {
    std::string shown;
    for (const Trf_piece &piece : TEXT_PIECES(&book))
      shown += piece.button ? "[" + piece.text + (piece.known ? "+]" : "]") : piece.text;
    return shown;
  }
  // What is shown of the lines between the two marks, the heading and the end of the last
  // paragraph apart.
  std::string text_of(const std::string &lines) {
    files.open("#######\n" + lines + "# #######\nbehind the text\n");
    std::string shown = pieces();
    EXPECT_EQ(shown.substr(0, sizeof HEADING - 1), HEADING);
    EXPECT_EQ(shown.substr(shown.size() - 1), "\n");
    return shown.substr(sizeof HEADING - 1, shown.size() - sizeof HEADING);
  }
  Text_book files;
  Trf_book &book = files.book;
};

const char BLOCK[] = "<)start)\nA>1 a.wav 0 1\nB>2 b.wav 0 1\n<)end)\n";

} // namespace

TEST_F(Paragraphs, DictionaryWithoutAMarkShowsTheTwoHeadingsAlone) {
  files.open("!# aa\nA text.\n ####### not at the start\n######\n");
  EXPECT_EQ(pieces(), HEADING);
}

TEST_F(Paragraphs, EmptyDictionaryShowsTheTwoHeadingsAlone) {
  files.open("");
  EXPECT_EQ(pieces(), HEADING);
}

TEST_F(Paragraphs, TextStandsBetweenTheTwoMarks) {
  files.open("!# aa\nabove\n# ####### here\nThe text.\n########## end\n# chat *\n");
  EXPECT_EQ(pieces(), HEADING + std::string("The text.\n"));
}

TEST_F(Paragraphs, MarkInsideALineIsText) {
  EXPECT_EQ(text_of("One ####### two\n ####### three\n"), "One ####### two ####### three");
}

TEST_F(Paragraphs, MarkEndsTheTextWhateverElseItsLineHolds) {
  files.open("#######\nOne\n# ####### <)start)\nA>1 a.wav 0 1\n<)end)\ntwo\n");
  EXPECT_EQ(pieces(), HEADING + std::string("One\n"));
  EXPECT_STREQ(book.s_label, " ");
}

TEST_F(Paragraphs, LinesOfAParagraphAreJoinedByOneBlank) {
  EXPECT_EQ(text_of("One   \n   two\nthree  words.\n"), "One two three  words.");
}

TEST_F(Paragraphs, MarkEndsAnEmptyParagraphToo) {
  EXPECT_EQ(text_of(""), "");
  EXPECT_EQ(text_of("a\n\n"), "a\n");
}

TEST_F(Paragraphs, EndOfTheFileEndsTheText) {
  files.open("#######\nOne\ntwo");
  EXPECT_EQ(pieces(), HEADING + std::string("One two\n"));
  files.open("#######\nOne\n\n");
  EXPECT_EQ(pieces(), HEADING + std::string("One\n"));
}

TEST_F(Paragraphs, EndOfTheFileBehindAButtonAddsNoLineEnd) {
  files.open("#######\nA>1");
  EXPECT_EQ(pieces(), HEADING + std::string("[A>1]"));
}

TEST_F(Paragraphs, FirstBlankLineEndsTheParagraph) {
  EXPECT_EQ(text_of("One\n\ntwo\n"), "One\ntwo");
  EXPECT_EQ(text_of("One\n    \ntwo\n"), "One\ntwo");
}

TEST_F(Paragraphs, FurtherBlankLinesAreLinesOfThreeBlanks) {
  EXPECT_EQ(text_of("One\n\n \n\ntwo\n\n\nthree\n"), "One\n   \n   \ntwo\n   \nthree");
}

TEST_F(Paragraphs, BlankLineBeforeAnyTextIsALineEnd) {
  EXPECT_EQ(text_of("\nOne\n"), "\nOne");
  EXPECT_EQ(text_of("\n\nOne\n"), "\n   \nOne");
}

TEST_F(Paragraphs, PointEndsTheParagraphAndIsNotShown) {
  EXPECT_EQ(text_of("One\n. two\nthree\n  .four\n"), "One\ntwo three\nfour");
}

TEST_F(Paragraphs, PointEndsAnEmptyParagraphToo) {
  EXPECT_EQ(text_of(".One\n"), "\nOne");
  EXPECT_EQ(text_of("One\n\n.two\n"), "One\n\ntwo");
}

TEST_F(Paragraphs, PointAloneIsABlankLineToo) {
  EXPECT_EQ(text_of("One\n.\ntwo\n"), "One\n\ntwo");
  EXPECT_EQ(text_of("One\n.\n.\ntwo\n"), "One\n\n\n   \ntwo");
}

TEST_F(Paragraphs, OnlyTheFirstPointIsTaken) {
  EXPECT_EQ(text_of("...and\n"), "\n..and");
}

TEST_F(Paragraphs, DigitOrOpeningSignBeginsAParagraphAndStays) {
  EXPECT_EQ(text_of("One\n1. two\n <three>\nfour\n"), "One\n1. two\n<three> four");
}

TEST_F(Paragraphs, CommaIsNotShownAndGoesOn) {
  EXPECT_EQ(text_of("One\n,two\n  , three\n"), "One two three");
  EXPECT_EQ(text_of("One\n,1 two\n,.three\n,,four\n"), "One 1 two .three ,four");
  EXPECT_EQ(text_of("One\n,\ntwo\n"), "One\ntwo");
}

TEST_F(Paragraphs, LabelMakesAButtonAndItsTextFollows) {
  EXPECT_EQ(text_of(std::string(BLOCK) + "A>1 Bonjour, madame.\n"), "[A>1+]Bonjour, madame.");
}

TEST_F(Paragraphs, LabelEndsTheParagraphBeforeIt) {
  EXPECT_EQ(text_of(std::string(BLOCK) + "One\ntwo\n  A>1   three  \nfour\nB>2 five\n"),
            "One two\n[A>1+]three four\n[B>2+]five");
}

TEST_F(Paragraphs, LabelsOfLinesOfTheirOwnStandBelowEachOther) {
  EXPECT_EQ(text_of(std::string(BLOCK) + "A>1\nB>2\n\nOne\n"), "[A>1+]\n[B>2+]\nOne");
}

TEST_F(Paragraphs, LabelBehindABlankLineAddsNone) {
  EXPECT_EQ(text_of("One\n\nA>1 two\n\nthree\n"), "One\n[A>1]two\nthree");
}

TEST_F(Paragraphs, LabelInterruptsARowOfBlankLines) {
  EXPECT_EQ(text_of("One\n\n\nA>1\n\n\ntwo\n"), "One\n   \n[A>1]\n   \ntwo");
}

TEST_F(Paragraphs, LabelMayFollowAPointOrAComma) {
  EXPECT_EQ(text_of("One\n.A>1 two\n, B>2 three\n"), "One\n[A>1]two\n[B>2]three");
}

TEST_F(Paragraphs, LabelWithoutDefinitionIsNotKnown) {
  EXPECT_EQ(text_of(std::string(BLOCK) + "C>3 One\nA>12 two\n"), "[C>3]One\n[A>12]two");
}

TEST_F(Paragraphs, ButtonAboveItsBlockIsNotKnownYet) {
  std::string text = std::string("A>1 One\n") + BLOCK + "A>1 two\n";
  EXPECT_EQ(text_of(text), "[A>1]One\n[A>1+]two");
  EXPECT_EQ(text_of(text), "[A>1+]One\n[A>1+]two");
}

TEST_F(Paragraphs, LabelsLastUntilAnotherBlockIsRead) {
  text_of(BLOCK);
  EXPECT_EQ(text_of("A>1 One\n"), "[A>1+]One");
  EXPECT_EQ(text_of("<)start)\n<)end)\nA>1 One\n"), "[A>1]One");
}

TEST_F(Paragraphs, StraightQuotationMarkJoinsTheLabel) {
  EXPECT_EQ(text_of(std::string(BLOCK) + "A>1 \"Yes\" she said\n"), "[A>1\240\"Yes\"\240she]said");
  EXPECT_EQ(text_of(std::string(BLOCK) + "A>1 \223Yes\224 she said\n"), "[A>1+]\"Yes\" she said");
}

TEST_F(Paragraphs, BlockIsNotShownAndEndsTheParagraph) {
  EXPECT_EQ(text_of("One\nfoo <)start) bar\nA>1 a.wav 0 1\nnote\n<)end)\ntwo\n"), "One\ntwo");
  EXPECT_STREQ(book.s_label, " A>1 ");
}

TEST_F(Paragraphs, BlockBeforeAnyTextAddsNothing) {
  EXPECT_EQ(text_of(std::string("   ") + BLOCK + "One\n"), "One");
}

TEST_F(Paragraphs, BlockLeavesTheRowOfBlankLinesAsItIs) {
  EXPECT_EQ(text_of(std::string("One\n\n") + BLOCK + "\ntwo\n"), "One\n   \ntwo");
  EXPECT_EQ(text_of(std::string("One\n") + BLOCK + "\ntwo\n"), "One\n\ntwo");
}

TEST_F(Paragraphs, BlockWithoutItsEndHidesTheRest) {
  files.open("#######\nOne\n<)start)\nA>1 a.wav 0 1\n#######\n# chat *\n");
  EXPECT_EQ(pieces(), HEADING + std::string("One\n"));
  EXPECT_EQ(files.logged_and_said(), "EXTRACT_LABEL_BUTTON no <)end) return \n");
  EXPECT_STREQ(book.s_label, " A>1 ");
}

TEST_F(Paragraphs, OffsetsOfTheTableAreThoseOfTheWholeCopy) {
  text_of(BLOCK);
  EXPECT_EQ(book.nc_label[1], 17);
}

TEST_F(Paragraphs, AccentNotationIsDecodedAndPunctuationBound) {
  EXPECT_EQ(text_of("\\'Ecoute : \\,ca va ?\n"), "\311coute\240: \347a va\240?");
}

// A tab that an accented letter seems to announce reaches the text as a tab.
TEST_F(Paragraphs, TabsHaveRoomForTheirBlanks) {
  EXPECT_EQ(text_of("a\tb\n"), "a        b");
  std::string tabs;
  std::string shown;
  for (int i = 0; i < 200; i++) {
    tabs += "\303\tx";
    shown += "\303        x";
  }
  EXPECT_EQ(text_of(tabs + "\n"), shown);
}

TEST_F(Paragraphs, StreamThatIsNotOpenIsNotRead) {
  files.open("#######\nOne\n");
  book.exfp = 0;
  EXPECT_EQ(pieces(), HEADING);
}

TEST_F(Paragraphs, TenThousandLinesAreRead) {
  std::string text = "above\n#######\n";
  for (int i = 3; i <= 10000; i++)
    text += "x\n";
  files.open(text + "beyond\n");
  EXPECT_EQ(pieces().size(), sizeof HEADING - 1 + 9998 * 2);
}

TEST_F(Paragraphs, LinesOfABlockAreNotAmongThem) {
  std::string text = "#######\n<)start)\n";
  for (int i = 0; i < 9000; i++)
    text += "a.wav 0 1\n";
  text += "<)end)\n";
  for (int i = 0; i < 9000; i++)
    text += "x\n";
  files.open(text);
  EXPECT_EQ(pieces().size(), sizeof HEADING - 1 + 9000 * 2);
}

TEST_F(Paragraphs, LongLinesAreShownWhole) {
  EXPECT_EQ(text_of(std::string(5000, 'x') + "\n").size(), 5000u);
}

TEST_F(Paragraphs, TextOfAnyBytesIsSafe) {
  std::mt19937 chance(3);
  const std::string signs = "AB>12 \n\n<)start)end#.,\\'\377\200\303\r\t\"";
  for (int round = 0; round < 300; round++) {
    std::string text = "#######\n";
    for (int i = 0; i < 300; i++)
      text += signs[chance() % signs.size()];
    files.open(text);
    EXPECT_EQ(pieces().substr(0, sizeof HEADING - 1), HEADING);
  }
}

TEST_F(Paragraphs, CopyOfTheLessonIsOpenedAndRemembered) {
  files.dir.write("CPY/a.txt", "#######\nOne\n");
  OPEN_TEXT(&book);
  EXPECT_EQ(book.exfp, 1);
  EXPECT_STREQ(book.lessons, "./CPY/a.txt");
  EXPECT_EQ(book.lenmx_str_lessons, 11 + 30);
  EXPECT_STREQ(book.path_of_lesson, "words/");
  EXPECT_EQ(pieces(), HEADING + std::string("One\n"));
}

TEST_F(Paragraphs, PathThatFitsKeepsTheBuffer) {
  book.lenmx_str_lessons = 49;
  book.lessons = g_new0(char, 50);
  char *before = book.lessons;
  OPEN_TEXT(&book);
  EXPECT_EQ(book.lessons, before);
  EXPECT_EQ(book.lenmx_str_lessons, 49);
  EXPECT_STREQ(book.lessons, "./CPY/a.txt");
}

TEST_F(Paragraphs, PathOfTheBuffersLengthKeepsIt) {
  book.lenmx_str_lessons = 11;
  book.lessons = g_new0(char, 12);
  OPEN_TEXT(&book);
  EXPECT_EQ(book.lenmx_str_lessons, 11);
  EXPECT_STREQ(book.lessons, "./CPY/a.txt");
}

TEST_F(Paragraphs, PathBeyondTheBuffersLengthGrowsIt) {
  book.lenmx_str_lessons = 10;
  book.lessons = g_new0(char, 11);
  OPEN_TEXT(&book);
  EXPECT_EQ(book.lenmx_str_lessons, 11 + 30);
  EXPECT_STREQ(book.lessons, "./CPY/a.txt");
}

TEST_F(Paragraphs, CopySaidToBeOpenWithoutAStreamIsOpened) {
  files.dir.write("CPY/a.txt", "#######\nOne\n");
  book.exfp = 1;
  OPEN_TEXT(&book);
  EXPECT_EQ(pieces(), HEADING + std::string("One\n"));
}

TEST_F(Paragraphs, DirectoryOfAnotherDictionaryIsReplaced) {
  book.lenmx_path_of_lesson = 5;
  book.path_of_lesson = g_strdup("old/");
  OPEN_TEXT(&book);
  EXPECT_STREQ(book.path_of_lesson, "words/");
}

TEST_F(Paragraphs, MissingCopyIsLoggedAndShowsTheHeadingAlone) {
  OPEN_TEXT(&book);
  EXPECT_EQ(book.fp, nullptr);
  EXPECT_EQ(book.exfp, 0);
  EXPECT_EQ(pieces(), HEADING);
  EXPECT_EQ(files.logged_and_said(), "CHECK_CORR_DBASE cannot open file=./CPY/a.txt \n");
}

TEST_F(Paragraphs, NumberOfNoDictionaryShowsEmptyPaths) {
  book.ilesson = 7;
  OPEN_TEXT(&book);
  EXPECT_EQ(pieces(), "KENTEL : \n \nEILSKRID : \n \n");
  EXPECT_EQ(files.logged_and_said(), "CHECK_CORR_DBASE cannot open file= \n");
}

TEST_F(Paragraphs, OpenCopyIsReadWhateverDictionaryItBelongsTo) {
  files.dir.write("CPY/a.txt", "#######\nOne\n");
  files.open("#######\nAnother\n");
  FILE *before = book.fp;
  OPEN_TEXT(&book);
  EXPECT_EQ(book.fp, before);
  EXPECT_EQ(book.lessons, nullptr);
  EXPECT_STREQ(book.path_of_lesson, "words/");
  EXPECT_EQ(pieces(), HEADING + std::string("Another\n"));
}
