// Accented letters written in ASCII ("\'e" for e acute), and keys to compare texts without them.
#include "util/accents.h"

#include <string.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace {

const char NO_BREAK_SPACE = '\240';
const size_t TAB_WIDTH = 8;
const char SIGNS[] = "~`'^:,";

// A sign, a letter, and the accented letter (CP1252) that they make. A ligature is told by its two
// letters; one without a letter of its own (0) stays two letters.
struct Accent {
  char sign;
  char letter;
  char accented;
};

const Accent ACCENTS[] = {
    {'~', 'n', '\361'}, {'~', 'a', '\343'},  {'~', 'N', '\321'},  {'`', 'a', '\340'},
    {'`', 'e', '\350'}, {'`', 'u', '\371'},  {'`', 'A', '\300'},  {'`', 'E', '\310'},
    {'`', 'U', '\331'}, {'\'', 'a', '\341'}, {'\'', 'e', '\351'}, {'\'', 'E', '\311'},
    {'^', 'a', '\342'}, {'^', 'e', '\352'},  {'^', 'i', '\356'},  {'^', 'o', '\364'},
    {'^', 'u', '\373'}, {'^', 'A', '\302'},  {'^', 'E', '\312'},  {'^', 'I', '\316'},
    {'^', 'O', '\324'}, {'^', 'U', '\333'},  {':', 'a', '\344'},  {':', 'e', '\353'},
    {':', 'i', '\357'}, {':', 'o', '\366'},  {':', 'u', '\374'},  {':', 'E', '\313'},
    {':', 'I', '\317'}, {':', 'O', '\326'},  {':', 'U', '\334'},  {',', 'c', '\347'},
    {',', 'C', '\307'}, {'a', 'e', '\346'},  {'o', 'e', 0},       {'A', 'E', '\306'},
    {'O', 'E', 0},
};

// Accented letters (CP1252) and their bare ones.
//
// QUIRK unfolded letters: capital A with an accent, and the small letters i and o with an acute or
// grave accent, u acute, o tilde, y acute and y diaeresis keep their accents in a key. A reader
// would take them for forgotten. It is meant: lists are sorted and tags compared by these keys, and
// both sides of a comparison keep them alike. Test: Accents.KeyKeepsTheAccentsOfSomeLetters
struct Bare_letter {
  unsigned char first;
  unsigned char last;
  char bare;
};

constexpr Bare_letter BARE_LETTERS[] = {
    {0xE0, 0xE5, 'a'}, {0xE7, 0xE7, 'c'}, {0xE8, 0xEB, 'e'}, {0xEE, 0xEF, 'i'}, {0xF1, 0xF1, 'n'},
    {0xF4, 0xF4, 'o'}, {0xF6, 0xF6, 'o'}, {0xF9, 0xF9, 'u'}, {0xFB, 0xFC, 'u'}, {0xC7, 0xC7, 'C'},
    {0xC8, 0xCB, 'E'}, {0xCE, 0xCF, 'I'}, {0xD1, 0xD1, 'N'}, {0xD4, 0xD4, 'O'}, {0xD6, 0xD6, 'O'},
    {0xD9, 0xD9, 'U'}, {0xDB, 0xDC, 'U'},
};

bool is_one_of(char byte, const char *bytes) {
  return byte != 0 && strchr(bytes, byte) != nullptr;
}

bool is_ligature(char byte) {
  return byte == '\346' || byte == '\306'; // small and capital ae
}

// Every byte without its accent.
constexpr std::array<char, 256> bare_bytes() {
  std::array<char, 256> bare = {};
  for (size_t byte = 0; byte < bare.size(); byte++)
    bare[byte] = (char)byte;
  for (const Bare_letter &letter : BARE_LETTERS)
    for (size_t byte = letter.first; byte <= letter.last; byte++)
      bare[byte] = letter.bare;
  return bare;
}
constexpr std::array<char, 256> BARE = bare_bytes();

// Whether a key holds this byte as the text does, wherever it stands.
bool stays(char byte) {
  return byte != 0 && byte != '\\' && !is_ligature(byte) && BARE[(unsigned char)byte] == byte;
}

// Whether the two bytes behind a backslash are the letters of ae, oe, AE or OE.
bool is_letter_pair(const char *pair) {
  return (is_one_of(pair[0], "ao") && pair[1] == 'e') ||
         (is_one_of(pair[0], "AO") && pair[1] == 'E');
}

void expand_tabs(char *s1) {
  if (strchr(s1, '\t') == nullptr)
    return;
  std::string expanded;
  for (const char *byte = s1; *byte != 0; byte++)
    expanded.append(*byte == '\t' ? TAB_WIDTH : 1, *byte == '\t' ? ' ' : *byte);
  memcpy(s1, expanded.c_str(), expanded.size() + 1);
}

// Curved quotation marks and the en dash as ASCII has them; any other byte as it is.
char straight(char byte) {
  switch (byte) {
  case '\221':
  case '\222':
    return '\'';
  case '\223':
  case '\224':
    return '"';
  case '\226':
    return '-';
  default:
    return byte;
  }
}

// The opening marks of French ("<", <<, curved and straight double quote), and the closing ones.
const char OPENING[] = "<\253\223\"";
const char CLOSING[] = ">\273\224\"?!;:";

// The mark at source[*i] has just been written at s1[*j]: binds it to its word by no-break spaces.
// `source` is the text before the walk rewrote any of it.
//
// QUIRK bound backslash: the space before a closing mark may have been lost to an unknown
// sequence ("\ ?"); then it is the backslash written for it that becomes a no-break space. A reader
// would expect the byte to be looked at first. It is meant: the learner sees the space that was
// typed, and no backslash. Test: Accents.NoBreakSpaceTakesThePlaceOfABackslashThatLostItsSpace
void bind_mark(const std::string &source, int *i, int *j, char *s1) {
  size_t at = (size_t)*i;
  if (at + 1 < source.size() && is_one_of(source[at], OPENING) && source[at + 1] == ' ') {
    s1[++*j] = NO_BREAK_SPACE;
    ++*i;
  } else if (at > 0 && *j > 0 && is_one_of(source[at], CLOSING) && source[at - 1] == ' ') {
    s1[*j - 1] = NO_BREAK_SPACE;
  }
}

// QUIRK last backslash: a backslash with fewer than two bytes behind it vanishes. A reader would
// expect it to stay, since no sequence can begin there. It is meant: a sequence cut by the end of
// a line leaves no stray sign on the screen or in the index. (RM_ACCENTS drops it too.)
// Test: Accents.BackslashAmongTheLastTwoBytesVanishes
void decode(char *s1, bool french) {
  expand_tabs(s1);
  const std::string source(french ? s1 : "");
  const int length = (int)strlen(s1);
  int begin = 0;
  while (!french && s1[begin] != 0 && s1[begin] != '\\' && straight(s1[begin]) == s1[begin])
    begin++;
  int j = begin - 1;
  for (int i = begin; i <= length; i++) {
    if (s1[i] != '\\') {
      s1[++j] = straight(s1[i]);
      if (french)
        bind_mark(source, &i, &j, s1);
    } else if (i + 2 < length) {
      TRO_ACCENT(&i, &j, s1);
    }
  }
}

void write_pair(int *i, int *j, char *s1) {
  char first = s1[*i + 1];
  char second = s1[*i + 2];
  s1[++*j] = first;
  s1[++*j] = second;
  *i += 2;
}

// QUIRK unknown sequence: a backslash that begins no sequence is written, and the byte behind it
// is lost ("\qrs" gives "\rs"). A reader would take it for a step too many. It is meant: names in
// the index files were written so, and an entry's history is found by its name.
// Test: Accents.UnknownSequenceKeepsItsBackslashAndLosesTheNextByte
void write_backslash(int *i, int *j, char *s1) {
  s1[++*j] = '\\';
  *i += 1;
}

// Splits the nb ligatures of a key, from its end backwards.
//   j       where the walk has written the NUL behind the key
//   length  of the text that the key was made of
//
// QUIRK ligature pass: the bytes behind a ligature are not moved up, so the second letter takes the
// place of one of them ("b", ae, "c" gives "bae"), with several ligatures the first letters move,
// and what the text held behind its key can come to light. A reader would expect room to be made.
// It is meant: every key is made by this pass, and keys are only compared with keys.
// Test: Accents.LigaturePassOverwritesWhatFollows
void split_ligatures(int j, int length, int nb, char *s1) {
  std::string key(s1, (size_t)length + 1);
  key.resize((size_t)(length + nb) + 2, '\0');
  int k = j + 1;
  int m = k + nb;
  key[(size_t)k] = 0;
  for (; k >= 0; k--, m--) {
    if (!is_ligature(key[(size_t)k]))
      continue;
    bool capital = key[(size_t)k] == '\306';
    // A ligature that was not counted (the letter of a sequence) can lead m below the start.
    if (m > 0)
      key[(size_t)m - 1] = capital ? 'A' : 'a';
    if (m >= 0)
      key[(size_t)m] = capital ? 'E' : 'e';
    m--;
  }
  strcpy(s1, key.c_str());
}

} // namespace

void DECODE_ACCENTS(char *s1) {
  decode(s1, false);
}

void DECODE1_ACCENTS(char *s1) {
  decode(s1, true);
}

void TRO_ACCENT(int *i, int *j, char *s1) {
  const char *pair = s1 + *i + 1;
  const Accent *found =
      std::find_if(std::begin(ACCENTS), std::end(ACCENTS), [pair](const Accent &accent) {
        return pair[0] == accent.sign && pair[1] == accent.letter;
      });
  if (found == std::end(ACCENTS)) {
    write_backslash(i, j, s1);
  } else if (found->accented == 0) {
    write_pair(i, j, s1);
  } else {
    s1[++*j] = found->accented;
    *i += 2;
  }
}

void RM_ACCENTS(char *s1) {
  const int length = (int)strlen(s1);
  int begin = 0;
  while (stays(s1[begin]))
    begin++;
  int j = begin - 1;
  int nb = 0;
  for (int i = begin; i <= length; i++) {
    if (s1[i] != '\\') {
      WORK_ACCENT(&i, &nb, s1);
      s1[++j] = s1[i];
    } else if (i + 2 < length) {
      WORK_RM_ACCENT(&i, &j, s1);
    }
  }
  if (nb > 0)
    split_ligatures(j, length, nb, s1);
}

void WORK_RM_ACCENT(int *i, int *j, char *s1) {
  const char *pair = s1 + *i + 1;
  if (is_one_of(pair[0], SIGNS)) {
    s1[++*j] = pair[1];
    *i += 2;
  } else if (is_letter_pair(pair)) {
    write_pair(i, j, s1);
  } else {
    write_backslash(i, j, s1);
  }
}

void WORK_ACCENT(int *i, int *nb, char *s1) {
  if (is_ligature(s1[*i]))
    ++*nb;
  s1[*i] = BARE[(unsigned char)s1[*i]];
}
