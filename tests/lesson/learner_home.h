// A learner's directory with three dictionaries and what was learned of each word, and the program
// run in it without a window: started, a lesson loaded, recorded or forgotten.
#ifndef MERTU_TESTS_LESSON_LEARNER_HOME_H
#define MERTU_TESTS_LESSON_LEARNER_HOME_H

#include "support/prelude.h"

#include <algorithm>
#include <map>

#include "db/index_update.h"
#include "db/record_lesson.h"
#include "lesson/desk.h"
#include "util/dialogs.h"

const int NB_HOME_WORDS = 6;

// The questions of a dictionary (one, two or three), in its order.
inline std::vector<std::string> QUESTIONS_OF(const std::string &name) {
  std::vector<std::string> questions;
  for (int i = 1; i <= NB_HOME_WORDS; i++)
    questions.push_back("word " + std::to_string(i) + " of " + name);
  return questions;
}

// Both history lines of a word, by its question.
using Histories = std::map<std::string, std::string>;

inline Trf_answer FORGET_ALWAYS(Trf_question, const char *, Trf_book *) {
  return ANSWER_YES;
}

inline void TELL_NOBODY(Trf_notice, const char *, Trf_book *) {
}

// The program of one run; the log is unbuffered. Today is day 3000.
struct Home_run {
  Trf_string registry = {};
  Trf_posit table;
  Trf_err weights = {9.0F, 3.0F, 2.0F, 6.0F, 10.0F};
  Trf_book book = {};

  Home_run() {
    SET_PRESENT_DAY(2009, 3, 20);
    START_REGISTRY(&registry);
    g_free(registry.st_lesson);
    registry.st_lesson = g_strdup("./one ./two ./three ");
    registry.nb_lesson = 3;
    book.G_kentel = &registry;
    book.nbt_lesson = 3;
    book.t_posit = &table;
    book.t_err = &weights;
    book.fp_log = fopen("mertu_log", "w");
    setvbuf(book.fp_log, nullptr, _IONBF, 0);
    static const Trf_dialogs dialogs = {FORGET_ALWAYS, TELL_NOBODY};
    SET_DIALOGS(&dialogs);
    CALC_INDEX(book.fp_log, &registry, &table);
  }
  ~Home_run() {
    SET_DIALOGS(nullptr);
    fclose(book.fp_log);
    FREE_POSIT(&table);
    FREE_REGISTRY(&registry);
    RESET_PRESENT();
  }
  Home_run(const Home_run &) = delete;
  Home_run &operator=(const Home_run &) = delete;

  void load(int n) {
    book.ilesson = n;
    INIT_LESSON(&n, &book);
  }
  void record() {
    RECORD_LESSON(&book);
  }
  void forget() {
    RAZ_LESSON(&book);
  }
};

// A run that does nothing but start.
inline void START_ONCE() {
  Home_run run;
}

inline void FORGET_LESSON_ONE() {
  Home_run run;
  run.load(1);
  run.forget();
}

struct Learner_home {
  Scratch_dir dir;

  // Writes a dictionary: text in front, then its words in this order.
  void write_dictionary(const std::string &name, const std::string &front,
                        const std::vector<std::string> &questions) const {
    std::string text = front + "!# " + name + "\n";
    for (const std::string &question : questions)
      text += "# " + question + " * answer\n";
    dir.write(name, text);
  }
  // The first words, each with a history of its own; the dictionary "one" borrows a word of "two".
  Learner_home() {
    for (const char *name : {"one", "two", "three"})
      write_dictionary(name, "", QUESTIONS_OF(name));
    borrow();
    testing::internal::CaptureStdout();
    { Home_run first; }
    testing::internal::GetCapturedStdout();
    for (const char *name : {"one", "two", "three"})
      give_histories(name);
    settle();
  }
  void borrow() const {
    dir.write("one", dir.read("one") + "##word 3 of two *two\n");
  }
  static std::string path(const std::string &name) {
    return "IDX1/idx1_" + name;
  }
  static std::string first_history(int i) {
    return HISTORY(i, 2, 2000 + i, 1900) + HISTORY(1, i, 1800, 1700 + i);
  }
  void give_histories(const std::string &name) const {
    std::string text = dir.read(path(name));
    int i = 1;
    for (const std::string &question : QUESTIONS_OF(name)) {
      size_t at = text.find("\r\n", text.find("#" + question + " *"));
      text.replace(at + 2, 108, first_history(i++));
    }
    dir.write(path(name), text);
  }
  // The histories that stand in the indexes, each word's two lines behind its name.
  Histories histories() const {
    Histories found;
    for (const char *name : {"one", "two", "three"}) {
      std::string text = dir.read(path(name));
      for (const std::string &question : QUESTIONS_OF(name)) {
        size_t at = text.find("#" + question + " *");
        EXPECT_NE(at, std::string::npos) << question;
        found[question] = text.substr(text.find("\r\n", at) + 2, 108);
      }
    }
    return found;
  }
  // What was done so far was done yesterday.
  void settle() const {
    for (const char *name : {"one", "two", "three"}) {
      age(name, 300);
      age(std::string("CPY/") + name, 200);
      age(path(name), 100);
    }
  }
  static void age(const std::string &file, int seconds) {
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() -
                                               std::chrono::seconds(seconds));
  }
  // Every offset of every index is that of its entry in the working copy.
  void expect_offsets(const std::string &when) const {
    for (const std::string name : {"one", "two", "three"}) {
      std::string copy = dir.read("CPY/" + name);
      for (const std::string &question : QUESTIONS_OF(name)) {
        std::string offset = std::to_string(copy.find("# " + question + " *"));
        EXPECT_NE(dir.read(path(name)).find("#" + question + " *" + name + " " + offset + " *"),
                  std::string::npos)
            << when << " " << question;
      }
    }
  }
};

#endif
