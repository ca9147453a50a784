// Paths taken apart: directory and last component.
#include "util/paths.h"

#include <glib.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "util/report.h"

namespace {

bool is_empty(const char *text) {
  return text == nullptr || text[0] == '\0';
}

char *new_text(const std::string &text) {
  return g_strdup(text.c_str());
}

// What stands behind the last of the separators, else the whole.
const char *last_component(const char *path, const char *separators) {
  const char *last = path;
  for (const char *p = path; *p != '\0'; p++) {
    if (strchr(separators, *p) != nullptr)
      last = p + 1;
  }
  return last;
}

// Whether a directory says by itself where it begins.
bool has_a_beginning(const std::string &directory) {
  if (strchr("./\\", directory[0]) != nullptr)
    return true;
  return directory[0] >= 'A' && directory[0] <= 'Z' && directory[1] == ':';
}

} // namespace

char *PATH_FROM_STRING(char *string) {
  if (is_empty(string))
    return nullptr;
  const char *begin = string + strspn(string, " ");
  const char *end = last_component(begin, "/\\");
  if (end == begin)
    return new_text("./");
  std::string directory(begin, end);
  std::string lead = has_a_beginning(directory) ? "" : "./";
  std::replace(directory.begin(), directory.end(), '\\', '/');
  return new_text(lead + directory);
}

char *PATH_FROM_STRING_FILE(char *path) {
  if (is_empty(path) || path[0] == '&')
    return nullptr;
  const char *end = last_component(path, "/");
  // QUIRK file in the root: "/x.txt" gives "./"; a reader would expect "/". It is meant: a name
  // with nothing before its only "/" is taken to lie in the directory the program works in. Test:
  // PathFromStringFile.ASeparatorInTheFirstPlaceGivesTheWorkingDirectory
  if (end - path <= 1)
    return new_text("./");
  return new_text(std::string(path, (size_t)(end - path)));
}

char *FILE_NAME_FROM_STRING(char *string) {
  if (is_empty(string))
    return nullptr;
  return new_text(last_component(string, "/\\"));
}

char *FILENAME_FROM_PATH(char *path) {
  if (is_empty(path))
    return nullptr;
  return TEXT_WITHIN(last_component(path, "/"), strlen(path) + 1, "FILENAME_FROM_PATH");
}

// QUIRK marked bare name: "&/" is written also before a name that had no directory; a reader would
// expect the mark only where there is a directory to share. It is meant: whoever reads a list of
// names takes "&/" as "the directory of the name before".
// Test: RmPathFromString.TheMarkIsWrittenAlsoWithoutADirectory
char *RM_PATH_FROM_STRING(char *path) {
  if (is_empty(path))
    return nullptr;
  std::string marked = std::string("&/") + last_component(path, "/\\");
  return TEXT_WITHIN(marked.c_str(), strlen(path) + 3, "in RM_PATH_FROM_STRING");
}

char *TEXT_WITHIN(const char *text, size_t room, const char *who) {
  if (strlen(text) + 1 > room)
    STOP_PROGRAM(SAVED_LOG(), 90, "%s error mem STOP ", who);
  char *block = (char *)g_malloc(room);
  memcpy(block, text, strlen(text) + 1);
  return block;
}
