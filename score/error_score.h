// The error score: an entry's history of answers condensed into one number.
#ifndef MERTU_SCORE_ERROR_SCORE_H
#define MERTU_SCORE_ERROR_SCORE_H

// Weights of the error score, single precision. The book owns the one record; it is filled with
// the defaults and then from the configuration.
struct Trf_err {
  float cof1_err; // weight of each not-known answer (9; above 0, at most 10)
  float cof2_err; // weight of each known answer, subtracted (3; above 0, at most 10)
  float cof3_err; // days that add one point of ageing (2; 0.1 to 10)
  float cof4_err; // four times this caps the score before the bonus (6; 1 to 10); its integer part
                  // is also the least decrease on a known answer
  float cof5_err; // its integer part is added on a not-known answer (10; 1 to 10)
};

// The error score of an entry in one direction: the larger, the more it needs drilling.
//   t_err      the weights
//   nb, nok    known and not-known answers; a negative count is taken as 0
//   date       today, as a day number
//   date_ok    day of the last known answer; not looked at when nb is 0
//   date_nok   day of the last not-known answer; not looked at when nok is 0
// Returns -1 for an entry never asked (both counts 0), else a score of at least 1: ageing and
// balance, together at most the whole part of 4 x cof4_err, and on top of it the bonus of a recent
// miss (18, 8, 3, 1 or 0). All in single precision; what becomes an integer is cut toward zero.
// Pure; every input gives a value.
long FCT_ERROR(Trf_err *t_err, long nb, long nok, long date, long date_ok, long date_nok);

#endif
