// Weeks of drilling in minutes: thousands of presses by chance, restarts and edited dictionaries in
// between, and after each the files hold what a plain model of the drill says.
#include "support/prelude.h"

#include <string.h>

#include <deque>
#include <random>
#include <set>

#include "app/book_start.h"
#include "app/main_window.h"
#include "app/navigation.h"
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

// The answers that are due, in turn.
struct {
  std::deque<Trf_answer> due;
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
  ADD_FAILURE() << text;
}

const Trf_dialogs ANSWERING = {answer, take_notice};

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
  explicit Soak(unsigned seed) : chance_(seed) {
    model_.dictionaries = {
        writer_.dictionary("a.txt", "ka0", 4), writer_.dictionary("b.txt", "kb0", 14),
        writer_.dictionary("c.txt", "kc0", 7), writer_.dictionary("d.txt", "kd0", 3)};
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
    RESET_PRESENT();
  }
  // One run of the program, and what is edited behind it. False where it went wrong.
  bool run(int nb_steps);

  int nb_recorded = 0;
  int nb_forgotten = 0;
  int nb_undone = 0;
  int nb_kept = 0; // histories that are not blank, found again behind an edit

private:
  Scratch_dir dir_;
  std::mt19937 chance_;
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
  void leave(const char *how, Trf_book *book);
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

// What the start of the program does to the indexes.
void Soak::follow_rebuild() {
  MEND(&model_);
  for (int i : edited_) {
    Plain_dictionary &dictionary = model_.dictionaries[i];
    REBUILD(dir_.read("CPY/" + dictionary.file), dir_.read("IDX1/idx1_" + dictionary.file),
            &dictionary);
    for (const Plain_line &line : dictionary.index)
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

// Leaves the lesson: by "Next", "Prev" or "Quit". Records, forgets or neither.
void Soak::leave(const char *how, Trf_book *book) {
  int choice = model_.start_lesson < 3 ? -1 : below(10);
  note(how + std::string(" ") + std::to_string(choice));
  if (choice >= 0 && choice <= 5)
    answers.due = {ANSWER_YES};
  else if (choice == 6)
    answers.due = {ANSWER_FORGET, one_in(2) ? ANSWER_YES : ANSWER_CLOSED};
  else if (choice == 7)
    answers.due = {ANSWER_FORGET, ANSWER_NO};
  else if (choice >= 8)
    answers.due = {choice == 8 ? ANSWER_NO : ANSWER_CLOSED};
  if (choice == 6) {
    FORGET(&model_);
    nb_forgotten++;
  } else if (choice >= 0 && choice <= 7) {
    RECORD(&model_);
    nb_recorded++;
  }
  if (how == std::string("Quit"))
    return ON_QUIT(nullptr, book);
  bool next = how == std::string("Next");
  MOVE(next ? 1 : -1, &model_);
  (next ? cback_next_less : cback_prev_less)(nullptr, book);
}

void Soak::step(Trf_book *book) {
  int drawn = below(100);
  if (drawn < 90)
    return press_answer(book);
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
         answers.due.empty();
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
  int nb_written = nb_recorded + nb_forgotten;
  int was_at = model_.start_lesson;
  step(book);
  EXPECT_TRUE(book_is_right(book)) << story();
  EXPECT_TRUE(table_is_right(book)) << story();
  if (look || nb_recorded + nb_forgotten != nb_written || was_at != model_.start_lesson)
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

// So many runs of the program, each with so many presses.
void soak(unsigned seed, int nb_runs, int nb_steps) {
  Soak soak(seed);
  for (int i = 0; i < nb_runs; i++)
    ASSERT_TRUE(soak.run(nb_steps)) << "run " << i;
  EXPECT_GE(soak.nb_recorded, nb_runs);
  EXPECT_GE(soak.nb_forgotten, 1);
  EXPECT_GE(soak.nb_undone, nb_runs);
  EXPECT_GE(soak.nb_kept, nb_runs);
}

} // namespace

TEST(Soak, TheFilesHoldWhatAPlainModelSays) {
  soak(1, 14, 150);
}

TEST(Soak, EditedDictionariesKeepEveryHistory) {
  soak(20260301, 36, 50);
}

TEST(Soak, ALongDrillCountsEveryVerdict) {
  soak(77, 4, 450);
}
