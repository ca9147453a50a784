// A learner's directory with two dictionaries of three entries, as it stands at one moment, and
// what can be read of its histories.
#ifndef MERTU_TESTS_FAULTS_HOME_H
#define MERTU_TESTS_FAULTS_HOME_H

#include <map>
#include <string>
#include <vector>

#include "support/scratch.h"

// Every file of a directory and of those below it: what it holds, and its age in seconds.
struct Kept_file {
  std::string bytes;
  long age = 0;
};
using Kept_files = std::map<std::string, Kept_file>;

// The files of the current directory.
Kept_files KEEP_FILES();
// Writes them into the current directory, as old as they were.
void RESTORE_FILES(const Kept_files &files);

// mertu.conf and the dictionaries one.txt and two.txt; one borrows an entry of two.
void WRITE_DICTIONARIES();
// Turns the entries of dictionary one round and puts text in front.
void EDIT_DICTIONARY_ONE();
// Gives every entry of the indexes a history of its own, and makes another copy of the database, in
// OTHER/, with other histories. The indexes are those of a first start.
void WRITE_HISTORIES();
// What was done so far was done yesterday: dictionaries before copies before indexes.
void SETTLE();

// The questions of a dictionary ("one.txt").
std::vector<std::string> QUESTIONS_OF(const std::string &dictionary);

// The history of an entry: its Q->R and its R->Q line. A line never filled reads as one of zeros.
using History = std::pair<std::string, std::string>;
// The history of an entry answered once in each direction (see operations.cpp), or corrected.
History ANSWERED(const History &history);
History CORRECTED(const History &history);
// By question. Every entry of both indexes is there, at its offset in the working copy, or the
// test fails.
std::map<std::string, History> READ_HISTORIES(const std::string &when);

#endif
