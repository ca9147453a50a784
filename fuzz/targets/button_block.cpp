// The button block: the label table is whole, every label found, every range one that can be told.
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "text/button_block.h"
#include "util/line_reader.h"
#include "util/owned.h"
#include "util/words.h"

namespace {

void take_range(char *name, long, long, void *data) {
  HOLDS(name[0] != 0 && strchr(name, ' ') == nullptr);
  ++*static_cast<int *>(data);
}

// The line at the offset of label k begins with it.
void check_definition(const std::string &label, long offset, FILE *fp) {
  Trf_line_cursor line(fp);
  line.next = offset;
  HOLDS(NEXT_LINE(&line));
  int i0 = 0;
  int i1 = 0;
  HOLDS(PERHAPS_BUTTON(line.text, &i0, &i1) == 1);
  HOLDS(i0 >= 0 && i1 >= i0 + 2);
  HOLDS(label == std::string(line.text + i0, line.text + i1 + 1));
}

void check_table(Trf_book *book) {
  long nb = book->nc_label[0];
  HOLDS(nb == COUNT_WORDS(book->s_label));
  for (int k = 1; k <= nb; k++) {
    std::string label = NTH_WORD(book->s_label, k);
    HOLDS(WHAT_BUTTON(label.data(), book) == k);
    check_definition(label, book->nc_label[k], book->fp);
    int nb_ranges = 0;
    Trf_range_out out = {take_range, &nb_ranges};
    WALK_LABEL(label.data(), book, &out);
  }
}

} // namespace

// The first line is a label that is clicked, the rest the lines behind the opening of the block.
FUZZ_TARGET(button_block) {
  size_t end = std::min(input.find('\n'), input.size());
  std::string clicked = TEXT_OF(input.substr(0, end));
  PUT_FILE("copy", input.substr(std::min(end + 1, input.size())));
  Learner learner("a ", " a ", 1);
  learner.book.fp = fopen("copy", "r");
  learner.book.exfp = 1;
  long nc = 0;
  char *ss = nullptr;
  long nbytes = 0;
  EXTRACT_LABEL_BUTTONS(&nc, &ss, &nbytes, &learner.book);
  free(ss);
  HOLDS(nc >= 0);
  check_table(&learner.book);
  int nb_ranges = 0;
  Trf_range_out out = {take_range, &nb_ranges};
  WALK_LABEL(clicked.data(), &learner.book, &out);
}
