// What the tests of the index share: history lines, a rebuild of one file, one made by hand.
#ifndef MERTU_TESTS_DB_DB_FILES_H
#define MERTU_TESTS_DB_DB_FILES_H

#include "support/prelude.h"
#include "support/scratch.h"

#include "config/registry.h"
#include "db/index_writer.h"
#include "util/owned.h"

const std::string NEVER_LINE = "            ;            ;            ;            ;\r\n";
const std::string BLANK_HISTORY = NEVER_LINE + NEVER_LINE;

// A history line with its line end.
inline std::string history_line(long nb, long nok, long date_ok, long date_nok) {
  std::string line;
  for (long value : {nb, nok, date_ok, date_nok}) {
    std::string field(12, ' ');
    std::string number = std::to_string(value);
    field.replace((12 - number.size()) / 2, number.size(), number);
    line += field + ";";
  }
  return line + "\r\n";
}

inline std::string idx1_header(const std::string &path, const std::string &alias) {
  return path + " " + alias + " \r\n" + std::string(53, '#') + "\r\n";
}

inline std::string idx1_trailer(long offset) {
  return "# END_OF_FILE * " + std::to_string(offset) + "  \r\n";
}

// What IDX1_DICO made of a working copy.
struct Written {
  std::string idx1; // the idx1 file
  std::string log;
  std::string said; // standard output
  int nb = -1;      // '#' lines seen
};

// Runs IDX1_DICO over a working copy of this text, with this old index ("" for none), in a scratch
// directory of its own.
inline Written write_index(const std::string &copy, const std::string &old_index = "",
                           const char *path = "./idx1_a") {
  Scratch_dir dir;
  Written result;
  dir.write("copy", copy);
  dir.write("idx1_old", old_index);
  Owned_stream fp = OPEN_STREAM("copy", "r");
  Owned_stream fpi = OPEN_STREAM("new", "w");
  Owned_stream log = OPEN_STREAM("log", "w");
  std::string s_idx1 = path;
  std::string alias = "fr1";
  Trf_classmt old;
  testing::internal::CaptureStdout();
  if (!old_index.empty()) {
    INIT_CLASSMT(fopen("idx1_old", "r"), log.get(), path, &old);
    CLASS_OLD_WORDS(&old);
  }
  IDX1_DICO(log.get(), fp.get(), s_idx1.data(), alias.data(), fpi.get(),
            old_index.empty() ? nullptr : &old, &result.nb);
  EXPECT_EQ(old.fp_class, nullptr);
  FREE_CLASSMT(&old);
  fflush(stdout);
  result.said = testing::internal::GetCapturedStdout();
  fpi.reset();
  log.reset();
  result.idx1 = dir.read("new");
  result.log = dir.read("log");
  return result;
}

// The idx1 file without its header and trailer.
inline std::string body_of(const Written &written) {
  size_t header = idx1_header("./idx1_a", "fr1").size();
  size_t trailer = written.idx1.rfind("# END_OF_FILE *");
  EXPECT_EQ(written.idx1.substr(0, header), idx1_header("./idx1_a", "fr1"));
  return written.idx1.substr(header, trailer - header);
}

// A registry of these dictionaries (each with its directory).
struct Test_registry {
  Trf_string record = {};

  explicit Test_registry(const std::vector<std::string> &dictionaries) {
    START_REGISTRY(&record);
    std::string list;
    for (const std::string &dictionary : dictionaries)
      list += dictionary + " ";
    g_free(record.st_lesson);
    record.st_lesson = g_strdup(list.c_str());
    record.nb_lesson = (int)dictionaries.size();
  }
  ~Test_registry() {
    FREE_REGISTRY(&record);
  }
  Test_registry(const Test_registry &) = delete;
  Test_registry &operator=(const Test_registry &) = delete;
};

// Makes a file's modification time so many seconds older than now.
inline void make_older(const std::string &path, int seconds) {
  std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() -
                                             std::chrono::seconds(seconds));
}

#endif
