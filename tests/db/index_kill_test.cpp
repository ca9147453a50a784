// The program killed at many points of a start that refreshes copies and indexes: the next start
// finds every history again.
#include "db/index_update.h"

#include "db_files.h"

#include <dlfcn.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "db/idx1_walk.h"

namespace {

// Steps (fsync, rename, unlink) until the process is killed; 0 for never. Odd numbers kill before
// a step, even ones after it.
struct {
  int countdown;
} death;

void die_when_due() {
  if (death.countdown > 0 && --death.countdown == 0)
    raise(SIGKILL);
}

template <typename Routine> Routine *system_routine(const char *name) {
  return reinterpret_cast<Routine *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" int fsync(int fd) {
  static auto *real = system_routine<int(int)>("fsync");
  die_when_due();
  int result = real(fd);
  die_when_due();
  return result;
}

extern "C" int rename(const char *from, const char *to) noexcept {
  static auto *real = system_routine<int(const char *, const char *)>("rename");
  die_when_due();
  int result = real(from, to);
  die_when_due();
  return result;
}

extern "C" int unlink(const char *path) noexcept {
  static auto *real = system_routine<int(const char *)>("unlink");
  die_when_due();
  int result = real(path);
  die_when_due();
  return result;
}

namespace {

const int NB_WORDS = 60;

std::string question(int dictionary, int word) {
  return "word " + std::to_string(word) + " of " + std::to_string(dictionary) + " ";
}

std::string history_of(int dictionary, int word) {
  return history_line(word + 1, dictionary, 100, 90) + history_line(dictionary, word + 2, 80, 70);
}

std::string dictionary_text(int dictionary, const std::string &answer) {
  std::string text = "!# d" + std::to_string(dictionary) + "\n";
  for (int word = 0; word < NB_WORDS; word++)
    text += "# " + question(dictionary, word) + "* " + answer + "\n";
  return text;
}

std::string index_text(int dictionary) {
  std::string alias = "d" + std::to_string(dictionary);
  std::string text = idx1_header("./IDX1/idx1_" + alias, alias);
  for (int word = 0; word < NB_WORDS; word++)
    text += "#" + question(dictionary, word) + "*" + alias + " 0 * x \r\n" +
            history_of(dictionary, word);
  return text + idx1_trailer(0);
}

// Two dictionaries with a history, edited since.
void edited_home(const Scratch_dir &dir) {
  for (int dictionary = 1; dictionary <= 2; dictionary++) {
    std::string name = "d" + std::to_string(dictionary);
    dir.write("CPY/" + name, dictionary_text(dictionary, "old"));
    dir.write("IDX1/idx1_" + name, index_text(dictionary));
    dir.write(name, "text in front\n" + dictionary_text(dictionary, "new and longer"));
    make_older("CPY/" + name, 100);
    make_older("IDX1/idx1_" + name, 50);
  }
}

void start() {
  Owned_stream log = OPEN_STREAM("mertu_log", "w");
  Test_registry registry({"./d1", "./d2"});
  Trf_posit table;
  CALC_INDEX(log.get(), &registry.record, &table);
  FREE_POSIT(&table);
}

// Starts in a process of its own, killed after so many steps or, where limit is not 0, when a file
// grows beyond so many bytes. Returns whether it was killed.
bool killed_start(int countdown, rlim_t limit) {
  fflush(nullptr);
  pid_t child = fork();
  if (child == 0) {
    if (freopen("/dev/null", "w", stdout) == nullptr)
      _exit(99);
    death.countdown = countdown;
    struct rlimit size = {limit, limit};
    if (limit > 0 && setrlimit(RLIMIT_FSIZE, &size) != 0)
      _exit(99);
    start();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << status;
  return WIFSIGNALED(status);
}

// Every history stands in the index, under its question.
void expect_every_history(const Scratch_dir &dir, const std::string &when) {
  for (int dictionary = 1; dictionary <= 2; dictionary++) {
    std::string idx1 = dir.read("IDX1/idx1_d" + std::to_string(dictionary));
    for (int word = 0; word < NB_WORDS; word++) {
      size_t name = idx1.find("#" + question(dictionary, word) + "*");
      ASSERT_NE(name, std::string::npos) << when;
      size_t line_end = idx1.find("\r\n", name) + 2;
      ASSERT_EQ(idx1.compare(line_end, 108, history_of(dictionary, word)), 0) << when;
    }
  }
}

// One death and the start after it. Returns whether the program was killed at all.
bool die_and_start_again(int countdown, rlim_t limit) {
  std::string when = std::to_string(countdown) + " steps, " + std::to_string(limit) + " bytes";
  Scratch_dir dir;
  edited_home(dir);
  bool killed = killed_start(countdown, limit);
  expect_every_history(dir, "killed after " + when);
  testing::internal::CaptureStdout();
  start();
  testing::internal::GetCapturedStdout();
  expect_every_history(dir, "started again after " + when);
  EXPECT_THAT(dir.read("IDX1/idx1_d2"), testing::HasSubstr("* new and longer \r\n"));
  EXPECT_EQ(dir.read("CPY/d1").substr(0, 15), "text in front\r\n");
  return killed;
}

} // namespace

TEST(IndexKilled, AtEveryStepTheNextStartFindsEveryHistory) {
  int countdown = 1;
  while (die_and_start_again(countdown, 0) && countdown < 200)
    countdown++;
  // Three files are replaced for each of the two dictionaries: the copy, idx1_old, the index.
  EXPECT_GE(countdown, 6 * 4);
}

TEST(IndexKilled, InTheMiddleOfAFileTheNextStartFindsEveryHistory) {
  int nb_killed = 0;
  for (rlim_t limit = 1; limit < 12000; limit += 397)
    nb_killed += die_and_start_again(0, limit) ? 1 : 0;
  EXPECT_GE(nb_killed, 15);
}

TEST(IndexKilled, WithNothingInTheWayTheStartIsNotKilled) {
  EXPECT_FALSE(die_and_start_again(0, 0));
}
