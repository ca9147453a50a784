// Tokens of dictionary lists, and ranges.
#include "support/prelude.h"

#include "config/lesson_tokens.h"

#include <limits.h>

namespace {

std::vector<std::string> tokens(const std::string &line) {
  std::vector<std::string> found;
  const char *place = line.c_str();
  for (std::string token = NEXT_LESSON_TOKEN(&place); !token.empty();
       token = NEXT_LESSON_TOKEN(&place))
    found.push_back(token);
  return found;
}

Trf_range range_of(const char *name) {
  Trf_range range = {};
  EXPECT_TRUE(FIND_RANGE(name, &range));
  return range;
}

} // namespace

TEST(LessonTokens, TokensAreSeparatedByBlanks) {
  EXPECT_THAT(tokens("  a/b.txt   c\\d->2.txt <:"),
              testing::ElementsAre("a/b.txt", "c\\d->2.txt", "<:"));
}

TEST(LessonTokens, WordCharactersAndTheListedOnesMakeAToken) {
  EXPECT_THAT(tokens("l'\351t\351-1_2.txt:>"), testing::ElementsAre("l'\351t\351-1_2.txt:>"));
}

TEST(LessonTokens, AnyOtherByteEndsTheLine) {
  EXPECT_THAT(tokens("a,b c"), testing::ElementsAre("a"));
  EXPECT_THAT(tokens("a # b"), testing::ElementsAre("a"));
  EXPECT_THAT(tokens("a\tb"), testing::ElementsAre("a"));
  EXPECT_THAT(tokens("#a"), testing::IsEmpty());
}

TEST(LessonTokens, ARangeRunsFromTheFirstDigitBeforeTheArrowToTheLastBehind) {
  Trf_range range = range_of("le012->345.txt");
  EXPECT_EQ(range.begin, 2u);
  EXPECT_EQ(range.end, 10u);
  EXPECT_EQ(range.n1, 12);
  EXPECT_EQ(range.n2, 345);
  EXPECT_TRUE(range.both_given);
  EXPECT_FALSE(range.at_end);
}

TEST(LessonTokens, AMissingNumberOfARangeIsZero) {
  Trf_range range = range_of("le->3");
  EXPECT_EQ(range.n1, 0);
  EXPECT_EQ(range.begin, 2u);
  EXPECT_FALSE(range.both_given);
  range = range_of("le4->.txt");
  EXPECT_EQ(range.n2, 0);
  EXPECT_EQ(range.end, 5u);
  EXPECT_FALSE(range.both_given);
  EXPECT_TRUE(range_of("->").at_end);
}

TEST(LessonTokens, HugeNumbersOfARangeAreClamped) {
  Trf_range range = range_of("99999999999999999999999->3000000000");
  EXPECT_EQ(range.n1, INT_MAX);
  EXPECT_EQ(range.n2, INT_MAX);
}

TEST(LessonTokens, ANameWithoutArrowHasNoRange) {
  Trf_range range;
  EXPECT_FALSE(FIND_RANGE("le1-3>4.txt", &range));
}

TEST(LessonTokens, TheValueReplacesTheRangeWithoutLeadingZeros) {
  EXPECT_EQ(RANGE_REPLACED("le01->03.txt", range_of("le01->03.txt"), 2), "le2.txt");
}

TEST(LessonTokens, TheDirectoryIsKeptAsWritten) {
  EXPECT_EQ(DIRECTORY_AS_WRITTEN("lessons/le1.txt"), "lessons/");
  EXPECT_EQ(DIRECTORY_AS_WRITTEN("C:\\dico\\le1.txt"), "C:/dico/");
  EXPECT_EQ(DIRECTORY_AS_WRITTEN("/le1.txt"), "/");
  EXPECT_EQ(DIRECTORY_AS_WRITTEN("le1.txt"), "./");
}

TEST(LessonTokens, TheNameIsTheLastComponent) {
  EXPECT_EQ(NAME_OF_TOKEN("a/b\\c.txt"), "c.txt");
  EXPECT_EQ(NAME_OF_TOKEN("c.txt"), "c.txt");
  EXPECT_EQ(NAME_OF_TOKEN("a/"), "");
}
