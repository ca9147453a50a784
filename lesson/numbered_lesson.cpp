// A numbered lesson loaded: the whole dictionary of that number becomes the current lesson.
#include "lesson/numbered_lesson.h"

#include <string>

#include "config/registry.h"
#include "db/generated_lesson.h"
#include "db/idx1_walk.h"
#include "db/mend_forgotten.h"
#include "lesson/indirect_entry.h"
#include "lesson/table_entry.h"
#include "lesson/worst_keys.h"
#include "score/check_order.h"
#include "score/error_score.h"
#include "score/merge_sort.h"
#include "score/position_table.h"
#include "util/book.h"
#include "util/day_number.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// Lines between two entries, and name lines, that a lesson reads at most behind the header.
const long MAX_PASSES = 9999;
// The book's start_lesson at the press that starts a lesson.
const int DESCRIBED = 2;

const Trf_walk_texts TEXTS = {"INIT_LESSON and CHECK_4LINT", "INIT_LESSON and CHECK_4LINT", ""};

// Closes the generated lesson file; false when it could not be written whole.
bool close_written(FILE **fp) {
  bool whole = ferror(*fp) == 0;
  if (fclose(*fp) != 0)
    whole = false;
  *fp = nullptr;
  return whole;
}

void load_entry(int icont, int *nbmx_posit, Trf_idx1_walk *walk, Trf_book *book) {
  long history = walk->line.next;
  MAKE_ROOM_FOR_ENTRY(icont, nbmx_posit, book->t_posit);
  book->t_posit->posit[icont] = APPEND_GENE_NAME(book->fp_gene, walk->line.text);
  READ_ENTRY_HISTORY(icont, walk, book->t_posit);
  APPEND_GENE_REFERENCE(book->fp_gene, walk->path, history);
}

// Fills the table from the open idx1 file and writes the generated lesson file beside it.
void load_entries(Trf_idx1_walk *walk, Trf_book *book) {
  SKIP_HEADER(walk);
  int nbmx_posit = FIRST_CAPACITY;
  ALLOCATE_POSIT(nbmx_posit, book->t_posit);
  int icont = 0;
  ALLOW_LINES(MAX_PASSES, walk);
  for (Trf_walk_line kind = NEXT_NAME(walk); kind != WALK_END; kind = NEXT_NAME(walk)) {
    if (kind == WALK_DOUBLE)
      INDIRECT_IDX1(book->fp_gene, book, walk->line.text, &icont, &nbmx_posit);
    else
      load_entry(++icont, &nbmx_posit, walk, book);
  }
  book->t_posit->nb_posit = icont;
}

// Scores one direction and sorts its ordering. Entries never asked score -1.
void rank_side(int sens, long today, Trf_book *book) {
  Trf_side side = SIDE_OF_TABLE(sens, book->t_posit);
  for (int i = 1; i <= book->t_posit->nb_posit; i++) {
    // QUIRK misses count as known: in a numbered lesson the Q->R score is given the sum of both
    // counts where the R->Q score is given the known count alone. It looks as if one of the two had
    // been forgotten; it is meant: every answer to a question lightens its entry, and the ranks of
    // numbered lessons hang on it. Test: NumberedLesson.OnlyQuestionToResponseCountsMissesAsKnown
    long nb = sens == 1 ? NB_ANSWERS(i, side) : side.nb[i];
    side.cum_err[i] =
        FCT_ERROR(book->t_err, nb, side.nok[i], today, side.date_ok[i], side.date_nok[i]);
  }
  MERGESORT(1, book->t_posit->nb_posit, side.ord, side.cum_err);
}

// Marks the end of the Q->R ordering, which is also the empty save slot.
void mark_end(Trf_posit *t_posit) {
  // QUIRK one end mark: only the Q->R ordering of a numbered lesson is ended by -1. It looks as if
  // the R->Q ordering had been forgotten; it is meant: an undo asks the Q->R ordering alone whether
  // the save slot holds an entry. Test: NumberedLesson.OnlyQuestionToResponseHasAnEndMark
  t_posit->QRord_posit[t_posit->nb_posit + 1] = -1;
}

// Whether this is the learner's press that starts a lesson, and the dictionary that was described
// to him cannot be opened. A load by itself needs the idx1 file alone.
bool nothing_described(const char *s_lesson, const Trf_book *book) {
  return book->start_lesson == DESCRIBED && OPEN_STREAM(s_lesson, "r") == nullptr;
}

// Opens the dictionary's idx1 file and the generated lesson file for the book. Returns the path of
// the file that cannot be opened; "" when both are open, or where there is no such number.
std::string open_files(int n, const char *s_idx1, Trf_book *book) {
  Owned_text s_lesson(S_LESSON_FROM_NUM(n, book->G_kentel));
  if (s_lesson == nullptr || s_idx1 == nullptr)
    return "";
  if (nothing_described(s_lesson.get(), book))
    return s_lesson.get();
  book->fp_idx1 = fopen(s_idx1, "r");
  if (book->fp_idx1 == nullptr)
    return s_idx1;
  book->fp_gene = fopen(CURRENT_GENE_NAME(n), "w");
  return book->fp_gene != nullptr ? "" : CURRENT_GENE_NAME(n);
}

// The lesson counts as empty.
void refuse_lesson(const char *path, Trf_book *book) {
  LOG_LINE(book->fp_log, "INIT_LESSON cannot open file %s \n", path);
  CLOSE_STREAM(&book->fp_idx1);
  CLOSE_STREAM(&book->fp_gene);
  ALLOCATE_POSIT(FIRST_CAPACITY, book->t_posit);
  mark_end(book->t_posit);
}

} // namespace

void INIT_LESSON(int *ilesson, Trf_book *book) {
  if (*ilesson == 0)
    return RENEW_ELEM_NEVEZ(book->t_posit);
  MEND_FORGOTTEN(book->fp_log);
  CLOSE_STREAM(&book->fp_idx1);
  CLOSE_STREAM(&book->fp_gene);
  Owned_text s_idx1(S_IDX1_FROM_NUM(*ilesson, book->G_kentel));
  std::string refused = open_files(*ilesson, s_idx1.get(), book);
  if (book->fp_idx1 == nullptr || book->fp_gene == nullptr)
    return refuse_lesson(refused.c_str(), book);
  Trf_idx1_walk walk(book->fp_idx1, s_idx1.get(), book->fp_log, &TEXTS);
  load_entries(&walk, book);
  CLOSE_STREAM(&book->fp_idx1);
  if (!close_written(&book->fp_gene))
    return refuse_lesson(CURRENT_GENE_NAME(*ilesson), book);
  for (int sens : {1, 2})
    rank_side(sens, walk.date0, book);
  mark_end(book->t_posit);
  SORT_CLASSMENT(book);
  LOG_LINE(book->fp_log, "INIT_LESSON of lesson %d done\n", *ilesson);
}
