// A dictionary made into an index: its frame, its offsets, and every history carried over.
//
// Pieces: the dictionary; an old index, damaged in any way (empty: none); the dictionary edited.
#include <stdlib.h>
#include <string.h>

#include <map>

#include "db/history_line.h"
#include "db/idx1_format.h"
#include "db/index_update.h"
#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "util/working_copy.h"

namespace {

char LESSON[] = "lesson";
char COPY[] = "CPY/lesson";
char INDEX[] = "./IDX1/idx1_lesson";

// A number of 12 digits runs into the next field when it is read back.
bool has_long_number(const std::string &text) {
  size_t digits = 0;
  for (char byte : text) {
    digits = byte >= '0' && byte <= '9' ? digits + 1 : 0;
    if (digits >= 12)
      return true;
  }
  return false;
}

// Copies the dictionary and rebuilds the index. Returns the status of an end of the program.
int rebuild(const std::string &dictionary) {
  PUT_FILE(LESSON, dictionary);
  HOLDS(win_file(LESSON, COPY) >= 0);
  std::string before = GET_FILE(INDEX);
  int status = STATUS_OF([] { UPDATE_IDX1_FILE(NO_LOG(), COPY, INDEX); });
  if (status >= 0)
    HOLDS(GET_FILE(INDEX) == before);
  return status;
}

bool is_entry_line(const std::string &copy, long offset) {
  size_t first = copy.find_first_not_of(std::string(" \t\0", 3), (size_t)offset);
  return first != std::string::npos && copy[first] == '#';
}

// The offset behind the alias of a name line that is that of an entry behind `last` in the working
// copy; -1 where there is none. A name taken from a later line may hold a '*' of its own, so each
// is looked at, and the smallest such offset taken.
long offset_of(const std::string &name, const std::string &alias, long last,
               const std::string &copy) {
  std::string mark = "*" + alias + " ";
  long smallest = -1;
  for (size_t at = name.find(mark); at != name.npos; at = name.find(mark, at + 1)) {
    long offset = strtol(name.c_str() + at + mark.size(), nullptr, 10);
    bool is_smaller = smallest < 0 || offset < smallest;
    if (is_smaller && offset > last && offset < (long)copy.size() && is_entry_line(copy, offset))
      smallest = offset;
  }
  return smallest;
}

void check_offsets(const std::string &index, const std::string &copy) {
  std::string first_line = LINES_OF(index)[0];
  std::string alias = first_line.substr(strlen(INDEX) + 1);
  alias.pop_back();
  long last = -1;
  for (const Index_record &record : RECORDS_OF(index, INDEX)) {
    last = offset_of(record.name, alias, last, copy);
    HOLDS(last >= 0);
  }
}

// A history for record i that is its own.
std::string history_of(int i, int sens) {
  const long values[] = {0, 10 * i + sens, i % 5, 1000 + i, i % 5 == 0 ? 0 : 2000 + i};
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  return line;
}

// Gives every record of the index a history of its own. Returns them by question, the first of
// equal ones.
std::map<std::string, Index_record> give_histories() {
  std::string index;
  std::map<std::string, Index_record> given;
  std::vector<std::string> lines = LINES_OF(GET_FILE(INDEX));
  int i = 1;
  for (size_t k = 0; k < lines.size(); k++) {
    index += lines[k] + "\r\n";
    bool is_record = k >= 2 && IS_NAME_LINE(lines[k].c_str()) && k + 3 < lines.size();
    if (!is_record)
      continue;
    Index_record record = {lines[k], QUESTION_OF_NAME_LINE(lines[k]), history_of(i, 1),
                           history_of(i, 2)};
    index += record.qr + "\r\n" + record.rq + "\r\n";
    given.emplace(record.question, record);
    k += 2;
    i++;
  }
  PUT_FILE(INDEX, index);
  return given;
}

// Every question of the edited dictionary that was there before has the history it had.
void check_survival(const std::map<std::string, Index_record> &given) {
  for (const Index_record &record : RECORDS_OF(GET_FILE(INDEX), INDEX)) {
    auto old = given.find(record.question);
    if (old == given.end() || !IS_NAME_LINE(record.name.c_str()))
      continue;
    HOLDS(record.qr == old->second.qr);
    HOLDS(record.rq == old->second.rq);
  }
}

} // namespace

FUZZ_TARGET(index) {
  std::vector<std::string> pieces = PIECES(input, 3);
  PUT_FILE("CPY/.keep", "");
  PUT_FILE("IDX1/.keep", "");
  if (!pieces[1].empty())
    PUT_FILE(INDEX, pieces[1]);
  if (rebuild(pieces[0]) >= 0)
    return;
  std::string index = GET_FILE(INDEX);
  // A line taken for UTF-8 when it is read back has another question there.
  bool rereadable = MAY_BE_REREAD(index) || MAY_BE_REREAD(GET_FILE(COPY));
  check_offsets(index, GET_FILE(COPY));
  if (!rereadable && !has_long_number(pieces[1])) {
    HOLDS(rebuild(pieces[0]) == -1); // blank histories become zeros
    index = GET_FILE(INDEX);
    HOLDS(rebuild(pieces[0]) == -1);
    HOLDS(GET_FILE(INDEX) == index);
  }
  std::map<std::string, Index_record> given = give_histories();
  if (rebuild(pieces[2]) >= 0)
    return;
  if (!rereadable && !MAY_BE_REREAD(GET_FILE(INDEX)) && !MAY_BE_REREAD(GET_FILE(COPY)))
    check_survival(given);
}
