// The command entry "Cmd :" above the quiz pane.
#include "command/command_entry.h"

void callback_entry_book(GtkWidget *, Trf_book *) {
}

gboolean clean_entry_book(GtkWidget *widget, GdkEvent *event, Trf_book *) {
  if (event != nullptr && event->type != GDK_BUTTON_PRESS)
    return FALSE;
  GtkEditable *entry = GTK_EDITABLE(widget);
  gint begin = 0;
  gint end = 0;
  if (gtk_editable_get_selection_bounds(entry, &begin, &end) && end > 0)
    gtk_editable_delete_selection(entry);
  return FALSE;
}
