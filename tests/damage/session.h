// What a learner does with the program in one sitting, without the window.
#ifndef MERTU_TESTS_DAMAGE_SESSION_H
#define MERTU_TESTS_DAMAGE_SESSION_H

// The line that is said when the words are ready, as the window would stand then.
const char READY[] = "session: ready";

// The start-up path in the current directory, as the program takes it before its window.
void START_AND_STOP();

// The same, then some of what the window offers, chosen by the seed: lessons loaded, drilled and
// recorded, forgotten, composed, the reports, the maintenance; last the leaving.
void WORK_A_WHILE(unsigned seed);

#endif
