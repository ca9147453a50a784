// A learner's records without a window, and the files that targets read back by plain means.
#ifndef MERTU_FUZZ_LEARNER_H
#define MERTU_FUZZ_LEARNER_H

#include <string>
#include <vector>

#include "config/registry.h"
#include "score/error_score.h"
#include "score/position_table.h"
#include "util/book.h"

// The records of a book whose registry holds these dictionaries.
struct Learner {
  Trf_string registry = {};
  Trf_posit table;
  Trf_err weights = {9.0F, 3.0F, 2.0F, 6.0F, 10.0F};
  Trf_book book = {};

  // list, aliases: as st_lesson and st_alias hold them; nb: how many dictionaries.
  Learner(const char *list, const char *aliases, int nb);
  ~Learner();
  Learner(const Learner &) = delete;
  Learner &operator=(const Learner &) = delete;
};

// A record of an idx1 file as its bytes stand there.
struct Index_record {
  std::string name; // the name line without its line end
  std::string question;
  std::string qr; // the history lines, without line ends
  std::string rq;
};

// The text cut into lines at LF, a CR before it dropped.
std::vector<std::string> LINES_OF(const std::string &text);

// The records of an index that Mertu has just written; its frame is checked on the way: header,
// three lines to a record, history lines of their full length, the trailer.
std::vector<Index_record> RECORDS_OF(const std::string &index, const std::string &path);

// Whether the line reader may take the text for UTF-8 and read it otherwise than its bytes stand.
bool MAY_BE_REREAD(const std::string &text);

// Whether a CR stands without a LF behind it: what follows is then read otherwise than LINES_OF
// does.
bool HAS_BARE_CR(const std::string &text);

// The orderings hold each entry once, never lighter before heavier.
void CHECK_TABLE(Trf_posit *table);
void CHECK_ORDER(int sens, Trf_posit *table);

#endif
