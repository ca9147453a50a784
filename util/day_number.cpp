// The day number: days since 1 January 2001 in local time.
#include "util/day_number.h"

#include <time.h>

// Every division truncates toward zero; `long` inside, so that no year overflows.
double Julien(int an, int ms, int jr) {
  long a = ((long)ms - 14) / 12;
  long t1 = (367 * (long)ms - 4404 * a - 734) / 12;
  long t2 = (((long)an + 4800 + a) * 1461) / 4;
  long t3 = ((((long)an + 4900 + a) / 100) * 3) / 4;
  return (double)(jr + t1 + t2 - t3);
}

long DIFF_JOUR() {
  time_t now = time(nullptr);
  const struct tm *today = localtime(&now);
  if (today == nullptr)
    return 0;
  double day = Julien(today->tm_year + 1900, today->tm_mon + 1, today->tm_mday);
  return (long)(day - Julien(2001, 1, 1));
}
