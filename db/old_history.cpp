// An entry's old history, read from an old index by the entry's question.
#include "db/old_history.h"

#include <limits.h>
#include <stdlib.h>

#include "db/idx1_format.h"
#include "db/idx1_walk.h"
#include "util/day_number.h"
#include "util/report.h"

namespace {

// The next line of the old record. An old index that ends here would lose a history.
char *next_old_line(Trf_old_histories *old) {
  if (NEXT_LINE(&old->record) && !IS_END_MARK(old->record.text))
    return old->record.text;
  LOG_AND_SAY(old->fp_log, "IDX1_DICO error in reading fp_class \n");
  SAY("%s ends in the middle of an entry: remove its last name line, or put the cpy_ file back \n",
      old->s_idx1);
  exit(3);
}

// Reads and checks a history line. `which` tells the two apart in the message.
void read_values(const char *which, Trf_old_histories *old, long *values) {
  if (TAKE_READY_HISTORY(old->date0, &old->record, values))
    return;
  if (CHECK_EXTRACT_4LINT(old->date0, next_old_line(old), values) != 0)
    LOG_LINE(old->fp_log, "IDX1_DICO and CHECK_4LINTsome error%s in file : %s \n", which,
             old->s_idx1);
}

// Whether '#', the question and '*' stand in the line.
bool holds_question(std::string_view line, std::string_view question) {
  for (size_t at = line.find(question); at < line.size(); at = line.find(question, at + 1))
    if (at > 0 && line[at - 1] == '#' && line.substr(at + question.size(), 1) == "*")
      return true;
  return false;
}

} // namespace

Trf_old_histories::Trf_old_histories(Trf_classmt *classmt, const char *path, FILE *log)
    : old(classmt), s_idx1(path), fp_log(log), names(OLD_NAMES(classmt->ss_words)),
      record(classmt->fp_class), date0(DIFF_JOUR()) {
  record.limit = LONG_MAX;
}

Trf_old_result READ_OLD_HISTORY(std::string_view question, Trf_old_histories *old,
                                Trf_values *values) {
  int j = FIND_OLD_RECORD(old->names, question);
  if (j < 1 || j > old->old->nb)
    return OLD_NONE;
  old->record.next = old->old->value[j];
  if (!holds_question(next_old_line(old), question))
    return OLD_OTHER_NAME;
  read_values("", old, values->qr);
  read_values(" 2", old, values->rq);
  return OLD_HISTORY;
}
