// The program killed at many points while it corrects, transfers and synchronises: no history is
// damaged, none is older than before, and the next start finds every entry in its place.
#include "db/check_correct.h"

#include "maintenance_home.h"
#include "support/killed.h"

#include "db/idx1_walk.h"
#include "db/index_update.h"
#include "db/synchronise.h"
#include "db/transfer.h"
#include "score/position_table.h"

namespace {

const int NB_WORDS = 40;

std::string word(int i) {
  return "word " + std::to_string(i);
}

std::string own_history(int i) {
  return history_line(i + 1, 2, 100, 90) + history_line(3, i + 4, 80, 70);
}

std::string other_history(int i) {
  return history_line(2, i + 1, 90, 100) + history_line(i + 5, 3, 70, 80);
}

std::string larger_history(int i) {
  return history_line(std::max(i + 1, 2), std::max(2, i + 1), 100, 100) +
         history_line(std::max(3, i + 5), std::max(i + 4, 3), 80, 80);
}

std::string six_history(int i) {
  std::string line;
  for (long value : {i + 5, 2, 100, 9, 3, 50})
    line += history_line(value, 0, 0, 0).substr(0, 13);
  return line + "\r\n";
}

std::string words_text(const char *head, const char *line_end) {
  std::string text = head;
  for (int i = 0; i < NB_WORDS; i++)
    text += "# " + word(i) + " * x" + line_end;
  return text;
}

std::string index_text(const std::string &name, std::string (*history)(int)) {
  std::string records;
  for (int i = 0; i < NB_WORDS; i++)
    records += record_of(word(i), name, 6 + 14 * i, history(i));
  return index_of(name, name, records);
}

// A database whose dictionaries were edited since the start, and another copy of it.
void edited_database(const Scratch_dir &dir, std::string (*history)(int)) {
  for (const char *name : {"a", "b"}) {
    std::string head = std::string("!# ") + name;
    dir.write(name, words_text(("text in front\n" + head + "\n").c_str(), "\n"));
    dir.write(std::string("CPY/") + name, words_text((head + "\r\n").c_str(), "\r\n"));
    dir.write(std::string("IDX1/idx1_") + name, index_text(name, history));
    dir.write(std::string("other/idx1_") + name, index_text(name, other_history));
    make_older(std::string("CPY/") + name, 100);
    make_older(std::string("IDX1/idx1_") + name, 50);
  }
}

struct Running_program {
  Test_registry registry{{"./a", "./b"}};
  Trf_book book = {};
  Running_program() {
    registry.record.st_alias = g_strdup(" a b ");
    book.G_kentel = &registry.record;
    book.nbt_lesson = 2;
    book.fp_log = fopen("mertu_log", "w");
  }
  ~Running_program() {
    fclose(book.fp_log);
  }
  Running_program(const Running_program &) = delete;
  Running_program &operator=(const Running_program &) = delete;
};

void correct_all() {
  Running_program program;
  CHECK_CORR_ALL_DBASE(&program.book);
}

void synchronise_all() {
  Running_program program;
  std::string path = "other";
  SYNCHRO_ALL_DBASE(path.data(), &program.book);
}

void transfer_all() {
  Running_program program;
  TRF_ALL_DBASE(&program.book);
}

void start() {
  Running_program program;
  Trf_posit table;
  testing::internal::CaptureStdout();
  CALC_INDEX(program.book.fp_log, &program.registry.record, &table);
  testing::internal::GetCapturedStdout();
  FREE_POSIT(&table);
}

// Every word stands in every index with a history that is one of the two.
void expect_histories(const Scratch_dir &dir, std::string (*one)(int), std::string (*two)(int),
                      const std::string &when) {
  for (const char *name : {"a", "b"}) {
    std::string idx1 = dir.read(std::string("IDX1/idx1_") + name);
    for (int i = 0; i < NB_WORDS; i++) {
      size_t at = idx1.find("#" + word(i) + " *");
      ASSERT_NE(at, std::string::npos) << when;
      std::string history = idx1.substr(idx1.find(" \r\n", at) + 3, 108);
      ASSERT_TRUE(history == one(i) || history == two(i)) << when << " " << name << "\n" << history;
    }
  }
}

// Every offset of every index is that of its entry in the working copy.
void expect_offsets(const Scratch_dir &dir, const std::string &when) {
  for (const char *name : {"a", "b"}) {
    std::string idx1 = dir.read(std::string("IDX1/idx1_") + name);
    std::string copy = dir.read(std::string("CPY/") + name);
    for (int i = 0; i < NB_WORDS; i++) {
      size_t entry = copy.find("# " + word(i) + " *");
      ASSERT_NE(idx1.find("#" + word(i) + " *" + name + " " + std::to_string(entry) + " *"),
                std::string::npos)
          << when << " " << name << " " << i;
    }
  }
}

// Kills the work at every step. Returns how many steps it had.
int kill_at_every_step(void (*work)(), std::string (*after)(int)) {
  int countdown = 0;
  bool killed = true;
  while (killed && countdown < 300) {
    countdown++;
    std::string when = "killed at step " + std::to_string(countdown);
    Scratch_dir dir;
    edited_database(dir, own_history);
    killed = KILLED_RUN(work, countdown, 0);
    expect_histories(dir, own_history, after, when);
    start();
    expect_histories(dir, own_history, after, "started again, " + when);
    expect_offsets(dir, when);
  }
  return countdown - 1;
}

int kill_in_the_middle_of_files(void (*work)(), std::string (*after)(int)) {
  int nb_killed = 0;
  for (rlim_t limit = 1; limit < 8000; limit += 397) {
    std::string when = "killed beyond byte " + std::to_string(limit);
    Scratch_dir dir;
    edited_database(dir, own_history);
    nb_killed += KILLED_RUN(work, 0, limit) ? 1 : 0;
    expect_histories(dir, own_history, after, when);
    start();
    expect_histories(dir, own_history, after, "started again, " + when);
    expect_offsets(dir, when);
  }
  return nb_killed;
}

} // namespace

TEST(MaintenanceKilled, WhileCorrectingEveryHistoryStays) {
  // For each of two dictionaries: the time of the index, then back-up, copy and index (synced and
  // renamed), and idx1_old taken away.
  EXPECT_GE(kill_at_every_step(correct_all, own_history), 2 * (2 + 3 * 4 + 2));
  EXPECT_GE(kill_in_the_middle_of_files(correct_all, own_history), 10);
}

TEST(MaintenanceKilled, WhileSynchronisingNoHistoryIsOlder) {
  EXPECT_GE(kill_at_every_step(synchronise_all, larger_history), 2 * (2 + 2 * 4 + 2));
  EXPECT_GE(kill_in_the_middle_of_files(synchronise_all, larger_history), 10);
}

// The copy is made in the second in which the index was recorded last: only the mark tells that the
// index is out of date.
TEST(MaintenanceKilled, BetweenCopyAndIndexTheNextStartSeesThatTheIndexIsOutOfDate) {
  const int behind_the_mark = 8; // the back-up comes before it
  for (int countdown = behind_the_mark; countdown < behind_the_mark + 16; countdown++) {
    Scratch_dir dir;
    edited_database(dir, own_history);
    make_older("IDX1/idx1_a", 0);
    ASSERT_TRUE(KILLED_RUN(correct_all, countdown, 0));
    start();
    expect_offsets(dir, "killed at step " + std::to_string(countdown));
  }
}

TEST(MaintenanceKilled, SynchronisingAgainAfterADeathMergesTheRest) {
  for (int countdown = 1; countdown < 30; countdown += 3) {
    Scratch_dir dir;
    edited_database(dir, own_history);
    ASSERT_TRUE(KILLED_RUN(synchronise_all, countdown, 0));
    start();
    synchronise_all();
    expect_histories(dir, larger_history, larger_history, std::to_string(countdown));
    expect_offsets(dir, std::to_string(countdown));
  }
}

TEST(MaintenanceKilled, WhileTransferringTheIndexIsUntouchedAndTheTransferFileWholeOrNone) {
  std::string whole;
  {
    Scratch_dir dir;
    edited_database(dir, six_history);
    EXPECT_FALSE(KILLED_RUN(transfer_all, 0, 0));
    whole = dir.read("IDX1_TRF/idx1_a");
  }
  ASSERT_NE(whole, "");
  int nb_killed = 0;
  for (int countdown = 1; countdown <= 8; countdown++) {
    for (rlim_t limit : {(rlim_t)0, (rlim_t)(500 * countdown)}) {
      Scratch_dir dir;
      edited_database(dir, six_history);
      nb_killed += KILLED_RUN(transfer_all, limit > 0 ? 0 : countdown, limit) ? 1 : 0;
      EXPECT_EQ(dir.read("IDX1/idx1_a"), index_text("a", six_history));
      EXPECT_EQ(dir.read("IDX1/idx1_b"), index_text("b", six_history));
      std::string made = dir.read("IDX1_TRF/idx1_a");
      EXPECT_TRUE(made.empty() || made == whole);
    }
  }
  EXPECT_GE(nb_killed, 14);
}
