// A learner's directory for the maintenance: dictionaries a and b (aliases fr1 and en2) with
// copies, indexes and an open log, and a learner who notes what she is told.
#ifndef MERTU_TESTS_DB_MAINTENANCE_HOME_H
#define MERTU_TESTS_DB_MAINTENANCE_HOME_H

#include "support/prelude.h"

#include <functional>

#include "db_files.h"
#include "util/book.h"
#include "util/dialogs.h"
#include "util/report.h"

// What the learner was told, and what happens meanwhile.
struct Notices {
  std::vector<std::string> told;
  std::function<void()> meanwhile;
};

inline Notices &NOTICES() {
  static Notices notices;
  return notices;
}

inline void NOTE_NOTICE(Trf_notice kind, const char *text, Trf_book *) {
  NOTICES().told.push_back((kind == NOTICE_WARNING ? "warning: " : "error: ") + std::string(text));
  if (NOTICES().meanwhile)
    NOTICES().meanwhile();
}

const std::string COMPARE_ALL = "Look at file mertu_log for details.\n"
                                "Compare in directory IDX1 the present \n"
                                "idx1_files to the previous cpy_idx1_files !\n";

// One entry as it stands in an idx1 file: its name line and what follows it.
inline std::string record_of(const std::string &question, const std::string &alias, long offset,
                             const std::string &history) {
  return "#" + question + " *" + alias + " " + std::to_string(offset) + " * x \r\n" + history;
}

const std::string HISTORY_A = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
const std::string HISTORY_B = history_line(7, 5, 200, 190) + history_line(6, 4, 180, 170);

// The idx1 file of a dictionary with these records.
inline std::string index_of(const std::string &name, const std::string &alias,
                            const std::string &records) {
  return idx1_header("./IDX1/idx1_" + name, alias) + records + idx1_trailer(0);
}

struct Maintenance_home {
  Scratch_dir dir;
  Test_registry registry{{"./a", "./b"}};
  Trf_book book = {};

  Maintenance_home() {
    dir.write("a", "text\n!# fr1\n# one * x\n");
    dir.write("b", "!# en2\n# two * x\n");
    dir.write("CPY/a", "!# fr1\r\n# one * x\r\n");
    dir.write("CPY/b", "!# en2\r\n# two * x\r\n");
    dir.write("IDX1/idx1_a", index_of("a", "fr1", record_of("one", "fr1", 8, HISTORY_A)));
    dir.write("IDX1/idx1_b", index_of("b", "en2", record_of("two", "en2", 8, HISTORY_B)));
    registry.record.st_alias = g_strdup(" fr1 en2 ");
    book.G_kentel = &registry.record;
    book.nbt_lesson = 2;
    book.fp_log = fopen("mertu_log", "w");
    NOTICES() = Notices();
    static const Trf_dialogs dialogs = {nullptr, NOTE_NOTICE};
    SET_DIALOGS(&dialogs);
  }
  ~Maintenance_home() {
    SET_DIALOGS(nullptr);
    fclose(book.fp_log);
  }
  Maintenance_home(const Maintenance_home &) = delete;
  Maintenance_home &operator=(const Maintenance_home &) = delete;

  std::string logged() const {
    fflush(book.fp_log);
    return dir.read("mertu_log");
  }
  // Every file of the databases, one behind the other.
  std::string all_files() const {
    std::string all;
    for (const char *directory : {"CPY", "IDX1"})
      for (const char *name : {"a", "b", "idx1_a", "idx1_b", "cpy_idx1_a", "cpy_idx1_b"})
        all += dir.read(directory + std::string("/") + name) + "|";
    return all;
  }
};

// The indexes of a and b once they are rebuilt from the dictionaries as they stand there.
inline std::string rebuilt_a(const std::string &history = HISTORY_A) {
  return idx1_header("./IDX1/idx1_a", "fr1") + record_of("one", "fr1", 14, history) +
         idx1_trailer(25);
}

inline std::string rebuilt_b(const std::string &history = HISTORY_B) {
  return idx1_header("./IDX1/idx1_b", "en2") + record_of("two", "en2", 8, history) +
         idx1_trailer(19);
}

#endif
