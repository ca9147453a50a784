// Blanks and words. A blank is the space character alone.
#ifndef MERTU_UTIL_WORDS_H
#define MERTU_UTIL_WORDS_H

#include <string>

// Makes every run of spaces in s one space, in place; one at the start and one at the end stay.
void RM_EXTRA_BLANCS(char *s);

// Cuts s, in place, at its first space: everything from there on is dropped.
void RM_ALL_BLANCS(char *s);

// The n-th word (from 1) of a list of words separated by spaces; "" when there is none.
std::string NTH_WORD(const char *list, int n);

// How many words the list has.
int COUNT_WORDS(const char *list);

#endif
