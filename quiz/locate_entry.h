// Where an entry of the lesson stands: its dictionary's working copy and the offset of its header.
#ifndef MERTU_QUIZ_LOCATE_ENTRY_H
#define MERTU_QUIZ_LOCATE_ENTRY_H

#include <stdio.h>

#include "util/book.h"

// Bytes of the buffer for an alias: at most 100 characters and the end.
const int ALIAS_SIZE = 101;

// Finds entry jcont (from 1) of the current lesson through the generated lesson file.
//   s_alias   out: the alias of its dictionary; at least ALIAS_SIZE bytes
//   fp        out: the dictionary's working copy, open for reading; null when not found. It belongs
//             to the book, which closes it before another one is opened
//   add       out: byte offset of the entry's header in the working copy
// The book's fp and exfp become the stream, path_of_lesson the dictionary's directory; fp_gene is
// open only meanwhile.
// Not found (fp null, a line in the log): "WHAT_QR unable to open file fpg \n", "WHAT_QR no * in
// ss=%s@@@ \n", "WHAT_QR no i_extracted in stp=%s@@@ \n"; a working copy that cannot be opened is
// traced only.
// Ends the program: status 5, "WHAT_QR not existing s_alias=%s@@@ \n" (also in the log).
void WHAT_QR(int jcont, char *s_alias, Trf_book *book, FILE **fp, long int *add);

// Writes the path of the dictionary whose alias is s_alias (blanks at its ends are cut, in place).
//   s_lesson   out: at least as many bytes as the registry's list (st_lesson) takes, and 25 more
// Ends the program: status 1, "Not found %s in string %s \n" (the alias, the alias list).
void EXTRACT_DICO_NAME(char *s_alias, Trf_string *G_dico, char *s_lesson);

// Closes the book's current stream where it is open; fp null and exfp 0 afterwards.
void DROP_STREAM(Trf_book *book);

#endif
