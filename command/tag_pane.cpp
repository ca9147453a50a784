// (G) "!ltag": the tags in use, in the quiz pane and in the file ./mertu_ltag.
#include "command/tag_pane.h"

#include <errno.h>
#include <string.h>

#include "command/tag_list.h"
#include "quiz/pane.h"
#include "util/report.h"

namespace {

const char TAGS_NAME[] = "./mertu_ltag";

void cannot_write(int reason, Trf_book *book) {
  LOG_AND_SAY(book->fp_log, "cannot write file %s: %s \n", TAGS_NAME, strerror(reason));
}

// Shows the tags in their order and writes them to the file, which may be null.
void write_tags(const Trf_tags &tags, FILE *fp, Trf_book *book) {
  Trf_pane_writer pane = {book, book->nb_line};
  for (int i = 1; i <= tags.classmt.nb; i++) {
    std::string line = TAG_LINE(tags, tags.classmt.order[i]);
    WRITE_PANE(&pane, "%s", line.c_str());
    if (fp != nullptr)
      fprintf(fp, "!  %s \n", line.c_str());
  }
  book->nb_line = pane.nb_line;
}

} // namespace

void DICO_TAGS(Trf_book *book) {
  CLEAR_PANE(book);
  Trf_tags tags;
  COLLECT_TAGS(book, &tags);
  MERGESORT_STG_CLASS(1, tags.classmt.nb, tags.classmt.order, tags.text);
  FILE *fp = fopen(TAGS_NAME, "w+");
  if (fp == nullptr)
    cannot_write(errno, book);
  write_tags(tags, fp, book);
  bool failed = fp != nullptr && ferror(fp) != 0;
  if (fp != nullptr && (fclose(fp) != 0 || failed))
    cannot_write(errno, book);
  REDRAW_PANE(book);
  LOG_LINE(book->fp_log, "DICO_TAGS done\n");
}
