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

// An end of the program that is meant: its status, and what its last line says.
struct Meant_end {
  int status;
  const char *line;
};

const Meant_end MEANT_ENDS[] = {
    {0, "order unknown =-1"},
    {1, "file ./mertu.conf unreachable stop"},
    {1, "error in line s="},
    {1, "error 1 while reading in "},
    {2, "error 2 while reading in "},
    {1, "error in EXTRACT_LEVEL n_pages="},
    {1, "error in FLOAT_EXTRACT_LEVEL n_pages="},
    {1, "error in EXTRACT_COLOR n_pages="},
    {1, "EXTRACT_WHICH_LESSONS error in line s="},
    {2, "EXTRACT_WHICH_LESSONS error 2 STOP"},
    {13, "RECUR_EXTR_ARROW error 13"},
    {9, "erreur in EXTRACT_2NB stop"},
    {3, "S_LESSON_FROM_NUM error i=0 STOP"},
    {1, "does not exist stop"},
    {1, "cannot read file "},
    {1, "cannot write file "},
    {32, ""}, // without a message
    {32, "MAKE_ST_ALIAS error 32 CPY for lesson "},
    {32, "MAKE_ST_ALIAS no alias in file "},
    {1, "n file : "},
    {1, "IDX1_DICO erreur 1 stop c="},
    {3, "remove its last name line"},
    {2, "in file : "},
    {3, "in file : "},
    {2, "LESSON_FROM_ORDER error 1 i_order="},
    {1, "VERIF_LESSON STOP  nb_errors > 0"},
    {1, "VERIF_LESSON error 1"},
    {1, "RECORD_LESSON error 1"},
    {2, "RECORD_LESSON error 2"},
    {1, "RECORD_FILE error cannot extract nc1"},
    {5, "WHAT_QR not existing s_alias="},
    {1, "TAGS_EXTRACT error 1"},
    {2, "DICO_TAGS error length ss="},
    {13, "MERGE_ABC_FILE error 13"},
    {14, "MERGE_ABC_FILE error 14"},
    {14, "MERTU_DICO error 14"},
    {1, "sub SYNCHRO_IDX1_FILE error fp_class STOP"},
};

bool is_meant(int status, const std::string &line) {
  return std::any_of(std::begin(MEANT_ENDS), std::end(MEANT_ENDS), [&](const Meant_end &end) {
    return end.status == status && line.find(end.line) != std::string::npos;
  });
}

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
  std::string last_line() const {
    size_t end = output.find_last_not_of('\n');
    if (end == std::string::npos)
      return "";
    size_t begin = output.rfind('\n', end);
    return output.substr(begin + 1, end - begin);
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
  EXPECT_TRUE(is_meant(run.status(), run.last_line()))
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
