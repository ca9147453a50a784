// The real program as a process of its own: started, its output read, its window found.
#include "support/prelude.h"

#include "gui/program.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

const int ONE_WAIT_USEC = 10000; // between two looks

bool wait_for(const std::function<bool()> &condition, int seconds = 30) {
  for (int i = 0; i < seconds * (1000000 / ONE_WAIT_USEC); i++) {
    if (condition())
      return true;
    usleep(ONE_WAIT_USEC);
  }
  return false;
}

// A connection of our own, so that nothing here disturbs the toolkit's.
using Connection = std::unique_ptr<Display, int (*)(Display *)>;

Connection connection() {
  return Connection(XOpenDisplay(nullptr), XCloseDisplay);
}

// The process that a window belongs to; 0 when it does not say.
pid_t owner_of(Display *display, Window window) {
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char *data = nullptr;
  Atom property = XInternAtom(display, "_NET_WM_PID", False);
  XGetWindowProperty(display, window, property, 0, 1, False, XA_CARDINAL, &type, &format, &count,
                     &rest, &data);
  pid_t owner = 0;
  if (data != nullptr && count == 1)
    owner = (pid_t) * reinterpret_cast<unsigned long *>(data);
  if (data != nullptr)
    XFree(data);
  return owner;
}

bool is_shown(Display *display, Window window) {
  XWindowAttributes attributes = {};
  return XGetWindowAttributes(display, window, &attributes) != 0 &&
         attributes.map_state == IsViewable;
}

bool is_titled(Display *display, Window window) {
  char *name = nullptr;
  bool titled = XFetchName(display, window, &name) != 0 && strcmp(name, "Mertu") == 0;
  if (name != nullptr)
    XFree(name);
  return titled;
}

// The window of a process, once it is shown; None before.
Window window_of(Display *display, pid_t process) {
  Window root = None;
  Window parent = None;
  Window *windows = nullptr;
  unsigned count = 0;
  XQueryTree(display, DefaultRootWindow(display), &root, &parent, &windows, &count);
  Window found = None;
  for (unsigned i = 0; i < count && found == None; i++)
    if (owner_of(display, windows[i]) == process && is_titled(display, windows[i]) &&
        is_shown(display, windows[i]))
      found = windows[i];
  if (windows != nullptr)
    XFree(windows);
  return found;
}

void ask_to_close(Display *display, Window window) {
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = (long)XInternAtom(display, "WM_DELETE_WINDOW", False);
  XSendEvent(display, window, False, NoEventMask, &event);
  XSync(display, False);
}

// The program's side of the fork.
[[noreturn]] void become(const std::string &path, const std::string &directory,
                         const std::vector<std::string> &environment, const std::string &output) {
  int fd = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dup2(fd, 1);
  dup2(fd, 2);
  for (const std::string &setting : environment)
    if (setting.find('=') == std::string::npos)
      unsetenv(setting.c_str());
    else
      putenv(const_cast<char *>(setting.c_str()));
  if (chdir(directory.c_str()) == 0)
    execl(MERTU_PROGRAM, path.c_str(), nullptr);
  _exit(127);
}

// The colour of a place of the screen, 0xRRGGBB.
unsigned long colour_at(Display *display, int x, int y) {
  XImage *image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
  unsigned long colour = XGetPixel(image, 0, 0) & 0xFFFFFF;
  XDestroyImage(image);
  return colour;
}

std::string fresh_output_file() {
  std::string name = (std::filesystem::temp_directory_path() / "mertu_output_XXXXXX").string();
  close(mkstemp(name.data()));
  return name;
}

} // namespace

Program::Program(const std::string &path, const std::string &directory,
                 const std::vector<std::string> &environment)
    : output_file_(fresh_output_file()) {
  pid_ = fork();
  if (pid_ == 0)
    become(path, directory, environment, output_file_);
}

Program::~Program() {
  if (running()) {
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  unlink(output_file_.c_str());
}

bool Program::running() {
  if (pid_ > 0 && waitpid(pid_, &status_, WNOHANG) == pid_)
    pid_ = -1;
  return pid_ > 0;
}

int Program::status() {
  if (!wait_for([this] { return !running(); }))
    return -1;
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

bool Program::says(const std::string &text, size_t from, int seconds) {
  auto said = [&] {
    std::string now = output();
    return now.size() > from && now.find(text, from) != std::string::npos;
  };
  return wait_for([&] { return said() || !running(); }, seconds) && said();
}

bool Program::press_until(int x, int y, const std::string &text, size_t from) {
  for (int attempt = 0; attempt < 4; attempt++) {
    PRESS_AT(x, y);
    if (says(text, from, 8))
      return true;
  }
  return false;
}

bool Program::press(const std::string &label, const std::vector<std::string> &texts) {
  std::string before = output();
  std::string start = "button " + label + " at ";
  size_t found = before.rfind(start);
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  if (found == std::string::npos ||
      sscanf(before.c_str() + found + start.size(), "%d %d %d %d", &x, &y, &width, &height) != 4)
    return false;
  if (texts.empty())
    PRESS_AT(x + width / 2, y + height / 2);
  else if (!press_until(x + width / 2, y + height / 2, texts.front(), before.size()))
    return false;
  return std::all_of(texts.begin(), texts.end(),
                     [&](const std::string &text) { return says(text, before.size()); });
}

std::string Program::output() const {
  std::ifstream file(output_file_, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

unsigned long Program::wait_for_window() {
  Connection display = connection();
  Window window = None;
  wait_for([&] {
    window = window_of(display.get(), pid_);
    return window != None || !running();
  });
  return window;
}

std::string Program::window_class() {
  Window window = wait_for_window();
  Connection display = connection();
  XClassHint hint = {};
  if (window == None || XGetClassHint(display.get(), window, &hint) == 0)
    return "";
  std::string window_class = hint.res_class;
  XFree(hint.res_name);
  XFree(hint.res_class);
  return window_class;
}

bool Program::close_window() {
  Window window = wait_for_window();
  Connection display = connection();
  if (window != None)
    ask_to_close(display.get(), window);
  return window != None;
}

void PRESS_AT(int x, int y) {
  Connection display = connection();
  XTestFakeMotionEvent(display.get(), -1, x, y, CurrentTime);
  XTestFakeButtonEvent(display.get(), 1, True, CurrentTime);
  XTestFakeButtonEvent(display.get(), 1, False, CurrentTime);
  XSync(display.get(), False);
}

bool HAS_COLOUR(int x, int y, unsigned long colour) {
  Connection display = connection();
  return wait_for([&] { return colour_at(display.get(), x, y) == colour; });
}
