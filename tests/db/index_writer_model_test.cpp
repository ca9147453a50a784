// Random dictionaries and old indexes: the file written against a plain account of it.
#include "db/index_writer.h"

#include "db_files.h"

#include <map>
#include <random>

namespace {

const char *BLANK_52 = "            ;            ;            ;            ;";

// A line as the reader gives it, and where it and the next one begin.
struct Line {
  std::string text;
  size_t start;
  size_t next;
};

// The lines of a text whose lines end in LF or CR LF.
std::vector<Line> lines_of(const std::string &text) {
  std::vector<Line> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    Line line = {text.substr(start, end - start), start, end + 1};
    while (!line.text.empty() && line.text.back() == '\r')
      line.text.pop_back();
    lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

std::string squeezed(std::string text) {
  for (size_t at = text.find("  "); at != std::string::npos; at = text.find("  "))
    text.erase(at, 1);
  return text;
}

bool holds(const std::string &text, const std::string &part) {
  return text.find(part) != std::string::npos;
}

// The plain account: the records one by one, the old ones in a list searched from its start.
class Model {
public:
  Model(const std::string &copy, const std::vector<std::vector<std::string>> &old, bool with_old)
      : lines_(lines_of(copy)), old_(old), with_old_(with_old) {
  }

  std::string idx1() {
    out_ = idx1_header("./idx1_a", "fr1");
    for (size_t i = 0; i < lines_.size() && !ended_; i++)
      i = line(i);
    return out_ + "# END_OF_FILE * " + std::to_string(behind_) + "  \r\n";
  }

private:
  std::string at(size_t i) {
    behind_ = lines_[i].next;
    std::string text = lines_[i].text.substr(0, 101);
    ended_ = holds(text, "END_OF_FILE");
    return text;
  }

  size_t line(size_t i) {
    std::string text = at(i);
    if (ended_)
      return i;
    if (holds(text, "######"))
      return section(i + 1);
    size_t mark = text.find_first_not_of(' ');
    if (mark == std::string::npos || text[mark] != '#')
      return i;
    size_t name = text.find_first_not_of(' ', mark + 1);
    if (name == std::string::npos)
      return unnamed(i);
    if (text[name] == '#')
      out_ += "##" + text.substr(name + 1) + " \r\n";
    else
      entry(text.substr(name), lines_[i].start);
    return i;
  }

  size_t section(size_t i) {
    for (; i < lines_.size(); i++) {
      std::string text = at(i);
      if (ended_ || holds(text, "######"))
        return i;
    }
    return i;
  }

  size_t unnamed(size_t first) {
    std::string name;
    bool found = false;
    for (size_t i = first + 1; i < lines_.size(); i++) {
      std::string text = at(i);
      if (ended_)
        return i;
      if (!found && !holds(text, "Q>"))
        continue;
      name = found ? text : text.substr(text.find("Q>") + 2);
      found = true;
      if (name.find_first_not_of(' ') == std::string::npos)
        continue;
      name = name.substr(0, name.find_first_of(",;")).substr(0, 25);
      record(squeezed("#" + name + " ") + "*fr1 " + std::to_string(lines_[first].start) + " *");
      return i;
    }
    return lines_.size();
  }

  void entry(const std::string &text, size_t offset) {
    std::string mark = "*fr1 " + std::to_string(offset) + " *";
    size_t star = text.find('*');
    if (star == std::string::npos)
      record(squeezed("#" + text + mark));
    else
      record(squeezed("#" + text.substr(0, star) + mark + text.substr(star + 1)));
  }

  void record(const std::string &name_line) {
    std::string question = name_line.substr(1, name_line.find('*') - 1);
    out_ += name_line + " \r\n";
    for (const std::vector<std::string> &old : old_)
      if (with_old_ && old[0] == question) {
        out_ += old[1] + old[2];
        return;
      }
    out_ += std::string(BLANK_52) + "\r\n" + BLANK_52 + "\r\n";
  }

  std::vector<Line> lines_;
  std::vector<std::vector<std::string>> old_;
  bool with_old_;
  std::string out_;
  size_t behind_ = 0;
  bool ended_ = false;
};

struct Chance {
  std::mt19937 generator;

  size_t below(size_t n) {
    return generator() % n;
  }
  std::string one_of(const std::vector<std::string> &texts) {
    return texts[below(texts.size())];
  }
  std::string text(size_t nb_pieces) {
    std::string result;
    for (size_t n = below(nb_pieces + 1); n > 0; n--)
      result +=
          one_of({"a", "b", " ", "  ", "*", "#", ",", ";", "Q>", "\351", "a", " *", "maison"});
    return result;
  }
  std::string line() {
    size_t kind = below(40);
    if (kind == 0)
      return one_of({"######", "x#######", "END_OF_FILE x"});
    if (kind < 4)
      return one_of({"#", "  # ", "Q>", "Q>  "}) + std::string(below(3), ' ');
    if (kind == 4)
      return "#" + text(6) + std::string(60 + below(60), 'c') + text(6);
    return one_of({"#", "# ", " #", "##", "# #", "", "Q>", "R>"}) + text(7);
  }
};

} // namespace

TEST(Idx1DicoModel, RandomDictionariesGiveTheFileOfAPlainAccount) {
  Chance chance = {std::mt19937(4711)};
  for (int round = 0; round < 1500; round++) {
    std::string copy;
    for (size_t n = chance.below(25); n > 0; n--)
      copy += chance.line() + chance.one_of({"\n", "\r\n", "\r\r\n"});
    std::vector<std::vector<std::string>> old;
    std::string old_index = idx1_header("./idx1_a", "old");
    for (size_t n = chance.below(12); n > 0; n--) {
      std::string question =
          squeezed(chance.one_of({"a", "b", "a ", "b ", "", " ", "maison", "ab"}));
      std::string qr = history_line((long)chance.below(9), 1, (long)chance.below(90), 7);
      std::string rq = history_line(1 + (long)chance.below(9), 2, 80, (long)chance.below(90));
      if (qr[5] == '0')
        qr = history_line(0, 1, 0, 7);
      old.push_back({question, qr, rq});
      old_index += "#" + question + "*old 5 * x \r\n" + qr + rq + chance.one_of({"", "## x\r\n"});
    }
    bool with_old = round % 3 != 0;
    Written written = write_index(copy, with_old ? old_index + idx1_trailer(3) : "");
    ASSERT_EQ(written.idx1, Model(copy, old, with_old).idx1()) << copy;
  }
}

TEST(Idx1DicoModel, AnyBytesAreIndexedWithoutHarm) {
  std::mt19937 chance(99);
  for (int round = 0; round < 300; round++) {
    std::string copy;
    std::string old_index = idx1_header("./idx1_a", "old");
    for (size_t n = chance() % 400; n > 0; n--)
      copy += chance() % 3 == 0 ? "#* \r\n\\'"[chance() % 8] : (char)(chance() % 256);
    old_index += write_index(copy).idx1;
    write_index(copy, old_index);
  }
}
