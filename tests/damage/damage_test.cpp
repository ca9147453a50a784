// Malformed databases as a whole: a healthy directory damaged in one random way, then the program
// started and worked with. It ends as it is meant to, or works; it never crashes and never hangs,
// and no history goes but those of the file that was damaged.
//
// MERTU_DAMAGES=FROM-TO in the environment tries other damages than those of every test run:
//   MERTU_DAMAGES=1-5000 build-test/tests/test_damage
#include "support/prelude.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <regex>

#include "damage/damage.h"
#include "damage/ends.h"
#include "damage/session.h"
#include "support/present.h"
#include "support/scratch.h"

// A memory fault has a status of its own; leaks are looked for by the other tests.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() {
  return "detect_leaks=0:exitcode=99";
}

namespace {

const unsigned LONGEST = 30; // seconds

// Memory, where there is a file system in it, spares the disk thousands of small files.
struct In_memory : testing::Environment {
  void SetUp() override {
    if (access("/dev/shm", W_OK) == 0)
      setenv("TMPDIR", "/dev/shm", 0);
  }
};
testing::Environment *const in_memory = testing::AddGlobalTestEnvironment(new In_memory);

// A process of its own: what it said, and how it ended.
struct Process_run {
  int wait_status = 0;
  std::string output;

  bool exited() const {
    return WIFEXITED(wait_status);
  }
  int status() const {
    return WEXITSTATUS(wait_status);
  }
  bool was_ready() const {
    return output.find(READY) != std::string::npos;
  }
};

Process_run run_apart(const std::function<void()> &work) {
  std::string name = (std::filesystem::temp_directory_path() / "mertu_damage_XXXXXX").string();
  int fd = mkstemp(name.data());
  fflush(nullptr);
  pid_t pid = fork();
  if (pid == 0) {
    dup2(fd, 1);
    dup2(fd, 2);
    alarm(LONGEST);
    work();
    exit(0);
  }
  Process_run run;
  waitpid(pid, &run.wait_status, 0);
  close(fd);
  std::ifstream file(name, std::ios::binary);
  run.output.assign(std::istreambuf_iterator<char>(file), {});
  unlink(name.c_str());
  return run;
}

void expect_meant(const Process_run &run, const std::string &told) {
  EXPECT_TRUE(run.exited()) << told << ": killed by " << WTERMSIG(run.wait_status) << "\n"
                            << run.output;
  EXPECT_EQ(run.output.find("runtime error:"), std::string::npos) << told << "\n" << run.output;
  if (!run.exited() || (run.status() == 0 && run.was_ready()))
    return;
  EXPECT_TRUE(IS_MEANT_END(run.status(), run.output))
      << told << ": status " << run.status() << " after\n"
      << run.output;
}

// A directory as it was before its damage, made once.
const Damage_files &healthy() {
  static const Damage_files files = [] {
    Scratch_dir dir;
    WRITE_DICTIONARIES();
    EXPECT_EQ(run_apart(START_AND_STOP).status(), 0);
    WRITE_HISTORIES();
    return FILES_OF(dir.path());
  }();
  return files;
}

void write_healthy(const Scratch_dir &dir) {
  for (const auto &[name, bytes] : healthy())
    dir.write(name, bytes);
  auto then = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  for (const char *folder : {"", "words/", "CPY/", "IDX1/"}) {
    for (const auto &[name, bytes] : healthy())
      if (name.find('/') == std::string::npos
              ? *folder == '\0'
              : name.compare(0, strlen(folder), folder) == 0 && *folder != '\0')
        std::filesystem::last_write_time(name, then);
    then += std::chrono::minutes(1);
  }
}

// The start leaves the histories of every entry that is still there, but for those of the file
// that was damaged: a rebuild carries them over, and nothing else writes them.
void expect_histories(const std::string &damaged, const Damage_files &now) {
  for (const auto &[name, bytes] : healthy()) {
    auto found = now.find(name);
    if (name.compare(0, 10, "IDX1/idx1_") != 0 || damaged.find("IDX1") == 0)
      continue;
    ASSERT_NE(found, now.end()) << damaged << " " << name;
    std::map<std::string, std::string> left = HISTORIES_OF(found->second);
    for (const auto &[question, history] : HISTORIES_OF(bytes)) {
      EXPECT_TRUE(left.count(question) == 0 || left[question] == history)
          << damaged << " " << name << " " << question << "\n"
          << left[question];
    }
  }
}

void damage_and_start(unsigned seed) {
  Scratch_dir dir;
  write_healthy(dir);
  std::string told = "damage " + std::to_string(seed) + ", " + DAMAGE(seed);
  expect_meant(run_apart(START_AND_STOP), told);
  expect_histories(told.substr(told.find(", ") + 2), FILES_OF(dir.path()));
  // What the first start left must not hinder the next ones.
  expect_meant(run_apart([&] { WORK_A_WHILE(seed); }), told + ", worked with");
  expect_meant(run_apart(START_AND_STOP), told + ", started again");
}

} // namespace

TEST(Damage, AHealthyDirectoryIsWorkedWith) {
  for (unsigned seed = 0; seed < 5; seed++) {
    Scratch_dir dir;
    write_healthy(dir);
    Process_run run = run_apart([&] { WORK_A_WHILE(seed); });
    EXPECT_TRUE(run.exited() && run.status() == 0 && run.was_ready())
        << seed << " " << run.wait_status << "\n"
        << run.output;
  }
}

TEST(Damage, EndsAsMeantOrWorks) {
  unsigned from = 1;
  unsigned to = 40;
  if (const char *range = getenv("MERTU_DAMAGES"))
    sscanf(range, "%u-%u", &from, &to);
  for (unsigned seed = from; seed <= to; seed++)
    damage_and_start(seed);
}
