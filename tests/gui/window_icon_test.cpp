// The icon of the windows, and the name by which a desktop knows them.
#include "support/prelude.h"

#include "app/window_icon.h"

#include "gui/program.h"
#include "gui/window.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// The sides of the pictures that a window carries for the desktop, in pixels.
std::vector<unsigned long> pictures_of(GtkWidget *window) {
  guchar *data = nullptr;
  gint bytes = 0;
  if (!gdk_property_get(gtk_widget_get_window(window), gdk_atom_intern("_NET_WM_ICON", FALSE),
                        gdk_atom_intern("CARDINAL", FALSE), 0, 1L << 20, FALSE, nullptr, nullptr,
                        &bytes, &data))
    return {};
  std::vector<unsigned long> values(bytes / sizeof(unsigned long));
  memcpy(values.data(), data, values.size() * sizeof(unsigned long));
  g_free(data);
  std::vector<unsigned long> sides;
  for (size_t i = 0; i + 1 < values.size(); i += 2 + values[i] * values[i + 1])
    sides.push_back(values[i]);
  return sides;
}

std::string bytes_of(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

} // namespace

TEST(WindowIcon, TheWindowCarriesItInFourSizes) {
  Test_window window(TWO_LESSONS());
  EXPECT_THAT(pictures_of(window.book->pWindow), ElementsAre(16, 32, 48, 64));
}

TEST(WindowIcon, ASecondCallChangesNothing) {
  Test_window window(TWO_LESSONS());
  USE_WINDOW_ICON();
  GList *pictures = gtk_window_get_default_icon_list();
  EXPECT_EQ(g_list_length(pictures), 4u);
  g_list_free(pictures);
}

TEST(WindowIcon, TheDesktopEntryNamesTheClassOfTheWindow) {
  Scratch_dir dir;
  for (const auto &[name, bytes] : TWO_LESSONS())
    dir.write(name, bytes);
  Program program(dir.path() + "/mertu.x", dir.path());
  std::string window_class = program.window_class();
  EXPECT_EQ(window_class, "Mertu.x") << program.output();
  EXPECT_THAT(bytes_of(MERTU_SOURCE "/packaging/org.mertu.mertu.desktop"),
              HasSubstr("\nStartupWMClass=" + window_class + "\n"));
  program.close_window();
  EXPECT_EQ(program.status(), 0);
}
