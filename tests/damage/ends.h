// The ends of the program that are meant.
#ifndef MERTU_TESTS_DAMAGE_ENDS_H
#define MERTU_TESTS_DAMAGE_ENDS_H

#include <string>

// Whether a program that ended with this status, after this output, ended as it is meant to where
// its files are damaged.
bool IS_MEANT_END(int status, const std::string &output);

#endif
