// How the core asks and tells the learner something: a record of procedures.
//
// The window registers real dialogs; a test registers scripted answers. Without a record a
// question is answered No and a notice goes unseen.
#ifndef MERTU_UTIL_DIALOGS_H
#define MERTU_UTIL_DIALOGS_H

#include "util/book.h"

enum Trf_answer { ANSWER_NO, ANSWER_YES, ANSWER_FORGET, ANSWER_CLOSED };
enum Trf_question { QUESTION_RECORD, QUESTION_FORGET };
enum Trf_notice { NOTICE_ERROR, NOTICE_WARNING };

struct Trf_dialogs {
  // Asks a question (text in CP1252) in a modal dialog on the window and waits for the answer.
  // QUESTION_RECORD offers Yes, No and "RAZ ?" (ANSWER_FORGET); QUESTION_FORGET Yes and No.
  Trf_answer (*ask)(Trf_question kind, const char *text, Trf_book *book);
  // Shows a notice (text in CP1252) with an OK button and waits until it is closed.
  void (*tell)(Trf_notice kind, const char *text, Trf_book *book);
};

// Registers the dialogs (borrowed; null for none).
void SET_DIALOGS(const Trf_dialogs *dialogs);

// Asks through the registered dialogs.
Trf_answer ASK_LEARNER(Trf_question kind, const char *text, Trf_book *book);

// Tells through the registered dialogs.
void TELL_LEARNER(Trf_notice kind, const char *text, Trf_book *book);

#endif
