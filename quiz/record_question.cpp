// The question on leaving a lesson: whether what was answered in it is to be recorded.
#include "quiz/record_question.h"

#include "db/record_lesson.h"
#include "quiz/verdict.h"
#include "util/dialogs.h"
#include "util/owned.h"

namespace {

// The lesson that was asked about.
struct Asked_lesson {
  int ilesson;
  int start_lesson;
};

bool is_still_there(const Asked_lesson &lesson, const Trf_book *book) {
  return book->pWindow != nullptr && book->ilesson == lesson.ilesson &&
         book->start_lesson == lesson.start_lesson;
}

// A composed lesson may begin again with the table as it is. A verdict taken back then would leave
// counts below those that were just written, with which no lesson can be recorded.
void record(Trf_book *book) {
  EMPTY_SAVE_SLOT(book->t_posit);
  RECORD_LESSON(book);
}

} // namespace

bool RECORD_QUESTION(Trf_book *book) {
  Asked_lesson lesson = {book->ilesson, book->start_lesson};
  // A lesson, its c with a cedilla.
  Owned_text question(g_strdup_printf("Voulez-vous enregistrer la le\347on %d ?", lesson.ilesson));
  Trf_answer answer = ASK_LEARNER(QUESTION_RECORD, question.get(), book);
  if (!is_still_there(lesson, book))
    return false;
  if (answer == ANSWER_YES)
    record(book);
  else if (answer == ANSWER_FORGET)
    RAZ_LESSON(book);
  return is_still_there(lesson, book);
}

// QUIRK lesson outside the list: a lesson below 0 or past the last one is left by "Next" and "Prev"
// without a question, and nothing of it is recorded. One would expect to be asked as by "Quit"; it
// is meant: no such lesson stands in the list, and only "Quit" asks without looking.
// Test: RecordQuestion.ALessonOutsideTheListIsLeftWithoutAQuestion
bool RECORD_QUESTION_ON_MOVE(Trf_book *book) {
  bool listed = book->ilesson >= 0 && book->ilesson <= book->nbt_lesson;
  return !listed || book->start_lesson < 3 || RECORD_QUESTION(book);
}
