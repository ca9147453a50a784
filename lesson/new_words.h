// Composed lessons of words to begin with: those never asked, and those asked one way only.
#ifndef MERTU_LESSON_NEW_WORDS_H
#define MERTU_LESSON_NEW_WORDS_H

struct Trf_book;
struct Trf_recipe;
struct Trf_side;

// Both gather up to twenty entries from all dictionaries, in the order of the registry, into
// ./idx2_gene and the book's position table, which is allocated afresh. nb_posit is then the size
// of the lesson, 0 when nothing qualified. The entries stand in the order found in the direction of
// questioning (sens_qr) and by score in the other one. ilesson and the directions are left alone;
// fp_gene and fp_idx1 are null afterwards. The log ends with "NEW_WORDS_LESSON done\n" or
// "BALANCE_WORDS done\n". A lesson whose file cannot be written is empty, see BEGIN_COMPOSITION.
// Ends of the program: as VISIT_DICTIONARY, and 1 as MEND_FORGOTTEN.

// The entries never asked in the direction of questioning.
void NEW_WORDS_LESSON(Trf_book *book);

// The entries asked in the other direction but never in the direction of questioning.
void BALANCE_WORDS(Trf_book *book);

// What both are made of: a lesson of this recipe, sorted in the other direction alone, with its
// trailer, as told above; the log ends with the recipe's name and " done\n". ss_tag: as in
// Trf_composition.
void COMPOSE_AS_FOUND(const Trf_recipe *recipe, const char *ss_tag, Trf_book *book);

// The rule of a recipe for entries never asked in the direction of questioning.
bool KEEPS_NEVER_ASKED(const Trf_side &asked, const Trf_side &other, int place, long today);

#endif
