// (G) "!help": the file ./mertu_list.txt in the quiz pane.
#include "command/help.h"

#include <gtk/gtk.h>

#include <string>

#include "db/idx1_format.h"
#include "quiz/pane.h"
#include "util/line_reader.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const char HELP_NAME[] = "./mertu_list.txt";
const size_t MAX_HELP_LINE = 100; // bytes of a line that are shown
const char EMPTY_LINE[] = "   ";

void write_no_help(Trf_pane_writer *pane) {
  WRITE_PANE(pane, EMPTY_LINE);
  WRITE_PANE(pane, "Cannot open file %s", HELP_NAME);
  WRITE_PANE(pane, EMPTY_LINE);
}

void write_help(FILE *fp, Trf_pane_writer *pane) {
  Trf_line_cursor line(fp);
  while (NEXT_LINE(&line) && !IS_END_MARK(line.text)) {
    std::string text = std::string(line.text).substr(0, MAX_HELP_LINE);
    WRITE_PANE(pane, "%s", text.empty() ? EMPTY_LINE : text.c_str());
  }
}

} // namespace

void DISPLAY_HELP(Trf_book *book) {
  CLEAR_PANE(book);
  Trf_pane_writer pane = {book, book->nb_line};
  Owned_stream fp = OPEN_STREAM(HELP_NAME, "r");
  if (fp == nullptr)
    write_no_help(&pane);
  else
    write_help(fp.get(), &pane);
  if (book->v_page != nullptr)
    gtk_widget_show(book->v_page);
  book->nb_line = pane.nb_line;
  book->start_lesson += 1;
  LOG_LINE(book->fp_log, "DISPLAY_HELP done\n");
}
