// Traces where the buttons and the command entry stand on the screen.
#include "app/button_places.h"

#include <vector>

#include "util/report.h"

namespace {

using Widgets = std::vector<GtkWidget *>;

// The trace that waits until everything has been placed: the id of its idle source, 0 for none.
struct {
  guint source;
} waiting;

// Adds the buttons and entries inside a widget to a list.
void collect(GtkWidget *widget, gpointer list) {
  if (GTK_IS_BUTTON(widget) || GTK_IS_ENTRY(widget))
    static_cast<Widgets *>(list)->push_back(widget);
  else if (GTK_IS_CONTAINER(widget))
    gtk_container_foreach(GTK_CONTAINER(widget), collect, list);
}

Widgets buttons_and_entries(Trf_book *book) {
  Widgets widgets;
  if (book->pWindow != nullptr)
    collect(book->pWindow, &widgets);
  return widgets;
}

// Where a widget stands on the screen. It is counted from the window, for its allocation is not
// where it is set into a text.
GtkAllocation place_on_screen(GtkWidget *widget) {
  GtkWidget *window = gtk_widget_get_toplevel(widget);
  GtkAllocation place;
  gtk_widget_get_allocation(widget, &place);
  gint left = 0;
  gint top = 0;
  gdk_window_get_origin(gtk_widget_get_window(window), &left, &top);
  gtk_widget_translate_coordinates(widget, window, left, top, &place.x, &place.y);
  return place;
}

void find_label(GtkWidget *widget, gpointer label) {
  if (GTK_IS_LABEL(widget))
    *static_cast<const char **>(label) = gtk_label_get_text(GTK_LABEL(widget));
  else if (GTK_IS_CONTAINER(widget))
    gtk_container_foreach(GTK_CONTAINER(widget), find_label, label);
}

// What the learner reads on a button. It is asked of the label inside: the button of a dialog knows
// the key of its text only.
const char *label_of(GtkWidget *button) {
  const char *label = "";
  find_label(button, &label);
  return label;
}

void trace_place(GtkWidget *widget) {
  if (!gtk_widget_get_mapped(widget) || !gtk_widget_is_sensitive(widget))
    return;
  GtkAllocation place = place_on_screen(widget);
  if (GTK_IS_BUTTON(widget))
    TRACE("button %s at %d %d %d %d\n", label_of(widget), place.x, place.y, place.width,
          place.height);
  else
    TRACE("entry at %d %d %d %d\n", place.x, place.y, place.width, place.height);
}

gboolean trace_all(gpointer book) {
  waiting.source = 0;
  for (GtkWidget *widget : buttons_and_entries(static_cast<Trf_book *>(book)))
    trace_place(widget);
  return FALSE;
}

void trace_soon(Trf_book *book) {
  if (waiting.source == 0)
    waiting.source = g_idle_add(trace_all, book);
}

gboolean window_moved(GtkWidget *, GdkEvent *, Trf_book *book) {
  trace_soon(book);
  return FALSE;
}

void widget_placed(GtkWidget *, GdkRectangle *, Trf_book *book) {
  trace_soon(book);
}

void sensitivity_changed(GtkWidget *, GParamSpec *, Trf_book *book) {
  trace_soon(book);
}

gboolean trace_dialog(gpointer dialog) {
  Widgets widgets;
  collect(GTK_WIDGET(dialog), &widgets);
  for (GtkWidget *widget : widgets)
    trace_place(widget);
  return FALSE;
}

gboolean dialog_moved(GtkWidget *dialog, GdkEvent *, gpointer) {
  g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, trace_dialog, g_object_ref(dialog), g_object_unref);
  return FALSE;
}

} // namespace

void TRACE_BUTTON_PLACES(Trf_book *book) {
  if (!TRACING())
    return;
  g_signal_connect(book->pWindow, "map-event", G_CALLBACK(window_moved), book);
  g_signal_connect(book->pWindow, "configure-event", G_CALLBACK(window_moved), book);
  for (GtkWidget *widget : buttons_and_entries(book)) {
    g_signal_connect(widget, "size-allocate", G_CALLBACK(widget_placed), book);
    g_signal_connect(widget, "notify::sensitive", G_CALLBACK(sensitivity_changed), book);
  }
}

void TRACE_DIALOG_PLACES(GtkWidget *dialog) {
  if (!TRACING())
    return;
  g_signal_connect(dialog, "map-event", G_CALLBACK(dialog_moved), nullptr);
  g_signal_connect(dialog, "configure-event", G_CALLBACK(dialog_moved), nullptr);
}

void FORGET_BUTTON_PLACES() {
  if (waiting.source != 0)
    g_source_remove(waiting.source);
  waiting.source = 0;
}
