// The files behind the learner's back: an erased lesson mended, two copies of a database merged, an
// older index converted. Nothing is made smaller, no history gets worse.
//
// Pieces: the dictionary; its index; the index of the other copy; all damaged in any way.
#include <map>

#include "db/history_line.h"
#include "db/mend_forgotten.h"
#include "db/synchronise.h"
#include "db/transfer.h"
#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "util/file_copy.h"
#include "util/owned.h"

namespace {

char COPY[] = "CPY/lesson";
char INDEX[] = "./IDX1/idx1_lesson";
char OTHER[] = "./OTHER/idx1_lesson";
char CONVERTED[] = "./IDX1_TRF/idx1_lesson";

// Mends the index as one whose erased records are noted; done twice it changes nothing more.
void mend() {
  std::string before = GET_FILE(INDEX);
  HOLDS(NOTE_ERASED({INDEX}, NO_LOG()));
  if (STATUS_OF([] { MEND_FORGOTTEN(NO_LOG()); }) >= 0)
    return;
  HOLDS(!FILE_THERE("mertu_erased"));
  std::string mended = GET_FILE(INDEX);
  // At the end of a file the last line end may be missing.
  HOLDS(mended.size() >= before.size() && mended.size() <= before.size() + 2);
  HOLDS(NOTE_ERASED({INDEX}, NO_LOG()));
  HOLDS(STATUS_OF([] { MEND_FORGOTTEN(NO_LOG()); }) == -1);
  HOLDS(GET_FILE(INDEX) == mended);
}

// The values of a sound history line; empty for any other.
std::vector<long> values_of(const std::string &line) {
  long values[NB_FIELDS + 1] = {};
  std::string copy = line;
  if (copy.size() != (size_t)HISTORY_LENGTH ||
      CHECK_EXTRACT_4LINT(FUZZ_DAY, copy.data(), values) != 0)
    return {};
  return {values + 1, values + 1 + NB_FIELDS};
}

// The histories of an index by question, the first record of equal ones; only sound ones.
std::map<std::string, Index_record> histories_of(const std::string &index) {
  std::map<std::string, Index_record> found;
  std::vector<std::string> lines = LINES_OF(index);
  for (size_t i = 2; i + 2 < lines.size(); i++) {
    size_t star = lines[i].find('*');
    if (lines[i].empty() || lines[i][0] != '#' || lines[i][1] == '#' || star == std::string::npos)
      continue;
    found.emplace(lines[i].substr(1, star - 1),
                  Index_record{lines[i], "", lines[i + 1], lines[i + 2]});
  }
  return found;
}

void check_not_worse(const std::string &merged, const std::string &old) {
  std::vector<long> now = values_of(merged);
  std::vector<long> then = values_of(old);
  for (size_t k = 0; k < now.size() && k < then.size(); k++)
    HOLDS(now[k] >= then[k]);
}

void synchronise() {
  std::string index = GET_FILE(INDEX);
  std::string other = GET_FILE(OTHER);
  Owned_text back_up(back_up_file(INDEX));
  int status = STATUS_OF([] { SYNCHRO_IDX1_FILE(NO_LOG(), COPY, INDEX, OTHER); });
  HOLDS(GET_FILE(OTHER) == other);
  if (status >= 0) {
    HOLDS(GET_FILE(INDEX) == index);
    return;
  }
  std::string merged = GET_FILE(INDEX);
  if (MAY_BE_REREAD(index + other + merged) || index.find_first_of("\t\377") != index.npos ||
      HAS_BARE_CR(index))
    return;
  std::map<std::string, Index_record> old = histories_of(index);
  for (const Index_record &record : RECORDS_OF(merged, INDEX)) {
    auto found = old.find(record.question);
    if (found == old.end() || record.name[1] == '#')
      continue;
    check_not_worse(record.qr, found->second.qr);
    check_not_worse(record.rq, found->second.rq);
  }
}

void transfer() {
  std::string index = GET_FILE(INDEX);
  int status = STATUS_OF([] { TRF_IDX1_FILE(NO_LOG(), INDEX, CONVERTED); });
  HOLDS(GET_FILE(INDEX) == index);
  HOLDS(FILE_THERE(CONVERTED) == (status < 0));
}

} // namespace

FUZZ_TARGET(upkeep) {
  std::vector<std::string> pieces = PIECES(input, 3);
  PUT_FILE(COPY, pieces[0]);
  PUT_FILE(INDEX, pieces[1]);
  PUT_FILE(OTHER, pieces[2]);
  PUT_FILE("IDX1_TRF/.keep", "");
  transfer();
  mend();
  synchronise();
}
