// Integers taken from a line, the number field, a text fitted to a length.
#include "util/numbers.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <random>

#include "support/prelude.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// Element 0 and as many numbers as were taken; where the reading stopped in *stop.
std::vector<int> take_ints(int n, std::string line, int *stop = nullptr) {
  std::vector<int> numbers((size_t)n + 1, 77);
  int end = EXTR_N_INT(n, line.data(), numbers.data());
  if (stop != nullptr)
    *stop = end;
  numbers.resize((size_t)numbers[0] + 1);
  return numbers;
}

std::vector<long> take_longs(int n, std::string line, int *stop = nullptr) {
  std::vector<long> numbers((size_t)n + 1, 77);
  int end = EXTR_N_LINT(n, line.data(), numbers.data());
  if (stop != nullptr)
    *stop = end;
  numbers.resize((size_t)numbers[0] + 1);
  return numbers;
}

// The field laid into a line of '#'.
std::string field(long number) {
  std::string line(16, '#');
  LNB_12CHAR(number, line.data());
  return line;
}

std::string resized(int length, const std::string &text) {
  std::vector<char> room(text.begin(), text.end());
  room.resize(std::max(text.size(), (size_t)length) + 1);
  RESIZE_STRING(length, room.data());
  return room.data();
}

} // namespace

TEST(Integers, FewerThanAskedAreCountedAndTheLineIsReadToItsEnd) {
  int stop = -1;
  EXPECT_THAT(take_ints(3, "  7 8", &stop), ElementsAre(2, 7, 8));
  EXPECT_EQ(stop, 5);
}

TEST(Integers, NothingIsTakenFromALineThatBeginsWithNoNumber) {
  int stop = -1;
  EXPECT_THAT(take_ints(3, "abc", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 0);
  EXPECT_THAT(take_ints(3, "  abc", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 2);
}

TEST(Integers, NothingIsTakenFromAnEmptyLineOrBlanks) {
  int stop = -1;
  EXPECT_THAT(take_ints(2, "", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 0);
  EXPECT_THAT(take_ints(2, "   ", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 3);
}

TEST(Integers, ATabIsNoBlank) {
  int stop = -1;
  EXPECT_THAT(take_ints(2, "\t5", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 0);
}

TEST(Integers, NoMoreThanAskedAreTaken) {
  int stop = -1;
  EXPECT_THAT(take_ints(2, "1 2 3", &stop), ElementsAre(2, 1, 2));
  EXPECT_EQ(stop, 4);
  EXPECT_THAT(take_ints(0, " 1 2 3", &stop), ElementsAre(0));
}

TEST(Integers, ASignIsNeverReadAndStopsTheTaking) {
  int stop = -1;
  EXPECT_THAT(take_ints(2, "-12 5", &stop), ElementsAre(2, 0, 0));
  EXPECT_EQ(stop, 0);
  EXPECT_THAT(take_ints(3, "4-12", &stop), ElementsAre(3, 4, 0, 0));
  EXPECT_EQ(stop, 1);
  EXPECT_THAT(take_ints(1, "+3", &stop), ElementsAre(1, 0));
  EXPECT_THAT(take_ints(1, ".3", &stop), ElementsAre(1, 0));
}

TEST(Integers, OtherBytesBehindANumberGiveZerosAndStopTheTaking) {
  int stop = -1;
  EXPECT_THAT(take_ints(3, "12abc 4", &stop), ElementsAre(3, 12, 0, 0));
  EXPECT_EQ(stop, 2);
}

TEST(Integers, TheFirstHundredDigitsOfARunCount) {
  int stop = -1;
  std::string run = std::string(99, '0') + "12";
  EXPECT_THAT(take_ints(2, run + " 5", &stop), ElementsAre(2, 1, 5));
  EXPECT_EQ(stop, 103);
}

TEST(Integers, ANumberBeyondIntIsClamped) {
  EXPECT_THAT(take_ints(1, "2147483647"), ElementsAre(1, INT_MAX));
  EXPECT_THAT(take_ints(1, "2147483648"), ElementsAre(1, INT_MAX));
  EXPECT_THAT(take_ints(1, std::string(300, '9')), ElementsAre(1, INT_MAX));
}

TEST(LongIntegers, ANumberIsWhateverStandsUpToTheNextBlank) {
  int stop = -1;
  EXPECT_THAT(take_longs(3, "12 -3 x9", &stop), ElementsAre(3, 12, -3, 0));
  EXPECT_EQ(stop, 8);
  EXPECT_THAT(take_longs(2, "-12 3x"), ElementsAre(2, -12, 3));
  EXPECT_THAT(take_longs(2, "+7 .5"), ElementsAre(2, 7, 0));
}

TEST(LongIntegers, NothingIsTakenFromALineThatBeginsWithNoNumber) {
  int stop = -1;
  EXPECT_THAT(take_longs(3, " x9 3", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 1);
  EXPECT_THAT(take_longs(3, "", &stop), ElementsAre(0));
  EXPECT_EQ(stop, 0);
}

TEST(LongIntegers, FewerThanAskedAreCounted) {
  int stop = -1;
  EXPECT_THAT(take_longs(4, " 0  44100 ", &stop), ElementsAre(2, 0, 44100));
  EXPECT_EQ(stop, 10);
}

TEST(LongIntegers, AWordOfBlankLookAlikesDoesNotReachIntoTheNext) {
  EXPECT_THAT(take_longs(3, "1 \t 5"), ElementsAre(3, 1, 0, 5));
}

TEST(LongIntegers, ANumberBeyondLongIsClamped) {
  EXPECT_THAT(take_longs(2, "99999999999999999999 -99999999999999999999"),
              ElementsAre(2, LONG_MAX, LONG_MIN));
}

TEST(LongIntegers, AWordIsReadAsTheLibraryReadsIt) {
  const std::string bytes = "0123456789012345678901234567890123456789-+.x\t";
  std::mt19937 chance(3);
  for (int run = 0; run < 20000; run++) {
    std::string word(1, (char)('0' + chance() % 10));
    for (unsigned nb = chance() % 24; nb > 0; nb--)
      word += bytes[chance() % bytes.size()];
    EXPECT_THAT(take_longs(1, word), ElementsAre(1, strtol(word.c_str(), nullptr, 10))) << word;
  }
}

TEST(NumberField, ANumberIsCentredBetweenBlanks) {
  EXPECT_EQ(field(5).substr(0, 12), "     5      ");
  EXPECT_EQ(field(1234).substr(0, 12), "    1234    ");
  EXPECT_EQ(field(-7).substr(0, 12), "     -7     ");
  EXPECT_EQ(field(0).substr(0, 12), "     0      ");
  EXPECT_EQ(field(123).substr(0, 12), "    123     ");
}

TEST(NumberField, TheThirteenthByteIsLeftAsItWas) {
  EXPECT_EQ(field(5).substr(12), std::string("#\0##", 4));
}

TEST(NumberField, TwelveCharactersFillTheField) {
  EXPECT_EQ(field(123456789012).substr(0, 14), std::string("123456789012#\0", 14));
}

TEST(NumberField, ThirteenCharactersAreCutWithoutAWarningAndLeaveTheThirteenthByte) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(field(1234567890123).substr(0, 14), std::string("123456789012#\0", 14));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(NumberField, MoreThanThirteenCharactersAreCutWithAWarning) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(field(123456789012345).substr(0, 14), std::string("123456789012#\0", 14));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Warning LNB_12CHAR sw=123456789012345@@@\n");
}

TEST(NumberField, TheGreatestNumbersStayInTheField) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(field(LONG_MIN), std::string("-92233720368#\0##", 16));
  EXPECT_EQ(field(LONG_MAX), std::string("922337203685#\0##", 16));
  testing::internal::GetCapturedStdout();
}

TEST(ResizeString, ATextOfThatLengthIsLeft) {
  EXPECT_EQ(resized(6, "a  b c"), "a  b c");
}

TEST(ResizeString, AShortTextIsFilledWithBlanks) {
  EXPECT_EQ(resized(6, "ab"), "ab    ");
  EXPECT_EQ(resized(3, ""), "   ");
}

TEST(ResizeString, RunsOfBlanksShrinkToOne) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(resized(5, "a  b  c"), "a b c");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(ResizeString, RunsOfBlanksShrinkFromTheLeftOnlyAsFarAsNeeded) {
  EXPECT_EQ(resized(6, "a  b  c"), "a b  c");
  EXPECT_EQ(resized(7, "   a    b"), " a    b");
  EXPECT_EQ(resized(4, "abc     "), "abc ");
}

TEST(ResizeString, ATextWithTooFewDoubledBlanksIsCutWithAComplaint) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(resized(3, "abcdef"), "abc");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "error RESIZE_STRING j=6 lssd=3 \n");
}

TEST(ResizeString, TheComplaintTellsTheLengthReached) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(resized(4, "a   bcdef"), "a bc");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "error RESIZE_STRING j=7 lssd=4 \n");
}

TEST(ResizeString, NothingIsCutToZeroOrLess) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(resized(0, "ab"), "");
  testing::internal::GetCapturedStdout();
  char text[] = "ab";
  RESIZE_STRING(-1, text);
  EXPECT_STREQ(text, "ab");
}
