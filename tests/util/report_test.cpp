// What is printed, where, and the end of the program.
#include "util/report.h"

#include <unistd.h>

#include "support/prelude.h"
#include "support/scratch.h"

namespace {

// What `action` writes to standard output.
template <typename Action> std::string printed_by(const Scratch_dir &dir, Action action) {
  fflush(stdout);
  int screen = dup(1);
  FILE *file = fopen("printed", "w");
  dup2(fileno(file), 1);
  action();
  fflush(stdout);
  dup2(screen, 1);
  close(screen);
  fclose(file);
  return dir.read("printed");
}

} // namespace

TEST(Report, ASaidLineGetsALineEndOnlyWhereItHasNone) {
  Scratch_dir dir;
  EXPECT_EQ(printed_by(dir, [] { SAY("err mise a zero cas %d ", 1); }), "err mise a zero cas 1 \n");
  EXPECT_EQ(printed_by(dir, [] { SAY("you need to create %s \n", "x"); }),
            "you need to create x \n");
}

TEST(Report, AComplaintGoesToStandardErrorAsItStands) {
  Scratch_dir dir;
  testing::internal::CaptureStderr();
  EXPECT_EQ(printed_by(dir, [] { COMPLAIN("no file %s", "x"); }), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "no file x");
}

TEST(Report, TheTraceIsSilentUnlessAskedFor) {
  Scratch_dir dir;
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(printed_by(dir, [] { TRACE("enter"); }), "");
  setenv("MERTU_TRACE", "1", 1);
  EXPECT_EQ(printed_by(dir, [] { TRACE("enter"); }), "enter\n");
  unsetenv("MERTU_TRACE");
}

TEST(Report, TheLogGetsTheTextAsItStands) {
  Scratch_dir dir;
  FILE *fp_log = fopen("mertu_log", "w");
  LOG_LINE(fp_log, "\n Create directory %s \n", "./CPY");
  LOG_LINE(fp_log, "no line end");
  LOG_LINE(nullptr, "nowhere");
  fclose(fp_log);
  EXPECT_EQ(dir.read("mertu_log"), "\n Create directory ./CPY \nno line end");
}

TEST(Report, AStopIsToldOnStandardOutputAndInTheLog) {
  Scratch_dir dir;
  ENDS_WITH_STATUS(STOP_PROGRAM(fopen("mertu_log", "w"), 32, "lesson %d STOP ", 7), 32,
                   "lesson 7 STOP \n");
  EXPECT_EQ(dir.read("mertu_log"), "lesson 7 STOP ");
  ENDS_WITH_STATUS(STOP_PROGRAM(nullptr, 5, "stop"), 5, "stop\n");
}

TEST(Report, TheSavedLogIsHandedBackWhenAnotherIsRegistered) {
  EXPECT_EQ(SET_SAVED_LOG(stderr), nullptr);
  EXPECT_EQ(SAVED_LOG(), stderr);
  EXPECT_EQ(SET_SAVED_LOG(nullptr), stderr);
}
