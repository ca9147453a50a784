// Tags told from marks, and found in a name line.
#include "lesson/tag_test.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

int notag(std::string text) {
  return NOTAG(text.data());
}

TEST(NoTag, AnEmptyTextIsUntagged) {
  std::vector<char> nothing = {0}; // nothing lies behind its end
  EXPECT_EQ(NOTAG(nothing.data()), 1);
}

TEST(NoTag, BlanksAreUntagged) {
  EXPECT_EQ(notag(" "), 1);
  EXPECT_EQ(notag("    "), 1);
}

TEST(NoTag, AWordIsATag) {
  EXPECT_EQ(notag(" verbs "), 0);
  EXPECT_EQ(notag(" verbs"), 0);
}

TEST(NoTag, AMarkBetweenBlanksIsUntagged) {
  EXPECT_EQ(notag(" Q12 "), 1);
  EXPECT_EQ(notag(" R3 "), 1);
  EXPECT_EQ(notag(" Q12 R3 "), 1);
}

TEST(NoTag, AnyDigitMakesAMark) {
  for (char digit = '0'; digit <= '9'; digit++) {
    EXPECT_EQ(notag(std::string(" Q") + digit + " "), 1) << digit;
    EXPECT_EQ(notag(std::string(" R") + digit), 1) << digit;
  }
  EXPECT_EQ(notag(" Q/ "), 0);
  EXPECT_EQ(notag(" Q: "), 0);
}

TEST(NoTag, AMarkAtTheEndIsUntagged) {
  EXPECT_EQ(notag(" Q12"), 1);
  EXPECT_EQ(notag(" R3"), 1);
  EXPECT_EQ(notag(" Q12 R3"), 1);
}

TEST(NoTag, AMarkFollowedByAWordIsTagged) {
  EXPECT_EQ(notag(" Q12 verbs "), 0);
  EXPECT_EQ(notag(" R3 verbs "), 0);
  EXPECT_EQ(notag(" Q12 R3 verbs"), 0);
}

TEST(NoTag, AWordThatBeginsWithTheLetterOfAMarkIsATag) {
  EXPECT_EQ(notag(" Quick "), 0);
  EXPECT_EQ(notag(" Rare "), 0);
  EXPECT_EQ(notag(" Q12 Rare "), 0);
}

TEST(NoTag, ABareLetterIsATag) {
  EXPECT_EQ(notag(" Q"), 0);
  EXPECT_EQ(notag(" R"), 0);
  EXPECT_EQ(notag(" Q "), 0);
}

TEST(NoTag, AMarkInTheFirstPlaceCountsAsATag) {
  EXPECT_EQ(notag("Q12"), 0);
  EXPECT_EQ(notag("R3 "), 0);
}

TEST(NoTag, ASingleLetterInTheFirstPlaceIsNotSeen) {
  EXPECT_EQ(notag("x"), 1);
  EXPECT_EQ(notag("x  "), 1);
}

TEST(NoTag, WordsBeforeAMarkAreNotSeen) {
  EXPECT_EQ(notag(" verbs Q12"), 1);
  EXPECT_EQ(notag(" verbs Q12 "), 1);
  EXPECT_EQ(notag(" verbs R3"), 1);
}

TEST(NoTag, AMarkOfResponsesBeforeOneOfQuestionsIsNotLookedFor) {
  EXPECT_EQ(notag(" R3 Q12 "), 1);
  EXPECT_EQ(notag(" Rare Q12 "), 1);
}

TEST(NoTag, LettersBehindTheDigitsBelongToTheMark) {
  EXPECT_EQ(notag(" Q1abc "), 1);
}

TEST(CarriesTag, ANameLineWithOneStarNeverDoes) {
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 verbs ", " verbs "));
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 verbs ", ""));
  EXPECT_FALSE(CARRIES_TAG("#question", ""));
  EXPECT_FALSE(CARRIES_TAG("", ""));
}

TEST(CarriesTag, TheTextBehindTheSecondStarIsSearched) {
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * verbs ", " verbs "));
  EXPECT_FALSE(CARRIES_TAG("# verbs *a1 10 * nouns ", " verbs "));
  EXPECT_FALSE(CARRIES_TAG("#question * verbs 10 * nouns ", " verbs "));
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * nouns * verbs ", " verbs "));
}

TEST(CarriesTag, TheFirstCharacterIsNoStar) {
  EXPECT_FALSE(CARRIES_TAG("*question * verbs ", " verbs "));
  EXPECT_TRUE(CARRIES_TAG("*question * 10 * verbs ", " verbs "));
  EXPECT_TRUE(CARRIES_TAG("#** verbs ", " verbs "));
}

TEST(CarriesTag, ABlankIsAddedBehindTheLastWord) {
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * nouns verbs", " verbs "));
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 * nouns verbsx", " verbs "));
}

TEST(CarriesTag, AWordRightBehindTheStarHasNoBlankInFront) {
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 *verbs ", " verbs "));
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 *verbs ", "verbs "));
}

TEST(CarriesTag, SeveralWordsAreFoundTogether) {
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * Q1 a b ", " a b "));
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 * b a ", " a b "));
}

TEST(CarriesTag, AccentsDoNotPreventAMatch) {
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * irr\351guliers ", " irreguliers "));
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * irr\\'eguliers ", " irreguliers "));
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 * irr\351guliers ", " irr\351guliers "));
}

TEST(CarriesTag, LigaturesBecomeTwoLetters) {
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * \346\346\346\346\346", " aeaeaeaeae "));
}

TEST(CarriesTag, CapitalsAreNotMadeSmall) {
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 * Verbs ", " verbs "));
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * Verbs ", " Verbs "));
}

TEST(CarriesTag, NoTagFindsTheUntagged) {
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 *", ""));
  EXPECT_TRUE(CARRIES_TAG("#question *a1 10 * Q12 R3 ", ""));
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 * Q12 verbs ", ""));
  EXPECT_FALSE(CARRIES_TAG("#question *a1 10 *Q12", ""));
}

TEST(CarriesTag, TheNameLineStaysAsItIs) {
  std::string line = "#question *a1 10 * irr\351guliers ";
  const std::string before = line;
  CARRIES_TAG(line.c_str(), " irreguliers ");
  EXPECT_EQ(line, before);
}

} // namespace
