// (G) A question or its response written into the quiz pane, and its sound played.
#include "quiz/show_entry.h"

#include <glib.h>

#include "quiz/choose_entry.h"
#include "quiz/entry_lines.h"
#include "quiz/locate_entry.h"
#include "quiz/pane.h"
#include "score/check_order.h"
#include "score/position_table.h"
#include "sound/play.h"
#include "text/find_sound.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// The memory between questions. The stream of the entry's working copy is the book's own.
struct Memory {
  int sound_mem = -1; // the sound flag when the last sound notice was written
  long address = 0;   // offset of the entry on screen in its working copy
} memory;

// Which side of the entry is asked: 1 its question, 2 its response. Only side 1 has sound lines.
int side_to_ask(const Trf_book *book) {
  return book->sens_qr == 2 ? 2 : 1;
}

// The word for the part shown: the sides are swapped when the response is asked.
const char *title(bool asking, const Trf_book *book) {
  return asking == (book->sens_qr != 2) ? "Question" : "Response";
}

void write_sound_notice(Trf_pane_writer *pane) {
  int sound = pane->book->sound;
  if (sound == memory.sound_mem)
    return;
  memory.sound_mem = sound;
  WRITE_PANE(pane, "%s", sound == 1 ? "Sound is ON now " : "Sound is OFF now ");
  WRITE_PANE(pane, "  ");
}

void write_response(Trf_pane_writer *pane) {
  Trf_book *book = pane->book;
  WRITE_PANE(pane, "%s  %d ", title(false, book), LAST_CHOSEN());
  WRITE_PANE(pane, "  ");
  DISPLAY_QR(book->fp, 3 - side_to_ask(book), &pane->nb_line, memory.address, book);
}

// Finds the entry chosen; the book's stream is its working copy afterwards.
void locate(int jcont, char *s_alias, Trf_book *book) {
  FILE *fp = nullptr;
  DROP_STREAM(book);
  WHAT_QR(jcont, s_alias, book, &fp, &memory.address);
  if (fp == nullptr)
    STOP_PROGRAM(book->fp_log, 2, " DISPLAY_ARTICLE fp = NULL Lesson not found stop ! \n");
}

void write_headings(const Trf_choice &choice, const char *s_alias, Trf_pane_writer *pane) {
  Trf_book *book = pane->book;
  Trf_posit *t_posit = book->t_posit;
  Trf_side side = SIDE_OF_TABLE(book->sens_qr, t_posit);
  if (book->start_lesson == 2)
    WRITE_PANE(pane, "  %d  words in lesson  %d mn=%ld mx=%ld ", t_posit->nb_posit, book->ilesson,
               side.cum_err[side.ord[t_posit->nb_posit]], side.cum_err[side.ord[1]]);
  WRITE_PANE(pane, "%s  %d   lesson=%s   err=%ld   mx=%ld ", title(true, book), choice.jcont,
             s_alias, choice.err, choice.mx);
  if (choice.err > choice.mx)
    VERIF_CLASSMENT(book);
  WRITE_PANE(pane, " %s run, d_ok=%d   d_nok=%d ", choice.second_run ? "second" : "first",
             choice.d_ok, choice.d_nok);
  WRITE_PANE(pane, "  ");
}

void write_question(Trf_pane_writer *pane) {
  Trf_book *book = pane->book;
  Trf_choice choice = CHOOSE_ENTRY(book);
  if (choice.jcont == 0)
    return;
  char s_alias[ALIAS_SIZE];
  locate(choice.jcont, s_alias, book);
  write_headings(choice, s_alias, pane);
  book->sens_qrm = book->sens_qr;
  DISPLAY_QR(book->fp, side_to_ask(book), &pane->nb_line, memory.address, book);
  WRITE_PANE(pane, "============================== ");
}

void show_line(char *text, void *data) {
  Trf_pane_writer *pane = static_cast<Trf_pane_writer *>(data);
  DISPLAY_LINE(text, &pane->nb_line, &pane->lblanc, pane->book);
}

// The path of a sound file; null, with a line in the log, when it is not found.
Owned_text sound_path(char *name, void *data) {
  Trf_book *book = static_cast<Trf_pane_writer *>(data)->book;
  char *path = nullptr;
  long size = 0;
  int found = SEARCH_SND_FILE_NAME(&path, &size, name, book);
  Owned_text owned(path);
  if (found == 1)
    return owned;
  LOG_LINE(book->fp_log, "DISPLAY_QR snd_file=%s not found \n", name);
  return nullptr;
}

void play_frames(char *name, long start, long stop, void *data) {
  if (Owned_text path = sound_path(name, data))
    play_range(path.get(), start, stop);
}

void play_whole(char *name, void *data) {
  if (Owned_text path = sound_path(name, data))
    play_total(path.get());
}

} // namespace

void DISPLAY_ARTICLE(Trf_book *book) {
  Trf_pane_writer pane = {book, book->nb_line};
  PREPARE_CHOICE(book);
  write_sound_notice(&pane);
  if (book->state == 1)
    write_question(&pane);
  else
    write_response(&pane);
  SHOW_PANE_OR_STOP("DISPLAY_ARTICLE", book);
  book->nb_line = pane.nb_line;
}

void DISPLAY_QR(FILE *fp, int istate, int *tnb_line, long int add, Trf_book *book) {
  Trf_pane_writer pane = {book, *tnb_line};
  Trf_entry_out out = {show_line, play_frames, play_whole, &pane};
  WALK_ENTRY(fp, istate, add, book, &out);
  *tnb_line = pane.nb_line;
}

void FORGET_SHOWN() {
  memory = Memory();
}
