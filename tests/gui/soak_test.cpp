// Weeks of drilling in minutes: thousands of presses and commands by chance, restarts and edited
// dictionaries in between, and after each the files hold what a plain model of the drill says.
#include "support/prelude.h"

#include <limits.h>
#include <string.h>

#include <deque>
#include <random>
#include <set>

#include "app/book_start.h"
#include "app/main_window.h"
#include "app/navigation.h"
#include "command/command_entry.h"
#include "gui/drill_model.h"
#include "gui/window.h"
#include "gui/word_writer.h"
#include "quiz/answer_button.h"
#include "quiz/choose_entry.h"
#include "quiz/entry_lines.h"
#include "quiz/show_entry.h"
#include "quiz/toggles.h"
#include "score/position_table.h"
#include "support/present.h"
#include "text/find_sound.h"
#include "util/dialogs.h"

namespace {

namespace fs = std::filesystem;

// 1 March 2026.
const long FIRST_DAY = 9190;

// The answers that are due, in turn, and how many notices.
struct {
  std::deque<Trf_answer> due;
  int nb_notices = 0;
} answers;

Trf_answer answer(Trf_question, const char *text, Trf_book *) {
  if (answers.due.empty()) {
    ADD_FAILURE() << text;
    return ANSWER_NO;
  }
  Trf_answer next = answers.due.front();
  answers.due.pop_front();
  return next;
}

void take_notice(Trf_notice, const char *text, Trf_book *) {
  EXPECT_GT(answers.nb_notices, 0) << text;
  answers.nb_notices--;
}

const Trf_dialogs ANSWERING = {answer, take_notice};

// A command that composes a lesson, and what the lesson is made of. Those of a tag take their
// direction glued on.
struct Composing {
  const char *word;
  const char *tag;
  Plain_kind kind;
  Plain_tag of;
};

const Composing COMPOSING[] = {
    {"!new", nullptr, NEW_WORDS, ANY_TAG},      {"!bal", nullptr, ONE_WAY_WORDS, ANY_TAG},
    {"!worst", nullptr, WORST_WORDS, ANY_TAG},  {"!worsto", nullptr, WORST_WORDS, ANY_TAG},
    {"!worsty", nullptr, WORST_WORDS, ANY_TAG}, {"!worstn", nullptr, WORST_WORDS, ANY_TAG},
    {"!lessv", nullptr, WORST_WORDS, ANY_TAG},  {"!tag", "", WORST_WORDS, NO_TAG},
    {"!tag", "Answer", WORST_WORDS, THE_TAG},   {"!ntag", "", NEW_WORDS, NO_TAG},
    {"!ntag", "answer", NEW_WORDS, THE_TAG},
};

// As many words as a composed lesson holds.
const size_t FULL = 20;

void drain() {
  while (gtk_events_pending())
    gtk_main_iteration();
}

// The program from its start to its end, in the directory that stands.
class Run {
public:
  Run() {
    SET_CLOCK_STEP(1000000);
    ALLOCATE_RECORDS(&records_);
    book = records_.book;
    PREPARE_WORDS(&records_);
    OPEN_MAIN_WINDOW(&records_);
    SET_DIALOGS(&ANSWERING);
    drain();
  }
  ~Run() {
    gtk_widget_destroy(book->pWindow);
    drain();
    FREE_RECORDS(&records_);
    FORGET_PRESSES();
    FORGET_CHOICES();
    FORGET_HEARD();
    FORGET_SHOWN();
    FORGET_SOUND_PLACE();
    SET_DIALOGS(nullptr);
    SET_CLOCK_STEP(0);
  }
  Run(const Run &) = delete;
  Run &operator=(const Run &) = delete;

  Trf_book *book = nullptr;

private:
  Trf_records records_ = {};
};

class Soak {
public:
  // commands: how many of a hundred steps are commands that compose a lesson. size: of the
  // dictionaries, which have 28 words together where it is 1.
  Soak(unsigned seed, int commands, int size = 1) : chance_(seed), commands_(commands) {
    model_.dictionaries = {
        writer_.dictionary("a.txt", "ka0", 4 * size), writer_.dictionary("b.txt", "kb0", 14 * size),
        writer_.dictionary("c.txt", "kc0", 7 * size), writer_.dictionary("d.txt", "kd0", 3 * size)};
    for (int i = 0; i < 6; i++)
      add_double();
    dir_.write("mertu.conf", CONFIGURATION({"a.txt", "b.txt", "c.txt", "d.txt"}));
    for (Plain_dictionary &dictionary : model_.dictionaries)
      dir_.write(dictionary.file, TEXT_OF(dictionary));
    edited_ = {0, 1, 2, 3};
    pass_days(0);
  }
  ~Soak() {
    answers.due.clear();
    answers.nb_notices = 0;
    RESET_PRESENT();
  }
  // One run of the program, and what is edited behind it. False where it went wrong.
  bool run(int nb_steps);

  int nb_recorded = 0;
  int nb_forgotten = 0;
  int nb_undone = 0;
  int nb_kept = 0; // histories that are not blank, found again behind an edit
  int nb_composed = 0;
  int nb_full = 0;              // composed lessons that not all fitting words have room in
  int nb_composed_recorded = 0; // with verdicts in them or without
  int nb_commands = 0;          // all others

private:
  Scratch_dir dir_;
  std::mt19937 chance_;
  int commands_;
  Word_writer writer_{&chance_};
  Drill_model model_;
  std::set<int> edited_;
  bool remembered_ = false;
  int known_ = 50; // left presses in a hundred, in this run
  std::deque<std::string> steps_;

  int below(int n) {
    return (int)(chance_() % (unsigned)n);
  }
  bool one_in(int n) {
    return below(n) == 0;
  }
  void note(const std::string &step) {
    steps_.push_back(step);
    if (steps_.size() > 25)
      steps_.pop_front();
  }
  void pass_days(int nb);

  void add_double();
  void edit_some();

  void follow_rebuild();
  void step(Trf_book *book);
  void press_answer(Trf_book *book);
  void answer_question();
  void leave(const char *how, Trf_book *book);
  void type(const std::string &text, Trf_book *book);
  void type_composing(Trf_book *book);
  void follow_composed(const Composing &composing, const std::vector<Plain_word> &fitting,
                       const Trf_book *book);
  Plain_word word_told(int i, const std::vector<Plain_word> &fitting, const Trf_book *book) const;
  void type_other(Trf_book *book);
  void rebuild(int i);
  bool step_is_right(bool look, Trf_book *book);
  bool table_is_right(const Trf_book *book) const;
  bool book_is_right(const Trf_book *book) const;
  bool files_are_right() const;
  std::string story() const;
};

void Soak::pass_days(int nb) {
  model_.today = std::max(model_.today, FIRST_DAY) + nb;
  SET_PRESENT_DAY(2026, 3, (int)(1 + model_.today - FIRST_DAY));
}

void Soak::add_double() {
  int here = writer_.add_double(&model_.dictionaries);
  if (here >= 0)
    edited_.insert(here);
}

// Edits dictionaries, each now younger than its copy. All else is as old as it was.
void Soak::edit_some() {
  fs::file_time_type now = fs::file_time_type::clock::now();
  auto age = [now](const std::string &name, int seconds) {
    if (fs::exists(name))
      fs::last_write_time(name, now - std::chrono::seconds(seconds));
  };
  for (int i = 0; i < 4; i++)
    if (one_in(2)) {
      writer_.edit(&model_.dictionaries[i]);
      edited_.insert(i);
    }
  if (one_in(2))
    add_double();
  age("mertu.conf", 500);
  for (int i = 0; i < 4; i++) {
    const Plain_dictionary &dictionary = model_.dictionaries[i];
    if (edited_.count(i) > 0)
      dir_.write(dictionary.file, TEXT_OF(dictionary));
    age(dictionary.file, edited_.count(i) > 0 ? 100 : 400);
    age("CPY/" + dictionary.file, 300);
    age("IDX1/idx1_" + dictionary.file, 200);
  }
}

void Soak::rebuild(int i) {
  Plain_dictionary &dictionary = model_.dictionaries[i];
  REBUILD(dir_.read("CPY/" + dictionary.file), dir_.read("IDX1/idx1_" + dictionary.file),
          &dictionary);
}

// What the start of the program does to the indexes.
void Soak::follow_rebuild() {
  MEND(&model_);
  for (int i : edited_) {
    rebuild(i);
    for (const Plain_line &line : model_.dictionaries[i].index)
      nb_kept += !line.sides[0].blank && line.sides[0].known + line.sides[0].missed > 0;
  }
  edited_.clear();
}

void Soak::press_answer(Trf_book *book) {
  bool responding = model_.start_lesson == 3 && model_.state == 2;
  int drawn = below(100);
  int button = drawn < known_ ? 1 : drawn < (responding ? 92 : 87) ? 3 : 2;
  // Only a left press starts a lesson; behind the last one there is none to skip to.
  if (model_.start_lesson == 2 && (model_.ilesson == 4 || !one_in(5)))
    button = 1;
  nb_undone += button == 2 && model_.start_lesson == 3 && model_.state == 1 && model_.save;
  note("press " + std::to_string(button) + " on entry " + std::to_string(book->QR_no));
  PRESS(button, book->QR_no, &model_);
  GdkEvent event;
  memset(&event, 0, sizeof event);
  event.type = GDK_BUTTON_PRESS;
  event.button.button = (guint)button;
  callback_ok_nok(book->Button1, &event, book);
}

// What will be answered to the record question: it records, forgets or does neither. A composed
// lesson is not forgotten, and one with fewer answers than the files is not recorded.
void Soak::answer_question() {
  if (model_.start_lesson < 3)
    return;
  int choice = MAY_RECORD(model_) ? below(10) : 8 + below(2);
  bool numbered = model_.ilesson > 0;
  note("answer " + std::to_string(choice));
  answers.due = {choice <= 5   ? ANSWER_YES
                 : choice <= 7 ? ANSWER_FORGET
                 : choice == 8 ? ANSWER_NO
                               : ANSWER_CLOSED};
  if (numbered && (choice == 6 || choice == 7))
    answers.due.push_back(choice == 7 ? ANSWER_NO : one_in(2) ? ANSWER_YES : ANSWER_CLOSED);
  if (numbered && choice == 6) {
    FORGET(&model_);
    nb_forgotten++;
  } else if (choice <= 5 || (numbered && choice == 7)) {
    RECORD(&model_);
    nb_recorded++;
    nb_composed_recorded += numbered ? 0 : 1;
  }
}

// Leaves the lesson: by "Next", "Prev" or "Quit".
void Soak::leave(const char *how, Trf_book *book) {
  note(how);
  answer_question();
  if (how == std::string("Quit"))
    return ON_QUIT(nullptr, book);
  bool next = how == std::string("Next");
  MOVE(next ? 1 : -1, &model_);
  (next ? cback_next_less : cback_prev_less)(nullptr, book);
}

void Soak::type(const std::string &text, Trf_book *book) {
  note(text);
  gtk_entry_set_text(GTK_ENTRY(book->entry_book), text.c_str());
  callback_entry_book(book->entry_book, book);
}

// Word i of the composed lesson as the program tells it: which of the fitting ones, and its score
// in the direction not asked, which may be that of a word that had to go.
Plain_word Soak::word_told(int i, const std::vector<Plain_word> &fitting,
                           const Trf_book *book) const {
  std::string record = dir_.read("idx2_gene").substr((size_t)book->t_posit->posit[i]);
  for (Plain_word word : fitting) {
    const Plain_dictionary &dictionary = model_.dictionaries[word.dictionary];
    std::string name = dictionary.index[word.line].text;
    if (record.compare(0, name.size(), name) != 0)
      continue;
    int other = model_.sens_qr == 2 ? 0 : 1;
    word.sides[other].err = SIDE_OF_TABLE(other + 1, book->t_posit).cum_err[i];
    return word;
  }
  ADD_FAILURE() << "no word for " << record << story();
  return {};
}

// A lesson that has not room for all must hold the worst ones.
void Soak::follow_composed(const Composing &composing, const std::vector<Plain_word> &fitting,
                           const Trf_book *book) {
  if (fitting.size() <= FULL)
    return COMPOSE(fitting, &model_);
  std::vector<Plain_word> words;
  std::set<std::pair<int, int>> held;
  for (int i = 1; i <= (int)FULL; i++) {
    words.push_back(word_told(i, fitting, book));
    held.insert({words.back().dictionary, words.back().line});
  }
  EXPECT_EQ(held.size(), FULL) << story();
  COMPOSE(words, &model_);
  nb_full++;
  if (composing.word != std::string("!worst") && composing.word != std::string("!tag"))
    return;
  int d = model_.sens_qr == 2 ? 1 : 0;
  long least = LONG_MAX;
  for (const Plain_word &word : words)
    least = std::min(least, word.sides[d].err);
  for (const Plain_word &word : fitting)
    EXPECT_TRUE(held.count({word.dictionary, word.line}) > 0 || word.sides[d].err <= least)
        << story();
}

void Soak::type_composing(Trf_book *book) {
  const Composing &composing = COMPOSING[below((int)std::size(COMPOSING))];
  answer_question();
  int asked = below(3);
  const char *direction = asked == 0 ? "" : asked == 1 ? "qr" : "rq";
  if (asked != 0)
    model_.sens_qr = asked;
  if (composing.tag != nullptr && composing.kind == WORST_WORDS && model_.toggle == 1) {
    model_.toggle = 0;
    model_.sens_qr = model_.sens_qr == 2 ? 1 : 2;
  }
  MEND(&model_);
  std::vector<Plain_word> fitting = WORDS_FOR(composing.kind, composing.of, model_);
  type(composing.tag == nullptr ? composing.word + std::string(" ") + direction
                                : composing.word + std::string(direction) + " " + composing.tag,
       book);
  follow_composed(composing, fitting, book);
  nb_composed += fitting.empty() ? 0 : 1;
}

void Soak::type_other(Trf_book *book) {
  nb_commands++;
  int drawn = below(14);
  if (drawn == 0)
    return type("!sound", book);
  answer_question();
  int number = 1 + below(4);
  switch (drawn) {
  case 1:
    ANNOUNCE(number, &model_);
    return type(std::to_string(number), book);
  case 2:
    ANNOUNCE(number, &model_);
    return type(" " + model_.dictionaries[number - 1].alias, book);
  case 3:
    ANNOUNCE(99, &model_);
    return type("99", book);
  case 4:
  case 5:
  case 6:
    ANNOUNCE(0, &model_);
    return type(drawn == 4 ? "0" : drawn == 5 ? "!newx" : "", book);
  case 7:
    model_.start_lesson = 0;
    return type("help", book);
  case 8:
    MEND(&model_);
    model_.start_lesson = 0;
    return type("!ltag", book);
  case 9:
  case 10:
    MEND(&model_);
    ANNOUNCE(0, &model_);
    return type(drawn == 9 ? "!dico" : "!trf", book);
  case 11:
    MEND(&model_);
    ANNOUNCE(0, &model_);
    answers.nb_notices = 1;
    return type("!synchro nowhere", book);
  default:
    MEND(&model_);
    ANNOUNCE(0, &model_);
    answers.nb_notices = 1;
    type(drawn == 12 ? "!ccdb" : "!ccdb " + std::to_string(number), book);
    for (int i = 0; i < 4; i++)
      if (drawn == 12 || i + 1 == number)
        rebuild(i);
  }
}

void Soak::step(Trf_book *book) {
  int drawn = below(100);
  if (drawn < commands_)
    return type_composing(book);
  if (drawn < 88)
    return press_answer(book);
  if (drawn < 90)
    return type_other(book);
  if (drawn < 95) {
    note("direction");
    PRESS_DIRECTION(&model_);
    GdkEvent event;
    memset(&event, 0, sizeof event);
    event.type = GDK_BUTTON_PRESS;
    event.button.button = 1;
    callback_togqr(book->button_qr, &event, book);
  } else if (drawn < 99) {
    leave(drawn < 97 ? "Next" : "Prev", book);
  } else {
    note("midnight");
    pass_days(1);
  }
}

bool same(const Plain_counts &counts, const Trf_side &side, int i) {
  return counts.nb == side.nb[i] && counts.nb0 == side.nb0[i] && counts.nok == side.nok[i] &&
         counts.nok0 == side.nok0[i] && counts.err == side.cum_err[i];
}

bool Soak::table_is_right(const Trf_book *book) const {
  if (model_.start_lesson < 3)
    return true;
  Trf_posit *t_posit = book->t_posit;
  bool right = t_posit->nb_posit == (int)model_.words.size();
  for (int i = 1; right && i <= t_posit->nb_posit; i++)
    for (int d : {0, 1})
      right = right && same(model_.words[i - 1].sides[d], SIDE_OF_TABLE(d + 1, t_posit), i);
  return right;
}

bool Soak::book_is_right(const Trf_book *book) const {
  bool drilling = model_.start_lesson == 3;
  return book->ilesson == model_.ilesson && book->start_lesson == model_.start_lesson &&
         book->sens_qr == model_.sens_qr && book->toggle_sens_qr == model_.toggle &&
         (!drilling || (book->state == model_.state && book->sens_qrm == model_.sens_qrm)) &&
         answers.due.empty() && answers.nb_notices == 0;
}

bool Soak::files_are_right() const {
  for (const Plain_dictionary &dictionary : model_.dictionaries)
    EXPECT_EQ(dir_.read("IDX1/idx1_" + dictionary.file), INDEX_OF(dictionary)) << story();
  return !testing::Test::HasFailure();
}

std::string Soak::story() const {
  std::string text = "day " + std::to_string(model_.today);
  for (const std::string &step : steps_)
    text += "\n  " + step;
  return text;
}

// Looks whether one step more leaves what the model says. The files are compared where it matters.
bool Soak::step_is_right(bool look, Trf_book *book) {
  int nb_done = nb_recorded + nb_forgotten + nb_composed + nb_commands;
  int was_at = model_.start_lesson;
  step(book);
  EXPECT_TRUE(book_is_right(book)) << story();
  EXPECT_TRUE(table_is_right(book)) << story();
  if (look || nb_recorded + nb_forgotten + nb_composed + nb_commands != nb_done ||
      was_at != model_.start_lesson)
    files_are_right();
  return !testing::Test::HasFailure();
}

bool Soak::run(int nb_steps) {
  note("start");
  known_ = 45 + below(40);
  Run program;
  START(remembered_, &model_);
  follow_rebuild();
  EXPECT_TRUE(book_is_right(program.book)) << story();
  if (!files_are_right())
    return false;
  for (int i = 1; i <= nb_steps; i++)
    if (!step_is_right(i % 50 == 0, program.book))
      return false;
  remembered_ = !one_in(5); // else the window is closed: nothing is asked, nothing remembered
  if (remembered_)
    leave("Quit", program.book);
  EXPECT_TRUE(book_is_right(program.book)) << story();
  if (!files_are_right())
    return false;
  edit_some();
  pass_days(below(one_in(3) ? 40 : 9));
  return true;
}

// So many runs of the program, each with so many steps.
void soak(Soak *soak, int nb_runs, int nb_steps) {
  for (int i = 0; i < nb_runs; i++)
    ASSERT_TRUE(soak->run(nb_steps)) << "run " << i;
  EXPECT_GE(soak->nb_recorded, nb_runs);
  EXPECT_GE(soak->nb_forgotten, 1);
  EXPECT_GE(soak->nb_kept, nb_runs);
  EXPECT_GE(soak->nb_composed, nb_runs / 2);
  EXPECT_GE(soak->nb_commands, nb_runs / 2);
}

} // namespace

TEST(Soak, TheFilesHoldWhatAPlainModelSays) {
  Soak presses(1, 3);
  soak(&presses, 14, 150);
  EXPECT_GE(presses.nb_undone, 14);
}

TEST(Soak, EditedDictionariesKeepEveryHistory) {
  Soak edits(20260301, 3);
  soak(&edits, 36, 50);
  EXPECT_GE(edits.nb_undone, 36);
}

TEST(Soak, ALongDrillCountsEveryVerdict) {
  Soak drills(77, 1);
  soak(&drills, 4, 450);
  EXPECT_GE(drills.nb_undone, 4);
}

TEST(Soak, ComposedLessonsAreDrilledAndRecorded) {
  Soak compositions(8, 10, 2);
  soak(&compositions, 24, 60);
  EXPECT_GE(compositions.nb_composed, 48);
  EXPECT_GE(compositions.nb_composed_recorded, 20);
  EXPECT_GE(compositions.nb_full, 3);
}
