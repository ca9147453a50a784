// The one cursor over an idx1 file: past its header, from name line to name line, and the two
// history lines of an entry. The format is told in db/idx1_format.h.
//
// Where reading fails behind the header, every step ends the program with status 1: "cannot read
// file %s: %s \n" (the path, and the reason) in the log and on standard output.
//
//   static const Trf_walk_texts texts = {"INIT_LESSON and CHECK_4LINT",
//                                        "INIT_LESSON and CHECK_4LINT", ""};
//   Trf_idx1_walk walk(fp, s_idx1, fp_log, &texts);
//   SKIP_HEADER(&walk);
//   ALLOW_LINES(9999, &walk);                       // else the header's lines count too
//   for (Trf_walk_line kind = NEXT_NAME(&walk); kind != WALK_END; kind = NEXT_NAME(&walk)) {
//     if (kind == WALK_DOUBLE)
//       continue;                                   // walk.line.text is a "##" line
//     long history = walk.line.next;                // offset of the Q->R line
//     READ_HISTORY(1, icont, &walk, values);        // values[1] to values[4] of the Q->R line
//     READ_HISTORY(2, icont, &walk, values);        // walk.line.text is still the name line
//   }
#ifndef MERTU_DB_IDX1_WALK_H
#define MERTU_DB_IDX1_WALK_H

#include <stdio.h>

#include "db/history_line.h"
#include "db/idx1_format.h"
#include "util/line_reader.h"

// What a walk says of a damaged file; each caller has its own.
struct Trf_walk_texts {
  const char *damaged_qr; // before "some error in file : %s \n" of a faulty Q->R line
  const char *damaged_rq; // the same of a faulty R->Q line
  const char *missing;    // before "Error no detection of values icont=%d stop \n"; "" for nothing
};

// The walk. line.start, line.text: the line met last; line.next: where the next line begins, after
// a name line the offset of its Q->R line; line.nb_read, line.limit: lines counted and allowed (the
// lines read by READ_HISTORY are not counted).
struct Trf_idx1_walk {
  Trf_line_cursor line;        // over the lines; its stream is borrowed
  Trf_line_cursor history;     // over the history lines, so that the name line stays
  const char *path;            // the idx1 file's path, for the messages; borrowed
  const char *file;            // the same; named where it cannot be read, and may be set apart
  FILE *fp_log;                // the log; borrowed, may be null
  const Trf_walk_texts *texts; // borrowed; null where READ_HISTORY is not called
  long date0;                  // today's day number

  // fp: the idx1 file open for reading; the walk begins at its start and may take 10000 lines.
  Trf_idx1_walk(FILE *fp, const char *s_idx1, FILE *log, const Trf_walk_texts *walk_texts);
};

enum Trf_walk_line { WALK_END, WALK_ENTRY, WALK_DOUBLE };

// Reads up to and including the line that ends the header. A file that ends before it, or that has
// used up the allowed lines, writes "Error no detection of ####### stop \n" and "n file : %s \n" to
// the log and standard output and ends the program with status 1.
void SKIP_HEADER(Trf_idx1_walk *walk);

// Allows nb further lines, whatever was read before.
void ALLOW_LINES(long nb, Trf_idx1_walk *walk);

// After NEXT_NAME has answered WALK_END: says "index %s is longer than %ld lines \n" (path, and
// 10000) where the walk stopped at the allowed lines and the file goes on behind them.
void TELL_WHERE_CUT(const char *path, Trf_idx1_walk *walk);

// Reads the next line, whatever it is, into walk->line. Returns false at the end of the file, at a
// line that contains "END_OF_FILE", or when the allowed lines have been read.
bool NEXT_IDX1_LINE(Trf_idx1_walk *walk);

// Reads on to the next line that begins with '#': WALK_DOUBLE when it begins with "##", else
// WALK_ENTRY, a name line; WALK_END where NEXT_IDX1_LINE returns false.
Trf_walk_line NEXT_NAME(Trf_idx1_walk *walk);

// Reads the line at walk->line.next as it is and moves behind it. Returns it (it stands in
// walk->history until the next call; it may be changed; not to be freed), or null at the end of the
// file.
char *NEXT_HISTORY_TEXT(Trf_idx1_walk *walk);

// Takes the values (elements 1 to 4) of the history line at cursor->next and passes over it, where
// it stands, with its line end, as it is written and the stream holds it ready. False, with nothing
// taken, for any other, which is then read like any line. date0: today.
bool TAKE_READY_HISTORY(long date0, Trf_line_cursor *cursor, long *values);

// Passes over the history line at walk->line.next. Returns false where there is none: a line that
// begins with '#' or contains "END_OF_FILE" is left to be met, and so is the end of the file.
bool PASS_HISTORY(Trf_idx1_walk *walk);

// Reads and checks the history line at walk->line.next. sens: 1 Q->R, 2 R->Q, for the message of a
// faulty line, which is logged. values: elements 1 to 4 are filled. Returns false, with values as
// they were, at the end of the file.
bool NEXT_HISTORY(int sens, Trf_idx1_walk *walk, long *values);

// The same, but at the end of the file writes "Error no detection of values icont=%d stop \n" and
// "in file : %s \n" to the log and standard output and ends the program, with status 2 for the Q->R
// line and 3 for the R->Q line. icont: the number of the entry, for the message.
void READ_HISTORY(int sens, int icont, Trf_idx1_walk *walk, long *values);

#endif
