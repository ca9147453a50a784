// What the maintenance of a dictionary on request begins with: its paths, the back-up of its index,
// its working copy made anew.
#include "db/maintenance.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "db/index_update.h"
#include "util/file_copy.h"

namespace {

const time_t ONE_DAY = 24 * 60 * 60;

// File times are compared to the second: a copy made in the second in which its index was written
// last would pass for indexed. A missing index needs no mark.
void mark_out_of_date(const char *s_idx1) {
  struct stat about;
  if (stat(s_idx1, &about) != 0)
    return;
  struct timespec times[2] = {{0, UTIME_OMIT}, about.st_mtim};
  times[1].tv_sec -= ONE_DAY;
  utimensat(AT_FDCWD, s_idx1, times, 0);
}

} // namespace

bool PATHS_OF_DICTIONARY(int num, Trf_string *G_dico, Trf_dictionary_paths *paths) {
  paths->s_lesson.reset(S_LESSON_FROM_NUM(num, G_dico));
  paths->s_cpy.reset(S_CPY_LESSON_FROM_NUM(num, G_dico));
  paths->s_idx1.reset(S_IDX1_FROM_NUM(num, G_dico));
  return paths->s_lesson && paths->s_cpy && paths->s_idx1;
}

int BACK_UP_INDEX(char *s_idx1) {
  if (!OPEN_SOURCE(s_idx1))
    return errno;
  errno = 0;
  Owned_text back_up(back_up_file(s_idx1));
  if (back_up)
    return 0;
  return errno == 0 || errno == ENOENT ? EIO : errno;
}

void RENEW_BEFORE_REBUILD(FILE *fp_log, const Trf_dictionary_paths &paths) {
  mark_out_of_date(paths.s_idx1.get());
  RENEW_COPY(fp_log, paths.s_lesson.get(), paths.s_cpy.get());
}
