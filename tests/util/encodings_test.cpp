// CP1252, UTF-8, and the bytes of words.
#include "util/encodings.h"

#include <glib.h>

#include <random>

#include "util/owned.h"

namespace {

using std::string;
using std::string_literals::operator""s;

string utf8_of(const string &text) {
  return Owned_text(UTF8_FROM_CP1252(text.c_str())).get();
}

// What GLib's own converter makes of it; "(none)" where it has no form.
string converted(const string &text, const char *to, const char *from) {
  gsize written = 0;
  Owned_text result(
      g_convert(text.data(), (gssize)text.size(), to, from, nullptr, &written, nullptr));
  return result ? string(result.get(), written) : "(none)";
}

string folded(const string &text) {
  string result(text.size(), '\0');
  long length = CONVERT_TO_CP1252(text.data(), (long)text.size(), result.data());
  return length < 0 ? "(none)" : result.substr(0, (size_t)length);
}

} // namespace

TEST(Encodings, SpaceIsNoByteOfAWord) {
  EXPECT_EQ(SPE_ALPHA_NUM(' '), 0);
  EXPECT_EQ(SPE_ALPHA_NUM('\0'), 0);
}

TEST(Encodings, AccentedLetterIsAByteOfAWord) {
  EXPECT_EQ(SPE_ALPHA_NUM('\351'), 1);
}

TEST(Encodings, BytesOfWordsAreTheseAndNoOthers) {
  const string word_bytes = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-'\\"
                            "\361\347\307\321\300\302\306\310\311\312\313\316\317\324\326\331\333"
                            "\334\340\341\342\343\344\345\346\350\351\352\353\356\357\364\366\371"
                            "\373\374";
  for (int byte = 0; byte < 256; byte++) {
    bool expected = word_bytes.find((char)byte) != string::npos;
    EXPECT_EQ(SPE_ALPHA_NUM((char)byte), expected ? 1 : 0) << "byte " << byte;
  }
}

TEST(Encodings, FirstByteOfASequenceAnnouncesTheOthers) {
  const int bounds[][3] = {// first, last, announced
                           {0x00, 0xBF, 0},
                           {0xC0, 0xDF, 1},
                           {0xE0, 0xEF, 2},
                           {0xF0, 0xF7, 3},
                           {0xF8, 0xFF, NOT_UTF8}};
  for (const auto &row : bounds) {
    for (int byte = row[0]; byte <= row[1]; byte++)
      EXPECT_EQ(ANNOUNCED_BYTES(byte), row[2]) << "byte " << byte;
  }
}

TEST(Encodings, EveryByteOfCp1252HasItsCharacter) {
  for (int byte = 1; byte < 256; byte++) {
    string text(1, (char)byte);
    string expected = converted(text, "UTF-8", "CP1252");
    EXPECT_EQ(utf8_of(text), expected == "(none)" ? "\357\277\275" : expected) << "byte " << byte;
  }
}

TEST(Encodings, ByteWithoutCharacterIsReplaced) {
  EXPECT_EQ(utf8_of("a\201\215\217\220\235b"),
            "a\357\277\275\357\277\275\357\277\275\357\277\275\357\277\275b");
}

TEST(Encodings, NoTextIsEmptyText) {
  EXPECT_EQ(Owned_text(UTF8_FROM_CP1252(nullptr)).get(), ""s);
  EXPECT_EQ(utf8_of(""), "");
}

TEST(Encodings, TextComesBackFromUtf8) {
  for (const char *text : {"", "plain", "\303\251t\303\251", "\342\202\254 \305\223\305\270"}) {
    Owned_text back(CP1252_FROM_UTF8(text));
    ASSERT_TRUE(back);
    EXPECT_EQ(utf8_of(back.get()), text);
  }
}

TEST(Encodings, TextThatCp1252LacksHasNoForm) {
  EXPECT_FALSE(Owned_text(CP1252_FROM_UTF8("\316\261")));
  EXPECT_FALSE(Owned_text(CP1252_FROM_UTF8("\351t\351")));
  EXPECT_FALSE(Owned_text(CP1252_FROM_UTF8("cut\303")));
  EXPECT_FALSE(Owned_text(CP1252_FROM_UTF8(nullptr)));
}

TEST(Encodings, EveryCharacterGivesWhatTheConverterGives) {
  for (gunichar character = 1; character < 0x30000; character++) {
    char bytes[6];
    string text(bytes, (size_t)g_unichar_to_utf8(character, bytes));
    if (character < 0x3000 || character % 97 == 0) {
      ASSERT_EQ(folded(text), converted(text, "CP1252", "UTF-8")) << "character " << character;
    }
  }
}

TEST(Encodings, EveryPairOfBytesGivesWhatTheConverterGives) {
  for (int first = 0x80; first < 256; first++) {
    for (int second = 0x70; second < 256; second += 3) {
      string text = {(char)first, (char)second, '\200'};
      ASSERT_EQ(folded(text), converted(text, "CP1252", "UTF-8")) << first << " " << second;
      text.pop_back();
      ASSERT_EQ(folded(text), converted(text, "CP1252", "UTF-8")) << first << " " << second;
    }
  }
}

TEST(Encodings, NulBytesAreKept) {
  EXPECT_EQ(folded("a\0\303\251\0"s), "a\0\351\0"s);
}

TEST(Encodings, FailedConversionLeavesNoTraceInTheNext) {
  EXPECT_EQ(folded("caf\303"), "(none)");
  EXPECT_EQ(folded("caf\303\251"), "caf\351");
  // A character that the converter drops, so that the text goes through it.
  EXPECT_EQ(folded("caf\303"), "(none)");
  EXPECT_EQ(folded("caf\303\251\363\240\201\201"), "caf\351");
}

TEST(Encodings, AnyTextGivesWhatTheConverterGives) {
  static const char *const pieces[] = {"a",
                                       "\303\251",
                                       "\302\201",
                                       "\342\202\254",
                                       "\360\237\230\200",
                                       "\303",
                                       "\251",
                                       "\342\202",
                                       "\377",
                                       "\300\200",
                                       "\355\240\200",
                                       "\363\240\201\201",
                                       "\357\273\277",
                                       "e\314\201",
                                       "\305\223",
                                       "\302\240",
                                       "\357\277\275",
                                       "\364\220\200\200",
                                       "\n",
                                       "\342\200\223"};
  std::mt19937 chance(1252);
  for (int i = 0; i < 5000; i++) {
    string text;
    for (unsigned nb = chance() % 6; nb > 0; nb--)
      text += pieces[chance() % (chance() % 2 == 0 ? 2 : std::size(pieces))];
    ASSERT_EQ(folded(text), converted(text, "CP1252", "UTF-8")) << testing::PrintToString(text);
  }
}
