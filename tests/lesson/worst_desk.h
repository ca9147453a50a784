// A desk for lessons of the worst words: words with a history each, and the lesson read back.
#ifndef MERTU_TESTS_LESSON_WORST_DESK_H
#define MERTU_TESTS_LESSON_WORST_DESK_H

#include "support/prelude.h"

#include <signal.h>
#include <sys/resource.h>

#include "lesson/desk.h"

// The present day of a desk.
const long TODAY = 3000;

// A word of the dictionary whose alias is a1, with both its histories; tags stand behind its
// answer.
inline std::string WORD(const std::string &name, const std::string &qr, const std::string &rq,
                        const std::string &tags = "") {
  return "#" + name + " *a1 10 * " + tags + "\r\n" + qr + rq;
}

// The score of a word of MISSED.
inline long SCORE_OF_MISSES(long nb_misses) {
  return nb_misses + 19;
}

// Words prefix + first to prefix + last, missed as often as their number says, `age` days ago.
inline std::string MISSED(const std::string &prefix, int first, int last, long age = 100,
                          const std::string &tags = "") {
  std::string records;
  for (int i = first; i <= last; i++)
    records += WORD(prefix + std::to_string(i), HISTORY(0, i, 0, TODAY - age), NEVER(), tags);
  return records;
}

// The names prefix + from down to prefix + to.
inline std::vector<std::string> DOWN(const std::string &prefix, int from, int to) {
  std::vector<std::string> names;
  for (int i = from; i >= to; i--)
    names.push_back(prefix + std::to_string(i));
  return names;
}

inline std::vector<std::string> UP(const std::string &prefix, int from, int to) {
  std::vector<std::string> names = DOWN(prefix, to, from);
  return {names.rbegin(), names.rend()};
}

inline std::vector<std::string> BOTH(std::vector<std::string> first,
                                     const std::vector<std::string> &second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// While it lives, no file grows beyond so many bytes, as on a full disk.
struct File_limit {
  rlimit before = {};
  explicit File_limit(rlim_t nb_bytes) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit limit = {nb_bytes, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~File_limit() {
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_DFL);
  }
};

// Three dictionaries without a word, asked Q->R. The weights are such that a score grows by one
// with each miss and hardly at all with age.
struct Worst_desk : Desk {
  Worst_desk() {
    weights = {1.0F, 1.0F, 10000.0F, 250.0F, 10.0F};
    book.nbt_lesson = 3;
    book.sens_qr = 1;
    ALLOCATE_POSIT(25, &table);
    for (const char *name : {"one.txt", "two.txt", "three.txt"})
      write_idx1(name, TRAILER());
  }
  void words(const std::string &name, const std::string &records) {
    write_idx1(name, records + TRAILER());
  }
  // The lesson file's word at offset posit.
  std::string name_at(long posit) const {
    std::string gene = dir.read("idx2_gene");
    size_t at = (size_t)posit;
    if (at >= gene.size() || gene[at] != '#')
      return "?";
    return gene.substr(at + 1, gene.find(" *", at) - at - 1);
  }
  // The lesson's words in the ranking of a direction.
  std::vector<std::string> ranking(int sens) {
    std::vector<std::string> names;
    for (int rank = 1; rank <= table.nb_posit; rank++)
      names.push_back(name_at(table.posit[SIDE_OF_TABLE(sens, &table).ord[rank]]));
    return names;
  }
  // The storage of a word, 0 where the lesson has none of this name.
  int storage_of(const std::string &name) const {
    for (int i = 1; i <= table.nb_posit; i++)
      if (name_at(table.posit[i]) == name)
        return i;
    return 0;
  }
  // Both orderings are ended, and nothing is left open.
  void expect_ended() const {
    EXPECT_EQ(table.QRord_posit[table.nb_posit + 1], -1);
    EXPECT_EQ(table.RQord_posit[table.nb_posit + 1], -1);
    EXPECT_EQ(book.fp_gene, nullptr);
    EXPECT_EQ(book.fp_idx1, nullptr);
  }
};

#endif
