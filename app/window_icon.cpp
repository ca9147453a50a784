// Mertu's icon, shown by its windows.
#include "app/window_icon.h"

#include <gtk/gtk.h>

// Made by cmake/icon.cmake; to be called once.
void mertu_icon_register_resource();

namespace {

const char *const PICTURES[] = {"/org/mertu/mertu/16.png", "/org/mertu/mertu/32.png",
                                "/org/mertu/mertu/48.png", "/org/mertu/mertu/64.png"};

void use_pictures() {
  mertu_icon_register_resource();
  GList *pictures = nullptr;
  for (const char *picture : PICTURES) {
    GdkPixbuf *pixbuf = gdk_pixbuf_new_from_resource(picture, nullptr);
    if (pixbuf != nullptr)
      pictures = g_list_append(pictures, pixbuf);
  }
  gtk_window_set_default_icon_list(pictures);
  g_list_free_full(pictures, g_object_unref);
}

} // namespace

void USE_WINDOW_ICON() {
  static bool used = false; // the toolkit keeps the pictures from then on
  if (!used)
    use_pictures();
  used = true;
}
