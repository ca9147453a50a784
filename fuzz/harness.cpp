// What every fuzz target is made of: its input in pieces, a directory of its own, properties.
#include "fuzz/harness.h"

#include <ftw.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/present.h"
#include "util/dialogs.h"
#include "util/report.h"

namespace {

std::vector<Fuzz_target> &registered() {
  static std::vector<Fuzz_target> targets;
  return targets;
}

// The directory that all inputs of this process work in; removed by a good end of the process.
std::string &directory() {
  static std::string path;
  return path;
}

void remove_directory() {
  std::error_code ignored;
  std::filesystem::remove_all(directory(), ignored);
}

// Memory file systems spare the disk millions of small files.
void make_directory() {
  const char *place = getenv("TMPDIR");
  if (place == nullptr)
    place = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
  std::string pattern = std::string(place) + "/mertu_fuzz_XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) {
    perror(pattern.c_str());
    abort();
  }
  directory() = pattern;
  atexit(remove_directory);
}

int remove_entry(const char *path, const struct stat *, int, struct FTW *at) {
  if (at->level > 0)
    remove(path);
  return 0;
}

void empty_directory() {
  nftw(".", remove_entry, 16, FTW_DEPTH | FTW_PHYS);
}

// Once in the process: what is printed would drown what the fuzzer tells.
void start() {
  make_directory();
  if (freopen("/dev/null", "w", stdout) == nullptr)
    abort();
}

} // namespace

const std::vector<Fuzz_target> &FUZZ_TARGETS() {
  return registered();
}

Registered_target::Registered_target(const char *name, void (*run)(const std::string &input)) {
  registered().push_back({name, run});
}

void PROPERTY_BROKEN(const char *property, const char *file, int line) {
  fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, property);
  abort();
}

void RUN_INPUT(const Fuzz_target &target, const std::string &input) {
  if (directory().empty())
    start();
  if (chdir(directory().c_str()) != 0)
    abort();
  empty_directory();
  SET_PRESENT_DAY(2009, 3, 20);
  SET_RAND({});
  SET_SAVED_LOG(nullptr);
  SET_DIALOGS(nullptr);
  STATUS_OF([&] { target.run(input); });
}

int STATUS_OF(const std::function<void()> &work) {
  try {
    work();
  } catch (const Program_ended &end) {
    return end.status;
  }
  return -1;
}

std::vector<std::string> PIECES(const std::string &input, size_t nb) {
  std::vector<std::string> pieces;
  size_t at = 0;
  while (pieces.size() + 1 < nb) {
    size_t end = input.find(SEPARATOR, at);
    if (end == std::string::npos)
      break;
    pieces.push_back(input.substr(at, end - at));
    at = end + sizeof SEPARATOR - 1;
  }
  pieces.push_back(input.substr(at));
  pieces.resize(nb);
  return pieces;
}

std::string TEXT_OF(const std::string &input) {
  return input.c_str();
}

void PUT_FILE(const std::string &name, const std::string &bytes) {
  size_t separator = name.find_last_of('/');
  if (separator != std::string::npos)
    std::filesystem::create_directories(name.substr(0, separator));
  std::ofstream(name, std::ios::binary) << bytes;
}

std::string GET_FILE(const std::string &name) {
  std::ostringstream bytes;
  bytes << std::ifstream(name, std::ios::binary).rdbuf();
  return bytes.str();
}

bool FILE_THERE(const std::string &name) {
  return access(name.c_str(), F_OK) == 0;
}

void AGE_FILE(const std::string &name, int seconds) {
  time_t now = time(nullptr);
  struct timeval times[2] = {{now - seconds, 0}, {now - seconds, 0}};
  utimes(name.c_str(), times);
}

FILE *NO_LOG() {
  static FILE *fp = fopen("/dev/null", "w");
  return fp;
}

// The ends of the program: the fuzzers' build calls the first (program_end.h), the linker hands the
// calls of the replay to the second.
[[noreturn]] void END_FUZZED_PROGRAM(int status) {
  throw Program_ended{status};
}

extern "C" [[noreturn]] void __wrap_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status) {
  throw Program_ended{status};
}
