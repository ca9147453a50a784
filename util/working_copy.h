// The working copy of a dictionary (CPY/): every line in CP1252 with one form of line end.
//
//   | source                                | working copy                                      |
//   |---------------------------------------|---------------------------------------------------|
//   | LF                                    | CR LF                                             |
//   | CR, or CR CR, with a line behind it   | CR LF                                             |
//   | CR LF, CR CR LF                       | CR CR LF (read as one line end)                   |
//   | CR or CR CR at the end of the file    | CR                                                |
//   | a line of good UTF-8                  | CP1252; as it stands where it has no such form    |
//   | any other line                        | as it stands, NUL bytes too                       |
//
// The source is taken in blocks of 512 bytes: a line that a block end cuts is looked at piece by
// piece. The index holds offsets into the working copy, so all this is part of its format.
#ifndef MERTU_UTIL_WORKING_COPY_H
#define MERTU_UTIL_WORKING_COPY_H

// Bytes of a block of the source.
const int WIN_BLOCK = 512;

// Writes the working copy of `source` to `destination`, replaced as a whole (util/safe_write).
// Returns the number of changes (0 or more: line ends given a new form, pieces of lines taken to
// CP1252 or failing to), -1 when the source cannot be opened (a directory counts as such), -2 when
// the destination cannot be opened.
// Ends the program: status 1, "cannot read file " or "cannot write file " (with the log of
// SAVED_LOG) when reading or writing fails after that; the old destination then stands.
int win_file(const char *source, const char *destination);

#endif
