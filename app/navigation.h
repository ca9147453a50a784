// (G) The buttons "Quit", "Prev" and "Next".
//
// Each first asks whether to record the drill that is left (quiz/record_question.h). A window that
// goes while the question stands ends the handler: nothing is announced or remembered.
#ifndef MERTU_APP_NAVIGATION_H
#define MERTU_APP_NAVIGATION_H

#include <gtk/gtk.h>

#include "util/book.h"

// "clicked" handler of "Quit": asks the record question when the drill has begun (start_lesson
// above 2), writes Mertu_last_state (app/last_state.h; a file that cannot be created is passed over
// in silence) and ends the main loop.
// Ends the program: those of RECORD_QUESTION; status 1, "cannot write file Mertu_last_state: ..."
// (also in the log) when a write fails.
void ON_QUIT(GtkWidget *widget, Trf_book *book);

// "clicked" handler of "Next": makes the answer button sensitive, asks the record question
// (RECORD_QUESTION_ON_MOVE) and announces the next lesson: number + 1, from a number below 1 one
// more than the number without its sign; 1 past the last lesson.
// Ends of the program: those of RECORD_QUESTION and CONFIRM0_LESSON.
void cback_next_less(GtkWidget *widget, Trf_book *data);

// "clicked" handler of "Prev": the same for the lesson before: number - 1, from a number below 1
// one less than the number without its sign; the last lesson where that is below 1.
void cback_prev_less(GtkWidget *widget, Trf_book *data);

#endif
