// A fresh directory to work in.
#include "support/prelude.h"

#include "support/scratch.h"

#include <stdlib.h>

namespace fs = std::filesystem;

Scratch_dir::Scratch_dir() : before_(fs::current_path()) {
  std::string pattern = (fs::temp_directory_path() / "mertu_test_XXXXXX").string();
  path_ = mkdtemp(pattern.data());
  fs::current_path(path_);
}

Scratch_dir::~Scratch_dir() {
  std::error_code ignored;
  fs::current_path(before_, ignored);
  fs::remove_all(path_, ignored);
}

void Scratch_dir::write(const std::string &name, const std::string &bytes) const {
  fs::path file = fs::path(path_) / name;
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

std::string Scratch_dir::read(const std::string &name) const {
  std::ifstream file(fs::path(path_) / name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

bool Scratch_dir::exists(const std::string &name) const {
  return fs::exists(fs::path(path_) / name);
}
