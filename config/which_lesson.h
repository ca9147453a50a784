// The key Which_lesson: which dictionaries there are, and in which order.
//
//   Which_lesson :>
//   lessons/le1->3.txt  other/voc.txt
//   <:
//
// gives st_lesson = "lessons/le1.txt &/le2.txt &/le3.txt other/voc.txt" where the four files
// exist; a file that does not open is left out, and the numbers behind it shift. The list begins
// on the line behind the key's, its lines hold at most 99 characters, and the separate token "<:"
// ends it.
#ifndef MERTU_CONFIG_WHICH_LESSON_H
#define MERTU_CONFIG_WHICH_LESSON_H

#include <stdio.h>

#include "config/registry.h"

// Reads the list into st_lesson, nb_lesson and lenmx_string, all started afresh.
// fp: the settings file, behind the key line; s: the key line.
// Ends of the program: 1 "EXTRACT_WHICH_LESSONS error in line s=%s ", 1 "error 1 while reading in
// EXTRACT_WHICH_LESSONS stop " (end of the file before the first line of the list), 2 "error 2
// while reading in EXTRACT_PAGES stop " (before a later one), 2 "EXTRACT_WHICH_LESSONS error 2
// STOP " (a list on the key's own line), and those of RECUR_EXTR_ARROW and CHECK_LESSON_LIST.
void EXTRACT_WHICH_LESSONS(FILE *fp, char *s, Trf_string *G_dico);

// Adds a file name to st_lesson where the file opens, or every name that its ranges stand for: the
// leftmost range varies slowest, and a range with the larger number first counts down.
// s_path: the directory, with its last "/"; s_file: the name;
// nb_found: names that this token has added so far, counted on: the first is added with its
//   directory, the others as "&/" and the name.
// Ends of the program: 13 "RECUR_EXTR_ARROW error 13 for s_file =%s " where an arrow has no number
// on one of its sides, 11 "EXTRACT_WHICH_LESSONS error dim STOP " where the token stands for more
// than MAX_NAMES_TRIED names.
void RECUR_EXTR_ARROW(const char *s_path, const char *s_file, int *nb_found, Trf_string *G_dico);

// Ends the program where st_lesson does not fit in lenmx_string bytes: 11 "EXTRACT_WHICH_LESSONS
// error dim STOP ".
void CHECK_LESSON_LIST(const Trf_string *G_dico);

// Appends one blank to st_lesson and cuts its block to its length plus one where that is smaller
// than lenmx_string, which becomes that length plus one.
void CLOSE_LESSON_LIST(Trf_string *G_dico);

// Counts the lessons of a list: a word that still holds "->" counts as the size of its range, any
// other word as one. st_lesson: null counts 0. At most INT_MAX.
int KLASK_NB_PAJ(char *st_lesson);

#endif
