// A plain model of the words, their histories and the drill, which the soak of the window goes by.
//
// It knows nothing of the program's tables: it holds what the learner wrote in her dictionaries and
// what every index must therefore hold, and follows each press by the rules of the drill alone.
// Only which entry is asked next it is told.
#ifndef MERTU_TESTS_GUI_DRILL_MODEL_H
#define MERTU_TESTS_GUI_DRILL_MODEL_H

#include <optional>
#include <string>
#include <vector>

// A history line of an index: four numbers, or nothing yet.
struct Plain_history {
  bool blank = true;
  long known = 0;      // field 1
  long missed = 0;     // field 2
  long day_known = 0;  // field 3
  long day_missed = 0; // field 4
};

// An item of a dictionary as the learner writes it; in CP1252.
struct Plain_item {
  std::string question;
  std::string answer;
  std::string owner;           // alias of the dictionary it stands for; "" for an entry of its own
  bool answer_in_name = false; // the response stands behind the question too
  bool remark = false;         // a line of free text stands before it
};

// A line of the index behind the header, with its history where it is an entry.
struct Plain_line {
  std::string text;
  std::string question; // "" where the line stands for an entry of another dictionary
  std::string owner;    // alias of that one
  Plain_history sides[2];
  bool erased = false; // forgotten, and not made whole yet
  std::string tail;    // the last two bytes that forgetting left
};

struct Plain_dictionary {
  std::string file;
  std::string alias;
  bool utf8 = false;
  std::vector<Plain_item> items;
  std::string trailer; // last line of the index
  std::vector<Plain_line> index;
};

// What is counted in one direction of a word.
struct Plain_counts {
  long nb = 0;
  long nb0 = 0;
  long nok = 0;
  long nok0 = 0;
  long err = -1;
};

// A word of the lesson.
struct Plain_word {
  int dictionary;
  int line;
  Plain_counts sides[2];
};

// The word last answered, as it was before.
struct Plain_save {
  int word;
  Plain_word before;
};

struct Drill_model {
  std::vector<Plain_dictionary> dictionaries;
  long today = 0;
  int ilesson = 1; // 0 for a composed lesson
  int start_lesson = 1;
  int state = 1;
  int toggle = 0;
  int sens_qr = 1;
  int sens_qrm = 1;              // direction of the question on screen
  std::vector<Plain_word> words; // of the lesson, entry 1 first
  std::optional<Plain_save> save;
};

// The dictionary's file, in its encoding.
std::string TEXT_OF(const Plain_dictionary &dictionary);

// What the index holds: its bytes.
std::string INDEX_OF(const Plain_dictionary &dictionary);

// The index of an edited dictionary: every question that was there keeps its histories. copy: the
// working copy, which gives the places of the entries; index: the program's, for its last line.
void REBUILD(const std::string &copy, const std::string &index, Plain_dictionary *dictionary);

// Forgotten entries are whole again, without a history.
void MEND(Drill_model *model);

// The program starts: with the lesson and the direction that were left, or afresh.
void START(bool remembered, Drill_model *model);

// Presses of the answer button (1 left, 2 middle, 3 right; asked: the entry on screen, from 1) and
// of the direction button.
void PRESS(int button, int asked, Drill_model *model);
void PRESS_DIRECTION(Drill_model *model);

// Another lesson is announced: the next one (step 1) or the one before (step -1).
void MOVE(int step, Drill_model *model);

// Lesson `number` is announced by a command; 0 for none: then it is the lesson before, the first
// one behind a composed lesson.
void ANNOUNCE(int number, Drill_model *model);

// What a composed lesson is made of. Words with a tag are those whose response stands behind the
// question too.
enum Plain_kind { NEW_WORDS, ONE_WAY_WORDS, WORST_WORDS };
enum Plain_tag { ANY_TAG, NO_TAG, THE_TAG };

// The words that it may hold in the direction of questioning, in the order of the dictionaries: of
// the worst words all that count, of the others the first twenty. Their histories are as the lesson
// reads them.
std::vector<Plain_word> WORDS_FOR(Plain_kind kind, Plain_tag tag, const Drill_model &model);

// A lesson of these words is composed and announced; where there is none, the lesson before is.
void COMPOSE(const std::vector<Plain_word> &words, Drill_model *model);

// Whether no word of the lesson counts fewer answers than its history.
bool MAY_RECORD(const Drill_model &model);

// The lesson is recorded; it is forgotten.
void RECORD(Drill_model *model);
void FORGET(Drill_model *model);

#endif
