// The working copy: line ends as its table tells, texts that the line reader finds again.
#include <limits.h>

#include <algorithm>

#include "fuzz/harness.h"
#include "util/line_reader.h"
#include "util/owned.h"
#include "util/working_copy.h"

namespace {

char SOURCE[] = "source";
char COPY[] = "copy";

bool is_plain(char byte) {
  return (unsigned char)byte < 0xC0;
}

// The copy of a source without announcing bytes.
std::string plain_copy(const std::string &source) {
  std::string copy;
  for (size_t i = 0; i < source.size(); i++) {
    if (source[i] == '\n') {
      copy += "\r\n";
    } else if (source[i] == '\r') {
      copy += '\r';
      if (i + 1 < source.size() && source[i + 1] == '\r')
        i++;
      if (i + 1 < source.size() && source[i + 1] != '\n')
        copy += '\n';
    } else {
      copy += source[i];
    }
  }
  return copy;
}

std::vector<std::string> lines_of(const char *name) {
  std::vector<std::string> lines;
  Owned_stream fp = OPEN_STREAM(name, "r");
  Trf_line_cursor cursor(fp.get());
  cursor.limit = LONG_MAX;
  while (NEXT_LINE(&cursor))
    lines.push_back(cursor.text);
  return lines;
}

// A source of one block whose lines end in LF alone is read alike through its copy, but for lines
// that are taken for UTF-8 a second time. A y with diaeresis ends its line in the copy, where it is
// the byte 255.
void compare_lines() {
  std::vector<std::string> source = lines_of(SOURCE);
  std::vector<std::string> copy = lines_of(COPY);
  HOLDS(source.size() == copy.size());
  for (size_t i = 0; i < source.size(); i++)
    if (std::all_of(source[i].begin(), source[i].end(), is_plain))
      HOLDS(source[i] == copy[i]);
}

} // namespace

FUZZ_TARGET(working_copy) {
  PUT_FILE(SOURCE, input);
  PUT_FILE(COPY, "old");
  int changes = win_file(SOURCE, COPY);
  HOLDS(changes >= 0);
  std::string copy = GET_FILE(COPY);
  if (std::all_of(input.begin(), input.end(), is_plain))
    HOLDS(copy == plain_copy(input));
  if (changes == 0)
    HOLDS(copy.size() <= input.size());
  if (input.size() <= (size_t)WIN_BLOCK && input.find_first_of("\r\377") == std::string::npos &&
      copy.find('\377') == std::string::npos)
    compare_lines();
  HOLDS(GET_FILE(SOURCE) == input);
  // The same source gives the same copy.
  HOLDS(win_file(SOURCE, COPY) == changes);
  HOLDS(GET_FILE(COPY) == copy);
}
