// The history line: how often and when an entry was known and not known in one direction.
//
// Four-field line (idx1 files), 52 characters and a line end:
//
//   | columns  | field | meaning                                   |
//   | 0 - 11   | 1     | number of correct answers                 |
//   | 13 - 24  | 2     | number of wrong answers                   |
//   | 26 - 37  | 3     | day number of the last correct answer     |
//   | 39 - 50  | 4     | day number of the last wrong answer       |
//
// Each field is a number centred by LNB_12CHAR, or 12 blanks, and is followed by ';'.
//
// Six-field line (the form before, still read by the transfer), 78 characters: Q->R total answers,
// Q->R wrong answers, Q->R day number of the last answer, then the same three for R->Q.
#ifndef MERTU_DB_HISTORY_LINE_H
#define MERTU_DB_HISTORY_LINE_H

const int NB_FIELDS = 4;         // fields of a history line
const int HISTORY_LENGTH = 52;   // its length without the line end
const int NB_FIELDS_6 = 6;       // fields of a six-field line
const int HISTORY_LENGTH_6 = 78; // its length without the line end

// Checks a four-field history line and takes its values.
// date0: today's day number; a later day is a fault. ss: the line without its line end, any bytes;
// not changed. values: elements 1 to 4 are always filled, damaged ones corrected (element 0 is not
// used): a negative number or none gives 0, a day later than today clears its count, a count of 0
// clears its day.
// Returns 0 for a sound line, 1 where anything was wrong; each fault says
// "CHECK_EXTRACT_4LINT error at level " and the level (1 length, 2 separator, 3 to 7 values).
int CHECK_EXTRACT_4LINT(long date0, char *ss, long *values);

// Takes the values of a line that stands as WRITE_HISTORY_LINE writes it, which nearly every one
// does: counts and days of five digits at most, no day later than today (date0). ss: 52 bytes at
// least, any; what is behind them is not looked at. Returns false, with nothing taken and nothing
// said, for any other line. CHECK_EXTRACT_4LINT gives the same values for what it takes.
bool READ_WRITTEN_LINE(long date0, const char *ss, long *values);

// The same as CHECK_EXTRACT_4LINT for a six-field line into elements 1 to 6. A total or a wrong
// count that is negative or missing gives 0; more wrong answers than answers clear both; a missing
// day gives today; a day later than today clears both counts; a total of 0 clears the wrong count
// and makes the day today. The faults say "CHECK_EXTRACT_6LINT error at level " and the level (1 to
// 12).
int CHECK_EXTRACT_6LINT(long date0, char *ss, long *values);

// Writes the history line of values[1] to values[4] (element 0 is not used) into `line`, which has
// room for 53 bytes: 52 characters and the terminator, no line end.
void WRITE_HISTORY_LINE(const long *values, char *line);

// The history line of an entry never asked: four times 12 blanks and ';'. Not to be freed.
const char *BLANK_HISTORY_LINE();

#endif
