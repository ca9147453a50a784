// What an answer does to the numbers of the lesson.
#include "quiz/verdict.h"

#include <limits.h>

#include <algorithm>
#include <random>

#include "quiz/lesson_table.h"
#include "support/prelude.h"
#include "support/scratch.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

// What the action says on standard output.
template <typename Action> std::string said(Action action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

std::string verdict(int button, int entry, Lesson_table *lesson) {
  lesson->ask(entry);
  return said([&] { RECORD_VERDICT(button, &lesson->book); });
}

bool undone(Lesson_table *lesson) {
  bool result = false;
  said([&] { result = UNDO_VERDICT(&lesson->book); });
  return result;
}

} // namespace

TEST(Verdict, KnownAnswerTakesAThirdWhereThatIsMoreThanTheLeastDecrease) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{20, 5, 4, 2, 2}));
}

TEST(Verdict, ThirdIsCutTowardZero) {
  EXPECT_EQ(SCORE_WHEN_KNOWN(32, 4, 4, 2, 2, 6), 22);
}

TEST(Verdict, KnownAnswerNeverMakesTheScoreNegative) {
  Lesson_table lesson({{5, 4, 4, 2, 2}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{0, 5, 4, 2, 2}));
}

TEST(Verdict, LeastDecreaseIsTheWholePartOfItsWeight) {
  Lesson_table lesson({{10, 4, 4, 2, 2}});
  lesson.weights.cof4_err = 7.9F;
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1).err, 3);
}

TEST(Verdict, KnownAnswerOnANewEntryGivesScoreZero) {
  Lesson_table lesson({{-1, 0, 0, 0, 0}});
  std::string lines = verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{0, 1, 0, 0, 0}));
  EXPECT_THAT(lines, Not(HasSubstr("err mise a zero")));
}

TEST(Verdict, KnownAnswerOnScoreZeroIsNotCounted) {
  Lesson_table lesson({{0, 4, 4, 2, 2}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{0, 4, 4, 2, 2}));
}

TEST(Verdict, KnownAnswerOnScoreZeroIsCountedWhenItIsTheFirst) {
  Lesson_table lesson({{0, 0, 0, 2, 2}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{0, 1, 0, 2, 2}));
}

TEST(Verdict, NotKnownAddsItsWeightAndCountsTheMissOnly) {
  Lesson_table lesson({{5, 4, 4, 2, 2}});
  lesson.weights.cof5_err = 9.7F;
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{14, 4, 4, 3, 2}));
}

TEST(Verdict, NotKnownOnANewEntryCountsFromMinusOne) {
  Lesson_table lesson({{-1, 0, 0, 0, 0}});
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{9, 0, 0, 1, 0}));
}

TEST(Verdict, SecondKnownAnswerWithoutAMissClearsTheScore) {
  Lesson_table lesson({{60, 5, 4, 2, 2}});
  EXPECT_THAT(verdict(VERDICT_KNOWN, 1, &lesson), HasSubstr("err mise a zero cas 1 \n"));
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{0, 6, 4, 2, 2}));
}

TEST(Verdict, FirstKnownAnswerDoesNotClearTheScore) {
  Lesson_table lesson({{60, 4, 4, 2, 2}});
  EXPECT_THAT(verdict(VERDICT_KNOWN, 1, &lesson), Not(HasSubstr("err mise")));
  EXPECT_EQ(lesson.numbers(1, 1).err, 40);
}

TEST(Verdict, TwoKnownAnswersMoreThanMissesClearTheScore) {
  Lesson_table lesson({{60, 7, 4, 3, 2}});
  EXPECT_THAT(verdict(VERDICT_KNOWN, 1, &lesson), HasSubstr("err mise a zero cas 2 \n"));
  EXPECT_EQ(lesson.numbers(1, 1).err, 0);
}

TEST(Verdict, AnswerJustGivenDoesNotCountForTheShortcuts) {
  Lesson_table lesson({{60, 6, 4, 3, 2}});
  EXPECT_THAT(verdict(VERDICT_KNOWN, 1, &lesson), Not(HasSubstr("err mise")));
  EXPECT_EQ(lesson.numbers(1, 1).err, 40);
}

TEST(Verdict, ScoreClearedByTheDecreaseNamesNoShortcut) {
  Lesson_table lesson({{6, 9, 4, 2, 2}});
  EXPECT_THAT(verdict(VERDICT_KNOWN, 1, &lesson), Not(HasSubstr("err mise")));
  EXPECT_EQ(lesson.numbers(1, 1).err, 0);
}

TEST(Verdict, OnlyTheDirectionOfTheQuestionChanges) {
  Lesson_table lesson({{30, 4, 4, 2, 2}}, {{50, 1, 1, 7, 7}});
  lesson.book.sens_qr = 1; // already turned round for the next question
  lesson.book.sens_qrm = 2;
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{30, 4, 4, 2, 2}));
  EXPECT_EQ(lesson.numbers(2, 1), (Numbers{60, 1, 1, 8, 7}));
}

TEST(Verdict, EntryMovesToTheRankOfItsNewScore) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}, {20, 0, 0, 0, 0}, {3, 0, 0, 0, 0}});
  verdict(VERDICT_KNOWN, 1, &lesson); // 20: behind its equal
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 3, 1, 4));
  EXPECT_THAT(lesson.ranks(2), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(verdict(VERDICT_NOT_KNOWN, 4, &lesson), HasSubstr("VERIF_CLASSMENT two senses OK"));
}

TEST(Verdict, EntryWithoutARankIsFoundInTheOrdering) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}, {20, 0, 0, 0, 0}, {3, 0, 0, 0, 0}});
  lesson.ask(2);
  lesson.book.QR_order = 0;
  said([&] { RECORD_VERDICT(VERDICT_NOT_KNOWN, &lesson.book); });
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 1, 3, 4));
  EXPECT_EQ(lesson.numbers(1, 2).err, 35);
}

TEST(Verdict, SkipOnlyLowersTheLessonWideCounter) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}});
  EXPECT_EQ(verdict(VERDICT_SKIPPED, 1, &lesson), "");
  EXPECT_EQ(lesson.table.elem_nevez[0], -1);
  EXPECT_EQ(lesson.table.elem_nevez[1], 0);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{30, 4, 4, 2, 2}));
  EXPECT_EQ(lesson.table.QRord_posit[3], -1);
}

TEST(Verdict, NumbersBeforeTheVerdictStandInTheSaveSlot) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 1, 1, 1, 1}}, {{9, 8, 7, 6, 5}, {2, 2, 2, 2, 2}});
  lesson.table.elem_nevez[1] = 4;
  lesson.table.QR_date_ok[1] = 77;
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 3), (Numbers{30, 4, 4, 2, 2}));
  EXPECT_EQ(lesson.numbers(2, 3), (Numbers{9, 8, 7, 6, 5}));
  EXPECT_EQ(lesson.table.QRord_posit[3], 1);
  EXPECT_EQ(lesson.table.RQord_posit[3], 1);
  EXPECT_EQ(lesson.table.elem_nevez[3], 4);
  EXPECT_EQ(lesson.table.elem_nevez[1], 5);
  EXPECT_EQ(lesson.table.elem_nevez[0], 1);
  EXPECT_EQ(lesson.table.QR_date_ok[3], 0);
  EXPECT_EQ(lesson.table.QR_date_ok[1], 77);
}

TEST(Verdict, EntryOutsideTheTableIsNotRecorded) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  lesson.book.QR_no = 2;
  RECORD_VERDICT(VERDICT_KNOWN, &lesson.book);
  EXPECT_EQ(lesson.table.elem_nevez[0], 0);
}

TEST(Verdict, LargestCountsStayWhereTheyAre) {
  Lesson_table lesson({{30, LONG_MAX, 0, LONG_MAX, 0}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1).nb, LONG_MAX);
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_EQ(lesson.numbers(1, 1).nok, LONG_MAX);
}

TEST(Verdict, BrokenOrderingEndsTheProgram) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}});
  lesson.ask(1);
  lesson.table.QRcum_err[2] = 90;
  ENDS_WITH_STATUS(RECORD_VERDICT(VERDICT_KNOWN, &lesson.book), 11,
                   "VERIF_CLASSMENT Sens QR error present");
}

TEST(Undo, GivesBackTheNumbersAndTheRank) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}, {5, 0, 0, 0, 0}});
  verdict(VERDICT_NOT_KNOWN, 3, &lesson);
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 1, 3));
  lesson.ask(2);
  EXPECT_TRUE(undone(&lesson));
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{30, 4, 4, 2, 2}));
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2, 3));
  EXPECT_EQ(lesson.book.QR_order, 2);
  EXPECT_EQ(lesson.table.elem_nevez[1], 0);
  EXPECT_EQ(lesson.table.elem_nevez[3], 1);
}

TEST(Undo, LowersTheLessonWideCounterFromZeroAtMost) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  lesson.table.elem_nevez[0] = 5;
  undone(&lesson);
  EXPECT_EQ(lesson.table.elem_nevez[0], -1);
  verdict(VERDICT_KNOWN, 1, &lesson);
  lesson.table.elem_nevez[0] = -2;
  undone(&lesson);
  EXPECT_EQ(lesson.table.elem_nevez[0], -3);
}

TEST(Undo, EmptiesTheSaveSlotOfBothDirections) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  undone(&lesson);
  EXPECT_EQ(lesson.table.QRord_posit[3], -1);
  EXPECT_EQ(lesson.table.RQord_posit[3], -1);
}

TEST(Undo, GivesBackTheNumbersOfBothDirections) {
  Lesson_table lesson({{30, 4, 4, 2, 2}}, {{50, 1, 1, 7, 7}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  lesson.table.RQcum_nok[1] = 9;
  undone(&lesson);
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{30, 4, 4, 2, 2}));
  EXPECT_EQ(lesson.numbers(2, 1), (Numbers{50, 1, 1, 7, 7}));
}

TEST(Undo, SecondInARowIsRefused) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_TRUE(undone(&lesson));
  EXPECT_EQ(said([&] { UNDO_VERDICT(&lesson.book); }),
            "new_ord=-1 jcontm=-1 is undefined ok_nok return\n");
  EXPECT_EQ(lesson.table.elem_nevez[0], -1);
}

TEST(Undo, WithoutAnyVerdictIsRefused) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  EXPECT_EQ(said([&] { EXPECT_FALSE(UNDO_VERDICT(&lesson.book)); }),
            "new_ord=0 jcontm=-1 is undefined ok_nok return\n");
}

TEST(Undo, IsPossibleAgainAfterTheNextVerdict) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  undone(&lesson);
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_TRUE(undone(&lesson));
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{30, 4, 4, 2, 2}));
}

TEST(Undo, StepsOverASkip) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  verdict(VERDICT_SKIPPED, 2, &lesson);
  EXPECT_TRUE(undone(&lesson));
  EXPECT_EQ(lesson.numbers(1, 1), (Numbers{30, 4, 4, 2, 2}));
}

TEST(Undo, SortsTheDirectionOfTheVerdictAndRanksInThatOfTheQuestion) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}}, {{1, 0, 0, 0, 0}, {9, 0, 0, 0, 0}});
  lesson.book.sens_qrm = 1;
  verdict(VERDICT_KNOWN, 1, &lesson);
  EXPECT_THAT(lesson.ranks(1), ElementsAre(2, 1));
  lesson.book.sens_qrm = 2;
  lesson.book.QR_no = 1;
  EXPECT_TRUE(undone(&lesson));
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2));
  EXPECT_THAT(lesson.ranks(2), ElementsAre(2, 1));
  EXPECT_EQ(lesson.book.QR_order, 2);
}

TEST(Undo, SkipInTheOtherDirectionDoesNotChangeWhatIsSorted) {
  Lesson_table lesson({{30, 4, 4, 2, 2}, {25, 0, 0, 0, 0}}, {{1, 0, 0, 0, 0}, {9, 0, 0, 0, 0}});
  verdict(VERDICT_KNOWN, 1, &lesson);
  lesson.book.sens_qrm = 2;
  verdict(VERDICT_SKIPPED, 1, &lesson);
  EXPECT_TRUE(undone(&lesson));
  EXPECT_THAT(lesson.ranks(1), ElementsAre(1, 2));
}

TEST(Undo, EqualScoresComeBackInTheOrderOfTheirNumbers) {
  Lesson_table lesson({{20, 4, 4, 2, 2}, {20, 0, 0, 0, 0}, {20, 0, 0, 0, 0}});
  verdict(VERDICT_NOT_KNOWN, 3, &lesson);
  verdict(VERDICT_KNOWN, 1, &lesson);
  verdict(VERDICT_NOT_KNOWN, 1, &lesson);
  EXPECT_TRUE(undone(&lesson));
  EXPECT_THAT(lesson.ranks(1), ElementsAre(3, 2, 1));
}

TEST(SwitchDirection, HappensOnlyWhenAskedFor) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  SWITCH_DIRECTION_IF_ASKED(&lesson.book);
  EXPECT_EQ(lesson.book.sens_qr, 1);
  lesson.book.toggle_sens_qr = 1;
  SWITCH_DIRECTION_IF_ASKED(&lesson.book);
  EXPECT_EQ(lesson.book.sens_qr, 2);
  EXPECT_EQ(lesson.book.toggle_sens_qr, 0);
}

TEST(SwitchDirection, TurnsRoundTheDirectionOfTheQuestion) {
  Lesson_table lesson({{30, 4, 4, 2, 2}});
  lesson.book.toggle_sens_qr = 1;
  lesson.book.sens_qrm = 2;
  lesson.book.sens_qr = 2;
  SWITCH_DIRECTION_IF_ASKED(&lesson.book);
  EXPECT_EQ(lesson.book.sens_qr, 1);
  lesson.book.toggle_sens_qr = 1;
  lesson.book.sens_qrm = 0;
  SWITCH_DIRECTION_IF_ASKED(&lesson.book);
  EXPECT_EQ(lesson.book.sens_qr, 2);
}

namespace {

// The numbers after a verdict, told once more.
Numbers after(int button, Numbers n) {
  Numbers result = n;
  if (button == VERDICT_NOT_KNOWN) {
    result.err = n.err + 10;
    result.nok = n.nok + 1;
  }
  if (button == VERDICT_KNOWN) {
    if (n.err > 0 || n.nb == 0)
      result.nb = n.nb + 1;
    long third = n.err / 3;
    result.err = n.err - (third > 6 ? third : 6);
    bool unmissed = n.nok == n.nok0 && n.nb - n.nb0 > 0;
    bool mostly = n.nb - n.nb0 >= n.nok - n.nok0 + 2;
    if (result.err < 0 || unmissed || mostly)
      result.err = 0;
  }
  return result;
}

} // namespace

TEST(Verdict, RandomDrillsAgreeWithThePlainArithmetic) {
  std::mt19937 chance(7301);
  auto below = [&chance](int n) { return static_cast<int>(chance() % n); };
  for (int session = 0; session < 200; session++) {
    std::vector<Numbers> entries;
    for (int i = below(12) + 1; i > 0; i--) {
      long nb = below(5), nok = below(5);
      entries.push_back({nb + nok == 0 ? -1 : below(50), nb, nb, nok, nok});
    }
    Lesson_table lesson(entries);
    for (int press = 0; press < 50; press++) {
      int entry = below(static_cast<int>(entries.size())) + 1;
      int button = below(3) + 1;
      lesson.book.sens_qrm = below(2) + 1;
      Numbers before = lesson.numbers(lesson.book.sens_qrm, entry);
      verdict(button, entry, &lesson);
      ASSERT_EQ(lesson.numbers(lesson.book.sens_qrm, entry), after(button, before));
      if (below(4) == 0 && button != VERDICT_SKIPPED) {
        ASSERT_TRUE(undone(&lesson));
        ASSERT_EQ(lesson.numbers(lesson.book.sens_qrm, entry), before);
      }
    }
  }
}
