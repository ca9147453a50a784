// (G) "!help": the file ./mertu_list.txt in the quiz pane.
#ifndef MERTU_COMMAND_HELP_H
#define MERTU_COMMAND_HELP_H

#include "util/book.h"

// Empties the quiz pane and shows the lines of ./mertu_list.txt there (text; blanks at both ends of
// a line are not shown, accent notation is decoded), at most 10000, up to a line that contains
// "END_OF_FILE"; a line longer than 100 bytes is cut at 100, an empty one is a blank line. The pane
// has room for 200 lines. A file that cannot be opened is told in the pane. Sets nb_line, adds 1 to
// start_lesson, logs "DISPLAY_HELP done\n".
void DISPLAY_HELP(Trf_book *book);

#endif
