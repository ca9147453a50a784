// The tags in use, with the number of entries that carry each; the file ./mertu_ltag.
//
// A tag is a word (between blanks) behind the second '*' of an entry's name line that is not a mark
// ("Q" or "R" and digits alone). Tags are equal when their bytes are; they are ordered by their
// keys without accents (util/accents.h), by bytes, equal keys in the order of first appearance.
//
// ./mertu_ltag is text with "\n" line ends, a line per tag:
//
//   "!  %s \n" of the line " %s nb=%ld  QR=%ld  RQ=%ld " (tag; entries; entries asked Q->R; R->Q)
#ifndef MERTU_COMMAND_TAG_LIST_H
#define MERTU_COMMAND_TAG_LIST_H

#include <stdio.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "db/old_index.h"
#include "util/book.h"

// The tags found. Tags are numbered from 1 in the order of first appearance.
//   classmt.fp_class      the index being read; borrowed
//   classmt.s_idx1        its path, for messages; borrowed
//   classmt.fp_log        the log; borrowed, may be null
//   classmt.nb            number of tags
//   classmt.nb_tot        capacity of the four arrays (g_malloc, nb_tot + 5 elements)
//   classmt.order         element k: the tag at rank k
//   classmt.value         element k: entries that carry tag k
//   classmt.nk_QR, nk_RQ  element k: those of them that were asked in this direction
struct Trf_tags {
  Trf_classmt classmt;
  std::vector<std::string> text = {""};        // element k: tag k as written; element 0 is no tag
  std::unordered_map<std::string, int> number; // the number of each tag
  std::vector<long> counted = {0}; // element k: the entry that tag k was counted for last
  long nb_entries = 0;             // entries looked at

  Trf_tags() = default;
  Trf_tags(const Trf_tags &) = delete;
  Trf_tags &operator=(const Trf_tags &) = delete;
  ~Trf_tags(); // frees the arrays
};

// Takes the next tag of a name line. *rest: the text behind its second '*', or where the last call
// left it; moved behind the tag. Marks are passed over. Returns false when no tag is left.
bool TAGGED_WORD_LINE(const char **rest, std::string *tag);

// Adds the entries of the index classmt.fp_class (read from its start; the first 10000 lines behind
// its header, history lines not counted) to the tags. "##" lines are left out; a tag that an entry
// names twice counts once. A damaged history line logs "TAGS_EXTRACT and CHECK_4LINTsome error in
// file : fp_class \n"; its corrected values are used.
// Ends of the program, status 1, in the log and on standard output: "Error no detection of #######
// stop \n" and "n file : %s \n"; "TAGS_EXTRACT error 1 \n" where the file ends in place of a
// history line.
void TAGS_EXTRACT(Trf_tags *tags);

// Collects the tags of every dictionary, each read once however often it is listed. An index that
// cannot be opened is skipped ("cannot open file %s, skipped \n" in the log); forgotten lessons are
// mended first. Ends of the program: those of TAGS_EXTRACT and MEND_FORGOTTEN.
void COLLECT_TAGS(Trf_book *book, Trf_tags *tags);

// Sorts the tag numbers order[i0] to order[i1] (both included) by the keys of their texts,
// text[number]. Stable. Nothing is done when i1 is not above i0.
void MERGESORT_STG_CLASS(int i0, int i1, int *order, const std::vector<std::string> &text);

// Sorts order[i0] to order[i1]. work: the scratch array, with elements i0 to i1. key: the key of
// each tag, by its number.
void MSORT_STG_CLASS(int i0, int i1, int *order, int *work, const std::vector<std::string> &key);

// Merges the sorted runs order[i0] to order[m] and order[m + 1] to order[i1]; work and key as
// above.
void MERGE_STG_CLASS(int i0, int m, int i1, int *order, int *work,
                     const std::vector<std::string> &key);

// The line of tag k (from 1), as it is shown. Ends the program with status 2 after "DICO_TAGS error
// length ss=%s@@@ \n" (in the log and on standard output) where it has 100 characters or more.
std::string TAG_LINE(const Trf_tags &tags, int k);

#endif
