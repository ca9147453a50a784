// (G) A lesson confirmed before it is drilled: announced, described, started.
#include "quiz/confirm_lesson.h"

#include <string.h>

#include "config/registry.h"
#include "lesson/lesson_name.h"
#include "lesson/numbered_lesson.h"
#include "quiz/choose_entry.h"
#include "quiz/locate_entry.h"
#include "quiz/pane.h"
#include "quiz/show_entry.h"
#include "score/position_table.h"
#include "text/text_pane.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const unsigned LEFT_BUTTON = 1;
const char RULE[] = "============================== ";

// Announcements since the start, for the trace.
struct {
  int iloop = 0;
} calls;

// Leaves the lesson: whoever still works on it must stop.
void leave_lesson(Trf_book *book) {
  LESSON_MOVES_ON();
  DROP_STREAM(book);
  CLOSE_STREAM(&book->fp_gene);
  CLOSE_STREAM(&book->fp_idx1);
  if (book->ilesson > 0)
    book->t_posit->nb_posit = 0;
}

// What a command did, in words (CP1252).
const char *outcome_of(int code) {
  switch (code) {
  case 1:
    return "Aucun mot dans la le\347on,  "; // a lesson, its c with a cedilla
  case 2:
    return "Check and correct data base : DONE,  ";
  case 3:
    return "Dictionary file ./mertu_dico : DONE,  ";
  default:
    return "code is unknown,  ";
  }
}

void write_outcome(const char *outcome, Trf_pane_writer *pane) {
  WRITE_PANE(pane, "%s", outcome);
  WRITE_PANE(pane, "retour ancienne le\347on :  "); // a lesson, its c with a cedilla
  WRITE_PANE(pane, "  ");
}

// Announces lesson ilesson in the cleared pane, after a command's outcome (null for none).
void announce(const char *who, const char *outcome, Trf_book *book) {
  PREPARE_CHOICE(book);
  CLEAR_PANE(book);
  Trf_pane_writer pane = {book, book->nb_line};
  WRITE_PANE(&pane, "  ");
  if (outcome != nullptr)
    write_outcome(outcome, &pane);
  WRITE_PANE(&pane, "Confirm display of lesson %d  ", book->ilesson);
  Owned_text alias(S_ALIAS_FROM_NUM(book->ilesson, book->G_kentel));
  if (alias != nullptr)
    WRITE_PANE(&pane, "%s", alias.get());
  WRITE_PANE(&pane, "  ");
  WRITE_PANE(&pane, "%s", RULE);
  LABEL_DIRECTION(book);
  SHOW_PANE_OR_STOP(who, book);
  book->nb_line = pane.nb_line;
  book->start_lesson = 1;
}

void remember_lesson(const char *text, Trf_book *book) {
  int length = static_cast<int>(strlen(text));
  if (book->lessons == nullptr || length >= book->lenmx_str_lessons) {
    book->lenmx_str_lessons = length + 10;
    book->lessons = static_cast<char *>(g_realloc(book->lessons, book->lenmx_str_lessons + 5));
  }
  strcpy(book->lessons, text);
}

void write_description(Trf_pane_writer *pane) {
  Trf_book *book = pane->book;
  char text[LESSON_NAME_SIZE] = "";
  LESSON_FROM_ORDER(book->fp_log, book->G_kentel, book->ilesson, text);
  WRITE_PANE(pane, "%s", text);
  remember_lesson(text, book);
}

// Describes lesson ilesson below what stands in the pane; at the first step with a rule below it.
void describe(bool first_step, Trf_book *book) {
  Trf_pane_writer pane = {book, book->nb_line};
  WRITE_PANE(&pane, "  ");
  WRITE_PANE(&pane, "Confirm learning vocabulary of lesson %d  ", book->ilesson);
  if (book->ilesson > 0)
    write_description(&pane);
  WRITE_PANE(&pane, "  ");
  if (first_step) {
    WRITE_PANE(&pane, "%s", RULE);
    LABEL_DIRECTION(book);
  }
  SHOW_PANE_OR_STOP("CONFIRM_LESSON", book);
  book->nb_line = pane.nb_line;
  book->start_lesson += 1;
}

// Empties the pane on the screen. False when the window went or the lesson moved on meanwhile.
bool clear_screen(const char *who, Trf_book *book) {
  long moment = LESSON_MOMENT();
  CLEAR_PANE(book);
  SHOW_PANE_OR_STOP(who, book);
  REDRAW_PANE(book);
  return DRAIN_EVENTS(moment, book);
}

// QUIRK skip has no end: the lesson after the last one is described too, which ends the program.
// One would expect to come back to lesson 1 as with "Next"; it is meant: only "Next" and "Prev" go
// round. Test: QuizConfirm.SkippingPastTheLastLessonEndsTheProgram
void skip_lesson(GdkEvent *event, Trf_book *book) {
  LESSON_MOVES_ON();
  DROP_STREAM(book);
  book->ilesson += 1;
  book->start_lesson = 0;
  if (clear_screen("CONFIRM_LESSON level 2", book))
    CONFIRM_LESSON(event, book);
}

void pass_empty_lesson(Trf_book *book) {
  Trf_pane_writer pane = {book, book->nb_line};
  book->ilesson += 1;
  book->start_lesson = 0;
  WRITE_PANE(&pane, "  ");
  WRITE_PANE(&pane, "No word in lesson %d  ", book->ilesson - 1);
  WRITE_PANE(&pane, "Trying next lesson %d  ", book->ilesson);
  book->nb_line = pane.nb_line;
}

void start_lesson(Trf_book *book) {
  int kept = book->ilesson;
  int code = kept;
  LESSON_MOVES_ON();
  INIT_LESSON(&code, book);
  book->ilesson = kept;
  if (!clear_screen("CONFIRM_LESSON level 1", book))
    return;
  if (book->t_posit->nb_posit <= 0) {
    pass_empty_lesson(book);
    return;
  }
  book->state = 1;
  DISPLAY_ARTICLE(book);
  book->start_lesson = 3;
}

} // namespace

void CONFIRM0_LESSON(Trf_book *book) {
  book->active = 1;
  SET_ANSWER_BUTTON(true, book);
  calls.iloop++;
  TRACE("CONFIRM0_LESSON call %d lesson %d", calls.iloop, book->ilesson);
  leave_lesson(book);
  if (book->start_lesson != 0)
    return;
  CLR_TEXT(book);
  LABEL_BUTTON(book->Button1, "  Question / Response ", "buttonyellow");
  announce("CONFIRM0_LESSON", nullptr, book);
}

// QUIRK button after a command: given while a response is shown, a command leaves the answer button
// with "Verif: Yes/No" until the next verdict, also under the next lesson's first question. One
// would expect the label of a question as after "Next"; it is meant: a command leaves the button as
// it is. Test: QuizDrill.CommandUnderAResponseLeavesTheButtonsLabelToTheNextLesson
void CONFIRM0_NEW_LESSON(int code, Trf_book *book) {
  leave_lesson(book);
  if (book->start_lesson == 0)
    announce("CONFIRM0_NEW_LESSON", outcome_of(code), book);
}

void CONFIRM_LESSON(GdkEvent *event, Trf_book *book) {
  switch (book->start_lesson) {
  case 0:
    PREPARE_CHOICE(book);
    describe(true, book);
    break;
  case 1:
    describe(false, book);
    break;
  case 2:
    if (event->button.button == LEFT_BUTTON)
      start_lesson(book);
    else
      skip_lesson(event, book);
    break;
  default:
    break;
  }
}
