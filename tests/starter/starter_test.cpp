// The starter set is sound: its settings are read, every entry can be drilled, nothing in it trips
// over the rules of the dictionary file.
#include "support/prelude.h"

#include <glib.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "config/config_file.h"
#include "db/index_update.h"
#include "lesson/numbered_lesson.h"
#include "score/error_score.h"
#include "score/position_table.h"
#include "support/scratch.h"
#include "util/owned.h"

namespace fs = std::filesystem;

namespace {

const fs::path starter = fs::path(MERTU_SOURCE) / "share/starter";
const char *const dictionaries[] = {"french.txt", "german.txt"};

std::string bytes_of(const fs::path &file) {
  std::ifstream stream(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::vector<std::string> lines_of(const fs::path &file) {
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

std::vector<Entry> entries_of(const char *dictionary) {
  std::vector<Entry> entries;
  bool in_section = false;
  for (const std::string &line : lines_of(starter / dictionary)) {
    if (line.find("######") != std::string::npos) {
      in_section = !in_section;
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

// The program's records over a scratch copy of the starter set, its index built.
class Starter : public testing::Test {
protected:
  void SetUp() override {
    for (const auto &file : fs::directory_iterator(starter))
      fs::copy(file.path(), scratch.path());
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

} // namespace

TEST_F(Starter, SettingsNameTwoDictionariesAndAReadableWindow) {
  EXPECT_EQ(book.nbt_lesson, 2);
  EXPECT_EQ(registry.nb_lesson, 2);
  Owned_text first(S_ALIAS_FROM_NUM(1, &registry));
  Owned_text second(S_ALIAS_FROM_NUM(2, &registry));
  EXPECT_STREQ(first.get(), "fr");
  EXPECT_STREQ(second.get(), "de");
  EXPECT_GE(look.book_pix_size[0], 800);
  EXPECT_GE(look.book_pix_size[1], 600);
  EXPECT_GE(look.book_pix_size[2], 400);
  EXPECT_STREQ(font_lesson, " DejaVu Serif 13");
  EXPECT_STREQ(font_vocab, " DejaVu Sans 13");
}

TEST(StarterFiles, TheSettingsHoldNoEmptyLine) {
  for (const std::string &line : lines_of(starter / "mertu.conf"))
    EXPECT_NE(line.find_first_not_of(' '), std::string::npos);
}

TEST_F(Starter, EveryEntryIsIndexedWithoutAFault) {
  EXPECT_EQ(log().find("rror"), std::string::npos) << log();
  for (const char *dictionary : dictionaries) {
    std::string index = scratch.read(std::string("IDX1/idx1_") + dictionary);
    size_t names = 0;
    std::istringstream text(index);
    for (std::string line; std::getline(text, line);)
      names += line[0] == '#' && line[1] != '#' && line[1] != ' ' ? 1 : 0;
    EXPECT_EQ(names, entries_of(dictionary).size()) << dictionary;
  }
}

TEST_F(Starter, AccentsOfBothFilesArriveInTheIndex) {
  std::string french = scratch.read("IDX1/idx1_french.txt");
  EXPECT_NE(french.find("#la fen\352tre *fr "), std::string::npos);
  EXPECT_NE(french.find("#un \234uf *fr "), std::string::npos);
  std::string german = scratch.read("IDX1/idx1_german.txt");
  EXPECT_NE(german.find("#der K\344se *de "), std::string::npos);
  EXPECT_NE(german.find("#die Stra\337e *de "), std::string::npos);
  EXPECT_EQ(german.find('\\'), std::string::npos);
}

TEST_F(Starter, BothLessonsLoadWithThirtyToSixtyWords) {
  for (int lesson : {1, 2}) {
    book.ilesson = lesson;
    INIT_LESSON(&lesson, &book);
    EXPECT_EQ(size_t(table.nb_posit), entries_of(dictionaries[lesson - 1]).size());
    EXPECT_GE(table.nb_posit, 30);
    EXPECT_LE(table.nb_posit, 60);
    EXPECT_EQ(table.QRcum_err[1], -1);
  }
  EXPECT_EQ(log().find("rror"), std::string::npos) << log();
}

TEST(StarterFiles, EveryEntryHasOneQuestionAndThenOneResponse) {
  for (const char *dictionary : dictionaries) {
    for (const Entry &entry : entries_of(dictionary)) {
      std::string marks;
      for (const std::string &line : entry.lines)
        if (line.find("Q>") != std::string::npos || line.find("R>") != std::string::npos)
          marks += line.substr(0, 3);
      EXPECT_EQ(marks, "Q> R> ") << dictionary << ": " << entry.name;
    }
  }
}

TEST(StarterFiles, NoEntryIsNamedTwice) {
  std::set<std::string> names;
  for (const char *dictionary : dictionaries)
    for (const Entry &entry : entries_of(dictionary))
      EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
}

TEST(StarterFiles, BehindTheStarStandOnlyRepeatMarksAndTagsInSmallLetters) {
  const char *allowed = "^( Q[0-9]+)?( [a-z]+)*$";
  for (const char *dictionary : dictionaries)
    for (const Entry &entry : entries_of(dictionary))
      EXPECT_TRUE(g_regex_match_simple(allowed, entry.tags.c_str(), GRegexCompileFlags(0),
                                       GRegexMatchFlags(0)))
          << entry.name << " *" << entry.tags;
}

TEST(StarterFiles, NoNameIsCutAndNoLineIsWiderThanThePane) {
  for (const char *dictionary : dictionaries)
    for (const Entry &entry : entries_of(dictionary)) {
      EXPECT_LE(entry.name.size() + entry.tags.size() + 3, 100u) << entry.name;
      for (const std::string &line : entry.lines)
        EXPECT_LE(line.size(), 55u) << line;
    }
}

TEST(StarterFiles, NoAliasIsTheEndOfAnother) {
  std::vector<std::string> aliases;
  for (const char *dictionary : dictionaries)
    for (const std::string &line : lines_of(starter / dictionary))
      if (line.find("!#") != std::string::npos)
        aliases.push_back(line.substr(line.find("!#") + 3));
  ASSERT_EQ(aliases.size(), 2u);
  for (const std::string &one : aliases)
    for (const std::string &other : aliases) {
      bool longer = other.size() >= one.size() && &one != &other;
      EXPECT_FALSE(longer && other.substr(other.size() - one.size()) == one) << one << ' ' << other;
    }
}

TEST(StarterFiles, LessonOneHasNoSoundLines) {
  for (const Entry &entry : entries_of(dictionaries[0]))
    for (const std::string &line : entry.lines)
      EXPECT_TRUE(line.empty() || (line[0] != '?' && line[0] != '<')) << line;
}

TEST(StarterFiles, OneIsUtf8AndOneIsCp1252WithAccentNotation) {
  std::string french = bytes_of(starter / "french.txt");
  EXPECT_TRUE(g_utf8_validate(french.data(), gssize(french.size()), nullptr));
  EXPECT_NE(french.find("\303\251"), std::string::npos);
  std::string german = bytes_of(starter / "german.txt");
  EXPECT_FALSE(g_utf8_validate(german.data(), gssize(german.size()), nullptr));
  EXPECT_NE(german.find("\\:u"), std::string::npos);
  EXPECT_NE(german.find('\337'), std::string::npos);
}

TEST(StarterFiles, EachDictionaryHasOneLessonTextBetweenTwoRules) {
  for (const char *dictionary : dictionaries) {
    std::vector<std::string> lines = lines_of(starter / dictionary);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "#######"), 2) << dictionary;
  }
}
