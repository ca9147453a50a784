// Files replaced as a whole.
#include "util/safe_write.h"

#include <sys/stat.h>

#include "support/prelude.h"
#include "support/present.h"
#include "support/scratch.h"

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

TEST(Present, TimeIsWhatTheTestSays) {
  SET_PRESENT(1000);
  EXPECT_EQ(time(nullptr), 1000);
  RESET_PRESENT();
  EXPECT_GT(time(nullptr), 1000000);
}
