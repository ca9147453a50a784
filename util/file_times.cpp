// Which of two files was modified later, to the second, by the clock on the wall.
#include "util/file_times.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <string>

#include "util/report.h"

namespace {

const char MONTHS[] = "Jan,Feb,Mar,Apr,May,Jun,Jul,Aug,Sep,Oct,Nov,Dec,";

// Year, month, day, hour, minute, second.
using Wall_time = std::array<int, 6>;

// -1, 0 or +1 as the first is earlier, the same or later: the first difference decides.
double compare(const Wall_time &first, const Wall_time &second) {
  if (first == second)
    return 0;
  return first < second ? -1 : 1;
}

// A modification time as local date and time. One beyond the calendar is all zeros.
//
// QUIRK wall clock times: files are compared by local date and time, not by the moment; a reader
// would expect difftime. It is meant: it is the time the learner sees in a listing of her files.
// In the hour that is lived twice in autumn a file written later can count as earlier, and is
// then made once more than needed.
// Test: FileTimes.TheHourLivedTwiceIsComparedByTheWallClock
Wall_time wall_time(time_t moment) {
  // Not localtime_r, which keeps to the zone that was set when it was first asked.
  const struct tm *t = localtime(&moment);
  if (t == nullptr)
    return {};
  return {t->tm_year, t->tm_mon, t->tm_mday, t->tm_hour, t->tm_min, t->tm_sec};
}

void trace_time(const char *name, const Wall_time &t) {
  TRACE("%s modified %ld-%02d-%02d %02d:%02d:%02d", name, t[0] + 1900L, t[1] + 1, t[2], t[3], t[4],
        t[5]);
}

// The number at a place of an asctime text; 0 behind its end.
int number_at(const std::string &text, size_t place) {
  if (place >= text.size())
    return 0;
  long number = strtol(text.c_str() + place, nullptr, 10);
  return (int)std::clamp(number, (long)INT_MIN, (long)INT_MAX);
}

// The place of the month's name in the list; ends the program for a name that is not in it.
int month_of(const std::string &text, const char *who) {
  std::string name = text.size() < 7 ? "" : text.substr(4, 3) + ",";
  const char *found = name.empty() ? nullptr : strstr(MONTHS, name.c_str());
  if (found == nullptr)
    STOP_PROGRAM(SAVED_LOG(), 5, "error %s in WINDOWS_DIFFTIME stop ", who);
  return (int)(found - MONTHS);
}

} // namespace

double DIFF_TIME_FILE(char *name_file_origin, char *name_file_derived) {
  struct stat origin, derived;
  if (stat(name_file_origin, &origin) != 0)
    STOP_PROGRAM(SAVED_LOG(), 1, "Error file %s  does not exist stop \n", name_file_origin);
  if (stat(name_file_derived, &derived) != 0) {
    SAY("you need to create %s \n", name_file_derived);
    return -1;
  }
  Wall_time origin_time = wall_time(origin.st_mtime);
  Wall_time derived_time = wall_time(derived.st_mtime);
  double deltat = compare(derived_time, origin_time);
  trace_time(name_file_origin, origin_time);
  trace_time(name_file_derived, derived_time);
  TRACE("DIFF_TIME_FILE deltat=%g", deltat);
  return deltat;
}

void WINDOWS_DIFFTIME(double *deltat, char *ss_timer, char *ss_timer1) {
  const std::string first = ss_timer;
  const std::string second = ss_timer1;
  Wall_time t = {number_at(first, 19)};
  Wall_time t1 = {number_at(second, 19)};
  if (t[0] == t1[0]) {
    t[1] = month_of(first, "sm_timer");
    t1[1] = month_of(second, "sm_timer1");
  }
  const size_t places[] = {7, 11, 14, 17}; // day, hour, minute, second
  for (size_t k = 0; k < 4; k++) {
    t[k + 2] = number_at(first, places[k]);
    t1[k + 2] = number_at(second, places[k]);
  }
  *deltat = compare(t, t1);
}
