// The records of the program, allocated and filled before there is a window.
#include "app/book_start.h"

#include <glib.h>

#include <algorithm>

#include "app/last_state.h"
#include "config/config_file.h"
#include "config/registry.h"
#include "db/index_update.h"
#include "score/error_score.h"
#include "score/position_table.h"
#include "text/button_block.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// Characters of the description of a lesson, and bytes of the directory of a dictionary, that
// fit at the start; both buffers grow on demand.
const int FIRST_LESSONS = 49;
const int FIRST_PATH = 5;
// Bytes of path_of_lesson beyond its capacity.
const int SPARE_PATH = 5;

void free_text(char **text) {
  g_free(*text);
  *text = nullptr;
}

void free_book(Trf_book *book) {
  CLOSE_STREAM(&book->fp);
  CLOSE_STREAM(&book->fp_gene);
  CLOSE_STREAM(&book->fp_idx1);
  if (SAVED_LOG() == book->fp_log)
    SET_SAVED_LOG(nullptr);
  CLOSE_STREAM(&book->fp_log);
  free_text(&book->lessons);
  free_text(&book->path_of_lesson);
  free_text(&book->s_label);
  g_free(book->nc_label);
  g_free(book);
}

void free_registry(Trf_string *G_kentel) {
  FREE_REGISTRY(G_kentel);
  g_free(G_kentel);
}

void free_table(Trf_posit *t_posit) {
  FREE_POSIT(t_posit);
  g_free(t_posit);
}

} // namespace

void ALLOCATE_RECORDS(Trf_records *records) {
  *records = Trf_records{};
  records->Caract_win = g_new0(Prenestro, 1);
  records->S_state = g_new0(Start_State, 1);
  Trf_book *book = records->book = g_new0(Trf_book, 1);
  book->lenmx_str_lessons = FIRST_LESSONS;
  book->lessons = g_new0(char, FIRST_LESSONS + 1);
  book->lenmx_path_of_lesson = FIRST_PATH;
  book->path_of_lesson = g_new0(char, FIRST_PATH + SPARE_PATH);
  START_LABELS(book);
  records->G_kentel = g_new0(Trf_string, 1);
  records->t_posit = g_new0(Trf_posit, 1);
  book->t_err = records->t_err = g_new0(Trf_err, 1);
  CLEAR_LINE_WIDGETS(book);
}

void FREE_RECORDS(Trf_records *records) {
  g_free(records->Caract_win);
  g_free(records->S_state);
  if (records->book != nullptr)
    free_book(records->book);
  if (records->G_kentel != nullptr)
    free_registry(records->G_kentel);
  if (records->t_posit != nullptr)
    free_table(records->t_posit);
  g_free(records->t_err);
  *records = Trf_records{};
}

void CLEAR_LINE_WIDGETS(Trf_book *book) {
  // QUIRK spare line widgets: only the first 200 of the 205 elements are cleared. It looks as if
  // the last five were forgotten; it is meant: the pane never holds more than 200 lines, and what
  // stands behind them is nobody's line. Test:
  // BookStart.OnlyTheLinesThatThePaneCanHoldAreCleared
  std::fill_n(book->wbutton, MAX_LINE, nullptr);
  std::fill_n(book->lbox2, MAX_LINE, nullptr);
}

void PREPARE_WORDS(Trf_records *records) {
  Trf_book *book = records->book;
  FURCH_SET(records->Caract_win, book, records->G_kentel, records->ss_font_lesson,
            records->ss_font_vocab);
  book->sound = 1;
  book->fp_log = fopen("mertu_log", "w");
  // Whatever ends the program, what was logged stands in the file.
  if (book->fp_log != nullptr)
    setvbuf(book->fp_log, nullptr, _IOLBF, BUFSIZ);
  SET_SAVED_LOG(book->fp_log);
  CALC_INDEX(book->fp_log, records->G_kentel, records->t_posit);
}

void START_VALUES(Trf_records *records) {
  Trf_book *book = records->book;
  const Start_State *S_state = records->S_state;
  book->nb_line = 0;
  book->state = 1;
  book->sens_qr = 1;
  book->toggle_sens_qr = 0;
  book->ilesson = 1;
  if (S_state->sens_qr != 0)
    book->sens_qr = S_state->sens_qr == 2 ? 2 : 1;
  if (S_state->num_lesson != 0)
    book->ilesson = S_state->num_lesson;
  book->t_posit = records->t_posit;
  book->G_kentel = records->G_kentel;
  book->start_lesson = 0;
  book->interro_sound = 1;
}

Trf_geometry WINDOW_GEOMETRY(const Start_State *S_state, const Prenestro *Caract_win) {
  if (S_state->root_width > 0 && S_state->root_height > 0)
    return {S_state->root_width, S_state->root_height, S_state->width_book};
  const int *size = Caract_win->book_pix_size;
  return {size[0], size[1], size[2]};
}
