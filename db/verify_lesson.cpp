// Files and memory compared: the counts of a lesson against its idx1 files.
#include "db/verify_lesson.h"

#include "db/lesson_history.h"
#include "db/mend_forgotten.h"
#include "db/record_lesson.h"
#include "score/position_table.h"
#include "util/day_number.h"
#include "util/report.h"

namespace {

// The counts of one direction of a word that differ from its history line: 0 to 2.
int count_differences(int sens, const Trf_history_line &line, const Trf_lesson_walk &walk) {
  Trf_side side = SIDE_OF_TABLE(sens, walk.book->t_posit);
  long nb = side.nb[walk.icont];
  long nok = side.nok[walk.icont];
  if (nb > MAX_RECORDED_COUNT || nok > MAX_RECORDED_COUNT)
    STOP_PROGRAM(walk.book->fp_log, 1, "VERIF_LESSON error 1 \n");
  return (nb != line.values[1] ? 1 : 0) + (nok != line.values[2] ? 1 : 0);
}

int verify_word(Trf_lesson_walk *walk) {
  int nb_errors = 0;
  Trf_history_line line;
  long next = walk->record.history;
  for (int sens : {1, 2}) {
    READ_LESSON_HISTORY(next, walk, &line);
    next = line.next;
    nb_errors += count_differences(sens, line, *walk);
  }
  return nb_errors;
}

} // namespace

// QUIRK strict check: a single count that differs ends the program, where recording puts a damaged
// line right and goes on; a reader would expect the same patience. It is meant: a lesson composed
// from counts that are not in the files would be recorded over the true ones.
// Test: VerifLesson.EachDifferingCountIsOneErrorAndEndsTheProgram
void VERIF_LESSON(FILE *fp_gene, Trf_book *book) {
  FILE *fp_log = book->fp_log;
  if (DIFF_JOUR() > LAST_RECORDED_DAY)
    STOP_PROGRAM(fp_log, 10, "VERIF_LESSON error 10 \n");
  MEND_FORGOTTEN(fp_log);
  if (fp_gene == nullptr) {
    LOG_AND_SAY(fp_log, "VERIF_LESSON cannot open file %s \n", CURRENT_GENE_NAME(book->ilesson));
    return;
  }
  int nb_errors = 0;
  Trf_lesson_walk walk("VERIF_LESSON", fp_gene, "r", book);
  while (NEXT_LESSON_WORD(&walk))
    nb_errors += verify_word(&walk);
  fseek(fp_gene, 0, SEEK_END);
  LOG_LINE(fp_log, "VERIF_LESSON %d DONE  nb_errors=%d\n", book->ilesson, nb_errors);
  if (nb_errors > 0)
    STOP_PROGRAM(fp_log, 1, "VERIF_LESSON STOP  nb_errors > 0\n");
}
