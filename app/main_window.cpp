// The main window: its tree of widgets and how it opens.
#include "app/main_window.h"

#include "app/button_places.h"
#include "app/gtk_dialogs.h"
#include "app/last_state.h"
#include "app/navigation.h"
#include "app/window_icon.h"
#include "command/command_entry.h"
#include "quiz/answer_button.h"
#include "quiz/confirm_lesson.h"
#include "quiz/pane.h"
#include "quiz/toggles.h"
#include "text/text_pane.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const int MIN_FRAME_WIDTH = 50;    // pixels
const int MAX_COMMAND_LENGTH = 50; // characters
const int SEPARATOR_PADDING = 5;   // pixels
const int LEFT_MARGIN = 15;        // pixels
const int RIGHT_MARGIN = 10;       // pixels
const int MAX_WINDOW_SIZE = 32767; // pixels; the screen's protocol knows no larger coordinate

// A button of one of the two rows: how it looks and what it calls, with the book as data.
struct Trf_button {
  const char *label;
  const char *name; // the widget name by which mertu.rc colours it
  gboolean expand;
  const char *signal;
  GCallback handler;
};

// The window has gone: nothing may use its widgets any more, and the main loop has no reason left.
void window_gone(GtkWidget *, Trf_book *book) {
  FORGET_BUTTON_PLACES();
  GtkStyle *style = book->style;
  book->style = nullptr;
  FORGET_WIDGETS(book);
  if (style != nullptr)
    g_object_unref(style);
  if (gtk_main_level() > 0)
    gtk_main_quit();
}

// A font description from the configuration, where it may begin with blanks. The caller frees it.
PangoFontDescription *font_described(const char *font) {
  while (*font == ' ')
    font++;
  return pango_font_description_from_string(font);
}

// Gives a widget a copy of its style with another font. Returns the copy, a reference to which
// the caller holds.
GtkStyle *give_font_by_style(const char *font, GtkWidget *widget) {
  gtk_widget_ensure_style(widget);
  GtkStyle *style = gtk_style_copy(gtk_widget_get_style(widget));
  pango_font_description_free(style->font_desc);
  style->font_desc = font_described(font);
  gtk_widget_set_style(widget, style);
  return style;
}

void pack(GtkWidget *box, GtkWidget *child, gboolean expand, gboolean fill, guint padding) {
  gtk_box_pack_start(GTK_BOX(box), child, expand, fill, padding);
}

GtkWidget *add_button(const Trf_button *look, GtkWidget *box, Trf_book *book) {
  Owned_text label(g_locale_to_utf8(look->label, -1, nullptr, nullptr, nullptr));
  GtkWidget *button = gtk_button_new_with_label(label != nullptr ? label.get() : look->label);
  gtk_widget_set_name(button, look->name);
  g_signal_connect(button, look->signal, look->handler, book);
  pack(box, button, look->expand, FALSE, 0);
  return button;
}

// A side of the window as the toolkit takes it: one below 0 is left to it.
int window_side(int pixels) {
  return CLAMP(pixels, -1, MAX_WINDOW_SIZE);
}

// The window with its divider, empty.
void add_window(const Trf_geometry *geometry, Trf_book *book) {
  GtkWidget *window = book->pWindow = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "Mertu");
  gtk_window_set_position(GTK_WINDOW(window), GTK_WIN_POS_CENTER);
  gtk_window_set_default_size(GTK_WINDOW(window), window_side(geometry->width),
                              window_side(geometry->height));
  gtk_window_set_resizable(GTK_WINDOW(window), TRUE);
  g_signal_connect(window, "destroy", G_CALLBACK(window_gone), book);
  book->hpaned = gtk_hpaned_new();
  gtk_paned_set_position(GTK_PANED(book->hpaned), geometry->width_book);
  gtk_container_add(GTK_CONTAINER(window), book->hpaned);
}

// A frame of the divider and the box inside it, which is returned.
GtkWidget *add_frame(bool first, GtkWidget **frame, Trf_book *book) {
  *frame = gtk_frame_new(nullptr);
  gtk_frame_set_shadow_type(GTK_FRAME(*frame), GTK_SHADOW_IN);
  gtk_widget_set_size_request(*frame, MIN_FRAME_WIDTH, -1);
  if (first)
    gtk_paned_pack1(GTK_PANED(book->hpaned), *frame, TRUE, FALSE);
  else
    gtk_paned_pack2(GTK_PANED(book->hpaned), *frame, TRUE, FALSE);
  GtkWidget *box = gtk_vbox_new(FALSE, 0);
  gtk_container_add(GTK_CONTAINER(*frame), box);
  return box;
}

// A scrolled window that fills its box, and the box inside its viewport, which is returned.
GtkWidget *add_scrolled_box(GtkWidget *box, GtkWidget **scrolled) {
  *scrolled = gtk_scrolled_window_new(nullptr, nullptr);
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(*scrolled), GTK_POLICY_AUTOMATIC,
                                 GTK_POLICY_ALWAYS);
  pack(box, *scrolled, TRUE, TRUE, 0);
  GtkWidget *inside = gtk_vbox_new(FALSE, 0);
  gtk_scrolled_window_add_with_viewport(GTK_SCROLLED_WINDOW(*scrolled), inside);
  return inside;
}

void add_separator(GtkWidget *box) {
  pack(box, gtk_hseparator_new(), FALSE, TRUE, SEPARATOR_PADDING);
}

// The row with the command entry.
void add_command_row(const char *ss_font_vocab, Trf_book *book) {
  GtkWidget *box_label = gtk_hbox_new(FALSE, 0);
  pack(book->vBox1, box_label, FALSE, FALSE, 0);
  GtkWidget *label0_file = gtk_label_new("Cmd : ");
  pack(box_label, label0_file, FALSE, FALSE, 0);
  g_object_unref(give_font_by_style("helvetica 18", label0_file));
  book->entry_book = gtk_entry_new();
  gtk_entry_set_max_length(GTK_ENTRY(book->entry_book), MAX_COMMAND_LENGTH);
  pack(box_label, book->entry_book, TRUE, TRUE, 0);
  book->style = give_font_by_style(ss_font_vocab, book->entry_book);
  g_signal_connect(book->entry_book, "activate", G_CALLBACK(callback_entry_book), book);
  g_signal_connect(book->entry_book, "button-press-event", G_CALLBACK(clean_entry_book), book);
}

// The label of the sound button; a flag other than 1 becomes 0.
const char *sound_label(Trf_book *book) {
  if (book->sound == 1)
    return "<)))";
  book->sound = 0;
  return "< XX";
}

// The label of the direction button; a direction other than 2 becomes 1.
const char *direction_label(Trf_book *book) {
  if (book->sens_qr == 2)
    return "R->Q";
  book->sens_qr = 1;
  return "Q->R";
}

// The row of buttons under the quiz pane.
void add_quiz_buttons(GtkWidget *quitbox, Trf_book *book) {
  const Trf_button quit = {"Quit", "buttonruz", TRUE, "clicked", G_CALLBACK(ON_QUIT)};
  const Trf_button prev = {"Prev", "buttonnoir", TRUE, "clicked", G_CALLBACK(cback_prev_less)};
  const Trf_button next = {"Next", "buttonnoir", TRUE, "clicked", G_CALLBACK(cback_next_less)};
  const Trf_button sound = {sound_label(book), "buttonnoir", TRUE, "button_press_event",
                            G_CALLBACK(callback_togsound)};
  const Trf_button direction = {direction_label(book), "buttonnoir", TRUE, "button_press_event",
                                G_CALLBACK(callback_togqr)};
  const Trf_button answer = {"  Question / Response  ", "buttonyellow", FALSE, "button_press_event",
                             G_CALLBACK(callback_ok_nok)};
  add_button(&quit, quitbox, book);
  add_button(&prev, quitbox, book);
  add_button(&next, quitbox, book);
  book->button_sound = add_button(&sound, quitbox, book);
  book->button_qr = add_button(&direction, quitbox, book);
  book->Button1 = add_button(&answer, quitbox, book);
}

// The left frame: command entry, quiz pane, buttons.
void add_quiz_frame(const char *ss_font_vocab, Trf_book *book) {
  book->vBox1 = add_frame(true, &book->frame1, book);
  add_command_row(ss_font_vocab, book);
  book->v_page = add_scrolled_box(book->vBox1, &book->scroll_page);
  pack(book->vBox1, gtk_hbox_new(FALSE, 0), FALSE, FALSE, 0);
  add_separator(book->vBox1);
  GtkWidget *quitbox = gtk_hbox_new(FALSE, 0);
  pack(book->vBox1, quitbox, FALSE, FALSE, 0);
  add_quiz_buttons(quitbox, book);
}

// The lesson text pane.
void add_text_view(const char *ss_font_lesson, Trf_book *book) {
  book->text_view = gtk_text_view_new();
  GtkTextView *view = GTK_TEXT_VIEW(book->text_view);
  gtk_text_view_set_editable(view, FALSE);
  gtk_text_view_set_wrap_mode(view, GTK_WRAP_WORD_CHAR);
  gtk_text_view_set_left_margin(view, LEFT_MARGIN);
  gtk_text_view_set_right_margin(view, RIGHT_MARGIN);
  PangoFontDescription *font = font_described(ss_font_lesson);
  gtk_widget_modify_font(book->text_view, font);
  pango_font_description_free(font);
  pack(book->v2_page, book->text_view, TRUE, TRUE, 0);
}

// The right frame: lesson text and its two buttons.
void add_text_frame(const char *ss_font_lesson, Trf_book *book) {
  GtkWidget *vBox2 = add_frame(false, &book->frame2, book);
  book->v2_page = add_scrolled_box(vBox2, &book->scroll2_page);
  add_text_view(ss_font_lesson, book);
  add_separator(vBox2);
  GtkWidget *clrbox = gtk_hbox_new(FALSE, 0);
  pack(vBox2, clrbox, FALSE, FALSE, 0);
  const Trf_button clear = {"Clr", "buttonnoir", TRUE, "clicked", G_CALLBACK(cback_clr_butt)};
  const Trf_button redraw = {"ReDr", "buttonnoir", TRUE, "clicked", G_CALLBACK(cback_redr_butt)};
  add_button(&clear, clrbox, book);
  add_button(&redraw, clrbox, book);
}

} // namespace

GtkWidget *BUILD_MAIN_WINDOW(const Trf_geometry *geometry, const char *ss_font_lesson,
                             const char *ss_font_vocab, Trf_book *book) {
  add_window(geometry, book);
  add_quiz_frame(ss_font_vocab, book);
  add_text_frame(ss_font_lesson, book);
  return book->pWindow;
}

void SHOW_MAIN_WINDOW(const Start_State *S_state, Trf_book *book) {
  TRACE_BUTTON_PLACES(book);
  gtk_widget_show_all(book->hpaned);
  gtk_widget_show(book->pWindow);
  if (S_state->root_x >= 0 && S_state->root_y >= 0)
    gtk_window_move(GTK_WINDOW(book->pWindow), S_state->root_x, S_state->root_y);
}

void OPEN_MAIN_WINDOW(Trf_records *records) {
  Trf_book *book = records->book;
  START_PAGE_NUMBER(records->S_state, book);
  // The last state is read and closed: its stream is no dictionary of the drill.
  book->fp = nullptr;
  book->exfp = 0;
  START_VALUES(records);
  Trf_geometry geometry = WINDOW_GEOMETRY(records->S_state, records->Caract_win);
  REGISTER_GTK_DIALOGS();
  USE_WINDOW_ICON();
  BUILD_MAIN_WINDOW(&geometry, records->ss_font_lesson, records->ss_font_vocab, book);
  CONFIRM0_LESSON(book);
  SHOW_MAIN_WINDOW(records->S_state, book);
  // Whoever started the program learns by this line that its window stands.
  SAY("Mertu is ready \n");
}
