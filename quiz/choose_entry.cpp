// Which entry is asked next.
#include "quiz/choose_entry.h"

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <vector>

#include "score/position_table.h"

namespace {

// The memory of the drill between questions.
struct Memory {
  int jcont = 0;              // entry chosen last
  int mjcont = 0;             // the one before it, 0 for none in this lesson
  int mj1cont = 0;            // and the one before that
  int nbi = 0;                // questions in this pass; above nb_posit: second run
  int nb = SECOND_RUN_WINDOW; // window of the second run
  int km = 1;                 // entries not yet asked, counted until it is 0
  int nb_zero = 0;            // choices in a row of an entry with score 0
} memory;

// The lesson as one choice sees it.
struct Lesson {
  Trf_posit *table;
  Trf_side side;
};

// Brings the count of questions up to date with the verdicts, skips and undoings since the last.
void count_question(Trf_posit *t_posit) {
  int *asked = t_posit->elem_nevez;
  int nb_posit = t_posit->nb_posit;
  if (asked[0] < 0)
    memory.nbi += asked[0];
  if (memory.km >= 1)
    memory.km = static_cast<int>(std::count(asked + 1, asked + nb_posit + 1, 0));
  memory.nbi += 1;
  asked[0] = 0;
  if (memory.km > 0)
    memory.nbi = nb_posit + 1 - memory.km;
}

bool second_run(const Trf_posit *t_posit) {
  return memory.nbi > t_posit->nb_posit;
}

// Among how many a draw is made.
int window_size(const Trf_posit *t_posit) {
  int w = second_run(t_posit) ? memory.nb : t_posit->nb_posit + 1 - memory.nbi;
  return std::clamp(w, 1, t_posit->nb_posit);
}

// The entry is one of the last nb_back (0, 1 or 2) asked.
bool just_asked(int entry, int nb_back) {
  return (nb_back > 0 && entry == memory.mjcont) || (nb_back > 1 && entry == memory.mj1cont);
}

std::vector<int> never_asked(const Trf_posit *t_posit) {
  std::vector<int> entries;
  for (int i = 1; i <= t_posit->nb_posit; i++)
    if (t_posit->elem_nevez[i] == 0)
      entries.push_back(i);
  return entries;
}

// The rank of an entry; 1 where the ordering does not hold it.
int rank_of(int entry, const Lesson &lesson) {
  const int *first = lesson.side.ord + 1;
  const int *end = first + lesson.table->nb_posit;
  const int *found = std::find(first, end, entry);
  return found == end ? 1 : static_cast<int>(found - first) + 1;
}

// Draws among the top ranks until an entry comes that was not just asked. Returns its rank.
int draw_top_rank(const Lesson &lesson) {
  int w = window_size(lesson.table);
  int nb_back = lesson.table->nb_posit == 2 ? 1 : 2;
  int rank = 1;
  for (int i = 0; i < MAX_DRAWS; i++) {
    rank = rand() % w + 1;
    if (!just_asked(lesson.side.ord[rank], nb_back))
      break;
  }
  return rank;
}

// Draws among the entries never asked, in the order of their numbers. Returns the rank; a draw with
// no entry behind it counts as refused, and rank 1 stands where no entry was drawn at all.
int draw_never_asked(const Lesson &lesson) {
  std::vector<int> entries = never_asked(lesson.table);
  int w = window_size(lesson.table);
  int nb_back = std::min(w - 1, 2);
  int entry = lesson.side.ord[1];
  for (int i = 0; i < MAX_DRAWS; i++) {
    size_t place = static_cast<size_t>(rand() % w);
    if (place >= entries.size())
      continue;
    entry = entries[place];
    if (!just_asked(entry, nb_back))
      break;
  }
  return rank_of(entry, lesson);
}

// The numbers of the entry at a rank.
Trf_choice choice_at(int rank, const Lesson &lesson) {
  const Trf_side &side = lesson.side;
  Trf_choice choice;
  choice.rank = rank;
  choice.jcont = side.ord[rank];
  choice.err = side.cum_err[choice.jcont];
  choice.mx = side.cum_err[side.ord[1]];
  choice.d_ok = static_cast<int>(side.nb[choice.jcont] - side.nb0[choice.jcont]);
  choice.d_nok = static_cast<int>(side.nok[choice.jcont] - side.nok0[choice.jcont]);
  choice.second_run = second_run(lesson.table);
  return choice;
}

// Rank 1 when it is new and was not just asked, or the only one; else a draw.
Trf_choice new_or_drawn(const Lesson &lesson) {
  Trf_choice first = choice_at(1, lesson);
  if (lesson.table->nb_posit == 1 || (first.err < 0 && !just_asked(first.jcont, 2)))
    return first;
  return choice_at(second_run(lesson.table) ? draw_top_rank(lesson) : draw_never_asked(lesson),
                   lesson);
}

// QUIRK third zero score: the third choice in a row of an entry with score 0 is itself replaced by
// rank 1, even one that was just asked. One would expect the draw to be made again; it is meant: a
// learner who knows what is drawn is brought back to what she knows worst.
// Test: ChooseEntry.ThirdChoiceInARowWithScoreZeroGivesWayToRankOne
Trf_choice not_too_easy(const Trf_choice &choice, const Lesson &lesson) {
  memory.nb_zero = choice.err == 0 ? memory.nb_zero + 1 : 0;
  if (memory.nb_zero <= 2)
    return choice;
  memory.nb_zero = 0;
  return choice_at(1, lesson);
}

} // namespace

void PREPARE_CHOICE(Trf_book *book) {
  Trf_posit *t_posit = book->t_posit;
  if (book->start_lesson != 0 && book->start_lesson != 2)
    return;
  if (t_posit->elem_nevez != nullptr)
    t_posit->elem_nevez[0] = 0;
  memory.km = 1;
  if (book->start_lesson == 0) {
    memory.mjcont = memory.mj1cont = 0;
    return;
  }
  srand(static_cast<unsigned>(time(nullptr)));
  memory.nb = std::min(SECOND_RUN_WINDOW, t_posit->nb_posit);
  memory.nbi = 0;
}

Trf_choice CHOOSE_ENTRY(Trf_book *book) {
  Trf_posit *t_posit = book->t_posit;
  if (t_posit->nb_posit < 1 || t_posit->elem_nevez == nullptr)
    return Trf_choice();
  Lesson lesson = {t_posit, SIDE_OF_TABLE(book->sens_qr, t_posit)};
  count_question(t_posit);
  Trf_choice choice = not_too_easy(new_or_drawn(lesson), lesson);
  memory.mj1cont = memory.mjcont;
  memory.mjcont = memory.jcont = choice.jcont;
  book->QR_no = choice.jcont;
  book->QR_order = choice.rank;
  return choice;
}

int LAST_CHOSEN() {
  return memory.jcont;
}

void FORGET_CHOICES() {
  memory = Memory();
}
