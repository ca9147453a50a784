// What the two keys that list dictionaries have in common: tokens, and ranges written "N->M".
#include "config/lesson_tokens.h"

#include <glib.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "util/encodings.h"
#include "util/owned.h"

namespace {

bool token_byte(char byte) {
  return byte != '\0' && (SPE_ALPHA_NUM(byte) || strchr("-><:_.\\/", byte) != nullptr);
}

long number_at(const char *digits) {
  return g_ascii_isdigit(*digits) ? std::min(strtol(digits, nullptr, 10), (long)INT_MAX) : 0;
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
