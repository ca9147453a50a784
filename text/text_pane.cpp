// (G) The lesson text pane: the readable part of the current dictionary, with its sound buttons.
#include "text/text_pane.h"

#include "text/label_click.h"
#include "text/paragraphs.h"
#include "util/encodings.h"
#include "util/owned.h"

namespace {

// Room around a sound button, and how far it is let down so that its label and its text stand
// level; pixels.
const guint BUTTON_MARGIN = 3;
const int BUTTON_DROP = 10;
const char BUTTON_TAG[] = "sound-button";

GtkTextBuffer *buffer_of(Trf_book *book) {
  return gtk_text_view_get_buffer(GTK_TEXT_VIEW(book->text_view));
}

void insert_text(const char *text, GtkTextBuffer *buffer) {
  GtkTextIter end;
  gtk_text_buffer_get_end_iter(buffer, &end);
  gtk_text_buffer_insert(buffer, &end, text, -1);
}

// Lets the last character of the text, a button's place, down.
void let_down(GtkTextBuffer *buffer) {
  GtkTextTag *tag = gtk_text_tag_table_lookup(gtk_text_buffer_get_tag_table(buffer), BUTTON_TAG);
  if (tag == nullptr)
    tag =
        gtk_text_buffer_create_tag(buffer, BUTTON_TAG, "rise", -BUTTON_DROP * PANGO_SCALE, nullptr);
  GtkTextIter end;
  gtk_text_buffer_get_end_iter(buffer, &end);
  GtkTextIter place = end;
  gtk_text_iter_backward_char(&place);
  gtk_text_buffer_apply_tag(buffer, tag, &place, &end);
}

GtkWidget *new_button(const char *label, bool known, Trf_book *book) {
  GtkWidget *button = gtk_button_new_with_label(label);
  if (known)
    gtk_widget_set_name(button, "buttonyellow");
  gtk_container_set_border_width(GTK_CONTAINER(button), BUTTON_MARGIN);
  g_signal_connect(button, "clicked", G_CALLBACK(cback_button), book);
  return button;
}

// Puts a sound button at the end of the text. It goes when the text does.
void insert_button(const char *label, bool known, Trf_book *book) {
  GtkTextBuffer *buffer = buffer_of(book);
  GtkTextIter end;
  gtk_text_buffer_get_end_iter(buffer, &end);
  GtkTextChildAnchor *anchor = gtk_text_buffer_create_child_anchor(buffer, &end);
  let_down(buffer);
  GtkWidget *button = new_button(label, known, book);
  gtk_text_view_add_child_at_anchor(GTK_TEXT_VIEW(book->text_view), button, anchor);
  gtk_widget_show(button);
}

void insert_piece(const Trf_piece &piece, Trf_book *book) {
  Owned_text shown(UTF8_FROM_CP1252(piece.text.c_str()));
  if (piece.button)
    insert_button(shown.get(), piece.known, book);
  else
    insert_text(shown.get(), buffer_of(book));
}

} // namespace

void DISPLAY_TEXT(Trf_book *book) {
  if (book->text_view == nullptr)
    return;
  OPEN_TEXT(book);
  CLR_TEXT(book);
  for (const Trf_piece &piece : TEXT_PIECES(book))
    insert_piece(piece, book);
  gtk_widget_show(book->text_view);
}

void CLR_TEXT(Trf_book *book) {
  if (book->text_view != nullptr)
    gtk_text_buffer_set_text(buffer_of(book), "", 0);
}

void cback_clr_butt(GtkWidget *, Trf_book *book) {
  CLR_TEXT(book);
}

void cback_redr_butt(GtkWidget *, Trf_book *book) {
  if (book->ilesson >= 1 && book->ilesson <= book->nbt_lesson && book->start_lesson >= 2)
    DISPLAY_TEXT(book);
}
