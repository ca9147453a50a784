// A desk where lessons are composed: entries written with their histories, and what a composition
// leaves looked at.
#ifndef MERTU_TESTS_LESSON_COMPOSED_DESK_H
#define MERTU_TESTS_LESSON_COMPOSED_DESK_H

#include "db/generated_lesson.h"
#include "lesson/compose.h"
#include "lesson/desk.h"
#include "util/owned.h"

// Three dictionaries, all of them lessons; Q->R.
struct Composed_desk : Desk {
  Composed_desk() {
    book.nbt_lesson = 3;
    book.sens_qr = 1;
    ALLOCATE_POSIT(5, &table);
  }
  // Empty idx1 files for all three, so that none is missing.
  void write_empty() {
    for (const char *name : {"one.txt", "two.txt", "three.txt"})
      write_idx1(name, TRAILER());
  }
  std::string gene() const {
    return dir.read("idx2_gene");
  }
  // The questions of the lesson, in the order of the generated lesson file.
  std::vector<std::string> questions() const {
    std::vector<std::string> found;
    Owned_stream fp = OPEN_STREAM("idx2_gene", "r");
    Trf_line_cursor cursor(fp.get());
    Trf_gene_record record;
    while (READ_GENE_RECORD(&cursor, &record) == GENE_RECORD)
      found.push_back(QUESTION_OF_NAME_LINE(record.name));
    return found;
  }
  // What READ_GENE_RECORD finds at the `posit` of entry i.
  std::string question_at(int i) const {
    Owned_stream fp = OPEN_STREAM("idx2_gene", "r");
    Trf_line_cursor cursor(fp.get());
    cursor.next = table.posit[i];
    Trf_gene_record record;
    READ_GENE_RECORD(&cursor, &record);
    return QUESTION_OF_NAME_LINE(record.name);
  }
};

// An entry: its question, what stands behind its second '*', and its two history lines.
inline std::string RECORD_OF(const std::string &question, const std::string &qr,
                             const std::string &rq, const std::string &rest = " word") {
  return "#" + question + " *a1 10 *" + rest + " \r\n" + qr + rq;
}

// nb entries never asked, "PREFIX1", "PREFIX2", ...
inline std::string NEW_WORDS_OF(const std::string &prefix, int nb) {
  std::string records;
  for (int i = 1; i <= nb; i++)
    records += RECORD_OF(prefix + std::to_string(i), NEVER(), NEVER());
  return records;
}

// What an end of the program leaves in the log: its statement run in a process of its own.
#define ENDS_WITH_LOG(desk, statement, status, text)                                               \
  do {                                                                                             \
    ENDS_WITH_STATUS(statement, status, "");                                                       \
    EXPECT_NE((desk).log().find(text), std::string::npos) << (desk).log();                         \
  } while (false)

#endif
