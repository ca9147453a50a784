// A process of its own that is killed while it works on files.
#include "support/prelude.h"

#include "support/killed.h"

#include <dlfcn.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Steps until the process is killed; 0 for never.
struct {
  int countdown;
} death;

void die_when_due() {
  if (death.countdown > 0 && --death.countdown == 0)
    raise(SIGKILL);
}

template <typename Routine> Routine *system_routine(const char *name) {
  return reinterpret_cast<Routine *>(dlsym(RTLD_NEXT, name));
}

void prepare_death(int countdown, rlim_t limit) {
  if (freopen("/dev/null", "w", stdout) == nullptr)
    _exit(99);
  struct rlimit size = {limit, limit};
  if (limit > 0 && setrlimit(RLIMIT_FSIZE, &size) != 0)
    _exit(99);
  death.countdown = countdown;
}

} // namespace

// Weak, so that a test program may have its own.
#define REPLACEABLE extern "C" __attribute__((weak))

REPLACEABLE int fsync(int fd) {
  static auto *real = system_routine<int(int)>("fsync");
  die_when_due();
  int result = real(fd);
  die_when_due();
  return result;
}

REPLACEABLE ssize_t pwrite(int fd, const void *bytes, size_t nb, off_t start) {
  static auto *real = system_routine<ssize_t(int, const void *, size_t, off_t)>("pwrite");
  die_when_due();
  ssize_t result = real(fd, bytes, nb, start);
  die_when_due();
  return result;
}

REPLACEABLE int rename(const char *from, const char *to) noexcept {
  static auto *real = system_routine<int(const char *, const char *)>("rename");
  die_when_due();
  int result = real(from, to);
  die_when_due();
  return result;
}

REPLACEABLE int unlink(const char *path) noexcept {
  static auto *real = system_routine<int(const char *)>("unlink");
  die_when_due();
  int result = real(path);
  die_when_due();
  return result;
}

REPLACEABLE int futimens(int fd, const struct timespec times[2]) noexcept {
  static auto *real = system_routine<int(int, const struct timespec *)>("futimens");
  die_when_due();
  int result = real(fd, times);
  die_when_due();
  return result;
}

REPLACEABLE int utimensat(int fd, const char *path, const struct timespec times[2],
                          int flags) noexcept {
  using Set_times = int(int, const char *, const struct timespec *, int);
  static auto *real = system_routine<Set_times>("utimensat");
  die_when_due();
  int result = real(fd, path, times, flags);
  die_when_due();
  return result;
}

bool KILLED_RUN(void (*work)(), int countdown, rlim_t limit) {
  fflush(nullptr);
  pid_t child = fork();
  if (child == 0) {
    prepare_death(countdown, limit);
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << status;
  return WIFSIGNALED(status);
}
