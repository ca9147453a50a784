// Odd places for the learner's files, and a clock that does not go on evenly.
#include "support/prelude.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "db/record_lesson.h"
#include "faults/calls.h"
#include "faults/home.h"
#include "faults/operations.h"
#include "faults/program_run.h"
#include "support/scratch.h"

namespace fs = std::filesystem;

using testing::HasSubstr;

namespace {

// Runs `work` apart; nothing goes wrong in it.
Faulty_run run_apart(const std::function<void()> &work) {
  Faulty_run run = RUN_WITH_FAULT(Fault_plan(), work);
  EXPECT_EQ(run.signal, 0) << run.output;
  return run;
}

void expect_start() {
  Faulty_run run = run_apart(START_AND_LOAD);
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_THAT(run.output, HasSubstr(STARTED));
}

class Places : public testing::Test {
protected:
  Places() {
    WRITE_DICTIONARIES();
    expect_start();
    WRITE_HISTORIES();
    SETTLE();
    before = READ_HISTORIES("before");
  }
  // The histories of an entry of dictionary one, and all others, as they were.
  void expect_answered(const std::string &question) {
    for (const auto &[found, history] : READ_HISTORIES("after"))
      EXPECT_EQ(history, found == question ? ANSWERED(before.at(found)) : before.at(found))
          << found;
  }
  void expect_unchanged() {
    EXPECT_EQ(READ_HISTORIES("after"), before);
  }

  Scratch_dir dir;
  std::map<std::string, History> before;
};

class Clock : public Places {};

// Loads lesson one, lets something happen, answers its first entry and records.
std::function<void()> drill(const std::function<void()> &meanwhile) {
  return [meanwhile] {
    Program_run run;
    run.load(ONE);
    meanwhile();
    run.book->t_posit->QRcum_nok[1] += 1;
    run.book->t_posit->RQcum_nb[1] += 3;
    RECORD_LESSON(run.book);
  };
}

void move_away(const std::string &name) {
  fs::rename(name, "away");
}

void replace(const std::string &name, const std::string &bytes) {
  std::ofstream(name, std::ios::binary) << bytes;
}

// Moves a file elsewhere and leaves a symbolic link to it.
void link_elsewhere(const std::string &name) {
  fs::create_directories("elsewhere");
  fs::path real = fs::path("elsewhere") / fs::path(name).filename();
  fs::rename(name, real);
  fs::create_symlink(fs::absolute(real), name);
}

void set_time(const char *name, time_t moment) {
  struct timespec times[2] = {{moment, 0}, {moment, 0}};
  utimensat(AT_FDCWD, name, times, 0);
}

void become_nobody() {
  if (geteuid() == 0 && setuid(65534) != 0)
    _exit(77);
}

} // namespace

TEST_F(Places, InAReadOnlyDirectoryTheProgramStartsAndRecordsNothing) {
  fs::permissions(dir.path(), fs::perms(0555));
  fs::permissions(dir.path() + "/IDX1/idx1_one.txt", fs::perms(0444));
  Faulty_run run = run_apart([] {
    become_nobody();
    drill([] {})();
  });
  fs::permissions(dir.path(), fs::perms(0755));
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_THAT(run.output, HasSubstr("cannot load all of ./one.txt"));
  expect_unchanged();
}

TEST_F(Places, InAReadOnlyDirectoryAnEditedDictionaryEndsTheStartAndChangesNothing) {
  EDIT_DICTIONARY_ONE();
  std::string index = dir.read("IDX1/idx1_one.txt");
  fs::permissions(dir.path(), fs::perms(0555));
  Faulty_run run = run_apart([] {
    become_nobody();
    START_AND_LOAD();
  });
  fs::permissions(dir.path(), fs::perms(0755));
  EXPECT_THAT(run.output, HasSubstr("cannot write file ./CPY/one.txt: Permission denied"));
  EXPECT_EQ(dir.read("IDX1/idx1_one.txt"), index);
}

TEST_F(Places, ADictionaryThatIsADirectoryIsToldAndTheOtherIsDrilled) {
  fs::remove("one.txt");
  fs::create_directory("one.txt");
  Faulty_run run = run_apart(START_AND_LOAD);
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.output, HasSubstr("cannot read file ./one.txt: Is a directory"));
  expect_unchanged();
}

TEST_F(Places, FilesBehindSymbolicLinksAreReplacedWhereTheyAre) {
  for (const char *name : {"one.txt", "CPY/one.txt", "IDX1/idx1_one.txt", "IDX1/idx1_two.txt"})
    link_elsewhere(name);
  std::string old = dir.read("elsewhere/idx1_one.txt");
  EDIT_DICTIONARY_ONE(); // through the link
  run_apart(drill([] {}));
  for (const char *name : {"one.txt", "CPY/one.txt", "IDX1/idx1_one.txt", "IDX1/idx1_two.txt"})
    EXPECT_TRUE(fs::is_symlink(name)) << name;
  EXPECT_NE(dir.read("elsewhere/idx1_one.txt"), old);
  expect_answered("never asked one"); // the edit turned the entries round
}

TEST_F(Places, AnIndexDirectoryBehindASymbolicLinkIsWorkedIn) {
  link_elsewhere("IDX1");
  run_apart(drill([] {}));
  EXPECT_TRUE(fs::is_symlink("IDX1"));
  expect_answered("hello one");
}

TEST_F(Places, ADictionaryThatVanishesWhileItIsDrilledIsRecorded) {
  run_apart(drill([] { move_away("one.txt"); }));
  expect_answered("hello one");
}

TEST_F(Places, AWorkingCopyThatVanishesWhileItIsDrilledIsMadeAgain) {
  run_apart(drill([] { fs::remove("CPY/one.txt"); }));
  expect_start();
  expect_answered("hello one");
}

TEST_F(Places, AnIndexThatVanishesWhileItIsDrilledIsTold) {
  Faulty_run run = run_apart(drill([] { move_away("IDX1/idx1_one.txt"); }));
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.output, HasSubstr("RECORD_LESSON cannot open file ./IDX1/idx1_one.txt"));
  fs::rename("away", "IDX1/idx1_one.txt");
  expect_unchanged();
}

TEST_F(Places, ALessonFileThatVanishesWhileItIsDrilledIsTold) {
  Faulty_run run = run_apart(drill([] { fs::remove("idx1_gene"); }));
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.output, HasSubstr("RECORD_LESSON cannot open file ./idx1_gene"));
  expect_unchanged();
}

TEST_F(Places, ADictionaryEditedWhileItIsDrilledKeepsWhatWasLearned) {
  run_apart(drill(EDIT_DICTIONARY_ONE));
  expect_start();
  expect_answered("hello one");
}

TEST_F(Places, ADictionaryEmptiedWhileItIsDrilledKeepsWhatWasLearned) {
  std::string text = dir.read("one.txt");
  run_apart(drill([] { replace("one.txt", ""); }));
  Faulty_run run = run_apart(START_AND_LOAD);
  EXPECT_EQ(run.status, 32);
  EXPECT_THAT(run.output, HasSubstr("MAKE_ST_ALIAS no alias in file ./one.txt STOP"));
  set_time("CPY/one.txt", time(nullptr) - 100);
  replace("one.txt", text);
  expect_start();
  expect_answered("hello one");
}

TEST_F(Clock, MidnightInADrillDatesTheAnswersOfTheDayOfTheRecording) {
  run_apart(drill([] { SET_PRESENT_DAY(2009, 3, 21); }));
  History answered = ANSWERED(before.at("hello one"));
  answered.first.replace(answered.first.find("3000"), 4, "3001");
  answered.second.replace(answered.second.find("3000"), 4, "3001");
  EXPECT_EQ(READ_HISTORIES("after").at("hello one"), answered);
}

// Days in the future count as damage when a lesson is loaded; the file is not touched by that.
TEST_F(Clock, SetBackForOneStartNothingIsLost) {
  run_apart([] {
    Program_run run(2004, 1, 1);
    run.load(ONE);
    run.load(TWO);
  });
  expect_unchanged();
  expect_start();
  expect_unchanged();
}

// A recording then counts them as never asked; the words that were not answered stand as they were
// in the index beside.
TEST_F(Clock, SetBackForARecordingTheOldHistoriesOfTheOtherWordsStandBeside) {
  Faulty_run run = run_apart([] {
    Program_run old(2004, 1, 1);
    old.load(TWO);
    old.book->t_posit->QRcum_nok[1] += 1;
    RECORD_LESSON(old.book);
  });
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_THAT(run.output, HasSubstr("Errors found in data base"));
  fs::rename("IDX1/cpy_idx1_two.txt", "IDX1/idx1_two.txt");
  for (const std::string question : {"a whole sentence that is asked for two", "never asked two"})
    EXPECT_EQ(READ_HISTORIES("beside").at(question), before.at(question));
}

TEST_F(Clock, SetBackSinceTheLastRecordingAnEditIsStillIndexed) {
  run_apart(drill([] {}));
  set_time("IDX1/idx1_one.txt", time(nullptr) + 100000);
  set_time("CPY/one.txt", time(nullptr) - 100000);
  EDIT_DICTIONARY_ONE();
  expect_start();
  expect_answered("hello one"); // each at its offset in the new copy
}

TEST_F(Clock, Day10000IsRecordedAndTheDayBehindItEndsTheProgramWithStatus10) {
  EXPECT_EQ(run_apart(drill([] { SET_PRESENT_DAY(2028, 5, 20); })).status, 10);
  expect_unchanged();
  EXPECT_EQ(run_apart(drill([] { SET_PRESENT_DAY(2028, 5, 19); })).status, 0);
  EXPECT_THAT(READ_HISTORIES("after").at("hello one").first, HasSubstr("10000"));
}

// The index was recorded at 2:50 in summer time; twenty minutes later it is 2:10 once more.
TEST_F(Clock, AnEditInTheHourLivedTwiceIsIndexed) {
  const time_t end_of_summer = 1256432400; // 25 October 2009, 3:00 in Paris becomes 2:00
  Faulty_run run = run_apart([=] {
    setenv("TZ", "Europe/Paris", 1);
    EDIT_DICTIONARY_ONE();
    set_time("CPY/one.txt", end_of_summer - 7200);
    set_time("IDX1/idx1_one.txt", end_of_summer - 600);
    set_time("one.txt", end_of_summer + 600);
    START_AND_LOAD();
  });
  EXPECT_THAT(run.output, HasSubstr(STARTED));
  expect_unchanged(); // each at its offset in the new copy
}
