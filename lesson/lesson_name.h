// The name of a numbered lesson: the file name of its dictionary.
#ifndef MERTU_LESSON_LESSON_NAME_H
#define MERTU_LESSON_LESSON_NAME_H

#include <stdio.h>

struct Trf_string;

// Bytes of the buffer that LESSON_FROM_ORDER fills: a name of at most 100 characters and its end.
const int LESSON_NAME_SIZE = 101;

// Writes the file name (without directories) of dictionary i_order of the registry into s_lesson.
//   fp_log     the log, may be null
//   i_order    number of the dictionary, from 1
//   s_lesson   at least LESSON_NAME_SIZE bytes; a longer name is cut. Empty where the dictionary
//              cannot be opened: "LESSON_FROM_ORDER cannot open file %s \n" then stands in the log,
//              and INIT_LESSON refuses the lesson when it is started.
// Reads the dictionary's alias line. Ends of the program, all with status 2:
//   "LESSON_FROM_ORDER error 1 i_order=..."          the number is not 1 to nb_lesson
//   "sub LESSON_FROM_ORDER error path == NULL stop"  no directory for a name that begins with '&'
//   "sub LESSON_FROM_ORDER error lenpf=..."          such a path has more than 100 characters
void LESSON_FROM_ORDER(FILE *fp_log, Trf_string *G_dico, int i_order, char *s_lesson);

#endif
