// The history line: how often and when an entry was known and not known in one direction.
#include "db/history_line.h"

#include <string.h>

#include <array>

#include "util/numbers.h"
#include "util/report.h"

namespace {

// Columns of a field with the ';' behind it.
const int FIELD_STEP = NB_FIELD + 1;

// A line being checked.
struct Trf_check {
  const char *who; // the checking routine, for the messages
  char *ss;        // the line
  int length;      // its length
  int pos;         // where the next number is looked for
  bool faulty;     // something was wrong
};

void fault(int level, Trf_check *check) {
  check->faulty = true;
  SAY("%s error at level %d \n", check->who, level);
}

// QUIRK length fault: a line of another length is faulty, yet its numbers are read, and the
// separators are then not looked at; a reader would expect the line to be thrown away. It is meant:
// a line that lost or gained a blank keeps its counts. Nothing is read past its end.
// Test: HistoryLine.ALineOf51Or53CharactersIsFlaggedButItsNumbersAreStillRead
Trf_check begin_check(const char *who, int due_length, char *ss) {
  Trf_check check = {who, ss, (int)strlen(ss), 0, false};
  if (check.length != due_length)
    fault(1, &check);
  return check;
}

void check_separator(int k, Trf_check *check) {
  if (!check->faulty && check->ss[FIELD_STEP * k - 1] != ';')
    fault(2, check);
}

bool is_digit(char byte) {
  return byte >= '0' && byte <= '9';
}

bool is_between_numbers(char byte) {
  return byte != ' ' && byte != '.' && byte != '+' && byte != '-' && !is_digit(byte);
}

// Takes the number at the read position. False without one.
//
// QUIRK run-on field: a number that fills its 12 columns is read together with the ';' behind it
// (a number ends at a blank), and the move behind "its separator" then takes the first character
// of the next number; a reader would cut the line at its columns. It is meant: counts and day
// numbers have at most five digits, and a line shifted by a lost blank still reads.
// Test: HistoryLine.ANumberThatFillsItsFieldTakesAwayTheFirstDigitOfTheNext
bool take_field(Trf_check *check, long *number) {
  long taken[2] = {0, 0};
  if (check->pos < check->length)
    check->pos += EXTR_N_LINT(1, check->ss + check->pos, taken) + 1;
  *number = taken[0] > 0 ? taken[1] : 0;
  return taken[0] > 0;
}

// Takes the number at the read position and moves behind it and its separator. False without one.
bool take_number(Trf_check *check, long *number) {
  bool found = take_field(check, number);
  while (check->pos < check->length && is_between_numbers(check->ss[check->pos]))
    check->pos++;
  return found;
}

// A negative number is a fault and becomes 0.
void refuse_negative(int level, long *number, Trf_check *check) {
  if (*number >= 0)
    return;
  fault(level, check);
  *number = 0;
}

// Puts field 3 or 4 (*day) right against today and its count. A negative day says `level`.
void correct_day(int level, long date0, long *day, long *count, Trf_check *check) {
  refuse_negative(level, day, check);
  if (*day > date0) {
    fault(7, check);
    *count = 0;
  }
  if (*count == 0)
    *day = 0;
}

void correct_4(int k, long date0, long *values, Trf_check *check) {
  switch (k) {
  case 1:
    refuse_negative(3, &values[1], check);
    break;
  case 2:
    refuse_negative(4, &values[2], check);
    break;
  case 3:
    correct_day(6, date0, &values[3], &values[1], check);
    break;
  default:
    correct_day(7, date0, &values[4], &values[2], check);
  }
}

// The wrong answers of one direction, put right against the total.
void correct_wrong(int level, long *total, long *wrong, Trf_check *check) {
  refuse_negative(level, wrong, check);
  if (*wrong > *total) {
    fault(level + 1, check);
    *total = 0;
    *wrong = 0;
  }
}

// The day of the last answer of one direction.
//
// QUIRK empty day of six fields: no day means today, where the four-field line takes it for 0; a
// reader would expect one rule. It is meant: the six-field line has one day for both kinds of
// answers, and an entry whose day is not known must not look unanswered since 2001.
// Test: SixFieldLine.AnEmptyDayMeansToday
void correct_last_day(int level, bool missing, long date0, long *total, Trf_check *check) {
  long *wrong = total + 1;
  long *day = total + 2;
  refuse_negative(level, day, check);
  if (missing)
    *day = date0;
  if (*day > date0) {
    fault(level + 1, check);
    *total = 0;
    *wrong = 0;
  }
  if (*total == 0)
    *day = date0;
}

// Where a field written by LNB_12CHAR holds a number of up to five digits. All other columns are
// blank.
const int FIRST_COLUMN = 3;
const int NB_COLUMNS = 5;

// What a byte in one of these columns does to the number read so far.
struct Trf_column {
  unsigned char times = 1; // the number is multiplied by this
  unsigned char plus = 0;  // and this is added
  unsigned char mark = 0;  // 1 for a digit, 0 for a blank
};
const unsigned char FOREIGN = 1 << NB_COLUMNS; // the mark of any other byte

// Tables instead of questions: how many digits a count has is as good as drawn, and a processor
// loses more time with a wrong guess than with the rest of the field.
constexpr std::array<Trf_column, 256> columns_by_byte() {
  std::array<Trf_column, 256> columns = {};
  for (int byte = 0; byte < 256; byte++) {
    Trf_column *column = &columns[(size_t)byte];
    bool digit = byte >= '0' && byte <= '9';
    column->times = digit ? 10 : 1;
    column->plus = digit ? (unsigned char)(byte - '0') : 0;
    column->mark = digit ? 1 : byte == ' ' ? 0 : FOREIGN;
  }
  return columns;
}
constexpr std::array<Trf_column, 256> COLUMN = columns_by_byte();

// Whether digits in these columns, the first one in the lowest bit, are those of a number of none
// to five digits in the middle of its field.
constexpr std::array<bool, FOREIGN> places_of_numbers() {
  std::array<bool, FOREIGN> places = {};
  for (size_t place : {0b00000, 0b00100, 0b01100, 0b01110, 0b11110, 0b11111})
    places[place] = true;
  return places;
}
constexpr std::array<bool, FOREIGN> IS_PLACE_OF_NUMBER = places_of_numbers();

// Reads a field and the ';' behind it. False where they do not stand as they are written.
bool read_written_field(const char *field, long *number) {
  if (memcmp(field, "   ", FIRST_COLUMN) != 0 ||
      memcmp(field + FIRST_COLUMN + NB_COLUMNS, "    ;", 5) != 0)
    return false;
  unsigned marks = 0;
  *number = 0;
  for (int i = 0; i < NB_COLUMNS; i++) {
    const Trf_column &column = COLUMN[(unsigned char)field[FIRST_COLUMN + i]];
    *number = *number * column.times + column.plus;
    marks |= (unsigned)column.mark << i;
  }
  return marks < FOREIGN && IS_PLACE_OF_NUMBER[marks];
}

} // namespace

bool READ_WRITTEN_LINE(long date0, const char *ss, long *values) {
  long read[NB_FIELDS + 1] = {};
  for (int k = 1; k <= NB_FIELDS; k++)
    if (!read_written_field(ss + FIELD_STEP * (k - 1), &read[k]))
      return false;
  if (read[3] > date0 || read[4] > date0)
    return false;
  values[1] = read[1];
  values[2] = read[2];
  values[3] = read[1] == 0 ? 0 : read[3];
  values[4] = read[2] == 0 ? 0 : read[4];
  return true;
}

int CHECK_EXTRACT_4LINT(long date0, char *ss, long *values) {
  if (strlen(ss) == (size_t)HISTORY_LENGTH && READ_WRITTEN_LINE(date0, ss, values))
    return 0;
  Trf_check check = begin_check("CHECK_EXTRACT_4LINT", HISTORY_LENGTH, ss);
  for (int k = 1; k <= NB_FIELDS; k++) {
    check_separator(k, &check);
    take_number(&check, &values[k]);
    correct_4(k, date0, values, &check);
  }
  return check.faulty ? 1 : 0;
}

int CHECK_EXTRACT_6LINT(long date0, char *ss, long *values) {
  Trf_check check = begin_check("CHECK_EXTRACT_6LINT", HISTORY_LENGTH_6, ss);
  for (int k = 1; k <= NB_FIELDS_6; k++) {
    int level = k <= 3 ? 3 : 8;
    long *total = &values[k <= 3 ? 1 : 4];
    check_separator(k, &check);
    bool found = take_number(&check, &values[k]);
    if (k % 3 == 1)
      refuse_negative(level, total, &check);
    else if (k % 3 == 2)
      correct_wrong(level + 1, total, total + 1, &check);
    else
      correct_last_day(level + 3, !found, date0, total, &check);
  }
  return check.faulty ? 1 : 0;
}

void WRITE_HISTORY_LINE(const long *values, char *line) {
  for (int k = 1; k <= NB_FIELDS; k++) {
    LNB_12CHAR(values[k], line + FIELD_STEP * (k - 1));
    line[FIELD_STEP * k - 1] = ';';
  }
  line[HISTORY_LENGTH] = '\0';
}

const char *BLANK_HISTORY_LINE() {
  return "            ;            ;            ;            ;";
}
