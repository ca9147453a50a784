// (G) A lesson confirmed before it is drilled: announced, described, started.
//
//   start_lesson   0 nothing announced, 1 announced, 2 described, 3 drilling
#ifndef MERTU_QUIZ_CONFIRM_LESSON_H
#define MERTU_QUIZ_CONFIRM_LESSON_H

#include <gtk/gtk.h>

#include "util/book.h"

// Leaves the current lesson (active 1, answer button sensitive, streams closed; nb_posit 0 unless
// ilesson is 0: a composed lesson keeps its table) and, when start_lesson is 0, announces lesson
// ilesson in the cleared pane: start_lesson becomes 1, the text pane is emptied, the buttons are
// labelled.
// Ends the program: status 1, "CONFIRM0_LESSON v_page= NULL error \n" (also in the log).
void CONFIRM0_LESSON(Trf_book *book);

// The same after a command, whose outcome stands first; active, the answer button and the text pane
// are left alone.
//   code   1 no word for the lesson, 2 data base checked, 3 dictionary listed; any other: unknown
// Ends the program: status 1, "CONFIRM0_NEW_LESSON v_page= NULL error \n" (also in the log).
void CONFIRM0_NEW_LESSON(int code, Trf_book *book);

// The later steps, by start_lesson: 0 and 1 describe the lesson (start_lesson 1 and 2). 2 with the
// left button loads it and shows the first question (3), or, when it has no word, says so and makes
// the next lesson current (0); with any other button the next lesson is described at once (1; no
// upper bound). Else nothing. Drains events at 2, and ends there when the window went or the lesson
// moved on meanwhile.
//   event   the press
// Ends the program: status 1, "CONFIRM_LESSON v_page= NULL error \n" and the same with "level 1 "
// or "level 2 " before "v_page" (also in the log); LESSON_FROM_ORDER's status 2 past the last
// lesson; those of INIT_LESSON and DISPLAY_ARTICLE.
void CONFIRM_LESSON(GdkEvent *event, Trf_book *book);

#endif
