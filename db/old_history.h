// An entry's old history, read from an old index by the entry's question.
#ifndef MERTU_DB_OLD_HISTORY_H
#define MERTU_DB_OLD_HISTORY_H

#include <stdio.h>

#include <string_view>

#include "db/history_line.h"
#include "db/old_index.h"
#include "util/line_reader.h"

// The values of an entry's two history lines, each from element 1 (element 0 is not used).
struct Trf_values {
  long qr[NB_FIELDS + 1];
  long rq[NB_FIELDS + 1];
};

// An old index being read from. Borrows what it is made of.
struct Trf_old_histories {
  Trf_classmt *old;       // as CLASS_OLD_WORDS left it, its fp_class open
  const char *s_idx1;     // the index, as the messages name it
  FILE *fp_log;           // the log, or null
  Trf_old_names names;    // its questions
  Trf_line_cursor record; // over its lines
  long date0;             // today

  Trf_old_histories(Trf_classmt *classmt, const char *path, FILE *log);
};

enum Trf_old_result {
  OLD_NONE,      // no old record has this question
  OLD_HISTORY,   // its history has been read
  OLD_OTHER_NAME // the line at the record's offset is not its name line
};

// Reads and checks the history of the entry with this question (the text of a name line between '#'
// and '*'). values: filled, corrected where damaged, after OLD_HISTORY only; a damaged line is
// logged ("IDX1_DICO and CHECK_4LINTsome error in file : %s \n", for the R->Q line "some error 2").
// After OLD_OTHER_NAME the line met stands in old->record.text.
// Ends the program with status 3 where the record is cut short ("IDX1_DICO error in reading
// fp_class \n" in the log and on standard output, there followed by what to do).
Trf_old_result READ_OLD_HISTORY(std::string_view question, Trf_old_histories *old,
                                Trf_values *values);

#endif
