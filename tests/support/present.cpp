// The present moment, chance and processor time: the C library's own unless a test says otherwise.
#include "support/present.h"

#include <dlfcn.h>

namespace {

// What the tests have set.
struct {
  bool moment_set = false;
  time_t moment = 0;
  std::vector<int> numbers;
  size_t next_number = 0;
  unsigned seed = 0;
  int nb_seeds = 0;
  clock_t step = 0;
  clock_t ticks = 0;
} present;

template <typename Routine> Routine *system_routine(const char *name) {
  return reinterpret_cast<Routine *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" time_t time(time_t *result) noexcept {
  static auto *real = system_routine<time_t(time_t *)>("time");
  time_t now = present.moment_set ? present.moment : real(nullptr);
  if (result != nullptr)
    *result = now;
  return now;
}

extern "C" int rand() noexcept {
  static auto *real = system_routine<int()>("rand");
  if (present.numbers.empty())
    return real();
  return present.numbers[present.next_number++ % present.numbers.size()];
}

extern "C" void srand(unsigned seed) noexcept {
  static auto *real = system_routine<void(unsigned)>("srand");
  present.seed = seed;
  present.nb_seeds++;
  real(seed);
}

extern "C" clock_t clock() noexcept {
  static auto *real = system_routine<clock_t()>("clock");
  if (present.step == 0)
    return real();
  present.ticks += present.step;
  return present.ticks;
}

void SET_PRESENT(time_t moment) {
  present.moment_set = true;
  present.moment = moment;
}

void SET_PRESENT_DAY(int year, int month, int day) {
  struct tm date = {};
  date.tm_year = year - 1900;
  date.tm_mon = month - 1;
  date.tm_mday = day;
  date.tm_hour = 12;
  date.tm_isdst = -1;
  SET_PRESENT(mktime(&date));
}

void RESET_PRESENT() {
  present.moment_set = false;
}

void SET_RAND(const std::vector<int> &numbers) {
  present.numbers = numbers;
  present.next_number = 0;
}

unsigned SEED_SEEN() {
  return present.seed;
}

int NB_SEEDS_SEEN() {
  return present.nb_seeds;
}

void SET_CLOCK_STEP(clock_t ticks) {
  present.step = ticks;
}
