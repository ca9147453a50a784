// Random dictionaries as the learner may have them: sound ones, odd ones, damaged ones.
#ifndef MERTU_TESTS_LESSON_RANDOM_WORLD_H
#define MERTU_TESTS_LESSON_RANDOM_WORLD_H

#include <random>

#include "compose_model.h"
#include "desk.h"

namespace model {

class Random_world {
public:
  explicit Random_world(unsigned seed) : chance_(seed) {
  }

  World make() {
    World world;
    choose_day(&world);
    choose_weights(&world.weights);
    damage_ = one_in(3) ? number(5, 60) : 0;
    known_ = number(0, 10);
    spread_ = one_in(2) ? 5 : 60;
    int nb = number(1, 8);
    for (int k = 1; k <= nb; k++)
      add_dictionary(k, &world);
    world.nbt_lesson = nb;
    if (one_in(20))
      world.nbt_lesson += number(-1, 1);
    return world;
  }

  Command command() {
    static const int codes[] = {1, 2, 3, 4, 5, 1, 2, 3, 4, 5, 1, 5, 0, 6, -1, 100};
    Command command;
    command.kind = (Kind)number(0, 4);
    command.code = codes[number(0, 15)];
    command.tag = tag();
    return command;
  }
  int number(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(chance_);
  }
  bool one_in(int nb) {
    return number(1, nb) == 1;
  }

private:
  std::mt19937 chance_;
  long today_ = 3000;
  int damage_ = 0; // of 1000 lines
  int known_ = 0;  // of 10 histories
  int spread_ = 0; // of days
  int heavy_ = 50; // one word in so many was asked often

  template <size_t NB> std::string one_of(const char *const (&texts)[NB]) {
    return texts[number(0, NB - 1)];
  }

  void choose_day(World *world) {
    if (one_in(40))
      today_ = one_in(2) ? 0 : 10957;
    world->today = today_;
  }
  void choose_weights(Trf_err *weights) {
    if (one_in(2))
      *weights = {(float)number(1, 100) / 10, (float)number(1, 100) / 10,
                  (float)number(1, 100) / 10, (float)number(10, 100) / 10, 10.0F};
  }

  std::string tag() {
    static const char *const tags[] = {
        "",           "",   " verbs ", " noms ", " verbs noms ", " etes ",
        " regulier ", "er", " Verbs ", " q12 ",  " coeur ",      " rare "};
    return one_of(tags);
  }

  std::string word() {
    static const char *const words[] = {
        "verbs",   "verbs",      "verbs",   "noms",        "Verbs",       "verbes",
        "\xE9tes", "\\'et\\'es", "ete",     "r\xE9gulier", "Q12",         "R3",
        "Q",       "R",          "Qa",      "Ra",          "Q12x",        "xQ7",
        "c\xE6ur", "\xC0 la",    "c\\oeur", "etes",        "\xC3\xA9tes", "a\tb"};
    return one_of(words);
  }

  // What stands behind the second '*'.
  std::string tags() {
    if (one_in(12))
      return "";
    std::string text = one_in(10) ? "" : " ";
    int mix = number(0, 5);
    int nb = mix < 2 ? 0 : mix < 4 ? 1 : number(0, 4);
    for (int i = 0; i < nb; i++)
      text += word() + (one_in(8) ? "" : " ");
    if (one_in(4))
      text += one_in(2) ? "Q12 " : "R3 ";
    return text;
  }

  std::string name_line(int i, const std::string &alias) {
    if (damage_ > 0 && one_in(40)) {
      static const char *const odd[] = {"#",      "#x",        "#no star ",          "#one * star ",
                                        "#*two*", "#a*b*c*d ", "# END_OF_FILE * 7  "};
      return one_of(odd);
    }
    return "#mot" + std::to_string(i) + (one_in(5) ? " \xE9t\xE9" : "") + " *" + alias + " " +
           std::to_string(11 * i) + " *" + tags();
  }

  long day() {
    if (one_in(12))
      return today_;
    return std::max(0L, today_ - number(1, spread_));
  }

  std::string history() {
    bool asked = number(1, 10) <= known_;
    if (!asked)
      return BLANK_HISTORY_LINE();
    long nb = one_in(3) ? 0 : number(0, 6);
    long nok = one_in(3) ? 0 : number(0, 4);
    if (one_in(heavy_))
      nb = number(10, 60);
    if (one_in(4000))
      nb = 10001;
    long days[] = {0, nb, nok, day(), day()};
    char line[64] = {};
    WRITE_HISTORY_LINE(days, line);
    return line;
  }

  std::string damaged(std::string line) {
    switch (number(0, 8)) {
    case 0:
      return line.substr(0, (size_t)number(0, 51));
    case 1:
      return line + " ";
    case 2:
      return "";
    case 3:
      line[12] = ',';
      return line;
    case 4:
      line[5] = 'x';
      return line;
    case 5:
      return "     -3     ;     2      ;     -9     ;    2000    ;";
    case 6:
      return "     3      ;     2      ;    99999   ;    2000    ;";
    case 7:
      return "#odd *a1 5 * verbs ";
    default:
      return one_in(3) ? one_in(2) ? "# END_OF_FILE * 9  " : "  END_OF_FILE"
                       : "     3      ;     2      ;    1000    ;   99999    ;";
    }
  }

  std::string maybe_damaged(const std::string &line) {
    return number(1, 1000) <= damage_ ? damaged(line) : line;
  }

  // Lines between two records.
  void add_between(const std::string &end, std::string *bytes) {
    static const char *const lines[] = {"", "##mot1 *b2 x ", "free text", " #indented *a1 3 * x ",
                                        "#######"};
    while (one_in(15))
      *bytes += one_of(lines) + end;
    if (one_in(3000))
      for (int i = 0, nb = number(9900, 9999); i < nb; i++)
        *bytes += end;
  }

  std::string idx1(const std::string &path, const std::string &alias) {
    std::string end = one_in(6) ? "\n" : "\r\n";
    std::string bytes = path + " " + alias + " " + end;
    if (!one_in(200))
      bytes += std::string(53, '#') + end;
    int nb = size();
    heavy_ = one_in(4) ? 2 : 50;
    for (int i = 1; i <= nb; i++) {
      bytes += name_line(i, alias) + end + maybe_damaged(history()) + end;
      if (damage_ == 0 || i < nb || !one_in(20))
        bytes += maybe_damaged(history()) + end;
      add_between(end, &bytes);
    }
    if (!one_in(10))
      bytes += "# END_OF_FILE * 99  " + end;
    if (one_in(10))
      bytes += "#behind the end *a1 3 * verbs " + end;
    return bytes;
  }
  int size() {
    switch (number(0, 5)) {
    case 0:
      return number(0, 3);
    case 1:
    case 2:
      return number(0, 20);
    case 3:
    case 4:
      return number(10, 60);
    default:
      return number(0, 200);
    }
  }

  void add_dictionary(int k, World *world) {
    static const char *const odd[] = {"a", "1", "b", "a1", "b2"};
    std::string alias = std::string(1, (char)('a' + k - 1)) + std::to_string(k);
    if (one_in(15))
      alias = one_of(odd);
    std::string path = "./IDX1/idx1_d" + std::to_string(k);
    if (k > 1 && one_in(8)) {
      size_t twin = (size_t)number(0, k - 2);
      path = world->paths[twin];
      if (!one_in(3))
        alias = world->aliases[twin];
    }
    world->aliases.push_back(alias);
    world->paths.push_back(path);
    if (!one_in(40) && world->files.count(path) == 0)
      world->files[path] = idx1(path, alias);
  }
};

} // namespace model

#endif
