// Files replaced as a whole.
#include "util/safe_write.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "support/prelude.h"
#include "support/present.h"
#include "support/scratch.h"

namespace {

// The faults a test wants: the errno with which the next fsync or rename fails, 0 for none.
struct {
  int fsync_fault = 0;
  int rename_fault = 0;
} faults;

int fails_with(int *fault) {
  errno = *fault;
  *fault = 0;
  return -1;
}

// Opens a.txt, over "old", with "new" written to the file beside it.
void begin_new_file(const Scratch_dir &dir, Trf_new_file *file) {
  dir.write("a.txt", "old");
  ASSERT_TRUE(OPEN_NEW_FILE("a.txt", file));
  fputs("new", file->fp);
}

void expect_only_the_old_file(const Scratch_dir &dir) {
  EXPECT_EQ(dir.read("a.txt"), "old");
  EXPECT_FALSE(dir.exists(".new_a.txt"));
}

// Replaces a.txt. What COMMIT_NEW_FILE returns.
int replace_by(const std::string &bytes) {
  Trf_new_file file;
  EXPECT_TRUE(OPEN_NEW_FILE("a.txt", &file));
  fwrite(bytes.data(), 1, bytes.size(), file.fp);
  return COMMIT_NEW_FILE(&file);
}

struct stat about(const char *path) {
  struct stat known = {};
  EXPECT_EQ(stat(path, &known), 0);
  return known;
}

// No file may grow beyond so many bytes: a write beyond fails.
void limit_file_size(rlim_t bytes) {
  signal(SIGXFSZ, SIG_IGN);
  struct rlimit limit = {bytes, bytes};
  setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

extern "C" int fsync(int descriptor) {
  static auto *real = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"));
  return faults.fsync_fault != 0 ? fails_with(&faults.fsync_fault) : real(descriptor);
}

extern "C" int rename(const char *from, const char *to) noexcept {
  static auto *real =
      reinterpret_cast<int (*)(const char *, const char *)>(dlsym(RTLD_NEXT, "rename"));
  return faults.rename_fault != 0 ? fails_with(&faults.rename_fault) : real(from, to);
}

TEST(SafeWrite, AFileOfTheSameBytesStaysAndBecomesAsYoung) {
  Scratch_dir dir;
  for (const std::string &bytes : {std::string(), std::string("same"), std::string(40000, 'x')}) {
    dir.write("a.txt", bytes);
    struct timespec old[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, "a.txt", old, 0), 0);
    ino_t inode = about("a.txt").st_ino;
    time_t before = time(nullptr);
    EXPECT_EQ(replace_by(bytes), 0);
    EXPECT_EQ(about("a.txt").st_ino, inode);
    EXPECT_GE(about("a.txt").st_mtime, before);
    EXPECT_EQ(dir.read("a.txt"), bytes);
    EXPECT_FALSE(dir.exists(".new_a.txt"));
  }
}

TEST(SafeWrite, AFileThatDiffersAnywhereIsReplaced) {
  Scratch_dir dir;
  for (size_t at : {(size_t)0, (size_t)16383, (size_t)16384, (size_t)39999, (size_t)40000}) {
    std::string bytes(40000, 'x');
    dir.write("a.txt", bytes);
    ino_t inode = about("a.txt").st_ino;
    bytes.replace(at, 1, "y"); // at the end one more
    EXPECT_EQ(replace_by(bytes), 0);
    EXPECT_NE(about("a.txt").st_ino, inode) << at;
    EXPECT_EQ(dir.read("a.txt"), bytes) << at;
  }
}

TEST(SafeWrite, TheOldFileStandsUntilTheCommit) {
  Scratch_dir dir;
  dir.write("a.txt", "old");
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE("a.txt", &file));
  fputs("new", file.fp);
  fflush(file.fp);
  EXPECT_EQ(dir.read("a.txt"), "old");
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(dir.read("a.txt"), "new");
  EXPECT_FALSE(dir.exists(".new_a.txt"));
}

TEST(SafeWrite, TheModeOfTheOldFileIsKept) {
  Scratch_dir dir;
  dir.write("a.txt", "old");
  chmod("a.txt", 0640);
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE("a.txt", &file));
  COMMIT_NEW_FILE(&file);
  struct stat now;
  stat("a.txt", &now);
  EXPECT_EQ(now.st_mode & 0777, 0640u);
}

TEST(SafeWrite, ASymbolicLinkIsFollowed) {
  Scratch_dir dir;
  dir.write("real/a.txt", "old");
  symlink("real/a.txt", "link");
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE("link", &file));
  fputs("new", file.fp);
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(dir.read("real/a.txt"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink("link"));
}

TEST(SafeWrite, AFileThatIsDroppedLeavesTheOldOne) {
  Scratch_dir dir;
  dir.write("a.txt", "old");
  {
    Trf_new_file file;
    ASSERT_TRUE(OPEN_NEW_FILE("a.txt", &file));
    fputs("new", file.fp);
  }
  EXPECT_EQ(dir.read("a.txt"), "old");
  EXPECT_FALSE(dir.exists(".new_a.txt"));
}

TEST(SafeWrite, ADirectoryOrAMissingFolderCannotBeOpened) {
  Scratch_dir dir;
  std::filesystem::create_directory("folder");
  Trf_new_file file;
  EXPECT_FALSE(OPEN_NEW_FILE("folder", &file));
  EXPECT_FALSE(OPEN_NEW_FILE("nowhere/a.txt", &file));
}

TEST(SafeWrite, AnEmptyNameCannotBeOpened) {
  Scratch_dir dir;
  Trf_new_file file;
  EXPECT_FALSE(OPEN_NEW_FILE("", &file));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(dir.exists(".new_"));
}

TEST(SafeWrite, AFailedWriteEndsTheProgramAndLeavesTheOldFile) {
  Scratch_dir dir;
  dir.write("a.txt", "old");
  ENDS_WITH_STATUS(
      {
        Trf_new_file file;
        OPEN_NEW_FILE("a.txt", &file);
        fclose(file.fp);
        file.fp = fopen("/dev/full", "w");
        fputs("new", file.fp);
        COMMIT_OR_STOP(&file, "a.txt", nullptr);
      },
      1, "cannot write file a.txt: No space left on device ");
  EXPECT_EQ(dir.read("a.txt"), "old");
}

TEST(SafeWrite, ALinkWithNoFileBehindItMakesTheFile) {
  Scratch_dir dir;
  std::filesystem::create_directory("real");
  symlink("real/a.txt", "link");
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE("link", &file));
  fputs("new", file.fp);
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(dir.read("real/a.txt"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink("link"));
}

TEST(SafeWrite, ALinkToALinkIsFollowedToItsEnd) {
  Scratch_dir dir;
  dir.write("one/a.txt", "old");
  symlink("../one/a.txt", "one/second");
  symlink((dir.path() + "/one/second").c_str(), "one/first");
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE("one/first", &file));
  fputs("new", file.fp);
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(dir.read("one/a.txt"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink("one/second"));
}

TEST(SafeWrite, ALinkIntoAMissingFolderOrARingCannotBeOpened) {
  Scratch_dir dir;
  symlink("nowhere/a.txt", "link");
  symlink("ring", "ring");
  Trf_new_file file;
  EXPECT_FALSE(OPEN_NEW_FILE("link", &file));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(OPEN_NEW_FILE("ring", &file));
  EXPECT_EQ(errno, ELOOP);
}

TEST(SafeWrite, AFileWithoutWritePermissionCannotBeOpened) {
  if (geteuid() == 0) {
    // The rights of others count only for them: look through their eyes.
    Scratch_dir dir;
    dir.write("a.txt", "old");
    chmod("a.txt", 0444);
    chmod(".", 0777);
    EXPECT_EXIT(
        {
          if (seteuid(65534) != 0)
            _exit(3);
          Trf_new_file file;
          bool open = OPEN_NEW_FILE("a.txt", &file);
          _exit(!open && errno == EACCES ? 0 : 4);
        },
        testing::ExitedWithCode(0), "");
    return;
  }
  Scratch_dir dir;
  dir.write("a.txt", "old");
  chmod("a.txt", 0444);
  Trf_new_file file;
  EXPECT_FALSE(OPEN_NEW_FILE("a.txt", &file));
  EXPECT_EQ(errno, EACCES);
  expect_only_the_old_file(dir);
}

TEST(SafeWrite, ADeviceIsNotReplaced) {
  Scratch_dir dir;
  Trf_new_file file;
  EXPECT_FALSE(OPEN_NEW_FILE("/dev/null", &file));
  EXPECT_EQ(errno, EINVAL);
}

TEST(SafeWrite, ANameOfTheGreatestLengthIsWritten) {
  Scratch_dir dir;
  const std::string name(255, 'n');
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE(name.c_str(), &file));
  fputs("new", file.fp);
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(dir.read(name), "new");
}

TEST(SafeWrite, TheNameBesideMayBeGiven) {
  Scratch_dir dir;
  dir.write("IDX1/a.txt", "old");
  Trf_new_file file;
  ASSERT_TRUE(OPEN_NEW_FILE_AS("IDX1/a.txt", "beside", &file));
  EXPECT_TRUE(dir.exists("IDX1/beside"));
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_FALSE(dir.exists("IDX1/beside"));
}

TEST(SafeWrite, WhatAnInterruptedWriteLeftBesideIsReplaced) {
  Scratch_dir dir;
  dir.write(".new_a.txt", "half of somethi");
  Trf_new_file file;
  begin_new_file(dir, &file);
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(dir.read("a.txt"), "new");
}

TEST(SafeWrite, OpeningAnotherFileDropsTheOneBefore) {
  Scratch_dir dir;
  Trf_new_file file;
  begin_new_file(dir, &file);
  ASSERT_TRUE(OPEN_NEW_FILE("b.txt", &file));
  expect_only_the_old_file(dir);
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_TRUE(dir.exists("b.txt"));
}

TEST(SafeWrite, NothingOpenCannotBeCommitted) {
  Trf_new_file file;
  EXPECT_EQ(COMMIT_NEW_FILE(&file), EBADF);
}

TEST(SafeWrite, AShortWriteLeavesTheOldFileAndKeepsItsReason) {
  Scratch_dir dir;
  dir.write("a.txt", "old");
  EXPECT_EXIT(
      {
        limit_file_size(10000);
        Trf_new_file file;
        OPEN_NEW_FILE("a.txt", &file);
        for (int i = 0; i < 20000; i++)
          fputs("more ", file.fp);
        _exit(COMMIT_NEW_FILE(&file) == EFBIG ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
  expect_only_the_old_file(dir);
}

TEST(SafeWrite, AFailedSyncLeavesTheOldFile) {
  Scratch_dir dir;
  Trf_new_file file;
  begin_new_file(dir, &file);
  faults.fsync_fault = EDQUOT;
  EXPECT_EQ(COMMIT_NEW_FILE(&file), EDQUOT);
  EXPECT_EQ(file.fp, nullptr);
  expect_only_the_old_file(dir);
}

TEST(SafeWrite, AFailedRenameLeavesTheOldFile) {
  Scratch_dir dir;
  Trf_new_file file;
  begin_new_file(dir, &file);
  faults.rename_fault = EACCES;
  EXPECT_EQ(COMMIT_NEW_FILE(&file), EACCES);
  expect_only_the_old_file(dir);
}

TEST(SafeWrite, AFailedRenameEndsTheProgramAndIsLogged) {
  Scratch_dir dir;
  dir.write("a.txt", "old");
  ENDS_WITH_STATUS(
      {
        Trf_new_file file;
        OPEN_NEW_FILE("a.txt", &file);
        faults.rename_fault = EROFS;
        COMMIT_OR_STOP(&file, "./a.txt", fopen("log", "w"));
      },
      1, "cannot write file ./a.txt: Read-only file system \n");
  EXPECT_EQ(dir.read("log"), "cannot write file ./a.txt: Read-only file system \n");
  expect_only_the_old_file(dir);
}

TEST(Present, TimeIsWhatTheTestSays) {
  SET_PRESENT(1000);
  EXPECT_EQ(time(nullptr), 1000);
  RESET_PRESENT();
  EXPECT_GT(time(nullptr), 1000000);
}
