// (G) "!ltag": the tags in use, in the quiz pane and in the file ./mertu_ltag.
#ifndef MERTU_COMMAND_TAG_PANE_H
#define MERTU_COMMAND_TAG_PANE_H

#include "util/book.h"

// Empties the quiz pane and shows the tags of all dictionaries there, a line each, in alphabetical
// order; writes the same to ./mertu_ltag (format in command/tag_list.h). Sets nb_line; logs
// "DICO_TAGS done\n". The pane has room for 200 tags; the file holds all. A file that cannot be
// written: "cannot write file %s: %s \n" in the log and on standard output.
// Ends of the program: those of COLLECT_TAGS and TAG_LINE.
void DICO_TAGS(Trf_book *book);

#endif
