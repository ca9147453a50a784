// The list of aliases, built from the working copies at start-up.
#ifndef MERTU_DB_ALIAS_LIST_H
#define MERTU_DB_ALIAS_LIST_H

#include <stdio.h>

#include "config/registry.h"

// Sets st_alias to the aliases of all dictionaries in registry order, each preceded and followed
// by a blank (" fr1 en2 voc "), in a block of its length plus 5 bytes; an earlier list is freed.
// fp_log: the log, or null. Reads the working copy of every dictionary.
// Ends of the program: 32 "MAKE_ST_ALIAS error 32 CPY for lesson %d not found " where a working
// copy does not open; 32 "MAKE_ST_ALIAS no alias in file %s STOP " (the dictionary's path) where a
// dictionary has no alias: the aliases behind it would name the wrong dictionaries; 1 "cannot read
// file %s: %s \n" where a working copy cannot be read.
void MAKE_ST_ALIAS(FILE *fp_log, Trf_string *G_dico);

#endif
