// The idx1 file: one record per entry of a dictionary, with its history in both directions.
#include "db/idx1_format.h"

#include <string.h>

#include <algorithm>

#include "util/accents.h"
#include "util/numbers.h"

namespace {

// Characters of a later line's text that name an entry.
const size_t MAX_NONAME_TEXT = 25;
// Bytes that a tab may need when the notation is decoded.
const size_t TAB_ROOM = 8;
// What a name line holds besides the text, the alias and the offset, and the offset.
const size_t REFERENCE_ROOM = 24;

void decode(std::string *text) {
  size_t nb_tabs = (size_t)std::count(text->begin(), text->end(), '\t');
  text->resize(text->size() + nb_tabs * TAB_ROOM);
  DECODE_ACCENTS(text->data());
  text->resize(strlen(text->c_str()));
}

// Folds every run of blanks and tabs to one blank. Hardly a text has one.
void fold(std::string *text) {
  std::replace(text->begin(), text->end(), '\t', ' ');
  if (strstr(text->c_str(), "  ") == nullptr)
    return;
  auto both_blank = [](char left, char right) { return left == ' ' && right == ' '; };
  text->erase(std::unique(text->begin(), text->end(), both_blank), text->end());
}

void add_reference(const char *s_alias, long offset, std::string *line) {
  line->append("*").append(s_alias).append(" ").append(std::to_string(offset)).append(" *");
}

} // namespace

bool IS_HEADER_MARK(const char *line) {
  return line[0] == '#' && strstr(line, HEADER_MARK) != nullptr;
}

// Every line of every file is asked this, and hardly one has the sign that the mark holds.
bool IS_END_MARK(const char *line) {
  return strchr(line, '_') != nullptr && strstr(line, END_MARK) != nullptr;
}

bool IS_NAME_LINE(const char *line) {
  return line[0] == '#' && line[1] != '#';
}

// QUIRK entry without star: its name is the whole line and the '*' stands right behind it, with no
// blank between; a reader would expect the blank that other name lines have. It is meant: an entry
// named by its whole line ends where the line does.
// Test: NameLine.AnEntryWithoutStarIsItsWholeLine
std::string NAME_LINE_OF_ENTRY(std::string text, const char *s_alias, long offset) {
  decode(&text);
  size_t star = std::min(text.find('*'), text.size());
  std::string line;
  line.reserve(text.size() + strlen(s_alias) + REFERENCE_ROOM);
  line.append("#").append(text, 0, star);
  add_reference(s_alias, offset, &line);
  if (star < text.size())
    line.append(text, star + 1);
  fold(&line);
  return line;
}

// QUIRK name that begins with a mark: a text that begins with '#' (a whole entry line, where the
// line behind "Q>" is blank) makes a name line that begins with "##", which every reader of an
// index takes for a double line. A reader would expect the mark to be left out. It is meant: the
// text is the name as it stands, and the learner wrote no name.
// Test: Idx1Dico.ALaterNameThatBeginsWithTheMarkIsNotFoundAgain
//
// QUIRK star in a later name: a '*' in a text that names its entry stands in the name line before
// the one that goes with the alias. Readers take the first '*': the question ends there, and what
// follows is no alias, so that the program ends when the entry is asked. A reader would expect the
// '*' to be left out. It is meant: a '*' ends a name wherever one is written, and the text is the
// name as it stands. Test: NameLine.AStarInALaterNameIsTakenForTheOneBeforeTheAlias
std::string NAME_LINE_OF_TEXT(std::string text, const char *s_alias, long offset) {
  decode(&text);
  text.resize(std::min(text.find_first_of(",;"), std::min(text.size(), MAX_NONAME_TEXT)));
  std::string line = "#" + text + " ";
  add_reference(s_alias, offset, &line);
  fold(&line);
  return line;
}

std::string QUESTION_OF_NAME_LINE(const std::string &name_line) {
  size_t star = std::min(name_line.find('*'), name_line.size());
  return star == 0 ? "" : name_line.substr(1, star - 1);
}

Trf_name_split SPLIT_NAME_LINE(const char *line, char *s_alias, long *offset, const char **rest) {
  const char *unused = nullptr;
  const char **behind = rest != nullptr ? rest : &unused;
  s_alias[0] = '\0';
  *offset = 0;
  *behind = line;
  const char *star = strchr(line, '*');
  if (star == nullptr)
    return NAME_NO_STAR;
  size_t length = std::min(strcspn(star + 1, " "), (size_t)MAX_ALIAS);
  memcpy(s_alias, star + 1, length);
  s_alias[length] = '\0';
  *behind = star + 1 + length;
  long taken[2] = {0, 0};
  EXTR_N_LINT(1, const_cast<char *>(*behind), taken);
  if (taken[0] < 1)
    return NAME_NO_OFFSET;
  *offset = taken[1];
  return NAME_SPLIT;
}
