// Tests of history lines written over, each as a whole or not at all.
#include "db/pending_changes.h"

#include "db_files.h"
#include "support/killed.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "util/in_place.h"

using testing::Contains;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

const char INDEX[] = "./idx1_a";
const std::string OLD = history_line(3, 2, 2900, 2800).substr(0, 52);
const std::string NEW = history_line(4, 2, 3000, 2800).substr(0, 52);
const std::string OTHER = history_line(7, 5, 2950, 2850).substr(0, 52);
const std::string FRONT = idx1_header(INDEX, "a1") + "#mot *a1 0 * x \r\n";

std::string index_with(const std::string &line) {
  return FRONT + line + "\r\n" + NEVER_LINE + idx1_trailer(7);
}

// The part of a note that tells of one place.
std::string noted(const std::string &path, long start, const std::string &before,
                  const std::string &after) {
  return path + " " + std::to_string(start) + " " + std::to_string(before.size()) + "\n" + before +
         "\n" + after + "\n";
}

const std::string NOTE = noted(INDEX, (long)FRONT.size(), OLD, NEW);

// Changes the line of the index; returns what could not be written.
Trf_unwritten change_line(const std::string &text, const char *path = INDEX) {
  Trf_pending pending;
  Owned_stream fp = OPEN_STREAM(path, "r");
  EXPECT_EQ(ADD_CHANGE(fp.get(), path, (long)FRONT.size(), text, &pending), 0);
  Trf_unwritten unwritten = WRITE_PENDING(&pending, nullptr);
  EXPECT_TRUE(pending.waiting.empty());
  EXPECT_TRUE(pending.unsure.empty());
  return unwritten;
}

void change_to_new() {
  change_line(NEW);
}

void change_to_old() {
  change_line(OLD);
}

void finish() {
  FINISH_PENDING(nullptr);
}

// The index after a start that finds this note.
std::string finished(const std::string &note, const std::string &index) {
  Scratch_dir dir;
  dir.write(INDEX, index);
  dir.write("mertu_pending", note);
  FINISH_PENDING(nullptr);
  EXPECT_FALSE(dir.exists("mertu_pending"));
  return dir.read(INDEX);
}

void expect_stop(const Scratch_dir &dir, const std::string &text) {
  Owned_stream log = OPEN_STREAM("log", "w");
  ENDS_WITH_STATUS(FINISH_PENDING(log.get()), 1, text);
  EXPECT_EQ(dir.read("log"), text);
}

} // namespace

TEST(PendingChanges, TheNewBytesStandAtTheirPlaceAndNoNoteIsLeft) {
  Scratch_dir dir;
  dir.write(INDEX, index_with(OLD));
  EXPECT_TRUE(change_line(NEW).empty());
  EXPECT_EQ(dir.read(INDEX), index_with(NEW));
  EXPECT_FALSE(dir.exists("mertu_pending"));
  EXPECT_FALSE(dir.exists(".new_mertu_pending"));
}

// Each sync, write, renaming and removal is a step.
TEST(PendingChanges, WhereNothingChangesNothingIsWrittenNorSynced) {
  Scratch_dir dir;
  dir.write(INDEX, index_with(OLD));
  EXPECT_FALSE(KILLED_RUN(change_to_old, 1, 0));
  EXPECT_EQ(dir.read(INDEX), index_with(OLD));
}

TEST(PendingChanges, TheNoteIsOnTheDiskBeforeTheLineIsTouchedAndGoesBehindItForGood) {
  // Before: the bytes, the name and the directory go to the disk. Then the line, and it goes to the
  // disk. Then the note is removed, and that goes there.
  const int steps = 3 + 2 + 2;
  for (int step = 1; step <= 2 * steps + 1; step++) {
    Scratch_dir dir;
    dir.write(INDEX, index_with(OLD));
    EXPECT_EQ(KILLED_RUN(change_to_new, step, 0), step <= 2 * steps) << step;
    EXPECT_EQ(dir.exists("mertu_pending"), step > 3 && step < 12) << step;
    if (dir.exists("mertu_pending")) {
      EXPECT_EQ(dir.read("mertu_pending"), NOTE) << step;
    }
    EXPECT_EQ(dir.read(INDEX), index_with(step < 8 ? OLD : NEW)) << step;
  }
}

TEST(PendingChanges, TornAtEveryByteTheLineBecomesTheNewOne) {
  for (size_t at = 0; at <= OLD.size(); at++) {
    EXPECT_EQ(finished(NOTE, index_with(NEW.substr(0, at) + OLD.substr(at))), index_with(NEW));
    EXPECT_EQ(finished(NOTE, index_with(OLD.substr(0, at) + NEW.substr(at))), index_with(NEW));
  }
}

TEST(PendingChanges, WhatCameLaterIsLeftAlone) {
  EXPECT_EQ(finished(NOTE, index_with(OTHER)), index_with(OTHER));
  EXPECT_EQ(finished(NOTE, "#x *a1 9 * \r\n" + index_with(OLD)),
            "#x *a1 9 * \r\n" + index_with(OLD));
}

TEST(PendingChanges, AnIndexThatEndsBeforeThePlaceIsLeftAlone) {
  std::string index = index_with(OLD);
  for (size_t length : {(size_t)0, FRONT.size(), FRONT.size() + 51})
    EXPECT_EQ(finished(NOTE, index.substr(0, length)), index.substr(0, length));
  EXPECT_EQ(finished(NOTE, index.substr(0, FRONT.size() + 52)), FRONT + NEW);
  std::string far = noted(INDEX, LONG_MAX, OLD, NEW);
  EXPECT_EQ(finished(far, index), index);
}

TEST(PendingChanges, ChangesOfOnePlaceAreCarriedOutOneBehindTheOther) {
  std::string note = NOTE + noted(INDEX, (long)FRONT.size(), NEW, OTHER);
  for (const std::string &line : {OLD, NEW, OTHER})
    EXPECT_EQ(finished(note, index_with(line)), index_with(OTHER));
  for (size_t at = 0; at <= NEW.size(); at++)
    EXPECT_EQ(finished(note, index_with(OTHER.substr(0, at) + NEW.substr(at))), index_with(OTHER));
}

TEST(PendingChanges, SeveralFilesAndPlacesAreCarriedOut) {
  Scratch_dir dir;
  dir.write(INDEX, index_with(OLD));
  dir.write("sub/idx1_b", index_with(OLD));
  long second = (long)(FRONT.size() + 54);
  std::string blank = NEVER_LINE.substr(0, 52);
  dir.write("mertu_pending",
            NOTE + noted("./idx1_none", 5, OLD, NEW) + noted("./sub/idx1_b", second, blank, OTHER) +
                noted("./sub/idx1_b/idx1_c", 5, OLD, NEW) + noted(INDEX, second, blank, NEW));
  FINISH_PENDING(nullptr);
  EXPECT_EQ(dir.read(INDEX), FRONT + NEW + "\r\n" + NEW + "\r\n" + idx1_trailer(7));
  EXPECT_EQ(dir.read("sub/idx1_b"), FRONT + OLD + "\r\n" + OTHER + "\r\n" + idx1_trailer(7));
  EXPECT_FALSE(dir.exists("mertu_pending"));
}

TEST(PendingChanges, AFileThatIsNoIndexIsPassedOver) {
  Scratch_dir dir;
  for (const char *name : {"a", "idx2_a", "idx1_a/a"})
    dir.write(name, OLD);
  std::filesystem::create_directory("idx1_b");
  ASSERT_EQ(mkfifo("idx1_c", 0600), 0);
  dir.write("mertu_pending", noted("idx1_c", 0, OLD, NEW) +
                                 noted("idx1_" + std::string(5000, 'x'), 0, OLD, NEW) +
                                 noted("a", 0, OLD, NEW) + noted("./idx2_a", 0, OLD, NEW) +
                                 noted("idx1_a/a", 0, OLD, NEW) + noted("idx1_b", 0, OLD, NEW) +
                                 noted(std::string("a\0/idx1_a", 9), 0, OLD, NEW));
  FINISH_PENDING(nullptr);
  for (const char *name : {"a", "idx2_a", "idx1_a/a"})
    EXPECT_EQ(dir.read(name), OLD) << name;
  EXPECT_FALSE(dir.exists("mertu_pending"));
}

TEST(PendingChanges, BehindAPlaceThatCannotBeUnderstoodNothingIsCarriedOut) {
  std::string last = noted(INDEX, (long)FRONT.size() + 54, NEVER_LINE.substr(0, 52), OTHER);
  std::string changed = FRONT + NEW + "\r\n" + OTHER + "\r\n" + idx1_trailer(7);
  EXPECT_EQ(finished(NOTE + last, index_with(OLD)), changed);
  for (const char *bad :
       {"\n", "x\n", "./idx1_a\n", "./idx1_a 5\n", "./idx1_a 5 0\n\n\n", "./idx1_a 5 -1\nx\ny\n",
        "./idx1_a -5 1\nx\ny\n", "./idx1_a 5 1 x\nx\ny\n", "./idx1_a 5 1\nxx\ny\n",
        "./idx1_a 5 99999999999999999999\nx\ny\n", "./idx1_a 5 9223372036854775807\nx\ny\n"})
    EXPECT_EQ(finished(NOTE + bad + last, index_with(OLD)), index_with(NEW)) << bad;
}

TEST(PendingChanges, ANoteCutAnywhereIsCarriedOutAsFarAsItGoes) {
  for (size_t length = 0; length <= NOTE.size(); length++)
    EXPECT_EQ(finished(NOTE.substr(0, length), index_with(OLD)),
              index_with(length == NOTE.size() ? NEW : OLD));
}

TEST(PendingChanges, AnIndexCarriedOutKeepsItsModificationTime) {
  Scratch_dir dir;
  dir.write(INDEX, index_with(OLD));
  dir.write("mertu_pending", NOTE);
  struct timespec times[2] = {{0, UTIME_OMIT}, {1100000000, 5}};
  utimensat(AT_FDCWD, INDEX, times, 0);
  FINISH_PENDING(nullptr);
  EXPECT_EQ(dir.read(INDEX), index_with(NEW));
  struct stat about;
  ASSERT_EQ(stat(INDEX, &about), 0);
  EXPECT_EQ(about.st_mtim.tv_sec, 1100000000);
  EXPECT_EQ(about.st_mtim.tv_nsec, 5);
}

TEST(PendingChanges, AStartTakesTheNoteAwayWhenTheLineIsOnTheDisk) {
  // The line, its time, and it goes to the disk. Then the note is removed, and that goes there.
  const int steps = 3 + 2;
  for (int step = 1; step <= 2 * steps + 1; step++) {
    Scratch_dir dir;
    dir.write(INDEX, index_with(OLD));
    dir.write("mertu_pending", NOTE);
    EXPECT_EQ(KILLED_RUN(finish, step, 0), step <= 2 * steps) << step;
    EXPECT_EQ(dir.exists("mertu_pending"), step < 8) << step;
    EXPECT_EQ(dir.read(INDEX), index_with(step < 2 ? OLD : NEW)) << step;
  }
}

// A full disk still takes what needs no new room.
TEST(PendingChanges, WhereTheNoteCannotBeWrittenTheLinesAreWrittenAndThatIsTold) {
  Scratch_dir dir;
  dir.write(INDEX, index_with(OLD));
  std::filesystem::create_directory(".new_mertu_pending");
  testing::internal::CaptureStdout();
  EXPECT_TRUE(change_line(NEW).empty());
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "cannot write file ./mertu_pending: File exists \n");
  EXPECT_EQ(dir.read(INDEX), index_with(NEW));
}

TEST(PendingChanges, AFileThatCannotBeWrittenIsReturnedAndTheOthersAreWritten) {
  Scratch_dir dir;
  Trf_pending pending;
  for (const char *path : {"idx1_a", "idx1_b"}) {
    dir.write(path, index_with(OLD));
    Owned_stream fp = OPEN_STREAM(path, "r");
    EXPECT_EQ(ADD_CHANGE(fp.get(), path, (long)FRONT.size(), NEW, &pending), 0);
  }
  std::filesystem::remove("idx1_a");
  EXPECT_THAT(WRITE_PENDING(&pending, nullptr), UnorderedElementsAre(Pair("idx1_a", ENOENT)));
  EXPECT_EQ(dir.read("idx1_b"), index_with(NEW));
  EXPECT_FALSE(dir.exists("mertu_pending"));
}

TEST(PendingChanges, AnIndexThatWasReplacedMeanwhileIsLeftAloneAndReturned) {
  Scratch_dir dir;
  dir.write(INDEX, index_with(OLD));
  Trf_pending pending;
  Owned_stream fp = OPEN_STREAM(INDEX, "r");
  EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, (long)FRONT.size(), NEW, &pending), 0);
  dir.write(INDEX, index_with(OTHER));
  EXPECT_THAT(WRITE_PENDING(&pending, nullptr), UnorderedElementsAre(Pair(INDEX, ESTALE)));
  EXPECT_EQ(dir.read(INDEX), index_with(OTHER));
}

// It is not known to be the old or the new one: the next start looks once more.
TEST(PendingChanges, ALineThatIsNotKnownToBeWholeStaysNotedWithThoseBehindIt) {
  Scratch_dir dir;
  Trf_pending pending;
  dir.write(INDEX, index_with(OLD));
  dir.write("idx1_b", index_with(OLD));
  Owned_stream fp = OPEN_STREAM(INDEX, "r");
  EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, (long)FRONT.size(), NEW, &pending), 0);
  dir.write(INDEX, index_with(OTHER));
  WRITE_PENDING(&pending, nullptr);
  EXPECT_EQ(dir.read("mertu_pending"), NOTE);
  Owned_stream other = OPEN_STREAM("idx1_b", "r");
  EXPECT_EQ(ADD_CHANGE(other.get(), "idx1_b", (long)FRONT.size(), NEW, &pending), 0);
  EXPECT_TRUE(WRITE_PENDING(&pending, nullptr).empty());
  EXPECT_EQ(dir.read("mertu_pending"), NOTE + noted("idx1_b", (long)FRONT.size(), OLD, NEW));
  FINISH_PENDING(nullptr);
  EXPECT_FALSE(dir.exists("mertu_pending"));
}

TEST(PendingChanges, OneDoubtfulLineOfSeveralInAFileKeepsThemNoted) {
  const std::string blank = NEVER_LINE.substr(0, 52);
  const long second = (long)FRONT.size() + 54;
  for (bool is_first : {true, false}) {
    Scratch_dir dir;
    Trf_pending pending;
    dir.write(INDEX, index_with(OLD));
    Owned_stream fp = OPEN_STREAM(INDEX, "r");
    EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, (long)FRONT.size(), NEW, &pending), 0);
    EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, second, NEW, &pending), 0);
    std::string index = index_with(OLD);
    index.replace(is_first ? FRONT.size() : (size_t)second, 52, OTHER);
    dir.write(INDEX, index);
    EXPECT_THAT(WRITE_PENDING(&pending, nullptr), UnorderedElementsAre(Pair(INDEX, ESTALE)));
    EXPECT_EQ(dir.read(INDEX), index.replace(is_first ? (size_t)second : FRONT.size(), 52, NEW));
    EXPECT_EQ(dir.read("mertu_pending"), NOTE + noted(INDEX, second, blank, NEW));
    EXPECT_EQ(pending.unsure.size(), 2u);
  }
}

// Its file may not grow so far: nothing of it is written.
TEST(PendingChanges, ALineThatKeptItsOldBytesIsInNoDoubtButTakesNoneFromAnother) {
  const std::string filling(4096, 'x');
  const long second = (long)(OLD.size() + filling.size());
  for (bool doubt : {false, true}) {
    Scratch_dir dir;
    Trf_pending pending;
    dir.write(INDEX, OLD + filling + OLD);
    Owned_stream fp = OPEN_STREAM(INDEX, "r");
    EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, 0, NEW, &pending), 0);
    EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, second, NEW, &pending), 0);
    dir.write(INDEX, (doubt ? OTHER : OLD) + filling + OLD);
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    struct rlimit small = {(rlim_t)second, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    Trf_unwritten unwritten = WRITE_PENDING(&pending, nullptr);
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_DFL);
    EXPECT_EQ(unwritten.size(), doubt ? 2u : 1u);
    EXPECT_THAT(unwritten, Contains(Pair(INDEX, EFBIG)));
    EXPECT_EQ(dir.read(INDEX), (doubt ? OTHER : NEW) + filling + OLD);
    EXPECT_EQ(dir.exists("mertu_pending"), doubt);
  }
}

TEST(PendingChanges, BytesThatAreNotThereAreNoPlace) {
  Scratch_dir dir;
  dir.write(INDEX, "0123456789");
  Trf_pending pending;
  Owned_stream fp = OPEN_STREAM(INDEX, "r");
  EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, 8, "abc", &pending), EIO);
  EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, -1, "abc", &pending), EINVAL);
  EXPECT_EQ(ADD_CHANGE(fp.get(), INDEX, 3, "", &pending), 0);
  EXPECT_TRUE(pending.waiting.empty());
}

TEST(PendingChanges, WhetherBytesWaitIsKnown) {
  Trf_pending pending;
  pending.waiting[{"b", 10}] = {"xxxxx", "yyyyy"};
  pending.waiting[{"b", 20}] = {"xxxxx", "yyyyy"};
  for (auto [start, end] : {std::pair(0L, 11L), {14, 15}, {14, 20}, {12, 13}, {24, 99}, {0, 99}})
    EXPECT_TRUE(IS_PENDING("b", start, end, pending)) << start;
  for (auto [start, end] : {std::pair(0L, 10L), {15, 20}, {25, 99}, {10, 10}})
    EXPECT_FALSE(IS_PENDING("b", start, end, pending)) << start;
  for (const char *path : {"a", "c", ""})
    EXPECT_FALSE(IS_PENDING(path, 0, 99, pending)) << path;
}

TEST(PendingChanges, ANoteThatCannotBeReadEndsTheProgramAndStays) {
  Scratch_dir dir;
  std::filesystem::create_symlink("mertu_pending", "mertu_pending");
  expect_stop(dir, "cannot read file ./mertu_pending: Too many levels of symbolic links \n");
  EXPECT_TRUE(std::filesystem::is_symlink("mertu_pending"));
}

TEST(PendingChanges, AFileThatCannotBeFinishedEndsTheProgramAndStaysNoted) {
  Scratch_dir dir;
  std::filesystem::create_symlink("idx1_a", "idx1_a");
  dir.write("mertu_pending", NOTE);
  expect_stop(dir, "cannot write file ./idx1_a: Too many levels of symbolic links \n");
  EXPECT_EQ(dir.read("mertu_pending"), NOTE);
}

TEST(PendingChanges, ADirectoryOfTheNotesNameIsNoNote) {
  Scratch_dir dir;
  dir.write("mertu_pending/file", "");
  FINISH_PENDING(nullptr);
  EXPECT_TRUE(dir.exists("mertu_pending/file"));
}
