// A lesson loaded, drilled and recorded: killed on the way, and against a plain model of what the
// files must hold.
#include "support/prelude.h"

#include "lesson/learner_home.h"

#include <random>

#include "support/killed.h"

namespace {

// Answers every word of lesson 1: known often (its line changes in both directions).
void answer_all(Home_run *run) {
  for (int i = 1; i <= run->table.nb_posit; i++) {
    run->table.QRcum_nok[i] += 1;
    run->table.RQcum_nb[i] += 3;
  }
}

void record_lesson_one() {
  Home_run run;
  run.load(1);
  answer_all(&run);
  run.record();
}

// The two lines of word i (from 1) after that.
std::string recorded_history(int i) {
  return HISTORY(i, 3, 2000 + i, 3000) + HISTORY(2, i, 3000, 1700 + i);
}

// The dictionary is edited: its words come in reverse order, behind other text.
void move_words_of_one(const Learner_home &home) {
  std::vector<std::string> questions = QUESTIONS_OF("one");
  std::reverse(questions.begin(), questions.end());
  home.settle();
  home.write_dictionary("one", "some text\nin front\n", questions);
  home.borrow();
}

// Every line is the old or the new one of its word. Returns how many are new.
int count_recorded(const Learner_home &home, const std::string &when) {
  int nb = 0;
  for (const auto &[question, history] : home.histories()) {
    int i = question[5] - '0';
    bool drilled = question.find("one") != std::string::npos || question == "word 3 of two";
    for (size_t at : {0, 54}) {
      std::string line = history.substr(at, 54);
      bool is_new = drilled && line == recorded_history(i).substr(at, 54);
      EXPECT_TRUE(is_new || line == Learner_home::first_history(i).substr(at, 54))
          << when << " " << question << "\n"
          << line;
      nb += is_new ? 1 : 0;
    }
  }
  return nb;
}

// What a lesson's words are in the files and in memory: counts and days of both directions.
struct Model_side {
  long nb = 0, nok = 0, date_ok = 0, date_nok = 0;
};
struct Model_word {
  Model_side side[2];
  std::string lines() const {
    std::string text;
    for (const Model_side &s : side)
      text += HISTORY(s.nb, s.nok, s.date_ok, s.date_nok);
    return text;
  }
  // A count of 0 has no day once it is read.
  void read() {
    for (Model_side &s : side) {
      s.date_ok = s.nb == 0 ? 0 : s.date_ok;
      s.date_nok = s.nok == 0 ? 0 : s.date_nok;
    }
  }
};

// Some answers to one direction, in the table and in the model of the file.
void answer(int sens, int i, std::mt19937 *chance, Home_run *run, Model_side *model) {
  Trf_side side = SIDE_OF_TABLE(sens, &run->table);
  long known = (long)((*chance)() % 5);
  long missed = (*chance)() % 3 == 0 ? (long)((*chance)() % 3) : 0;
  side.cum_err[i] = (long)((*chance)() % 3);
  side.nb[i] += known;
  side.nok[i] += missed;
  if (missed > 0) {
    model->nok += missed;
    model->date_nok = 3000;
  } else if (known > 0) {
    model->date_ok = 3000;
    if (side.cum_err[i] == 0 || known > 2)
      model->nb += 1;
  }
}

void expect_model(const Learner_home &home, const std::map<std::string, Model_word> &model,
                  const std::string &when) {
  for (const auto &[question, history] : home.histories()) {
    std::string found = history;
    if (found.find_first_of("0123456789") == std::string::npos)
      found = Model_word().lines();
    std::string blank = NEVER();
    for (size_t at : {0, 54})
      if (found.substr(at, 54) == blank)
        found.replace(at, 54, HISTORY(0, 0, 0, 0));
    ASSERT_EQ(found, model.at(question).lines()) << when << " " << question;
  }
}

} // namespace

// Killed at any step nothing was said to be done: the files are synced before. Once the note of the
// lines is there, the next start records them all.
TEST(RecordedLesson, KilledAtEveryStepAllIsRecordedOrNothing) {
  int countdown = 0;
  int nb_recorded = 0;
  bool killed = true;
  while (killed && countdown < 200) {
    countdown++;
    std::string when = "killed at step " + std::to_string(countdown);
    Learner_home home;
    killed = KILLED_RUN(record_lesson_one, countdown, 0);
    bool done = home.dir.read("mertu_log").find("DONE") != std::string::npos;
    EXPECT_EQ(done, !killed) << when;
    bool noted = home.dir.exists("mertu_pending");
    int nb = count_recorded(home, when);
    EXPECT_TRUE(noted || nb == 0 || nb == 14) << when;
    if (countdown % 2 == 0)
      move_words_of_one(home);
    { Home_run next; }
    home.expect_offsets(when);
    int nb_next = count_recorded(home, "started again, " + when);
    EXPECT_EQ(nb_next, noted ? 14 : nb) << when;
    EXPECT_GE(nb_next, nb_recorded) << when;
    nb_recorded = nb_next;
    EXPECT_FALSE(home.dir.exists("mertu_pending")) << when;
  }
  EXPECT_EQ(nb_recorded, 14);
  // The note (sync, rename, sync of the directory), fourteen lines, each one write, two files
  // synced, the note removed (and the directory synced); two steps each, the last run is whole.
  EXPECT_EQ(countdown, 2 * (3 + 14 + 2 + 2) + 1);
}

TEST(RecordedLesson, ManyLessonsHoldWhatAPlainModelSays) {
  std::mt19937 chance(20090320);
  Learner_home home;
  std::map<std::string, Model_word> model;
  const std::vector<std::string> names = {"one", "two", "three"};
  for (const std::string &name : names)
    for (int i = 1; i <= NB_HOME_WORDS; i++)
      model["word " + std::to_string(i) + " of " + name] = {
          {{i, 2, 2000 + i, 1900}, {1, i, 1800, 1700 + i}}};
  for (int round = 0; round < 60; round++) {
    std::string when = "round " + std::to_string(round);
    Home_run run;
    for (int lesson = 0; lesson < 5; lesson++) {
      int n = 1 + (int)(chance() % 3);
      run.load(n);
      std::string gene = home.dir.read("idx1_gene");
      bool forgets = chance() % 10 == 0;
      bool records = chance() % 4 != 0;
      for (int i = 1; i <= run.table.nb_posit; i++) {
        std::string name = gene.substr((size_t)run.table.posit[i] + 1);
        Model_word *word = &model.at(name.substr(0, name.find(" *")));
        Model_word kept = *word;
        word->read();
        for (int sens : {1, 2})
          if (chance() % 2 == 0)
            answer(sens, i, &chance, &run, &word->side[sens - 1]);
        // What is not rewritten stands in the file as it was.
        for (int k : {0, 1}) {
          const Model_side &s = word->side[k];
          if (s.nok == kept.side[k].nok && s.date_ok != 3000)
            word->side[k] = kept.side[k];
        }
        if (forgets)
          *word = Model_word();
        else if (!records)
          *word = kept;
      }
      if (forgets)
        run.forget();
      else if (records)
        run.record();
      run.load(1 + (int)(chance() % 3));
      expect_model(home, model, when);
    }
  }
}
