// What the codes of a worst-words lesson look at: three keys of an entry, the larger the worse.
//
//   | code | key 1                                   | key 2 | key 3 | the worst are            |
//   | 1    | score                                   | nok   | age   | the highest scores       |
//   | 2    | age                                     | score | nok   | the longest unanswered   |
//   | 3    | day of the last answer                  | score | nok   | the most lately answered |
//   | 4    | nok                                     | score | age   | the most often missed    |
//   | 5    | bound - answers (known and not known)   | age   | score | the least often answered |
//
// All of them are of one direction: score its error score, nok its not-known answers, age the days
// since its last answer. CMP_3GERR compares them, key 1 first.
#ifndef MERTU_LESSON_WORST_KEYS_H
#define MERTU_LESSON_WORST_KEYS_H

struct Trf_side;

const int NB_WORST_KEYS = 3; // keys of an entry

// What the keys are computed with.
struct Trf_worst_rule {
  int code;   // 1 to 5; any other is unknown
  long today; // today's day number
  long bound; // above the number of answers of every entry (WORST_BOUND); code 5 alone looks at it
};

// True for the codes 1 to 5.
bool IS_WORST_CODE(int code);

// Says "WORST_WORD_LESSON code %d is unknown \n".
void TELL_UNKNOWN_CODE(int code);

// What the recipes of the worst words keep: true when entry `place` was asked at least once in the
// direction of questioning (asked), and neither its last known nor its last not-known answer there
// is of today. other: the other direction, not looked at.
bool MAY_BE_WORST(const Trf_side &asked, const Trf_side &other, int place, long today);

// Known and not-known answers of entry icont together, held at the end of the type.
long NB_ANSWERS(int icont, const Trf_side &side);

// Day of the last answer to entry icont: that of the last known answer, or of the last not-known
// one where there is no known answer or where it is the later one.
long LAST_ANSWER_DAY(int icont, const Trf_side &side);

// 10 more than the largest number of answers among entries 1 to nb.
long WORST_BOUND(int nb, const Trf_side &side);

// The keys of entry icont, whose score of this direction is computed, into keys[1] to keys[3]
// (keys[0] is left alone). The rule's code is known.
void WORST_KEYS(const Trf_worst_rule &rule, int icont, const Trf_side &side, long *keys);

#endif
