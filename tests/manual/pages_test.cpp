// The pages of the documentation against the sources: what they quote stands there, what they lead
// to is there.
//
// A block "```cpp FILE" or "```text FILE", FILE with a '/', quotes lines of that file, one behind
// the other; in a comment at its head they stand behind "//".
#include "support/prelude.h"

#include <algorithm>
#include <regex>

#include "manual/page.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const char *const PAGES[] = {"README.md",       "CHANGELOG.md",       "docs/architecture.md",
                             "docs/formats.md", "docs/hacking.md",    "docs/manual.md",
                             "docs/quirks.md",  "docs/reliability.md"};

std::string directory_of(const std::string &page) {
  size_t slash = page.rfind('/');
  return slash == std::string::npos ? "" : page.substr(0, slash + 1);
}

bool exists(const std::string &name) {
  return fs::exists(fs::path(MERTU_SOURCE) / name);
}

std::string without_end_blanks(std::string line) {
  line.erase(line.find_last_not_of(" \r") + 1);
  return line;
}

// The lines as text; behind "//" what stands there.
Lines bare(const Lines &lines) {
  Lines result;
  for (const std::string &line : lines) {
    size_t begin = line.compare(0, 3, "// ") == 0 ? 3 : line.compare(0, 2, "//") == 0 ? 2 : 0;
    result.push_back(without_end_blanks(line.substr(begin)));
  }
  return result;
}

std::vector<Manual_block> blocks_of(const std::string &page) {
  std::vector<Manual_block> blocks;
  for (const Manual_chapter &chapter : CHAPTERS_OF(page))
    blocks.insert(blocks.end(), chapter.blocks.begin(), chapter.blocks.end());
  return blocks;
}

// Code spans of a page that name a file or a folder of the source.
std::vector<std::string> places_named(const std::string &page) {
  std::string text = BYTES_OF_FILE(page);
  std::regex form("`((?:util|score|sound|config|db|lesson|text|quiz|command|app|tests|tools|share|"
                  "packaging|docs|fuzz|bench|cmake)/[A-Za-z0-9_./-]*)`");
  std::vector<std::string> places;
  for (std::sregex_iterator match(text.begin(), text.end(), form), end; match != end; ++match)
    places.push_back((*match)[1]);
  return places;
}

} // namespace

TEST(Pages, WhatTheyQuoteStandsInTheSources) {
  int quoted = 0;
  for (const char *page : PAGES)
    for (const Manual_block &block : blocks_of(page)) {
      if (block.argument.find('/') == std::string::npos ||
          (block.kind != "cpp" && block.kind != "text"))
        continue;
      Lines lines = bare(LINES_OF_FILE(block.argument));
      Lines told = bare(block.lines);
      EXPECT_NE(std::search(lines.begin(), lines.end(), told.begin(), told.end()), lines.end())
          << page << ", line " << block.line_number << ": " << block.argument;
      quoted++;
    }
  EXPECT_GE(quoted, 10);
}

TEST(Pages, WhatTheyLeadToIsThere) {
  std::regex form("\\]\\(([^)#]+)(?:#[^)]*)?\\)");
  for (const char *page : PAGES) {
    std::string text = BYTES_OF_FILE(page);
    for (std::sregex_iterator match(text.begin(), text.end(), form), end; match != end; ++match)
      EXPECT_TRUE(exists(directory_of(page) + (*match)[1].str())) << page << ": " << (*match)[1];
  }
}

TEST(Pages, FilesThatTheyNameAreThere) {
  for (const char *page : PAGES)
    for (const std::string &place : places_named(page))
      EXPECT_TRUE(exists(place) || exists(place + ".h") || exists(place + ".cpp"))
          << page << ": " << place;
}

TEST(Pages, TheTourNamesEveryModule) {
  std::string tour = BYTES_OF_FILE("docs/architecture.md");
  for (const char *folder :
       {"util", "score", "sound", "config", "db", "lesson", "text", "quiz", "command", "app"})
    for (const auto &entry : fs::directory_iterator(fs::path(MERTU_SOURCE) / folder))
      if (entry.path().extension() == ".h") {
        std::string module = std::string(folder) + "/" + entry.path().stem().string();
        EXPECT_NE(tour.find("`" + module), std::string::npos) << module;
      }
}

// The lengths of the procedures of a source file, from the line with their "{" to that with "}".
static std::vector<int> lengths_of(const Lines &lines) {
  std::vector<int> lengths;
  bool signature = false; // a procedure's head has begun
  int length = 0;         // of the procedure so far, 0 outside
  for (const std::string &line : lines) {
    char last = line.empty() ? ';' : line.back();
    if (length == 0 && !line.empty() && isalpha((unsigned char)line[0]))
      signature = line.find('(') != std::string::npos;
    if (length > 0 || (signature && last == '{'))
      length++;
    if (last == ';' || length > 0)
      signature = false;
    if (length > 0 && line == "}") {
      lengths.push_back(length);
      length = 0;
    }
  }
  return lengths;
}

// What docs/hacking.md says of the length of procedures.
TEST(Sources, NoProcedureHasMoreThanSixtyLines) {
  size_t procedures = 0;
  for (const char *folder :
       {"util", "score", "sound", "config", "db", "lesson", "text", "quiz", "command", "app"})
    for (const auto &entry : fs::directory_iterator(fs::path(MERTU_SOURCE) / folder)) {
      std::string name = std::string(folder) + "/" + entry.path().filename().string();
      std::vector<int> lengths = lengths_of(LINES_OF_FILE(name));
      procedures += lengths.size();
      EXPECT_LE(lengths.empty() ? 0 : *std::max_element(lengths.begin(), lengths.end()), 60)
          << name;
    }
  EXPECT_GT(procedures, 700u);
}
