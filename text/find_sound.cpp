// Where a sound file lies: beside the dictionary, here, or in the directory SOUND/ of both.
#include "text/find_sound.h"

#include <glib.h>
#include <string.h>

#include <string>

#include "util/book.h"
#include "util/owned.h"
#include "util/paths.h"

namespace {

const int NB_PLACES = 4;

// Where the last sound file was found.
struct {
  int i1 = 1;
} last;

// The path of `name` in place i (1 to NB_PLACES).
std::string path_in_place(int i, const std::string &beside, const std::string &name) {
  switch (i) {
  case 1:
    return beside + name;
  case 2:
    return "./" + name;
  case 3:
    return "./SOUND/" + name;
  default:
    return beside + "SOUND/" + name;
  }
}

void give(const std::string &path, char **s_sound, long *nbyt_snd) {
  long needed = static_cast<long>(path.size()) + 1;
  if (*s_sound == nullptr || *nbyt_snd < needed) {
    *s_sound = static_cast<char *>(g_realloc(*s_sound, needed));
    *nbyt_snd = needed;
  }
  memcpy(*s_sound, path.c_str(), needed);
}

} // namespace

void REMEMBER_DIRECTORY(char *path, Trf_book *book) {
  Owned_text directory(path == nullptr ? nullptr : PATH_FROM_STRING_FILE(path));
  if (directory == nullptr)
    return;
  int length = static_cast<int>(strlen(directory.get()));
  if (book->path_of_lesson == nullptr || length > book->lenmx_path_of_lesson) {
    book->lenmx_path_of_lesson = length + 25;
    book->path_of_lesson =
        static_cast<char *>(g_realloc(book->path_of_lesson, book->lenmx_path_of_lesson + 5));
  }
  strcpy(book->path_of_lesson, directory.get());
}

int SEARCH_SND_FILE_NAME(char **s_sound, long *nbyt_snd, char *ss, Trf_book *book) {
  std::string beside = book->path_of_lesson == nullptr ? "" : book->path_of_lesson;
  // QUIRK sound place never turns back: the search begins where the last sound was found and does
  // not wrap. One would take it for a slip; it is meant: a course keeps its sounds in one place,
  // and that place is not asked for in vain again. Test: FindSound.NeverTurnsBackToALowerPlace
  for (int i = last.i1; i <= NB_PLACES; i++) {
    std::string path = path_in_place(i, beside, ss);
    if (OPEN_STREAM(path.c_str(), "r") == nullptr)
      continue;
    last.i1 = i;
    give(path, s_sound, nbyt_snd);
    return 1;
  }
  return 0;
}

void FORGET_SOUND_PLACE() {
  last.i1 = 1;
}
