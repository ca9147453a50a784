// Checking and correcting the database: index files rebuilt, every history kept and validated.
#include "db/check_correct.h"

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "config/registry.h"
#include "db/index_update.h"
#include "db/maintenance.h"
#include "db/mend_forgotten.h"
#include "util/dialogs.h"
#include "util/numbers.h"
#include "util/report.h"
#include "util/words.h"

namespace {

const char WHOLE_BASE[] = "Check and correct whole data base. \n";
const char SINGLE_LESSON[] = "Check and correct single lesson data base. \n";
const char SEE_LOG[] = "Look at file mertu_log for details.\n";

// The learner is about to look at it.
void flush_log(FILE *fp_log) {
  if (fp_log != nullptr)
    fflush(fp_log);
}

// Checks and corrects one dictionary. The back-up comes first: without one, copy and index stay as
// they belong together.
void check_correct(const Trf_dictionary_paths &paths, Trf_book *book) {
  MEND_FORGOTTEN(book->fp_log);
  int reason = BACK_UP_INDEX(paths.s_idx1.get());
  if (reason != 0 && reason != ENOENT) {
    LOG_AND_SAY(book->fp_log, "cannot back up file %s: %s \n", paths.s_idx1.get(),
                strerror(reason));
    return;
  }
  RENEW_BEFORE_REBUILD(book->fp_log, paths);
  UPDATE_IDX1_FILE(book->fp_log, paths.s_cpy.get(), paths.s_idx1.get());
}

bool is_number(const std::string &word) {
  return std::all_of(word.begin(), word.end(),
                     [](char byte) { return byte >= '0' && byte <= '9'; });
}

// The number that the text begins with, or -1 (logged) where it is that of no dictionary.
int lesson_of_number(char *ss, const Trf_book *book) {
  int taken[2] = {0, 0};
  EXTR_N_INT(1, ss, taken);
  if (taken[0] < 1) {
    LOG_LINE(book->fp_log, "CHECK_CORR_SNG_DBASE ss is not integer \n");
    LOG_LINE(book->fp_log, "ss=%s \n", ss);
    return -1;
  }
  if (taken[1] >= 1 && taken[1] <= book->nbt_lesson)
    return taken[1];
  LOG_LINE(book->fp_log, "CHECK_CORR_SNG_DBASE not OK lesson  num=%d \n", taken[1]);
  return -1;
}

// The number of the dictionary with this alias, or -1 (logged and told). The alias loses the blanks
// around it.
int lesson_of_alias(char *s_alias, Trf_book *book) {
  int num = NUM_FROM_ALIAS(s_alias, book->G_kentel);
  if (num > 0)
    return num;
  LOG_LINE(book->fp_log, "  \n CHECK_CORR_SNG_DBASE alias %s is unknown\n", s_alias);
  std::string notice = std::string(SINGLE_LESSON) + "alias " + s_alias + " is unknown.\n" + SEE_LOG;
  flush_log(book->fp_log);
  TELL_LEARNER(NOTICE_WARNING, notice.c_str(), book);
  return -1;
}

void log_paths(int num, const Trf_dictionary_paths &paths, FILE *fp_log) {
  LOG_LINE(fp_log, "CHECK_CORR_SNG_DBASE num =%d s_idx1=%s \n", num, paths.s_idx1.get());
  LOG_LINE(fp_log, "CHECK_CORR_SNG_DBASE num =%d s_lesson=%s \n", num, paths.s_lesson.get());
  LOG_LINE(fp_log, "CHECK_CORR_SNG_DBASE num =%d s_cpy=%s \n", num, paths.s_cpy.get());
}

void tell_single(const char *s_idx1, Trf_book *book) {
  flush_log(book->fp_log);
  std::string notice = std::string(SINGLE_LESSON) + SEE_LOG +
                       "Compare in directory IDX1 the present file\n" + s_idx1 +
                       "\n to the previous cpy_idx1_file !\n";
  TELL_LEARNER(NOTICE_WARNING, notice.c_str(), book);
}

} // namespace

void CHECK_CORR_ALL_DBASE(Trf_book *book) {
  TELL_LEARNER(NOTICE_WARNING, (std::string(WHOLE_BASE) + COMPARE_ALL_NOTICE).c_str(), book);
  Log_registered registered(book->fp_log);
  Trf_registry_walk walk(book->G_kentel);
  for (int num = 1; num <= book->nbt_lesson; num++) {
    Trf_dictionary_paths paths;
    if (PATHS_OF_DICTIONARY(num, &walk, &paths))
      check_correct(paths, book);
  }
  flush_log(book->fp_log);
}

void CHECK_CORR_SNG_DBASE(char *ss, Trf_book *book) {
  std::string text = ss != nullptr ? ss : "";
  std::string word = NTH_WORD(text.c_str(), 1);
  if (word.empty()) {
    LOG_LINE(book->fp_log, "CHECK_CORR_SNG_DBASE ss is blanc line \n");
    return;
  }
  // QUIRK alias of digits: a word of digits alone is a number, also where a dictionary has it for
  // its alias; a reader would expect aliases to be tried first. It is meant: numbers are what most
  // lessons are called by, and a number out of range must not find the end of some alias.
  // Test: CheckCorrectSingle.AWordOfDigitsIsANumberNeverAnAlias
  bool by_number = is_number(word);
  int num = by_number ? lesson_of_number(text.data(), book) : lesson_of_alias(text.data(), book);
  Trf_registry_walk walk(book->G_kentel);
  Trf_dictionary_paths paths;
  if (num < 1 || !PATHS_OF_DICTIONARY(num, &walk, &paths))
    return;
  Log_registered registered(book->fp_log);
  log_paths(num, paths, book->fp_log);
  check_correct(paths, book);
  if (!by_number)
    LOG_LINE(book->fp_log, "  \n CHECK_CORR_SNG_DBASE alias %s is OK\n", text.c_str());
  tell_single(paths.s_idx1.get(), book);
}
