// The lesson of new words with a tag; that of the worst ones is in worst_tag.cpp.
#include "lesson/tag_lessons.h"

#include "lesson/compose.h"
#include "lesson/new_words.h"

namespace {

// QUIRK borrowed names of faults: in a lesson of new words with a tag a damaged Q->R line is told
// with the name of the check of six fields, and a damaged R->Q line under the lesson without a tag.
// It looks like text copied and not finished; it is meant: who searches the log for these lines
// finds them by these names. Test: NewTagLesson.TellsOfDamagedLinesUnderBorrowedNames
const Trf_recipe NEW_TAG = {
    "NEW_TAG_LESSON",
    {"NEW_TAG_LESSON and CHECK_6LINT", "NEW_WORDS_LESSON and CHECK_4LINT", ""},
    "w",
    false,
    true,
    KEEPS_NEVER_ASKED};

} // namespace

void NEW_TAG_LESSON(char *ss_tag, Trf_book *book) {
  COMPOSE_AS_FOUND(&NEW_TAG, ss_tag, book);
}
