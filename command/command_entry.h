// (G) The command entry "Cmd :" above the quiz pane.
#ifndef MERTU_COMMAND_COMMAND_ENTRY_H
#define MERTU_COMMAND_COMMAND_ENTRY_H

#include <gtk/gtk.h>

#include "command/command_forms.h"
#include "util/book.h"

// "activate" handler of the entry, called when the learner presses Enter in it. Does the command
// that is typed there (command/command_forms.h); the text stays.
//
// "!sound" only switches the sound. Every other text closes the files of the running lesson, asks
// the record question (quiz/record_question.h) and ends the drill (start_lesson 0), then:
//
//   a composed lesson   has entries: ilesson 0, CONFIRM0_LESSON; none: the lesson before,
//                       CONFIRM0_NEW_LESSON(1)
//   check, transfer,    the lesson before, CONFIRM0_NEW_LESSON(2)
//   synchronise
//   "!dico"             the lesson before, CONFIRM0_NEW_LESSON(3)
//   "!ltag", "!help"    the lesson before, also a composed one, is not announced: what was asked
//                       for stays in the pane
//   a number, an alias  that lesson (lesson 1 for a number past the last one), CONFIRM0_LESSON;
//                       none: the lesson before, CONFIRM0_NEW_LESSON(4)
//
// The lesson before is 1 where a composed lesson ran, "!ltag" and "!help" apart. A text with a
// character that CP1252 lacks names no lesson. A window that goes meanwhile ends the handler.
// Ends of the program: those of the routines called.
void callback_entry_book(GtkWidget *widget, Trf_book *book);

// "button-press-event" handler of the entry: deletes the selected text, so that the learner can
// type over the last command; a double press is left to the entry. A call without an event (null)
// is a press. Returns FALSE: the press goes on to the entry.
gboolean clean_entry_book(GtkWidget *widget, GdkEvent *event, Trf_book *book);

#endif
