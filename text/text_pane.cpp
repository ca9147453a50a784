// (G) The lesson text pane: emptied so far; the text is to come.
#include "text/text_pane.h"

void DISPLAY_TEXT(Trf_book *) {
}

void CLR_TEXT(Trf_book *book) {
  if (book->text_view == nullptr)
    return;
  gtk_text_buffer_set_text(gtk_text_view_get_buffer(GTK_TEXT_VIEW(book->text_view)), "", 0);
}

void cback_clr_butt(GtkWidget *, Trf_book *book) {
  CLR_TEXT(book);
}

void cback_redr_butt(GtkWidget *, Trf_book *book) {
  DISPLAY_TEXT(book);
}
