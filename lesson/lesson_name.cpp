// The name of a numbered lesson: the file name of its dictionary.
#include "lesson/lesson_name.h"

#include <string>
#include <string_view>

#include "config/registry.h"
#include "db/dictionary_file.h"
#include "util/owned.h"
#include "util/paths.h"
#include "util/report.h"

namespace {

const char SEPARATORS[] = " \n";
const int MAX_PATH_LENGTH = 100;

// A word of the list of dictionaries, and where it begins in the list.
struct Word {
  size_t start;
  std::string text;
};

// Word n (from 1) of the list; an empty one at its end where there are fewer.
Word nth_word(std::string_view list, int n) {
  size_t start = list.find_first_not_of(SEPARATORS);
  for (int i = 1; i < n && start != list.npos; i++)
    start = list.find_first_not_of(SEPARATORS, list.find_first_of(SEPARATORS, start));
  if (start == list.npos)
    return {list.size(), ""};
  size_t end = list.find_first_of(SEPARATORS, start);
  return {start, std::string(list.substr(start, end - start))};
}

// The path of a word that begins with '&': the directory of the nearest dictionary before it that
// was written with one, and the word without its '&'.
std::string path_of_marked_word(FILE *fp_log, Trf_string *G_dico, const Word &word) {
  Owned_text directory(PATH_FROM_G_lesson((int)word.start, G_dico));
  if (directory == nullptr)
    STOP_PROGRAM(fp_log, 2, "sub LESSON_FROM_ORDER error path == NULL stop \n");
  std::string path = directory.get();
  std::string name = word.text.substr(1);
  bool doubled = !path.empty() && path.back() == '/' && !name.empty() && name.front() == '/';
  path += doubled ? name.substr(1) : name;
  if (path.size() > MAX_PATH_LENGTH)
    STOP_PROGRAM(fp_log, 2, "sub LESSON_FROM_ORDER error lenpf=%d > 100 stop \n", (int)path.size());
  return path;
}

std::string path_of_lesson(FILE *fp_log, Trf_string *G_dico, int i_order) {
  const char *list = G_dico->st_lesson != nullptr ? G_dico->st_lesson : "";
  Word word = nth_word(list, i_order);
  if (!word.text.empty() && word.text.front() == '&')
    return path_of_marked_word(fp_log, G_dico, word);
  return word.text;
}

} // namespace

void LESSON_FROM_ORDER(FILE *fp_log, Trf_string *G_dico, int i_order, char *s_lesson) {
  s_lesson[0] = '\0';
  if (i_order < 1 || i_order > G_dico->nb_lesson)
    STOP_PROGRAM(fp_log, 2, "LESSON_FROM_ORDER error 1 i_order=%d nb_lesson=%d \n", i_order,
                 G_dico->nb_lesson);
  std::string path = path_of_lesson(fp_log, G_dico, i_order);
  Owned_stream fp = OPEN_STREAM(path.c_str(), "r");
  if (fp == nullptr) {
    LOG_LINE(fp_log, "LESSON_FROM_ORDER cannot open file %s \n", path.c_str());
    return;
  }
  Owned_text alias(EXTRACT_SHABANG(fp.get()));
  Owned_text name(FILENAME_FROM_PATH(path.data()));
  if (name != nullptr)
    g_strlcpy(s_lesson, name.get(), LESSON_NAME_SIZE);
}
