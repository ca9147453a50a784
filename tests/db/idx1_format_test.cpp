// The idx1 file: its marks, the name line built and taken apart.
#include "db/idx1_format.h"

#include "support/prelude.h"

namespace {

struct Split {
  Trf_name_split result;
  std::string alias;
  long offset;
  std::string rest;
};

Split split(const std::string &line) {
  char alias[MAX_ALIAS + 1];
  long offset = 77;
  const char *rest = nullptr;
  Trf_name_split result = SPLIT_NAME_LINE(line.c_str(), alias, &offset, &rest);
  return {result, alias, offset, rest};
}

} // namespace

TEST(Idx1Format, TheMarksOfALine) {
  EXPECT_TRUE(IS_HEADER_MARK("#######"));
  EXPECT_TRUE(IS_HEADER_MARK("# text ####### text"));
  EXPECT_FALSE(IS_HEADER_MARK(" #######"));
  EXPECT_FALSE(IS_HEADER_MARK("######"));
  EXPECT_TRUE(IS_NAME_LINE("#x"));
  EXPECT_TRUE(IS_NAME_LINE("#"));
  EXPECT_FALSE(IS_NAME_LINE("##x"));
  EXPECT_FALSE(IS_NAME_LINE(" #x"));
  EXPECT_FALSE(IS_NAME_LINE(""));
  EXPECT_TRUE(IS_END_MARK("# END_OF_FILE * 12"));
}

TEST(NameLine, TheFirstStarGetsAliasAndOffset) {
  EXPECT_EQ(NAME_LINE_OF_ENTRY("la maison   * the house", "fr1", 1234),
            "#la maison *fr1 1234 * the house");
}

TEST(NameLine, ASecondStarStays) {
  EXPECT_EQ(NAME_LINE_OF_ENTRY("mot * word * tag", "fr1", 0), "#mot *fr1 0 * word * tag");
}

TEST(NameLine, RunsOfBlanksAndTabsAreFolded) {
  EXPECT_EQ(NAME_LINE_OF_ENTRY("a  \t b*  c   ", "x", 5), "#a b*x 5 * c ");
}

TEST(NameLine, AnEntryWithoutStarIsItsWholeLine) {
  EXPECT_EQ(NAME_LINE_OF_ENTRY("la maison", "fr1", 9), "#la maison*fr1 9 *");
  EXPECT_EQ(NAME_LINE_OF_ENTRY("la  maison  ", "fr1", 9), "#la maison *fr1 9 *");
}

TEST(NameLine, TheNotationIsDecodedBeforeTheStarIsLookedFor) {
  EXPECT_EQ(NAME_LINE_OF_ENTRY("\\'etait * was", "fr1", 3), "#\351tait *fr1 3 * was");
  // An unknown notation loses the byte behind the backslash, here the star.
  EXPECT_EQ(NAME_LINE_OF_ENTRY("a\\*b * c", "fr1", 3), "#a\\b *fr1 3 * c");
  EXPECT_EQ(NAME_LINE_OF_ENTRY("it\222s * x", "fr1", 3), "#it's *fr1 3 * x");
}

TEST(NameLine, AnEmptyQuestionIsKept) {
  EXPECT_EQ(NAME_LINE_OF_ENTRY("* answer", "fr1", 3), "#*fr1 3 * answer");
  EXPECT_EQ(QUESTION_OF_NAME_LINE("#*fr1 3 * answer"), "");
}

TEST(NameLine, ATextNamesAnEntryUpToItsFirstCommaOrSemicolon) {
  EXPECT_EQ(NAME_LINE_OF_TEXT("bonjour, madame", "fr1", 7), "#bonjour *fr1 7 *");
  EXPECT_EQ(NAME_LINE_OF_TEXT("bonjour; madame", "fr1", 7), "#bonjour *fr1 7 *");
  EXPECT_EQ(NAME_LINE_OF_TEXT(",x", "fr1", 7), "# *fr1 7 *");
}

TEST(NameLine, ATextNamesAnEntryByAtMost25Characters) {
  EXPECT_EQ(NAME_LINE_OF_TEXT("abcdefghijklmnopqrstuvwxyz", "fr1", 7),
            "#abcdefghijklmnopqrstuvwxy *fr1 7 *");
  // Twenty-five of them once decoded.
  EXPECT_EQ(NAME_LINE_OF_TEXT("\\'ebcdefghijklmnopqrstuvwxyz", "fr1", 7),
            "#\351bcdefghijklmnopqrstuvwxy *fr1 7 *");
}

TEST(NameLine, OneLeadingBlankOfATextIsKept) {
  EXPECT_EQ(NAME_LINE_OF_TEXT("   bon   jour ", "fr1", 7), "# bon jour *fr1 7 *");
}

TEST(NameLine, AStarInALaterNameIsTakenForTheOneBeforeTheAlias) {
  std::string line = NAME_LINE_OF_TEXT("2 * 3", "fr1", 7);
  EXPECT_EQ(line, "#2 * 3 *fr1 7 *");
  EXPECT_EQ(QUESTION_OF_NAME_LINE(line), "2 ");
  char s_alias[MAX_ALIAS + 1];
  long offset = 0;
  SPLIT_NAME_LINE(line.c_str(), s_alias, &offset, nullptr);
  EXPECT_STREQ(s_alias, "");
}

TEST(NameLine, TheQuestionEndsAtTheFirstStar) {
  EXPECT_EQ(QUESTION_OF_NAME_LINE("#la maison *fr1 1234 * the house "), "la maison ");
  EXPECT_EQ(QUESTION_OF_NAME_LINE("#no star"), "no star");
  EXPECT_EQ(QUESTION_OF_NAME_LINE("*"), "");
}

TEST(NameLine, IsTakenApartIntoAliasAndOffset) {
  Split whole = split("#la maison *fr1 1234 * the house ");
  EXPECT_EQ(whole.result, NAME_SPLIT);
  EXPECT_EQ(whole.alias, "fr1");
  EXPECT_EQ(whole.offset, 1234);
  EXPECT_EQ(whole.rest, " 1234 * the house ");
}

TEST(NameLine, WithoutStarHasNoAlias) {
  Split none = split("#la maison");
  EXPECT_EQ(none.result, NAME_NO_STAR);
  EXPECT_EQ(none.alias, "");
  EXPECT_EQ(none.offset, 0);
}

TEST(NameLine, WithoutNumberHasNoOffset) {
  Split none = split("#la maison *fr1 the house");
  EXPECT_EQ(none.result, NAME_NO_OFFSET);
  EXPECT_EQ(none.alias, "fr1");
  EXPECT_EQ(none.rest, " the house");
  EXPECT_EQ(split("#la maison *fr1").result, NAME_NO_OFFSET);
  EXPECT_EQ(split("#la maison *").result, NAME_NO_OFFSET);
}

TEST(NameLine, AnAliasIsCutAtAHundredCharacters) {
  Split cut = split("#x *" + std::string(120, 'a') + " 5 *");
  EXPECT_EQ(cut.alias, std::string(100, 'a'));
  EXPECT_EQ(cut.result, NAME_NO_OFFSET);
}
