// The dictionary file: its alias and the kinds of its lines.
#include "db/dictionary_file.h"

#include "support/prelude.h"
#include "support/scratch.h"

#include "util/owned.h"

namespace {

std::string alias_of(const std::string &text) {
  Scratch_dir dir;
  dir.write("dico", text);
  Owned_stream fp = OPEN_STREAM("dico", "r");
  fseek(fp.get(), 3, SEEK_SET);
  Owned_text alias(EXTRACT_SHABANG(fp.get()));
  EXPECT_EQ(ftell(fp.get()), 0);
  return alias ? alias.get() : "(none)";
}

Trf_dico_line kind_of(const std::string &line, std::string *about = nullptr) {
  const char *text = nullptr;
  Trf_dico_line kind = KIND_OF_DICO_LINE(line.c_str(), &text);
  if (about != nullptr)
    *about = text;
  return kind;
}

} // namespace

TEST(ExtractShabang, TakesTheRunOfAliasCharacters) {
  EXPECT_EQ(alias_of("words\r\n!#  fr-1_b extra\r\n"), "fr-1_b");
  EXPECT_EQ(alias_of("!#voc;x\n"), "voc");
  EXPECT_EQ(alias_of("text !# en2\n"), "en2");
}

TEST(ExtractShabang, AFileWithoutTheMarkHasNoAlias) {
  EXPECT_EQ(alias_of("# la maison * the house\n"), "(none)");
  EXPECT_EQ(alias_of(""), "(none)");
}

TEST(ExtractShabang, TheMarkIsNotTheOtherWayRound) {
  EXPECT_EQ(alias_of("#! fr1\n!# en1\n"), "en1");
}

TEST(ExtractShabang, TheFirstLineWithTheMarkDecides) {
  EXPECT_EQ(alias_of("!# one\n!# two\n"), "one");
  EXPECT_EQ(alias_of("!# \n!# two\n"), "(none)");
  EXPECT_EQ(alias_of("!#*\n!# two\n"), "(none)");
}

TEST(ExtractShabang, OnlyTheFirst99BytesOfALineAreLookedAt) {
  EXPECT_EQ(alias_of(std::string(96, 'x') + "!#abc\n!# b\n"), "a");
  EXPECT_EQ(alias_of(std::string(98, 'x') + "!#abc\n!# b\n"), "b");
  EXPECT_EQ(alias_of(std::string(97, 'x') + "!#abc\n!# b\n"), "(none)");
}

TEST(ExtractShabang, ThoseBytesAreCountedInTheLineAsRead) {
  // One byte each once the two-byte letters are read.
  std::string accents;
  for (int i = 0; i < 60; i++)
    accents += "\303\251";
  EXPECT_EQ(alias_of(accents + "!# abc\n"), "abc");
}

TEST(ExtractShabang, AnAccentedLetterEndsTheAlias) {
  EXPECT_EQ(alias_of("!# caf\351s\n"), "caf");
}

TEST(ExtractShabang, LooksBeyondTenThousandLines) {
  std::string text;
  for (int i = 0; i < 10050; i++)
    text += "text\n";
  EXPECT_EQ(alias_of(text + "!# far\n"), "far");
}

TEST(ExtractShabang, AnAliasOfTheWholeLineFits) {
  EXPECT_EQ(alias_of("!#" + std::string(200, 'a') + "\n"), std::string(97, 'a'));
}

TEST(DicoLine, TheCharacterBehindTheMarkDecides) {
  std::string about;
  EXPECT_EQ(kind_of("#  la maison * the house", &about), DICO_ENTRY);
  EXPECT_EQ(about, "la maison * the house");
  EXPECT_EQ(kind_of("   #x", &about), DICO_ENTRY);
  EXPECT_EQ(about, "x");
  EXPECT_EQ(kind_of("#"), DICO_NONAME);
  EXPECT_EQ(kind_of("  #   "), DICO_NONAME);
  EXPECT_EQ(kind_of(" #  #  mot *fr1", &about), DICO_DOUBLE);
  EXPECT_EQ(about, "  mot *fr1");
  EXPECT_EQ(kind_of("####5#"), DICO_DOUBLE);
}

TEST(DicoLine, OtherLinesAreFreeText) {
  EXPECT_EQ(kind_of(""), DICO_TEXT);
  EXPECT_EQ(kind_of("   "), DICO_TEXT);
  EXPECT_EQ(kind_of("R>the house #1"), DICO_TEXT);
  EXPECT_EQ(kind_of("!# fr1"), DICO_TEXT);
}

TEST(DicoLine, EveryOtherKindIsAboutItsWholeLine) {
  std::string about;
  for (const char *line : {"R>the house #1", "  #   ", " text ###### text", "xEND_OF_FILEx"}) {
    kind_of(line, &about);
    EXPECT_EQ(about, line);
  }
}

TEST(DicoLine, SixMarksAnywhereOpenASection) {
  EXPECT_EQ(kind_of("######"), DICO_SECTION);
  EXPECT_EQ(kind_of("text ####### text"), DICO_SECTION);
  EXPECT_EQ(kind_of("#####"), DICO_DOUBLE);
}

TEST(DicoLine, TheEndMarkAnywhereEndsTheDictionary) {
  EXPECT_EQ(kind_of("xEND_OF_FILEx"), DICO_END);
  EXPECT_EQ(kind_of("####### END_OF_FILE"), DICO_END);
  EXPECT_EQ(kind_of("END_OF_FIL"), DICO_TEXT);
}

TEST(DicoLine, ALineIsCutTo101Bytes) {
  std::string line = std::string(120, 'x');
  CUT_DICO_LINE(line.data());
  EXPECT_STREQ(line.c_str(), std::string(101, 'x').c_str());
  std::string shorter = "abc";
  CUT_DICO_LINE(shorter.data());
  EXPECT_EQ(shorter, "abc");
}
