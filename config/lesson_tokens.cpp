// What the two keys that list dictionaries have in common: tokens, and ranges written "N->M".
#include "config/lesson_tokens.h"

#include <glib.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <set>

#include "util/encodings.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

bool token_byte(char byte) {
  return byte != '\0' && (SPE_ALPHA_NUM(byte) || strchr("-><:_.\\/", byte) != nullptr);
}

long number_at(const char *digits) {
  return g_ascii_isdigit(*digits) ? std::min(strtol(digits, nullptr, 10), (long)INT_MAX) : 0;
}

struct Close_directory {
  void operator()(GDir *directory) const {
    g_dir_close(directory);
  }
};
using Owned_directory = std::unique_ptr<GDir, Close_directory>;

// Digits of INT_MAX.
const size_t MAX_NUMBER_DIGITS = 10;

// The number of an entry's name behind its first `from` characters; -1 where there is none that a
// range could write.
long number_in_entry(const char *entry, size_t from) {
  const char *digits = entry + from;
  size_t length = strspn(digits, "0123456789");
  if (length == 0 || length > MAX_NUMBER_DIGITS || (length > 1 && *digits == '0'))
    return -1;
  return strtol(digits, nullptr, 10);
}

// The numbers that entries of a directory have behind `start`.
std::set<long> numbers_behind(const std::string &start, GDir *directory) {
  std::set<long> numbers;
  while (const char *entry = g_dir_read_name(directory))
    if (strncmp(entry, start.c_str(), start.size()) == 0)
      numbers.insert(number_in_entry(entry, start.size()));
  numbers.erase(-1);
  return numbers;
}

std::vector<long> values_between(long low, long high) {
  if (high - low >= MAX_NAMES_TRIED)
    STOP_PROGRAM(nullptr, 11, "EXTRACT_WHICH_LESSONS error dim STOP ");
  std::vector<long> values;
  for (long value = low; value <= high; value++)
    values.push_back(value);
  return values;
}

} // namespace

bool FIND_RANGE(const char *name, Trf_range *range) {
  const char *arrow = strstr(name, "->");
  if (arrow == nullptr)
    return false;
  const char *begin = arrow;
  while (begin > name && g_ascii_isdigit(begin[-1]))
    begin--;
  const char *behind = arrow + 2;
  const char *end = behind + strspn(behind, "0123456789");
  range->begin = (size_t)(begin - name);
  range->end = (size_t)(end - name);
  range->n1 = number_at(begin);
  range->n2 = number_at(behind);
  range->both_given = begin < arrow && end > behind;
  range->at_end = *behind == '\0';
  return true;
}

std::string RANGE_REPLACED(const std::string &name, const Trf_range &range, long value) {
  return name.substr(0, range.begin) + std::to_string(value) + name.substr(range.end);
}

std::vector<long> VALUES_TO_TRY(const std::string &name, const Trf_range &range) {
  long low = std::min(range.n1, range.n2);
  long high = std::max(range.n1, range.n2);
  size_t start = name.rfind('/', range.begin) + 1; // 0 where there is none
  std::string path = start == 0 ? "." : name.substr(0, start);
  Owned_directory directory(g_dir_open(path.c_str(), 0, nullptr));
  // A directory may let its files be opened and not be listed.
  if (directory == nullptr && g_file_test(path.c_str(), G_FILE_TEST_IS_DIR))
    return values_between(low, high);
  std::set<long> numbers;
  if (directory != nullptr)
    numbers = numbers_behind(name.substr(start, range.begin - start), directory.get());
  // In "1->2->3" the number of the second range takes the place of the first one's value.
  bool chained = name.compare(range.end, 2, "->") == 0;
  if (chained && !numbers.empty())
    return values_between(low, high);
  numbers.insert(range.n1);
  return {numbers.lower_bound(low), numbers.upper_bound(high)};
}

std::string NEXT_LESSON_TOKEN(const char **place) {
  const char *token = *place + strspn(*place, " ");
  const char *end = std::find_if_not(token, token + strlen(token), token_byte);
  *place = end;
  return std::string(token, end);
}

std::string DIRECTORY_AS_WRITTEN(const std::string &token) {
  size_t separator = token.find_last_of("/\\");
  if (separator == std::string::npos)
    return "./";
  std::string directory = token.substr(0, separator + 1);
  std::replace(directory.begin(), directory.end(), '\\', '/');
  return directory;
}

std::string NAME_OF_TOKEN(const std::string &token) {
  return token.substr(token.find_last_of("/\\") + 1);
}

bool FILE_OPENS(const std::string &path) {
  return OPEN_STREAM(path.c_str(), "r") != nullptr;
}
