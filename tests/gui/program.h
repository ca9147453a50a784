// The real program as a process of its own: started, its output read, its window found.
#ifndef MERTU_TESTS_GUI_PROGRAM_H
#define MERTU_TESTS_GUI_PROGRAM_H

#include <sys/types.h>

#include <string>
#include <vector>

class Program {
public:
  // Starts the program with `path` as the path it was started with (argv[0]) in a directory.
  // Environment: `name=value` settings on top of this process's; a name alone takes it away.
  Program(const std::string &path, const std::string &directory,
          const std::vector<std::string> &environment = {});
  // Ends it where it still runs.
  ~Program();
  Program(const Program &) = delete;
  Program &operator=(const Program &) = delete;

  // Waits until it has ended by itself; its exit status, or -1 when it did not.
  int status();
  // Waits until its output holds this text, from this byte on; false when it never does.
  bool says(const std::string &text, size_t from = 0, int seconds = 30);
  // Presses the button that it traced last under this label and waits until it has said each of
  // the texts since. False when any of that does not happen.
  bool press(const std::string &label, const std::vector<std::string> &texts = {});
  // Presses a place of the screen until it has said this text from this byte on: a press that falls
  // into the rest of the answer button is not taken, and on a busy machine that rest is long.
  bool press_until(int x, int y, const std::string &text, size_t from);
  // What it has written to standard output and standard error so far.
  std::string output() const;
  // Waits for its window; the class by which a desktop knows it, "" when no window ever stood.
  std::string window_class();
  // Waits for its window and asks it to close; false when no window ever stood.
  bool close_window();

private:
  bool running();
  unsigned long wait_for_window();
  std::string output_file_;
  pid_t pid_ = -1;
  int status_ = -1;
};

// A real press of the left button at a place of the screen.
void PRESS_AT(int x, int y);

// Waits until a place of the screen has this colour (0xRRGGBB); false when it never does.
bool HAS_COLOUR(int x, int y, unsigned long colour);

#endif
