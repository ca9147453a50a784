// The idx1 file: one record per entry of a dictionary, with its history in both directions.
//
// Text, "\r\n" line ends, decimal numbers:
//
//   | line  | content                                                                       |
//   | 1     | "%s %s \r\n": the idx1 file's own path, the dictionary's alias                |
//   | 2     | 53 '#', "\r\n"                                                                |
//   | 3 ... | one record per entry, in the order of the dictionary; "##" lines between them |
//   | last  | "# END_OF_FILE * %ld  \r\n": the offset in the working copy where the scan    |
//   |       | stopped                                                                       |
//
// A record is three lines: the name line, the Q->R history line, the R->Q history line (for these
// see db/history_line.h). The name line is
//
//   #question *alias offset * answer and the rest \r\n
//
// with the offset (bytes, from 0) of the entry line in the dictionary's working copy. Readers find
// the header's end by "#######" in a line that begins with '#'.
#ifndef MERTU_DB_IDX1_FORMAT_H
#define MERTU_DB_IDX1_FORMAT_H

#include <string>

const char HEADER_MARK[] = "#######";  // in the line that ends the header
const char END_MARK[] = "END_OF_FILE"; // in the line that ends the file
const int NB_HEADER_MARKS = 53;        // '#' in the header's second line
const long MAX_IDX1_LINES = 10000;     // lines of an idx1 file that are read at most
const int MAX_ALIAS = 100;             // characters of an alias in a name line

// True for the line that ends the header: it begins with '#' and contains "#######".
bool IS_HEADER_MARK(const char *line);

// True for a line that ends the file: it contains "END_OF_FILE".
bool IS_END_MARK(const char *line);

// True for the name line of a record: it begins with '#' but not with "##".
bool IS_NAME_LINE(const char *line);

// The name line (without line end) of an entry of a dictionary.
// text: the entry line from its first non-blank character behind the '#', CP1252, at most 101
// bytes; its accent notation is decoded here. The first '*' becomes '*', alias, blank, offset,
// blank, '*'; a text without '*' gets that at its end. Runs of blanks are folded to one.
std::string NAME_LINE_OF_ENTRY(std::string text, const char *s_alias, long offset);

// The name line (without line end) of an entry whose '#' stands alone, named by a later line: at
// most 25 characters of the decoded text, up to the first ',' or ';', and a blank; then '*', alias,
// blank, offset, blank, '*'. Runs of blanks are folded to one, a leading one is kept.
std::string NAME_LINE_OF_TEXT(std::string text, const char *s_alias, long offset);

// The question of a name line: from behind the '#' up to its first '*' (its end without one).
std::string QUESTION_OF_NAME_LINE(const std::string &name_line);

enum Trf_name_split { NAME_SPLIT, NAME_NO_STAR, NAME_NO_OFFSET };

// Takes a name line apart.
// line: the name line. s_alias: room for 101 bytes; becomes what stands behind the first '*' up to
// the next blank, at most 100 characters (empty without '*'). *offset becomes the number behind the
// alias (0 without one). *rest (where rest is not null) points behind the alias, inside `line`.
Trf_name_split SPLIT_NAME_LINE(const char *line, char *s_alias, long *offset, const char **rest);

#endif
