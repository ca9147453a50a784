// The one loop of every composed lesson: the dictionaries in the order of the registry, their
// entries, and what a recipe keeps of them.
//
//   Trf_composition composition(&RECIPE, ss_tag, book);
//   if (!BEGIN_COMPOSITION(&composition))
//     return;                        // refused: told, and the lesson is empty
//   COLLECT_ENTRIES(&composition);   // ./idx2_gene written, the table filled, nb_posit set
//   SCORE_ENTRIES(&composition);
//   SORT_BY_SCORE(2, book);
//   END_COMPOSITION(&composition);   // end marks set, ./idx2_gene closed
//
// A completion looks through further dictionaries with the same recipe; what it does with an entry
// is its `take`:
//
//   Trf_composition rest(&RECIPE, ss_tag, book);
//   rest.take = [&](const Trf_candidate &candidate) { ... candidate.place is nb_posit + 1 ... };
//   for (int k = prev_lesson + 1; k <= book->nbt_lesson; k++)
//     VISIT_DICTIONARY(k, &rest);
#ifndef MERTU_LESSON_COMPOSE_H
#define MERTU_LESSON_COMPOSE_H

#include <stdio.h>

#include <functional>

#include "config/registry.h"
#include "db/idx1_walk.h"
#include "score/position_table.h"

struct Trf_book;

// Entries of a composed lesson at most.
const int MAX_COMPOSED = 20;
// Capacity of the table at the start of a composition; it grows as MAKE_ROOM_FOR_ENTRY lets it.
const int COMPOSED_CAPACITY = 25;

// What one composed lesson does otherwise than another.
struct Trf_recipe {
  const char *name;     // the builder, for the log
  Trf_walk_texts texts; // what it says of damaged files
  const char *mode;     // how ./idx2_gene is opened: "w", or "w+" where it is read back meanwhile
  bool whole; // a dictionary once begun is read to its end, else twenty entries are enough
  bool early; // Q->R: decided before the R->Q line is read (see compose.cpp)
  // Whether entry `place` belongs into the lesson. asked: the side of the direction of questioning;
  // other: the other side, not yet read in an early decision; today: day number.
  bool (*keeps)(const Trf_side &asked, const Trf_side &other, int place, long today);
};

// An entry that the recipe keeps. The texts are borrowed until `take` returns.
struct Trf_candidate {
  int place;             // its number in the table, where its two histories stand
  const char *name_line; // its name line as read
  const char *path;      // path of its idx1 file
  long history;          // offset there of its Q->R history line
};

// One composition, or one completion, at work. Everything it points to is borrowed.
struct Trf_composition {
  const Trf_recipe *recipe;
  const char *ss_tag; // the tag that an entry must carry, "" for entries without one; null: no test
  Trf_book *book;
  Trf_registry_walk dictionaries;
  long today;       // day number
  int sens;         // direction of questioning when it began: 1 Q->R, else R->Q
  int nb = 0;       // entries selected from the dictionaries visited
  int nb_begun = 0; // number of the last dictionary that COLLECT_ENTRIES has turned to; 0 none
  // Empty: the entry is selected, that is, added to the table and to ./idx2_gene. Else it stands in
  // the spare place nb_posit + 1, and this is all that is done with it. It must not allocate or
  // grow the table.
  std::function<void(const Trf_candidate &)> take;

  // Reads the day and the book's sens_qr.
  Trf_composition(const Trf_recipe *row, const char *tag, Trf_book *b);
};

// Closes streams that the book still has open (fp_gene, fp_idx1), calls MEND_FORGOTTEN, opens
// ./idx2_gene as the book's fp_gene and allocates the table afresh (nb_posit 0). Returns false
// where the file cannot be opened: logged as "NAME cannot open file %s \n" with the recipe's name;
// the lesson is empty and both orderings have their end marks. Ends the program as MEND_FORGOTTEN
// does.
bool BEGIN_COMPOSITION(Trf_composition *composition);

// Visits dictionary k where OPEN_VISITED_INDEX opens its index: hands over every entry that carries
// the tag and that the recipe keeps. "##" lines are passed over; 10000 lines are read at
// most, history lines not counted. The book's fp_idx1 is the open file meanwhile and null
// afterwards.
// Ends of the program, in the log and on standard output:
//   1  "Error no detection of ####### stop" and "n file : %s"   no header; "cannot read file %s:
//      %s"   reading fails behind it
//   2  "Error no detection of values icont=%d stop" and "in file : %s"   a name line without its
//      Q->R line; icont: the candidate's number within its dictionary
//   3  the same, without its R->Q line
void VISIT_DICTIONARY(int k, Trf_composition *composition);

// Visits dictionaries 1, 2, ... up to nbt_lesson while fewer than twenty entries are selected, and
// sets nb_posit to the number selected.
void COLLECT_ENTRIES(Trf_composition *composition);

// Scores entry i in direction sens (1 Q->R, else R->Q) from its counts and days in the table: -1
// where it was never asked. Returns the score, which also stands in the table.
long SCORE_ENTRY(int sens, int i, long today, Trf_book *book);

// Scores every selected entry in both directions.
void SCORE_ENTRIES(Trf_composition *composition);

// Sorts the ordering of direction sens (1 Q->R, else R->Q), ranks 1 to nb_posit, by score.
void SORT_BY_SCORE(int sens, Trf_book *book);

// Writes out what ./idx2_gene holds so far, so that its records can be read back. Returns false
// where it could not be written whole: there is nothing to look at then, and END_COMPOSITION
// refuses it.
bool WRITE_OUT(Trf_composition *composition);

// Ends the composition: -1 behind both orderings, ./idx2_gene closed, the book's fp_gene null.
// Returns false where the file could not be written whole: told as BEGIN_COMPOSITION does, and the
// lesson is empty.
bool END_COMPOSITION(Trf_composition *composition);

#endif
