// A process of its own that is killed while it works on files.
#ifndef MERTU_TESTS_SUPPORT_KILLED_H
#define MERTU_TESTS_SUPPORT_KILLED_H

#include <sys/resource.h>

// Runs `work` in a forked process, its standard output thrown away. It is killed (SIGKILL) at a
// step, counted down from `countdown`; 0 for never. Each fsync, pwrite, rename, unlink, futimens
// and utimensat is two steps: odd numbers kill before one, even numbers after it. Where `limit` is
// not 0, it is also killed when a file grows beyond so many bytes. Returns whether it was killed. A
// process that ends by itself with another status than 0 fails the test.
bool KILLED_RUN(void (*work)(), int countdown, rlim_t limit);

#endif
