// The tag lessons: the new and the worst entries that carry a tag, or that carry none.
//
// ss_tag, in all of them: the tag as the tag test looks for it (lesson/tag_test.h); "" for the
// entries that carry no tag.
#ifndef MERTU_LESSON_TAG_LESSONS_H
#define MERTU_LESSON_TAG_LESSONS_H

#include <stdio.h>

#include "lesson/tag_test.h"

struct Trf_book;

// The new-words lesson (lesson/new_words.h) out of the entries that pass the tag test: at most 20
// that were never asked in the current direction. Logs "NEW_TAG_LESSON done\n".
// Ends of the program as NEW_WORDS_LESSON.
void NEW_TAG_LESSON(char *ss_tag, Trf_book *book);

// The worst-words lesson out of the entries that pass the tag test: the twenty with the highest
// scores of the current direction, among those asked in it but not today.
//   book   a direction that waits (toggle_sens_qr) becomes the current one first. t_posit holds
//          the lesson, -1 at nb_posit + 1 of both orderings; where no entry counts, nb_posit is as
//          it was. ilesson is left alone; fp_gene and fp_idx1 are null afterwards. Where
//          "./idx2_gene" cannot be opened or written whole, the lesson is empty (told as
//          BEGIN_COMPOSITION does, lesson/compose.h).
// A single entry is neither sorted, completed nor verified. "./idx2_gene" has no trailer.
// Ends of the program: 1, 2, 3 as VISIT_DICTIONARY (lesson/compose.h); 1 as MEND_FORGOTTEN; 11 as
// KEEP_TWENTY; as VERIF_LESSON does.
void WORST_TAG_LESSON(char *ss_tag, Trf_book *book);

// Searches the dictionaries after prev_lesson (a number, from 1) for entries that pass the tag test
// and score higher than the lesson's last one; each takes the place of the last behind all entries
// that score as high, and its record is appended to fp_gene.
//   fp_gene   the generated lesson file, open for writing at its end; stays open
//   book      t_posit changes; fp_idx1 is null afterwards
// Ends of the program as VISIT_DICTIONARY.
void COMPLETE_TAG_LESSON(int prev_lesson, FILE *fp_gene, char *ss_tag, Trf_book *book);

// Lists a ranking with the statistics of each entry, as trace. Changes nothing.
//   err_sup, err_min   scores at the first and the last rank
//   nb_words           ranks, in the table at most
//   ord_posit          the ordering of one direction, from rank 1; borrowed
//   cum_err            its scores, by entry; borrowed
void SORT_COMPLETE(long err_sup, long err_min, int nb_words, int *ord_posit, long *cum_err,
                   Trf_book *book);

#endif
