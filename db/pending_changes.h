// History lines written over where they stand: each as a whole or not at all, whatever moment the
// machine dies at.
//
// A line may lie across the border of two blocks of the disk, and a machine may die between them.
// So what is about to be written is noted before, with the bytes that stand there; the note is on
// the disk before the first line is touched, and goes when the last one is on the disk. Where a
// start finds a note, it carries it out: what was recorded is recorded.
//
// "./mertu_pending", there only while lines are being written, holds for each place:
//
//   | bytes                    | content                                                        |
//   | PATH START LENGTH and LF | idx1 file; offset of the first byte, from 0; number of bytes   |
//   | LENGTH bytes and LF      | what stood there                                               |
//   | LENGTH bytes and LF      | what comes there                                               |
//
// A place is carried out where each of its bytes is the old or the new one. Anything else that
// stands there came later, in an index made anew, and is left alone. Places behind one that cannot
// be understood are passed over; so is a file whose name does not begin with "idx1_".
#ifndef MERTU_DB_PENDING_CHANGES_H
#define MERTU_DB_PENDING_CHANGES_H

#include <stdio.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

// The bytes of a place before and after, as many.
struct Trf_change {
  std::string before;
  std::string after;
};

// A place: idx1 file and offset of its first byte.
using Trf_place = std::pair<std::string, long>;

// Changes one behind the other.
using Trf_changes = std::vector<std::pair<Trf_place, Trf_change>>;

// Changes that are being made.
struct Trf_pending {
  std::map<Trf_place, Trf_change> waiting; // to be written; no two overlap
  Trf_changes unsure; // written, but not known to be whole on the disk: their note stays
};

// A file that could not be written, and the errno that tells why.
using Trf_unwritten = std::vector<std::pair<std::string, int>>;

// Adds a change; nothing where the bytes are those that stand there. fp: the file, open for
// reading; borrowed. path: its path, without blanks. start: offset of the first byte, from 0. text:
// the new bytes, in the room of old ones, none of which waits to be changed.
// Returns 0, or the errno that tells why the old bytes cannot be read (EIO: they end before).
int ADD_CHANGE(FILE *fp, const std::string &path, long start, const std::string &text,
               Trf_pending *pending);

// Whether bytes from offset start up to and without offset end of the file wait to be changed.
bool IS_PENDING(const std::string &path, long start, long end, const Trf_pending &pending);

// Writes what waits, each place as one write, and syncs the files; nothing waits then. A place that
// cannot be written keeps its old bytes; where that too fails, or a sync, the note stays.
// Where the note cannot be written (a full disk) or removed, that is told ("cannot write file
// ./mertu_pending: %s \n", log and standard output), and the places are written all the same.
// fp_log: the log, may be null. Returns the files that could not be written, once for each place.
Trf_unwritten WRITE_PENDING(Trf_pending *pending, FILE *fp_log);

// Carries out what a note says that was left behind, then removes it. Nothing to do costs one look
// for that file. The files are synced and keep their modification times: an index that looks newer
// than it is would not be rebuilt. A file that is not there has nothing to finish. To be called
// before an idx1 file is read; MEND_FORGOTTEN (db/mend_forgotten) does. fp_log: the log, may be
// null.
// Ends the program with status 1 where the note cannot be read ("cannot read file %s: %s \n" in the
// log and on standard output), a file cannot be finished or the note not be removed ("cannot write
// file %s: %s \n"): what is read then might be half a line.
void FINISH_PENDING(FILE *fp_log);

#endif
