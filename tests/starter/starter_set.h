// The starter set as the tests read it: its files, its entries, the program's records over it.
#ifndef MERTU_TESTS_STARTER_STARTER_SET_H
#define MERTU_TESTS_STARTER_STARTER_SET_H

#include <sstream>

#include "config/config_file.h"
#include "config/registry.h"
#include "db/index_update.h"
#include "score/error_score.h"
#include "score/position_table.h"
#include "support/prelude.h"
#include "support/scratch.h"
#include "util/book.h"

namespace fs = std::filesystem;

inline const fs::path starter = fs::path(MERTU_SOURCE) / "share/starter";
inline const char *const dictionaries[] = {"french.txt", "german.txt", "french_heard.txt",
                                           "spanish.txt"};

inline std::string bytes_of(const fs::path &file) {
  std::ifstream stream(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

inline std::vector<std::string> lines_of(const fs::path &file) {
  std::istringstream text(bytes_of(file));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);)
    lines.push_back(line);
  return lines;
}

// One entry of a dictionary, as written.
struct Entry {
  std::string name; // between '#' and '*', without the blanks around it
  std::string tags; // behind the '*'
  std::vector<std::string> lines;
};

inline std::vector<Entry> entries_of(const char *dictionary) {
  std::vector<Entry> entries;
  bool in_section = false;
  for (const std::string &line : lines_of(starter / dictionary)) {
    if (line.find("######") != std::string::npos) {
      in_section = !in_section;
    } else if (!in_section && line.substr(0, 2) == "##") {
      continue;
    } else if (!in_section && line[0] == '#') {
      size_t star = line.find('*');
      EXPECT_NE(star, std::string::npos) << line;
      entries.push_back({line.substr(2, star - 3), line.substr(star + 1), {}});
    } else if (!in_section && !entries.empty()) {
      entries.back().lines.push_back(line);
    }
  }
  return entries;
}

// The lines that borrow an entry of another dictionary, as written.
inline std::vector<std::string> borrowed_by(const char *dictionary) {
  std::vector<std::string> borrowed;
  for (const std::string &line : lines_of(starter / dictionary))
    if (line.substr(0, 2) == "##" && line.find("######") == std::string::npos)
      borrowed.push_back(line);
  return borrowed;
}

// The program's records over a scratch copy of the starter set, its index built.
class Starter : public testing::Test {
protected:
  void SetUp() override {
    fs::copy(starter, scratch.path(), fs::copy_options::recursive);
    book.t_err = &weights;
    book.G_kentel = &registry;
    book.t_posit = &table;
    FURCH_SET(&look, &book, &registry, font_lesson, font_vocab);
    book.fp_log = fopen("mertu_log", "w+");
    ASSERT_NE(book.fp_log, nullptr);
    CALC_INDEX(book.fp_log, &registry, &table);
  }
  void TearDown() override {
    fclose(book.fp_log);
    FREE_POSIT(&table);
    FREE_REGISTRY(&registry);
  }
  std::string log() {
    fflush(book.fp_log);
    return scratch.read("mertu_log");
  }

  Scratch_dir scratch;
  Trf_err weights = {};
  Trf_posit table;
  Trf_string registry = {};
  Trf_book book = {};
  Prenestro look = {};
  char font_lesson[101] = {};
  char font_vocab[101] = {};
};

#endif
