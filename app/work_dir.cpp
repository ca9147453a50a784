// Finds the directory that holds the learner's files, and keeps a second program out of it.
#include "app/work_dir.h"

#include <errno.h>
#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>

#include "util/owned.h"
#include "util/report.h"

namespace {

const char *const CONFIGURATION = "mertu.conf";
const char *const UNREACHABLE = "file ./mertu.conf unreachable stop ";

// The descriptor that holds the lock of the current directory; -1 for none. Closed by the end of
// the program, which gives the lock back.
struct {
  int fd = -1;
} lock;

bool opens(const std::string &path) {
  return OPEN_STREAM(path.c_str(), "r") != nullptr;
}

// QUIRK program name: the program starts only under a file name that ends in ".x". A reader would
// take the test for a leftover; it is meant: the learner's directory is found from the program's
// path, and the ending tells the program from the directories and files it lies among. Test:
// WorkDir.AProgramNameWithoutTheEndingIsRefused
void refuse_other_names(const std::string &path) {
  size_t length = path.size();
  if (length < 2 || path.compare(length - 2, 2, ".x") != 0)
    STOP_PROGRAM(nullptr, 1, "error not .x at end of argv[0]=%s@@@@ \n", path.c_str());
}

// The path up to and including its last separator, "" without one. A path that a backslash ends
// is no directory that could be changed into.
std::string directory_part(const std::string &path) {
  size_t separator = path.find_last_of("/\\");
  if (separator == std::string::npos)
    return "";
  if (path[separator] != '/')
    STOP_PROGRAM(nullptr, 1, "I don't understand stop");
  return path.substr(0, separator + 1);
}

void say_where(const std::string &path) {
  Owned_text directory(g_get_current_dir());
  SAY("current directory=%s \n", directory.get());
  SAY("argv[0]=%s \n", path.c_str());
}

} // namespace

void WORK_DIR(char *argv) {
  std::string path = argv != nullptr ? argv : "";
  say_where(path);
  refuse_other_names(path);
  if (opens(std::string("./") + CONFIGURATION))
    return;
  std::string directory = directory_part(path);
  if (directory.empty() || !opens(directory + CONFIGURATION))
    STOP_PROGRAM(nullptr, 1, "%s", UNREACHABLE);
  if (chdir(directory.c_str()) != 0 || !opens(CONFIGURATION))
    STOP_PROGRAM(nullptr, 1, "%s", UNREACHABLE);
}

void LOCK_WORK_DIR() {
  if (lock.fd >= 0)
    close(lock.fd);
  lock.fd = open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (lock.fd < 0 || flock(lock.fd, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
    return;
  Owned_text directory(g_get_current_dir());
  STOP_PROGRAM(nullptr, 1, "Mertu is already running in %s \n", directory.get());
}
