// Included before every core file of the fuzzers' build: the end of the program is thrown, so that
// destructors run and the fuzzer goes on.
#ifndef MERTU_FUZZ_PROGRAM_END_H
#define MERTU_FUZZ_PROGRAM_END_H

#include <cstdlib>

[[noreturn]] void END_FUZZED_PROGRAM(int status);

#define exit(status) END_FUZZED_PROGRAM(status)

#endif
