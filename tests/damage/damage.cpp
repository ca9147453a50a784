// A healthy working directory, and one random damage to it.
#include "damage/damage.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <vector>

#include "db/history_line.h"

namespace fs = std::filesystem;

namespace {

const char *const NAMES[] = {"one.txt", "two.txt", "three.txt"};

std::string read_file(const std::string &name) {
  std::ifstream file(name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void write_file(const std::string &name, const std::string &bytes) {
  std::ofstream(name, std::ios::binary) << bytes;
}

std::string history_line(std::initializer_list<long> counts) {
  long values[NB_FIELDS + 1] = {};
  std::copy(counts.begin(), counts.end(), values + 1);
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  return std::string(line) + "\r\n";
}

// The history of entry i: some were never asked, some missed, some known.
std::string history_of(int i) {
  if (i % 4 == 0)
    return history_line({0, 0, 0, 0}) + history_line({i, 1, 2000, 1990});
  return history_line({i, i % 3, 2000 + i, i % 3 == 0 ? 0 : 2100}) +
         history_line({i % 2, 2, i % 2 == 0 ? 0 : 1500, 1600 + i});
}

// The index with the history lines behind every name line replaced.
std::string with_histories(const std::string &index, int first) {
  std::istringstream lines(index);
  std::string result;
  int i = first;
  int to_skip = 0;
  for (std::string line; std::getline(lines, line);) {
    if (to_skip > 0) {
      to_skip--;
      continue;
    }
    result += line + "\n";
    bool is_name = line[0] == '#' && line[1] != '#' && line.find("END_OF_FILE") == line.npos;
    if (is_name) {
      result += history_of(i++);
      to_skip = 2;
    }
  }
  return result;
}

// One damage being done.
struct Damaging {
  std::mt19937 chance;
  std::string file;
  std::string bytes;

  size_t below(size_t limit) {
    return limit == 0 ? 0 : chance() % limit;
  }
  size_t place() {
    return below(bytes.size() + 1);
  }
};

const char *const TOKENS[] = {"#",        "##",         "\n#\n",
                              "*",        "\n######\n", "\n#######\n",
                              "Q>",       "R>",         "END_OF_FILE",
                              ";",        "\r",         "\n",
                              "\n\n",     "\xFF",       "\xC3",
                              "\xE9",     "-1",         "99999999999999999999",
                              "\t",       "\\",         "!#",
                              ":>",       "<:",         "->",
                              "1->9",     "<)start)",   "<)end)",
                              "A>1",      "&/",         "./IDX1",
                              "Pages ",   "9999 ",      "# END_OF_FILE *",
                              "# x *one", "## un *two"};

void cut_short(Damaging *d) {
  d->bytes.resize(d->place());
}
void change_bytes(Damaging *d) {
  for (size_t n = 1 + d->below(8); n > 0 && !d->bytes.empty(); n--)
    d->bytes[d->below(d->bytes.size())] = (char)d->chance();
}
void take_out(Damaging *d) {
  d->bytes.erase(d->place() % (d->bytes.size() + 1), 1 + d->below(120));
}
void repeat_part(Damaging *d) {
  size_t from = d->place();
  d->bytes.insert(d->place(), d->bytes.substr(from, 1 + d->below(300)));
}
void insert_tokens(Damaging *d) {
  for (size_t n = 1 + d->below(4); n > 0; n--)
    d->bytes.insert(d->place(), TOKENS[d->below(std::size(TOKENS))]);
}
void insert_nuls(Damaging *d) {
  d->bytes.insert(d->place(), std::string(1 + d->below(20), '\0'));
}
void empty_it(Damaging *d) {
  d->bytes.clear();
}
void insert_long_line(Damaging *d) {
  d->bytes.insert(d->place(), std::string(20000 + d->below(50000), "# x"[d->below(3)]));
}
void insert_many_lines(Damaging *d) {
  std::string lines;
  for (int i = 0; i < 10100; i++)
    lines += d->file.find("idx1") == std::string::npos ? "# w\n" : "x\r\n";
  d->bytes.insert(d->place(), lines);
}
void fill_with_noise(Damaging *d) {
  d->bytes.clear();
  for (size_t n = d->below(4000); n > 0; n--)
    d->bytes += (char)d->chance();
}
void other_line_ends(Damaging *d) {
  std::string now;
  const char *const ends[] = {"\r", "\n", "\r\n", "\r\r\n"};
  const char *end = ends[d->below(4)];
  for (char byte : d->bytes)
    if (byte == '\n')
      now += end;
    else if (byte != '\r')
      now += byte;
  d->bytes = now;
}

struct Kind {
  const char *name;
  void (*change)(Damaging *damaging);
};
const Kind KINDS[] = {{"cut short", cut_short},
                      {"bytes changed", change_bytes},
                      {"a part taken out", take_out},
                      {"a part repeated", repeat_part},
                      {"tokens inserted", insert_tokens},
                      {"NULs inserted", insert_nuls},
                      {"emptied", empty_it},
                      {"a long line inserted", insert_long_line},
                      {"many lines inserted", insert_many_lines},
                      {"filled with noise", fill_with_noise},
                      {"line ends changed", other_line_ends}};

// Damages to the file as such.
std::string damage_place(Damaging *d, const std::vector<std::string> &files) {
  fs::remove_all(d->file);
  switch (d->below(6)) {
  case 0:
    return "removed";
  case 1:
    fs::create_directory(d->file);
    return "replaced by a directory";
  case 2:
    fs::create_symlink("nowhere", d->file);
    return "replaced by a link to nothing";
  case 3:
    fs::create_symlink(fs::path(d->file).filename(), d->file);
    return "replaced by a link to itself";
  case 4: {
    std::string other = files[d->below(files.size())];
    write_file(d->file, other == d->file ? d->bytes : read_file(other));
    return "replaced by what " + other + " holds";
  }
  default:
    fs::path directory = fs::path(d->file).parent_path();
    if (directory.empty())
      return "removed";
    fs::remove_all(directory);
    write_file(directory, "");
    return "its directory replaced by a file";
  }
}

} // namespace

Damage_files FILES_OF(const std::string &directory) {
  Damage_files files;
  std::error_code broken_link;
  for (const auto &entry : fs::recursive_directory_iterator(directory))
    if (entry.is_regular_file(broken_link))
      files[fs::relative(entry.path(), directory)] = read_file(entry.path());
  return files;
}

void WRITE_DICTIONARIES() {
  write_file("mertu.conf", "# settings\nWhich_lesson :>\none.txt two.txt words/three.txt\n<:\n"
                           "Path_idx1 :> ./IDX1 <:\nHoriz_pix_total :> 900 <:\n"
                           "Font_vocab :> DejaVu Sans 12 <:\nCoef_Err :> 9 3 2 6 10 <:\n");
  std::string text = "!# one\n#######\nA text.\n. point\nA>1 heard\n<)start)\nA>1 snd 0 100\n"
                     "<)end)\n#######\n";
  for (int i = 1; i <= 25; i++)
    text += "# word" + std::to_string(i) + " * noun Q2\nQ> word\nR> answer\n\n";
  write_file("one.txt", text + "## deux *two\n#\nQ> named later, so\nR> yes\n# END_OF_FILE\n");
  write_file("two.txt",
             "!# two\r\n# un * verb\r\nQ> un\r\nR> one\r\n# deux * verb\r\n<)) snd 1 2\r\n"
             "Q> deux\r\nR> two\r\n# \xE9t\xE9 *\r\n######\r\nskipped\r\n######\r\n");
  fs::create_directory("words");
  write_file("words/three.txt", "!# three\n# \\'ecole * x\nQ> \\'ecole\nR> school\n"
                                "# na\xC3\xAFve * x\n# plain\nR> nothing\n");
}

void WRITE_HISTORIES() {
  fs::create_directory("OTHER");
  int first = 1;
  for (const char *name : NAMES) {
    std::string index = std::string("idx1_") + name;
    std::string bytes = read_file("IDX1/" + index);
    write_file("IDX1/" + index, with_histories(bytes, first));
    write_file("OTHER/" + index, with_histories(bytes, first + 2));
    first += 30;
  }
  write_file("Mertu_last_state", "  2    Last lesson\n  2   Sense of Q and R \n  5  6   Position\n"
                                 "  900  700   Size\n  400   Width of book window \n one.txt\n");
  write_file("idx1_gene", "#word1 *one 50 * noun \n ./IDX1/idx1_one.txt * 100 \n");
}

std::string DAMAGE(unsigned seed) {
  Damaging d = {std::mt19937(seed), "", ""};
  std::vector<std::string> files;
  for (const auto &[name, bytes] : FILES_OF("."))
    files.push_back(name);
  d.file = files[d.below(files.size())];
  d.bytes = read_file(d.file);
  std::string told = d.file + ": ";
  if (d.below(6) == 0)
    return told + damage_place(&d, files);
  const Kind &kind = KINDS[d.below(std::size(KINDS))];
  kind.change(&d);
  write_file(d.file, d.bytes);
  return told + kind.name;
}

std::map<std::string, std::string> HISTORIES_OF(const std::string &index) {
  std::istringstream lines(index);
  std::map<std::string, std::string> histories;
  for (std::string line; std::getline(lines, line);) {
    size_t star = line.find('*');
    if (line[0] != '#' || line[1] == '#' || star == line.npos ||
        line.find("END_OF_FILE") != line.npos)
      continue;
    std::string question = line.substr(1, star - 1);
    std::string qr, rq;
    std::getline(lines, qr);
    std::getline(lines, rq);
    histories.emplace(question, qr + "\n" + rq + "\n");
  }
  return histories;
}
