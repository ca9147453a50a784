// The question on leaving a lesson: whether what was answered in it is to be recorded.
#ifndef MERTU_QUIZ_RECORD_QUESTION_H
#define MERTU_QUIZ_RECORD_QUESTION_H

#include "util/book.h"

// Asks "Voulez-vous enregistrer la lecon %d ?" (with a cedilla) with ilesson through ASK_LEARNER
// (Yes, No, "RAZ ?") and does what is answered:
//   Yes               RECORD_LESSON: the results are written to the index files, and the last
//                     verdict can no longer be taken back
//   "RAZ ?"           RAZ_LESSON: the lesson's history is forgotten, after a second question
//   No, or closed     nothing is recorded
// Returns whether the window still lives and the lesson is the one that was asked about; the caller
// that gets false touches neither pane nor table.
// Ends of the program: those of RECORD_LESSON and RAZ_LESSON.
bool RECORD_QUESTION(Trf_book *book);

// RECORD_QUESTION for a handler that goes to another lesson: asks only when ilesson is 0 to
// nbt_lesson and its drill has begun (start_lesson 3 or more). True where nothing was asked.
bool RECORD_QUESTION_ON_MOVE(Trf_book *book);

#endif
