// A healthy working directory, and one random damage to it.
#ifndef MERTU_TESTS_DAMAGE_DAMAGE_H
#define MERTU_TESTS_DAMAGE_DAMAGE_H

#include <map>
#include <string>

// The files of a directory and of those below it, by name: what they hold.
using Damage_files = std::map<std::string, std::string>;
Damage_files FILES_OF(const std::string &directory);

// Writes mertu.conf and three dictionaries of several kinds of entries into the current directory.
void WRITE_DICTIONARIES();

// Gives every entry of every index in the current directory a history of its own, and writes what
// else a learner's directory holds after some lessons: a last state, another copy of the database
// in OTHER/ with histories of its own, a lesson file.
void WRITE_HISTORIES();

// Damages one thing in the current directory: a random file, in a random way. The same seed does
// the same. Returns what was done.
std::string DAMAGE(unsigned seed);

// The histories of an index by question (two lines each), the first of equal questions.
std::map<std::string, std::string> HISTORIES_OF(const std::string &index);

#endif
