// The words of the lesson being drilled, one by one, each with its history lines in its idx1 file
// (db/generated_lesson.h tells how they are found, db/history_line.h what they hold).
//
//   Trf_lesson_walk walk("RECORD_LESSON", fp_gene, "r+", book);
//   while (NEXT_LESSON_WORD(&walk)) {            // walk.icont, walk.record: the word
//     Trf_history_line line;
//     long next = walk.record.history;
//     for (int sens : {1, 2}) {
//       READ_LESSON_HISTORY(next, &walk, &line); // line.values: what the file holds
//       next = line.next;
//     }
//   }
//
// What is changed waits in the walk until WRITE_LESSON_CHANGES writes it (db/pending_changes); a
// walk that ends the program, or meets bytes that wait, writes it before.
#ifndef MERTU_DB_LESSON_HISTORY_H
#define MERTU_DB_LESSON_HISTORY_H

#include <stdio.h>

#include <set>
#include <string>

#include "db/generated_lesson.h"
#include "db/history_line.h"
#include "db/pending_changes.h"
#include "util/book.h"
#include "util/line_reader.h"

// The walk. The idx1 file of the word is the book's fp_idx1, kept open while the words stay in it;
// it is closed, and fp_idx1 null, when the walk goes.
struct Trf_lesson_walk {
  const char *who;            // the routine, as the messages name it; borrowed
  const char *mode;           // how idx1 files are opened; borrowed
  Trf_book *book;             // t_posit, fp_log, ilesson; fp_idx1 is the walk's; borrowed
  Trf_line_cursor gene;       // over the generated lesson file; its stream is borrowed
  Trf_line_cursor line;       // over the idx1 file
  long date0;                 // today's day number
  int icont = 0;              // number of the word in the position table, from 1
  Trf_gene_record record;     // the word's record
  Trf_pending pending;        // history lines to be written over
  bool stale = false;         // idx1 files were written: the open one is opened afresh
  std::string path;           // path of the idx1 file that is open; "" for none
  std::set<std::string> shut; // paths of those that cannot be opened; each is told once

  // routine: the name in the messages. fp_gene: the generated lesson file, open for reading.
  // open_mode: "r", or "r+" where history lines are rewritten.
  Trf_lesson_walk(const char *routine, FILE *fp_gene, const char *open_mode, Trf_book *of_book);
  Trf_lesson_walk(const Trf_lesson_walk &) = delete;
  Trf_lesson_walk &operator=(const Trf_lesson_walk &) = delete;
  ~Trf_lesson_walk();
};

// Goes on to the next word of the position table that has a record at its place in the generated
// lesson file, and opens its idx1 file (fp_idx1 is null where it cannot be opened: "%s cannot open
// file %s \n", once per file, in the log and on standard output). Returns false behind the last
// word. A first line that is no name line is passed over with its word; so is a record that cannot
// be read, and that is told ("cannot read file %s: %s \n" in the log and on standard output).
// Ends the program, once changes are written (WRITE_LESSON_CHANGES), each text in the log and on
// standard output: status 2 where a record has no second line ("%s error 1 stop 2 \n", "Error no
// detection of values icont=%d stop \n", "in file : %s \n" with the generated file); status 1 where
// that line holds no offset ("RECORD_FILE error cannot extract nc1 \n").
bool NEXT_LESSON_WORD(Trf_lesson_walk *walk);

// Begins again before the first word.
void RESTART_LESSON_WALK(Trf_lesson_walk *walk);

// A history line as it stands in the idx1 file.
struct Trf_history_line {
  long start = 0;         // offset of the line
  long next = 0;          // offset of the line behind it
  bool found = false;     // it is there
  bool unread = false;    // the disk refused it: nothing of it is known, and that has been told
  bool is_record = false; // it begins with '#': no history line but the next record
  bool faulty = false;    // CHECK_EXTRACT_4LINT found it so
  long values[NB_FIELDS + 1] = {0}; // elements 1 to 4, corrected where damaged
};

// Finds the line at offset `start` of the word's idx1 file, which is open: start, next, found and
// is_record; its text then stands in walk->line. One that cannot be read is told ("cannot read file
// %s: %s \n" in the log and on standard output). Where it waits to be changed, all changes are
// written first (WRITE_LESSON_CHANGES).
void FIND_HISTORY_LINE(long start, Trf_lesson_walk *walk, Trf_history_line *line);

// The bytes of the line in the idx1 file, which is still open, without the line end: what may be
// written over. 0 where it is missing or empty; -1 where the disk refuses it, which is told as
// above.
long ROOM_OF_HISTORY_LINE(const Trf_history_line &line, Trf_lesson_walk *walk);

// Finds the line and reads it as a history line. Where the idx1 file is not open, everything is 0
// and nothing is logged.
// Logs "%s  file : %s  needs regeneration\n" where its length is not 52, and "%s and CHECK_4LINT"
// "some error in file : %s of lesson : %s \n" (with the word's alias) where it is faulty.
void READ_LESSON_HISTORY(long start, Trf_lesson_walk *walk, Trf_history_line *line);

// Has bytes of the word's idx1 file, which is open, written over by the next WRITE_LESSON_CHANGES.
// start: offset of the first, from 0; text: the new ones, in the room of lines just found. False
// where the disk refuses the old ones, which is told ("cannot read file %s: %s \n", log and
// standard output).
bool CHANGE_LESSON_HISTORY(long start, const std::string &text, Trf_lesson_walk *walk);

// Writes the changes (WRITE_PENDING). What cannot be written is told ("cannot write file %s: %s
// \n", log and standard output).
void WRITE_LESSON_CHANGES(Trf_lesson_walk *walk);

#endif
