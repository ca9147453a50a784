// Where an entry of the lesson stands: its dictionary's working copy and the offset of its header.
#include "quiz/locate_entry.h"

#include <glib.h>
#include <string.h>

#include "config/registry.h"
#include "db/generated_lesson.h"
#include "db/idx1_format.h"
#include "score/position_table.h"
#include "text/find_sound.h"
#include "util/line_reader.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// Reads the entry's name line in the generated lesson file. False when the file cannot be opened.
bool read_name_line(int jcont, Trf_book *book, Trf_line_cursor *line) {
  Owned_stream gene = OPEN_STREAM(CURRENT_GENE_NAME(book->ilesson), "r");
  if (gene == nullptr) {
    LOG_LINE(book->fp_log, "WHAT_QR unable to open file fpg \n");
    return false;
  }
  book->fp_gene = gene.get();
  line->fp = gene.get();
  line->next = book->t_posit->posit[jcont];
  NEXT_LINE(line);
  line->fp = nullptr;
  book->fp_gene = nullptr;
  return true;
}

// The alias and the offset of the entry, from its name line. False, with a line in the log, when
// the line does not hold them.
bool split_name_line(const char *ss, char *s_alias, long *add, Trf_book *book) {
  const char *stp = "";
  switch (SPLIT_NAME_LINE(ss, s_alias, add, &stp)) {
  case NAME_SPLIT:
    return true;
  case NAME_NO_STAR:
    LOG_LINE(book->fp_log, "WHAT_QR no * in ss=%s@@@ \n", ss);
    return false;
  default:
    LOG_LINE(book->fp_log, "%s\n", ss);
    LOG_LINE(book->fp_log, "WHAT_QR no i_extracted in stp=%s@@@ \n", stp);
    return false;
  }
}

// Opens the working copy of dictionary num as the book's stream.
void open_working_copy(int num, Trf_book *book) {
  DROP_STREAM(book);
  Owned_text copy(S_CPY_LESSON_FROM_NUM(num, book->G_kentel));
  if (copy != nullptr)
    book->fp = fopen(copy.get(), "r");
  if (book->fp == nullptr) {
    TRACE("WHAT_QR cannot open file=%s \n", copy == nullptr ? "" : copy.get());
    return;
  }
  book->exfp = 1;
  Owned_text path(S_LESSON_FROM_NUM(num, book->G_kentel));
  REMEMBER_DIRECTORY(path.get(), book);
}

} // namespace

void WHAT_QR(int jcont, char *s_alias, Trf_book *book, FILE **fp, long int *add) {
  *fp = nullptr;
  *add = 0;
  s_alias[0] = '\0';
  Trf_line_cursor line(nullptr);
  if (!read_name_line(jcont, book, &line) || !split_name_line(line.text, s_alias, add, book))
    return;
  int num = NUM_FROM_ALIAS(s_alias, book->G_kentel);
  if (num < 0)
    STOP_PROGRAM(book->fp_log, 5, "WHAT_QR not existing s_alias=%s@@@ \n", s_alias);
  open_working_copy(num, book);
  *fp = book->fp;
}

void EXTRACT_DICO_NAME(char *s_alias, Trf_string *G_dico, char *s_lesson) {
  Owned_text path(S_LESSON_FROM_NUM(NUM_FROM_ALIAS(s_alias, G_dico), G_dico));
  if (path == nullptr)
    STOP_PROGRAM(SAVED_LOG(), 1, "Not found %s in string %s \n", s_alias,
                 G_dico->st_alias == nullptr ? "" : G_dico->st_alias);
  strcpy(s_lesson, path.get());
}

void DROP_STREAM(Trf_book *book) {
  if (book->fp != nullptr && book->exfp != 0)
    fclose(book->fp);
  book->fp = nullptr;
  book->exfp = 0;
}
