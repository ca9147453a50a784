// The lesson registry: the list of dictionary files, and what is known of each by its number.
//
// A dictionary is known by its number (from 1, in the order of the settings file) or by its alias
// (the word after "!#" in the dictionary).
//
//   string       items, separated by blanks
//   ------------ ---------------------------------------------------------------------------------
//   st_lesson    DIRECTORY/NAME   a dictionary with its directory
//                &/NAME           a dictionary in the directory of the nearest earlier item that
//                                 does not begin with '&'
//   st_alias     ALIAS            each preceded and followed by a blank: " fr1 en2 voc "
//
// For the dictionary lessons/verbs.txt and the directory "./IDX1" of the idx1 files:
//
//   working copy  ./CPY/verbs.txt        (the last four characters of "./IDX1" replaced by "CPY/")
//   idx1 file     ./IDX1/idx1_verbs.txt
#ifndef MERTU_CONFIG_REGISTRY_H
#define MERTU_CONFIG_REGISTRY_H

#include <set>
#include <string>
#include <string_view>

// Characters that the first spath_idx1 has room for; its block has 5 bytes more.
const int FIRST_PATH_LENGTH = 10;

// The registry. Its strings come from g_malloc and belong to it.
struct Trf_string {
  int lenmx_str_lesson; // characters that fit in st_lesson when the key Pages fills it; 10 at first
  char *st_lesson;      // the dictionaries
  int nb_lesson;        // number of items in st_lesson
  int lenmx_string;     // bytes that st_lesson has when Which_lesson fills it; 20 at first
  char *st_idx1;        // paths of the idx1 files; no lookup reads it, see S_IDX1_FROM_NUM
  char *st_alias;       // the aliases in registry order; null until MAKE_ST_ALIAS
  char *spath_idx1;     // directory of the idx1 files; "./IDX1" unless Path_idx1 names another
};

// A walk over the dictionaries. Lookups take it in the place of the registry, and answer the same.
// While the numbers go up they read each list of the registry once in all, not once for each.
//
//   Trf_registry_walk walk(G_dico);
//   for (int num = 1; num <= nbt_lesson; num++)
//     if (IS_FOUND_BY_ALIAS(num, &walk))
//       Owned_text s_idx1(S_IDX1_FROM_NUM(num, &walk));
struct Trf_registry_walk {
  const Trf_string *G_dico;        // borrowed; its lists stay as they are meanwhile
  int num_item = 0;                // number of the item met last; 0 before the first
  std::string_view items;          // the items behind it
  std::string_view item;           // it; empty behind the last one
  std::string_view with_directory; // the nearest item up to it that is written with a directory
  int num_alias = 0;               // number of the alias met last; 0 before the first
  std::string_view aliases;        // the aliases behind it
  std::string_view alias;          // it; empty behind the last one
  std::set<std::string> backwards; // the aliases before it, each spelled backwards

  explicit Trf_registry_walk(const Trf_string *registry) : G_dico(registry) {
  }
};

// Frees what the registry holds (nothing where it is zeroed) and gives it its first values: no
// dictionary, no alias, "./IDX1" in a block of 15 bytes.
void START_REGISTRY(Trf_string *G_dico);

// Frees what the registry holds; all its pointers become null and its counts 0.
void FREE_REGISTRY(Trf_string *G_dico);

// Sets st_idx1 to the idx1 path of every dictionary, separated by single blanks.
void LIST_IDX1_PATHS(Trf_string *G_dico);

// Returns the number of the dictionary with this alias, -1 where it is unknown or blank.
// s_alias: trimmed of the blanks at both ends, in place. It is searched in the list of aliases as
// a text whose end falls on a blank or on the end of the list; the first such place counts.
int NUM_FROM_ALIAS(char *s_alias, Trf_string *G_dico);

// Returns the alias of dictionary num. A new string; the caller frees it with g_free. Null where
// num is below 1 or above nb_lesson, or where no alias of that number is listed.
char *S_ALIAS_FROM_NUM(int num, Trf_string *G_dico);

// Returns whether NUM_FROM_ALIAS gives num for the alias of dictionary num, so that a dictionary
// that is listed twice is found once. False where S_ALIAS_FROM_NUM has no alias for num.
bool IS_FOUND_BY_ALIAS(int num, Trf_registry_walk *walk);

// Returns the path of dictionary num. A new string; the caller frees it with g_free. Null where
// num is below 1 or above nb_lesson.
// Ends of the program: 3 "S_LESSON_FROM_NUM error i=0 STOP " where no item before a "&/" item has
// a directory.
char *S_LESSON_FROM_NUM(int num, Trf_string *G_dico);
char *S_LESSON_FROM_NUM(int num, Trf_registry_walk *walk);

// Returns the path of the working copy of dictionary num. A new string; the caller frees it with
// g_free. Null where num is below 1 or above nb_lesson.
char *S_CPY_LESSON_FROM_NUM(int num, Trf_string *G_dico);
char *S_CPY_LESSON_FROM_NUM(int num, Trf_registry_walk *walk);

// Returns the path of the idx1 file of dictionary num. A new string; the caller frees it with
// g_free. Null where num is below 1 or above nb_lesson.
char *S_IDX1_FROM_NUM(int num, Trf_string *G_dico);
char *S_IDX1_FROM_NUM(int num, Trf_registry_walk *walk);

// Returns the directory, with its last "/", of the dictionary whose item holds the character with
// index i (from 0) of st_lesson; for a "&/" item that of the nearest earlier item with a
// directory. A new string; the caller frees it with g_free. Null where that character is a blank
// or i lies outside of st_lesson.
// Ends of the program: 3 "PATH_FROM_G_dico error i=0 STOP " where no earlier item has a directory;
// 3 "PATH_FROM_G_dico error j=100 STOP " where the item is longer than 100 characters, or has 100
// and is not the end of the list.
char *PATH_FROM_G_lesson(int i, Trf_string *G_dico);

// Tells "two dictionaries named %s share one index " on standard output, once for each file name
// that two or more dictionaries have.
void TELL_SHARED_INDEXES(Trf_string *G_dico);

#endif
