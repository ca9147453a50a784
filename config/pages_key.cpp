// The key Pages: a plainer way of listing the dictionaries.
#include "config/pages_key.h"

#include <glib.h>
#include <string.h>

#include <string>

#include "config/config_values.h"
#include "config/lesson_tokens.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const int FIRST_CHARACTERS = 10; // of st_lesson
const int MORE_CHARACTERS = 22;  // than needed, where st_lesson is full

void start_list(Trf_string *G_dico) {
  g_free(G_dico->st_lesson);
  G_dico->lenmx_str_lesson = FIRST_CHARACTERS;
  G_dico->st_lesson = static_cast<char *>(g_malloc0(FIRST_CHARACTERS + 1));
  G_dico->nb_lesson = 0;
}

// Stores a name; an empty one (a directory of a range, bare) would be no item, and is left out.
void store_name(const std::string &name, int *n_pages, Trf_string *G_dico) {
  if (name.empty())
    return;
  size_t length = strlen(G_dico->st_lesson);
  size_t needed = length + name.size() + 1;
  if ((int)needed > G_dico->lenmx_str_lesson) {
    G_dico->lenmx_str_lesson = (int)needed + MORE_CHARACTERS;
    G_dico->st_lesson =
        static_cast<char *>(g_realloc(G_dico->st_lesson, (gsize)G_dico->lenmx_str_lesson + 1));
  }
  memcpy(G_dico->st_lesson + length, (name + " ").c_str(), name.size() + 2);
  G_dico->nb_lesson++;
  (*n_pages)++;
}

// Stores the names of a range.
//
// QUIRK Pages counts up only: a range with the larger number first gives no name at all, whereas
// Which_lesson counts down. It looks like a forgotten case; it is meant: settings files switch a
// range off by turning it round.
// Test: PagesKey.ADownwardRangeYieldsNothing
//
// QUIRK Pages forgets the directory of later names: every file of a range is looked for in the
// directory of the token, but only the first name is stored with it, the others bare. It looks like
// a lost path; it is meant: such lists are for dictionaries in the working directory.
// Test: PagesKey.OnlyTheFirstNameOfARangeKeepsItsDirectory
void store_range(const std::string &token, int *n_pages, Trf_string *G_dico) {
  long n1 = 0;
  long n2 = 0;
  EXTRACT_2NB(token.c_str(), &n1, &n2);
  Trf_range range = {};
  if (n2 < n1 || !FIND_RANGE(token.c_str(), &range))
    return;
  // A further range stands in the name as it is.
  for (long value : VALUES_TO_TRY(token.substr(0, range.end), range)) {
    Owned_text name(CASE_ARROW(token.c_str(), value));
    if (FILE_OPENS(name.get()))
      store_name(value == n1 ? name.get() : NAME_OF_TOKEN(name.get()), n_pages, G_dico);
  }
}

} // namespace

void EXTRACT_PAGES(FILE *fp, char *s, int *n_pages, Trf_string *G_dico) {
  start_list(G_dico);
  *n_pages = 0;
  READ_VALUE(fp, s, "EXTRACT_PAGES", [&](int i, char *line, int *code_fin) {
    EXTRACT2_INPUT(n_pages, i, line, G_dico, code_fin);
  });
  TRACE("EXTRACT_PAGES n_pages=%d st_lesson=%s@@@ \n", *n_pages, G_dico->st_lesson);
}

void EXTRACT2_INPUT(int *n_pages, int i, char *s, Trf_string *G_dico, int *code_fin) {
  const char *place = s + i;
  for (;;) {
    std::string token = NEXT_LESSON_TOKEN(&place); // "" too where a '#' begins a comment
    if (token == "<:")
      *code_fin = 1;
    if (token.empty() || *code_fin)
      return;
    if (token.find("->") != std::string::npos)
      store_range(token, n_pages, G_dico);
    else if (FILE_OPENS(token))
      store_name(token, n_pages, G_dico);
  }
}

void EXTRACT_2NB(const char *token, long *n1, long *n2) {
  Trf_range range = {};
  if (FIND_RANGE(token, &range) && range.at_end)
    STOP_PROGRAM(nullptr, 9, "erreur in EXTRACT_2NB stop ");
  *n1 = range.n1;
  *n2 = range.n2;
}

char *CASE_ARROW(const char *token, long value) {
  Trf_range range;
  if (!FIND_RANGE(token, &range))
    return g_strdup(token);
  if (range.at_end)
    STOP_PROGRAM(nullptr, 9, "erreur 1 in CASE_ARROW stop ");
  if (value < range.n1)
    STOP_PROGRAM(nullptr, 10, "erreur 2 in CASE_ARROW stop ");
  if (value > range.n2)
    STOP_PROGRAM(nullptr, 11, "erreur 3 in CASE_ARROW stop ");
  return g_strdup(RANGE_REPLACED(token, range, value).c_str());
}
