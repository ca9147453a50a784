// What a plain account of the composed lessons is about: dictionaries, words, lines, tags, keys.
#ifndef MERTU_TESTS_LESSON_COMPOSE_MODEL_H
#define MERTU_TESTS_LESSON_COMPOSE_MODEL_H

#include <glib.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "db/history_line.h"
#include "score/error_score.h"
#include "util/accents.h"

namespace model {

// The commands by what they compose; from NEW_TAG on they ask for a tag.
enum Kind { NEW, BALANCE, WORST, NEW_TAG, WORST_TAG };

struct Command {
  Kind kind = NEW;
  int code = 1;    // of WORST
  std::string tag; // of NEW_TAG and WORST_TAG, as handed over
};

// What the learner has on disk and in the registry; dictionary k is element k - 1.
struct World {
  std::vector<std::string> aliases;
  std::vector<std::string> paths;           // of the idx1 files, one may stand twice
  std::map<std::string, std::string> files; // their bytes; a path without them cannot be opened
  int nbt_lesson = 0;
  long today = 0;
  Trf_err weights = {9.0F, 3.0F, 2.0F, 6.0F, 10.0F};
};

// The values of one direction: 1 known, 2 not known, 3 and 4 their last days.
struct History {
  std::string line;
  long value[5] = {};
  long score = 0;
};

// An entry in the table. Direction 0 is Q->R, 1 is R->Q.
struct Word {
  std::string name, path;
  long offset = 0, posit = 0;
  History way[2];
};

struct Line {
  std::string text;
  long next = 0; // byte offset behind it
};

// True where the alias of dictionary k, searched as the end of a listed one, leads back to it.
inline bool leads_back(const World &world, int k) {
  if (k > (int)world.aliases.size())
    return false;
  const std::string &alias = world.aliases[(size_t)k - 1];
  return std::none_of(
      world.aliases.begin(), world.aliases.begin() + k - 1, [&](const std::string &other) {
        return other.size() >= alias.size() && other.substr(other.size() - alias.size()) == alias;
      });
}

// One idx1 file while it is read. History lines do not count.
struct Reading {
  std::string path;
  std::vector<Line> lines;
  size_t at = 0;
  long nb_read = 0;
  int candidates = 0;
};

// A line as the reader hands it over.
inline std::string as_read(std::string text) {
  for (size_t at = text.find('\t'); at != std::string::npos; at = text.find('\t'))
    text.replace(at, 1, 8, ' ');
  bool plain = std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
  if (plain || !g_utf8_validate(text.data(), (gssize)text.size(), nullptr))
    return text;
  char *converted = g_convert(text.c_str(), -1, "CP1252", "UTF-8", nullptr, nullptr, nullptr);
  std::string result = converted == nullptr ? text : converted;
  g_free(converted);
  return result;
}

// The lines of a file whose lines end in LF or CR LF.
inline std::vector<Line> lines_of(const std::string &bytes) {
  std::vector<Line> lines;
  for (size_t start = 0; start < bytes.size();) {
    size_t end = std::min(bytes.find('\n', start), bytes.size());
    std::string text = bytes.substr(start, end - start);
    if (!text.empty() && text.back() == '\r')
      text.pop_back();
    lines.push_back({as_read(text), (long)end + 1});
    start = end + 1;
  }
  return lines;
}

inline bool holds(const std::string &text, const std::string &part) {
  return text.find(part) != std::string::npos;
}

inline std::string without_accents(const std::string &text) {
  std::vector<char> room(2 * text.size() + 8, '\0');
  std::copy(text.begin(), text.end(), room.begin());
  RM_ACCENTS(room.data());
  return room.data();
}

// What stands from a letter that a digit follows up to the next blank is passed over. Returns
// whether the answer is decided; `at` moves behind the mark.
inline bool mark_decides(const std::string &text, char letter, size_t *at, bool *untagged) {
  size_t found = *at < text.size() ? text.find(letter, *at) : std::string::npos;
  if (found == std::string::npos)
    return false;
  char after = found + 1 < text.size() ? text[found + 1] : '\0';
  *untagged = after >= '0' && after <= '9';
  *at = text.find(' ', found);
  return !*untagged || *at == std::string::npos;
}

// True for a tag text that counts as none.
inline bool no_tag(const std::string &text) {
  size_t at = 1;
  bool untagged = false;
  for (char letter : {'Q', 'R'})
    if (mark_decides(text, letter, &at, &untagged))
      return untagged;
  return at >= text.size() || text.find_first_not_of(' ', at) == std::string::npos;
}

inline bool carries_tag(const std::string &name, const std::string &tag) {
  size_t star = name.find('*', 1);
  star = star == std::string::npos ? star : name.find('*', star + 1);
  if (star == std::string::npos)
    return false;
  std::string text = without_accents(name.substr(star + 1));
  return tag.empty() ? no_tag(text) : holds(text + " ", tag);
}

using Keys = std::vector<long>;

// True where a goes strictly ahead of b: larger first, never asked ahead of all and all alike.
inline bool ahead(const Keys &a, const Keys &b) {
  if (a[0] < 0 || b[0] < 0)
    return a[0] < 0 && b[0] >= 0;
  return a > b;
}

// The three keys by which a word is the worse; its age is counted from the last answer.
inline Keys worst_keys(int code, long today, long bound, const History &own) {
  const long *v = own.value;
  long last = v[1] > 0 ? v[3] : v[4];
  if (v[1] > 0 && v[2] > 0)
    last = std::max(v[3], v[4]);
  long age = today - last;
  switch (code) {
  case 1:
    return {own.score, v[2], age};
  case 2:
    return {age, own.score, v[2]};
  case 3:
    return {last, own.score, v[2]};
  case 4:
    return {v[2], own.score, age};
  default:
    return {bound - v[1] - v[2], age, own.score};
  }
}

// What the check of the table against the files says of a word; false where it has a count that
// the check refuses.
inline bool verify_word(const Word &word, long today, std::string *log) {
  size_t star = word.name.find('*');
  if (star == std::string::npos)
    return true;
  std::string alias = word.name.substr(star + 1, word.name.find(' ', star) - star - 1);
  for (const History &history : word.way) {
    std::string line = history.line;
    long value[5];
    if (line.size() != 52)
      *log += "VERIF_LESSON  file : " + word.path + "  needs regeneration\n";
    if (CHECK_EXTRACT_4LINT(today, &line[0], value) != 0)
      *log += "VERIF_LESSON and CHECK_4LINTsome error in file : " + word.path +
              " of lesson : " + alias + " \n";
    if (value[1] > 10000 || value[2] > 10000)
      return false;
  }
  return true;
}

} // namespace model

#endif
