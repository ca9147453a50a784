// The old index of a dictionary, read back so that a rebuild can carry every history over.
#include "db/old_index.h"

#include <glib.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "db/idx1_walk.h"
#include "util/report.h"

namespace {

const char OLD_INDEX[] = "./idx1_old";
const int START_NB_TOT = 20;
const int NB_TOT_STEP = 10;
const int START_LSS_WORDS = 30;
const int NB_SPARE = 5;

void allocate_arrays(Trf_classmt *old) {
  size_t nb = (size_t)old->nb_tot + NB_SPARE;
  old->order = (int *)g_realloc(old->order, nb * sizeof(int));
  old->value = (long *)g_realloc(old->value, nb * sizeof(long));
}

[[noreturn]] void stop_without_star(FILE *fp_log) {
  LOG_AND_SAY(fp_log, "Error no detection of #     *  stop \n");
  STOP_PROGRAM(fp_log, 1, "n file : %s \n", OLD_INDEX);
}

// Counts a record; `start` is the offset of its name line.
void add_record(long start, Trf_classmt *old) {
  old->nb++;
  if (old->nb >= old->nb_tot) {
    old->nb_tot += NB_TOT_STEP;
    allocate_arrays(old);
  }
  old->order[old->nb] = old->nb;
  old->value[old->nb] = start;
}

// Appends a blank, the question and '*'.
void add_words(const char *name_line, FILE *fp_log, std::string *words) {
  const char *star = strchr(name_line, '*');
  if (star == nullptr)
    stop_without_star(fp_log);
  *words += ' ';
  words->append(name_line + 1, star + 1);
}

void store_words(const std::string &words, Trf_classmt *old) {
  old->lss_words = (int)words.size();
  old->ss_words = (char *)g_realloc(old->ss_words, words.size() + NB_SPARE);
  memcpy(old->ss_words, words.c_str(), words.size() + 1);
}

} // namespace

void INIT_CLASSMT(FILE *fp_class, FILE *fp_log, const char *s_idx1, Trf_classmt *trf_classmt) {
  *trf_classmt = Trf_classmt();
  trf_classmt->fp_class = fp_class;
  trf_classmt->fp_log = fp_log;
  trf_classmt->s_idx1 = s_idx1;
  trf_classmt->nb_tot = START_NB_TOT;
  allocate_arrays(trf_classmt);
  trf_classmt->lss_words = START_LSS_WORDS;
  trf_classmt->ss_words = (char *)g_malloc0(START_LSS_WORDS + NB_SPARE);
  trf_classmt->ss_words[0] = '*';
}

void FREE_CLASSMT(Trf_classmt *trf_classmt) {
  if (trf_classmt->fp_class != nullptr)
    fclose(trf_classmt->fp_class);
  g_free(trf_classmt->order);
  g_free(trf_classmt->value);
  g_free(trf_classmt->nk_QR);
  g_free(trf_classmt->nk_RQ);
  g_free(trf_classmt->ss_words);
  *trf_classmt = Trf_classmt();
}

void CLASS_OLD_WORDS(Trf_classmt *trf_classmt) {
  Trf_idx1_walk walk(trf_classmt->fp_class, OLD_INDEX, trf_classmt->fp_log, nullptr);
  if (trf_classmt->s_class != nullptr)
    walk.file = trf_classmt->s_class;
  std::string words(trf_classmt->ss_words != nullptr ? trf_classmt->ss_words : "*");
  allocate_arrays(trf_classmt);
  SKIP_HEADER(&walk);
  for (Trf_walk_line kind = NEXT_NAME(&walk); kind != WALK_END; kind = NEXT_NAME(&walk)) {
    if (kind != WALK_ENTRY)
      continue;
    add_record(walk.line.start, trf_classmt);
    add_words(walk.line.text, trf_classmt->fp_log, &words);
  }
  // QUIRK first 10000 lines of an old index: what lies behind is not carried over; a reader would
  // take the limit for a mistake. It is meant: no idx1 file is read further anywhere, and the
  // learner is told, so that the dictionary can be divided.
  // Test: ClassOldWords.TellsOfAnIndexLongerThan10000Lines
  TELL_WHERE_CUT(trf_classmt->s_idx1 != nullptr ? trf_classmt->s_idx1 : OLD_INDEX, &walk);
  store_words(words, trf_classmt);
}

// A question holds no '*' (it ends at the first), so a search for "* question*" can only find a
// whole text between two neighbouring '*': the table of those texts gives the same answers.
//
// QUIRK equal questions: of two entries with the same question both take the history of the first
// old record; a reader would expect the second to take the second's. It is meant: an entry is known
// by its question alone.
// Test: OldNames.TheFirstRecordOfEqualQuestionsWins
Trf_old_names OLD_NAMES(const char *ss_words) {
  Trf_old_names names;
  std::string_view words(ss_words);
  names.reserve((size_t)std::count(words.begin(), words.end(), '*'));
  int number = 1;
  const char *star = strchr(ss_words, '*');
  for (; star != nullptr; number++) {
    const char *next = strchr(star + 1, '*');
    if (next != nullptr && star[1] == ' ')
      names.emplace(std::string_view(star + 2, (size_t)(next - star - 2)), number);
    star = next;
  }
  return names;
}

int FIND_OLD_RECORD(const Trf_old_names &names, std::string_view question) {
  auto found = names.find(question);
  return found == names.end() ? 0 : found->second;
}
