// The program killed at many points of a start that refreshes copies and indexes: the next start
// finds every history again.
#include "db/index_update.h"

#include "db_files.h"

#include "support/killed.h"

#include "db/idx1_walk.h"

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
  bool killed = KILLED_RUN(start, countdown, limit);
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
