// The worst-words lesson: the twenty entries that the learner knows least, out of all dictionaries.
#ifndef MERTU_LESSON_WORST_WORDS_H
#define MERTU_LESSON_WORST_WORDS_H

#include <stdio.h>

struct Trf_book;

// Composes the lesson of the twenty worst entries in the current direction (sens_qr) into the
// position table and "./idx2_gene". Dictionaries are read whole while fewer than 20 entries are
// held; then the best 20 by the keys of the code are kept (lesson/worst_keys.h), and the remaining
// dictionaries are searched for worse ones. An entry counts when it was asked in this direction
// and was not answered in it today; "##" entries do not.
//   code_worst   1 to 5. Any other keeps every entry collected, in the order of collection, and
//                says "WORST_WORD_LESSON code %d is unknown \n".
//   book         ilesson becomes 0; t_posit holds the lesson, -1 at nb_posit + 1 of both
//                orderings; where no entry counts, nb_posit is as it was. fp_gene and fp_idx1 are
//                null afterwards. Where "./idx2_gene" cannot be opened or written whole, the
//                lesson is empty (told as BEGIN_COMPOSITION does, lesson/compose.h).
// The ordering of the current direction ends sorted by score (entries of equal scores as the code
// ranks them), that of the other direction likewise by the score noted there. "./idx2_gene" has no
// trailer.
// Logs each stage; VERIF_LESSON runs before and after the limit, and after the search.
// Ends the program: 1, 2, 3 as VISIT_DICTIONARY (lesson/compose.h); 1 as MEND_FORGOTTEN; 11 as
// KEEP_TWENTY; as VERIF_LESSON does.
void WORST_WORDS_LESSON(int code_worst, Trf_book *book);

// Searches the dictionaries after prev_lesson (a number, from 1) for entries that go ahead of the
// lesson's last one under the keys of the code; each takes the place of the last at its own rank,
// and its record is appended to fp_gene. Code 5 passes over entries with as many answers as the
// bound of the last WORST_WORDS_LESSON, or as that of the table where it is the greater one.
//   fp_gene   the generated lesson file, open for writing at its end; stays open
//   book      t_posit changes; fp_idx1 is null afterwards
// A code that is unknown is said as above, and nothing is searched. Ends of the program as
// VISIT_DICTIONARY.
void COMPLETE_WORST_LESSON(int code_worst, int prev_lesson, FILE *fp_gene, Trf_book *book);

#endif
