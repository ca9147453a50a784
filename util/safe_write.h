// A file is replaced as a whole: written beside the old one, flushed, synced, renamed over it.
//
// At every instant the old or the new whole file stands under its name. A symbolic link is
// followed (the file it names is replaced), and the mode of an old file is kept. An old file that
// holds the same bytes stays and becomes as young: a check of what has not changed writes nothing.
#ifndef MERTU_UTIL_SAFE_WRITE_H
#define MERTU_UTIL_SAFE_WRITE_H

#include <stdio.h>

#include <memory>
#include <string>

// A file being replaced. Not copied; a file that is never committed is removed with its record.
struct Trf_new_file {
  FILE *fp = nullptr;             // the new file, open for reading and writing
  std::string destination;        // the file that will be replaced, links resolved
  std::string beside;             // where the new one is written until then
  std::unique_ptr<char[]> buffer; // that of the stream: most files are written at once

  Trf_new_file() = default;
  Trf_new_file(const Trf_new_file &) = delete;
  Trf_new_file &operator=(const Trf_new_file &) = delete;
  ~Trf_new_file();
};

// Opens the file beside `destination` (its directory, ".new_" before its name). Returns false,
// with errno telling why, when the destination could not be opened for writing: an empty name, a
// missing or unwritable directory, something of that name that is no plain file (a directory, a
// device), an old file without write permission. A file that the record still held is dropped
// first.
bool OPEN_NEW_FILE(const char *destination, Trf_new_file *file);

// The same with the name of the file beside it given by the caller.
bool OPEN_NEW_FILE_AS(const char *destination, const char *beside, Trf_new_file *file);

// Flushes, syncs and closes the new file and renames it over the old one; or, where that holds the
// same bytes, gives it the time of the moment and removes the new one. Returns 0, or the errno of
// the step that failed (a write before counts); the old file then still stands and the new one is
// removed. EBADF when none is open.
int COMMIT_NEW_FILE(Trf_new_file *file);

// Removes the new file without touching the old one.
void DROP_NEW_FILE(Trf_new_file *file);

// COMMIT_NEW_FILE; a failure writes "cannot write file %s: %s \n" (the destination as the caller
// named it, and the reason) to standard output and the log and ends the program with status 1.
void COMMIT_OR_STOP(Trf_new_file *file, const char *name, FILE *fp_log);

#endif
