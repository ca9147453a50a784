// Writing an idx1 file from a dictionary's working copy (formats: db/idx1_format.h,
// db/dictionary_file.h, db/history_line.h).
#ifndef MERTU_DB_INDEX_WRITER_H
#define MERTU_DB_INDEX_WRITER_H

#include <stdio.h>

#include <string>

#include "db/old_history.h"
#include "db/old_index.h"
#include "util/line_reader.h"

// Writes a whole idx1 file.
// fp_log: the log, may be null. fp: the working copy, open for reading, read from its start.
// sfp1: the idx1 file's path, written into the header; it must contain "idx1". st_alias: the
// dictionary's alias (null: none). fpi: the idx1 file, open for writing, at its start; it stays
// open. trf_classmt: the old index as CLASS_OLD_WORDS left it, or null for none; its fp_class is
// closed at the end. *nb becomes the number of '#' lines seen (entries, entries without a name and
// "##" lines).
// Where a line begins with the byte 255, which reads as the end of the file, it says "index %s ends
// before line %ld of its dictionary: it begins with a y with diaeresis \n" on standard output.
// Ends the program with status 1 where sfp1 does not contain "idx1" ("IDX1_DICO erreur 1 stop c=%c
// \n", the path's first character), and with status 3 where an old record is cut short ("IDX1_DICO
// error in reading fp_class \n" in the log and on standard output, there followed by what to do).
// A damaged old history line is logged ("IDX1_DICO and CHECK_4LINTsome error in file : %s \n", for
// the R->Q line "some error 2") and goes on corrected.
void IDX1_DICO(FILE *fp_log, FILE *fp, char *sfp1, char *st_alias, FILE *fpi,
               Trf_classmt *trf_classmt, int *nb);

// Adds the two history lines of these values to an entry's record.
void ADD_HISTORY(const Trf_values &values, std::string *record);

// Where the history lines of an index being written come from.
struct Trf_history_source {
  bool carries; // whether there are old records at all, for the log
  // Adds the two history lines of the entry with this question (see QUESTION_OF_NAME_LINE), with
  // their line ends, to its record.
  void (*add_history)(const std::string &question, void *from, std::string *record);
  void *from; // handed to it; borrowed
};

// What IDX1_DICO and SYNCHRO_IDX1 (db/synchronise.h) have in common: writes a whole idx1 file, each
// history as the source gives it. The other parameters, the messages and the end with status 1 are
// those of IDX1_DICO.
void WRITE_INDEX(FILE *fp_log, FILE *fp, char *sfp1, char *st_alias, FILE *fpi,
                 const Trf_history_source *source, int *nb);

// Builds the name line of an entry whose '#' stands alone on its line: reads on to a line that
// contains "Q>" and takes the text behind it or, where that is blank, the next line that is not.
// line: the walk over the working copy, behind the '#' line; the lines read are consumed. st_alias:
// the alias. offset: where the '#' line starts. name_line: becomes the name line without line end.
// Returns false, with *name_line as it was, where no such text comes before the end of the file, a
// line that contains "END_OF_FILE" (*ended becomes true), or the line limit.
bool IDX1_DICO_NONAME_LINE(Trf_line_cursor *line, const char *st_alias, long offset,
                           std::string *name_line, bool *ended);

#endif
