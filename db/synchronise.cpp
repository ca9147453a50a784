// Synchronising: the histories of another copy of the database merged into this one.
#include "db/synchronise.h"

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "config/registry.h"
#include "db/index_update.h"
#include "db/index_writer.h"
#include "db/maintenance.h"
#include "db/mend_forgotten.h"
#include "db/old_history.h"
#include "util/dialogs.h"
#include "util/file_copy.h"
#include "util/owned.h"
#include "util/paths.h"
#include "util/report.h"

namespace {

const char WHOLE_BASE[] = "Synchronize whole data base. \n";

// The two old indexes that histories are taken from.
struct Trf_two_histories {
  Trf_old_histories own;
  Trf_old_histories other;
};

[[noreturn]] void stop_without_back_up(FILE *fp_log) {
  STOP_PROGRAM(fp_log, 1, "sub SYNCHRO_IDX1_FILE error fp_class STOP \n");
}

// The directory in the form in which names are put behind it: "/..." or "./...", ended by '/'.
// Empty for a blank text.
std::string directory_of(const char *path_synchro) {
  std::string path(path_synchro != nullptr ? path_synchro : "");
  path.erase(path.find_last_not_of(' ') + 1);
  path.erase(0, path.find_first_not_of(' '));
  if (path.empty())
    return path;
  std::replace(path.begin(), path.end(), '\\', '/');
  if (path[0] != '/' && path.compare(0, 2, "./") != 0)
    path.insert(0, "./");
  if (path.back() != '/')
    path += '/';
  return path;
}

// Raises each value to the one of the old index, where that holds the question.
void raise_values(const std::string &question, Trf_old_histories *old, Trf_values *values) {
  Trf_values found;
  if (READ_OLD_HISTORY(question, old, &found) != OLD_HISTORY)
    return;
  for (int k = 1; k <= NB_FIELDS; k++) {
    values->qr[k] = std::max(values->qr[k], found.qr[k]);
    values->rq[k] = std::max(values->rq[k], found.rq[k]);
  }
}

// QUIRK larger of each value: the eight values are compared one by one, and what was counted in
// both copies is not added up; a reader would expect the answers of both to be summed, or the later
// copy to win. It is meant: merging the same copy again changes nothing, and no answer is lost. A
// history that was forgotten in one copy comes back from the other.
// Test: SynchroIdx1File.EachOfTheEightValuesIsTheLargerOne
//
// QUIRK zeros for a new entry: one that neither copy holds gets eight zeros; a reader would expect
// the blank lines of a rebuild. It is meant: values are always written as numbers here, and no
// reader tells a blank field from a 0.
// Test: SynchroIdx1File.AnEntryInNeitherCopyGetsEightZeros
void merged_history(const std::string &question, void *from, std::string *record) {
  auto *two = static_cast<Trf_two_histories *>(from);
  Trf_values values = {};
  raise_values(question, &two->own, &values);
  raise_values(question, &two->other, &values);
  ADD_HISTORY(values, record);
}

// Opens the index to merge with. One that is not there is no fault.
Owned_stream open_other(FILE *fp_log, const char *s_idx1_bis) {
  Owned_stream fp = OPEN_SOURCE(s_idx1_bis);
  int reason = errno;
  if (!fp && reason == ENOENT)
    LOG_LINE(fp_log, "cannot read file %s: %s \n", s_idx1_bis, strerror(reason));
  else if (!fp)
    LOG_AND_SAY(fp_log, "cannot read file %s: %s \n", s_idx1_bis, strerror(reason));
  return fp;
}

// The other copy of a forgotten lesson may have been taken before its records were made whole.
Owned_stream mended_other(FILE *fp_log, FILE *fp_bis, const char *s_idx1_bis) {
  Owned_stream fp = MENDED_COPY(fp_bis);
  if (!fp)
    STOP_PROGRAM(fp_log, 1, "cannot read file %s: %s \n", s_idx1_bis, strerror(errno));
  return fp;
}

// Where back_up_file leaves the back-up of an idx1 file.
std::string back_up_of(char *s_idx1) {
  Owned_text directory(PATH_FROM_STRING(s_idx1));
  Owned_text name(FILE_NAME_FROM_STRING(s_idx1));
  if (!directory || !name)
    return "";
  return std::string(directory.get()) + BACK_UP_PREFIX + name.get();
}

// Reads an old index. s_idx1: as the messages name it; s_class: the file that fp is.
//
// QUIRK one name for old indexes: a fault in the back-up or in the other copy is told of
// "./idx1_old", which is read in a rebuild only; a reader would expect the file's name. It is
// meant: all old indexes are read by one routine, and the line before in the log names the file.
// Test: SynchroIdx1File.AFaultyOtherIndexEndsTheProgramAndChangesNothing
void class_words(FILE *fp_log, Owned_stream fp, const char *s_idx1, const char *s_class,
                 Trf_classmt *classmt) {
  LOG_LINE(fp_log, "SYNCHRO_IDX1_FILE reads file %s \n", s_class);
  INIT_CLASSMT(fp.release(), fp_log, s_idx1, classmt);
  classmt->s_class = s_class;
  CLASS_OLD_WORDS(classmt);
}

void synchronise(const Trf_dictionary_paths &paths, const std::string &directory, FILE *fp_log) {
  Owned_text name(FILENAME_FROM_PATH(paths.s_idx1.get()));
  std::string s_idx1_bis = directory + name.get();
  if (!open_other(fp_log, s_idx1_bis.c_str()))
    return;
  if (BACK_UP_INDEX(paths.s_idx1.get()) != 0)
    stop_without_back_up(fp_log);
  RENEW_BEFORE_REBUILD(fp_log, paths);
  SYNCHRO_IDX1_FILE(fp_log, paths.s_cpy.get(), paths.s_idx1.get(), s_idx1_bis.data());
}

} // namespace

void SYNCHRO_IDX1(FILE *fp_log, FILE *fp, char *sfp1, char *st_alias, FILE *fpi, Trf_classmt *own,
                  Trf_classmt *other, int *nb) {
  Trf_two_histories two = {{own, own->s_idx1, fp_log}, {other, other->s_idx1, fp_log}};
  Trf_history_source source = {true, merged_history, &two};
  WRITE_INDEX(fp_log, fp, sfp1, st_alias, fpi, &source, nb);
}

void SYNCHRO_IDX1_FILE(FILE *fp_log, char *scpy_lesson, char *s_idx1, char *s_idx1_bis) {
  Log_registered registered(fp_log);
  Owned_stream fp_bis = open_other(fp_log, s_idx1_bis);
  if (!fp_bis)
    return;
  Trf_index_files files;
  OPEN_COPY_OR_STOP(scpy_lesson, &files);
  std::string back_up = back_up_of(s_idx1);
  Owned_stream fp_class = OPEN_SOURCE(back_up.c_str());
  if (!fp_class)
    stop_without_back_up(fp_log);
  Trf_classmt own, other;
  Freed_classmt freed_own(&own), freed_other(&other);
  class_words(fp_log, std::move(fp_class), s_idx1, back_up.c_str(), &own);
  class_words(fp_log, mended_other(fp_log, fp_bis.get(), s_idx1_bis), s_idx1_bis, s_idx1_bis,
              &other);
  OPEN_INDEX_OR_STOP(fp_log, s_idx1, &files);
  int nb = 0;
  SYNCHRO_IDX1(fp_log, files.copy.get(), s_idx1, files.s_alias.get(), files.idx1.fp, &own, &other,
               &nb);
  COMMIT_INDEX_OR_STOP(fp_log, scpy_lesson, s_idx1, &files);
  LOG_LINE(fp_log, " \n file = %s has been recomputed and synchronized \n", s_idx1);
  LOG_LINE(fp_log, "with file %s \n", s_idx1_bis);
}

void SYNCHRO_ALL_DBASE(char *path_synchro, Trf_book *book) {
  std::string directory = directory_of(path_synchro);
  if (directory.empty())
    return;
  TELL_LEARNER(NOTICE_WARNING, (std::string(WHOLE_BASE) + COMPARE_ALL_NOTICE).c_str(), book);
  Log_registered registered(book->fp_log);
  MEND_FORGOTTEN(book->fp_log);
  Trf_registry_walk walk(book->G_kentel);
  for (int num = 1; num <= book->nbt_lesson; num++) {
    Trf_dictionary_paths paths;
    if (PATHS_OF_DICTIONARY(num, &walk, &paths))
      synchronise(paths, directory, book->fp_log);
  }
  if (book->fp_log != nullptr)
    fflush(book->fp_log);
}
