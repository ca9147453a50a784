// An entry of a dictionary that stands for an entry of another one.
#include "lesson/indirect_entry.h"

#include <string.h>

#include <string>

#include "config/registry.h"
#include "db/generated_lesson.h"
#include "db/idx1_walk.h"
#include "lesson/table_entry.h"
#include "score/position_table.h"
#include "util/book.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// Lines of the other idx1 file that the search reads at most.
const long MAX_SEARCHED_LINES = 9999;

const Trf_walk_texts TEXTS = {"INDIRECT_IDX1 and CHECK_4LINT", "INDIRECT_IDX1 and CHECK_4LINT",
                              "INDIRECT_IDX1 "};

// The idx1 file of the dictionary whose alias begins at `text` and ends at the next blank; null
// where there is none.
Owned_text idx1_of_alias(const char *text, Trf_string *G_dico) {
  std::string alias(text, strcspn(text, " "));
  int num = NUM_FROM_ALIAS(alias.data(), G_dico);
  return Owned_text(num < 1 ? nullptr : S_IDX1_FROM_NUM(num, G_dico));
}

// Walks on to the name line that contains `key`. Returns it without leading blanks (inside the
// walk's line), or null where the file, or the lines allowed, end before it.
const char *find_name(const char *key, Trf_idx1_walk *walk) {
  while (NEXT_IDX1_LINE(walk)) {
    const char *name = walk->line.text + strspn(walk->line.text, " ");
    if (IS_NAME_LINE(name) && strstr(name, key) != nullptr)
      return name;
  }
  return nullptr;
}

} // namespace

void INDIRECT_IDX1(FILE *fp_gene, Trf_book *book, char *ssd, int *jcont, int *nbmx_posit) {
  char *star = strchr(ssd, '*');
  if (star == nullptr)
    return;
  Owned_text s_idx1 = idx1_of_alias(star + 1, book->G_kentel);
  Owned_stream fp = s_idx1 != nullptr ? OPEN_STREAM(s_idx1.get(), "r") : nullptr;
  // QUIRK unknown owner in silence: an alias that no dictionary has, or a missing idx1 file, adds
  // nothing and says nothing. It looks like a forgotten message; it is meant: a dictionary may name
  // others that are not in the list today. Test: IndirectEntry.AnUnknownAliasIsPassedOverInSilence
  if (fp == nullptr)
    return;
  star[1] = '\0';
  Trf_idx1_walk walk(fp.get(), s_idx1.get(), book->fp_log, &TEXTS);
  ALLOW_LINES(MAX_SEARCHED_LINES, &walk);
  const char *name = find_name(ssd + 1, &walk);
  if (name == nullptr) {
    LOG_LINE(book->fp_log, "in file : %s \n", s_idx1.get());
    LOG_LINE(book->fp_log, "INDIRECT_IDX1 no detection of ssd=%s \n", ssd);
    return;
  }
  long history = walk.line.next;
  int icont = *jcont + 1;
  MAKE_ROOM_FOR_ENTRY(icont, nbmx_posit, book->t_posit);
  book->t_posit->posit[icont] = APPEND_GENE_NAME(fp_gene, name);
  READ_ENTRY_HISTORY(icont, &walk, book->t_posit);
  APPEND_GENE_REFERENCE(fp_gene, s_idx1.get(), history);
  *jcont = icont;
}
