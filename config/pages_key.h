// The key Pages: a plainer way of listing the dictionaries.
//
//   Pages :> lessons/le1->3.txt other/voc.txt   # a comment to the end of the line
//   <:
//
// gives st_lesson = "lessons/le1.txt le2.txt le3.txt other/voc.txt " where the four files exist;
// a file that does not open is left out. The list may begin on the key's own line.
#ifndef MERTU_CONFIG_PAGES_KEY_H
#define MERTU_CONFIG_PAGES_KEY_H

#include <stdio.h>

#include "config/registry.h"

// Reads the list into st_lesson, nb_lesson and lenmx_str_lesson, all started afresh.
// fp: the settings file, behind the key line; s: the key line; n_pages: receives the number of
// names stored.
// Ends of the program: 1 "error in line s=%s ", 1 "error 1 while reading in EXTRACT_PAGES stop "
// (end of the file before the first line of the list), 2 "error 2 while reading in EXTRACT_PAGES
// stop " (before a later one), and those of EXTRACT_2NB and CASE_ARROW.
void EXTRACT_PAGES(FILE *fp, char *s, int *n_pages, Trf_string *G_dico);

// Stores the names of one line, begun at index i of s, each followed by a blank.
// n_pages: names stored, counted on; code_fin: set to 1 where the token "<:" is met.
// Ends of the program: those of EXTRACT_2NB and CASE_ARROW.
void EXTRACT2_INPUT(int *n_pages, int i, char *s, Trf_string *G_dico, int *code_fin);

// Takes the numbers just before and just behind the first "->" of a token, 0 for one without
// digits (both 0 where there is no arrow).
// Ends of the program: 9 "erreur in EXTRACT_2NB stop " where the arrow ends the token.
void EXTRACT_2NB(const char *token, long *n1, long *n2);

// Returns the token with the text of its first range replaced by value; the token itself where it
// has no arrow. A new string; the caller frees it with g_free.
// Ends of the program: 9 "erreur 1 in CASE_ARROW stop " where the arrow ends the token, 10 "erreur
// 2 in CASE_ARROW stop " where value is below the range, 11 "erreur 3 in CASE_ARROW stop " where it
// is above.
char *CASE_ARROW(const char *token, long value);

#endif
