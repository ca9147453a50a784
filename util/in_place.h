// Bytes of a file changed where they stand: the file keeps its size and every offset in it.
#ifndef MERTU_UTIL_IN_PLACE_H
#define MERTU_UTIL_IN_PLACE_H

#include <stdio.h>

#include <string>

// Writes `text` over the bytes that begin at offset `start` (from 0), as one write given to the
// system at once. fp: the file, open for reading and writing; what it has read ahead is not
// renewed, so open it afresh before the same bytes are read again.
// Returns 0, or the errno that tells why not all was written; what had been written by then is
// replaced by what stood there.
int WRITE_IN_PLACE(FILE *fp, long start, const std::string &text);

// Hands what was written into the file to the disk, whoever wrote it. Returns 0, or the errno that
// tells why it could not be done.
int SYNC_FILE(const char *path);

// Hands the names in a directory to the disk, so that a file made or removed there stays so.
// path: a file in that directory. A file system that cannot do it is passed over.
void SYNC_DIRECTORY_OF(const char *path);

#endif
