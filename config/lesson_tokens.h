// What the two keys that list dictionaries have in common: tokens, and ranges written "N->M".
#ifndef MERTU_CONFIG_LESSON_TOKENS_H
#define MERTU_CONFIG_LESSON_TOKENS_H

#include <stddef.h>

#include <string>
#include <vector>

// The range of a name such as "le1->3.txt": the digits just before and just behind the first "->".
struct Trf_range {
  size_t begin;    // index of the first digit of n1 (of the arrow where it has none)
  size_t end;      // index behind the last digit of n2 (behind the arrow where it has none)
  long n1;         // the number before the arrow, 0 where there is none; at most INT_MAX
  long n2;         // the number behind the arrow, likewise
  bool both_given; // true where both numbers have digits
  bool at_end;     // true where nothing follows the arrow
};

// Names that one token of a list may stand for, those that do not open among them. No learner has
// so many dictionaries; without a limit a mistyped range would keep the program busy for hours.
const long MAX_NAMES_TRIED = 20000;

// Finds the first "->" of a name. Returns false, range untouched, where there is none.
bool FIND_RANGE(const char *name, Trf_range *range);

// Returns the name with the text of its range replaced by value in decimal.
std::string RANGE_REPLACED(const std::string &name, const Trf_range &range, long value);

// The values of a range, in ascending order, whose names may open: those that a file beside them
// begins with, and always n1. A range may be as wide as an int is, and a name may hold several;
// every value that is left out stands for names that do not open.
// name: the path as it is opened; range: its first range, the offsets those in name.
// Ends of the program: 11 "EXTRACT_WHICH_LESSONS error dim STOP " where more than MAX_NAMES_TRIED
// values would have to be tried: ranges in a row ("1->9999999->2") give each value names of its
// own, and a directory may be closed to a look.
std::vector<long> VALUES_TO_TRY(const std::string &name, const Trf_range &range);

// Cuts the next token of a line of dictionaries: blanks are skipped, and a token is the longest
// run of word characters (SPE_ALPHA_NUM) and of '-', '>', '<', ':', '_', '.', '\' and '/'.
// place: where to look; moved behind the token. Returns "" at the end of the line and where any
// other byte stands: the rest of the line is not looked at.
std::string NEXT_LESSON_TOKEN(const char **place);

// Returns the directory of a token as it is written, with its last "/" and with every backslash
// turned into "/"; "./" where it has none.
std::string DIRECTORY_AS_WRITTEN(const std::string &token);

// Returns the last component of a token ("" where it ends in a separator).
std::string NAME_OF_TOKEN(const std::string &token);

// True where a file of this path opens for reading.
bool FILE_OPENS(const std::string &path);

#endif
