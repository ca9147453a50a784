// The starter set is sound: its settings are read, every entry can be drilled, nothing in it trips
// over the rules of the dictionary file.
#include "starter/starter_set.h"

#include <glib.h>

#include <algorithm>
#include <map>
#include <set>

#include "lesson/numbered_lesson.h"
#include "util/encodings.h"
#include "util/owned.h"

TEST_F(Starter, SettingsNameFourDictionariesAndAReadableWindow) {
  EXPECT_EQ(book.nbt_lesson, 4);
  EXPECT_EQ(registry.nb_lesson, 4);
  EXPECT_STREQ(registry.st_alias, " fr de fr2 es ");
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

TEST(StarterFiles, TheHelpPageFitsThePane) {
  std::vector<std::string> lines = lines_of(starter / "mertu_list.txt");
  EXPECT_GE(lines.size(), 20u);
  EXPECT_LE(lines.size(), 190u);
  std::string before = "x";
  for (const std::string &line : lines) {
    EXPECT_LE(line.size(), 100u) << line; // more is cut
    EXPECT_LE(line.size(), 55u) << line;  // wider than the pane
    EXPECT_FALSE(before.empty() && line.empty()) << "two blank lines show as one";
    EXPECT_EQ(line.find_first_of("\\"), std::string::npos) << line;
    before = line;
  }
}

TEST(StarterFiles, TheHelpPageTellsOfSmallLettersAndOfMachinesWithoutSound) {
  std::string page = bytes_of(starter / "mertu_list.txt");
  EXPECT_NE(page.find("Write the tags in your dictionaries in small letters"), std::string::npos);
  EXPECT_NE(page.find("type !sound off"), std::string::npos);
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

TEST_F(Starter, EveryLessonLoadsWithThirtyToEightyWords) {
  for (int lesson : {1, 2, 3, 4}) {
    book.ilesson = lesson;
    INIT_LESSON(&lesson, &book);
    const char *dictionary = dictionaries[lesson - 1];
    size_t own = entries_of(dictionary).size();
    EXPECT_EQ(size_t(table.nb_posit), own + borrowed_by(dictionary).size());
    EXPECT_GE(own, 30u) << dictionary;
    EXPECT_LE(table.nb_posit, 80) << dictionary;
    EXPECT_EQ(table.QRcum_err[1], -1);
  }
  EXPECT_EQ(log().find("rror"), std::string::npos) << log();
}

TEST_F(Starter, LessonThreeBorrowsTwoEntriesOfLessonOne) {
  EXPECT_EQ(borrowed_by("french_heard.txt").size(), 2u);
  int lesson = 3;
  book.ilesson = lesson;
  INIT_LESSON(&lesson, &book);
  std::string words = scratch.read("idx1_gene");
  for (const char *name : {"#la gare *fr ", "#je ne comprends pas *fr "}) {
    size_t at = words.find(name);
    ASSERT_NE(at, std::string::npos) << name;
    // The record behind the name says whose index what is learned goes to.
    size_t record = words.find('\n', at) + 1;
    EXPECT_EQ(words.substr(record, words.find(" *", record) - record), " ./IDX1/idx1_french.txt");
  }
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

TEST(StarterFiles, EveryTagIsSharedAndTheCommonOnesGoThroughThreeDictionaries) {
  std::map<std::string, int> carried;
  std::map<std::string, std::set<std::string>> where;
  for (const char *dictionary : dictionaries)
    for (const Entry &entry : entries_of(dictionary)) {
      std::istringstream words(entry.tags);
      for (std::string tag; words >> tag;) {
        carried[tag]++;
        where[tag].insert(dictionary);
      }
    }
  for (const auto &[tag, count] : carried)
    if (tag[0] != 'Q') {
      EXPECT_GE(count, 3) << tag;
    }
  for (const char *tag : {"home", "food", "people", "town", "travel", "time", "number", "verb",
                          "adjective", "phrase", "weather"})
    EXPECT_GE(where[tag].size(), 3u) << tag;
}

TEST(StarterFiles, AFewEntriesGoWithoutTags) {
  int untagged = 0;
  for (const Entry &entry : entries_of("spanish.txt"))
    untagged += entry.tags.empty() ? 1 : 0;
  EXPECT_EQ(untagged, 3);
}

// How many lines of a part, "Q>" or "R>", an entry has.
static int lines_of_part(const Entry &entry, const char *part) {
  int nb = 0;
  bool inside = false;
  for (const std::string &line : entry.lines) {
    if (line.substr(0, 2) == "Q>" || line.substr(0, 2) == "R>")
      inside = line.substr(0, 2) == part;
    nb += inside && line[0] != '!' && line.find_first_not_of(' ') != std::string::npos ? 1 : 0;
  }
  return nb;
}

TEST(StarterFiles, EachDictionaryHasEntriesOfOneOfTwoAndTheReadOnesOfMoreLines) {
  for (const char *dictionary : dictionaries) {
    std::map<int, int> entries;
    for (const Entry &entry : entries_of(dictionary)) {
      int lines = lines_of_part(entry, "Q>");
      EXPECT_EQ(lines, lines_of_part(entry, "R>")) << dictionary << ": " << entry.name;
      entries[std::min(lines, 3)]++;
    }
    EXPECT_GE(entries[1], 2) << dictionary;
    EXPECT_GE(entries[2], 10) << dictionary;
    EXPECT_GE(entries[3], std::string(dictionary) == "french_heard.txt" ? 0 : 3) << dictionary;
  }
}

TEST(StarterFiles, EveryLetterHasItsPlaceInTheEncodingOfTheIndex) {
  for (const char *name : {"french.txt", "french_heard.txt", "spanish.txt"})
    for (const std::string &line : lines_of(starter / name)) {
      Owned_text shown(CP1252_FROM_UTF8(line.c_str()));
      EXPECT_NE(shown, nullptr) << line;
    }
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
  ASSERT_EQ(aliases.size(), 4u);
  for (const std::string &one : aliases)
    for (const std::string &other : aliases) {
      bool longer = other.size() >= one.size() && &one != &other;
      EXPECT_FALSE(longer && other.substr(other.size() - one.size()) == one) << one << ' ' << other;
    }
}

TEST(StarterFiles, TheFirstTwoLessonsHaveNoSoundLines) {
  for (int lesson : {0, 1})
    for (const Entry &entry : entries_of(dictionaries[lesson]))
      for (const std::string &line : entry.lines)
        EXPECT_TRUE(line.empty() || (line[0] != '?' && line[0] != '<')) << line;
}

TEST(StarterFiles, OneIsCp1252WithAccentNotationAndTheOthersAreUtf8) {
  for (const char *name : {"french.txt", "french_heard.txt", "spanish.txt"}) {
    std::string text = bytes_of(starter / name);
    EXPECT_TRUE(g_utf8_validate(text.data(), gssize(text.size()), nullptr)) << name;
    EXPECT_NE(text.find("\303\251"), std::string::npos) << name;
  }
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
