// History lines: what is taken from a damaged one is sound, and what is written is read back.
#include <string.h>

#include <memory>

#include "db/history_line.h"
#include "fuzz/harness.h"

namespace {

// The line in a block of its own, so that a byte too far is seen.
std::unique_ptr<char[]> copy_of(const std::string &text) {
  std::unique_ptr<char[]> copy(new char[text.size() + 1]);
  memcpy(copy.get(), text.c_str(), text.size() + 1);
  return copy;
}

// A count without a day is possible (its day was lost), a day without a count is not.
void check_side(long count, long day) {
  HOLDS(count >= 0);
  HOLDS(day >= 0 && day <= FUZZ_DAY);
  HOLDS(count > 0 || day == 0);
}

// A number must leave a blank in its field to be read back.
bool is_short(const long *values) {
  for (int k = 1; k <= NB_FIELDS; k++)
    if (values[k] > 99999999999)
      return false;
  return true;
}

void check_written(const long *values) {
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  HOLDS(strlen(line) == (size_t)HISTORY_LENGTH);
  long again[NB_FIELDS + 1] = {};
  int faulty = CHECK_EXTRACT_4LINT(FUZZ_DAY, line, again);
  if (!is_short(values))
    return;
  HOLDS(faulty == 0);
  HOLDS(std::equal(values + 1, values + 1 + NB_FIELDS, again + 1));
}

void check_six_fields(const std::string &text) {
  long values[NB_FIELDS_6 + 1] = {};
  auto line = copy_of(text);
  CHECK_EXTRACT_6LINT(FUZZ_DAY, line.get(), values);
  HOLDS(text == line.get());
  for (int k : {1, 4}) {
    HOLDS(values[k] >= 0);
    HOLDS(values[k + 1] >= 0 && values[k + 1] <= values[k]);
    HOLDS(values[k + 2] >= 0);
  }
}

} // namespace

FUZZ_TARGET(history_line) {
  std::string text = TEXT_OF(input);
  long values[NB_FIELDS + 1] = {-1, -1, -1, -1, -1};
  auto line = copy_of(text);
  CHECK_EXTRACT_4LINT(FUZZ_DAY, line.get(), values);
  HOLDS(text == line.get());
  check_side(values[1], values[3] > FUZZ_DAY ? 0 : values[3]);
  check_side(values[2], values[4] > FUZZ_DAY ? 0 : values[4]);
  check_written(values);
  check_six_fields(text);
}
