// The list of aliases, built from the working copies at start-up.
#include "db/alias_list.h"

#include <errno.h>
#include <glib.h>
#include <string.h>

#include <string>

#include "db/dictionary_file.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const size_t SPARE_BYTES = 5; // of the list, beyond its length

// The alias that the working copy of a dictionary names.
std::string alias_of(FILE *fp_log, int num, Trf_registry_walk *walk) {
  Owned_text copy(S_CPY_LESSON_FROM_NUM(num, walk));
  Owned_stream file = OPEN_STREAM(copy.get(), "r");
  if (file == nullptr)
    STOP_PROGRAM(fp_log, 32, "MAKE_ST_ALIAS error 32 CPY for lesson %d not found \n", num);
  Owned_text alias(EXTRACT_SHABANG(file.get()));
  int reason = errno;
  if (ferror(file.get()))
    STOP_PROGRAM(fp_log, 1, "cannot read file %s: %s \n", copy.get(), strerror(reason));
  if (alias == nullptr) {
    Owned_text lesson(S_LESSON_FROM_NUM(num, walk));
    STOP_PROGRAM(fp_log, 32, "MAKE_ST_ALIAS no alias in file %s STOP \n", lesson.get());
  }
  return alias.get();
}

} // namespace

void MAKE_ST_ALIAS(FILE *fp_log, Trf_string *G_dico) {
  std::string aliases = " ";
  Trf_registry_walk walk(G_dico);
  for (int num = 1; num <= G_dico->nb_lesson; num++)
    aliases += alias_of(fp_log, num, &walk) + " ";
  g_free(G_dico->st_alias);
  G_dico->st_alias = static_cast<char *>(g_malloc0(aliases.size() + SPARE_BYTES));
  memcpy(G_dico->st_alias, aliases.c_str(), aliases.size() + 1);
  TRACE("MAKE_ST_ALIAS st_alias=%s@@@ \n", G_dico->st_alias);
}
