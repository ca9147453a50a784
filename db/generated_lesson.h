// The generated lesson file: the entries of the lesson being drilled, each with a reference to its
// history. "./idx1_gene" for a numbered lesson, "./idx2_gene" for a composed one.
//
// Text, "\n" line ends; for every entry, in lesson order, two lines:
//
//   | line | content                                                                            |
//   | 1    | "%s\n": the entry's name line as it stands in the idx1 file (db/idx1_format.h)     |
//   | 2    | " %s * %ld \n": path of the idx1 file that holds the entry's history; offset there |
//   |      | of the Q->R history line (the R->Q line follows it)                                |
//
// The new-words and balance lessons end with the trailer "# END_OF_FILE * %ld \n", which holds its
// own offset.
#ifndef MERTU_DB_GENERATED_LESSON_H
#define MERTU_DB_GENERATED_LESSON_H

#include <stdio.h>

#include <string>

#include "db/idx1_format.h"
#include "util/line_reader.h"

// The name of the current file: "./idx1_gene" where ilesson is not 0, else "./idx2_gene". Not to be
// freed.
const char *CURRENT_GENE_NAME(int ilesson);

// Appends a record's first line to fp_gene, which stands at its end. Returns the offset at which it
// was written: the entry's `posit`.
long APPEND_GENE_NAME(FILE *fp_gene, const char *name_line);

// Appends a record's second line. s_idx1: the idx1 file's path; history: offset of the Q->R line.
void APPEND_GENE_REFERENCE(FILE *fp_gene, const char *s_idx1, long history);

// Both lines at once. Returns the entry's `posit`.
long APPEND_GENE_RECORD(FILE *fp_gene, const char *name_line, const char *s_idx1, long history);

// Appends the trailer of a composed lesson.
void APPEND_GENE_TRAILER(FILE *fp_gene);

// One record read back.
struct Trf_gene_record {
  std::string name;      // the name line
  std::string alias;     // what stands behind its first '*' up to the next blank
  std::string reference; // the second line
  std::string path;      // the idx1 file's path: the second line's first word, as written
  long history = 0;      // offset there of the Q->R history line
};

enum Trf_gene_result {
  GENE_RECORD,       // a whole record
  GENE_NO_NAME,      // the first line is none: the end of the file or of the lesson, no '#', no '*'
  GENE_NO_REFERENCE, // the second line is missing
  GENE_NO_OFFSET,    // the second line has no '*' or no number two characters behind it
  GENE_UNREAD        // reading failed, errno tells why; the stream's fault is cleared
};

// Reads the record at cursor->next (set it to an entry's `posit`, or leave it behind the record
// before). What was read stands in the record also where a later step fails. After GENE_NO_NAME
// only that one line has been read.
Trf_gene_result READ_GENE_RECORD(Trf_line_cursor *cursor, Trf_gene_record *record);

#endif
