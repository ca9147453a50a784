// The present moment, chance and processor time, as a test wants them.
#ifndef MERTU_TESTS_SUPPORT_PRESENT_H
#define MERTU_TESTS_SUPPORT_PRESENT_H

#include <time.h>

#include <vector>

// time() answers this until RESET_PRESENT.
void SET_PRESENT(time_t moment);
// time() answers noon of this day, local time (month 1 to 12, day of month).
void SET_PRESENT_DAY(int year, int month, int day);
void RESET_PRESENT();

// rand() answers these numbers in turn, over and over; an empty list gives chance back.
void SET_RAND(const std::vector<int> &numbers);
// The last argument of srand(), and how often it was called.
unsigned SEED_SEEN();
int NB_SEEDS_SEEN();

// Each call of clock() advances it by so many ticks; 0 gives the real one back.
void SET_CLOCK_STEP(clock_t ticks);

#endif
