// Which entry is asked next.
#include "quiz/choose_entry.h"

#include <algorithm>
#include <random>

#include "quiz/lesson_table.h"
#include "support/prelude.h"
#include "support/present.h"

using testing::ElementsAre;

namespace {

std::vector<Numbers> scores(const std::vector<long> &errs) {
  std::vector<Numbers> entries;
  for (long err : errs)
    entries.push_back({err, 0, 0, 0, 0});
  return entries;
}

// Answers the entry on screen as far as the choice sees it.
void answered(Lesson_table *lesson) {
  lesson->table.elem_nevez[0] += 1;
  lesson->table.elem_nevez[lesson->book.QR_no] += 1;
}

void skipped(Lesson_table *lesson) {
  lesson->table.elem_nevez[0] -= 1;
}

std::vector<int> next_choices(int nb, Lesson_table *lesson) {
  std::vector<int> chosen;
  for (int i = 0; i < nb; i++) {
    chosen.push_back(CHOOSE_ENTRY(&lesson->book).jcont);
    answered(lesson);
  }
  return chosen;
}

class ChooseEntry : public testing::Test {
protected:
  ~ChooseEntry() override {
    SET_RAND({});
    RESET_PRESENT();
  }
};

// The rules told once more, one after the other, over plain vectors: to compare with.
struct Model {
  int mjcont = 0, mj1cont = 0, nbi = 0, nb = 5, km = 1, nb_zero = 0;

  Trf_choice choose(Lesson_table *lesson) {
    Trf_posit &t = lesson->table;
    int n = t.nb_posit;
    Trf_side side = SIDE_OF_TABLE(lesson->book.sens_qr, &t);
    if (t.elem_nevez[0] < 0)
      nbi += t.elem_nevez[0];
    if (km >= 1) {
      km = 0;
      for (int i = 1; i <= n; i++)
        km += t.elem_nevez[i] == 0 ? 1 : 0;
    }
    nbi += 1;
    if (km > 0)
      nbi = n + 1 - km;
    int rank = 1;
    int jcont = side.ord[1];
    bool at_once = side.cum_err[jcont] < 0 && jcont != mjcont && jcont != mj1cont;
    for (int draws = 0; !at_once && n != 1 && draws < 32000; draws++) {
      int w = nbi <= n ? n + 1 - nbi : nb;
      w = w > n ? n : w;
      int r = rand() % w + 1;
      int candidate = 0;
      if (nbi > n) {
        candidate = side.ord[r];
        rank = r;
      } else {
        for (int i = 1, k = 0; i <= n; i++)
          if (t.elem_nevez[i] == 0 && ++k == r)
            candidate = i;
        if (candidate == 0)
          continue;
        for (int i = 1; i <= n; i++)
          if (side.ord[i] == candidate)
            rank = i;
      }
      int looked = nbi > n ? (n == 2 ? 1 : 2) : (w == 1 ? 0 : w == 2 ? 1 : 2);
      if ((looked < 1 || candidate != mjcont) && (looked < 2 || candidate != mj1cont))
        break;
    }
    if (side.cum_err[side.ord[rank]] != 0)
      nb_zero = 0;
    else if (++nb_zero > 2) {
      rank = 1;
      nb_zero = 0;
    }
    jcont = side.ord[rank];
    mj1cont = mjcont;
    mjcont = jcont;
    return {jcont,
            rank,
            side.cum_err[jcont],
            side.cum_err[side.ord[1]],
            static_cast<int>(side.nb[jcont] - side.nb0[jcont]),
            static_cast<int>(side.nok[jcont] - side.nok0[jcont]),
            nbi > n};
  }
};

} // namespace

TEST_F(ChooseEntry, LessonOfOneEntryAsksItEveryTime) {
  Lesson_table lesson(scores({7}));
  lesson.start();
  EXPECT_THAT(next_choices(4, &lesson), ElementsAre(1, 1, 1, 1));
}

TEST_F(ChooseEntry, EmptyLessonHasNoChoiceAndChangesNothing) {
  Lesson_table lesson({});
  lesson.book.QR_no = 9;
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 0);
  EXPECT_EQ(lesson.book.QR_no, 9);
}

TEST_F(ChooseEntry, NewEntryAtRankOneIsTakenAtOnceWithoutADraw) {
  Lesson_table lesson(scores({5, -1, 8}));
  lesson.start();
  SET_RAND({2});
  Trf_choice choice = CHOOSE_ENTRY(&lesson.book);
  EXPECT_EQ(choice.jcont, 2);
  EXPECT_EQ(choice.rank, 1);
  EXPECT_EQ(choice.err, -1);
  EXPECT_EQ(lesson.book.QR_no, 2);
  EXPECT_EQ(lesson.book.QR_order, 1);
  EXPECT_EQ(LAST_CHOSEN(), 2);
}

TEST_F(ChooseEntry, NewEntryJustAskedIsNotTakenAtOnce) {
  Lesson_table lesson(scores({5, -1, 8, 3}));
  lesson.start();
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 2);
  skipped(&lesson);
  SET_RAND({1, 0});
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 1);
}

TEST_F(ChooseEntry, FirstRunDrawsAmongTheNeverAskedByTheirNumber) {
  Lesson_table lesson(scores({5, 9, 8, 3}));
  lesson.start();
  SET_RAND({3, 1, 0, 0});
  EXPECT_THAT(next_choices(4, &lesson), ElementsAre(4, 2, 1, 3));
}

TEST_F(ChooseEntry, FirstRunTellsTheRankOfTheDrawnEntry) {
  Lesson_table lesson(scores({5, 9, 8, 3}));
  lesson.start();
  SET_RAND({2});
  Trf_choice choice = CHOOSE_ENTRY(&lesson.book);
  EXPECT_EQ(choice.jcont, 3);
  EXPECT_EQ(choice.rank, 2);
  EXPECT_FALSE(choice.second_run);
}

TEST_F(ChooseEntry, SecondRunBeginsWhenEveryEntryWasAsked) {
  Lesson_table lesson(scores({5, 9, 8}));
  lesson.start();
  SET_RAND({0});
  next_choices(3, &lesson);
  SET_RAND({0, 1, 2});
  EXPECT_TRUE(CHOOSE_ENTRY(&lesson.book).second_run);
}

TEST_F(ChooseEntry, SecondRunDrawsAmongTheFiveTopRanks) {
  Lesson_table lesson(scores({1, 2, 3, 4, 5, 6, 7, 8}));
  lesson.start();
  SET_RAND({0});
  next_choices(8, &lesson); // 1 to 8 in turn
  SET_RAND({4, 2, 0, 5 + 3});
  EXPECT_THAT(next_choices(4, &lesson), ElementsAre(4, 6, 8, 5));
}

TEST_F(ChooseEntry, WindowIsTheLessonWhenItIsSmaller) {
  Lesson_table lesson(scores({1, 2, 3}));
  lesson.start();
  SET_RAND({0});
  next_choices(3, &lesson); // 1 2 3
  SET_RAND({3 + 2});        // the third rank is entry 1
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 1);
}

TEST_F(ChooseEntry, WithThreeEntriesTheLastTwoAreRefused) {
  Lesson_table lesson(scores({30, 20, 10}));
  lesson.start();
  SET_RAND({0});
  EXPECT_THAT(next_choices(3, &lesson), ElementsAre(1, 2, 3));
  SET_RAND({2, 1, 0});
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 1);
}

TEST_F(ChooseEntry, WithTwoEntriesOnlyTheLastIsRefused) {
  Lesson_table lesson(scores({30, 20}));
  lesson.start();
  SET_RAND({0});
  EXPECT_THAT(next_choices(2, &lesson), ElementsAre(1, 2));
  SET_RAND({1, 0});
  EXPECT_THAT(next_choices(3, &lesson), ElementsAre(1, 2, 1));
}

TEST_F(ChooseEntry, LastNeverAskedEntryIsTakenThoughJustShown) {
  Lesson_table lesson(scores({30, 20, 10}));
  lesson.start();
  SET_RAND({0});
  EXPECT_THAT(next_choices(2, &lesson), ElementsAre(1, 2));
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 3);
  skipped(&lesson);
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 3);
}

TEST_F(ChooseEntry, After32000RefusalsTheLastEntryDrawnStands) {
  Lesson_table lesson(scores({30, 20, 10}));
  lesson.start();
  SET_RAND({0});
  next_choices(3, &lesson);
  SET_RAND({1});
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 2); // entry 2 was asked two questions ago
}

TEST_F(ChooseEntry, RankOneStandsWhenNothingWasEverDrawn) {
  Lesson_table lesson(scores({30, 20, 10}));
  lesson.start();
  SET_RAND({0});
  next_choices(3, &lesson);
  CHOOSE_ENTRY(&lesson.book);
  lesson.table.elem_nevez[0] = -3; // skips and undoings lead back into the first run
  Trf_choice choice = CHOOSE_ENTRY(&lesson.book);
  EXPECT_FALSE(choice.second_run);
  EXPECT_EQ(choice.rank, 1);
}

TEST_F(ChooseEntry, DrawWithNoNeverAskedEntryBehindItIsDrawnAgain) {
  Lesson_table lesson(scores({30, 20, 10, 5}));
  lesson.start();
  SET_RAND({0});
  next_choices(4, &lesson);
  CHOOSE_ENTRY(&lesson.book);
  lesson.table.elem_nevez[0] = -2;
  lesson.table.elem_nevez[2] = 0; // an undoing gave it back, and there are no others
  SET_RAND({1, 0});
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 2);
}

TEST_F(ChooseEntry, ThirdChoiceInARowWithScoreZeroGivesWayToRankOne) {
  Lesson_table lesson(scores({40, 0, 0, 0}));
  lesson.start();
  SET_RAND({1});
  EXPECT_THAT(next_choices(2, &lesson), ElementsAre(2, 3));
  Trf_choice choice = CHOOSE_ENTRY(&lesson.book); // entry 4 was drawn
  EXPECT_EQ(choice.jcont, 1);
  EXPECT_EQ(choice.rank, 1);
  EXPECT_EQ(choice.err, 40);
}

TEST_F(ChooseEntry, RankOneAfterThreeZerosMayHaveJustBeenAsked) {
  Lesson_table lesson(scores({0, 0, 0}));
  lesson.start();
  SET_RAND({1, 0});
  EXPECT_THAT(next_choices(3, &lesson), ElementsAre(2, 1, 1));
}

TEST_F(ChooseEntry, ScoreAboveZeroBeginsTheCountOfZerosAfresh) {
  Lesson_table lesson(scores({40, 0, 0, 0, 0}));
  lesson.start();
  SET_RAND({1, 1, 0, 0, 0});
  EXPECT_THAT(next_choices(5, &lesson), ElementsAre(2, 3, 1, 4, 5));
}

TEST_F(ChooseEntry, LargestScoreIsThatOfRankOneAlsoAfterADraw) {
  Lesson_table lesson({{5, 4, 1, 7, 5}, {9, 0, 0, 0, 0}});
  lesson.start();
  SET_RAND({0});
  Trf_choice choice = CHOOSE_ENTRY(&lesson.book);
  EXPECT_EQ(choice.jcont, 1);
  EXPECT_EQ(choice.err, 5);
  EXPECT_EQ(choice.mx, 9);
  EXPECT_EQ(choice.d_ok, 3);
  EXPECT_EQ(choice.d_nok, 2);
}

TEST_F(ChooseEntry, OtherDirectionHasItsOwnOrdering) {
  Lesson_table lesson(scores({5, 9}), scores({-1, 2}));
  lesson.start();
  lesson.book.sens_qr = 2;
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 1);
}

TEST_F(ChooseEntry, StartSeedsChanceWithThePresentMoment) {
  Lesson_table lesson(scores({5, 9}));
  SET_PRESENT(123456789);
  int before = NB_SEEDS_SEEN();
  lesson.start();
  EXPECT_EQ(NB_SEEDS_SEEN(), before + 1);
  EXPECT_EQ(SEED_SEEN(), 123456789u);
  lesson.book.start_lesson = 3;
  PREPARE_CHOICE(&lesson.book);
  EXPECT_EQ(NB_SEEDS_SEEN(), before + 1);
}

TEST_F(ChooseEntry, AnnouncingALessonForgetsTheLastTwoEntries) {
  Lesson_table lesson(scores({-1, 5, 4}));
  lesson.start();
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 1);
  lesson.start();
  EXPECT_EQ(CHOOSE_ENTRY(&lesson.book).jcont, 1);
}

TEST_F(ChooseEntry, LessonWideCounterIsClearedByEachChoice) {
  Lesson_table lesson(scores({5, 9}));
  lesson.start();
  lesson.table.elem_nevez[0] = 7;
  CHOOSE_ENTRY(&lesson.book);
  EXPECT_EQ(lesson.table.elem_nevez[0], 0);
}

TEST_F(ChooseEntry, SkippedEntriesDoNotEndTheFirstRun) {
  Lesson_table lesson(scores({5, 9, 7}));
  lesson.start();
  for (int i = 0; i < 20; i++) {
    EXPECT_FALSE(CHOOSE_ENTRY(&lesson.book).second_run);
    skipped(&lesson);
  }
}

TEST_F(ChooseEntry, AgreesWithThePlainRulesInRandomSessions) {
  std::mt19937 chance(20011);
  auto below = [&chance](int n) { return static_cast<int>(chance() % n); };
  for (int session = 0; session < 300; session++) {
    std::vector<Numbers> entries;
    for (int i = below(9) + 1; i > 0; i--)
      entries.push_back({below(3) == 0 ? -1 : below(3) == 0 ? 0 : below(60), 2, 1, 3, 2});
    Lesson_table lesson(entries);
    lesson.start();
    Model model;
    model.nb = std::min(5, lesson.table.nb_posit);
    for (int press = 0; press < 60; press++) {
      std::vector<int> numbers;
      for (int i = 0; i < 97; i++)
        numbers.push_back(below(1000));
      lesson.book.sens_qr = below(9) == 0 ? 2 : 1;
      SET_RAND(numbers);
      Trf_choice expected = model.choose(&lesson);
      SET_RAND(numbers);
      Trf_choice choice = CHOOSE_ENTRY(&lesson.book);
      ASSERT_EQ(choice.jcont, expected.jcont) << session << " " << press;
      ASSERT_EQ(choice.rank, expected.rank);
      ASSERT_EQ(choice.err, expected.err);
      ASSERT_EQ(choice.mx, expected.mx);
      ASSERT_EQ(choice.second_run, expected.second_run);
      lesson.book.sens_qrm = lesson.book.sens_qr;
      testing::internal::CaptureStdout();
      RECORD_VERDICT(below(3) + 1, &lesson.book);
      if (below(6) == 0)
        UNDO_VERDICT(&lesson.book);
      testing::internal::GetCapturedStdout();
    }
  }
}
