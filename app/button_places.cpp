// Traces where the buttons and the command entry stand on the screen.
#include "app/button_places.h"

#include <gtk/gtk.h>

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

void trace_place(GtkWidget *widget) {
  if (!gtk_widget_get_mapped(widget) || !gtk_widget_is_sensitive(widget))
    return;
  GtkAllocation place = place_on_screen(widget);
  if (GTK_IS_BUTTON(widget))
    TRACE("button %s at %d %d %d %d\n", gtk_button_get_label(GTK_BUTTON(widget)), place.x, place.y,
          place.width, place.height);
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

void FORGET_BUTTON_PLACES() {
  if (waiting.source != 0)
    g_source_remove(waiting.source);
  waiting.source = 0;
}
