// The real dialogs through which the core asks and tells the learner something.
#include "app/gtk_dialogs.h"

#include <gtk/gtk.h>

#include "app/button_places.h"
#include "util/dialogs.h"
#include "util/encodings.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// The text (CP1252) as the dialog shows it. One of the five bytes that stand for no character has
// no place in the toolkit's conversion, and then the house's own shows them by a sign.
Owned_text text_to_show(const char *text) {
  char *shown = g_convert(text, -1, "UTF-8", "CP1252", nullptr, nullptr, nullptr);
  return Owned_text(shown != nullptr ? shown : UTF8_FROM_CP1252(text));
}

// A message dialog on the book's window, not yet shown.
GtkWidget *new_dialog(GtkMessageType type, GtkButtonsType buttons, const char *text,
                      Trf_book *book) {
  Owned_text shown = text_to_show(text);
  TRACE("dialog: %s", shown.get());
  auto flags = static_cast<GtkDialogFlags>(GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT);
  GtkWidget *dialog =
      gtk_message_dialog_new(GTK_WINDOW(book->pWindow), flags, type, buttons, "%s", shown.get());
  gtk_window_set_title(GTK_WINDOW(dialog), "Mertu");
  return dialog;
}

// Shows the dialog, waits for a response and takes the dialog away. The window may go meanwhile
// and take the dialog with it: the reference keeps what is touched here.
int run_and_destroy(GtkWidget *dialog) {
  g_object_ref(dialog);
  TRACE_DIALOG_PLACES(dialog);
  int response = gtk_dialog_run(GTK_DIALOG(dialog));
  gtk_widget_destroy(dialog);
  g_object_unref(dialog);
  return response;
}

Trf_answer answer_of(int response) {
  switch (response) {
  case GTK_RESPONSE_YES:
    return ANSWER_YES;
  case GTK_RESPONSE_NO:
    return ANSWER_NO;
  case GTK_RESPONSE_OK:
    return ANSWER_FORGET;
  default:
    return ANSWER_CLOSED;
  }
}

Trf_answer ask(Trf_question kind, const char *text, Trf_book *book) {
  if (book->pWindow == nullptr)
    return ANSWER_NO;
  GtkWidget *dialog = new_dialog(GTK_MESSAGE_QUESTION, GTK_BUTTONS_YES_NO, text, book);
  if (kind == QUESTION_RECORD)
    gtk_dialog_add_button(GTK_DIALOG(dialog), "RAZ ?", GTK_RESPONSE_OK);
  Trf_answer answer = answer_of(run_and_destroy(dialog));
  return book->pWindow != nullptr ? answer : ANSWER_NO;
}

void tell(Trf_notice kind, const char *text, Trf_book *book) {
  if (book->pWindow == nullptr)
    return;
  GtkMessageType type = kind == NOTICE_ERROR ? GTK_MESSAGE_ERROR : GTK_MESSAGE_WARNING;
  run_and_destroy(new_dialog(type, GTK_BUTTONS_OK, text, book));
}

const Trf_dialogs GTK_DIALOGS = {ask, tell};

} // namespace

void REGISTER_GTK_DIALOGS() {
  SET_DIALOGS(&GTK_DIALOGS);
}
