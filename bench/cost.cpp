// What a piece of work costs.
#include "bench/cost.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

const time_t PRESENT = 1237550400; // noon of day 3000

// The syncs since the program began.
struct {
  double seconds;
  double cpu; // seconds of processor time
  int nb;
} synced;

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double seconds_of(const struct timeval &time) {
  return (double)time.tv_sec + (double)time.tv_usec * 1e-6;
}

double processor_time() {
  double seconds = 0;
  for (int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    struct rusage usage;
    getrusage(who, &usage);
    seconds += seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime);
  }
  return seconds;
}

} // namespace

// These two stand before those of the C library.
extern "C" int fsync(int fd) {
  Clock::time_point start = Clock::now();
  double cpu = processor_time();
  int result = (int)syscall(SYS_fsync, fd);
  synced.cpu += processor_time() - cpu;
  synced.seconds += seconds_since(start);
  synced.nb++;
  return result;
}

extern "C" time_t time(time_t *moment) {
  if (moment != nullptr)
    *moment = PRESENT;
  return PRESENT;
}

Cost COST_OF(const std::function<void()> &work) {
  Cost before;
  before.syncs = synced.seconds;
  before.nb_syncs = synced.nb;
  before.cpu = processor_time() - synced.cpu;
  Clock::time_point start = Clock::now();
  work();
  Cost cost;
  cost.wall = seconds_since(start);
  cost.cpu = processor_time() - synced.cpu - before.cpu;
  cost.syncs = synced.seconds - before.syncs;
  cost.nb_syncs = synced.nb - before.nb_syncs;
  return cost;
}
