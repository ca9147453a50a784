// (G) The quiz pane: one label per line, cleared as a whole; and the draining of events.
#include "quiz/pane.h"

#include <gtk/gtk.h>
#include <stdarg.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "util/accents.h"
#include "util/encodings.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// What the program is doing, as a number: handlers compare it before and after they drain events.
struct {
  long moment = 0;
  bool leaving = false; // the main loop was told to end: what still waits is handled no more
} lesson;

// The text without blanks at its ends.
std::string without_blanks(const char *ss) {
  std::string text = ss == nullptr ? "" : ss;
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

// The text with its accent notation decoded, in UTF-8. New string, freed by its owner.
Owned_text text_to_show(std::string text) {
  size_t tabs = static_cast<size_t>(std::count(text.begin(), text.end(), '\t'));
  text.resize(text.size() + 7 * tabs + 1);
  DECODE_ACCENTS(text.data());
  return Owned_text(UTF8_FROM_CP1252(text.c_str()));
}

// Puts a label into the pane as line n.
void add_label(const char *text, int n, Trf_book *book) {
  GtkWidget *box = gtk_hbox_new(FALSE, 0);
  GtkWidget *label = gtk_label_new(text);
  if (book->style != nullptr)
    gtk_widget_set_style(label, book->style);
  gtk_box_pack_start(GTK_BOX(box), label, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(book->v_page), box, FALSE, FALSE, 0);
  gtk_widget_show(label);
  gtk_widget_show(box);
  book->lbox2[n] = box;
  book->wbutton[n] = label;
}

void destroy(GtkWidget **widget) {
  if (*widget != nullptr)
    gtk_widget_destroy(*widget);
  *widget = nullptr;
}

void destroy_child(GtkWidget *child, void *) {
  gtk_widget_destroy(child);
}

// Handles one event. True when the main loop was told to end and the window still stands. (The
// toolkit calls a loop that does not run one that ends.)
bool handle_event_and_leave(const Trf_book *book) {
  bool ends = gtk_main_iteration_do(FALSE) && gtk_main_level() > 0;
  return ends && book->v_page != nullptr;
}

// The book's pointers to the window and what lies in it, the line widgets apart.
GtkWidget *Trf_book::*const WIDGETS[] = {
    &Trf_book::win_label,    &Trf_book::pWindow,   &Trf_book::hpaned,       &Trf_book::frame1,
    &Trf_book::frame2,       &Trf_book::vBox1,     &Trf_book::entry_book,   &Trf_book::scroll_page,
    &Trf_book::scroll2_page, &Trf_book::button_qr, &Trf_book::button_sound, &Trf_book::Button1,
    &Trf_book::v_page,       &Trf_book::v2_page,   &Trf_book::text_view,    &Trf_book::separator};

} // namespace

void DISPLAY_LINE(char *ss, int *tnb_line, int *tlblanc, Trf_book *book) {
  std::string text = without_blanks(ss);
  int lblanc = text.empty() ? *tlblanc + 1 : 0;
  if (lblanc >= 2) {
    SAY("DISPLAY_LINE too many blanc lines lblanc=%d \n", lblanc);
    return;
  }
  if (*tnb_line >= MAX_LINE || book->v_page == nullptr)
    return;
  Owned_text shown = text_to_show(text.empty() ? "  " : text);
  TRACE("pane: %s", shown.get());
  add_label(shown.get(), *tnb_line, book);
  *tnb_line += 1;
  *tlblanc = lblanc;
}

void WRITE_PANE(Trf_pane_writer *pane, const char *format, ...) {
  va_list values;
  va_start(values, format);
  Owned_text text(g_strdup_vprintf(format, values));
  va_end(values);
  DISPLAY_LINE(text.get(), &pane->nb_line, &pane->lblanc, pane->book);
}

void CLEAR_PANE(Trf_book *book) {
  if (book->nb_line <= 0)
    return;
  for (int i = 0; i < MAX_LINE; i++) {
    destroy(&book->wbutton[i]);
    destroy(&book->lbox2[i]);
  }
  if (book->v_page != nullptr)
    gtk_container_foreach(GTK_CONTAINER(book->v_page), destroy_child, nullptr);
  book->nb_line = 0;
}

void REDRAW_PANE(Trf_book *book) {
  if (book->v_page != nullptr)
    gtk_widget_queue_draw(book->v_page);
}

void SHOW_PANE_OR_STOP(const char *who, Trf_book *book) {
  if (book->v_page == nullptr)
    STOP_PROGRAM(book->fp_log, 1, "%s v_page= NULL error \n", who);
  gtk_widget_show(book->v_page);
}

long LESSON_MOMENT() {
  return lesson.moment;
}

void LESSON_MOVES_ON() {
  lesson.moment++;
}

bool DRAIN_EVENTS(long moment, Trf_book *book) {
  int step = book->start_lesson;
  int ilesson = book->ilesson;
  while (!lesson.leaving && gtk_events_pending())
    lesson.leaving = handle_event_and_leave(book);
  return book->v_page != nullptr && !lesson.leaving && moment == lesson.moment &&
         step == book->start_lesson && ilesson == book->ilesson;
}

bool REPEATS_A_PRESS(const GdkEvent *event) {
  return event != nullptr && (event->type == GDK_2BUTTON_PRESS || event->type == GDK_3BUTTON_PRESS);
}

void FORGET_WIDGETS(Trf_book *book) {
  for (auto widget : WIDGETS)
    book->*widget = nullptr;
  std::fill_n(book->lbox2, NB_LINE_WIDGETS, nullptr);
  std::fill_n(book->wbutton, NB_LINE_WIDGETS, nullptr);
  book->nb_line = 0;
  lesson.leaving = false;
  LESSON_MOVES_ON();
}

void LABEL_BUTTON(GtkWidget *button, const char *label, const char *name) {
  if (button == nullptr)
    return;
  gtk_button_set_label(GTK_BUTTON(button), label);
  if (name != nullptr)
    gtk_widget_set_name(button, name);
}

void LABEL_DIRECTION(Trf_book *book) {
  LABEL_BUTTON(book->button_qr, book->sens_qr == 1 ? "Q->R" : "R->Q", nullptr);
}

void SET_ANSWER_BUTTON(bool sensitive, Trf_book *book) {
  if (book->Button1 != nullptr)
    gtk_widget_set_sensitive(book->Button1, sensitive ? TRUE : FALSE);
}
