// The day number: days since 1 January 2001 (day 0) in local time, the date unit of every file.
#ifndef MERTU_UTIL_DAY_NUMBER_H
#define MERTU_UTIL_DAY_NUMBER_H

// Returns today's day number; it changes at local midnight.
long DIFF_JOUR();

// Returns a count of days for a date (an: year, ms: month 1 to 12, jr: day of the month): the
// Julian day number plus 32075. Only differences of two such counts mean something here.
double Julien(int an, int ms, int jr);

#endif
