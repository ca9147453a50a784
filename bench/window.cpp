// The benchmark of the real window:  bench_window PROGRAM DIRECTORY TABLE
//
// Starts the program in a learner's directory on the display of the moment, presses its answer
// button, and watches the screen until it rests: what is told is the moment of its last change.
// PROGRAM is built without the settling pause of its presses. Appends the head of the table of
// figures and its first rows to the file TABLE.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "bench/table.h"

namespace {

using Clock = std::chrono::steady_clock;

const int NB_STARTS = 9;
const int NB_PRESSES = 60;
const double RESTED = 0.08; // seconds without a change, after which the screen rests
const double PATIENCE = 20; // seconds, after which it will not change any more
const char FULL_LIFE_TEXT[] = "100 dictionaries of 100 entries";

double seconds_between(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

[[noreturn]] void fail(const char *why) {
  fprintf(stderr, "bench_window: %s\n", why);
  exit(1);
}

struct Place {
  int x = 0, y = 0, w = 0, h = 0;
};

// The program being watched.
struct Program {
  pid_t pid = 0;
  int said = -1; // what it prints
  Clock::time_point started;
};

Program start_program(const char *path, bool trace) {
  int ends[2];
  if (pipe(ends) != 0)
    fail("no pipe");
  Program program;
  program.started = Clock::now();
  program.pid = fork();
  if (program.pid == 0) {
    dup2(ends[1], 1);
    close(ends[0]);
    close(ends[1]);
    if (trace)
      setenv("MERTU_TRACE", "1", 1);
    execl(path, path, (char *)nullptr);
    _exit(127);
  }
  close(ends[1]);
  program.said = ends[0];
  return program;
}

void end_program(const Program &program) {
  kill(program.pid, SIGKILL);
  waitpid(program.pid, nullptr, 0);
  close(program.said);
}

// Reads what the program prints until it is silent for so many milliseconds.
std::string hear(const Program &program, int silence) {
  std::string text;
  struct pollfd waiting = {program.said, POLLIN, 0};
  while (poll(&waiting, 1, silence) > 0) {
    char block[4096];
    ssize_t nb = read(program.said, block, sizeof(block));
    if (nb <= 0)
      break;
    text.append(block, (size_t)nb);
  }
  return text;
}

void hear_ready(const Program &program) {
  std::string text;
  char byte;
  while (text.find("Mertu is ready") == std::string::npos) {
    if (read(program.said, &byte, 1) != 1)
      fail("the program ended before its window stood");
    text += byte;
  }
}

// The last place that the trace tells of a widget: "WHAT at X Y W H".
Place place_of(const std::string &trace, const std::string &what) {
  size_t at = trace.rfind(what);
  Place place;
  if (at == std::string::npos ||
      sscanf(trace.c_str() + trace.find(" at ", at + what.size() - 1), " at %d %d %d %d", &place.x,
             &place.y, &place.w, &place.h) != 4)
    fail("the trace does not tell where the window's parts are");
  return place;
}

// A part of the screen, looked at again and again.
class Screen {
public:
  Screen(Display *display, const Place &part) : display_(display), part_(part) {
    look();
  }
  ~Screen() {
    XDestroyImage(image_);
  }
  Screen(const Screen &) = delete;
  Screen &operator=(const Screen &) = delete;

  // Watches until a change has come and the part then rests. Returns the moment of the last change.
  Clock::time_point watch() {
    Clock::time_point began = Clock::now();
    Clock::time_point last = began;
    bool changed = false;
    while (!changed || seconds_between(last, Clock::now()) < RESTED) {
      if (look()) {
        last = Clock::now();
        changed = true;
      }
      if (seconds_between(began, Clock::now()) > PATIENCE)
        fail("nothing changes on the screen");
    }
    return last;
  }

  // Looks once; true when something changed.
  bool look() {
    XImage *image = XGetImage(display_, DefaultRootWindow(display_), part_.x, part_.y,
                              (unsigned)part_.w, (unsigned)part_.h, AllPlanes, ZPixmap);
    size_t size = (size_t)image->bytes_per_line * (size_t)image->height;
    bool changed = image_ == nullptr || memcmp(image->data, image_->data, size) != 0;
    if (image_ != nullptr)
      XDestroyImage(image_);
    image_ = image;
    return changed;
  }

private:
  Display *display_;
  Place part_;
  XImage *image_ = nullptr;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double processor_seconds(const Program &program) {
  std::ifstream file("/proc/" + std::to_string(program.pid) + "/stat");
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  size_t end = text.rfind(')');
  long user = 0, system = 0;
  if (end == std::string::npos ||
      sscanf(text.c_str() + end, ") %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %ld %ld", &user,
             &system) != 2)
    fail("no processor time is told");
  return (double)(user + system) / (double)sysconf(_SC_CLK_TCK);
}

// The proportional share of memory, in MB.
double pss(const Program &program) {
  std::ifstream file("/proc/" + std::to_string(program.pid) + "/smaps_rollup");
  std::string line;
  long kilobytes = 0;
  while (std::getline(file, line))
    if (sscanf(line.c_str(), "Pss: %ld", &kilobytes) == 1)
      break;
  return (double)kilobytes * 1024 / 1e6;
}

// Where the answer button and the pane stand.
struct Layout {
  Place answer, pane, window;
};

Layout learn_layout(const char *path) {
  Program program = start_program(path, true);
  std::string trace = hear(program, 2000);
  end_program(program);
  Layout layout;
  layout.answer = place_of(trace, "button   Question / Response");
  Place entry = place_of(trace, "entry");
  int top = entry.y + entry.h + 4;
  layout.pane = {entry.x, top, entry.w, layout.answer.y - 12 - top};
  layout.window = {entry.x - 40, entry.y - 4, 1000, layout.answer.y + layout.answer.h - entry.y};
  return layout;
}

void measure_starts(const char *path, const Layout &layout, Display *display, FILE *out) {
  std::vector<double> wall, processor, memory;
  for (int i = 0; i <= NB_STARTS; i++) {
    Screen screen(display, layout.window);
    Program program = start_program(path, false);
    double took = seconds_between(program.started, screen.watch());
    hear_ready(program);
    if (i > 0) { // the first one warms up
      wall.push_back(took);
      processor.push_back(processor_seconds(program));
      memory.push_back(pss(program));
    }
    Screen emptied(display, layout.window);
    end_program(program);
    emptied.watch();
  }
  Cost cost;
  cost.wall = median(wall);
  cost.cpu = median(processor);
  PRINT_FIGURE({"start to usable window", FULL_LIFE_TEXT, cost, {}, BAR_SECONDS, 0.150}, out);
  PRINT_FIGURE({"its memory (PSS)", FULL_LIFE_TEXT, {}, {}, BAR_MEMORY, 40, median(memory)}, out);
}

// Presses the answer button; returns the seconds until the pane rests.
double press(Display *display, Screen *pane) {
  Clock::time_point pressed = Clock::now();
  XTestFakeButtonEvent(display, 1, True, CurrentTime);
  XTestFakeButtonEvent(display, 1, False, CurrentTime);
  XFlush(display);
  return seconds_between(pressed, pane->watch());
}

Cost cost_of(const std::vector<double> &wall) {
  Cost cost;
  cost.wall = median(wall);
  return cost;
}

void measure_presses(const char *path, const Layout &layout, Display *display, FILE *out) {
  Screen window(display, layout.window);
  Program program = start_program(path, false);
  window.watch();
  hear_ready(program);
  const Place &answer = layout.answer;
  XTestFakeMotionEvent(display, -1, answer.x + answer.w / 2, answer.y + answer.h / 2, CurrentTime);
  XSync(display, False);
  Screen pane(display, layout.pane);
  double described = press(display, &pane);
  double loaded = press(display, &pane);
  std::vector<double> responses, questions;
  for (int i = 0; i < NB_PRESSES; i++) {
    responses.push_back(press(display, &pane));
    questions.push_back(press(display, &pane));
  }
  end_program(program);
  PRINT_FIGURE(
      {"press to painted description", FULL_LIFE_TEXT, cost_of({described}), {}, NO_BAR, 0}, out);
  PRINT_FIGURE({"press to loaded lesson, its first question painted",
                FULL_LIFE_TEXT,
                cost_of({loaded}),
                {},
                NO_BAR,
                0},
               out);
  PRINT_FIGURE(
      {"press to painted response", FULL_LIFE_TEXT, cost_of(responses), {}, BAR_SECONDS, 0.020},
      out);
  PRINT_FIGURE(
      {"press to painted question", FULL_LIFE_TEXT, cost_of(questions), {}, BAR_SECONDS, 0.020},
      out);
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 4)
    return 1;
  FILE *out = fopen(argv[3], "a");
  Display *display = XOpenDisplay(nullptr);
  if (out == nullptr || display == nullptr || chdir(argv[2]) != 0)
    fail("no display, no directory or no table");
  Layout layout = learn_layout(argv[1]);
  PRINT_HEAD(out);
  measure_starts(argv[1], layout, display, out);
  measure_presses(argv[1], layout, display, out);
  XCloseDisplay(display);
  fclose(out);
  return 0;
}
