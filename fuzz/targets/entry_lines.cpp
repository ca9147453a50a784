// An entry as a question and a response show it: lines for the pane, sounds that can be looked for.
//
// The first line tells how it is asked (a byte) and where it is looked for (a number behind it);
// the rest is the working copy.
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "quiz/entry_lines.h"
#include "text/find_sound.h"
#include "util/owned.h"

namespace {

struct Shown {
  std::vector<std::string> lines;
  int nb_sounds = 0;
  Trf_book *book = nullptr;
};

void take_line(char *text, void *data) {
  static_cast<Shown *>(data)->lines.push_back(text);
}

void take_range(char *name, long, long, void *data) {
  Shown *shown = static_cast<Shown *>(data);
  shown->nb_sounds++;
  HOLDS(strlen(name) > 0);
  char *path = nullptr;
  long size = 0;
  int found = SEARCH_SND_FILE_NAME(&path, &size, name, shown->book);
  HOLDS(found == 0 || (path != nullptr && FILE_THERE(path)));
  g_free(path);
}

void take_total(char *name, void *data) {
  take_range(name, 0, 0, data);
}

Shown show(int istate, long add, Trf_book *book) {
  Shown shown;
  shown.book = book;
  Trf_entry_out out = {take_line, take_range, take_total, &shown};
  WALK_ENTRY(book->fp, istate, add, book, &out);
  return shown;
}

} // namespace

FUZZ_TARGET(entry_lines) {
  unsigned how = input.empty() ? 0 : (unsigned char)input[0];
  long add = input.size() < 2 ? 0 : strtol(TEXT_OF(input.substr(1, 10)).c_str(), nullptr, 10);
  size_t end = std::min(input.find('\n'), input.size());
  PUT_FILE("copy", input.substr(std::min(end + 1, input.size())));
  PUT_FILE("SOUND/snd", "");
  PUT_FILE("snd2", "");
  Learner learner("words/one two ", " a1 b2 ", 2);
  Trf_book *book = &learner.book;
  char path[] = "words/one";
  FORGET_HEARD();
  FORGET_SOUND_PLACE();
  REMEMBER_DIRECTORY(path, book);
  book->fp = fopen("copy", "r");
  book->exfp = 1;
  book->sound = how & 1;
  book->interro_sound = how >> 1 & 1;
  book->sens_qr = book->sens_qrm = 1 + (how >> 2 & 1);
  for (book->state = 1; book->state <= 2; book->state++) {
    Shown shown = show(1 + (how >> 3 & 1), add, book);
    HOLDS(book->sound == 1 || shown.nb_sounds == 0);
    for (const std::string &line : shown.lines)
      HOLDS(line.find_first_of("\n\r") == std::string::npos);
  }
}
