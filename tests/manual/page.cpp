// A page of the documentation as the tests read it: chapters, fenced blocks, tables.
#include "support/prelude.h"

#include "manual/page.h"

#include <sstream>

namespace {

const char FENCE[] = "```";
const char REMARK[] = "<!-- ";
const char REMARK_END[] = " -->";

bool begins_with(const std::string &text, const std::string &start) {
  return text.compare(0, start.size(), start) == 0;
}

// "kind argument" taken apart.
Manual_block block_of(const std::string &words, int line_number) {
  size_t blank = words.find(' ');
  std::string argument = blank == std::string::npos ? "" : words.substr(blank + 1);
  return {words.substr(0, blank), argument, {}, line_number};
}

std::string inside_of_remark(const std::string &line) {
  size_t start = sizeof REMARK - 1;
  return line.substr(start, line.find(REMARK_END) - start);
}

// The code spans of the first cell of a row.
std::vector<std::string> spans_of(const std::string &row) {
  std::vector<std::string> spans;
  std::string cell = row.substr(1, row.find(" |", 1) - 1);
  size_t open = 0;
  while ((open = cell.find('`', open)) != std::string::npos) {
    size_t marks = cell.find_first_not_of('`', open) - open;
    size_t close = cell.find(std::string(marks, '`'), open + marks);
    spans.push_back(FOLDED(cell.substr(open + marks, close - open - marks)));
    open = close + marks;
  }
  return spans;
}

} // namespace

void PrintTo(const Manual_chapter &chapter, std::ostream *out) {
  *out << chapter.title;
}

std::string BYTES_OF_FILE(const std::string &name) {
  std::ifstream file(std::string(MERTU_SOURCE) + "/" + name, std::ios::binary);
  std::stringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::vector<std::string> LINES_OF_FILE(const std::string &name) {
  std::istringstream text(BYTES_OF_FILE(name));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);)
    lines.push_back(line);
  return lines;
}

std::vector<Manual_chapter> CHAPTERS_OF(const std::string &page) {
  std::vector<Manual_chapter> chapters = {{"before the first chapter", {}}};
  bool inside = false;
  int number = 0;
  for (const std::string &line : LINES_OF_FILE(page)) {
    number++;
    if (begins_with(line, FENCE)) {
      inside = !inside;
      if (inside)
        chapters.back().blocks.push_back(block_of(line.substr(sizeof FENCE - 1), number));
    } else if (inside) {
      chapters.back().blocks.back().lines.push_back(line);
    } else if (begins_with(line, "## ")) {
      chapters.push_back({line.substr(3), {}});
    } else if (begins_with(line, REMARK)) {
      chapters.back().blocks.push_back(block_of(inside_of_remark(line), number));
    }
  }
  return chapters;
}

Manual_tables MANUAL_TABLES() {
  Manual_tables tables;
  std::string name;
  for (const std::string &line : LINES_OF_FILE(MANUAL)) {
    if (begins_with(line, "<!-- table ")) {
      name = block_of(inside_of_remark(line), 0).argument;
    } else if (begins_with(line, "#")) {
      name.clear();
    } else if (!name.empty() && begins_with(line, "|")) {
      for (const std::string &span : spans_of(line))
        tables[name].push_back(span);
    }
  }
  return tables;
}

std::string FOLDED(const std::string &text) {
  std::istringstream words(text);
  std::string folded;
  for (std::string word; words >> word;)
    folded += (folded.empty() ? "" : " ") + word;
  return folded;
}
