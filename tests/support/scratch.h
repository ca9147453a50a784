// A fresh directory to work in, and ends of the program told by status and text.
#ifndef MERTU_TESTS_SUPPORT_SCRATCH_H
#define MERTU_TESTS_SUPPORT_SCRATCH_H

#include <unistd.h>

#include <string>

// A new empty directory, the current one while the record lives; removed with all it holds.
class Scratch_dir {
public:
  Scratch_dir();
  ~Scratch_dir();
  Scratch_dir(const Scratch_dir &) = delete;
  Scratch_dir &operator=(const Scratch_dir &) = delete;

  // Writes a file, making the directories above it.
  void write(const std::string &name, const std::string &bytes) const;
  std::string read(const std::string &name) const;
  bool exists(const std::string &name) const;
  const std::string &path() const {
    return path_;
  }

private:
  std::string path_;
  std::string before_;
};

// The statement ends the program with this status after this text on standard output.
#define ENDS_WITH_STATUS(statement, status, regex)                                                 \
  EXPECT_EXIT(                                                                                     \
      {                                                                                            \
        dup2(2, 1);                                                                                \
        statement;                                                                                 \
      },                                                                                           \
      testing::ExitedWithCode(status), regex)

#endif
