// An entry of a dictionary that stands for an entry of another one.
//
//   "##" question " *" alias ...   in the idx1 file of the dictionary that borrows
//
// The entry is drilled with the history of the dictionary that owns it, and its results go back
// there.
#ifndef MERTU_LESSON_INDIRECT_ENTRY_H
#define MERTU_LESSON_INDIRECT_ENTRY_H

#include <stdio.h>

struct Trf_book;

// Appends the entry that a "##" line stands for to the lesson being loaded: its record to fp_gene,
// its offset and statistics to the book's position table.
//   fp_gene      the generated lesson file, open for writing at its end
//   ssd          the line; it is cut right after its first '*'
//   jcont        entries so far; one more when the entry was found
//   nbmx_posit   capacity of the table; 20 more when the entry needs it
// Nothing is added and nothing said when the line has no '*', no dictionary has the alias, or its
// idx1 file cannot be opened. A dictionary without the entry is told by two lines in the log, "in
// file : ..." and "INDIRECT_IDX1 no detection of ssd=...".
// Ends of the program: "INDIRECT_IDX1 Error no detection of values icont=...", with status 2 when
// the Q->R line is missing, 3 when the R->Q line is.
void INDIRECT_IDX1(FILE *fp_gene, Trf_book *book, char *ssd, int *jcont, int *nbmx_posit);

#endif
