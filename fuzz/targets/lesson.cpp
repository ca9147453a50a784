// A lesson loaded, drilled and recorded: the table is in order, the files hold what was answered.
//
// Pieces: the index of a dictionary, the index of another one that it borrows from, both damaged in
// any way; what is answered, a byte for each entry.
#include <limits.h>

#include <algorithm>
#include <map>
#include <set>

#include "db/generated_lesson.h"
#include "db/record_lesson.h"
#include "db/verify_lesson.h"
#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "lesson/numbered_lesson.h"
#include "util/owned.h"

namespace {

const char ONE[] = "IDX1/idx1_one";
const char TWO[] = "IDX1/idx1_two";

void load(Learner *learner) {
  int number = 1;
  INIT_LESSON(&number, &learner->book);
}

// What the lesson file says of its entries: whether each can be read, and none stands twice.
struct Lesson_file {
  bool whole = true;
  bool twice = false;
};

Lesson_file read_lesson_file(const Trf_posit &table) {
  Lesson_file file;
  Owned_stream fp = OPEN_STREAM("idx1_gene", "r");
  HOLDS(fp != nullptr);
  std::set<std::pair<std::string, long>> met;
  for (int i = 1; i <= table.nb_posit; i++) {
    HOLDS(i == 1 || table.posit[i] > table.posit[i - 1]);
    Trf_line_cursor cursor(fp.get());
    cursor.next = table.posit[i];
    Trf_gene_record record;
    file.whole = READ_GENE_RECORD(&cursor, &record) == GENE_RECORD && file.whole;
    HOLDS(!record.name.empty() && record.name[0] == '#');
    file.twice = !met.emplace(record.path, record.history).second || file.twice;
  }
  return file;
}

bool counts_fit(Trf_posit *table) {
  for (int sens : {1, 2})
    for (int i = 1; i <= table->nb_posit; i++) {
      Trf_side side = SIDE_OF_TABLE(sens, table);
      if (side.nb[i] > MAX_RECORDED_COUNT - 5 || side.nok[i] > MAX_RECORDED_COUNT - 5)
        return false;
    }
  return true;
}

// Each count that the table holds is that of the file.
int verify(Learner *learner) {
  Owned_stream fp = OPEN_STREAM("idx1_gene", "r");
  return STATUS_OF([&] { VERIF_LESSON(fp.get(), &learner->book); });
}

// Answers entries as the bytes say: bit 0 not known Q->R, bit 1 not known R->Q.
std::map<int, int> answer(const std::string &bytes, Trf_posit *table) {
  std::map<int, int> answered;
  for (int i = 1; i <= table->nb_posit && i <= (int)bytes.size(); i++)
    for (int sens : {1, 2})
      if ((bytes[(size_t)i - 1] & sens) != 0) {
        long &nok = SIDE_OF_TABLE(sens, table).nok[i];
        nok += nok < LONG_MAX ? 1 : 0;
        answered[i] |= sens;
      }
  return answered;
}

// Records and loads again: a missed entry has the count and the day, any other what it had.
void check_recording(const std::string &bytes, Learner *learner) {
  std::map<int, int> answered = answer(bytes, &learner->table);
  std::map<std::pair<int, int>, std::vector<long>> due;
  for (int sens : {1, 2})
    for (int i = 1; i <= learner->table.nb_posit; i++) {
      Trf_side side = SIDE_OF_TABLE(sens, &learner->table);
      bool missed = (answered[i] & sens) != 0;
      due[{sens, i}] = {side.nb[i], side.nok[i], side.date_ok[i],
                        missed ? FUZZ_DAY : side.date_nok[i]};
    }
  size_t sizes[] = {GET_FILE(ONE).size(), GET_FILE(TWO).size()};
  RECORD_LESSON(&learner->book);
  HOLDS(GET_FILE(ONE).size() == sizes[0] && GET_FILE(TWO).size() == sizes[1]);
  load(learner);
  CHECK_TABLE(&learner->table);
  for (const auto &[place, values] : due) {
    Trf_side side = SIDE_OF_TABLE(place.first, &learner->table);
    int i = place.second;
    HOLDS(i <= learner->table.nb_posit);
    HOLDS(side.nb[i] == values[0] && side.nok[i] == values[1]);
    HOLDS(side.date_ok[i] == values[2] && side.date_nok[i] == values[3]);
  }
}

// The lines of an index that begin with '#', each with its offset. What stands right behind a bare
// CR is no beginning: the reader of lines passes over it.
std::string names_of(const std::string &index) {
  std::string names;
  for (size_t at = 0; at < index.size();) {
    size_t end = std::min(index.find_first_of("\r\n\377", at), index.size());
    if (index[at] == '#' && (at == 0 || index[at - 1] != '\r'))
      names += std::to_string(at) + index.substr(at, end - at) + "\n";
    at = end + 1;
  }
  return names;
}

// However damaged the files are, a recording writes over no name, and moves nothing.
void check_names(const std::string &bytes, Learner *learner) {
  std::string files[] = {GET_FILE(ONE), GET_FILE(TWO)};
  answer(bytes, &learner->table);
  STATUS_OF([&] { RECORD_LESSON(&learner->book); });
  HOLDS(GET_FILE(ONE).size() == files[0].size() && GET_FILE(TWO).size() == files[1].size());
  HOLDS(names_of(GET_FILE(ONE)) == names_of(files[0]));
  HOLDS(names_of(GET_FILE(TWO)) == names_of(files[1]));
}

bool is_history(const std::vector<std::string> &lines, size_t i) {
  return i < lines.size() && lines[i].size() == 52 && lines[i][0] != '#';
}

// Behind the header, whose marks no name can be mistaken for, stand records of a name and two
// histories, and lines that borrow one.
bool is_sound(const std::string &index) {
  std::vector<std::string> lines = LINES_OF(index);
  if (lines.size() > 1 && lines[1].find_first_not_of('#') != std::string::npos)
    return false;
  for (size_t i = 2; i < lines.size() && lines[i].find("END_OF_FILE") == std::string::npos;) {
    bool is_record = is_history(lines, i + 1) && is_history(lines, i + 2);
    if (lines[i][0] != '#' || (lines[i][1] != '#' && !is_record))
      return false;
    i += lines[i][1] == '#' ? 1 : 3;
  }
  return index.find_first_of("\t\377") == index.npos && !HAS_BARE_CR(index);
}

} // namespace

FUZZ_TARGET(lesson) {
  std::vector<std::string> pieces = PIECES(input, 3);
  PUT_FILE("one", "!# a1\n");
  PUT_FILE("two", "!# b2\n");
  PUT_FILE(ONE, pieces[0]);
  PUT_FILE(TWO, pieces[1]);
  Learner learner("one two ", " a1 b2 ", 2);
  if (STATUS_OF([&] { load(&learner); }) >= 0)
    return;
  CHECK_TABLE(&learner.table);
  HOLDS(learner.table.QRord_posit[learner.table.nb_posit + 1] == -1);
  HOLDS(learner.book.fp_gene == nullptr && learner.book.fp_idx1 == nullptr);
  Lesson_file file = read_lesson_file(learner.table);
  if (!counts_fit(&learner.table) || !file.whole)
    return check_names(pieces[2], &learner);
  HOLDS(verify(&learner) == -1);
  if (file.twice || !is_sound(pieces[0]) || !is_sound(pieces[1]))
    return check_names(pieces[2], &learner);
  STATUS_OF([&] { check_recording(pieces[2], &learner); });
}
