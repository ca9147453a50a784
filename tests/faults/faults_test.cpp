// Every operation that writes, with every call of it going wrong in turn: the next start works,
// every history is the old or the new one, and what was not done was told.
//
// MERTU_FAULTS=N in the environment spoils every N-th call (1: each); else every tenth.
#include "support/prelude.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>

#include "faults/calls.h"
#include "faults/home.h"
#include "faults/operations.h"
#include "support/scratch.h"

// A memory fault has a status of its own; leaks are looked for by the other tests.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() {
  return "detect_leaks=0:exitcode=99:quarantine_size_mb=1:malloc_context_size=0";
}

namespace {

using Histories = std::map<std::string, History>;

// What an operation finds and what it leaves when nothing goes wrong.
struct Undisturbed {
  Kept_files before;
  Kept_files after;
  Histories old_histories;
  Histories new_histories;
  std::vector<Call_made> calls;
};

int nb_runs = 0;

bool ends_well(const Faulty_run &run) {
  return !run.killed && run.signal == 0 && run.status == 0;
}

Faulty_run run_well(const std::function<void()> &work, const std::string &when) {
  Faulty_run run = RUN_WITH_FAULT(Fault_plan(), work);
  EXPECT_TRUE(ends_well(run)) << when << ": signal " << run.signal << " status " << run.status
                              << "\n"
                              << run.output;
  return run;
}

// The start behind it, and the histories that it finds.
Histories start_again(const std::string &when) {
  Faulty_run run = run_well(START_AND_LOAD, "the start after: " + when);
  EXPECT_NE(run.output.find(STARTED), std::string::npos) << when << "\n" << run.output;
  for (const char *note : {"mertu_erased", "mertu_pending"})
    EXPECT_FALSE(std::filesystem::exists(note)) << when << " " << note;
  return READ_HISTORIES(when);
}

const Kept_files &healthy() {
  static const Kept_files files = [] {
    Scratch_dir dir;
    WRITE_DICTIONARIES();
    run_well(START_AND_LOAD, "first start");
    WRITE_HISTORIES();
    SETTLE();
    return KEEP_FILES();
  }();
  return files;
}

Undisturbed undisturbed_run(const Operation &operation) {
  Undisturbed run;
  {
    Scratch_dir dir;
    RESTORE_FILES(healthy());
    run_well(operation.prepare, operation.name);
    run.before = KEEP_FILES();
    run.old_histories = start_again(operation.name);
  }
  Scratch_dir dir;
  RESTORE_FILES(run.before);
  run.calls = run_well(operation.work, operation.name).calls;
  run.after = KEEP_FILES();
  EXPECT_EQ(run.after.count("./mertu_pending"), 0u) << operation.name;
  run.new_histories = start_again(operation.name);
  return run;
}

// The plans for a call.
std::vector<Fault_plan> plans_for(const Call_made &made, int call) {
  switch (made.kind) {
  case CALL_WRITE:
    return {{FAIL_ONCE, call, EIO},       {FAIL_FROM_THERE, call, ENOSPC},
            {SHORT_ONCE, call, 0},        {SHORT_THEN_FAIL, call, ENOSPC},
            {KILLED_IN_BETWEEN, call, 0}, {KILLED_AFTER, call, 0}};
  case CALL_OPEN_TO_WRITE:
    return {{FAIL_ONCE, call, EMFILE}, {FAIL_FROM_THERE, call, ENOSPC}, {KILLED_AFTER, call, 0}};
  case CALL_SYNC:
  case CALL_NAME:
    return {{FAIL_ONCE, call, EIO}, {FAIL_FROM_THERE, call, EIO}, {KILLED_AFTER, call, 0}};
  case CALL_READ:
    return {{FAIL_ONCE, call, made.text[0] == 'o' ? EMFILE : EIO}};
  default:
    return {{FAIL_ONCE, call, EIO}};
  }
}

bool is_one_of(const std::string &line, std::initializer_list<std::string> lines) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Every line is the old or the new one; a damaged one may be corrected.
void expect_old_or_new(const Histories &found, const Operation &operation, const Undisturbed &run,
                       const std::string &when) {
  for (const auto &[question, history] : found) {
    const History &before = run.old_histories.at(question);
    const History &after = run.new_histories.at(question);
    History corrected = CORRECTED(before);
    History answered = operation.composes ? ANSWERED(before) : after;
    EXPECT_TRUE(
        is_one_of(history.first, {before.first, after.first, corrected.first, answered.first}) &&
        is_one_of(history.second, {before.second, after.second, corrected.second, answered.second}))
        << when << ": " << question << "\nfound\n"
        << history.first << "\n"
        << history.second << "\nbefore\n"
        << before.first << "\n"
        << before.second << "\nafter\n"
        << after.first << "\n"
        << after.second;
  }
}

std::string bytes_of(const Kept_files &files, const std::string &name) {
  auto file = files.find(name);
  return file == files.end() ? "" : file->second.bytes;
}

// Files that are replaced as a whole are the old or the new ones, those of the learner untouched.
void expect_whole_files(const Kept_files &found, const Undisturbed &run, const std::string &when) {
  for (const char *name : {"./one.txt", "./two.txt", "./mertu.conf", "./OTHER/idx1_one.txt"})
    EXPECT_EQ(bytes_of(found, name), bytes_of(run.before, name)) << when << " " << name;
  for (const char *name :
       {"./IDX1_TRF/idx1_one.txt", "./IDX1_TRF/idx1_two.txt", "./CPY/one.txt", "./CPY/two.txt"}) {
    std::string bytes = bytes_of(found, name);
    EXPECT_TRUE(bytes.empty() || bytes == bytes_of(run.before, name) ||
                bytes == bytes_of(run.after, name))
        << when << " " << name << "\n"
        << bytes;
  }
  // Its last line names the dictionaries that were found.
  std::string state = bytes_of(found, "./Mertu_last_state");
  state.resize(state.rfind("  400   Width") == std::string::npos ? 0 : state.rfind("  400"));
  std::string whole = bytes_of(run.after, "./Mertu_last_state");
  EXPECT_EQ(state, whole.substr(0, state.size())) << when;
  EXPECT_EQ(state.empty(), bytes_of(found, "./Mertu_last_state").empty()) << when;
}

// Whether the operation left what it leaves when nothing goes wrong.
bool is_done(const Kept_files &found, const Histories &histories, const Undisturbed &run) {
  for (const char *name : {"./IDX1_TRF/idx1_one.txt", "./IDX1_TRF/idx1_two.txt", "./mertu_dico",
                           "./CPY/one.txt", "./CPY/two.txt"})
    if (bytes_of(found, name) != bytes_of(run.after, name))
      return false;
  return histories == run.new_histories;
}

bool is_told(const Faulty_run &run, const Kept_files &found) {
  return run.status != 0 || run.output.find("cannot ") != std::string::npos ||
         run.output.find("Errors found in data base") != std::string::npos ||
         bytes_of(found, "./mertu_log").find("cannot ") != std::string::npos;
}

void spoil(const Operation &operation, const Undisturbed &undisturbed, const Fault_plan &plan) {
  nb_runs++;
  std::string call = undisturbed.calls[(size_t)plan.call - 1].text;
  std::string when = std::string(operation.name) + ": " + NAME_OF_FAULT(plan) + " " + call;
  Scratch_dir dir;
  RESTORE_FILES(undisturbed.before);
  Faulty_run run = RUN_WITH_FAULT(plan, operation.work);
  EXPECT_EQ(run.signal, 0) << when << "\n" << run.output;
  EXPECT_NE(run.status, 99) << when << "\n" << run.output;
  Kept_files found = KEEP_FILES();
  expect_whole_files(found, undisturbed, when);
  Histories histories = start_again(when);
  expect_old_or_new(histories, operation, undisturbed, when);
  bool done = is_done(found, histories, undisturbed);
  EXPECT_TRUE(run.killed || done || is_told(run, found)) << when << ": not done, not told\n"
                                                         << run.output;
}

int step() {
  const char *every = getenv("MERTU_FAULTS");
  return every != nullptr ? std::max(atoi(every), 1) : 10;
}

// Each run syncs its files: in memory, where there is such a file system.
class Faults : public testing::TestWithParam<Operation> {
  void SetUp() override {
    if (access("/dev/shm", W_OK) == 0)
      setenv("TMPDIR", "/dev/shm", 0);
  }
};

} // namespace

TEST_P(Faults, WhicheverCallGoesWrongEveryHistoryIsTheOldOrTheNewOne) {
  if (!CAN_FILTER_CALLS())
    GTEST_SKIP() << "system calls cannot be filtered here";
  const Operation &operation = GetParam();
  Undisturbed undisturbed = undisturbed_run(operation);
  int from = 1 + (int)(std::string(operation.name).size() % (size_t)step());
  for (int call = from; call <= (int)undisturbed.calls.size(); call += step())
    for (const Fault_plan &plan : plans_for(undisturbed.calls[(size_t)call - 1], call))
      spoil(operation, undisturbed, plan);
  printf("%-40s %4d calls, %5d runs\n", operation.name, (int)undisturbed.calls.size(), nb_runs);
  nb_runs = 0;
}

// The next start writes them once more.
TEST(PendingLines, ThatCouldNotBeSyncedStayNoted) {
  if (!CAN_FILTER_CALLS())
    GTEST_SKIP() << "system calls cannot be filtered here";
  const Operation &recording = OPERATIONS[2];
  Undisturbed undisturbed = undisturbed_run(recording);
  auto is_call = [](const char *name) {
    return [name](const Call_made &made) { return made.text == std::string(name); };
  };
  const std::vector<Call_made> &calls = undisturbed.calls;
  auto sync = std::find_if(std::find_if(calls.begin(), calls.end(), is_call("pwrite")), calls.end(),
                           is_call("fsync"));
  ASSERT_NE(sync, calls.end());
  Scratch_dir dir;
  RESTORE_FILES(undisturbed.before);
  Faulty_run run =
      RUN_WITH_FAULT({FAIL_ONCE, (int)(sync - calls.begin()) + 1, EIO}, recording.work);
  EXPECT_NE(run.output.find("cannot write file ./IDX1/idx1_one.txt"), std::string::npos);
  EXPECT_TRUE(dir.exists("mertu_pending"));
  EXPECT_EQ(start_again("not synced"), undisturbed.new_histories);
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(OPERATIONS), [](const auto &of) {
  std::string name = of.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
});
