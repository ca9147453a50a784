// What every fuzz target is made of: its input in pieces, a directory of its own, properties.
//
// A target is one file in targets/ with one FUZZ_TARGET. It is built twice: with libFuzzer
// (fuzzer_main.cpp) and, for the tests, into one program that replays kept inputs
// (replay_main.cpp). Where the program would end it throws Program_ended instead.
#ifndef MERTU_FUZZ_HARNESS_H
#define MERTU_FUZZ_HARNESS_H

#include <stdio.h>

#include <functional>
#include <string>
#include <vector>

// A target: its name and the procedure that takes one input.
struct Fuzz_target {
  const char *name;
  void (*run)(const std::string &input);
};

// The targets linked into this program.
const std::vector<Fuzz_target> &FUZZ_TARGETS();

// Runs one input: the directory emptied, the day set, then the target.
void RUN_INPUT(const Fuzz_target &target, const std::string &input);

struct Registered_target {
  Registered_target(const char *name, void (*run)(const std::string &input));
};

#define FUZZ_TARGET(name)                                                                          \
  static void name##_target(const std::string &input);                                             \
  static const Registered_target name##_registered(#name, name##_target);                          \
  static void name##_target(const std::string &input)

// A property that must hold; where it does not, it is told and the process aborts.
#define HOLDS(property)                                                                            \
  do {                                                                                             \
    if (!(property))                                                                               \
      PROPERTY_BROKEN(#property, __FILE__, __LINE__);                                              \
  } while (false)

[[noreturn]] void PROPERTY_BROKEN(const char *property, const char *file, int line);

// What is thrown where the program would end.
struct Program_ended {
  int status;
};

// Runs the work. Returns the status with which it would have ended the program; -1 where it came
// back.
int STATUS_OF(const std::function<void()> &work);

// Day number of the moment at which every input runs.
const long FUZZ_DAY = 3000;

// The pieces of an input: texts between lines that hold SEPARATOR alone. There are always nb of
// them, the last ones empty where the input has fewer; the last one takes all that is left.
const char SEPARATOR[] = "%%%%\n";
std::vector<std::string> PIECES(const std::string &input, size_t nb);

// The input up to its first NUL byte.
std::string TEXT_OF(const std::string &input);

// Files of the current directory, which is the target's own.
void PUT_FILE(const std::string &name, const std::string &bytes); // makes the directories above it
std::string GET_FILE(const std::string &name);                    // "" where there is none
bool FILE_THERE(const std::string &name);
// Makes a file older than now by so many seconds.
void AGE_FILE(const std::string &name, int seconds);

// A stream that swallows everything, for a log. Not to be closed.
FILE *NO_LOG();

#endif
