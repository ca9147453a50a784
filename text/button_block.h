// The button block of a dictionary: which ranges of which recordings a sound button plays.
//
// The block stands in the text of the dictionary (see text/paragraphs.h) and is not shown:
//
//   | line                             | meaning                                                 |
//   |----------------------------------|---------------------------------------------------------|
//   | ...<)start)...                   | opens the block                                         |
//   | label name start stop            | defines the label, and the first range that it plays    |
//   | name start stop                  | a further range, played after the one before            |
//   | ...<)end)...                     | closes the block                                        |
//
//   label   (blanks may precede) a capital letter of ASCII, ">", a digit, and on to the next blank:
//           "A>1", "S>12", "B>3x"
//   name    of a sound file, without blanks; looked for by SEARCH_SND_FILE_NAME
//   start, stop   frames of that file, as play_range takes them; a line without both plays nothing
//
// The label table of the book holds what the block last read has defined, until another block is
// read:
//
//   s_label    a blank, then each label with a blank behind it: " A>1 B>2 "
//   nc_label   element 0 how many there are; element k the offset, in the working copy, of the line
//              that defines label k
#ifndef MERTU_TEXT_BUTTON_BLOCK_H
#define MERTU_TEXT_BUTTON_BLOCK_H

#include "util/book.h"

const char BLOCK_START[] = "<)start)"; // in the line that opens the block
const char BLOCK_END[] = "<)end)";     // in the line that closes it

// Gives the book a label table without labels (" ", 0) where it has none yet.
void START_LABELS(Trf_book *book);

// Whether a line begins with a label. Returns 1, with the indices (from 0) of the label's first and
// last byte in *i0 and *i1; else 0, with -1 in both. A line shorter than 3 bytes has none.
int PERHAPS_BUTTON(char *str, int *i0, int *i1);

// Reads the button block and replaces the book's label table by what it defines.
//   nc            in: the offset, in the working copy (the book's fp), of the line behind the one
//                 that opens the block; out: that of the line behind the block
//   ss, nbytes    the caller's line buffer and its capacity, as aln_getline takes them; what stood
//                 there is overwritten
// The first definition of a label counts. At most 10000 lines are read; where no line closes the
// block: "EXTRACT_LABEL_BUTTON no <)end) return \n" in the log and on standard output, and the
// table holds what was read.
void EXTRACT_LABEL_BUTTONS(long *nc, char **ss, long *nbytes, Trf_book *book);

// The number of a label (CP1252) in the book's table: from 1, the first definition first; 0, with
// a trace line, where it is not there.
int WHAT_BUTTON(char *label, Trf_book *book);

// Where the walk over a label's ranges hands them; `data` is the caller's and passed through.
struct Trf_range_out {
  void (*range)(char *name, long start, long stop, void *data); // a range of a sound file
  void *data;
};

// Reads what the block (in the book's open working copy) says of a label (CP1252) and hands its
// ranges out in their order: that of the line that defines it, and those of the lines behind it, up
// to the line that closes the block or one with another label; at most 10000 lines behind the
// first.
// Nothing is handed out for a label that is not in the table (told by WHAT_BUTTON). In the log
// and on standard output:
// "cback_button error fp == NULL \n" where no working copy is open; "cback_button not found button
// %s \n" where the line at the label's offset does not hold it; "cback_button no <)end) return \n"
// where the file ends first.
void WALK_LABEL(char *label, Trf_book *book, const Trf_range_out *out);

#endif
