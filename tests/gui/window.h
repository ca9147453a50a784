// A real window on a scratch directory, driven by real presses and keys, read by labels and names.
//
//   Test_window window(TWO_LESSONS());
//   window.press(window.book->Button1, LEFT);
//   EXPECT_THAT(window.pane_lines(), ElementsAre(...));
//
// Set what the start-up shall see (SET_PRESENT, SET_RAND, SET_CLOCK_STEP) before the window is
// made. Every dialog needs its answer in window.dialogs beforehand. A pause of the answer button is
// short by default; USE_REAL_PAUSE() gives it back.
#ifndef MERTU_TESTS_GUI_WINDOW_H
#define MERTU_TESTS_GUI_WINDOW_H

#include <gtk/gtk.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "app/book_start.h"
#include "gui/dialogs.h"
#include "support/scratch.h"
#include "util/book.h"

// Mouse buttons.
enum { LEFT = 1, MIDDLE = 2, RIGHT = 3 };

// Files of the scratch directory: name and bytes.
using Test_files = std::map<std::string, std::string>;

// A configuration and two dictionaries: a.txt (alias "aa", three entries without sound) and b.txt
// (alias "bb", two entries).
Test_files TWO_LESSONS();

// A dictionary file: its alias and its entries, question first (without its "*"), response second.
std::string DICTIONARY(const std::string &alias,
                       const std::vector<std::pair<std::string, std::string>> &entries);

// All files of a directory and of those in it, for a window that goes on where another ended.
Test_files FILES_OF(const Scratch_dir &dir);

// A mertu.conf that lists these dictionary files, in the smallest form that works.
std::string CONFIGURATION(const std::vector<std::string> &dictionaries);

class Test_window {
public:
  // Fills a fresh directory, makes it current, does all that the program does from the reading of
  // mertu.conf to the showing of the window, and handles all events until it stands. `before` runs
  // as soon as the files stand.
  explicit Test_window(const Test_files &files, const std::function<void()> &before = {});
  // Destroys the window, if it still lives, and frees the records.
  ~Test_window();
  Test_window(const Test_window &) = delete;
  Test_window &operator=(const Test_window &) = delete;

  Trf_book *book = nullptr;
  Trf_records records = {};
  // What is done with the dialogs.
  Dialog_script dialogs;

  // A press and its release in the middle of a widget, everything it causes handled.
  void press(GtkWidget *widget, int button);
  // Two of them at once, as a double click arrives.
  void press_twice(GtkWidget *widget, int button);
  // Puts the text in the command entry by keys (a click on it first) and presses Enter.
  void type(const std::string &text);
  // Asks the window to close, as the window manager's close button does.
  void close();

  // The same four without handling: they wait in the queue until handle(). The pointer is moved
  // for each press, so presses on different widgets may be queued.
  void queue_press(GtkWidget *widget, int button);
  void queue_keys(const std::string &text); // to the widget that has the focus; '\n' is Enter
  void queue_close();
  // Runs the main loop until everything queued has been handled, or the program ends it.
  void handle();

  // True once the program itself has ended the main loop ("Quit", the window closed).
  bool ended() const {
    return ended_;
  }
  // The window has not been destroyed.
  bool alive() const {
    return book->pWindow != nullptr;
  }

  // The lines in the quiz pane from top to bottom, in UTF-8.
  std::vector<std::string> pane_lines() const;
  // The lines the book counts: the labels wbutton[0] .. wbutton[nb_line - 1].
  std::vector<std::string> book_lines() const;
  // The content of the lesson text pane, in UTF-8.
  std::string text() const;
  // What stands in the command entry.
  std::string command() const;
  // The first button, in packing order, with exactly this label; null when there is none.
  GtkWidget *button(const std::string &label) const;

  // The scratch directory.
  const Scratch_dir &dir() const {
    return dir_;
  }

private:
  Scratch_dir dir_;
  bool ended_ = false;
};

// Label of a button or a label widget; the widget's name; whether it takes presses.
std::string LABEL_OF(GtkWidget *widget);
std::string NAME_OF(GtkWidget *widget);
bool SENSITIVE(GtkWidget *widget);

// A press and its release in the middle of a widget; the closing of a window as by the window
// manager. They wait in the queue.
void QUEUE_PRESS(GtkWidget *widget, int button);
void QUEUE_CLOSE(GtkWidget *window);

// The pauses of the following presses take their real time (about a third of a second each).
void USE_REAL_PAUSE();

#endif
