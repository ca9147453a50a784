// Replays kept inputs:  fuzz_replay TARGET DIRECTORY...  runs every file of the directories.
#include <string.h>

#include <algorithm>
#include <filesystem>

#include "fuzz/harness.h"

namespace {

const Fuzz_target *target_of(const char *name) {
  for (const Fuzz_target &target : FUZZ_TARGETS())
    if (strcmp(target.name, name) == 0)
      return &target;
  return nullptr;
}

std::vector<std::string> files_of(int argc, char **argv) {
  std::vector<std::string> files;
  for (int i = 2; i < argc; i++)
    for (const auto &entry : std::filesystem::directory_iterator(argv[i]))
      files.push_back(std::filesystem::absolute(entry.path()));
  std::sort(files.begin(), files.end());
  return files;
}

} // namespace

int main(int argc, char **argv) {
  const Fuzz_target *target = argc < 3 ? nullptr : target_of(argv[1]);
  if (target == nullptr) {
    fprintf(stderr, "usage: fuzz_replay TARGET DIRECTORY...\n");
    return 2;
  }
  std::vector<std::string> files = files_of(argc, argv);
  for (const std::string &file : files) {
    fprintf(stderr, "%s %s\n", target->name, file.c_str());
    RUN_INPUT(*target, GET_FILE(file));
  }
  fprintf(stderr, "%s: %zu inputs\n", target->name, files.size());
  return files.empty() ? 1 : 0;
}
