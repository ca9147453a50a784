// What the maintenance of a dictionary on request begins with: its paths, the back-up of its index,
// its working copy made anew.
#include "db/maintenance.h"

#include <errno.h>

#include "db/index_update.h"
#include "util/file_copy.h"

bool PATHS_OF_DICTIONARY(int num, Trf_registry_walk *walk, Trf_dictionary_paths *paths) {
  paths->s_lesson.reset(S_LESSON_FROM_NUM(num, walk));
  paths->s_cpy.reset(S_CPY_LESSON_FROM_NUM(num, walk));
  paths->s_idx1.reset(S_IDX1_FROM_NUM(num, walk));
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
  MARK_OUT_OF_DATE(paths.s_idx1.get());
  RENEW_COPY(fp_log, paths.s_lesson.get(), paths.s_cpy.get());
}
