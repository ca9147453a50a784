// mertu-notice.x TEXT: shows the text in a small window until it is closed. The launcher tells so
// what no terminal would show. Status 1 without a text or a display.
#include <gtk/gtk.h>

#include "app/window_icon.h"
#include "util/encodings.h"
#include "util/owned.h"

int main(int argc, char **argv) {
  if (!gtk_init_check(&argc, &argv) || argc != 2)
    return 1;
  USE_WINDOW_ICON();
  // What the program printed may be in either encoding.
  bool utf8 = g_utf8_validate(argv[1], -1, nullptr);
  Owned_text text(utf8 ? g_strdup(argv[1]) : UTF8_FROM_CP1252(argv[1]));
  GtkWidget *dialog = gtk_message_dialog_new(nullptr, (GtkDialogFlags)0, GTK_MESSAGE_WARNING,
                                             GTK_BUTTONS_OK, "%s", text.get());
  gtk_window_set_title(GTK_WINDOW(dialog), "Mertu");
  gtk_window_set_position(GTK_WINDOW(dialog), GTK_WIN_POS_CENTER);
  gtk_dialog_run(GTK_DIALOG(dialog));
  gtk_widget_destroy(dialog);
  return 0;
}
