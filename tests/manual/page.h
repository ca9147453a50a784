// A page of the documentation as the tests read it: chapters, fenced blocks, tables.
//
//   part                              what it is
//   --------------------------------  ------------------------------------------------------------
//   ## TITLE                          a chapter
//   ```KIND ARGUMENT ... ```          a block of the chapter
//   <!-- KIND ARGUMENT -->            on a line of its own: a block without lines
//   <!-- table NAME -->               begins a named table; its rows are the lines "| ... |"
#ifndef MERTU_TESTS_MANUAL_PAGE_H
#define MERTU_TESTS_MANUAL_PAGE_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

struct Manual_block {
  std::string kind;
  std::string argument;
  std::vector<std::string> lines;
  int line_number; // of its first line, in the page
};

struct Manual_chapter {
  std::string title;
  std::vector<Manual_block> blocks;
};

// How a failed test names a chapter.
void PrintTo(const Manual_chapter &chapter, std::ostream *out);

// The code spans in the first cell of each row, by the name of the table.
using Manual_tables = std::map<std::string, std::vector<std::string>>;

const char MANUAL[] = "docs/manual.md";

// page: its path below the source directory. What stands before the first chapter is chapter 0.
std::vector<Manual_chapter> CHAPTERS_OF(const std::string &page);
Manual_tables MANUAL_TABLES();
std::vector<std::string> LINES_OF_FILE(const std::string &name);
std::string BYTES_OF_FILE(const std::string &name);

// The text without blanks at its ends, each run of blanks inside made one.
std::string FOLDED(const std::string &text);

#endif
