// A forgotten lesson made whole again, so that it does not hurt the entries behind it.
//
// An entry that was forgotten (RAZ_LESSON) is left with its name line and ONE line, two blank
// history lines with no line end between them and the last two old bytes: 106 characters. Read as
// it stands, the name line of the next entry would be taken for the R->Q history, drilled wrong and
// overwritten, and at the end of a file the next rebuild would end the program. So the files are
// noted before they are erased, and mended before anyone reads them: name line, blank line, blank
// line in the same 108 bytes. No offset moves.
//
// "./mertu_erased", there only while something is to be mended, is text with "\n" line ends:
//
//   | line               | content                                                              |
//   | PATH               | idx1 file that was, or was about to be, erased                       |
//   | PATH SECONDS NANOS | the same with its modification time before the mend, which is kept   |
//   |                    | also where the program ends in the middle of it: an index that looks |
//   |                    | newer than it is would not be rebuilt                                |
#ifndef MERTU_DB_MEND_FORGOTTEN_H
#define MERTU_DB_MEND_FORGOTTEN_H

#include <stdio.h>

#include <set>
#include <string>

#include "util/owned.h"

// Notes the idx1 files that are about to be erased, beside those noted already; on the disk when
// this returns. Returns false where "./mertu_erased" cannot be read or written ("cannot write file
// %s: %s \n" in the log and on standard output): then nothing may be erased.
bool NOTE_ERASED(const std::set<std::string> &paths, FILE *fp_log);

// Finishes lines that were being written (FINISH_PENDING), mends the files noted, then removes
// "./mertu_erased". Nothing to do costs one look for each note.
// To be called before idx1 files are opened: at the start between MAKE_ST_ALIAS and
// IDX1_ALL_LESSONS, and before each load, composition, report, recording, check, transfer and
// synchronisation.
// The records are mended as WRITE_PENDING writes; the files are synced and keep their modification
// times; nothing is logged. A file that is not there has nothing to mend.
// Ends the program with status 1 where the notes cannot be read ("cannot read file %s: %s \n" in
// the log and on standard output) or a file cannot be mended ("cannot write file %s: %s \n"):
// reading it would lose histories; and as FINISH_PENDING does. fp_log: the log, may be null.
void MEND_FORGOTTEN(FILE *fp_log);

// A copy, without a name, of an index whose erased records nobody noted here (that of another copy
// of the database), every one of them whole; the index is not changed. fp: the index, open for
// reading at its start; borrowed. Returns null where it cannot be read or copied (errno tells why).
Owned_stream MENDED_COPY(FILE *fp);

#endif
