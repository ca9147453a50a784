// The old index of a dictionary, read back so that a rebuild can carry every history over.
//
// An entry's history is found by its question alone: answer, place and alias may change freely. Of
// equal questions the first record counts, for all of them.
#ifndef MERTU_DB_OLD_INDEX_H
#define MERTU_DB_OLD_INDEX_H

#include <stdio.h>

#include <memory>
#include <string_view>
#include <unordered_map>

// The work record of an old idx1 file. Arrays are 1-based g_malloc blocks of nb_tot + 5 elements.
struct Trf_classmt {
  FILE *fp_class = nullptr;     // the old idx1 file, open for reading; IDX1_DICO closes it
  FILE *fp_log = nullptr;       // the log; borrowed
  int nb_tot = 0;               // capacity of order and value, grown by 10
  int nb = 0;                   // old records
  int *order = nullptr;         // element i holds i
  long *value = nullptr;        // element i: offset of old record i's name line
  long *nk_QR = nullptr;        // counts of the tag list; not used here
  long *nk_RQ = nullptr;        // counts of the tag list; not used here
  int lss_words = 0;            // capacity of ss_words, which has 5 spare bytes more
  char *ss_words = nullptr;     // "*", then for each old record a blank, its question and '*'
  const char *s_idx1 = nullptr; // the index whose copy fp_class is, for messages; borrowed, or null
  const char *s_class = nullptr; // path of fp_class; borrowed, null for "./idx1_old"
};

// Sets the record up for CLASS_OLD_WORDS: nb 0, nb_tot 20, lss_words 30, ss_words "*". fp_class is
// the old idx1 file, open for reading; it belongs to the record from now on.
void INIT_CLASSMT(FILE *fp_class, FILE *fp_log, const char *s_idx1, Trf_classmt *trf_classmt);

// Closes fp_class where it is open and frees the arrays and ss_words; all become null.
void FREE_CLASSMT(Trf_classmt *trf_classmt);

struct Release_classmt {
  void operator()(Trf_classmt *trf_classmt) const {
    FREE_CLASSMT(trf_classmt);
  }
};

// What a record holds, freed at the end of a scope.
using Freed_classmt = std::unique_ptr<Trf_classmt, Release_classmt>;

// Reads the old index from its start and fills nb, nb_tot, order, value, ss_words and lss_words. At
// most 10000 lines are read in all; a longer file says "index %s is longer than 10000 lines \n" on
// standard output and what lies behind is not known.
// Ends the program with status 1 where no header separator is found ("Error no detection of #######
// stop \n") or a name line has no '*' ("Error no detection of #     *  stop \n"), each followed by
// "n file : ./idx1_old \n", in the log and on standard output; and where the file cannot be read to
// its end ("cannot read file %s: %s \n", its own path).
void CLASS_OLD_WORDS(Trf_classmt *trf_classmt);

// The questions of ss_words, by text: the number (from 1) of the first record with that question.
// Its texts stand in ss_words, which must outlive it unchanged.
using Trf_old_names = std::unordered_map<std::string_view, int>;

// Builds the table of ss_words. FIND_OLD_RECORD then answers as a search for the text "* ", the
// question, '*' in ss_words would, with the number of '*' up to its first character.
Trf_old_names OLD_NAMES(const char *ss_words);

// The number (from 1) of the first old record with this question (the text of a name line between
// '#' and '*'), or 0.
int FIND_OLD_RECORD(const Trf_old_names &names, std::string_view question);

#endif
