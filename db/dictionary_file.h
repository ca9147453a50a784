// The dictionary file: the learner's own text, as the index reads it through the working copy.
//
// Lines are those of aln_getline; a line longer than 101 bytes is cut to 101 before it is looked
// at; at most 10000 lines are read. What a line is:
//
//   | the line                                  | kind         | meaning                          |
//   | contains "END_OF_FILE"                    | DICO_END     | the dictionary ends here         |
//   | contains "######"                         | DICO_SECTION | skipped up to and including the  |
//   |                                           |              | next line with "######"          |
//   | '#' (blanks may precede), blanks, line end| DICO_NONAME  | entry named on a later "Q>" line |
//   | '#', blanks, '#'                          | DICO_DOUBLE  | stands for an entry elsewhere    |
//   | '#', blanks, any other character          | DICO_ENTRY   | an entry: question * answer      |
//   | anything else                             | DICO_TEXT    | free text, not indexed           |
//
// The first line that contains "!#" names the dictionary's alias behind it.
#ifndef MERTU_DB_DICTIONARY_FILE_H
#define MERTU_DB_DICTIONARY_FILE_H

#include <stdio.h>

const int MAX_ENTRY_LINE = 101;   // bytes of a line that the index looks at
const int MAX_SHABANG_LINE = 99;  // bytes of a line that the search for the alias looks at
const int MAX_DICO_LINES = 10000; // lines of a dictionary that the index reads

enum Trf_dico_line { DICO_TEXT, DICO_ENTRY, DICO_NONAME, DICO_DOUBLE, DICO_SECTION, DICO_END };

// The alias of a dictionary: in the first line whose first 99 bytes hold "!#", the run of letters,
// digits, '-' and '_' behind it and any blanks. fp: the dictionary or its working copy; goes back
// to its start. Where reading failed (ferror tells) what is returned is not to be trusted. Returns
// a new string, which the caller frees with g_free, or null where there is no such line or no alias
// character stands there. Ends the program with status 91, "EXTRACT_SHABANG error mem STOP ", when
// the alias would not fit.
char *EXTRACT_SHABANG(FILE *fp);

// What a line of a dictionary is. *text (where text is not null) becomes what the kind is about,
// inside `line`: DICO_ENTRY, the entry's text from its first non-blank character behind the '#';
// DICO_DOUBLE, what follows the second '#'; else the line.
Trf_dico_line KIND_OF_DICO_LINE(const char *line, const char **text);

// Cuts a line to the 101 bytes that the index looks at, in place.
void CUT_DICO_LINE(char *line);

#endif
