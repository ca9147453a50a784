// "!dico": every entry of every dictionary in alphabetical order, in the file ./mertu_dico.
//
// Both files are text with "\n" line ends. A "name line" is that of the index (db/idx1_format.h)
// as it is read, without its line end.
//
//   | file          | lines                                                                    |
//   | ./mertu_dico1 | a name line per entry, in the order of the dictionaries; no trailer      |
//   | ./mertu_dico  | "#" and the name line, so that each begins with "##", in alphabetical    |
//   |               | order; then "END_OF_FILE"                                                |
//
// Lines are ordered by their keys: the text behind the "#" up to the first "*", its capitals A to Z
// made small, then without accents (util/accents.h), by bytes. Keys of blanks alone, or of nothing,
// come first and are equal; equal keys stay in the order they had.
#ifndef MERTU_COMMAND_DICTIONARY_LISTING_H
#define MERTU_COMMAND_DICTIONARY_LISTING_H

#include <limits.h>
#include <stdint.h>
#include <stdio.h>

#include <string>

#include "util/book.h"
#include "util/line_reader.h"

// Writes ./mertu_dico1 and ./mertu_dico; nothing, no file either, when nbt_lesson is below 1.
// Each dictionary is read once however often it is listed, from its index, whose first 10000 lines
// behind the header count; forgotten lessons are mended first. "##" lines are left out. An index
// that cannot be opened is skipped ("cannot open file %s, skipped \n" in the log).
// The table's array posit is released and holds offsets in ./mertu_dico1 afterwards; it then has
// nbmx_posit + 5 elements or more, so that the table can still be used. The caller announces a
// lesson: the running one has lost its places. Logs "file : ./mertu_dico1  done\n" and
// "file : ./mertu_dico  done\n". A file that cannot be written: "cannot write file %s: %s \n" in
// the log and on standard output, and the listing ends there.
// Ends of the program: 1 "Error no detection of ####### stop \n" and "n file : %s \n"; 14
// "MERTU_DICO error 14 \n" where a line of ./mertu_dico1 cannot be read back (these in the log,
// too); those of MERGESORT_ABC_FILE and MEND_FORGOTTEN.
void MERTU_DICO(Trf_book *book);

// Sorts the offsets posit[i0] to posit[i1] (both included) by the keys of the lines that begin
// there in fp. Stable. Nothing is done, and no line read, when i1 is not above i0. Each line is
// read once, when it is first compared, and its key kept. fp: borrowed, open for reading and able
// to seek. Ends of the program, not in the log: 13 "MERGE_ABC_FILE error 13 \n" where the line of
// the left run cannot be read, contains "END_OF_FILE" or does not begin with '#'; 14
// "MERGE_ABC_FILE error 14 \n" for that of the right run. The left one is looked at first.
void MERGESORT_ABC_FILE(int i0, int i1, long *posit, FILE *fp);

// The file whose lines are sorted, and what has been read of it: for each line its key and, behind
// it, the line of the listing, both ended by a NUL. The first byte is nobody's.
struct Trf_abc_file {
  Trf_line_cursor line; // over its lines; the stream is borrowed
  std::string text = std::string(1, '\0');

  explicit Trf_abc_file(FILE *fp) : line(fp) {
    line.limit = LONG_MAX;
  }
};

// A line being sorted. What decides nearly every comparison stands in it.
struct Trf_abc_line {
  uint64_t head[2] = {0, 0}; // the first sixteen bytes of its key, the first one highest
  size_t key = 0;            // where its key begins in Trf_abc_file::text; 0 until it has been read
  long offset = 0;           // where it begins in the file
};

// Sorts the lines lines[i0] to lines[i1]. work: the scratch array, with elements i0 to i1. Ends of
// the program: as MERGESORT_ABC_FILE.
void MSORT_ABC_FILE(int i0, int i1, Trf_abc_line *lines, Trf_abc_line *work, Trf_abc_file *file);

// Merges the sorted runs lines[i0] to lines[m] and lines[m + 1] to lines[i1]. An element of the
// right run goes first only where its key is the smaller one. work and the ends of the program: as
// MSORT_ABC_FILE.
void MERGE_ABC_FILE(int i0, int m, int i1, Trf_abc_line *lines, Trf_abc_line *work,
                    Trf_abc_file *file);

#endif
