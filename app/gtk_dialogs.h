// (G) The real dialogs through which the core asks and tells the learner something.
#ifndef MERTU_APP_GTK_DIALOGS_H
#define MERTU_APP_GTK_DIALOGS_H

// Registers them with util/dialogs. Each is a message dialog, modal on the book's window and gone
// with it; its text is converted from CP1252 to UTF-8 and shows in every locale alike.
//
//   | kind            | looks    | buttons          | answers                                |
//   | QUESTION_RECORD | question | Yes, No, "RAZ ?" | ANSWER_YES, ANSWER_NO, ANSWER_FORGET   |
//   | QUESTION_FORGET | question | Yes, No          | ANSWER_YES, ANSWER_NO                  |
//   | NOTICE_ERROR    | error    | OK               |                                        |
//   | NOTICE_WARNING  | warning  | OK               |                                        |
//
// A dialog that is closed answers ANSWER_CLOSED. Where the book has no window, or loses it while
// the dialog stands, a question is answered ANSWER_NO (nobody is there who could say more) and a
// notice goes unseen. While TRACING a dialog's text is traced as "dialog: %s" and its buttons as in
// app/button_places.h.
void REGISTER_GTK_DIALOGS();

#endif
