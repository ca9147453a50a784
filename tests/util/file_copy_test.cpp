// Files copied byte for byte, back-ups.
#include "util/file_copy.h"

#include <errno.h>
#include <signal.h>
#include <string.h>
#include <sys/resource.h>

#include "support/prelude.h"
#include "support/scratch.h"
#include "util/report.h"

namespace {

std::string any_bytes(size_t length) {
  std::string bytes(length, '\0');
  srandom(11);
  for (char &byte : bytes)
    byte = (char)random();
  return bytes;
}

// Path of the back-up; "(null)" where none was made.
std::string back_up_of(std::string path) {
  Owned_text back_up(back_up_file(path.data()));
  return back_up ? back_up.get() : "(null)";
}

// No file may grow beyond so many bytes: a write beyond fails.
void limit_file_size(rlim_t bytes) {
  signal(SIGXFSZ, SIG_IGN);
  struct rlimit limit = {bytes, bytes};
  setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

TEST(CopierFichier, EveryByteIsCopied) {
  Scratch_dir dir;
  for (size_t length : {0, 1, 511, 512, 513, 16384, 16385, 100000}) {
    dir.write("a", any_bytes(length));
    EXPECT_EQ(copier_fichier("a", "b"), 0);
    EXPECT_EQ(dir.read("b"), any_bytes(length));
  }
}

TEST(CopyToScratch, EveryByteIsCopiedOverAnOlderOne) {
  Scratch_dir dir;
  dir.write("scratch", any_bytes(200000));
  for (size_t length : {0, 1, 16384, 16385, 100000}) {
    dir.write("a", any_bytes(length));
    EXPECT_EQ(COPY_TO_SCRATCH(OPEN_SOURCE("a").get(), "./scratch"), 0);
    EXPECT_EQ(dir.read("scratch"), any_bytes(length));
  }
}

TEST(CopyToScratch, AFileThatIsItsOwnScratchFileStays) {
  Scratch_dir dir;
  dir.write("a", "the histories");
  std::filesystem::create_symlink("a", "scratch");
  for (const char *scratch : {"./a", "scratch"}) {
    EXPECT_EQ(COPY_TO_SCRATCH(OPEN_SOURCE("a").get(), scratch), 0) << scratch;
    EXPECT_EQ(dir.read("a"), "the histories") << scratch;
  }
}

TEST(CopyToScratch, WhatStandsInTheWayIsTold) {
  Scratch_dir dir;
  dir.write("a", "text");
  dir.write("taken/file", "");
  EXPECT_EQ(COPY_TO_SCRATCH(OPEN_SOURCE("a").get(), "taken"), 2);
  EXPECT_EQ(errno, EISDIR);
  EXPECT_EQ(COPY_TO_SCRATCH(OPEN_SOURCE("a").get(), "missing/scratch"), 2);
  EXPECT_EQ(errno, ENOENT);
}

TEST(CopyToScratch, AWriteOrAReadThatFailsIsTold) {
  Scratch_dir dir;
  dir.write("a", any_bytes(50000));
  EXPECT_EXIT(
      {
        limit_file_size(20000);
        bool told = COPY_TO_SCRATCH(OPEN_SOURCE("a").get(), "scratch") == 2 && errno == EFBIG;
        exit(told ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
  Owned_stream unreadable = OPEN_STREAM("a", "a");
  EXPECT_EQ(COPY_TO_SCRATCH(unreadable.get(), "scratch"), 1);
  EXPECT_EQ(errno, EBADF);
}

TEST(CopierFichier, AnOldDestinationIsReplacedWhole) {
  Scratch_dir dir;
  dir.write("a", "new");
  dir.write("b", "old and longer");
  EXPECT_EQ(copier_fichier("a", "b"), 0);
  EXPECT_EQ(dir.read("b"), "new");
}

TEST(CopierFichier, AFileCopiedOnItselfStays) {
  Scratch_dir dir;
  dir.write("a", "text");
  EXPECT_EQ(copier_fichier("a", "./a"), 0);
  EXPECT_EQ(dir.read("a"), "text");
}

TEST(CopierFichier, AMissingSourceGivesOneAndTouchesNothing) {
  Scratch_dir dir;
  dir.write("b", "old");
  EXPECT_EQ(copier_fichier("a", "b"), 1);
  EXPECT_EQ(dir.read("b"), "old");
}

TEST(CopierFichier, ADirectoryIsNoSource) {
  Scratch_dir dir;
  dir.write("folder/a", "");
  EXPECT_EQ(copier_fichier("folder", "b"), 1);
  EXPECT_EQ(errno, EISDIR);
  EXPECT_FALSE(dir.exists("b"));
}

TEST(CopierFichier, ADestinationThatCannotBeOpenedGivesTwo) {
  Scratch_dir dir;
  dir.write("a", "new");
  dir.write("folder/b", "");
  EXPECT_EQ(copier_fichier("a", "folder"), 2);
  EXPECT_EQ(copier_fichier("a", "nowhere/b"), 2);
  EXPECT_EQ(copier_fichier("a", ""), 2);
}

TEST(CopierFichier, AMissingSourceIsSeenBeforeTheDestination) {
  Scratch_dir dir;
  EXPECT_EQ(copier_fichier("a", "nowhere/b"), 1);
}

TEST(CopierFichier, AFullDiskEndsTheProgramAndLeavesTheOldFile) {
  Scratch_dir dir;
  dir.write("a", any_bytes(100000));
  dir.write("b", "old");
  ENDS_WITH_STATUS(
      {
        SET_SAVED_LOG(fopen("log", "w"));
        limit_file_size(50000);
        copier_fichier("a", "b");
      },
      1, "cannot write file b: File too large \n");
  EXPECT_EQ(dir.read("b"), "old");
  EXPECT_EQ(dir.read("log"), "cannot write file b: File too large \n");
  EXPECT_FALSE(dir.exists(".new_b"));
}

TEST(CopierFichier, ASourceThatCannotBeReadEndsTheProgramAndLeavesTheOldFile) {
  Scratch_dir dir;
  dir.write("b", "old");
  ENDS_WITH_STATUS(
      {
        SET_SAVED_LOG(fopen("log", "w"));
        copier_fichier("/proc/self/mem", "b");
      },
      1, "cannot read file /proc/self/mem: Input/output error \n");
  EXPECT_EQ(dir.read("b"), "old");
  EXPECT_EQ(dir.read("log"), "cannot read file /proc/self/mem: Input/output error \n");
  EXPECT_FALSE(dir.exists(".new_b"));
}

TEST(BackUpFile, TheBackUpStandsBesideTheFile) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_verbs", "history");
  EXPECT_EQ(back_up_of("IDX1/idx1_verbs"), "./IDX1/cpy_idx1_verbs");
  EXPECT_EQ(dir.read("IDX1/cpy_idx1_verbs"), "history");
  EXPECT_EQ(dir.read("IDX1/idx1_verbs"), "history");
}

TEST(BackUpFile, AFileOfTheWorkingDirectoryIsBackedUpThere) {
  Scratch_dir dir;
  dir.write("verbs.txt", "words");
  EXPECT_EQ(back_up_of("verbs.txt"), "./cpy_verbs.txt");
  EXPECT_EQ(dir.read("cpy_verbs.txt"), "words");
}

TEST(BackUpFile, AnAbsolutePathKeepsItsDirectory) {
  Scratch_dir dir;
  dir.write("verbs.txt", "words");
  EXPECT_EQ(back_up_of(dir.path() + "/verbs.txt"), dir.path() + "/cpy_verbs.txt");
}

TEST(BackUpFile, OnlyOneGenerationIsKept) {
  Scratch_dir dir;
  dir.write("verbs.txt", "new");
  dir.write("cpy_verbs.txt", "older and longer");
  EXPECT_EQ(back_up_of("verbs.txt"), "./cpy_verbs.txt");
  EXPECT_EQ(dir.read("cpy_verbs.txt"), "new");
}

TEST(BackUpFile, AFileThatDoesNotExistGivesNothing) {
  Scratch_dir dir;
  testing::internal::CaptureStdout();
  EXPECT_EQ(back_up_of("IDX1/idx1_verbs"), "(null)");
  EXPECT_EQ(back_up_of(""), "(null)");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(BackUpFile, ABackUpThatCannotBeOpenedGivesNothing) {
  Scratch_dir dir;
  dir.write("verbs.txt", "words");
  dir.write("cpy_verbs.txt/in_the_way", "");
  EXPECT_EQ(back_up_of("verbs.txt"), "(null)");
}
