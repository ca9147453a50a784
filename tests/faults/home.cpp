// A learner's directory with two dictionaries of three entries, as it stands at one moment.
#include "support/prelude.h"

#include "faults/home.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <sstream>

#include "db/history_line.h"

namespace fs = std::filesystem;

namespace {

const char *const DICTIONARIES[] = {"one.txt", "two.txt"};
const char HELLO[] = "hello";
const char LONG[] = "a whole sentence that is asked for";
const char NEVER_ASKED[] = "never asked";

std::string read_file(const std::string &name) {
  std::ifstream file(name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void write_file(const std::string &name, const std::string &bytes) {
  fs::path directory = fs::path(name).parent_path();
  if (!directory.empty())
    fs::create_directories(directory);
  std::ofstream(name, std::ios::binary) << bytes;
}

void make_old(const std::string &name, long seconds) {
  struct timespec times[2] = {};
  clock_gettime(CLOCK_REALTIME, &times[1]);
  times[1].tv_sec -= seconds;
  times[0].tv_nsec = UTIME_OMIT;
  utimensat(AT_FDCWD, name.c_str(), times, 0);
}

std::string line_of(std::initializer_list<long> counts) {
  long values[NB_FIELDS + 1] = {};
  std::copy(counts.begin(), counts.end(), values + 1);
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  return line;
}

const std::string &line_of_zeros() {
  static const std::string line = line_of({0, 0, 0, 0});
  return line;
}

// The history of entry i: the third was never asked from response to question.
std::string history_of(int i) {
  if (i % 3 == 0)
    return line_of({99, 1, 2000, 1990 + i}) + "\r\n" + BLANK_HISTORY_LINE() + "\r\n";
  return line_of({99 + i, 9, 2000 + i, 999}) + "\r\n" + line_of({9, i, 1500, 1600 + i}) + "\r\n";
}

std::string entries_text(const std::vector<std::string> &questions) {
  std::string text;
  for (const std::string &question : questions)
    text += "# " + question + " * noun\nQ> " + question + "\nR> an answer\n\n";
  return text;
}

void write_dictionary_one(const std::string &front, const std::vector<std::string> &questions) {
  write_file("one.txt",
             front + "!# one\n" + entries_text(questions) + "##" + HELLO + " two *two\n");
}

// The index with new history lines behind every name line.
std::string with_histories(const std::string &name, int first) {
  std::string index = read_file("IDX1/idx1_" + name);
  for (const std::string &question : QUESTIONS_OF(name)) {
    size_t end = index.find("\r\n", index.find("#" + question + " *"));
    index.replace(end + 2, 108, history_of(first++));
  }
  return index;
}

// The line with what `change` makes of its values, once they are corrected.
std::string changed_line(std::string line, void (*change)(long *)) {
  long values[NB_FIELDS + 1] = {};
  CHECK_EXTRACT_4LINT(3000, line.data(), values);
  change(values);
  return line_of({values[1], values[2], values[3], values[4]});
}

std::string known_line(const std::string &line) {
  return line == BLANK_HISTORY_LINE() ? line_of_zeros() : line;
}

void read_index(const std::string &name, const std::string &when,
                std::map<std::string, History> *histories) {
  std::string index = read_file("IDX1/idx1_" + name);
  std::string copy = read_file("CPY/" + name);
  std::string alias = name.substr(0, name.find('.'));
  EXPECT_NE(index.find("# END_OF_FILE *"), std::string::npos) << when;
  for (const std::string &question : QUESTIONS_OF(name)) {
    std::string offset = std::to_string(copy.find("# " + question + " *"));
    size_t at = index.find("#" + question + " *" + alias + " " + offset + " *");
    EXPECT_NE(at, std::string::npos) << when << ": " << question << " at " << offset << "\n"
                                     << index;
    std::istringstream lines(at == std::string::npos ? "" : index.substr(at));
    std::string line, qr, rq;
    std::getline(lines, line);
    std::getline(lines, qr, '\r');
    std::getline(lines, line);
    std::getline(lines, rq, '\r');
    (*histories)[question] = {known_line(qr), known_line(rq)};
  }
}

} // namespace

Kept_files KEEP_FILES() {
  Kept_files files;
  struct timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  for (const auto &entry : fs::recursive_directory_iterator(".")) {
    struct stat about;
    if (!entry.is_regular_file() || stat(entry.path().c_str(), &about) != 0)
      continue;
    files[entry.path()] = {read_file(entry.path()), now.tv_sec - about.st_mtim.tv_sec};
  }
  return files;
}

void RESTORE_FILES(const Kept_files &files) {
  for (const auto &[name, file] : files) {
    write_file(name, file.bytes);
    make_old(name, file.age);
  }
}

History ANSWERED(const History &history) {
  auto miss = [](long *values) {
    values[2]++;
    values[4] = 3000;
  };
  auto know = [](long *values) {
    values[1]++;
    values[3] = 3000;
  };
  return {changed_line(history.first, miss), changed_line(history.second, know)};
}

History CORRECTED(const History &history) {
  auto nothing = [](long *) {};
  return {changed_line(history.first, nothing), changed_line(history.second, nothing)};
}

std::vector<std::string> QUESTIONS_OF(const std::string &dictionary) {
  std::vector<std::string> questions;
  for (const char *question : {HELLO, LONG, NEVER_ASKED})
    questions.push_back(std::string(question) + " " + dictionary.substr(0, dictionary.find('.')));
  return questions;
}

void WRITE_DICTIONARIES() {
  write_file("mertu.conf", "Which_lesson :>\none.txt two.txt\n<:\nPath_idx1 :> ./IDX1 <:\n"
                           "Horiz_pix_total :> 900 <:\nFont_vocab :> DejaVu Sans 12 <:\n"
                           "Coef_Err :> 9 3 2 6 10 <:\n");
  write_dictionary_one("", QUESTIONS_OF("one.txt"));
  write_file("two.txt", "caf\xC3\xA9\n!# two\n" + entries_text(QUESTIONS_OF("two.txt")));
}

void EDIT_DICTIONARY_ONE() {
  std::vector<std::string> questions = QUESTIONS_OF("one.txt");
  std::reverse(questions.begin(), questions.end());
  write_dictionary_one("some text\nin front\n", questions);
}

void WRITE_HISTORIES() {
  int first = 1;
  for (const std::string name : DICTIONARIES) {
    std::string other = with_histories(name, first + 2);
    write_file("OTHER/idx1_" + name, other);
    write_file("IDX1/idx1_" + name, with_histories(name, first));
    first += 3;
  }
}

void SETTLE() {
  for (const std::string name : DICTIONARIES) {
    make_old(name, 3000);
    make_old("CPY/" + name, 2000);
    make_old("IDX1/idx1_" + name, 1000);
  }
  make_old("mertu.conf", 4000);
}

std::map<std::string, History> READ_HISTORIES(const std::string &when) {
  std::map<std::string, History> histories;
  for (const char *name : DICTIONARIES)
    read_index(name, when, &histories);
  return histories;
}
