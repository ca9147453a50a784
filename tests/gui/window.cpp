// A real window on a scratch directory, driven by real presses and keys, read by labels and names.
#include "support/prelude.h"

#include "gui/window.h"

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <gdk/gdkx.h>

#include "app/main_window.h"
#include "quiz/answer_button.h"
#include "quiz/choose_entry.h"
#include "quiz/entry_lines.h"
#include "quiz/show_entry.h"
#include "support/present.h"
#include "text/find_sound.h"
#include "util/owned.h"

namespace {

// Ticks that pass with each call of clock(): the second call already ends the pause.
const clock_t QUICK_STEP = 1000000;

// Whether a test wants the real pause.
struct {
  bool real = false;
} pause_of_presses;

Display *display() {
  return gdk_x11_get_default_xdisplay();
}

// A run of handle().
struct Settling {
  Test_window *window;
  bool settled = false;
};

// Ends the loop started by handle() once the server has told everything and all of it is handled.
// Its priority is the lowest there is, so whatever waits goes first; inside a handler that drains
// the queue itself or waits for a dialog it lets the handler finish, and sees to the dialog.
gboolean settle(gpointer data) {
  Settling *settling = static_cast<Settling *>(data);
  XSync(display(), False);
  if (gdk_events_pending())
    return TRUE;
  if (g_main_depth() > 1) {
    settling->window->dialogs.serve(settling->window->book->pWindow);
    return TRUE;
  }
  settling->settled = true;
  gtk_main_quit();
  return FALSE;
}

void move_pointer_to(GtkWidget *widget) {
  GtkAllocation place;
  gtk_widget_get_allocation(widget, &place);
  gint left = 0;
  gint top = 0;
  gdk_window_get_origin(gtk_widget_get_window(widget), &left, &top);
  if (!gtk_widget_get_has_window(widget)) {
    left += place.x;
    top += place.y;
  }
  XTestFakeMotionEvent(display(), -1, left + place.width / 2, top + place.height / 2, CurrentTime);
}

void send_press(int button) {
  XTestFakeButtonEvent(display(), (unsigned)button, True, CurrentTime);
  XTestFakeButtonEvent(display(), (unsigned)button, False, CurrentTime);
}

void send_key(unsigned character) {
  KeySym symbol = character == '\n' ? XK_Return : gdk_unicode_to_keyval(character);
  KeyCode code = XKeysymToKeycode(display(), symbol);
  ASSERT_NE(code, 0) << "no key for character " << character;
  KeyCode shift_key = XKeysymToKeycode(display(), XK_Shift_L);
  int nb_symbols = 0;
  KeySym *symbols = XGetKeyboardMapping(display(), code, 1, &nb_symbols);
  bool shifted = nb_symbols > 0 && symbols[0] != symbol;
  XFree(symbols);
  if (shifted)
    XTestFakeKeyEvent(display(), shift_key, True, CurrentTime);
  XTestFakeKeyEvent(display(), code, True, CurrentTime);
  XTestFakeKeyEvent(display(), code, False, CurrentTime);
  if (shifted)
    XTestFakeKeyEvent(display(), shift_key, False, CurrentTime);
}

// Parses mertu.rc by its full path: under its bare name the toolkit would look for it again where
// the first window of this process found it. The styles of earlier windows are forgotten.
void parse_resource_file(const Scratch_dir &dir) {
  gtk_rc_parse((dir.path() + "/mertu.rc").c_str());
  gtk_rc_reparse_all_for_settings(gtk_settings_get_default(), TRUE);
}

// What the program remembers of its drill until its end, and the next window must not know.
void forget_the_drill() {
  FORGET_PRESSES();
  FORGET_CHOICES();
  FORGET_HEARD();
  FORGET_SHOWN();
  FORGET_SOUND_PLACE();
}

using Widgets = std::vector<GtkWidget *>;

void collect(GtkWidget *widget, gpointer list) {
  static_cast<Widgets *>(list)->push_back(widget);
  if (GTK_IS_CONTAINER(widget))
    gtk_container_foreach(GTK_CONTAINER(widget), collect, list);
}

// A widget and all inside it, in packing order.
Widgets tree_of(GtkWidget *widget) {
  Widgets widgets;
  if (widget != nullptr)
    collect(widget, &widgets);
  return widgets;
}

} // namespace

Test_files TWO_LESSONS() {
  return {{"mertu.conf", CONFIGURATION({"a.txt", "b.txt"})},
          {"a.txt", DICTIONARY("aa", {{"chat", "cat"}, {"chien", "dog"}, {"vache", "cow"}})},
          {"b.txt", DICTIONARY("bb", {{"pomme", "apple"}, {"poire", "pear"}})}};
}

std::string DICTIONARY(const std::string &alias,
                       const std::vector<std::pair<std::string, std::string>> &entries) {
  std::string text = "!# " + alias + "\n#######\nText of " + alias + ".\n#######\n";
  for (const auto &[question, response] : entries)
    text += "# " + question + " *\nQ> " + question + "\nR> " + response + "\n\n";
  return text + "# END_OF_FILE\n";
}

Test_files FILES_OF(const Scratch_dir &dir) {
  namespace fs = std::filesystem;
  Test_files files;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(dir.path()))
    if (entry.is_regular_file()) {
      std::string name = fs::relative(entry.path(), dir.path());
      files[name] = dir.read(name);
    }
  return files;
}

std::string CONFIGURATION(const std::vector<std::string> &dictionaries) {
  std::string text = "Which_lesson :>\n";
  for (const std::string &name : dictionaries)
    text += name + "\n";
  return text + "<:\n";
}

Test_window::Test_window(const Test_files &files, const std::function<void()> &before) {
  for (const auto &[name, bytes] : files)
    dir_.write(name, bytes);
  if (before)
    before();
  if (!pause_of_presses.real)
    SET_CLOCK_STEP(QUICK_STEP);
  ALLOCATE_RECORDS(&records);
  book = records.book;
  PREPARE_WORDS(&records);
  parse_resource_file(dir_);
  OPEN_MAIN_WINDOW(&records);
  handle();
  XSetInputFocus(display(), GDK_WINDOW_XID(gtk_widget_get_window(book->pWindow)),
                 RevertToPointerRoot, CurrentTime);
  handle();
}

Test_window::~Test_window() {
  if (alive())
    gtk_widget_destroy(book->pWindow);
  while (gtk_events_pending())
    gtk_main_iteration();
  FREE_RECORDS(&records);
  forget_the_drill();
  SET_CLOCK_STEP(0);
  pause_of_presses.real = false;
}

void Test_window::press(GtkWidget *widget, int button_number) {
  queue_press(widget, button_number);
  handle();
}

void Test_window::press_twice(GtkWidget *widget, int button_number) {
  queue_press(widget, button_number);
  queue_press(widget, button_number);
  handle();
}

void Test_window::type(const std::string &text) {
  press(book->entry_book, LEFT);
  gtk_widget_grab_focus(book->entry_book);
  gtk_editable_select_region(GTK_EDITABLE(book->entry_book), 0, -1);
  queue_keys(text + "\n");
  handle();
}

void Test_window::close() {
  queue_close();
  handle();
}

void Test_window::queue_press(GtkWidget *widget, int button_number) {
  QUEUE_PRESS(widget, button_number);
}

void Test_window::queue_keys(const std::string &text) {
  for (unsigned char character : text)
    send_key(character);
}

void Test_window::queue_close() {
  QUEUE_CLOSE(book->pWindow);
}

void Test_window::handle() {
  if (ended_)
    return;
  XSync(display(), False);
  Settling settling = {this};
  guint source = g_timeout_add_full(G_PRIORITY_LOW, 1, settle, &settling, nullptr);
  gtk_main();
  if (settling.settled)
    return;
  g_source_remove(source);
  ended_ = true;
}

std::vector<std::string> Test_window::pane_lines() const {
  std::vector<std::string> lines;
  for (GtkWidget *widget : tree_of(book->v_page))
    if (GTK_IS_LABEL(widget))
      lines.push_back(LABEL_OF(widget));
  return lines;
}

std::vector<std::string> Test_window::book_lines() const {
  std::vector<std::string> lines;
  for (int i = 0; i < book->nb_line; i++)
    lines.push_back(LABEL_OF(book->wbutton[i]));
  return lines;
}

std::string Test_window::text() const {
  GtkTextBuffer *buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(book->text_view));
  GtkTextIter begin;
  GtkTextIter end;
  gtk_text_buffer_get_bounds(buffer, &begin, &end);
  return Owned_text(gtk_text_buffer_get_text(buffer, &begin, &end, FALSE)).get();
}

std::string Test_window::command() const {
  return gtk_entry_get_text(GTK_ENTRY(book->entry_book));
}

GtkWidget *Test_window::button(const std::string &label) const {
  for (GtkWidget *widget : tree_of(book->pWindow))
    if (GTK_IS_BUTTON(widget) && LABEL_OF(widget) == label)
      return widget;
  return nullptr;
}

std::string LABEL_OF(GtkWidget *widget) {
  const char *label = GTK_IS_BUTTON(widget)  ? gtk_button_get_label(GTK_BUTTON(widget))
                      : GTK_IS_LABEL(widget) ? gtk_label_get_text(GTK_LABEL(widget))
                                             : nullptr;
  return label != nullptr ? label : "";
}

std::string NAME_OF(GtkWidget *widget) {
  return gtk_widget_get_name(widget);
}

bool SENSITIVE(GtkWidget *widget) {
  return gtk_widget_is_sensitive(widget);
}

void QUEUE_PRESS(GtkWidget *widget, int button) {
  move_pointer_to(widget);
  send_press(button);
}

void QUEUE_CLOSE(GtkWidget *window) {
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = GDK_WINDOW_XID(gtk_widget_get_window(window));
  event.xclient.message_type = gdk_x11_get_xatom_by_name("WM_PROTOCOLS");
  event.xclient.format = 32;
  event.xclient.data.l[0] = (long)gdk_x11_get_xatom_by_name("WM_DELETE_WINDOW");
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(display(), event.xclient.window, False, NoEventMask, &event);
}

void USE_REAL_PAUSE() {
  pause_of_presses.real = true;
}
