// Numbers, colours, fonts and the index directory of the settings file.
#include "support/prelude.h"

#include "config/config_values.h"

#include <glib.h>

#include "support/scratch.h"
#include "util/owned.h"

namespace {

// A key line and the lines behind it, for a reader to work on.
struct Trf_value {
  Scratch_dir dir;
  Owned_stream file;
  char line[CONF_LINE];

  Trf_value(const std::string &key_line, const std::string &behind = "") {
    dir.write("value", behind);
    file = OPEN_STREAM("value", "r");
    g_strlcpy(line, key_line.c_str(), sizeof(line));
  }
};

std::vector<int> integers(const std::string &key_line, const std::string &behind, int nb_tobe) {
  Trf_value value(key_line, behind);
  std::vector<int> param((size_t)nb_tobe, -77);
  EXTRACT_LEVEL(value.file.get(), value.line, nb_tobe, param.data());
  return param;
}

std::vector<float> decimals(const std::string &key_line, const std::string &behind, int nb_tobe) {
  Trf_value value(key_line, behind);
  std::vector<float> param((size_t)nb_tobe, -77.0f);
  FLOAT_EXTRACT_LEVEL(value.file.get(), value.line, nb_tobe, param.data());
  return param;
}

std::vector<int> channels(const std::string &key_line, const std::string &behind = "") {
  Trf_value value(key_line, behind);
  GdkColor color = {42, 1, 2, 3};
  EXTRACT_COLOR(value.file.get(), value.line, &color);
  return {(int)color.pixel, color.red, color.green, color.blue};
}

std::string font(const std::string &key_line, const std::string &behind = "",
                 int *n_fonts = nullptr) {
  Trf_value value(key_line, behind);
  char text[CONF_FONT + 1] = "helvetica 18";
  int count = -1;
  EXTRACT_FONT_DICO(value.file.get(), value.line, &count, text);
  if (n_fonts != nullptr)
    *n_fonts = count;
  return text;
}

std::string path(const std::string &key_line, const std::string &behind = "", int *room = nullptr) {
  Trf_value value(key_line, behind);
  int nspath = 10;
  char *text = static_cast<char *>(g_malloc(15));
  g_strlcpy(text, "./IDX1", 15);
  EXTRACT_PATH_IDX1(value.file.get(), value.line, &nspath, &text);
  if (room != nullptr)
    *room = nspath;
  return Owned_text(text).get();
}

std::string next_conf_line(FILE *fp, int size) {
  char line[CONF_LINE];
  return READ_CONF_LINE(line, size, fp) ? line : "(end)";
}

} // namespace

TEST(ConfigValues, ALineIsCutAtItsFirstCarriageReturnOrLineFeed) {
  Trf_value value("", "one\r\ntwo\rthree\nfour");
  FILE *fp = value.file.get();
  EXPECT_EQ(next_conf_line(fp, CONF_LINE), "one");
  EXPECT_EQ(next_conf_line(fp, CONF_LINE), "two");
  EXPECT_EQ(next_conf_line(fp, CONF_LINE), "four");
  EXPECT_EQ(next_conf_line(fp, CONF_LINE), "(end)");
}

TEST(ConfigValues, ALineHoldsOneCharacterLessThanItsBuffer) {
  Trf_value value("", std::string(99, 'a') + "\n" + std::string(100, 'b') + "\n");
  FILE *fp = value.file.get();
  EXPECT_EQ(next_conf_line(fp, 100), std::string(99, 'a'));
  EXPECT_EQ(next_conf_line(fp, 100), "");
  EXPECT_EQ(next_conf_line(fp, 100), std::string(99, 'b'));
  EXPECT_EQ(next_conf_line(fp, 100), "b");
}

TEST(ConfigValues, TheValueIsFoundBehindTheFirstMarkerAndItsBlanks) {
  EXPECT_EQ(FIND_VALUE("Key :>   12 :> 13"), 9);
  EXPECT_EQ(FIND_VALUE("Key :>"), 6);
  EXPECT_EQ(FIND_VALUE("Key :>  "), 8);
  EXPECT_EQ(FIND_VALUE("Key : >"), -1);
}

TEST(ConfigValues, OneIntegerIsReadFromTheKeyLine) {
  EXPECT_EQ(integers("Width_pix_vocab :> 500 <:", "", 1), std::vector<int>{500});
  EXPECT_EQ(integers("Width_pix_vocab:>500<:", "", 1), std::vector<int>{500});
}

TEST(ConfigValues, AValueGoesOnOverTheFollowingLines) {
  EXPECT_EQ(integers("Horiz_pix_total :>", "1200 <:\n", 1), std::vector<int>{1200});
  EXPECT_EQ(integers("Key :> 1", "2\n\n   3  4\n<:\n", 4), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(integers("Key :>   ", "  \n7\n<: 8", 1), std::vector<int>{7});
}

TEST(ConfigValues, WhatStandsBehindTheEndMarkerIsNotRead) {
  EXPECT_EQ(integers("Key :> 12 <: 13", "", 1), std::vector<int>{12});
}

TEST(ConfigValues, AFurtherOpeningMarkerEndsTheValueToo) {
  EXPECT_EQ(integers("Key :> 12 :>", "", 1), std::vector<int>{12});
  EXPECT_EQ(integers("Key :> 12:>", "", 1), std::vector<int>{12});
  EXPECT_EQ(font("Font_vocab :> mono 9 :> bold"), " mono 9");
}

TEST(ConfigValues, AStrayByteHidesTheRestOfItsLine) {
  EXPECT_EQ(integers("Key :> 12 (width) <:", "13 <:", 2), (std::vector<int>{12, 13}));
  EXPECT_EQ(integers("Key :> 12\t13", "<:", 1), std::vector<int>{12});
  EXPECT_EQ(integers("Key :> 12\351 13", "<:", 1), std::vector<int>{12});
  EXPECT_EQ(font("Font_vocab :> sans_serif 9 <:", "12 <:"), " sans 12");
}

TEST(ConfigValues, ATokenThatIsNoNumberConvertsAsAtoiDoes) {
  EXPECT_EQ(integers("Key :> abc 12x -7 0x10 5.9 007 <:", "", 6),
            (std::vector<int>{0, 12, -7, 0, 5, 7}));
}

TEST(ConfigValues, AllCharactersOfANumericTokenAreTaken) {
  EXPECT_EQ(integers("Key :> 1->_.\\/Z <:", "", 1), std::vector<int>{1});
}

TEST(ConfigValues, AHugeIntegerConvertsWithoutFault) {
  std::string huge(40, '9');
  EXPECT_EQ(integers("Key :> " + huge + " -" + huge + " <:", "", 2), (std::vector<int>{-1, 0}));
}

TEST(ConfigValues, FiveOfTheLongestTokensAreAllConverted) {
  std::string longest = std::string(98, '0');
  std::string lines;
  for (int i = 1; i <= 5; i++)
    lines += longest + std::to_string(i) + "\n";
  EXPECT_EQ(integers("Key :>", lines + "<:", 5), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(ConfigValues, TokensBeyondTheRoomAreCountedOnly) {
  std::string lines;
  for (int i = 0; i < 5000; i++)
    lines += "12345678901234567890\n";
  ENDS_WITH_STATUS(integers("Key :>", lines + "<:", 1), 1,
                   "error in EXTRACT_LEVEL n_pages=5000 nb_tobe=1 stop \n");
}

TEST(ConfigValues, DecimalsAreReadInSinglePrecision) {
  EXPECT_EQ(decimals("Coef_Err :> 9 3.5 .25 1e1 -2 <:", "", 5),
            (std::vector<float>{9.0f, 3.5f, 0.25f, 10.0f, -2.0f}));
  EXPECT_EQ(decimals("Key :>", "0.1\n<:", 1), std::vector<float>{0.1f});
}

TEST(ConfigValues, AWrongCountOfIntegersEndsTheProgram) {
  ENDS_WITH_STATUS(integers("Width_pix_vocab :> 500 600 <:", "", 1), 1,
                   "error in EXTRACT_LEVEL n_pages=2 nb_tobe=1 stop \n");
  ENDS_WITH_STATUS(integers("Width_pix_vocab :> <:", "", 1), 1,
                   "error in EXTRACT_LEVEL n_pages=0 nb_tobe=1 stop \n");
}

TEST(ConfigValues, AWrongCountOfDecimalsEndsTheProgram) {
  ENDS_WITH_STATUS(decimals("Coef_Err :> 1 2 3 4 <:", "", 5), 1,
                   "error in FLOAT_EXTRACT_LEVEL n_pages=4 nb_tobe=5 stop \n");
}

TEST(ConfigValues, AWrongCountOfChannelsEndsTheProgram) {
  ENDS_WITH_STATUS(channels("Color_0_dico :> 1 2 <:"), 1,
                   "error in EXTRACT_COLOR n_pages=2 nb_tobe= 3 stop \n");
}

TEST(ConfigValues, AKeyLineWithoutMarkerEndsTheProgram) {
  const char *expected = "error in line s=Key 12 <: \n";
  ENDS_WITH_STATUS(integers("Key 12 <:", "", 1), 1, expected);
  ENDS_WITH_STATUS(decimals("Key 12 <:", "", 1), 1, expected);
  ENDS_WITH_STATUS(channels("Key 12 <:"), 1, expected);
  ENDS_WITH_STATUS(font("Key 12 <:"), 1, expected);
  ENDS_WITH_STATUS(path("Key 12 <:"), 1, expected);
}

TEST(ConfigValues, AFileThatEndsInsideANumberIsToldAsExtractOrder) {
  const char *first = "error 1 while reading in EXTRACT_ORDER stop ";
  const char *second = "error 2 while reading in EXTRACT_ORDER stop ";
  ENDS_WITH_STATUS(integers("Key :>", "", 1), 1, first);
  ENDS_WITH_STATUS(decimals("Key :>  ", "", 1), 1, first);
  ENDS_WITH_STATUS(integers("Key :> 1", "", 1), 2, second);
  ENDS_WITH_STATUS(decimals("Key :>", "1\n", 1), 2, second);
}

TEST(ConfigValues, AFileThatEndsInsideAColourIsToldByName) {
  ENDS_WITH_STATUS(channels("Key :>"), 1, "error 1 while reading in EXTRACT_COLOR stop ");
  ENDS_WITH_STATUS(channels("Key :> 1 2 3"), 2, "error 2 while reading in EXTRACT_COLOR stop ");
}

TEST(ConfigValues, AFileThatEndsInsideAFontIsToldByName) {
  ENDS_WITH_STATUS(font("Key :>"), 1, "error 1 while reading in EXTRACT_FONT_DICO stop ");
  ENDS_WITH_STATUS(font("Key :> mono"), 2, "error 2 while reading in EXTRACT_FONT_DICO stop ");
}

TEST(ConfigValues, AFileThatEndsInsideThePathIsToldAsAFont) {
  ENDS_WITH_STATUS(path("Key :>"), 1, "error 1 while reading in EXTRACT_FONT_DICO stop ");
  ENDS_WITH_STATUS(path("Key :> ./X"), 2, "error 2 while reading in EXTRACT_FONT_DICO stop ");
}

TEST(ConfigValues, ColourChannelsTellTheirBaseThemselves) {
  EXPECT_EQ(channels("Color_2_dico :> 0xDDDD 56797 0156735 <:"),
            (std::vector<int>{42, 0xDDDD, 0xDDDD, 0xDDDD}));
  EXPECT_EQ(channels("Color_2_dico :>", "0xdddd\n65536 -1\n<:"),
            (std::vector<int>{42, 0xDDDD, 0, 0xFFFF}));
}

TEST(ConfigValues, AFontIsStoredWithALeadingBlank) {
  int n_fonts = 0;
  EXPECT_EQ(font("Font_vocab :> helvetica 14 <:", "", &n_fonts), " helvetica 14");
  EXPECT_EQ(n_fonts, 2);
  EXPECT_EQ(font("Font_vocab :>", "  -adobe-*-14   bold<:", &n_fonts), " -adobe-*-14 bold");
  EXPECT_EQ(n_fonts, 2);
}

TEST(ConfigValues, AnEmptyFontEmptiesTheText) {
  int n_fonts = 9;
  EXPECT_EQ(font("Font_vocab :> <:", "", &n_fonts), "");
  EXPECT_EQ(n_fonts, 0);
}

TEST(ConfigValues, AFontIsCutToItsBuffer) {
  std::string lines;
  for (int i = 0; i < 30; i++)
    lines += "abcdefg\n";
  std::string text = font("Font_vocab :>", lines + "<:");
  EXPECT_EQ(text.size(), 100u);
  EXPECT_EQ(text.substr(0, 16), " abcdefg abcdefg");
  EXPECT_EQ(text.substr(96), " abc");
}

TEST(ConfigValues, AFontIsStrippedToItsFirstRun) {
  char text[CONF_FONT + 1] = "before";
  FILTRE_FONT_DICO(const_cast<char *>("   helvetica-*14 bold"), text);
  EXPECT_STREQ(text, "helvetica-*14");
  FILTRE_FONT_DICO(const_cast<char *>("sans_serif"), text);
  EXPECT_STREQ(text, "sans");
  FILTRE_FONT_DICO(const_cast<char *>("  ,"), text);
  EXPECT_STREQ(text, "");
  FILTRE_FONT_DICO(std::string(300, 'x').data(), text);
  EXPECT_EQ(std::string(text), std::string(100, 'x'));
}

TEST(ConfigValues, APathIsStoredWithoutALeadingBlank) {
  EXPECT_EQ(path("Path_idx1 :> ./IDX1 <:"), "./IDX1");
  EXPECT_EQ(path("Path_idx1 :>", "/var/x/IDX1\n<:"), "/var/x/IDX1");
}

TEST(ConfigValues, SeveralTokensOfAPathAreJoinedByOneBlank) {
  EXPECT_EQ(path("Path_idx1 :> my    own", "IDX1\n<:"), "my own IDX1");
}

TEST(ConfigValues, BackslashesOfAPathBecomeSlashes) {
  EXPECT_EQ(path("Path_idx1 :> C:\\dico\\IDX1 <:"), "C:/dico/IDX1");
}

TEST(ConfigValues, APathTokenIsAnythingButBlanks) {
  EXPECT_EQ(path("Path_idx1 :> d\351j\340,vu(2)\t#x <:"), "d\351j\340,vu(2)\t#x");
}

TEST(ConfigValues, AMarkerGluedToAPathBelongsToThePath) {
  EXPECT_EQ(path("Path_idx1 :> ./IDX1<:", "<:"), "./IDX1<:");
}

TEST(ConfigValues, ATokenThatBeginsWithAMarkerEndsThePath) {
  EXPECT_EQ(path("Path_idx1 :> ./IDX1 <:end"), "./IDX1");
  EXPECT_EQ(path("Path_idx1 :> ./IDX1 :>end"), "./IDX1");
  EXPECT_EQ(path("Path_idx1 :> <:"), "");
}

TEST(ConfigValues, ThePathGrowsByFiftyCharacters) {
  int room = 0;
  EXPECT_EQ(path("Path_idx1 :> 123456789 <:", "", &room), "123456789");
  EXPECT_EQ(room, 10);
  EXPECT_EQ(path("Path_idx1 :> 1234567890 <:", "", &room), "1234567890");
  EXPECT_EQ(room, 60);
  std::string longest(140, 'p');
  EXPECT_EQ(path("Path_idx1 :>" + longest, "<:", &room), longest.substr(0, 137));
  EXPECT_EQ(room, 160);
}
