// The tags of an entry: the words behind the second '*' of its name line, and whether a tag asked
// for is among them.
#include "lesson/tag_test.h"

#include <string.h>

#include <string>

#include "util/accents.h"

namespace {

bool is_digit(char byte) {
  return byte >= '0' && byte <= '9';
}

enum Trf_mark { MARK_NONE, MARK_PASSED, MARK_LAST, MARK_WORD };

// Looks for a mark, a letter with a digit behind it, from *text on. MARK_PASSED: *text moves to the
// blank behind it; MARK_LAST: no blank is behind it; MARK_WORD: the letter has no digit behind it,
// so it belongs to a word; MARK_NONE: no such letter.
Trf_mark pass_mark(char letter, const char **text) {
  const char *mark = strchr(*text, letter);
  if (mark == nullptr)
    return MARK_NONE;
  if (!is_digit(mark[1]))
    return MARK_WORD;
  const char *blank = strchr(mark + 1, ' ');
  if (blank == nullptr)
    return MARK_LAST;
  *text = blank;
  return MARK_PASSED;
}

// The tag text of a name line, made accent-free, with room for a blank; false where fewer than two
// '*' stand in the line.
bool tag_text_of(const char *name_line, std::string *tag_text) {
  const char *star = name_line[0] != 0 ? strchr(name_line + 1, '*') : nullptr;
  star = star != nullptr ? strchr(star + 1, '*') : nullptr;
  if (star == nullptr)
    return false;
  *tag_text = star + 1;
  tag_text->resize(2 * tag_text->size() + 1); // the second letters of ligatures
  RM_ACCENTS(tag_text->data());
  tag_text->resize(strlen(tag_text->c_str()));
  return true;
}

} // namespace

// QUIRK mark in first place: the search begins at the second character, so that a mark that is the
// very first thing of the text counts as a word. It looks like a slip by one; it is meant: a name
// line has a blank behind the '*', and only a text that begins there is one whose marks are known
// as marks. Test: NoTag.AMarkInTheFirstPlaceCountsAsATag
//
// QUIRK words before a mark: what stands before a mark is not looked at, so that " verbs Q12" is
// untagged though it holds a word. It looks as if the words had been forgotten; it is meant: marks
// are written first, and of an entry with marks only what follows the last one is a tag.
// Test: NoTag.WordsBeforeAMarkAreNotSeen
int NOTAG(char *ssd) {
  if (ssd[0] == 0)
    return 1;
  const char *text = ssd + 1;
  for (char letter : {'Q', 'R'}) {
    Trf_mark mark = pass_mark(letter, &text);
    if (mark == MARK_LAST)
      return 1;
    if (mark == MARK_WORD)
      return 0;
  }
  return text[strspn(text, " ")] == 0 ? 1 : 0;
}

// QUIRK tag in capitals: the tag text keeps its capitals, so that a tag written with one is not
// found by a tag in small letters, which is what the learner's commands ask for. It looks as if one
// of the two had not been made small; it is meant: marks such as Q12 are told by their capitals,
// and tags are written in small letters. Test: CarriesTag.CapitalsAreNotMadeSmall
bool CARRIES_TAG(const char *name_line, const char *ss_tag) {
  std::string tag_text;
  if (!tag_text_of(name_line, &tag_text))
    return false;
  if (ss_tag[0] == 0)
    return NOTAG(tag_text.data()) == 1;
  tag_text += ' ';
  return tag_text.find(ss_tag) != std::string::npos;
}
