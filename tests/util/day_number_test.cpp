// The day number.
#include "util/day_number.h"

#include <stdlib.h>
#include <time.h>

#include "support/prelude.h"
#include "support/present.h"

namespace {

long day_number(int year, int month, int day) {
  SET_PRESENT_DAY(year, month, day);
  long number = DIFF_JOUR();
  RESET_PRESENT();
  return number;
}

long day_number_at(int hour, int minute, int second) {
  struct tm t = {};
  t.tm_year = 126;
  t.tm_mon = 4;
  t.tm_mday = 17;
  t.tm_hour = hour;
  t.tm_min = minute;
  t.tm_sec = second;
  t.tm_isdst = -1;
  SET_PRESENT(mktime(&t));
  long number = DIFF_JOUR();
  RESET_PRESENT();
  return number;
}

} // namespace

TEST(DayNumber, TheFirstOfJanuary2001IsDayZero) {
  EXPECT_EQ(day_number(2001, 1, 1), 0);
}

TEST(DayNumber, AYearLaterIsDay365) {
  EXPECT_EQ(day_number(2002, 1, 1), 365);
}

TEST(DayNumber, LeapDaysCount) {
  EXPECT_EQ(day_number(2004, 2, 29), 1154);
  EXPECT_EQ(day_number(2004, 3, 1), 1155);
}

TEST(DayNumber, EarlierDaysAreNegative) {
  EXPECT_EQ(day_number(2000, 12, 31), -1);
}

TEST(DayNumber, EveryDayOfACenturyFollowsTheOneBefore) {
  const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  double expected = Julien(2001, 1, 1);
  for (int year = 2001; year <= 2101; year++) {
    for (int month = 1; month <= 12; month++) {
      bool leap = month == 2 && year % 4 == 0 && year % 100 != 0;
      for (int day = 1; day <= lengths[month - 1] + (leap ? 1 : 0); day++)
        ASSERT_EQ(Julien(year, month, day), expected++) << year << "-" << month << "-" << day;
    }
  }
}

TEST(DayNumber, JulienLies32075AboveTheJulianDayNumber) {
  EXPECT_EQ(Julien(2000, 1, 1), 2451545.0 + 32075.0);
}

TEST(DayNumber, TheDayChangesAtLocalMidnight) {
  long day = day_number_at(0, 0, 0);
  EXPECT_EQ(day_number_at(23, 59, 59), day);
  EXPECT_EQ(day_number_at(24, 0, 0), day + 1);
}

TEST(DayNumber, TheDayIsThatOfTheLocalZone) {
  setenv("TZ", "XXX-14", 1);
  tzset();
  SET_PRESENT(978264000); // noon of 31 December 2000 in Greenwich
  EXPECT_EQ(DIFF_JOUR(), 0);
  setenv("TZ", "XXX+11", 1);
  tzset();
  SET_PRESENT(978264000 + 86400 - 7200);
  EXPECT_EQ(DIFF_JOUR(), -1);
  RESET_PRESENT();
  unsetenv("TZ");
  tzset();
}
