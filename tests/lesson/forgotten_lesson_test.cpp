// A forgotten lesson does not hurt the others: forgotten, loaded again, drilled, recorded, its
// dictionary edited, the program started again.
#include "support/prelude.h"

#include "lesson/learner_home.h"

#include <random>

#include "support/killed.h"

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

const std::string BLANK_TWICE = NEVER() + NEVER();
const std::string ZEROS_TWICE = HISTORY(0, 0, 0, 0) + HISTORY(0, 0, 0, 0);

// The words of lesson 1: those of dictionary one, and one that it borrows.
std::vector<std::string> words_of_lesson_one() {
  std::vector<std::string> words = QUESTIONS_OF("one");
  words.push_back("word 3 of two");
  return words;
}

bool is_of_lesson_one(const std::string &question) {
  std::vector<std::string> words = words_of_lesson_one();
  return std::find(words.begin(), words.end(), question) != words.end();
}

// Moves every word of dictionary one: text in front of it, the words in reverse order.
void edit_one(const Learner_home &home) {
  std::vector<std::string> questions = QUESTIONS_OF("one");
  std::reverse(questions.begin(), questions.end());
  home.write_dictionary("one", "some text\nin front\n", questions);
  home.borrow();
}

// Every lesson is there, with as many words as it has.
void expect_lessons(const std::string &when) {
  Home_run run;
  for (int n : {1, 2, 3}) {
    run.load(n);
    ASSERT_EQ(run.table.nb_posit, NB_HOME_WORDS + (n == 1 ? 1 : 0)) << when;
  }
}

// The words of lesson 1 are forgotten, or (where they may) not yet; all others are as they were.
void expect_forgotten(const Learner_home &home, const Histories &before, bool all,
                      const std::string &when) {
  for (const auto &[question, history] : home.histories()) {
    bool as_before = history == before.at(question);
    bool forgotten = history == BLANK_TWICE || history == ZEROS_TWICE;
    if (is_of_lesson_one(question))
      ASSERT_TRUE(forgotten || (as_before && !all)) << when << " " << question << "\n" << history;
    else
      ASSERT_TRUE(as_before) << when << " " << question << "\n" << history;
  }
}

} // namespace

TEST(ForgottenLesson, LoadedAgainEveryWordIsThereAsNeverAsked) {
  Learner_home home;
  Histories before = home.histories();
  Home_run run;
  run.load(1);
  run.forget();
  run.load(1);
  ASSERT_EQ(run.table.nb_posit, 7);
  for (int i = 1; i <= 7; i++)
    for (int sens : {1, 2}) {
      Trf_side side = SIDE_OF_TABLE(sens, &run.table);
      EXPECT_EQ(side.nb[i] + side.nok[i] + side.date_ok[i] + side.date_nok[i], 0) << i;
      EXPECT_EQ(side.cum_err[i], -1) << i;
    }
  expect_forgotten(home, before, true, "loaded again");
  EXPECT_FALSE(home.dir.exists("mertu_erased"));
}

TEST(ForgottenLesson, DrilledRecordedEditedAndStartedAgainNothingElseIsLost) {
  Learner_home home;
  Histories expected = home.histories();
  {
    Home_run run;
    run.load(1);
    run.forget();
    run.load(1);
    for (int i = 1; i <= 7; i++) {
      run.table.QRcum_nok[i] = i;
      run.table.RQcum_nb[i] = 1;
      run.table.RQcum_err[i] = 0;
    }
    run.record();
  }
  for (int i = 1; i <= 7; i++)
    expected[words_of_lesson_one()[(size_t)i - 1]] =
        HISTORY(0, i, 0, 3000) + HISTORY(1, 0, 3000, 0);
  EXPECT_EQ(home.histories(), expected);
  home.settle();
  edit_one(home);
  expect_lessons("started again");
  EXPECT_EQ(home.histories(), expected);
  home.expect_offsets("started again");
}

TEST(ForgottenLesson, EditedAtOnceTheNextStartFindsEveryEntry) {
  Learner_home home;
  Histories before = home.histories();
  FORGET_LESSON_ONE();
  home.settle();
  edit_one(home);
  expect_lessons("started again");
  expect_forgotten(home, before, true, "started again");
  home.expect_offsets("started again");
}

TEST(ForgottenLesson, LessonTwoIsDrilledWithItsOwnHistories) {
  Learner_home home;
  Home_run run;
  run.load(1);
  run.forget();
  run.load(2);
  EXPECT_THAT(ENTRIES_OF(run.table.QRcum_nb, 6), ElementsAre(1, 2, 0, 4, 5, 6));
  EXPECT_THAT(ENTRIES_OF(run.table.RQcum_nok, 6), ElementsAre(1, 2, 0, 4, 5, 6));
}

TEST(ForgottenLesson, KilledAtEveryStepOfForgettingNothingElseIsLost) {
  int countdown = 0;
  bool killed = true;
  while (killed && countdown < 200) {
    countdown++;
    std::string when = "killed at step " + std::to_string(countdown);
    Learner_home home;
    Histories before = home.histories();
    killed = KILLED_RUN(FORGET_LESSON_ONE, countdown, 0);
    home.settle();
    if (countdown % 2 == 0)
      edit_one(home);
    expect_lessons(when);
    expect_forgotten(home, before, !killed, when);
    home.expect_offsets(when);
  }
  // The note (sync, rename, sync of the directory), seven records, two files synced; each of them
  // two steps, and what the note removes before.
  EXPECT_GE(countdown, 2 * (3 + 7 + 2));
  EXPECT_LT(countdown, 200);
}

TEST(ForgottenLesson, KilledAtEveryStepOfTheMendNothingElseIsLost) {
  for (bool edited : {false, true}) {
    int countdown = 0;
    bool killed = true;
    while (killed && countdown < 200) {
      countdown++;
      std::string when = "killed at step " + std::to_string(countdown);
      Learner_home home;
      Histories before = home.histories();
      FORGET_LESSON_ONE();
      home.settle();
      if (edited)
        edit_one(home);
      killed = KILLED_RUN(START_ONCE, countdown, 0);
      expect_lessons(when);
      expect_forgotten(home, before, true, when);
      home.expect_offsets(when);
    }
    EXPECT_GE(countdown, 2 * (3 + 7 + 2 * 2 + 1));
    EXPECT_LT(countdown, 200);
  }
}
