// Blanks and words. A blank is the space character alone.
#include "util/words.h"

#include <string.h>

#include <algorithm>
#include <string_view>

namespace {

// The first word of the text at *rest, which is moved behind it; "" at the end.
std::string_view take_word(const char **rest) {
  const char *start = *rest;
  while (*start == ' ')
    start++;
  const char *blank = strchr(start, ' ');
  *rest = blank != nullptr ? blank : start + strlen(start);
  return std::string_view(start, (size_t)(*rest - start));
}

} // namespace

void RM_EXTRA_BLANCS(char *s) {
  char *end = std::unique(s, s + strlen(s), [](char a, char b) { return a == ' ' && b == ' '; });
  *end = 0;
}

// QUIRK all blanks: the text is cut at its first space. A reader of the name would expect the
// spaces to be taken out and the rest closed up. It is meant: callers want the first word of a
// value and nothing that was written behind it. Test: Words.AllBlanksCutsAtTheFirstSpace
void RM_ALL_BLANCS(char *s) {
  s[strcspn(s, " ")] = 0;
}

std::string NTH_WORD(const char *list, int n) {
  std::string_view word;
  for (const char *rest = list; n > 0; n--) {
    word = take_word(&rest);
    if (word.empty())
      break;
  }
  return std::string(word);
}

int COUNT_WORDS(const char *list) {
  int nb = 0;
  const char *rest = list;
  while (!take_word(&rest).empty())
    nb++;
  return nb;
}
