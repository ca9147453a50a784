// Finding the learner's directory, and keeping a second program out of it.
#include "support/prelude.h"

#include "app/work_dir.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include "support/scratch.h"

namespace fs = std::filesystem;

namespace {

void start_as(std::string path) {
  testing::internal::CaptureStdout();
  WORK_DIR(path.data());
  testing::internal::GetCapturedStdout();
}

// What WORK_DIR prints, whatever it then does.
std::string told_by_start_as(std::string path) {
  testing::internal::CaptureStdout();
  WORK_DIR(path.data());
  return testing::internal::GetCapturedStdout();
}

void start_plainly_as(std::string path) {
  WORK_DIR(path.data());
}

// A lock on the file as another program would try it.
class Other_program {
public:
  explicit Other_program(const char *name) : fd_(open(name, O_RDONLY | O_CLOEXEC)) {
  }
  ~Other_program() {
    close(fd_);
  }
  bool locks() const {
    return flock(fd_, LOCK_EX | LOCK_NB) == 0;
  }

private:
  int fd_;
};

// The descriptors of this process that stand on a file of this name.
std::vector<int> descriptors_of(const std::string &path) {
  std::vector<int> found;
  for (const auto &entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (fs::read_symlink(entry.path(), gone) == path)
      found.push_back(std::stoi(entry.path().filename()));
  }
  return found;
}

} // namespace

TEST(WorkDir, StartedFromItsOwnDirectoryKeepsTheDirectory) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  start_as("./prog.x");
  EXPECT_EQ(fs::current_path(), dir.path());
}

TEST(WorkDir, AConfigurationInTheCurrentDirectoryWinsOverTheProgramsDirectory) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  dir.write("elsewhere/mertu.conf", "");
  start_as("elsewhere/prog.x");
  EXPECT_EQ(fs::current_path(), dir.path());
}

TEST(WorkDir, StartedFromElsewhereChangesToTheProgramsDirectory) {
  Scratch_dir dir;
  dir.write("some/dir/mertu.conf", "");
  start_as(dir.path() + "/some/dir/prog.x");
  EXPECT_EQ(fs::current_path(), dir.path() + "/some/dir");
}

TEST(WorkDir, ARelativePathLeadsToTheProgramsDirectory) {
  Scratch_dir dir;
  dir.write("some/mertu.conf", "");
  start_as("./some/prog.x");
  EXPECT_EQ(fs::current_path(), dir.path() + "/some");
}

TEST(WorkDir, ALongPathHasRoom) {
  Scratch_dir dir;
  std::string deep;
  for (int i = 0; i < 12; i++)
    deep += std::string(200, (char)('a' + i)) + "/";
  dir.write(deep + "mertu.conf", "");
  start_as(deep + "prog.x");
  EXPECT_EQ(fs::current_path(), fs::path(dir.path() + "/" + deep).parent_path());
}

TEST(WorkDir, TheCurrentDirectoryAndTheProgramsPathAreTold) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  std::string told = told_by_start_as("./prog.x");
  EXPECT_THAT(told, testing::HasSubstr(dir.path()));
  EXPECT_THAT(told, testing::HasSubstr("argv[0]=./prog.x \n"));
}

TEST(WorkDir, AProgramNameWithoutASlashElsewhereIsUnreachable) {
  Scratch_dir dir;
  ENDS_WITH_STATUS(start_plainly_as("prog.x"), 1, "\nfile ./mertu.conf unreachable stop \n$");
}

TEST(WorkDir, AProgramsDirectoryWithoutConfigurationIsUnreachable) {
  Scratch_dir dir;
  dir.write("some/other", "");
  ENDS_WITH_STATUS(start_plainly_as("./some/prog.x"), 1,
                   "\nfile ./mertu.conf unreachable stop \n$");
}

TEST(WorkDir, AProgramsDirectoryThatIsNotThereIsUnreachable) {
  Scratch_dir dir;
  ENDS_WITH_STATUS(start_plainly_as("/nowhere/at/all/prog.x"), 1,
                   "\nfile ./mertu.conf unreachable stop \n$");
}

TEST(WorkDir, APathThatABackslashEndsIsNotUnderstood) {
  Scratch_dir dir;
  dir.write("some/mertu.conf", "");
  ENDS_WITH_STATUS(start_plainly_as("some\\prog.x"), 1, "\nI don't understand stop\n$");
  ENDS_WITH_STATUS(start_plainly_as("./some\\prog.x"), 1, "\nI don't understand stop\n$");
}

TEST(WorkDir, ABackslashDoesNotMatterWhereTheCurrentDirectoryHasTheConfiguration) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  start_as("some\\prog.x");
  EXPECT_EQ(fs::current_path(), dir.path());
}

TEST(WorkDir, AProgramNameWithoutTheEndingIsRefused) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  ENDS_WITH_STATUS(start_plainly_as("./prog"), 1,
                   "\nerror not .x at end of argv\\[0\\]=./prog@@@@ \n$");
  ENDS_WITH_STATUS(start_plainly_as("./progx"), 1, "argv\\[0\\]=./progx@@@@ \n$");
  ENDS_WITH_STATUS(start_plainly_as("./prog.X"), 1, "argv\\[0\\]=./prog.X@@@@ \n$");
  ENDS_WITH_STATUS(start_plainly_as("./prog.x "), 1, "argv\\[0\\]=./prog.x @@@@ \n$");
  ENDS_WITH_STATUS(start_plainly_as("x"), 1, "argv\\[0\\]=x@@@@ \n$");
  ENDS_WITH_STATUS(start_plainly_as(""), 1, "argv\\[0\\]=@@@@ \n$");
}

TEST(WorkDir, NoPathAtAllIsRefused) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  ENDS_WITH_STATUS(WORK_DIR(nullptr), 1, "argv\\[0\\]=@@@@ \n$");
}

TEST(WorkDir, TheShortestNameIsTheEndingAlone) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  start_as(".x");
  EXPECT_EQ(fs::current_path(), dir.path());
}

TEST(WorkDirLock, HoldsOtherProgramsOffUntilTheEnd) {
  Scratch_dir dir;
  LOCK_WORK_DIR();
  EXPECT_FALSE(Other_program(".").locks());
}

TEST(WorkDirLock, HoldsWhenAnEditorPutsAnotherConfigurationInPlace) {
  Scratch_dir dir;
  dir.write("mertu.conf", "");
  Other_program other(".");
  ASSERT_TRUE(other.locks());
  dir.write("mertu.conf~", "");
  fs::rename("mertu.conf~", "mertu.conf");
  ENDS_WITH_STATUS(LOCK_WORK_DIR(), 1, "^Mertu is already running in " + dir.path() + " \n$");
}

TEST(WorkDirLock, ASecondProgramInTheDirectoryEnds) {
  Scratch_dir dir;
  Other_program other(".");
  ASSERT_TRUE(other.locks());
  ENDS_WITH_STATUS(LOCK_WORK_DIR(), 1, "^Mertu is already running in " + dir.path() + " \n$");
}

TEST(WorkDirLock, TwoDirectoriesDoNotDisturbEachOther) {
  Scratch_dir dir;
  fs::create_directory("one");
  Other_program other("one");
  ASSERT_TRUE(other.locks());
  LOCK_WORK_DIR();
  EXPECT_FALSE(Other_program(".").locks());
}

TEST(WorkDirLock, MovingToAnotherDirectoryGivesTheFirstBack) {
  Scratch_dir dir;
  fs::create_directory("one");
  LOCK_WORK_DIR();
  fs::current_path("one");
  LOCK_WORK_DIR();
  EXPECT_TRUE(Other_program("..").locks());
  EXPECT_FALSE(Other_program(".").locks());
}

TEST(WorkDirLock, ADirectoryThatCannotBeOpenedIsNoReasonToStop) {
  Scratch_dir dir;
  struct rlimit files;
  getrlimit(RLIMIT_NOFILE, &files);
  struct rlimit none = {0, files.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  LOCK_WORK_DIR();
  setrlimit(RLIMIT_NOFILE, &files);
  EXPECT_TRUE(Other_program(".").locks());
}

TEST(WorkDirLock, IsNotHandedToProgramsStartedFromThisOne) {
  Scratch_dir dir;
  LOCK_WORK_DIR();
  std::vector<int> held = descriptors_of(dir.path());
  ASSERT_EQ(held.size(), 1u);
  EXPECT_TRUE(fcntl(held[0], F_GETFD) & FD_CLOEXEC);
}
