// Integers taken from a line, the number field of a history line, a text fitted to a length.
#include "util/numbers.h"

#include <ctype.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <charconv>
#include <string>

#include "util/report.h"

namespace {

// Digits of one run that count.
const size_t MAX_DIGITS = 100;
// Characters of a long, its sign among them.
const int MAX_LONG = 20;

bool is_digit(char byte) {
  return isdigit((unsigned char)byte) != 0;
}

int skip_blanks(const char *s, int i) {
  while (s[i] == ' ')
    i++;
  return i;
}

// Whether a byte lets the taking begin.
//
// QUIRK sign before integers: a sign or a point lets EXTR_N_INT begin but no number ever takes it,
// so "-12 5" gives zeros and stops at the "-"; a reader would expect -12. It is meant: the fields
// read this way carry no sign, and a count of zeros at the sign's place is how callers see a
// damaged one.
// Test: Integers.ASignIsNeverReadAndStopsTheTaking
bool may_begin(char byte) {
  return is_digit(byte) || byte == '.' || byte == '+' || byte == '-';
}

int clamped_int(const std::string &digits) {
  return (int)std::clamp(strtol(digits.c_str(), nullptr, 10), (long)INT_MIN, (long)INT_MAX);
}

// The end of the run of digits at i.
int end_of_digits(const char *s, int i) {
  while (is_digit(s[i]))
    i++;
  return i;
}

// Digits that a long holds whatever they are.
const int SURE_DIGITS = 18;

// The number at the head of a word; what is no plain run of digits is left to the library.
long number_of_word(const char *word, int length) {
  long number = 0;
  int i = 0;
  for (; i < length && is_digit(word[i]); i++)
    if (i < SURE_DIGITS)
      number = number * 10 + (word[i] - '0');
  if (i > 0 && i <= SURE_DIGITS)
    return number;
  return strtol(std::string(word, (size_t)length).c_str(), nullptr, 10);
}

// The end of the run of bytes up to the next blank.
int end_of_word(const char *s, int i) {
  while (s[i] != '\0' && s[i] != ' ')
    i++;
  return i;
}

// Drops blanks that follow a blank, `excess` of them at most, from the left. Returns the length
// left; the text is not ended there.
int drop_doubled_blanks(char *ss, int length, int excess) {
  int j = 0;
  for (int i = 0; i < length; i++) {
    if (excess > 0 && ss[i] == ' ' && j > 0 && ss[j - 1] == ' ')
      excess--;
    else
      ss[j++] = ss[i];
  }
  return j;
}

} // namespace

int EXTR_N_INT(int n, char *s, int *i_extracted) {
  i_extracted[0] = 0;
  int i = skip_blanks(s, 0);
  if (!may_begin(s[i]))
    return i;
  for (int k = 1; k <= n && s[i] != '\0'; k++) {
    int end = end_of_digits(s, i);
    i_extracted[k] = clamped_int(std::string(s + i, std::min((size_t)(end - i), MAX_DIGITS)));
    i_extracted[0] = k;
    i = skip_blanks(s, end);
  }
  return i;
}

// QUIRK two integer readers: EXTR_N_LINT ends a number at a blank and reads its sign, EXTR_N_INT
// ends it at the first byte that is no digit; a reader would take one for a mistake. It is meant:
// history fields are read with their signs, so that a negative one is seen to be damaged, counts
// and lesson numbers never have one.
// Test: LongIntegers.ANumberIsWhateverStandsUpToTheNextBlank
int EXTR_N_LINT(int n, char *s, long *i_extracted) {
  i_extracted[0] = 0;
  int i = skip_blanks(s, 0);
  if (!may_begin(s[i]))
    return i;
  for (int k = 1; k <= n && s[i] != '\0'; k++) {
    int end = end_of_word(s, i);
    i_extracted[k] = number_of_word(s + i, end - i);
    i_extracted[0] = k;
    i = skip_blanks(s, end);
  }
  return i;
}

void LNB_12CHAR(long nb, char *snb) {
  char number[MAX_LONG + 1];
  char *end = std::to_chars(number, number + MAX_LONG, nb).ptr;
  *end = '\0';
  int length = (int)(end - number);
  int padding = (NB_FIELD - length) / 2;
  // QUIRK silent thirteenth digit: (12 - 13) / 2 is 0, so a number of 13 characters loses its last
  // one without the warning that longer ones get; a reader would expect it too. It is meant: the
  // padding alone decides, and no count or day number comes near.
  // Test: NumberField.ThirteenCharactersAreCutWithoutAWarningAndLeaveTheThirteenthByte
  if (padding < 0) {
    SAY("Warning LNB_12CHAR sw=%s@@@\n", number);
    padding = 0;
  }
  memset(snb, ' ', NB_FIELD);
  memcpy(snb + padding, number, (size_t)std::min(length, NB_FIELD));
  // QUIRK untouched thirteenth byte: snb[12] is left as it was and snb[13] becomes NUL; a reader
  // would expect the NUL right behind the field. It is meant: the field is laid into a line whose
  // next byte, the ";", stands there already.
  // Test: NumberField.TheThirteenthByteIsLeftAsItWas
  snb[NB_FIELD + 1] = '\0';
}

void RESIZE_STRING(int lssd, char *ss) {
  int length = (int)strlen(ss);
  if (lssd < 0 || length == lssd)
    return;
  if (length < lssd)
    memset(ss + length, ' ', (size_t)(lssd - length));
  else
    length = drop_doubled_blanks(ss, length, length - lssd);
  if (length > lssd)
    SAY("error RESIZE_STRING j=%d lssd=%d \n", length, lssd);
  ss[lssd] = '\0';
}
