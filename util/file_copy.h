// A file copied byte for byte, and the back-up beside a file.
//
// A copy replaces its destination as a whole (util/safe_write): a copy that cannot be finished
// leaves the old file and ends the program.
#ifndef MERTU_UTIL_FILE_COPY_H
#define MERTU_UTIL_FILE_COPY_H

#include "util/owned.h"
#include "util/safe_write.h"

// What stands before the name of a back-up.
const char BACK_UP_PREFIX[] = "cpy_";

// Copies a file. Returns 0, 1 when the source cannot be opened for reading (a directory counts as
// such), 2 when the destination cannot be opened for writing.
// Ends the program: status 1, "cannot read file " or "cannot write file " (with the log of
// SAVED_LOG) when reading or writing fails after that; the old destination then stands.
int copier_fichier(const char *source, const char *destination);

// Copies an open file, from where it stands, into a stream, which is flushed. Both are borrowed.
// Returns 0, 1 when the file cannot be read, 2 when the copy cannot be written; errno tells why.
int COPY_STREAM(FILE *fp, FILE *copy);

// Copies an open file, from where it stands, to a scratch file, which is made anew: whoever dies
// in the meantime needs it no more, so it is not synced. A file that is its own scratch file stays
// as it is. fp: open for reading; borrowed.
// Returns 0, 1 when the file cannot be read, 2 when the scratch file cannot be written; errno tells
// why.
int COPY_TO_SCRATCH(FILE *fp, const char *scratch);

// Copies the file to its back-up, "cpy_" before its name in its own directory ("IDX1/idx1_verbs"
// gives "./IDX1/cpy_idx1_verbs"); an older back-up is replaced. Returns a new string, the path of
// the back-up; the caller frees it with g_free. Null when there is no such file or the back-up
// cannot be opened. Ends the program as copier_fichier does.
char *back_up_file(char *file_path);

// Opens a file for reading bytes; null (errno tells why) when it cannot be opened or is a
// directory.
Owned_stream OPEN_SOURCE(const char *source);

// Reads up to `nb` bytes of the source. Returns how many were read, 0 at its end.
// Ends the program when reading fails: the new file made of it is dropped, then status 1, "cannot
// read file %s: %s \n" (with the log of SAVED_LOG).
size_t READ_OR_STOP(FILE *fp, const char *source, void *block, size_t nb, Trf_new_file *file);

#endif
