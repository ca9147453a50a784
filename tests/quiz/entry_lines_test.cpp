// The lines of an entry that a question or a response shows, and the sounds it plays.
#include "quiz/entry_lines.h"

#include "quiz/book_of_files.h"
#include "support/prelude.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Lines = std::vector<std::string>;

void keep_line(char *text, void *data) {
  static_cast<Lines *>(data)->push_back(text);
}

void keep_range(char *name, long start, long stop, void *data) {
  static_cast<Lines *>(data)->push_back("range " + std::string(name) + " " + std::to_string(start) +
                                        " " + std::to_string(stop));
}

void keep_total(char *name, void *data) {
  static_cast<Lines *>(data)->push_back("total " + std::string(name));
}

class EntryLines : public testing::Test {
protected:
  EntryLines() {
    FORGET_HEARD();
  }
  // What the walk hands out for the dictionary text from offset `add` on.
  Lines walk(const std::string &text, int istate, long add = 0) {
    files.dir.write("copy", text);
    FILE *fp = fopen("copy", "r");
    Lines lines;
    Trf_entry_out out = {keep_line, keep_range, keep_total, &lines};
    WALK_ENTRY(fp, istate, add, &book, &out);
    fclose(fp);
    return lines;
  }
  // The question, and then the response, as the quiz shows them in the direction of the book.
  Lines question(const std::string &text) {
    book.state = 1;
    return walk(text, book.sens_qr == 2 ? 2 : 1);
  }
  Lines response(const std::string &text) {
    book.state = 2;
    return walk(text, book.sens_qr == 2 ? 1 : 2);
  }
  std::string said_by_question(const std::string &text) {
    testing::internal::CaptureStdout();
    question(text);
    return testing::internal::GetCapturedStdout();
  }
  Book_of_files files;
  Trf_book &book = files.book;
};

const char PLAIN[] = "# the house * n\nQ> the house\nmore\nR> la maison\nencore\n\n# next\n";
const char SOUND[] =
    "# the house * Q3 n\n<)) house.wav 10 500\nQ> the house\nR> la maison\n# next\n";

} // namespace

TEST_F(EntryLines, QuestionGoesOnToTheResponse) {
  EXPECT_THAT(question(PLAIN), ElementsAre(" the house", "more", "   "));
}

TEST_F(EntryLines, ResponseGoesOnToTheNextEntry) {
  question(PLAIN);
  EXPECT_THAT(response(PLAIN), ElementsAre(" la maison", "encore", "", "   "));
}

TEST_F(EntryLines, OtherDirectionAsksTheResponse) {
  book.sens_qr = 2;
  EXPECT_THAT(question(PLAIN), ElementsAre(" la maison", "encore", "", "   "));
  EXPECT_THAT(response(PLAIN), ElementsAre(" the house", "more", "   "));
}

TEST_F(EntryLines, ReadingStartsAtTheOffset) {
  std::string text = "# one *\nQ> one\nR> un\n";
  EXPECT_THAT(walk(text + "# two *\nQ> two\n", 1, static_cast<long>(text.size())),
              ElementsAre(" two", "   "));
}

TEST_F(EntryLines, RemarksAreNeverShown) {
  EXPECT_THAT(question("# a *\n! no Q> here\n  ! nor R>\nQ> a\n  ! nor here\nb\n"),
              ElementsAre(" a", "b", "   "));
}

TEST_F(EntryLines, MarkMayStandInsideALine) {
  EXPECT_THAT(question("# a *\nsay Q> a\n"), ElementsAre(" a", "   "));
}

TEST_F(EntryLines, PartEndsAtTheEndOfTheDictionary) {
  EXPECT_THAT(question("# a *\nQ> a\nb\nx END_OF_FILE\nc\n"), ElementsAre(" a", "b", "   "));
}

TEST_F(EntryLines, LongLineIsShownWhole) {
  EXPECT_THAT(question("# a *\nQ>" + std::string(3000, 'x') + "\n"),
              ElementsAre(std::string(3000, 'x'), "   "));
}

TEST_F(EntryLines, PartOfMoreThanTenThousandLinesIsReadToItsEnd) {
  std::string text = "# a *\nQ> a\n";
  for (int i = 0; i < 10500; i++)
    text += "x\n";
  EXPECT_EQ(question(text).size(), 10502u);
}

TEST_F(EntryLines, EntryWithoutAResponseShowsThatOfTheNextEntry) {
  const char *text = "# a *\nQ> a\n# b *\nQ> b\nR> both\n# c *\n";
  question(text);
  EXPECT_THAT(response(text), ElementsAre(" both", "   "));
}

TEST_F(EntryLines, NothingAtTheOffsetIsErrorOne) {
  EXPECT_THAT(walk("# a *\n", 1, 500), IsEmpty());
  EXPECT_EQ(files.log(), "DISPLAY_QR error 1 lecture \n");
}

TEST_F(EntryLines, NoStreamIsErrorOne) {
  Lines lines;
  Trf_entry_out out = {keep_line, keep_range, keep_total, &lines};
  WALK_ENTRY(nullptr, 1, 0, &book, &out);
  EXPECT_THAT(lines, IsEmpty());
  EXPECT_EQ(files.log(), "DISPLAY_QR error 1 lecture \n");
}

TEST_F(EntryLines, NoHeaderShowsTheFifthLine) {
  EXPECT_THAT(walk("zero\none\ntwo\nthree\nfour\nfive\nsix\n", 1, 5), ElementsAre("five"));
  EXPECT_EQ(files.log(), "DISPLAY_QR error 2 lecture \n");
}

TEST_F(EntryLines, NoHeaderNearTheEndShowsTheLastLine) {
  EXPECT_THAT(walk("zero\none\n", 1), ElementsAre("one"));
}

TEST_F(EntryLines, HeaderMayBeIndented) {
  EXPECT_THAT(question("   # a *\nQ> a\n"), ElementsAre(" a", "   "));
}

TEST_F(EntryLines, MissingPartIsErrorThree) {
  EXPECT_THAT(question("# a *\nR> a\n"), IsEmpty());
  EXPECT_THAT(question("# a *\nEND_OF_FILE\nQ> a\n"), IsEmpty());
  EXPECT_EQ(files.log(), "DISPLAY_QR error 3 lecture \nDISPLAY_QR error 3 lecture \n");
}

TEST_F(EntryLines, QuestionWithASoundIsOnlyHeard) {
  EXPECT_THAT(question(SOUND), ElementsAre("house.wav", "range house.wav 10 500", "(3)", "   "));
}

TEST_F(EntryLines, RepeatCountOfOneIsNotShown) {
  EXPECT_THAT(question("# a * Q1\n<() a.wav\nQ> a\n"), ElementsAre("a.wav", "total a.wav", "   "));
  EXPECT_THAT(question("# Q9 a * n\n<() a.wav\nQ> a\n"),
              ElementsAre("a.wav", "total a.wav", "   "));
  EXPECT_THAT(question("# Q9 a\n<() a.wav\nQ> a\n"), ElementsAre("a.wav", "total a.wav", "   "));
}

TEST_F(EntryLines, ResponseToAHeardQuestionBeginsWithTheWrittenQuestion) {
  question(SOUND);
  EXPECT_THAT(response(SOUND), ElementsAre(" the house", "   ", " la maison", "   "));
}

TEST_F(EntryLines, SoundSwitchedOffWritesTheQuestion) {
  book.sound = 0;
  EXPECT_THAT(question(SOUND), ElementsAre(" the house", "   "));
  EXPECT_THAT(response(SOUND), ElementsAre(" la maison", "   "));
}

TEST_F(EntryLines, QuestionsNotOnlyHeardAreHeardAndWritten) {
  book.interro_sound = 0;
  EXPECT_THAT(question(SOUND),
              ElementsAre("house.wav", "range house.wav 10 500", " the house", "   "));
  EXPECT_THAT(response(SOUND), ElementsAre(" la maison", "   "));
}

TEST_F(EntryLines, OtherDirectionIsHeardWithTheResponse) {
  book.sens_qr = 2;
  EXPECT_THAT(question(SOUND), ElementsAre(" la maison", "   "));
  EXPECT_THAT(response(SOUND),
              ElementsAre("house.wav", "range house.wav 10 500", " the house", "   "));
}

TEST_F(EntryLines, QuestionMarkLinePlaysItsRangeAndThenTheWholeFile) {
  EXPECT_THAT(question("# a *\n? a.wav 3 9\nQ> a\n"),
              ElementsAre("a.wav", "range a.wav 3 9", "a.wav", "total a.wav", "   "));
}

TEST_F(EntryLines, SignsBeforeASoundNameAreNoPartOfIt) {
  EXPECT_THAT(question("# a *\n<))< ) a.wav 3 9\n<() ( ) b.wav\nQ> a\n"),
              ElementsAre("a.wav", "range a.wav 3 9", "b.wav", "total b.wav", "   "));
}

TEST_F(EntryLines, SoundLinesPlayInTheOrderOfTheFile) {
  EXPECT_THAT(question("# a *\n<() b.wav\n<)) a.wav 3 9\nQ> a\n"),
              ElementsAre("b.wav", "total b.wav", "a.wav", "range a.wav 3 9", "   "));
}

TEST_F(EntryLines, SoundLineWithoutTwoNumbersIsToldAndTheQuestionWritten) {
  EXPECT_EQ(said_by_question("# a *\n<)) a.wav 3\nQ> a\n"),
            "DISPLAY_QR error detect 2 long int ? ss=<)) a.wav 3 \n");
  EXPECT_THAT(question("# a *\n<)) a.wav 3\nQ> a\n"), ElementsAre(" a", "   "));
}

TEST_F(EntryLines, SoundLineWithoutANamePlaysNothing) {
  EXPECT_EQ(said_by_question("# a *\n?\nQ> a\n"), "DISPLAY_QR error detect 2 long int ? ss=? \n");
  EXPECT_THAT(question("# a *\n<()\nQ> a\n"), ElementsAre(" a", "   "));
}

TEST_F(EntryLines, SoundLineMustBeginItsLine) {
  EXPECT_THAT(question("# a *\n <() a.wav\nQ> a\n"), ElementsAre(" a", "   "));
}

TEST_F(EntryLines, SoundLinesBehindTheQuestionAreText) {
  EXPECT_THAT(question("# a *\nQ> a\n<() a.wav\nR> b\n"), ElementsAre(" a", "<() a.wav", "   "));
}

TEST_F(EntryLines, Utf8IsHandedOutAsCp1252) {
  EXPECT_THAT(question("# a *\nQ> caf\303\251\n"), ElementsAre(" caf\351", "   "));
}
