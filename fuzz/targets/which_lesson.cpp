// The key Which_lesson: every dictionary listed is one that opens, and is found by its number.
#include <string.h>

#include "config/config_values.h"
#include "config/which_lesson.h"
#include "fuzz/harness.h"
#include "util/owned.h"
#include "util/words.h"

FUZZ_TARGET(which_lesson) {
  for (const char *name : {"voc", "le1", "le2.txt", "words/le1", "words/le3.txt", "words/2a3"})
    PUT_FILE(name, "");
  PUT_FILE("list", input);
  Trf_string registry = {};
  START_REGISTRY(&registry);
  Owned_stream fp = OPEN_STREAM("list", "r");
  char line[CONF_LINE];
  int status = STATUS_OF([&] {
    if (READ_CONF_LINE(line, CONF_LINE, fp.get())) {
      EXTRACT_WHICH_LESSONS(fp.get(), line, &registry);
      CLOSE_LESSON_LIST(&registry);
      for (int num = 1; num <= registry.nb_lesson; num++) {
        Owned_text path(S_LESSON_FROM_NUM(num, &registry));
        HOLDS(path != nullptr && FILE_THERE(path.get()));
        Owned_text directory(PATH_FROM_G_lesson(0, &registry));
        HOLDS(directory != nullptr);
      }
      HOLDS(registry.nb_lesson == COUNT_WORDS(registry.st_lesson));
      HOLDS((int)strlen(registry.st_lesson) < registry.lenmx_string);
      HOLDS(KLASK_NB_PAJ(registry.st_lesson) >= 0);
    }
  });
  HOLDS(status == -1 || status == 1 || status == 2 || status == 3 || status == 11 || status == 13);
  FREE_REGISTRY(&registry);
}
