// The question on leaving a lesson, and what its answers do.
#include "support/prelude.h"

#include "quiz/record_question.h"

#include "quiz/book_of_files.h"
#include "support/present.h"
#include "util/dialogs.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const char BLANK[] = "            ;            ;            ;            ;";
const char NAME[] = "# chat * aa \n";

// What the scripted dialogs answer, and what they were asked.
struct Script {
  std::vector<Trf_answer> answers;
  std::vector<std::string> asked;
  void (*meanwhile)(Trf_book *book) = nullptr; // happens while the first question stands
};

Script *script = nullptr;

Trf_answer ask(Trf_question kind, const char *text, Trf_book *book) {
  script->asked.push_back((kind == QUESTION_RECORD ? "record: " : "forget: ") + std::string(text));
  if (script->meanwhile != nullptr && script->asked.size() == 1)
    script->meanwhile(book);
  Trf_answer answer = script->answers.empty() ? ANSWER_CLOSED : script->answers.front();
  if (!script->answers.empty())
    script->answers.erase(script->answers.begin());
  return answer;
}

void tell(Trf_notice, const char *, Trf_book *) {
}

const Trf_dialogs SCRIPTED = {ask, tell};

// A drill of one entry, known once in the direction Q->R. Today is 15 June 2001: day 165.
struct Drill : Book_of_files {
  Script record_of_dialogs;

  Drill() {
    SET_PRESENT_DAY(2001, 6, 15);
    script = &record_of_dialogs;
    SET_DIALOGS(&SCRIPTED);
    dir.write("IDX1/idx1_a.txt", std::string(NAME) + BLANK + "\r\n" + BLANK + "\r\n");
    dir.write("idx1_gene", NAME + std::string(" ./IDX1/idx1_a.txt * ") +
                               std::to_string(sizeof NAME - 1) + " \n");
    table.nb_posit = 1;
    table.posit[1] = 0;
    table.QRcum_nb[1] = 1;
    book.start_lesson = 3;
    book.nbt_lesson = 2;
    book.pWindow = reinterpret_cast<GtkWidget *>(&book); // only ever compared with null
  }
  ~Drill() {
    SET_DIALOGS(nullptr);
    RESET_PRESENT();
    script = nullptr;
  }

  // Answers the questions so, one after the other, and asks. Returns what RECORD_QUESTION does.
  bool leave(const std::vector<Trf_answer> &answers) {
    record_of_dialogs.answers = answers;
    return RECORD_QUESTION(&book);
  }
  std::vector<std::string> &asked() {
    return record_of_dialogs.asked;
  }
  std::string history() const {
    return dir.read("IDX1/idx1_a.txt").substr(sizeof NAME - 1);
  }
};

const std::string UNTOUCHED = std::string(BLANK) + "\r\n" + BLANK + "\r\n";
const std::string RECORDED =
    std::string("     1      ;     0      ;    165     ;     0      ;\r\n") + BLANK + "\r\n";
const std::string ERASED = std::string(BLANK) + BLANK + " ;\r\n";

} // namespace

TEST(RecordQuestion, AsksWithTheNumberOfTheLesson) {
  Drill drill;
  drill.book.ilesson = 1;
  EXPECT_TRUE(drill.leave({ANSWER_NO}));
  EXPECT_THAT(drill.asked(), ElementsAre("record: Voulez-vous enregistrer la le\347on 1 ?"));
}

TEST(RecordQuestion, YesRecords) {
  Drill drill;
  EXPECT_TRUE(drill.leave({ANSWER_YES}));
  EXPECT_EQ(drill.history(), RECORDED);
  EXPECT_THAT(drill.log(), HasSubstr("RECORD_LESSON 1 DONE  nb_errors=0\n"));
}

TEST(RecordQuestion, RecordedVerdictIsNoLongerSavedForAnUndo) {
  for (Trf_answer answer : {ANSWER_YES, ANSWER_NO}) {
    Drill drill;
    drill.table.QRord_posit[2] = drill.table.RQord_posit[2] = 1;
    EXPECT_TRUE(drill.leave({answer}));
    EXPECT_EQ(drill.table.QRord_posit[2], answer == ANSWER_YES ? -1 : 1);
    EXPECT_EQ(drill.table.RQord_posit[2], answer == ANSWER_YES ? -1 : 1);
  }
}

TEST(RecordQuestion, NoAndAClosedDialogRecordNothing) {
  for (Trf_answer answer : {ANSWER_NO, ANSWER_CLOSED}) {
    Drill drill;
    EXPECT_TRUE(drill.leave({answer}));
    EXPECT_EQ(drill.history(), UNTOUCHED);
    EXPECT_THAT(drill.log(), IsEmpty());
    EXPECT_EQ(drill.asked().size(), 1u);
  }
}

TEST(RecordQuestion, ForgetAsksASecondTimeAndErases) {
  Drill drill;
  EXPECT_TRUE(drill.leave({ANSWER_FORGET, ANSWER_YES}));
  EXPECT_THAT(
      drill.asked(),
      ElementsAre(Not(IsEmpty()), "forget: Really forget history of lesson : \n \n words/a.txt ?"));
  EXPECT_EQ(drill.history(), ERASED);
}

TEST(RecordQuestion, ForgetThoughtOverRecords) {
  Drill drill;
  EXPECT_TRUE(drill.leave({ANSWER_FORGET, ANSWER_NO}));
  EXPECT_EQ(drill.history(), RECORDED);
}

TEST(RecordQuestion, ForgetOfAComposedLessonAsksNothingMore) {
  Drill drill;
  drill.book.ilesson = 0;
  EXPECT_TRUE(drill.leave({ANSWER_FORGET}));
  EXPECT_THAT(drill.asked(), ElementsAre("record: Voulez-vous enregistrer la le\347on 0 ?"));
  EXPECT_EQ(drill.history(), UNTOUCHED);
}

TEST(RecordQuestion, AnAnswerForALessonThatWentMeanwhileRecordsNothing) {
  Drill drill;
  drill.record_of_dialogs.meanwhile = [](Trf_book *book) { book->ilesson = 2; };
  EXPECT_FALSE(drill.leave({ANSWER_YES}));
  EXPECT_EQ(drill.history(), UNTOUCHED);
  EXPECT_THAT(drill.log(), IsEmpty());
}

TEST(RecordQuestion, AWindowThatGoesMeanwhileIsTold) {
  Drill drill;
  drill.record_of_dialogs.meanwhile = [](Trf_book *book) { book->pWindow = nullptr; };
  EXPECT_FALSE(drill.leave({ANSWER_NO}));
  EXPECT_EQ(drill.history(), UNTOUCHED);
}

TEST(RecordQuestion, ALessonThatMovesOnMeanwhileIsTold) {
  Drill drill;
  drill.record_of_dialogs.meanwhile = [](Trf_book *book) { book->ilesson++; };
  EXPECT_FALSE(drill.leave({ANSWER_NO}));
  Drill again;
  again.record_of_dialogs.meanwhile = [](Trf_book *book) { book->start_lesson = 1; };
  EXPECT_FALSE(again.leave({ANSWER_NO}));
}

TEST(RecordQuestion, OnMovingOnlyADrillIsAskedAbout) {
  Drill drill;
  for (int step : {0, 1, 2}) {
    drill.book.start_lesson = step;
    EXPECT_TRUE(RECORD_QUESTION_ON_MOVE(&drill.book));
    EXPECT_THAT(drill.asked(), IsEmpty());
  }
  drill.book.start_lesson = 3;
  EXPECT_TRUE(RECORD_QUESTION_ON_MOVE(&drill.book));
  drill.book.start_lesson = 4;
  EXPECT_TRUE(RECORD_QUESTION_ON_MOVE(&drill.book));
  EXPECT_EQ(drill.asked().size(), 2u);
}

TEST(RecordQuestion, OnMovingEveryListedAndAComposedLessonIsAskedAbout) {
  Drill drill;
  for (int ilesson : {0, 1, 2}) {
    drill.book.ilesson = ilesson;
    EXPECT_TRUE(RECORD_QUESTION_ON_MOVE(&drill.book));
    EXPECT_EQ(drill.asked().size(), (size_t)ilesson + 1);
  }
}

TEST(RecordQuestion, ALessonOutsideTheListIsLeftWithoutAQuestion) {
  Drill drill;
  for (int ilesson : {-3, -1, 3}) {
    drill.book.ilesson = ilesson;
    EXPECT_TRUE(RECORD_QUESTION_ON_MOVE(&drill.book));
  }
  EXPECT_THAT(drill.asked(), IsEmpty());
  EXPECT_TRUE(RECORD_QUESTION(&drill.book));
  EXPECT_EQ(drill.asked().size(), 1u);
}

TEST(RecordQuestion, OnMovingTheAnswerIsTold) {
  Drill drill;
  drill.record_of_dialogs.meanwhile = [](Trf_book *book) { book->pWindow = nullptr; };
  EXPECT_FALSE(RECORD_QUESTION_ON_MOVE(&drill.book));
}
