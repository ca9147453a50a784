// Directories of a learner, made from a seed: many dictionaries and years of answers.
#ifndef MERTU_BENCH_LEARNER_LIFE_H
#define MERTU_BENCH_LEARNER_LIFE_H

#include <string>
#include <vector>

struct Life {
  const char *name;    // of its directory
  const char *text;    // how the table calls it
  int nb_dictionaries; // dNNNN.txt, numbered from 1
  int nb_lines;        // lines of each
  unsigned seed;
};

// 100 dictionaries of 100 entries: a full learner's life.
extern const Life FULL_LIFE;
// The same number of lines in few long dictionaries and in many short ones.
extern const Life LONG_DICTIONARIES;
extern const Life MANY_DICTIONARIES;
// A twenty-fifth of the latter two, for the growth.
extern const Life FEW_DICTIONARIES;

// Entries of each dictionary: four lines each, behind eight of its own.
int ENTRIES_OF_DICTIONARY(const Life &life);

// Writes mertu.conf and the dictionaries (UTF-8, accents, tags) into the current directory.
void WRITE_LIFE(const Life &life);

// Fills the histories of every index in ./IDX1: each entry was asked both ways, some years ago to
// yesterday; those of the last dictionary never where last_is_new.
void WRITE_HISTORIES(const Life &life, bool last_is_new);

// Makes dictionaries, working copies and indexes look as if the first were written first, some time
// ago.
void SETTLE_TIMES(const Life &life);
// The same; then the first nb dictionaries are edited: a line comes, or goes again, and every entry
// behind it stands elsewhere.
void EDIT_DICTIONARIES(const Life &life, int nb);

// Turns every index in ./IDX1 into the form before, with six-field histories.
void WRITE_OLD_FORM(const Life &life);

// A tag that one entry in thirty carries.
extern const char COMMON_TAG[];

// The files of the directory: "d0001.txt", "./CPY/d0001.txt", "./IDX1/idx1_d0001.txt", ...
std::vector<std::string> DICTIONARIES_OF(const Life &life);
std::vector<std::string> COPIES_OF(const Life &life);
std::vector<std::string> INDEXES_OF(const Life &life);

// Whole files.
std::string BYTES_OF(const std::string &path);
void WRITE_BYTES(const std::string &path, const std::string &bytes);
// The bytes of these files together.
double SIZE_OF(const std::vector<std::string> &paths);

#endif
