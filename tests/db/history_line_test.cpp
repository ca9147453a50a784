// The history line: values taken, damage found and put right, the line written.
#include "db/history_line.h"

#include "support/prelude.h"

#include <string.h>

#include <algorithm>
#include <random>

#include "util/numbers.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const long TODAY = 9000;

struct Checked {
  int faulty;
  std::vector<long> values;
  std::string said;
};

Checked check_with(int (*routine)(long, char *, long *), size_t nb, std::string line) {
  long values[7] = {77, 77, 77, 77, 77, 77, 77};
  testing::internal::CaptureStdout();
  int faulty = routine(TODAY, line.data(), values);
  fflush(stdout);
  return {faulty, std::vector<long>(values + 1, values + 1 + nb),
          testing::internal::GetCapturedStdout()};
}

Checked check4(const std::string &line) {
  return check_with(CHECK_EXTRACT_4LINT, 4, line);
}

Checked check6(const std::string &line) {
  return check_with(CHECK_EXTRACT_6LINT, 6, line);
}

std::string fields(const std::vector<std::string> &texts) {
  std::string line;
  for (const std::string &text : texts) {
    std::string field(12, ' ');
    field.replace((12 - text.size()) / 2, text.size(), text);
    line += field + ";";
  }
  return line;
}

// The four numbers of a line, each taken with EXTR_N_LINT from behind the one before.
std::vector<long> taken_numbers(const std::string &line) {
  std::vector<long> numbers;
  std::string text = line;
  size_t at = 0;
  for (int k = 0; k < 4; k++) {
    long taken[2] = {0, 0};
    if (at < text.size())
      at += (size_t)EXTR_N_LINT(1, text.data() + at, taken) + 1;
    numbers.push_back(taken[0] > 0 ? taken[1] : 0);
    while (at < text.size() && strchr(" .+-0123456789", text[at]) == nullptr)
      at++;
  }
  return numbers;
}

} // namespace

TEST(HistoryLine, ASoundLineGivesItsFourValuesAndSaysNothing) {
  Checked checked = check4(fields({"12", "3", "8999", "9000"}));
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(12, 3, 8999, 9000));
  EXPECT_EQ(checked.said, "");
}

TEST(HistoryLine, ABlankLineIsSoundAndGivesZeros) {
  Checked checked = check4(BLANK_HISTORY_LINE());
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(0, 0, 0, 0));
}

TEST(HistoryLine, TheBlankLineIsFourTimesTwelveBlanksAndASeparator) {
  std::string field = std::string(12, ' ') + ";";
  EXPECT_EQ(BLANK_HISTORY_LINE(), field + field + field + field);
}

TEST(HistoryLine, ALineOf51Or53CharactersIsFlaggedButItsNumbersAreStillRead) {
  std::string line = fields({"12", "3", "8999", "9000"});
  for (const std::string &damaged : {line.substr(0, 51), line + " ", line.substr(1)}) {
    Checked checked = check4(damaged);
    EXPECT_EQ(checked.faulty, 1);
    EXPECT_THAT(checked.values, ElementsAre(12, 3, 8999, 9000));
    EXPECT_EQ(checked.said, "CHECK_EXTRACT_4LINT error at level 1 \n");
  }
}

TEST(HistoryLine, NothingIsReadPastTheEndOfAShortLine) {
  std::string line = fields({"12", "3", "8999", "9000"});
  for (size_t length = 0; length < line.size(); length++) {
    std::vector<char> exact(line.begin(), line.begin() + (long)length);
    exact.push_back('\0');
    long values[5];
    testing::internal::CaptureStdout();
    EXPECT_EQ(CHECK_EXTRACT_4LINT(TODAY, exact.data(), values), 1);
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(length < 7 || values[1] == 12) << length;
  }
  EXPECT_THAT(check4("").values, ElementsAre(0, 0, 0, 0));
}

TEST(HistoryLine, AMissingSeparatorIsFlaggedAtLevel2Once) {
  std::string line = fields({"12", "3", "8999", "9000"});
  line[25] = ':';
  line[38] = ':';
  Checked checked = check4(line);
  EXPECT_EQ(checked.faulty, 1);
  EXPECT_EQ(checked.said, "CHECK_EXTRACT_4LINT error at level 2 \n");
  EXPECT_THAT(checked.values, ElementsAre(12, 3, 8999, 9000));
}

TEST(HistoryLine, SeparatorsAreNotLookedAtBehindAFault) {
  std::string line = fields({"-1", "3", "8999", "9000"});
  line[25] = ':';
  EXPECT_EQ(check4(line).said, "CHECK_EXTRACT_4LINT error at level 3 \n");
}

TEST(HistoryLine, SeparatorsAreNotLookedAtInALineOfAnotherLength) {
  std::string line = fields({"12", "3", "8999", "9000"}) + " ";
  line[12] = ':';
  EXPECT_EQ(check4(line).said, "CHECK_EXTRACT_4LINT error at level 1 \n");
}

TEST(HistoryLine, ANegativeNumberIsFlaggedAtItsLevelAndGivesZero) {
  const char *levels[] = {"3", "4", "6", "7"};
  for (size_t k = 0; k < 4; k++) {
    std::vector<std::string> texts = {"12", "3", "8999", "8998"};
    texts[k] = "-5";
    Checked checked = check4(fields(texts));
    EXPECT_EQ(checked.faulty, 1);
    EXPECT_EQ(checked.values[k], 0);
    EXPECT_THAT(checked.said, HasSubstr("error at level " + std::string(levels[k]) + " \n"));
  }
}

TEST(HistoryLine, ADayLaterThanTodayClearsTheMatchingCount) {
  Checked ok = check4(fields({"12", "3", "9001", "8998"}));
  EXPECT_EQ(ok.faulty, 1);
  EXPECT_THAT(ok.values, ElementsAre(0, 3, 0, 8998));
  EXPECT_EQ(ok.said, "CHECK_EXTRACT_4LINT error at level 7 \n");
  Checked nok = check4(fields({"12", "3", "8999", "9001"}));
  EXPECT_THAT(nok.values, ElementsAre(12, 0, 8999, 0));
  EXPECT_EQ(nok.said, "CHECK_EXTRACT_4LINT error at level 7 \n");
}

TEST(HistoryLine, TodayItselfIsNoFault) {
  EXPECT_EQ(check4(fields({"1", "1", "9000", "9000"})).faulty, 0);
}

TEST(HistoryLine, ACountOfZeroForcesItsDayToZeroWithoutAFault) {
  Checked checked = check4(fields({"0", "", "8999", "8998"}));
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(0, 0, 0, 0));
}

TEST(HistoryLine, ANumberThatFillsItsFieldTakesAwayTheFirstDigitOfTheNext) {
  std::string line = "123456789012;" + fields({"34", "8999", "8998"});
  Checked checked = check4(line);
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(123456789012, 4, 8999, 8998));
}

TEST(HistoryLine, AFieldLaidOutAnyhowReadsAsTheTextBehindTheOneBefore) {
  const std::string bytes = "     ;0179-x";
  std::mt19937 chance(5);
  int nb_taken = 0;
  testing::internal::CaptureStdout();
  for (int run = 0; run < 20000; run++) {
    std::string line = fields({"7", "12", "345", "6789"});
    for (unsigned nb = chance() % 4; nb > 0; nb--)
      line[chance() % line.size()] = bytes[chance() % bytes.size()];
    std::string text = line;
    long values[5] = {};
    CHECK_EXTRACT_4LINT(100000000000000000, text.data(), values);
    std::vector<long> taken = taken_numbers(line);
    for (int k : {1, 2})
      EXPECT_EQ(values[k], std::max(taken[(size_t)k - 1], 0L)) << line;
    for (int k : {3, 4})
      EXPECT_EQ(values[k], values[k - 2] == 0 ? 0 : std::max(taken[(size_t)k - 1], 0L)) << line;
    nb_taken += taken[3] != 0 ? 1 : 0;
  }
  testing::internal::GetCapturedStdout();
  EXPECT_GT(nb_taken, 10000);
}

TEST(HistoryLine, LettersBetweenTheNumbersArePassedOver) {
  std::string line = fields({"12", "3", "8999", "8998"});
  line.replace(13, 3, "xyz");
  Checked checked = check4(line);
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(12, 3, 8999, 8998));
}

TEST(HistoryLine, TheLineWrittenReadsBack) {
  long values[5] = {0, 5, 1234, 8999, 0};
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  EXPECT_STREQ(line, "     5      ;    1234    ;    8999    ;     0      ;");
  EXPECT_THAT(check4(line).values, ElementsAre(5, 1234, 8999, 0));
}

TEST(HistoryLine, ANumberOfThirteenCharactersKeepsTheSeparator) {
  long values[5] = {0, 1234567890123, 1, 2, 3};
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  EXPECT_EQ(strlen(line), 52u);
  EXPECT_EQ(std::string(line, 13), "123456789012;");
}

TEST(WrittenLine, IsTakenWithTheValuesThatTheCheckGives) {
  std::mt19937 chance(11);
  const long largest[] = {0, 9, 99, 999, 9999, 99999};
  for (int i = 0; i < 20000; i++) {
    long written[5] = {};
    for (int k = 1; k <= 4; k++)
      written[k] = (long)chance() % (std::min(largest[chance() % 6], k < 3 ? 99999 : TODAY) + 1);
    char line[HISTORY_LENGTH + 1];
    WRITE_HISTORY_LINE(written, line);
    if (chance() % 3 == 0)
      memset(line + 13 * (chance() % 4), ' ', 12);
    long values[5] = {};
    ASSERT_TRUE(READ_WRITTEN_LINE(TODAY, line, values)) << line;
    // A line with a blank more is looked at number by number.
    ASSERT_EQ(std::vector<long>(values + 1, values + 5), check4(std::string(line) + " ").values)
        << line;
  }
}

TEST(WrittenLine, OtherBytesAreLeftToTheCheckOrTakenAsItTakesThem) {
  const std::string sound = fields({"12", "3", "8999", ""});
  for (size_t at = 0; at < sound.size(); at++)
    for (int byte = 1; byte < 256; byte++) {
      std::string line = sound;
      line[at] = (char)byte;
      long values[5] = {77, 77, 77, 77, 77};
      if (READ_WRITTEN_LINE(TODAY, line.data(), values))
        ASSERT_EQ(std::vector<long>(values + 1, values + 5), check4(line + " ").values) << line;
      else
        ASSERT_THAT(values, ElementsAre(77, 77, 77, 77, 77)) << line;
    }
}

TEST(WrittenLine, ALaterDayIsLeftToTheCheck) {
  long values[5] = {};
  EXPECT_TRUE(READ_WRITTEN_LINE(TODAY, fields({"1", "1", "9000", "9000"}).data(), values));
  EXPECT_FALSE(READ_WRITTEN_LINE(TODAY, fields({"1", "1", "9001", "9000"}).data(), values));
  EXPECT_FALSE(READ_WRITTEN_LINE(TODAY, fields({"1", "1", "9000", "9001"}).data(), values));
}

TEST(WrittenLine, ALongNumberIsLeftToTheCheck) {
  long values[5] = {};
  EXPECT_FALSE(READ_WRITTEN_LINE(TODAY, fields({"100000", "1", "1", "1"}).data(), values));
  EXPECT_THAT(check4(fields({"100000", "1", "1", "1"})).values, ElementsAre(100000, 1, 1, 1));
}

TEST(WrittenLine, ADayWithoutCountIsNotTaken) {
  long values[5] = {};
  ASSERT_TRUE(READ_WRITTEN_LINE(TODAY, fields({"", "0", "8000", "8001"}).data(), values));
  EXPECT_THAT(values, ElementsAre(0, 0, 0, 0, 0));
}

TEST(SixFieldLine, ASoundLineGivesItsSixValues) {
  Checked checked = check6(fields({"5", "2", "100", "7", "7", "9000"}));
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(5, 2, 100, 7, 7, 9000));
}

TEST(SixFieldLine, AnEmptyDayMeansToday) {
  Checked checked = check6(fields({"5", "2", "", "7", "1", ""}));
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(5, 2, 9000, 7, 1, 9000));
}

TEST(SixFieldLine, ATotalOfZeroMakesTheDayToday) {
  Checked checked = check6(fields({"0", "0", "100", "", "", "200"}));
  EXPECT_EQ(checked.faulty, 0);
  EXPECT_THAT(checked.values, ElementsAre(0, 0, 9000, 0, 0, 9000));
}

TEST(SixFieldLine, MoreWrongAnswersThanAnswersClearBoth) {
  Checked checked = check6(fields({"5", "6", "100", "7", "8", "200"}));
  EXPECT_EQ(checked.faulty, 1);
  EXPECT_THAT(checked.values, ElementsAre(0, 0, 9000, 0, 0, 9000));
  EXPECT_EQ(checked.said, "CHECK_EXTRACT_6LINT error at level 5 \n"
                          "CHECK_EXTRACT_6LINT error at level 10 \n");
}

TEST(SixFieldLine, ADayLaterThanTodayClearsBothCounts) {
  Checked checked = check6(fields({"5", "2", "9001", "7", "1", "9002"}));
  EXPECT_THAT(checked.values, ElementsAre(0, 0, 9000, 0, 0, 9000));
  EXPECT_EQ(checked.said, "CHECK_EXTRACT_6LINT error at level 7 \n"
                          "CHECK_EXTRACT_6LINT error at level 12 \n");
}

TEST(SixFieldLine, NegativeNumbersAreFlaggedAtTheirLevels) {
  const char *levels[] = {"3", "4", "6", "8", "9", "11"};
  for (size_t k = 0; k < 6; k++) {
    std::vector<std::string> texts = {"5", "2", "100", "7", "1", "200"};
    texts[k] = "-1";
    Checked checked = check6(fields(texts));
    EXPECT_EQ(checked.faulty, 1);
    EXPECT_GE(checked.values[k], 0);
    EXPECT_THAT(checked.said, HasSubstr("error at level " + std::string(levels[k]) + " \n"));
  }
}

TEST(SixFieldLine, ANegativeDayIsZero) {
  EXPECT_THAT(check6(fields({"5", "2", "-1", "7", "1", "-2"})).values,
              ElementsAre(5, 2, 0, 7, 1, 0));
  EXPECT_THAT(check6(fields({"0", "0", "-1", "7", "1", "200"})).values,
              ElementsAre(0, 0, 9000, 7, 1, 200));
}

TEST(SixFieldLine, AMissingSeparatorIsFlaggedAtLevel2Once) {
  for (size_t place : {12u, 77u}) {
    std::string line = fields({"5", "2", "100", "7", "1", "200"});
    line[place] = ':';
    Checked checked = check6(line);
    EXPECT_EQ(checked.faulty, 1);
    EXPECT_EQ(checked.said, "CHECK_EXTRACT_6LINT error at level 2 \n");
    EXPECT_THAT(checked.values, ElementsAre(5, 2, 100, 7, 1, 200));
  }
}

TEST(SixFieldLine, ALineOfAnotherLengthIsFlaggedButRead) {
  std::string line = fields({"5", "2", "100", "7", "1", "200"});
  Checked checked = check6(line.substr(0, 77));
  EXPECT_EQ(checked.faulty, 1);
  EXPECT_THAT(checked.values, ElementsAre(5, 2, 100, 7, 1, 200));
  EXPECT_EQ(checked.said, "CHECK_EXTRACT_6LINT error at level 1 \n");
  EXPECT_EQ(check6(fields({"5", "2", "100", "7"})).faulty, 1);
}
