// The key Which_lesson: which dictionaries there are, and in which order.
#include "config/which_lesson.h"

#include <glib.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "config/config_values.h"
#include "config/lesson_tokens.h"
#include "util/report.h"

namespace {

const int FIRST_BYTES = 20; // of st_lesson
const int MORE_BYTES = 50;  // than needed, where st_lesson is full

void start_list(Trf_string *G_dico) {
  g_free(G_dico->st_lesson);
  G_dico->lenmx_string = FIRST_BYTES;
  G_dico->st_lesson = static_cast<char *>(g_malloc0(FIRST_BYTES));
  G_dico->nb_lesson = 0;
}

void append_text(const std::string &text, Trf_string *G_dico) {
  size_t length = strlen(G_dico->st_lesson);
  size_t needed = length + text.size();
  if ((int)needed + 1 > G_dico->lenmx_string) {
    G_dico->lenmx_string = (int)needed + MORE_BYTES;
    G_dico->st_lesson =
        static_cast<char *>(g_realloc(G_dico->st_lesson, (gsize)G_dico->lenmx_string));
  }
  memcpy(G_dico->st_lesson + length, text.c_str(), text.size() + 1);
}

// Adds a name without ranges where its file opens.
//
// QUIRK a missing dictionary shifts the numbers: a name that does not open is left out without a
// word, and every dictionary behind it has a smaller number. It looks like a lost message; it is
// meant: a range may be written wider than what is there yet.
// Test: WhichLesson.AMissingFileIsLeftOutAndTheNumbersShift
void add_name(const std::string &path, const std::string &name, int *nb_found, Trf_string *G_dico) {
  if (!FILE_OPENS(path + name))
    return;
  const char *blank = G_dico->st_lesson[0] == '\0' ? "" : " ";
  append_text(blank + (*nb_found == 0 ? path : "&/") + name, G_dico);
  (*nb_found)++;
  G_dico->nb_lesson++;
}

// Adds every dictionary of one line; returns true where the token "<:" ends the list.
//
// QUIRK only a separate mark ends the list: "voc.txt<:" is a file name, because '<' and ':' may
// stand in names. It looks like a missed end; it is meant: the mark stands between blanks or alone
// on its line.
// Test: WhichLesson.AMarkGluedToANameBelongsToTheName
bool add_line(const char *line, Trf_string *G_dico) {
  for (;;) {
    std::string token = NEXT_LESSON_TOKEN(&line);
    if (token == "<:")
      return true;
    if (token.empty())
      return false;
    int nb_found = 0;
    RECUR_EXTR_ARROW(DIRECTORY_AS_WRITTEN(token).c_str(), NAME_OF_TOKEN(token).c_str(), &nb_found,
                     G_dico);
  }
}

// The values of the range of a name that need be looked at, from n1 on.
std::vector<long> values_in_order(const char *s_path, const char *s_file, Trf_range range) {
  size_t length = strlen(s_path);
  range.begin += length;
  range.end += length;
  std::vector<long> values = VALUES_TO_TRY(std::string(s_path) + s_file, range);
  if (range.n2 < range.n1)
    std::reverse(values.begin(), values.end());
  return values;
}

// A token being expanded.
struct Trf_expansion {
  const char *s_path; // its directory
  int *nb_found;      // names that it has added
  Trf_string *G_dico; // the registry they go to
  long nb_tried = 0;  // names looked at, those with ranges among them
};

// Adds the name, or every name that its ranges stand for.
void expand(const char *s_file, Trf_expansion *expansion) {
  if (++expansion->nb_tried > MAX_NAMES_TRIED)
    STOP_PROGRAM(nullptr, 11, "EXTRACT_WHICH_LESSONS error dim STOP ");
  Trf_range range;
  if (!FIND_RANGE(s_file, &range))
    return add_name(expansion->s_path, s_file, expansion->nb_found, expansion->G_dico);
  if (!range.both_given)
    STOP_PROGRAM(nullptr, 13, "RECUR_EXTR_ARROW error 13 for s_file =%s \n", s_file);
  for (long value : values_in_order(expansion->s_path, s_file, range))
    expand(RANGE_REPLACED(s_file, range, value).c_str(), expansion);
}

// The lessons that one word of a list stands for.
long long lessons_of_word(const std::string &word) {
  Trf_range range;
  return FIND_RANGE(word.c_str(), &range) ? llabs((long long)range.n1 - range.n2) + 1 : 1;
}

} // namespace

// QUIRK the list begins on the next line: a list on the key's own line is read (so that a bad range
// in it is told first) and then ends the program. It looks like a needless refusal; it is meant: a
// list stands on lines of its own, and a key line with names on it was joined by mistake, so that
// the program had better stop than drill half a list.
// Test: WhichLesson.AListOnTheKeyLineEndsTheProgramWithStatus2
//
// QUIRK a list without end is told as EXTRACT_PAGES: the second reading message names the reader of
// the other key. It looks like a copied message; it is meant: both lists end by the same mark, and
// the learner mends both in the same way.
// Test: WhichLesson.AListWithoutEndIsToldAsExtractPages
void EXTRACT_WHICH_LESSONS(FILE *fp, char *s, Trf_string *G_dico) {
  start_list(G_dico);
  int i = FIND_VALUE(s);
  if (i < 0)
    STOP_PROGRAM(nullptr, 1, "EXTRACT_WHICH_LESSONS error in line s=%s \n", s);
  if (s[i] != '\0') {
    add_line(s + i, G_dico);
    STOP_PROGRAM(nullptr, 2, "EXTRACT_WHICH_LESSONS error 2 STOP ");
  }
  char line[CONF_NEXT_LINE];
  if (!READ_CONF_LINE(line, CONF_NEXT_LINE, fp))
    STOP_PROGRAM(nullptr, 1, "error 1 while reading in EXTRACT_WHICH_LESSONS stop ");
  while (!add_line(line, G_dico)) {
    if (!READ_CONF_LINE(line, CONF_NEXT_LINE, fp))
      STOP_PROGRAM(nullptr, 2, "error 2 while reading in EXTRACT_PAGES stop ");
  }
  CHECK_LESSON_LIST(G_dico);
  TRACE("EXTRACT_WHICH_LESSONS nb_lesson=%d st_lesson=%s@@@ \n", G_dico->nb_lesson,
        G_dico->st_lesson);
}

void RECUR_EXTR_ARROW(const char *s_path, const char *s_file, int *nb_found, Trf_string *G_dico) {
  Trf_expansion expansion = {s_path, nb_found, G_dico};
  expand(s_file, &expansion);
}

void CHECK_LESSON_LIST(const Trf_string *G_dico) {
  if (strlen(G_dico->st_lesson) >= (size_t)MAX(G_dico->lenmx_string, 0))
    STOP_PROGRAM(nullptr, 11, "EXTRACT_WHICH_LESSONS error dim STOP ");
}

void CLOSE_LESSON_LIST(Trf_string *G_dico) {
  append_text(" ", G_dico);
  int bytes = (int)strlen(G_dico->st_lesson) + 1;
  if (bytes >= G_dico->lenmx_string)
    return;
  G_dico->st_lesson = static_cast<char *>(g_realloc(G_dico->st_lesson, (gsize)bytes));
  G_dico->lenmx_string = bytes;
}

int KLASK_NB_PAJ(char *st_lesson) {
  long long nb = 0;
  const char *place = st_lesson == nullptr ? "" : st_lesson;
  for (place += strspn(place, " "); *place != '\0'; place += strspn(place, " ")) {
    size_t length = strcspn(place, " ");
    nb = std::min<long long>(nb + lessons_of_word(std::string(place, length)), INT_MAX);
    place += length;
  }
  return (int)nb;
}
