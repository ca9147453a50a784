// The dictionary file: the learner's own text, as the index reads it through the working copy.
#include "db/dictionary_file.h"

#include <ctype.h>
#include <limits.h>
#include <string.h>

#include "db/idx1_format.h"
#include "util/line_reader.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const char ALIAS_MARK[] = "!#";
const char SECTION_MARK[] = "######";

bool is_alias_character(char byte) {
  return (byte & 0x80) == 0 && (isalnum((unsigned char)byte) || byte == '-' || byte == '_');
}

const char *behind_blanks(const char *text) {
  return text + strspn(text, " ");
}

// The alias behind its mark, as a new string; null when no alias character stands there.
char *alias_behind(const char *text) {
  char alias[MAX_SHABANG_LINE + 1];
  size_t length = 0;
  for (const char *s = behind_blanks(text); is_alias_character(*s); s++) {
    if (length + 1 >= sizeof(alias))
      STOP_PROGRAM(SAVED_LOG(), 91, "EXTRACT_SHABANG error mem STOP ");
    alias[length++] = *s;
  }
  return length == 0 ? nullptr : g_strndup(alias, length);
}

} // namespace

// QUIRK alias mark: the mark is "!#", in that order; a reader would take it for a mistyped "#!".
// It is meant: "#!" would begin an entry line.
// Test: ExtractShabang.TheMarkIsNotTheOtherWayRound
char *EXTRACT_SHABANG(FILE *fp) {
  char *alias = nullptr;
  Trf_line_cursor line(fp);
  line.limit = LONG_MAX;
  while (NEXT_LINE(&line)) {
    if (line.length > MAX_SHABANG_LINE)
      line.text[MAX_SHABANG_LINE] = '\0';
    const char *mark = strstr(line.text, ALIAS_MARK);
    if (mark == nullptr)
      continue;
    alias = alias_behind(mark + strlen(ALIAS_MARK));
    break;
  }
  fseek(fp, 0, SEEK_SET); // a fault of reading stays with the stream
  return alias;
}

Trf_dico_line KIND_OF_DICO_LINE(const char *line, const char **text) {
  const char *unused = nullptr;
  const char **about = text != nullptr ? text : &unused;
  *about = line;
  if (IS_END_MARK(line))
    return DICO_END;
  if (strchr(line, '#') == nullptr)
    return DICO_TEXT;
  if (strstr(line, SECTION_MARK) != nullptr)
    return DICO_SECTION;
  const char *s = behind_blanks(line);
  if (*s != '#')
    return DICO_TEXT;
  s = behind_blanks(s + 1);
  if (*s == '\0')
    return DICO_NONAME;
  *about = *s == '#' ? s + 1 : s;
  return *s == '#' ? DICO_DOUBLE : DICO_ENTRY;
}

// QUIRK cut at 101 bytes: what stands behind the 101st byte of a line is not seen, neither a '*'
// nor "END_OF_FILE"; a reader would expect the whole line to count. It is meant: the index holds
// what finds an entry, and the lesson shows the whole line from the working copy. Test:
// Idx1Dico.ALineIsCutTo101BytesBeforeItIsLookedAt
void CUT_DICO_LINE(char *line) {
  line[strnlen(line, MAX_ENTRY_LINE)] = '\0';
}
