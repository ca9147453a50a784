// The settings file: whatever it holds, what is taken from it fits and stays within its ranges.
#include <string.h>

#include "config/config_file.h"
#include "config/which_lesson.h"
#include "fuzz/harness.h"
#include "score/error_score.h"
#include "util/owned.h"
#include "util/words.h"

namespace {

struct Settings {
  Prenestro window = {};
  Trf_err weights = {};
  Trf_book book = {};
  Trf_string registry = {};
  char font_lesson[101];
  char font_vocab[101];

  Settings() {
    book.t_err = &weights;
    memset(font_lesson, 'x', sizeof font_lesson);
    memset(font_vocab, 'x', sizeof font_vocab);
  }
  ~Settings() {
    FREE_REGISTRY(&registry);
  }
  void read() {
    FURCH_SET(&window, &book, &registry, font_lesson, font_vocab);
  }
};

void check_font(const char *font) {
  HOLDS(memchr(font, 0, 101) != nullptr);
  HOLDS(strcmp(font, "helvetica 18") == 0 || font[0] == ' ' || font[0] == 0);
}

void check_weights(const Trf_err &weights) {
  HOLDS(weights.cof1_err > 0 && weights.cof1_err <= 10);
  HOLDS(weights.cof2_err > 0 && weights.cof2_err <= 10);
  HOLDS((double)weights.cof3_err >= 0.1 && weights.cof3_err <= 10);
  HOLDS(weights.cof4_err >= 1 && weights.cof4_err <= 10);
  HOLDS(weights.cof5_err >= 1 && weights.cof5_err <= 10);
}

void check_registry(Settings *settings) {
  Trf_string *registry = &settings->registry;
  HOLDS(registry->st_lesson != nullptr && registry->spath_idx1 != nullptr);
  HOLDS(registry->nb_lesson == COUNT_WORDS(registry->st_lesson));
  HOLDS(COUNT_WORDS(registry->st_idx1) >= registry->nb_lesson);
  HOLDS(settings->book.nbt_lesson == KLASK_NB_PAJ(registry->st_lesson));
  for (int num = 1; num <= registry->nb_lesson; num++) {
    Owned_text lesson(S_LESSON_FROM_NUM(num, registry));
    Owned_text copy(S_CPY_LESSON_FROM_NUM(num, registry));
    Owned_text idx1(S_IDX1_FROM_NUM(num, registry));
    HOLDS(lesson != nullptr && copy != nullptr && idx1 != nullptr);
  }
}

} // namespace

FUZZ_TARGET(configuration) {
  for (const char *name : {"voc", "le1", "le2", "words/le1", "words/le3.txt"})
    PUT_FILE(name, "!# a\n");
  PUT_FILE("mertu.conf", input);
  Settings settings;
  int status = STATUS_OF([&] { settings.read(); });
  HOLDS(GET_FILE("mertu.conf") == input);
  check_font(settings.font_lesson);
  check_font(settings.font_vocab);
  check_weights(settings.weights);
  if (status >= 0)
    return;
  check_registry(&settings);
  // The same settings are read alike a second time.
  std::string list = settings.registry.st_lesson;
  std::string path = settings.registry.spath_idx1;
  settings.read();
  HOLDS(list == settings.registry.st_lesson);
  HOLDS(path == settings.registry.spath_idx1);
}
