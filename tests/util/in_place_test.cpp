// Tests of bytes changed where they stand.
#include "util/in_place.h"

#include "support/prelude.h"
#include "support/scratch.h"

#include <errno.h>
#include <signal.h>
#include <sys/resource.h>

#include "util/owned.h"

TEST(InPlace, TheBytesStandAtTheirPlaceAndTheSizeStays) {
  Scratch_dir dir;
  dir.write("file", "0123456789");
  Owned_stream fp = OPEN_STREAM("file", "r+");
  EXPECT_EQ(WRITE_IN_PLACE(fp.get(), 3, "abc"), 0);
  EXPECT_EQ(dir.read("file"), "012abc6789");
  EXPECT_EQ(WRITE_IN_PLACE(fp.get(), 3, ""), 0);
  EXPECT_EQ(dir.read("file"), "012abc6789");
}

TEST(InPlace, TheReasonOfAFailureIsReturned) {
  Scratch_dir dir;
  dir.write("file", "0123456789");
  Owned_stream fp = OPEN_STREAM("file", "r");
  EXPECT_EQ(WRITE_IN_PLACE(fp.get(), 3, "abc"), EBADF);
  EXPECT_EQ(dir.read("file"), "0123456789");
}

// Written as far as the disk takes it, a line would be the new one and the old one at once.
TEST(InPlace, WhatWasWrittenOfALineThatDoesNotFitIsPutBack) {
  auto write_behind_the_end = [] {
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit size = {6, 6};
    setrlimit(RLIMIT_FSIZE, &size);
    Owned_stream fp = OPEN_STREAM("file", "r+");
    _exit(WRITE_IN_PLACE(fp.get(), 3, "abcdef"));
  };
  Scratch_dir dir;
  dir.write("file", "0123456789");
  EXPECT_EXIT(write_behind_the_end(), testing::ExitedWithCode(EFBIG), "");
  EXPECT_EQ(dir.read("file"), "0123456789");
}

TEST(InPlace, AFileThatIsThereCanBeSynced) {
  Scratch_dir dir;
  dir.write("sub/file", "0");
  EXPECT_EQ(SYNC_FILE("sub/file"), 0);
  EXPECT_EQ(SYNC_FILE("sub/none"), ENOENT);
  SYNC_DIRECTORY_OF("sub/file");
  SYNC_DIRECTORY_OF("file");
  SYNC_DIRECTORY_OF("none/file");
}
