// The rows of what looks at every word: indexing, synchronising, and the commands over all
// dictionaries.
#include <algorithm>
#include <filesystem>

#include "bench/floors.h"
#include "bench/open_book.h"
#include "bench/rows.h"
#include "command/dictionary_listing.h"
#include "command/tag_list.h"
#include "db/check_correct.h"
#include "db/synchronise.h"
#include "lesson/new_words.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_words.h"
#include "score/position_table.h"

namespace {

namespace fs = std::filesystem;

// A command takes so little that what else the machine does shows; it is done often.
const int TIMES_OF_A_COMMAND = 11;

void start() {
  Open_book started;
}

void forget_indexes() {
  fs::remove_all("CPY");
  fs::remove_all("IDX1");
}

// The first index of all, and again with the histories of the old one.
void measure_indexing(const Life &life, int times, FILE *out) {
  start();
  Index_floor first(life, false);
  MEASURE(life.text, {{"first index", BAR_RATIO, 3, forget_indexes, start, [&]() { first.run(); }}},
          times, out);
  WRITE_HISTORIES(life, false);
  SETTLE_TIMES(life);
  Index_floor again(life, true);
  MEASURE(life.text,
          {{"index rebuilt", BAR_RATIO, 3, [&]() { EDIT_DICTIONARIES(life, life.nb_dictionaries); },
            start, [&]() { again.run(); }}},
          times, out);
}

void measure_synchronising(const Life &life, int times, FILE *out) {
  fs::remove_all("other");
  fs::copy("IDX1", "other");
  Open_book open;
  Index_floor floor(life, true);
  char other[] = "./other";
  auto edit = [&]() { EDIT_DICTIONARIES(life, life.nb_dictionaries); };
  auto bare = [&]() { floor.run(); };
  auto check = [&]() { CHECK_CORR_ALL_DBASE(open.book); };
  MEASURE(life.text,
          {{"synchronise, all edited", BAR_RATIO, 4, edit,
            [&]() { SYNCHRO_ALL_DBASE(other, open.book); }, bare},
           {"check, all edited", NO_BAR, 0, edit, check, bare},
           {"check", NO_BAR, 0, nullptr, check, nullptr}},
          times, out);
}

void measure_commands(const Life &life, int times, FILE *out) {
  Open_book open;
  Trf_book *book = open.book;
  std::vector<std::string> indexes = INDEXES_OF(life);
  auto empty = [=]() { book->t_posit->nb_posit = 0; };
  auto read = [=]() { READ_LINES(indexes); };
  // The collection of the worst is verified twice before it is cut to twenty words.
  auto read_and_verify = [=]() {
    READ_LINES(indexes);
    for (int stage = 1; stage <= 2; stage++)
      READ_LINES({indexes[0], "idx2_gene"});
  };
  std::string tag = std::string(" ") + COMMON_TAG + " ";
  auto list_tags = [=]() {
    Trf_tags tags;
    COLLECT_TAGS(book, &tags);
    MERGESORT_STG_CLASS(1, tags.classmt.nb, tags.classmt.order, tags.text);
  };
  WORST_WORDS_LESSON(1, book);
  MERTU_DICO(book);
  Listing_floor listing(life);
  MEASURE(
      life.text,
      {{"!dico", BAR_RATIO, 1.5, nullptr, [=]() { MERTU_DICO(book); }, [&]() { listing.run(); }},
       {"!new, nothing new", BAR_RATIO, 2, empty, [=]() { NEW_WORDS_LESSON(book); }, read},
       {"!bal", BAR_RATIO, 2, empty, [=]() { BALANCE_WORDS(book); }, read},
       {"!worst", BAR_RATIO, 2, empty, [=]() { WORST_WORDS_LESSON(1, book); }, read_and_verify},
       {"!worst 5", BAR_RATIO, 2, empty, [=]() { WORST_WORDS_LESSON(5, book); }, read_and_verify},
       {"!tag", BAR_RATIO, 2, empty, [&]() { WORST_TAG_LESSON(tag.data(), book); }, read},
       {"!ntag", BAR_RATIO, 2, empty, [&]() { NEW_TAG_LESSON(tag.data(), book); }, read},
       {"!ltag", BAR_RATIO, 2, nullptr, list_tags, read},
       {"start, nothing to do", NO_BAR, 0, nullptr, start, nullptr},
       {"start, one dictionary edited", NO_BAR, 0, [&]() { EDIT_DICTIONARIES(life, 1); }, start,
        nullptr}},
      std::max(times, TIMES_OF_A_COMMAND), out);
}

} // namespace

void LOAD_ROWS(const Life &life, int times, FILE *out) {
  Scratch_home home(life.name);
  WRITE_LIFE(life);
  measure_indexing(life, times, out);
  measure_synchronising(life, times, out);
  SETTLE_TIMES(life);
  measure_commands(life, times, out);
}
