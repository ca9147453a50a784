// A lesson ready to be recorded: idx1 files, the generated lesson file, the table filled from them,
// scripted dialogs. Today is day 3000.
#ifndef MERTU_TESTS_DB_RECORD_DESK_H
#define MERTU_TESTS_DB_RECORD_DESK_H

#include <array>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>

#include "db/generated_lesson.h"
#include "db/record_lesson.h"
#include "db_files.h"
#include "score/position_table.h"
#include "support/present.h"
#include "util/dialogs.h"
#include "util/report.h"

using Fields = std::array<long, 4>;
const Fields NEVER_ASKED = {0, 0, 0, 0};

// What the scripted dialogs answer and saw.
struct Script {
  Trf_answer answer = ANSWER_NO;
  bool window_goes = false; // the window goes while a question stands
  bool lesson_goes = false; // another lesson is chosen while a question stands
  std::vector<std::string> asked;
  std::vector<std::string> told;
  std::vector<std::string> log_told; // what the log on the disk held at each
};

inline Script &SCRIPT() {
  static Script script;
  return script;
}

inline Trf_answer SCRIPTED_ASK(Trf_question kind, const char *text, Trf_book *book) {
  EXPECT_EQ(kind, QUESTION_FORGET);
  SCRIPT().asked.push_back(text);
  if (SCRIPT().window_goes)
    book->pWindow = nullptr;
  if (SCRIPT().lesson_goes)
    book->ilesson = 2;
  return SCRIPT().answer;
}

inline void SCRIPTED_TELL(Trf_notice kind, const char *text, Trf_book *) {
  SCRIPT().told.push_back((kind == NOTICE_ERROR ? "error: " : "warning: ") + std::string(text));
  std::ifstream log("log");
  SCRIPT().log_told.emplace_back(std::istreambuf_iterator<char>(log),
                                 std::istreambuf_iterator<char>());
}

// Three dictionaries one, two, three with the aliases a1, b2, c3, and lesson 1 of some of their
// words.
struct Record_desk {
  Scratch_dir dir;
  Test_registry registry{{"./one", "./two", "./three"}};
  Trf_posit table;
  Trf_book book = {};
  std::map<std::string, std::string> files; // idx1 files by dictionary, without their trailer
  std::vector<std::string> lesson;          // the records of the generated lesson file
  std::vector<std::pair<std::string, size_t>> places; // of each word's Q->R line

  Record_desk() {
    SET_PRESENT_DAY(2009, 3, 20);
    g_free(registry.record.st_alias);
    registry.record.st_alias = g_strdup(" a1 b2 c3 ");
    book.G_kentel = &registry.record;
    book.t_posit = &table;
    book.nbt_lesson = 3;
    book.ilesson = 1;
    book.fp_log = fopen("log", "w");
    setvbuf(book.fp_log, nullptr, _IONBF, 0);
    SET_SAVED_LOG(book.fp_log);
    ALLOCATE_POSIT(30, &table);
    for (const char *name : {"one", "two", "three"}) {
      files[name] = idx1_header(path(name), alias(name));
      dir.write(name, "!# " + alias(name) + "\n");
      dir.write(std::string("CPY/") + name, "!# " + alias(name) + "\n");
    }
    SCRIPT() = Script();
    static const Trf_dialogs dialogs = {SCRIPTED_ASK, SCRIPTED_TELL};
    SET_DIALOGS(&dialogs);
  }
  ~Record_desk() {
    SET_DIALOGS(nullptr);
    SET_SAVED_LOG(nullptr);
    fclose(book.fp_log);
    FREE_POSIT(&table);
    RESET_PRESENT();
  }
  static std::string path(const std::string &name) {
    return "./IDX1/idx1_" + name;
  }
  static std::string alias(const std::string &name) {
    return name == "one" ? "a1" : name == "two" ? "b2" : "c3";
  }
  static std::string line(const Fields &fields) {
    return history_line(fields[0], fields[1], fields[2], fields[3]);
  }

  // Adds an entry to a dictionary, with these bytes as its history, and to the dictionary itself.
  // Returns its name line.
  std::string entry(const std::string &name, const std::string &question,
                    const std::string &history) {
    std::string old = dir.read(name);
    dir.write(name, old + "# " + question + " * x\n");
    std::string name_line = "#" + question + " *" + alias(name) + " 0 * x ";
    files[name] += name_line + "\r\n";
    places.emplace_back(name, files[name].size());
    files[name] += history;
    return name_line;
  }
  // Makes the entry added last the next word of the lesson.
  int take(const std::string &name_line) {
    lesson.push_back(name_line + "\n " + path(places.back().first) + " * " +
                     std::to_string(places.back().second) + " \n");
    return ++table.nb_posit;
  }
  // An entry with these histories, which becomes the next word. Returns its number.
  int word(const std::string &name, const std::string &question, const Fields &qr,
           const Fields &rq = NEVER_ASKED) {
    int i = take(entry(name, question, line(qr) + line(rq)));
    known(i, qr, rq);
    return i;
  }
  // Puts what a load would have read into the table.
  void known(int i, const Fields &qr, const Fields &rq = NEVER_ASKED) {
    for (int sens : {1, 2}) {
      Trf_side side = SIDE_OF_TABLE(sens, &table);
      const Fields &fields = sens == 1 ? qr : rq;
      side.nb[i] = side.nb0[i] = fields[0];
      side.nok[i] = side.nok0[i] = fields[1];
      side.date_ok[i] = fields[2];
      side.date_nok[i] = fields[3];
      side.cum_err[i] = 100;
    }
  }
  void write_lesson() {
    std::string text;
    for (size_t i = 0; i < lesson.size(); i++) {
      table.posit[i + 1] = (long)text.size();
      text += lesson[i];
    }
    dir.write(CURRENT_GENE_NAME(book.ilesson), text);
  }
  // Writes all files; the dictionaries are older than their indexes.
  void write() {
    for (const auto &[name, text] : files)
      dir.write(path(name), text + idx1_trailer(0));
    write_lesson();
  }
  std::string idx1(const std::string &name) const {
    return dir.read(path(name));
  }
  // The idx1 file as it was written, with these bytes at an entry's history (from 0, in the order
  // of entries added).
  std::string with(size_t entry, const std::string &bytes) const {
    std::string text = files.at(places[entry].first) + idx1_trailer(0);
    return text.replace(places[entry].second, bytes.size(), bytes);
  }
  std::string log() const {
    return dir.read("log");
  }
  // Runs it and returns what it said on standard output.
  static std::string said(const std::function<void()> &action) {
    testing::internal::CaptureStdout();
    action();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
  }
  std::string record() {
    return said([this] { RECORD_LESSON(&book); });
  }
  std::string raz() {
    return said([this] { RAZ_LESSON(&book); });
  }
};

#endif
