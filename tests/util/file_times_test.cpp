// Which of two files was modified later.
#include "util/file_times.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "support/prelude.h"
#include "support/scratch.h"
#include "util/report.h"

namespace {

const time_t MOMENT = 1700000000;

void modify_at(const char *name, time_t seconds, long nanoseconds = 0) {
  struct timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
  utimensat(AT_FDCWD, name, times, 0);
}

double compare_files(const char *origin, const char *derived) {
  return DIFF_TIME_FILE(std::string(origin).data(), std::string(derived).data());
}

double compare_texts(std::string first, std::string second) {
  double deltat = 99;
  WINDOWS_DIFFTIME(&deltat, first.data(), second.data());
  return deltat;
}

// Sets the zone of the learner for one test.
class Zone {
public:
  explicit Zone(const char *name) {
    setenv("TZ", name, 1);
    tzset();
  }
  ~Zone() {
    unsetenv("TZ");
    tzset();
  }
};

} // namespace

TEST(FileTimes, ADerivedFileIsLaterOrEarlier) {
  Scratch_dir dir;
  dir.write("origin", "");
  dir.write("derived", "");
  modify_at("origin", MOMENT);
  modify_at("derived", MOMENT + 1);
  EXPECT_EQ(compare_files("origin", "derived"), 1);
  EXPECT_EQ(compare_files("derived", "origin"), -1);
}

TEST(FileTimes, TheSameSecondIsNoDifference) {
  Scratch_dir dir;
  dir.write("origin", "");
  dir.write("derived", "");
  modify_at("origin", MOMENT, 900000000);
  modify_at("derived", MOMENT, 100000000);
  EXPECT_EQ(compare_files("origin", "derived"), 0);
}

TEST(FileTimes, AMissingDerivedFileIsToBeCreated) {
  Scratch_dir dir;
  dir.write("origin", "");
  testing::internal::CaptureStdout();
  EXPECT_EQ(compare_files("origin", "derived"), -1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "you need to create derived \n");
}

TEST(FileTimes, AMissingOriginEndsTheProgram) {
  Scratch_dir dir;
  dir.write("derived", "");
  ENDS_WITH_STATUS(compare_files("origin", "derived"), 1,
                   "Error file origin  does not exist stop \n");
}

TEST(FileTimes, AMissingOriginIsToldInTheLogToo) {
  Scratch_dir dir;
  ENDS_WITH_STATUS(
      {
        SET_SAVED_LOG(fopen("log", "w"));
        compare_files("origin", "derived");
      },
      1, "does not exist");
  EXPECT_EQ(dir.read("log"), "Error file origin  does not exist stop \n");
}

TEST(FileTimes, NothingIsSaidOfTwoFilesThatAreThere) {
  Scratch_dir dir;
  dir.write("origin", "");
  testing::internal::CaptureStdout();
  compare_files("origin", "origin");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(FileTimes, BothTimesAndTheResultAreTraced) {
  Scratch_dir dir;
  Zone zone("UTC0");
  dir.write("origin", "");
  dir.write("derived", "");
  modify_at("origin", MOMENT);
  modify_at("derived", MOMENT - 86400);
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  compare_files("origin", "derived");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "origin modified 2023-11-14 22:13:20\n"
                                                    "derived modified 2023-11-13 22:13:20\n"
                                                    "DIFF_TIME_FILE deltat=-1\n");
  unsetenv("MERTU_TRACE");
}

TEST(FileTimes, TheLastYearThatTheCalendarHoldsIsComparedToo) {
  Zone zone("UTC0");
  char name[] = "/dev/shm/mertu_test_XXXXXX"; // other file systems hold no such time
  int fd = mkstemp(name);
  if (fd < 0)
    GTEST_SKIP();
  close(fd);
  modify_at(name, 67768036191676799); // 31 December 2147485547, 23:59:59
  EXPECT_EQ(compare_files(name, name), 0);
  unlink(name);
}

TEST(FileTimes, TheHourLivedTwiceIsComparedByTheWallClock) {
  Scratch_dir dir;
  Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  dir.write("origin", "");
  dir.write("derived", "");
  modify_at("origin", 1698539400);         // 29 October 2023, 02:30 in summer time
  modify_at("derived", 1698539400 + 3000); // 50 minutes later it is 02:20
  EXPECT_EQ(compare_files("origin", "derived"), -1);
  modify_at("derived", 1698539400 + 3600);
  EXPECT_EQ(compare_files("origin", "derived"), 0);
}

TEST(FileTimes, AZoneSetSinceIsFollowed) {
  Scratch_dir dir;
  dir.write("origin", "");
  dir.write("derived", "");
  Zone zone("UTC0");
  const time_t summer_time_ends = 1698541200;
  modify_at("origin", summer_time_ends - 1);
  modify_at("derived", summer_time_ends);
  EXPECT_EQ(compare_files("origin", "derived"), 1);
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  EXPECT_EQ(compare_files("origin", "derived"), -1);
}

TEST(FileTimes, TwoFilesAreComparedAsTheirTextsAre) {
  Scratch_dir dir;
  Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  dir.write("origin", "");
  dir.write("derived", "");
  srandom(7);
  for (int round = 0; round < 500; round++) {
    time_t origin = MOMENT - random() % 100000000;
    time_t derived = round % 2 == 0 ? origin + random() % 7200 - 3600 : random();
    modify_at("origin", origin);
    modify_at("derived", derived);
    std::string text = asctime(localtime(&origin));
    ASSERT_EQ(compare_files("origin", "derived"),
              compare_texts(asctime(localtime(&derived)), text));
  }
}

TEST(TimeTexts, EveryFieldDecidesInItsTurn) {
  const std::string text = "Wed Nov 15 10:20:30 2023\n";
  EXPECT_EQ(compare_texts(text, text), 0);
  EXPECT_EQ(compare_texts("Wed Nov 15 10:20:30 2022\n", text), -1);
  EXPECT_EQ(compare_texts("Wed Dec 15 10:20:30 2023\n", text), 1);
  EXPECT_EQ(compare_texts("Wed Apr 15 10:20:30 2023\n", text), -1);
  EXPECT_EQ(compare_texts("Wed Nov  5 10:20:30 2023\n", text), -1);
  EXPECT_EQ(compare_texts("Wed Nov 16 10:20:30 2023\n", text), 1);
  EXPECT_EQ(compare_texts("Wed Nov 15 09:20:30 2023\n", text), -1);
  EXPECT_EQ(compare_texts("Wed Nov 15 10:21:30 2023\n", text), 1);
  EXPECT_EQ(compare_texts("Wed Nov 15 10:20:29 2023\n", text), -1);
}

TEST(TimeTexts, TheFirstDifferenceDecides) {
  EXPECT_EQ(compare_texts("Sun Jan  1 00:00:00 2024\n", "Wed Nov 15 10:20:30 2023\n"), 1);
  EXPECT_EQ(compare_texts("Wed Nov 15 10:20:30 2023\n", "Sun Jan  1 23:59:59 2024\n"), -1);
  EXPECT_EQ(compare_texts("Wed Nov  1 00:00:01 2023\n", "Mon Oct 31 23:59:59 2023\n"), 1);
}

TEST(TimeTexts, TheDayOfTheWeekDoesNotCount) {
  EXPECT_EQ(compare_texts("Mon Nov 15 10:20:30 2023\n", "Wed Nov 15 10:20:30 2023\n"), 0);
}

TEST(TimeTexts, AnUnknownMonthInTheFirstTextEndsTheProgram) {
  ENDS_WITH_STATUS(compare_texts("Wed Nob 15 10:20:30 2023\n", "Wed xxx 15 10:20:30 2023\n"), 5,
                   "error sm_timer in WINDOWS_DIFFTIME stop ");
  ENDS_WITH_STATUS(compare_texts("Wed an, 15 10:20:30 2023\n", "Wed Nov 15 10:20:30 2023\n"), 5,
                   "error sm_timer in WINDOWS_DIFFTIME stop ");
  ENDS_WITH_STATUS(compare_texts("Wed n,D 15 10:20:30 2023\n", "Wed Nov 15 10:20:30 2023\n"), 5,
                   "error sm_timer in WINDOWS_DIFFTIME stop ");
}

TEST(TimeTexts, AnUnknownMonthInTheSecondTextEndsTheProgram) {
  ENDS_WITH_STATUS(compare_texts("Wed Nov 15 10:20:30 2023\n", "Wed nov 15 10:20:30 2023\n"), 5,
                   "error sm_timer1 in WINDOWS_DIFFTIME stop ");
}

TEST(TimeTexts, AnUnknownMonthIsNotSeenWhereTheYearDecides) {
  EXPECT_EQ(compare_texts("Wed xxx 15 10:20:30 2022\n", "Wed Nov 15 10:20:30 2023\n"), -1);
}

TEST(TimeTexts, AShortTextHasNoMonth) {
  ENDS_WITH_STATUS(compare_texts("Wed", "Wed"), 5, "error sm_timer in WINDOWS_DIFFTIME stop ");
  ENDS_WITH_STATUS(compare_texts("", ""), 5, "error sm_timer in WINDOWS_DIFFTIME stop ");
}
