// Directories of a learner, made from a seed.
#include "bench/learner_life.h"

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "db/history_line.h"
#include "db/idx1_format.h"
#include "util/day_number.h"

const Life FULL_LIFE = {"full", "100 dictionaries of 100 entries", 100, 408, 1};
const Life LONG_DICTIONARIES = {"long", "100 of 10,000 lines", 100, 10000, 2};
const Life MANY_DICTIONARIES = {"many", "1,000 of 1,000 lines", 1000, 1000, 3};
const Life FEW_DICTIONARIES = {"few", "40 of 1,000 lines", 40, 1000, 4};

const char COMMON_TAG[] = "garden";

namespace {

namespace fs = std::filesystem;
using Chance = std::mt19937;

// How the window looks.
const char SETTINGS[] = "Horiz_pix_total :> 1100 <:\nVerti_pix_total :> 700 <:\n"
                        "Width_pix_vocab :> 530 <:\nFont_lesson :> DejaVu Serif 13 <:\n"
                        "Font_vocab :> DejaVu Sans 13 <:\n";

const int LINES_OF_ENTRY = 4;
const int LINES_OF_DICTIONARY = 8;
const int NB_TAGS = 30;
const int NB_DAYS = 2500; // years of lessons

const char *const SYLLABLES[] = {"ba", "ca", "do", "fi",  "go",  "la",  "mi",  "no",
                                 "pu", "ra", "se", "tou", "van", "zon", "qui", "bel",
                                 "é",  "è",  "ço", "ô",   "œu",  "ü",   "à",   "î"};

int below(int limit, Chance *chance) {
  return (int)((*chance)() % (unsigned)limit);
}

std::string word(Chance *chance) {
  std::string text;
  for (int i = 2 + below(3, chance); i > 0; i--)
    text += SYLLABLES[below((int)std::size(SYLLABLES), chance)];
  return text;
}

std::string tag(int number) {
  return number == 0 ? COMMON_TAG : "tag" + std::to_string(number);
}

// The tags of an entry: none, one or two.
std::string tags(Chance *chance) {
  std::string text;
  for (int i = below(3, chance); i > 0; i--)
    text += " " + tag(below(NB_TAGS, chance));
  return text;
}

// The number in four digits.
std::string numbered(int number) {
  std::string digits = std::to_string(number);
  return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
}

// Eight lines, then the entries. The number makes each question one of its own.
std::string dictionary(const Life &life, int number, Chance *chance) {
  std::string text = "!# a" + numbered(number) + "\n#######\nUn matin à la maison\n\n" +
                     "Il est tôt. Anne ouvre la fenêtre.\n#######\n\n";
  for (int i = 1; i <= ENTRIES_OF_DICTIONARY(life); i++) {
    std::string question = "la " + word(chance) + " " + word(chance) + " " + std::to_string(i);
    std::string response = "the " + word(chance) + " " + word(chance);
    text += "# " + question + " *" + tags(chance) + "\nQ> " + question + "\nR> " + response;
    text += "\n\n";
  }
  return text + "# END_OF_FILE\n";
}

void write_configuration(const Life &life) {
  std::string text = "Which_lesson :>\n";
  int number = 0;
  for (const std::string &name : DICTIONARIES_OF(life))
    text += name + (++number % 4 == 0 ? "\n" : " ");
  WRITE_BYTES("mertu.conf",
              text + "\n<:\nPath_idx1 :> ./IDX1 <:\nCoef_Err :> 9 3 2 6 10 <:\n" + SETTINGS);
}

// A direction of an entry that was asked often or seldom, yesterday or years ago.
void draw_values(Chance *chance, long *values) {
  long yesterday = DIFF_JOUR() - 1;
  values[1] = 1 + below(30, chance);
  values[2] = below(8, chance);
  values[3] = yesterday - below(NB_DAYS, chance);
  values[4] = values[2] == 0 ? 0 : yesterday - below(NB_DAYS, chance);
}

std::string history_line(bool asked, Chance *chance) {
  if (!asked)
    return BLANK_HISTORY_LINE();
  long values[NB_FIELDS + 1] = {};
  draw_values(chance, values);
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  return line;
}

// A six-field line: total, wrong, day, twice.
std::string old_line(Chance *chance) {
  std::string text;
  for (int sens = 1; sens <= 2; sens++) {
    long values[NB_FIELDS + 1] = {};
    draw_values(chance, values);
    char line[80];
    snprintf(line, sizeof(line), "%12ld;%12ld;%12ld;", values[1] + values[2], values[2], values[3]);
    text += line;
  }
  return text;
}

// Calls `histories` for each name line and puts what it returns in the place of the two lines
// behind it.
template <typename Histories>
void rewrite_index(const std::string &path, const Histories &histories) {
  std::istringstream in(BYTES_OF(path));
  std::string out, line;
  while (std::getline(in, line)) {
    out += line + "\n";
    if (!IS_NAME_LINE(line.c_str()) || IS_END_MARK(line.c_str()) || IS_HEADER_MARK(line.c_str()))
      continue;
    out += histories();
    std::getline(in, line);
    std::getline(in, line);
  }
  WRITE_BYTES(path, out);
}

void set_age(const std::string &path, int seconds) {
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(seconds));
}

// An empty line below the first one comes, or goes again: every entry stands elsewhere.
void edit(const std::string &path) {
  std::string bytes = BYTES_OF(path);
  size_t second = bytes.find('\n') + 1;
  if (bytes[second] == '\n')
    bytes.erase(second, 1);
  else
    bytes.insert(second, 1, '\n');
  WRITE_BYTES(path, bytes);
}

std::vector<std::string> names(const std::string &before, const Life &life) {
  std::vector<std::string> list;
  for (int number = 1; number <= life.nb_dictionaries; number++)
    list.push_back(before + numbered(number) + ".txt");
  return list;
}

} // namespace

int ENTRIES_OF_DICTIONARY(const Life &life) {
  return (life.nb_lines - LINES_OF_DICTIONARY) / LINES_OF_ENTRY;
}

void WRITE_LIFE(const Life &life) {
  Chance chance(life.seed);
  write_configuration(life);
  int number = 0;
  for (const std::string &name : DICTIONARIES_OF(life))
    WRITE_BYTES(name, dictionary(life, ++number, &chance));
}

void WRITE_HISTORIES(const Life &life, bool last_is_new) {
  Chance chance(life.seed + 1000);
  int number = 0;
  for (const std::string &path : INDEXES_OF(life)) {
    bool asked = ++number < life.nb_dictionaries || !last_is_new;
    rewrite_index(path, [&]() {
      return history_line(asked, &chance) + "\r\n" + history_line(asked, &chance) + "\r\n";
    });
  }
}

void SETTLE_TIMES(const Life &life) {
  for (const std::string &path : DICTIONARIES_OF(life))
    set_age(path, 300);
  for (const std::string &path : COPIES_OF(life))
    set_age(path, 200);
  for (const std::string &path : INDEXES_OF(life))
    set_age(path, 100);
}

void EDIT_DICTIONARIES(const Life &life, int nb) {
  SETTLE_TIMES(life);
  for (const std::string &path : DICTIONARIES_OF(life))
    if (nb-- > 0)
      edit(path);
}

void WRITE_OLD_FORM(const Life &life) {
  Chance chance(life.seed + 2000);
  for (const std::string &path : INDEXES_OF(life))
    rewrite_index(path, [&]() { return old_line(&chance) + "\r\n"; });
}

std::vector<std::string> DICTIONARIES_OF(const Life &life) {
  return names("d", life);
}

std::vector<std::string> COPIES_OF(const Life &life) {
  return names("./CPY/d", life);
}

std::vector<std::string> INDEXES_OF(const Life &life) {
  return names("./IDX1/idx1_d", life);
}

std::string BYTES_OF(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void WRITE_BYTES(const std::string &path, const std::string &bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

double SIZE_OF(const std::vector<std::string> &paths) {
  double bytes = 0;
  for (const std::string &path : paths)
    bytes += (double)fs::file_size(path);
  return bytes;
}
