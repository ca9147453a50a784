// Questions and notices that the core puts to the learner.
#include "util/dialogs.h"

#include "support/prelude.h"

namespace {

// What the scripted dialogs were handed last.
struct {
  std::string text;
} seen;

Trf_answer answer_yes(Trf_question, const char *text, Trf_book *) {
  seen.text = text;
  return ANSWER_YES;
}

void remember(Trf_notice, const char *text, Trf_book *) {
  seen.text = text;
}

} // namespace

TEST(Dialogs, WithoutDialogsAQuestionIsAnsweredNoAndANoticeGoesUnseen) {
  SET_DIALOGS(nullptr);
  EXPECT_EQ(ASK_LEARNER(QUESTION_RECORD, "record?", nullptr), ANSWER_NO);
  TELL_LEARNER(NOTICE_ERROR, "fault", nullptr);
}

TEST(Dialogs, RegisteredDialogsAreAskedAndTold) {
  const Trf_dialogs scripted = {answer_yes, remember};
  SET_DIALOGS(&scripted);
  EXPECT_EQ(ASK_LEARNER(QUESTION_FORGET, "forget?", nullptr), ANSWER_YES);
  EXPECT_EQ(seen.text, "forget?");
  TELL_LEARNER(NOTICE_WARNING, "look at the log", nullptr);
  EXPECT_EQ(seen.text, "look at the log");
  SET_DIALOGS(nullptr);
}
