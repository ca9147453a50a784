// What is done with the dialogs that come up while a test window handles its events.
#ifndef MERTU_TESTS_GUI_DIALOGS_H
#define MERTU_TESTS_GUI_DIALOGS_H

#include <gtk/gtk.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

// A dialog as it stood when something was done with it.
struct Seen_dialog {
  std::string text;                 // in UTF-8
  GtkMessageType type;              // its picture
  std::vector<std::string> buttons; // what is read on them, from left to right
  bool modal;
  bool of_window; // stands over the main window
};

// A script of what is done with one dialog after the other.
class Dialog_script {
public:
  using Act = std::function<void(GtkWidget *dialog)>;

  // The next dialog is answered by a real press on the button of this response
  // (GTK_RESPONSE_YES, ..._NO, ..._OK), or closed as by the window manager
  // (GTK_RESPONSE_DELETE_EVENT).
  void will_answer(int response);
  // Something else is done with the next dialog.
  void will_do(const Act &act);
  // Does what is due with the dialog that stands, if one does. One that nothing is due for fails
  // the test and is closed.
  void serve(GtkWidget *window);
  // The dialogs so far, each time something was done with one.
  std::vector<Seen_dialog> seen;

private:
  std::deque<Act> due_;
};

// Queues a press on the button of this response, or the closing of the dialog.
void QUEUE_ANSWER(GtkWidget *dialog, int response);

#endif
