// Integers taken from a line, the number field of a history line, a text fitted to a length.
//
// The number field, fixed in the files:
//
//   | bytes   | content                                                             |
//   |---------|---------------------------------------------------------------------|
//   | 0 to 11 | a decimal number of l characters, (12 - l) / 2 blanks before it,    |
//   |         | the rest of the blanks behind it                                    |
//
#ifndef MERTU_UTIL_NUMBERS_H
#define MERTU_UTIL_NUMBERS_H

// Characters of the number field.
const int NB_FIELD = 12;

// Takes up to n unsigned integers from the line `s` (not changed). A number is a run of digits
// (its first 100 count; beyond int it is clamped); blanks separate. Nothing is taken when the first
// byte behind the leading blanks is neither a digit nor ".", "+" or "-"; a sign is never read.
// i_extracted (n + 1 elements): element 0 receives how many were taken, 1 to n the numbers.
// Returns the index in `s`, from 0, at which reading stopped.
int EXTR_N_INT(int n, char *s, int *i_extracted);

// The same for signed long integers: a number is the run of bytes up to the next blank, whatever
// they are, read as far as it is a number (0 when it is none, clamped beyond long).
int EXTR_N_LINT(int n, char *s, long *i_extracted);

// Lays `nb` as a number field into snb[0..11] and a NUL into snb[13]; snb[12] keeps its byte. `snb`
// holds 14 bytes at least. Of a longer number the first 12 characters stand; where it has more than
// 13, "Warning LNB_12CHAR sw=%s@@@" is said.
void LNB_12CHAR(long nb, char *snb);

// Makes `ss` exactly `lssd` characters long (0 or more; fewer than 0 changes nothing), in place:
// blanks are added at its end, or runs of blanks shrink to one from the left until it fits; one
// that still does not fit is cut and "error RESIZE_STRING j=%d lssd=%d " is said (j: its length
// after the shrinking). `ss` holds lssd + 1 bytes at least.
void RESIZE_STRING(int lssd, char *ss);

#endif
