// CP1252, the encoding of all text in memory, and UTF-8, that of the window and of many files.
#include "util/encodings.h"

#include <glib.h>
#include <string.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace {

struct Byte_range {
  int first;
  int last;
};

const Byte_range WORD_BYTES[] = {
    {'a', 'z'},   {'A', 'Z'},   {'0', '9'},   {'-', '-'},   {'\'', '\''}, {'\\', '\\'},
    {0xC0, 0xC0}, {0xC2, 0xC2}, {0xC6, 0xCB}, {0xCE, 0xCF}, {0xD1, 0xD1}, {0xD4, 0xD4},
    {0xD6, 0xD6}, {0xD9, 0xD9}, {0xDB, 0xDC}, {0xE0, 0xEB}, {0xEE, 0xEF}, {0xF1, 0xF1},
    {0xF4, 0xF4}, {0xF6, 0xF6}, {0xF9, 0xF9}, {0xFB, 0xFC},
};

const gunichar NO_CHARACTER = 0xFFFD;

// The characters of the bytes 0x80 to 0x9F; all other bytes are the character of their number.
const gunichar C1_CHARACTERS[] = {
    0x20AC,       NO_CHARACTER, 0x201A, 0x0192, 0x201E, 0x2026,       0x2020, 0x2021,
    0x02C6,       0x2030,       0x0160, 0x2039, 0x0152, NO_CHARACTER, 0x017D, NO_CHARACTER,
    NO_CHARACTER, 0x2018,       0x2019, 0x201C, 0x201D, 0x2022,       0x2013, 0x2014,
    0x02DC,       0x2122,       0x0161, 0x203A, 0x0153, NO_CHARACTER, 0x017E, 0x0178,
};

// The one converter from UTF-8 to CP1252, opened by the first text that needs it and kept.
struct {
  bool opened;
  GIConv converter;
} kept;

const GIConv NO_CONVERTER = (GIConv)-1;
const gsize FAILED = (gsize)-1;

GIConv converter() {
  if (!kept.opened) {
    kept.converter = g_iconv_open("CP1252", "UTF-8");
    kept.opened = true;
  }
  return kept.converter;
}

// The byte of a character, or -1 when it has none (or is none).
int byte_of(gunichar character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    return (int)character;
  if (character == NO_CHARACTER)
    return -1;
  const gunichar *found = std::find(std::begin(C1_CHARACTERS), std::end(C1_CHARACTERS), character);
  return found == std::end(C1_CHARACTERS) ? -1 : 0x80 + (int)(found - C1_CHARACTERS);
}

// Converts a text of characters that all have a byte of their own, as nearly every text is;
// returns -1 for any other, on which the converter has the last word.
long convert_by_table(const char *text, long length, char *result) {
  const char *end = text + length;
  char *to = result;
  while (text < end) {
    if ((unsigned char)*text < 0x80) {
      *to++ = *text++;
      continue;
    }
    int byte = byte_of(g_utf8_get_char_validated(text, end - text));
    if (byte < 0)
      return -1;
    *to++ = (char)byte;
    text = g_utf8_next_char(text);
  }
  return to - result;
}

long convert_by_converter(const char *text, long length, char *result) {
  GIConv cd = converter();
  if (cd == NO_CONVERTER)
    return -1;
  g_iconv(cd, nullptr, nullptr, nullptr, nullptr);
  char *from = const_cast<char *>(text);
  char *to = result;
  gsize left = (gsize)length;
  gsize room = (gsize)length;
  if (g_iconv(cd, &from, &left, &to, &room) == FAILED)
    return -1;
  return to - result;
}

} // namespace

int SPE_ALPHA_NUM(char s1) {
  int byte = (unsigned char)s1;
  return std::any_of(std::begin(WORD_BYTES), std::end(WORD_BYTES), [byte](const Byte_range &range) {
    return byte >= range.first && byte <= range.last;
  });
}

int ANNOUNCED_BYTES(int byte) {
  if (byte < 0xC0)
    return 0;
  if (byte < 0xE0)
    return 1;
  if (byte < 0xF0)
    return 2;
  return byte < 0xF8 ? 3 : NOT_UTF8;
}

long CONVERT_TO_CP1252(const char *text, long length, char *result) {
  long converted = convert_by_table(text, length, result);
  return converted >= 0 ? converted : convert_by_converter(text, length, result);
}

char *UTF8_FROM_CP1252(const char *text) {
  std::string utf8;
  for (; text != nullptr && *text != 0; text++) {
    gunichar character = (unsigned char)*text;
    if (character >= 0x80 && character <= 0x9F)
      character = C1_CHARACTERS[character - 0x80];
    char bytes[6];
    int length = g_unichar_to_utf8(character, bytes);
    utf8.append(bytes, (size_t)length);
  }
  return g_strndup(utf8.data(), utf8.size());
}

char *CP1252_FROM_UTF8(const char *text) {
  if (text == nullptr)
    return nullptr;
  size_t room = strlen(text);
  char *result = (char *)g_malloc(room + 1);
  long length = CONVERT_TO_CP1252(text, (long)room, result);
  if (length < 0) {
    g_free(result);
    return nullptr;
  }
  result[length] = 0;
  return result;
}
