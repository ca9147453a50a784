// The notation of accented letters, French spacing, and keys for comparison.
#include "util/accents.h"

#include <string.h>

#include <map>
#include <memory>
#include <random>

namespace {

using std::string;

const string NO_BREAK = "\240";

// Runs a routine on a text in a block of exactly the room its contract asks for.
string in_room(void (*routine)(char *), const string &text, size_t more) {
  std::unique_ptr<char[]> block(new char[text.size() + more + 1]);
  memset(block.get(), '#', text.size() + more + 1);
  memcpy(block.get(), text.c_str(), text.size() + 1);
  routine(block.get());
  return block.get();
}

size_t count_of(const string &text, const char *bytes) {
  size_t nb = 0;
  for (char byte : text)
    nb += strchr(bytes, byte) != nullptr ? 1 : 0;
  return nb;
}

string decoded(const string &text) {
  return in_room(DECODE_ACCENTS, text, 7 * count_of(text, "\t"));
}

string french(const string &text) {
  return in_room(DECODE1_ACCENTS, text, 7 * count_of(text, "\t"));
}

string key(const string &text) {
  return in_room(RM_ACCENTS, text, count_of(text, "\346\306"));
}

// What each pair behind a backslash stands for.
std::map<string, string> sequences() {
  std::map<string, string> table = {
      {"~n", "\361"}, {"~a", "\343"}, {"~N", "\321"}, {"`a", "\340"}, {"`e", "\350"},
      {"`u", "\371"}, {"`A", "\300"}, {"`E", "\310"}, {"`U", "\331"}, {"'a", "\341"},
      {"'e", "\351"}, {"'E", "\311"}, {"^a", "\342"}, {"^e", "\352"}, {"^i", "\356"},
      {"^o", "\364"}, {"^u", "\373"}, {"^A", "\302"}, {"^E", "\312"}, {"^I", "\316"},
      {"^O", "\324"}, {"^U", "\333"}, {":a", "\344"}, {":e", "\353"}, {":i", "\357"},
      {":o", "\366"}, {":u", "\374"}, {":E", "\313"}, {":I", "\317"}, {":O", "\326"},
      {":U", "\334"}, {",c", "\347"}, {",C", "\307"}, {"ae", "\346"}, {"AE", "\306"},
      {"oe", "oe"},   {"OE", "OE"}};
  return table;
}

} // namespace

TEST(Accents, SequenceBecomesItsLetter) {
  EXPECT_EQ(decoded("\\'etait"), "\351tait");
  EXPECT_EQ(decoded("d\\'ej\\`a vu"), "d\351j\340 vu");
  EXPECT_EQ(decoded("\\aequo, c\\oeur"), "\346quo, coeur");
}

TEST(Accents, TheseSequencesExistAndNoOthers) {
  const std::map<string, string> table = sequences();
  for (int sign = 1; sign < 256; sign++) {
    for (int letter = 1; letter < 256; letter++) {
      if (sign == '\t' || letter == '\t' || sign == '\\' || letter == '\\')
        continue;
      string pair = {(char)sign, (char)letter};
      auto found = table.find(pair);
      string unknown = "\\" + decoded(string(1, (char)letter));
      EXPECT_EQ(decoded("\\" + pair), found != table.end() ? found->second : unknown) << pair;
    }
  }
}

TEST(Accents, UnlistedCombinationIsNoSequence) {
  EXPECT_EQ(decoded("\\'i"), "\\i");
  EXPECT_EQ(decoded("\\`o"), "\\o");
  EXPECT_EQ(decoded("\\'A"), "\\A");
}

TEST(Accents, BackslashAmongTheLastTwoBytesVanishes) {
  EXPECT_EQ(decoded("fin\\"), "fin");
  EXPECT_EQ(decoded("fin\\e"), "fine");
  EXPECT_EQ(decoded("\\"), "");
  EXPECT_EQ(decoded("\\\\"), "");
  EXPECT_EQ(key("fin\\"), "fin");
  EXPECT_EQ(key("fin\\e"), "fine");
}

TEST(Accents, UnknownSequenceKeepsItsBackslashAndLosesTheNextByte) {
  EXPECT_EQ(decoded("\\qrs"), "\\rs");
  EXPECT_EQ(decoded("a\\qrs"), "a\\rs");
  EXPECT_EQ(decoded("\\\\'e"), "\\'e");
  EXPECT_EQ(key("\\qrs"), "\\rs");
}

TEST(Accents, SequenceAtTheEndIsKnown) {
  EXPECT_EQ(decoded("caf\\'e"), "caf\351");
}

TEST(Accents, TabBecomesEightSpaces) {
  EXPECT_EQ(decoded("a\tb\t"), "a        b        ");
}

TEST(Accents, TabBehindABackslashIsExpandedFirst) {
  EXPECT_EQ(decoded("\\\tx"), "\\" + string(7, ' ') + "x");
}

TEST(Accents, CurvedMarksBecomeStraightAndTheDashAHyphen) {
  EXPECT_EQ(decoded("\221a\222 \223b\224 c\226d"), "'a' \"b\" c-d");
}

TEST(Accents, OtherBytesAreKept) {
  for (int byte = 1; byte < 256; byte++) {
    if (byte == '\t' || byte == '\\' || (byte >= 0x91 && byte <= 0x94) || byte == 0x96)
      continue;
    string text = {'x', (char)byte};
    EXPECT_EQ(decoded(text), text);
  }
}

TEST(Accents, EmptyTextStaysEmpty) {
  EXPECT_EQ(decoded(""), "");
  EXPECT_EQ(french(""), "");
  EXPECT_EQ(key(""), "");
}

TEST(Accents, FrenchMarksAreBoundToTheirWords) {
  EXPECT_EQ(french("\253 mot \273 ?"),
            "\253" + NO_BREAK + "mot" + NO_BREAK + "\273" + NO_BREAK + "?");
  EXPECT_EQ(french("< a > b ! c ; d : e"), "<" + NO_BREAK + "a" + NO_BREAK + "> b" + NO_BREAK +
                                               "! c" + NO_BREAK + "; d" + NO_BREAK + ": e");
}

TEST(Accents, StraightQuoteOpensAndCloses) {
  EXPECT_EQ(french("\" a \""), "\"" + NO_BREAK + "a" + NO_BREAK + "\"");
  EXPECT_EQ(french("\"a\" b"), "\"a\"" + NO_BREAK + "b");
  EXPECT_EQ(french("a \"b\""), "a" + NO_BREAK + "\"b\"");
}

TEST(Accents, CurvedQuotesAreBoundAsTheyWereWritten) {
  EXPECT_EQ(french("\223 a \224"), "\"" + NO_BREAK + "a" + NO_BREAK + "\"");
  // 0x93 only opens and 0x94 only closes, though both are written as the straight quote.
  EXPECT_EQ(french("a \223b"), "a \"b");
  EXPECT_EQ(french("a\224 b"), "a\" b");
}

TEST(Accents, MarkAtTheEndOrTheStartBindsNothing) {
  EXPECT_EQ(french("a <"), "a <");
  EXPECT_EQ(french("?"), "?");
  EXPECT_EQ(french("<"), "<");
  EXPECT_EQ(french("< "), "<" + NO_BREAK);
  EXPECT_EQ(french(" ?"), NO_BREAK + "?");
}

TEST(Accents, OnlyTheNextSpaceOfARunIsBound) {
  EXPECT_EQ(french("<  a  >"), "<" + NO_BREAK + " a " + NO_BREAK + ">");
}

TEST(Accents, SpaceBetweenTwoMarksIsBoundOnce) {
  EXPECT_EQ(french("\253 ?"), "\253" + NO_BREAK + "?");
}

TEST(Accents, TheseMarksAreBoundAndNoOthers) {
  const string opening = "<\253\223\"";
  const string closing = ">\273\224\"?!;:";
  for (int byte = 1; byte < 256; byte++) {
    char mark = (char)byte;
    if (mark == '\t' || mark == '\\')
      continue;
    string before = decoded({mark, ' ', 'x'}), behind = decoded({'x', ' ', mark});
    if (opening.find(mark) != string::npos)
      before[1] = NO_BREAK[0];
    if (closing.find(mark) != string::npos)
      behind[1] = NO_BREAK[0];
    EXPECT_EQ(french({mark, ' ', 'x'}), before) << "byte " << byte;
    EXPECT_EQ(french({'x', ' ', mark}), behind) << "byte " << byte;
  }
}

TEST(Accents, OnlyASpaceIsBound) {
  for (int byte = 1; byte < 256; byte++) {
    if (byte == '\t' || byte == '\\' || byte == ' ')
      continue;
    string text = {'<', (char)byte, '?'};
    EXPECT_EQ(french(text), decoded(text)) << "byte " << byte;
  }
}

TEST(Accents, TabIsBoundAsTheSpacesItBecomes) {
  EXPECT_EQ(french("a\t?"), "a" + string(7, ' ') + NO_BREAK + "?");
}

TEST(Accents, SpacesAroundDecodedLettersAreFoundAtTheirNewPlace) {
  EXPECT_EQ(french("\\'et\\'e ?"), "\351t\351" + NO_BREAK + "?");
}

TEST(Accents, NoBreakSpaceTakesThePlaceOfABackslashThatLostItsSpace) {
  EXPECT_EQ(french("a\\ ?b"), "a" + NO_BREAK + "?b");
}

TEST(Accents, PlainDecodingBindsNothing) {
  EXPECT_EQ(decoded("\253 mot \273 ?"), "\253 mot \273 ?");
}

TEST(Accents, OneSequenceAdvancesBothIndexes) {
  char text[] = "x\\'ey";
  int i = 1, j = 0;
  TRO_ACCENT(&i, &j, text);
  EXPECT_EQ(i, 3);
  EXPECT_EQ(j, 1);
  EXPECT_EQ(text[1], '\351');
  char pair[] = "x\\OEy";
  i = 1, j = 0;
  TRO_ACCENT(&i, &j, pair);
  EXPECT_EQ(i, 3);
  EXPECT_EQ(j, 2);
  EXPECT_EQ(string(pair, 3), "xOE");
  char unknown[] = "x\\qry";
  i = 1, j = 0;
  TRO_ACCENT(&i, &j, unknown);
  EXPECT_EQ(i, 2);
  EXPECT_EQ(j, 1);
  EXPECT_EQ(unknown[1], '\\');
}

TEST(Accents, KeyHasNoAccents) {
  EXPECT_EQ(key("\311l\350ve"), "Eleve");
  EXPECT_EQ(key("\\'El\\`eve"), "Eleve");
}

TEST(Accents, KeyKeepsTheAccentsOfSomeLetters) {
  EXPECT_EQ(key("\300"), "\300");
  for (const char *kept : {"\301", "\302", "\303", "\304", "\305", "\354", "\355", "\362", "\363",
                           "\365", "\372", "\375", "\377"})
    EXPECT_EQ(key(kept), kept);
}

TEST(Accents, KeyFoldsTheseBytesAndNoOthers) {
  std::map<int, char> bare;
  const string folded[] = {"a\340\341\342\343\344\345",
                           "c\347",
                           "e\350\351\352\353",
                           "i\356\357",
                           "n\361",
                           "o\364\366",
                           "u\371\373\374",
                           "C\307",
                           "E\310\311\312\313",
                           "I\316\317",
                           "N\321",
                           "O\324\326",
                           "U\331\333\334"};
  for (const string &row : folded) {
    for (char byte : row.substr(1))
      bare[(unsigned char)byte] = row[0];
  }
  for (int byte = 1; byte < 256; byte++) {
    char text[] = {(char)byte, 0};
    int i = 0, nb = 0;
    WORK_ACCENT(&i, &nb, text);
    EXPECT_EQ(text[0], bare.count(byte) != 0 ? bare[byte] : (char)byte) << "byte " << byte;
    EXPECT_EQ(nb, byte == 0xE6 || byte == 0xC6 ? 1 : 0);
    EXPECT_EQ(i, 0);
  }
}

TEST(Accents, KeyOfASequenceIsItsLetterWhateverItIs) {
  for (char sign : string("~`'^:,")) {
    EXPECT_EQ(key(string("x\\") + sign + "ey"), "xey");
    EXPECT_EQ(key(string("x\\") + sign + "zy"), "xzy");
    EXPECT_EQ(key(string("x\\") + sign + "\351y"), "x\351y");
  }
  for (const char *pair : {"ae", "oe", "AE", "OE"})
    EXPECT_EQ(key(string("x\\") + pair + "y"), string("x") + pair + "y");
  EXPECT_EQ(key("x\\oEy"), "x\\Ey");
}

TEST(Accents, KeyKnowsTheseSequencesAndNoOthers) {
  const string signs = "~`'^:,";
  for (int sign = 1; sign < 256; sign++) {
    for (int letter = 1; letter < 256; letter++) {
      string pair = {(char)sign, (char)letter};
      string expected = "\\" + key(pair.substr(1));
      if (signs.find(pair[0]) != string::npos)
        expected = pair.substr(1);
      if (pair == "ae" || pair == "oe" || pair == "AE" || pair == "OE")
        expected = pair;
      EXPECT_EQ(key("\\" + pair), expected) << pair;
    }
  }
}

TEST(Accents, LigaturePassOverwritesWhatFollows) {
  EXPECT_EQ(key("b\346c"), "bae");
  EXPECT_EQ(key("b\346cd"), "baed");
  EXPECT_EQ(key("b\306cd"), "bAEd");
}

TEST(Accents, LigatureAtTheEndGrowsTheKey) {
  EXPECT_EQ(key("b\346"), "bae");
  EXPECT_EQ(key("\306"), "AE");
  EXPECT_EQ(key("\346\346"), "aeae");
}

TEST(Accents, LaterLigaturesLandFurtherOn) {
  EXPECT_EQ(key("\346x\346"), "ae\346ae");
  // The letters of the last ligature land behind the end of the key.
  EXPECT_EQ(key("\346\346x\346"), "aeae");
}

TEST(Accents, LigaturesAtTheEndBringBackWhatTheTextHeldBehindTheKey) {
  EXPECT_EQ(key("\\'e\\'e\346\346"), "eeaeae\346\346");
}

TEST(Accents, LigatureThatIsALetterOfASequenceIsNotCounted) {
  EXPECT_EQ(key("\\'\346"), "\346");
  string many = "\\'\346\\'\346\\'\346\346";
  EXPECT_EQ(key(many), "\346aeae");
  for (int i = 0; i < 5; i++)
    many = many + many;
  EXPECT_LE(key(many).size(), many.size());
}

namespace {

// The ligature pass on a zero-filled block with room on both sides.
string model_key(const string &text) {
  string block(text + string(text.size() + 40, '\0'));
  int length = (int)text.size(), j = -1, nb = 0;
  for (int i = 0; i <= length; i++) {
    size_t at = (size_t)i;
    if (block[at] != '\\') {
      WORK_ACCENT(&i, &nb, block.data());
      block[(size_t)++j] = block[at];
    } else if (i + 2 < length) {
      WORK_RM_ACCENT(&i, &j, block.data());
    }
  }
  block[(size_t)j + 1] = 0;
  if (nb == 0)
    return block.c_str();
  string before(100, '\0');
  string room = before + block;
  int m = 100 + j + 1 + nb;
  for (int k = 100 + j + 1; k >= 100; k--, m--) {
    char byte = room[(size_t)k];
    if (byte != '\346' && byte != '\306')
      continue;
    room[(size_t)m - 1] = byte == '\346' ? 'a' : 'A';
    room[(size_t)m--] = byte == '\346' ? 'e' : 'E';
  }
  return room.c_str() + 100;
}

} // namespace

TEST(Accents, AnyTextGivesTheKeyOfTheModelWithinItsRoom) {
  std::mt19937 chance(5);
  const string alphabet = "ab\\'~eo\346\306\351AE";
  for (int i = 0; i < 20000; i++) {
    string text;
    for (unsigned length = chance() % 40; length > 0; length--)
      text += alphabet[chance() % alphabet.size()];
    ASSERT_EQ(key(text), model_key(text)) << testing::PrintToString(text);
  }
}

TEST(Accents, AnyBytesAreDecodedWithinTheirRoom) {
  std::mt19937 chance(6);
  const string alphabet = "a e\\\\'~\t<>\"?\223\224\253\273\351";
  for (int i = 0; i < 20000; i++) {
    string text;
    for (unsigned length = chance() % 14; length > 0; length--)
      text += chance() % 8 == 0 ? (char)(1 + chance() % 255) : alphabet[chance() % alphabet.size()];
    EXPECT_LE(decoded(text).size(), text.size() + 7 * count_of(text, "\t"));
    EXPECT_EQ(french(text).size(), decoded(text).size());
    key(text);
  }
}
