// The key Pages: the list is as long as it says, and what it holds fits.
#include <string.h>

#include "config/config_values.h"
#include "config/pages_key.h"
#include "fuzz/harness.h"
#include "util/owned.h"
#include "util/words.h"

FUZZ_TARGET(pages_key) {
  for (const char *name : {"voc", "le1", "le2.txt", "words/le1", "words/le3.txt", "words/2a3"})
    PUT_FILE(name, "");
  PUT_FILE("list", input);
  Trf_string registry = {};
  START_REGISTRY(&registry);
  Owned_stream fp = OPEN_STREAM("list", "r");
  char line[CONF_LINE];
  int status = STATUS_OF([&] {
    int n_pages = -1;
    if (READ_CONF_LINE(line, CONF_LINE, fp.get())) {
      EXTRACT_PAGES(fp.get(), line, &n_pages, &registry);
      HOLDS(n_pages == registry.nb_lesson);
      HOLDS(registry.nb_lesson == COUNT_WORDS(registry.st_lesson));
      HOLDS((int)strlen(registry.st_lesson) <= registry.lenmx_str_lesson);
      for (int num = 1; num <= n_pages; num++)
        HOLDS(Owned_text(S_LESSON_FROM_NUM(num, &registry)) != nullptr);
    }
  });
  HOLDS(status == -1 || status == 1 || status == 2 || status == 3 || (status >= 9 && status <= 11));
  FREE_REGISTRY(&registry);
}
