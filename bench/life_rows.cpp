// The rows of a full learner's life, and of the line reader.
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

#include "bench/floors.h"
#include "bench/open_book.h"
#include "bench/rows.h"
#include "command/dictionary_listing.h"
#include "command/tag_list.h"
#include "db/check_correct.h"
#include "db/record_lesson.h"
#include "db/synchronise.h"
#include "db/transfer.h"
#include "lesson/new_words.h"
#include "lesson/numbered_lesson.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_words.h"
#include "score/position_table.h"

namespace {

namespace fs = std::filesystem;

const int TIMES = 9;
const double COMPOSED = 0.010; // seconds

void start() {
  Open_book started;
}

void measure_starts(const Life &life, FILE *out) {
  start();
  Index_floor first(life, false);
  auto forget_indexes = []() {
    fs::remove_all("CPY");
    fs::remove_all("IDX1");
  };
  MEASURE(life.text, {{"first start", BAR_RATIO, 3, forget_indexes, start, [&]() { first.run(); }}},
          TIMES, out);
  WRITE_HISTORIES(life, true);
  SETTLE_TIMES(life);
  Index_floor again(life, true);
  MEASURE(
      life.text,
      {{"start, all edited", BAR_RATIO, 3, [&]() { EDIT_DICTIONARIES(life, life.nb_dictionaries); },
        start, [&]() { again.run(); }}},
      TIMES, out);
  SETTLE_TIMES(life);
  MEASURE(life.text,
          {{"start, nothing to do", NO_BAR, 0, [&]() { SETTLE_TIMES(life); }, start, nullptr},
           {"start, one dictionary edited", NO_BAR, 0, [&]() { EDIT_DICTIONARIES(life, 1); }, start,
            nullptr}},
          TIMES, out);
}

void load(int n, Trf_book *book) {
  book->ilesson = n;
  INIT_LESSON(&n, book);
}

void measure_lessons(const Life &life, FILE *out) {
  Open_book open;
  Trf_book *book = open.book;
  std::vector<std::string> indexes = INDEXES_OF(life);
  auto empty = [=]() { book->t_posit->nb_posit = 0; };
  auto read = [=]() { READ_LINES(indexes); };
  std::string tag = std::string(" ") + COMMON_TAG + " ";
  std::vector<Work> works = {
      {"a lesson loaded", NO_BAR, 0, nullptr, [=]() { load(7, book); },
       [=]() { READ_LINES({indexes[6]}); }},
      {"!new", BAR_SECONDS, COMPOSED, empty, [=]() { NEW_WORDS_LESSON(book); }, read},
      {"!bal", BAR_SECONDS, COMPOSED, empty, [=]() { BALANCE_WORDS(book); }, read},
      {"!tag", BAR_SECONDS, COMPOSED, empty, [&]() { WORST_TAG_LESSON(tag.data(), book); }, read},
      {"!ntag", BAR_SECONDS, COMPOSED, empty, [&]() { NEW_TAG_LESSON(tag.data(), book); }, read}};
  for (int code = 1; code <= 5; code++)
    works.push_back({"!worst " + std::to_string(code), BAR_SECONDS, COMPOSED, empty,
                     [=]() { WORST_WORDS_LESSON(code, book); }, read});
  MEASURE(life.text, works, TIMES, out);
}

void measure_reports(const Life &life, FILE *out) {
  Open_book open;
  Trf_book *book = open.book;
  std::vector<std::string> indexes = INDEXES_OF(life);
  auto list_tags = [=]() {
    Trf_tags tags;
    COLLECT_TAGS(book, &tags);
    MERGESORT_STG_CLASS(1, tags.classmt.nb, tags.classmt.order, tags.text);
  };
  MERTU_DICO(book);
  Listing_floor listing(life);
  MEASURE(life.text,
          {{"!dico", NO_BAR, 0, nullptr, [=]() { MERTU_DICO(book); }, [&]() { listing.run(); }},
           {"!ltag", NO_BAR, 0, nullptr, list_tags, [=]() { READ_LINES(indexes); }}},
          TIMES, out);
}

// Every word of the lesson answered three times, and missed once.
void answer_all(Trf_posit *t_posit) {
  for (int sens : {1, 2})
    for (int i = 1; i <= t_posit->nb_posit; i++) {
      Trf_side side = SIDE_OF_TABLE(sens, t_posit);
      side.nb[i] += 3;
      side.nok[i] += 1;
    }
}

// The bytes of so many history lines written where they stand, and synced.
void write_lines(const std::string &path, int nb) {
  std::string bytes = BYTES_OF(path);
  int fd = open(path.c_str(), O_WRONLY);
  for (int i = 0; i < nb; i++) {
    off_t at = (off_t)(bytes.size() / (size_t)nb) * i;
    if (pwrite(fd, &bytes[(size_t)at], 52, at) < 0)
      break;
  }
  fsync(fd);
  close(fd);
}

void measure_recording(const Life &life, FILE *out) {
  Open_book open;
  Trf_book *book = open.book;
  auto answered = [=]() {
    load(7, book);
    answer_all(book->t_posit);
  };
  auto composed = [=]() {
    book->t_posit->nb_posit = 0;
    WORST_WORDS_LESSON(1, book);
    answer_all(book->t_posit);
  };
  MEASURE(life.text,
          {{"recording, 100 words answered both ways", NO_BAR, 0, answered,
            [=]() { RECORD_LESSON(book); }, []() { write_lines("floor/d0007.txt.idx1", 200); }},
           {"recording, a composed lesson", NO_BAR, 0, composed, [=]() { RECORD_LESSON(book); },
            nullptr}},
          5, out);
}

void measure_maintenance(const Life &life, FILE *out) {
  fs::copy("IDX1", "other");
  Open_book open;
  Trf_book *book = open.book;
  Index_floor floor(life, true);
  char other[] = "./other";
  auto bare = [&]() { floor.run(); };
  auto edit = [&]() { EDIT_DICTIONARIES(life, life.nb_dictionaries); };
  MEASURE(life.text,
          {{"check of everything", BAR_BEYOND_SYNCS, 0.100, nullptr,
            [=]() { CHECK_CORR_ALL_DBASE(book); }, nullptr},
           {"check of everything, all edited", BAR_BEYOND_SYNCS, 0.100, edit,
            [=]() { CHECK_CORR_ALL_DBASE(book); }, bare},
           {"synchronise, all edited", BAR_RATIO, 4, edit,
            [&]() { SYNCHRO_ALL_DBASE(other, book); }, bare}},
          TIMES, out);
  WRITE_OLD_FORM(life);
  MEASURE(life.text, {{"transfer", NO_BAR, 0, nullptr, [=]() { TRF_ALL_DBASE(book); }, nullptr}},
          TIMES, out);
}

// The text of a dictionary, without accents or with one in most lines, many times over.
std::string long_text(bool accents) {
  std::string text;
  const char *line = accents ? "Il est t\303\264t. Anne ouvre la fen\303\252tre de la cuisine.\n"
                             : "It is early. Anne opens the window of the kitchen at last.\n";
  for (int i = 0; text.size() < 32u << 20; i++)
    text += i % 5 == 4 ? "\n" : line;
  return text;
}

void measure_reader(FILE *out) {
  std::vector<Work> works;
  std::string texts[2] = {long_text(false), long_text(true)};
  for (int accents : {0, 1}) {
    std::string path = accents == 1 ? "accents" : "plain";
    WRITE_BYTES(path, texts[accents]);
    works.push_back({accents == 1 ? "line reader, accents in UTF-8" : "line reader, no accents",
                     accents == 1 ? NO_BAR : BAR_RATE, 300, nullptr, [=]() { READ_LINES({path}); },
                     [&texts, accents]() { LOOP_OVER_BYTES(texts[accents]); },
                     (double)texts[accents].size() / 1e6});
  }
  MEASURE("32 MiB", works, TIMES, out);
  fs::remove("accents");
  fs::remove("plain");
}

} // namespace

void LIFE_ROWS(FILE *out) {
  const Life &life = FULL_LIFE;
  Scratch_home home(life.name);
  measure_reader(out);
  WRITE_LIFE(life);
  measure_starts(life, out);
  SETTLE_TIMES(life);
  measure_lessons(life, out);
  measure_reports(life, out);
  measure_recording(life, out);
  measure_maintenance(life, out);
}
