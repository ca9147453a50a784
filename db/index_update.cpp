// Keeping working copies and idx1 files up to date with the dictionaries.
#include "db/index_update.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <glib.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <string>

#include "db/alias_list.h"
#include "db/dictionary_file.h"
#include "db/index_writer.h"
#include "db/mend_forgotten.h"
#include "db/old_index.h"
#include "util/file_copy.h"
#include "util/file_times.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/safe_write.h"
#include "util/working_copy.h"

namespace {

const char OLD_INDEX[] = "./idx1_old";
// Characters of the index directory's name that the copy directory's name replaces.
const size_t NB_CUT = 4;
const mode_t NEW_DIRECTORY_MODE = 0777;
const time_t ONE_DAY = 24 * 60 * 60;

void make_directory(FILE *fp_log, const char *path) {
  DIR *directory = opendir(path);
  if (directory != nullptr) {
    closedir(directory);
    return;
  }
  LOG_LINE(fp_log, "\n Create directory %s \n", path);
  mkdir(path, NEW_DIRECTORY_MODE);
}

// QUIRK four characters cut: the copy directory is the index directory with its last four
// characters replaced by "CPY", whatever they are; a reader would expect the last component to be
// replaced. It is meant: the index directory ends in "IDX1", and where the learner names another
// the same cut finds the copies again everywhere.
// Test: CpyAllLessons.TheCopyDirectoryIsTheIndexDirectoryLessFourCharacters
std::string copy_directory(const char *spath_idx1) {
  size_t length = strlen(spath_idx1);
  return std::string(spath_idx1, length > NB_CUT ? length - NB_CUT : 0) + "CPY";
}

// Gives a file back the time of its last change.
void put_back_time(const char *path, const struct stat &about) {
  struct timespec times[2] = {{0, UTIME_OMIT}, about.st_mtim};
  utimensat(AT_FDCWD, path, times, 0);
}

// Brings the working copy of dictionary `num` up to date. A copy that cannot be made is told and
// leaves the older one, if any; a missing one ends the program where the aliases are listed.
void refresh_copy(FILE *fp_log, int num, Trf_registry_walk *walk) {
  Owned_text s_lesson(S_LESSON_FROM_NUM(num, walk));
  Owned_text s_cpy(S_CPY_LESSON_FROM_NUM(num, walk));
  Owned_text s_idx1(S_IDX1_FROM_NUM(num, walk));
  if (!s_lesson || !s_cpy || DIFF_TIME_FILE(s_lesson.get(), s_cpy.get()) >= 0)
    return;
  struct stat about;
  bool has_idx1 = s_idx1 && stat(s_idx1.get(), &about) == 0;
  if (has_idx1)
    MARK_OUT_OF_DATE(s_idx1.get());
  if (RENEW_COPY(fp_log, s_lesson.get(), s_cpy.get()))
    LOG_LINE(fp_log, "CPY_ALL_LESSONS updated lesson=%d  s_cpy=%s \n", num, s_cpy.get());
  else if (has_idx1)
    put_back_time(s_idx1.get(), about);
}

void log_up_to_date(FILE *fp_log, const char *s_idx1) {
  LOG_LINE(fp_log, "  \n");
  LOG_LINE(fp_log, " \n");
  LOG_LINE(fp_log, "              ************\n");
  LOG_LINE(fp_log, " \n");
  LOG_LINE(fp_log, "file = %s is up to date \n", s_idx1);
}

void refresh_index(FILE *fp_log, int num, Trf_registry_walk *walk) {
  Owned_text s_cpy(S_CPY_LESSON_FROM_NUM(num, walk));
  Owned_text s_idx1(S_IDX1_FROM_NUM(num, walk));
  if (!s_cpy || !s_idx1)
    return;
  if (DIFF_TIME_FILE(s_cpy.get(), s_idx1.get()) >= 0) {
    log_up_to_date(fp_log, s_idx1.get());
    return;
  }
  UPDATE_IDX1_FILE(fp_log, s_cpy.get(), s_idx1.get());
  LOG_LINE(fp_log, "IDX1_ALL_LESSONS updated lesson=%d  s_idx1=%s \n", num, s_idx1.get());
}

[[noreturn]] void stop_on_file(FILE *fp_log, const char *verb, const char *path) {
  STOP_PROGRAM(fp_log, 1, "cannot %s file %s: %s \n", verb, path, strerror(errno));
}

// Copies the old index to ./idx1_old. False only where there is none.
bool copy_old_index(FILE *fp_log, const char *s_idx1) {
  Owned_stream fp = OPEN_SOURCE(s_idx1);
  if (!fp && errno == ENOENT)
    return false;
  int result = fp ? COPY_TO_SCRATCH(fp.get(), OLD_INDEX) : 1;
  if (result != 0)
    stop_on_file(fp_log, result == 1 ? "read" : "write", result == 1 ? s_idx1 : OLD_INDEX);
  return true;
}

// Reads the old index into the record. False where there is none.
bool read_old_index(FILE *fp_log, const char *s_idx1, Trf_classmt *old) {
  if (!copy_old_index(fp_log, s_idx1))
    return false;
  FILE *fp_class = fopen(OLD_INDEX, "r");
  if (fp_class == nullptr)
    STOP_PROGRAM(fp_log, 1, "sub IDX1_EACH_DICO error fp_class STOP \n");
  INIT_CLASSMT(fp_class, fp_log, s_idx1, old);
  CLASS_OLD_WORDS(old);
  return true;
}

} // namespace

void MARK_OUT_OF_DATE(const char *s_idx1) {
  struct stat about;
  if (stat(s_idx1, &about) != 0)
    return;
  struct timespec times[2] = {{0, UTIME_OMIT}, about.st_mtim};
  times[1].tv_sec = std::min(about.st_mtim.tv_sec, time(nullptr)) - ONE_DAY;
  utimensat(AT_FDCWD, s_idx1, times, 0);
}

bool RENEW_COPY(FILE *fp_log, char *s_lesson, char *s_cpy) {
  int result = win_file(s_lesson, s_cpy);
  int reason = errno;
  if (result == -1)
    LOG_AND_SAY(fp_log, "cannot read file %s: %s \n", s_lesson, strerror(reason));
  else if (result == -2)
    LOG_AND_SAY(fp_log, "cannot write file %s: %s \n", s_cpy, strerror(reason));
  return result >= 0;
}

void OPEN_COPY_OR_STOP(const char *scpy_lesson, Trf_index_files *files) {
  files->copy = OPEN_SOURCE(scpy_lesson);
  if (!files->copy)
    exit(32);
  files->s_alias.reset(EXTRACT_SHABANG(files->copy.get()));
}

void OPEN_INDEX_OR_STOP(FILE *fp_log, const char *s_idx1, Trf_index_files *files) {
  if (!OPEN_NEW_FILE(s_idx1, &files->idx1))
    stop_on_file(fp_log, "write", s_idx1);
}

void COMMIT_INDEX_OR_STOP(FILE *fp_log, const char *scpy_lesson, const char *s_idx1,
                          Trf_index_files *files) {
  if (ferror(files->copy.get()))
    stop_on_file(fp_log, "read", scpy_lesson);
  COMMIT_OR_STOP(&files->idx1, s_idx1, fp_log);
}

void UPDATE_IDX1_FILE(FILE *fp_log, char *scpy_lesson, char *s_idx1) {
  Log_registered registered(fp_log);
  Trf_index_files files;
  OPEN_COPY_OR_STOP(scpy_lesson, &files);
  Trf_classmt old;
  Freed_classmt freed(&old);
  bool has_old = read_old_index(fp_log, s_idx1, &old);
  OPEN_INDEX_OR_STOP(fp_log, s_idx1, &files);
  int nb = 0;
  IDX1_DICO(fp_log, files.copy.get(), s_idx1, files.s_alias.get(), files.idx1.fp,
            has_old ? &old : nullptr, &nb);
  COMMIT_INDEX_OR_STOP(fp_log, scpy_lesson, s_idx1, &files);
  LOG_LINE(fp_log, "file = %s has been updated \n", s_idx1);
}

void CPY_ALL_LESSONS(FILE *fp_log, Trf_string *G_lesson) {
  Log_registered registered(fp_log);
  Owned_text current(g_get_current_dir());
  TELL_SHARED_INDEXES(G_lesson);
  LOG_LINE(fp_log, "CPY_ALL_LESSONS current_dir=%s@@@ \n", current.get());
  make_directory(fp_log, copy_directory(G_lesson->spath_idx1).c_str());
  Trf_registry_walk walk(G_lesson);
  for (int num = 1; num <= G_lesson->nb_lesson; num++)
    refresh_copy(fp_log, num, &walk);
}

void IDX1_ALL_LESSONS(FILE *fp_log, Trf_string *G_lesson) {
  Log_registered registered(fp_log);
  make_directory(fp_log, G_lesson->spath_idx1);
  Trf_registry_walk walk(G_lesson);
  for (int num = 1; num <= G_lesson->nb_lesson; num++)
    refresh_index(fp_log, num, &walk);
}

void CALC_INDEX(FILE *fp_log, Trf_string *G_dico, Trf_posit *t_posit) {
  Log_registered registered(fp_log);
  CPY_ALL_LESSONS(fp_log, G_dico);
  MAKE_ST_ALIAS(fp_log, G_dico);
  MEND_FORGOTTEN(fp_log);
  IDX1_ALL_LESSONS(fp_log, G_dico);
  INIT_CUM_ERR(t_posit);
  INIT_ORDERING_POSIT(t_posit);
}
