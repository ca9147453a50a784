// The lesson registry: the list of dictionary files, and what is known of each by its number.
#include "config/registry.h"

#include <glib.h>
#include <string.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>

#include "util/owned.h"
#include "util/paths.h"
#include "util/report.h"
#include "util/words.h"

namespace {

const int PATH_BYTES = FIRST_PATH_LENGTH + 5;
const int IDX1_SUFFIX = 4;     // characters of "IDX1"
const int PATH_ITEM_MAX = 100; // characters of an item that PATH_FROM_G_lesson takes

char *new_text(const std::string &text) {
  return g_strndup(text.data(), text.size());
}

// Takes the next word of a list off its head; empty at the end of the list.
std::string_view take_word(std::string_view *list) {
  list->remove_prefix(std::min(list->find_first_not_of(' '), list->size()));
  std::string_view word = list->substr(0, list->find(' '));
  list->remove_prefix(word.size());
  return word;
}

std::string_view list_of(const char *text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

std::string file_name_of(std::string_view item) {
  return std::string(item.substr(item.rfind('/') + 1));
}

bool known_number(int num, const Trf_string *G_dico) {
  return num >= 1 && num <= G_dico->nb_lesson;
}

void begin_items(Trf_registry_walk *walk) {
  walk->num_item = 0;
  walk->items = list_of(walk->G_dico->st_lesson);
  walk->with_directory = std::string_view();
}

// Goes to the item of a dictionary. False where there is none.
bool go_to_item(int num, Trf_registry_walk *walk) {
  if (!known_number(num, walk->G_dico))
    return false;
  if (walk->num_item == 0 || num < walk->num_item)
    begin_items(walk);
  for (; walk->num_item < num; walk->num_item++) {
    walk->item = take_word(&walk->items);
    if (!walk->item.empty() && walk->item[0] != '&')
      walk->with_directory = walk->item;
  }
  return !walk->item.empty();
}

void begin_aliases(Trf_registry_walk *walk) {
  walk->num_alias = 0;
  walk->aliases = list_of(walk->G_dico->st_alias);
  walk->backwards.clear();
}

// Goes to the alias of a dictionary. False where there is none.
bool go_to_alias(int num, Trf_registry_walk *walk) {
  if (!known_number(num, walk->G_dico))
    return false;
  if (walk->num_alias == 0 || num < walk->num_alias)
    begin_aliases(walk);
  for (; walk->num_alias < num; walk->num_alias++) {
    if (walk->num_alias > 0)
      walk->backwards.emplace(walk->alias.rbegin(), walk->alias.rend());
    walk->alias = take_word(&walk->aliases);
  }
  return !walk->alias.empty();
}

// "prefix" and the file name of a dictionary, or null where there is no such dictionary.
char *path_with_prefix(const std::string &prefix, int num, Trf_registry_walk *walk) {
  return go_to_item(num, walk) ? new_text(prefix + file_name_of(walk->item)) : nullptr;
}

// The place of an alias in the list: the first whose end falls on a blank or on the list's end.
//
// QUIRK an alias is known by its end: the start of the place found is not tested, so "r1" finds the
// dictionary "fr1". It looks like half a comparison; it is meant: entries may name a dictionary by
// the end of its alias, and no alias should be the end of another.
// Test: Registry.TheEndOfAnAliasNamesItsDictionary
size_t place_of_alias(std::string_view aliases, std::string_view alias) {
  size_t place = aliases.find(alias);
  while (place != std::string_view::npos) {
    size_t end = place + alias.size();
    if (end == aliases.size() || aliases[end] == ' ')
      return place;
    place = aliases.find(alias, place + 1);
  }
  return place;
}

void trim_blanks(char *text) {
  size_t first = strspn(text, " ");
  size_t length = strlen(text);
  while (length > first && text[length - 1] == ' ')
    length--;
  memmove(text, text + first, length - first);
  text[length - first] = '\0';
}

// The index of the first character of the word that holds character i.
int word_start(const char *list, int i) {
  while (i > 0 && list[i - 1] != ' ')
    i--;
  return i;
}

} // namespace

void START_REGISTRY(Trf_string *G_dico) {
  FREE_REGISTRY(G_dico);
  G_dico->lenmx_str_lesson = 10;
  G_dico->lenmx_string = 20;
  G_dico->st_lesson = static_cast<char *>(g_malloc0((gsize)G_dico->lenmx_string));
  G_dico->st_idx1 = g_strdup("");
  G_dico->spath_idx1 = static_cast<char *>(g_malloc0(PATH_BYTES));
  g_strlcpy(G_dico->spath_idx1, "./IDX1", PATH_BYTES);
}

void FREE_REGISTRY(Trf_string *G_dico) {
  g_free(G_dico->st_lesson);
  g_free(G_dico->st_idx1);
  g_free(G_dico->st_alias);
  g_free(G_dico->spath_idx1);
  *G_dico = Trf_string();
}

void LIST_IDX1_PATHS(Trf_string *G_dico) {
  std::string paths;
  std::string_view list = list_of(G_dico->st_lesson);
  for (int num = 1; num <= G_dico->nb_lesson; num++) {
    if (num > 1)
      paths += ' ';
    paths += std::string(G_dico->spath_idx1) + "/idx1_" + file_name_of(take_word(&list));
  }
  g_free(G_dico->st_idx1);
  G_dico->st_idx1 = new_text(paths);
}

int NUM_FROM_ALIAS(char *s_alias, Trf_string *G_dico) {
  trim_blanks(s_alias);
  std::string_view aliases = list_of(G_dico->st_alias);
  size_t place = s_alias[0] == '\0' ? std::string_view::npos : place_of_alias(aliases, s_alias);
  if (place == std::string_view::npos)
    return -1;
  std::string before(aliases.substr(0, aliases.substr(0, place).rfind(' ') + 1));
  return COUNT_WORDS(before.c_str()) + 1;
}

char *S_ALIAS_FROM_NUM(int num, Trf_string *G_dico) {
  if (!known_number(num, G_dico) || G_dico->st_alias == nullptr)
    return nullptr;
  std::string alias = NTH_WORD(G_dico->st_alias, num);
  return alias.empty() ? nullptr : new_text(alias);
}

// An alias is found in the first of all that end with it. An alias that ends with another one
// begins, spelled backwards, with that other one spelled backwards; in alphabetical order all of
// these stand together, right behind the place of the other one.
bool IS_FOUND_BY_ALIAS(int num, Trf_registry_walk *walk) {
  if (!go_to_alias(num, walk))
    return false;
  std::string end(walk->alias.rbegin(), walk->alias.rend());
  auto first = walk->backwards.lower_bound(end);
  return first == walk->backwards.end() || first->compare(0, end.size(), end) != 0;
}

char *S_LESSON_FROM_NUM(int num, Trf_registry_walk *walk) {
  if (!go_to_item(num, walk))
    return nullptr;
  if (walk->item[0] != '&')
    return new_text(std::string(walk->item));
  if (walk->with_directory.empty())
    STOP_PROGRAM(SAVED_LOG(), 3, "S_LESSON_FROM_NUM error i=0 STOP ");
  std::string directory(walk->with_directory.substr(0, walk->with_directory.rfind('/') + 1));
  return new_text((directory.empty() ? "./" : directory) + file_name_of(walk->item));
}

char *S_LESSON_FROM_NUM(int num, Trf_string *G_dico) {
  Trf_registry_walk walk(G_dico);
  return S_LESSON_FROM_NUM(num, &walk);
}

// QUIRK the copies lie beside "IDX1" by counting four characters: the last four characters of the
// index directory are cut off, whatever they are, and "CPY/" is put in their place. It looks like a
// test forgotten; it is meant: the index directory is expected to be called IDX1, and the copies of
// every learner are where this rule has put them.
// Test: Registry.TheCopyDirectoryIsTheIndexDirectoryLessFourCharacters
char *S_CPY_LESSON_FROM_NUM(int num, Trf_registry_walk *walk) {
  std::string path = walk->G_dico->spath_idx1;
  path.resize(path.size() - std::min<size_t>(path.size(), IDX1_SUFFIX));
  return path_with_prefix(path + "CPY/", num, walk);
}

char *S_CPY_LESSON_FROM_NUM(int num, Trf_string *G_dico) {
  Trf_registry_walk walk(G_dico);
  return S_CPY_LESSON_FROM_NUM(num, &walk);
}

char *S_IDX1_FROM_NUM(int num, Trf_registry_walk *walk) {
  return path_with_prefix(std::string(walk->G_dico->spath_idx1) + "/idx1_", num, walk);
}

char *S_IDX1_FROM_NUM(int num, Trf_string *G_dico) {
  Trf_registry_walk walk(G_dico);
  return S_IDX1_FROM_NUM(num, &walk);
}

// QUIRK an item of 100 characters must end the list: one of exactly 100 characters is taken at the
// end of the list and ends the program before another item. It looks like an off-by-one; it is
// meant: the last item is the only one whose end is known without reading past the limit.
// Test: Registry.AnItemOfAHundredCharactersMustEndTheList
char *PATH_FROM_G_lesson(int i, Trf_string *G_dico) {
  const char *list = G_dico->st_lesson;
  if (list == nullptr || i < 0 || (size_t)i >= strlen(list) || list[i] == ' ')
    return nullptr;
  int start = word_start(list, i);
  while (list[start] == '&') {
    int end = start - 1;
    while (end >= 0 && list[end] == ' ')
      end--;
    if (end < 0)
      STOP_PROGRAM(SAVED_LOG(), 3, "PATH_FROM_G_dico error i=0 STOP ");
    start = word_start(list, end);
  }
  std::string item(list + start, strcspn(list + start, " "));
  if (item.size() > PATH_ITEM_MAX ||
      (item.size() == PATH_ITEM_MAX && list[start + PATH_ITEM_MAX] != '\0'))
    STOP_PROGRAM(SAVED_LOG(), 3, "PATH_FROM_G_dico error j=100 STOP ");
  return PATH_FROM_STRING_FILE(item.data());
}

// QUIRK dictionaries of one name share one index: working copy and idx1 file are named after the
// file alone, not its directory. It looks like a collision overlooked; it is meant: the database
// has one flat directory, and a dictionary that moves keeps its history. The learner is told.
// Test: Registry.SharedIndexesAreToldOnceEach
void TELL_SHARED_INDEXES(Trf_string *G_dico) {
  std::map<std::string, int> times;
  std::string_view list = list_of(G_dico->st_lesson);
  for (int num = 1; num <= G_dico->nb_lesson; num++) {
    std::string name = file_name_of(take_word(&list));
    if (++times[name] == 2)
      SAY("two dictionaries named %s share one index \n", name.c_str());
  }
}
