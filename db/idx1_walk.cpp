// The one cursor over an idx1 file: past its header, from name line to name line, and the two
// history lines of an entry.
#include "db/idx1_walk.h"

#include <errno.h>
#include <limits.h>
#include <string.h>

#include "util/day_number.h"
#include "util/report.h"

namespace {

// A fault of the disk looks like the end of a line or of the file: what is read from there on would
// be taken for the history of another entry.
void stop_where_unreadable(const Trf_idx1_walk &walk) {
  int reason = errno;
  if (ferror(walk.line.fp))
    STOP_PROGRAM(walk.fp_log, 1, "cannot read file %s: %s \n", walk.file, strerror(reason));
}

bool take_ready_history(Trf_idx1_walk *walk, long *values) {
  walk->history.next = walk->line.next;
  if (!TAKE_READY_HISTORY(walk->date0, &walk->history, values))
    return false;
  walk->line.next = walk->history.next;
  return true;
}

} // namespace

Trf_idx1_walk::Trf_idx1_walk(FILE *fp, const char *s_idx1, FILE *log,
                             const Trf_walk_texts *walk_texts)
    : line(fp), history(fp), path(s_idx1), file(s_idx1), fp_log(log), texts(walk_texts),
      date0(DIFF_JOUR()) {
  line.limit = MAX_IDX1_LINES;
  history.limit = LONG_MAX;
}

void SKIP_HEADER(Trf_idx1_walk *walk) {
  while (NEXT_LINE(&walk->line))
    if (IS_HEADER_MARK(walk->line.text))
      return;
  LOG_AND_SAY(walk->fp_log, "Error no detection of ####### stop \n");
  STOP_PROGRAM(walk->fp_log, 1, "n file : %s \n", walk->path);
}

void ALLOW_LINES(long nb, Trf_idx1_walk *walk) {
  walk->line.nb_read = 0;
  walk->line.limit = nb;
}

void TELL_WHERE_CUT(const char *path, Trf_idx1_walk *walk) {
  bool at_limit = walk->line.length >= 0 && !IS_END_MARK(walk->line.text);
  ALLOW_LINES(1, walk);
  if (at_limit && NEXT_LINE(&walk->line))
    SAY("index %s is longer than %ld lines \n", path, MAX_IDX1_LINES);
}

bool NEXT_IDX1_LINE(Trf_idx1_walk *walk) {
  bool found = NEXT_LINE(&walk->line);
  stop_where_unreadable(*walk);
  return found && !IS_END_MARK(walk->line.text);
}

Trf_walk_line NEXT_NAME(Trf_idx1_walk *walk) {
  long values[NB_FIELDS + 1] = {};
  do {
    while (TAKE_READY_HISTORY(walk->date0, &walk->line, values)) {
    }
    if (!NEXT_IDX1_LINE(walk))
      return WALK_END;
  } while (walk->line.text[0] != '#');
  return IS_NAME_LINE(walk->line.text) ? WALK_ENTRY : WALK_DOUBLE;
}

char *NEXT_HISTORY_TEXT(Trf_idx1_walk *walk) {
  walk->history.next = walk->line.next;
  bool found = NEXT_LINE(&walk->history);
  stop_where_unreadable(*walk);
  if (!found)
    return nullptr;
  walk->line.next = walk->history.next;
  return walk->history.text;
}

bool TAKE_READY_HISTORY(long date0, Trf_line_cursor *cursor, long *values) {
  const long length = HISTORY_LENGTH + 2; // with "\r\n"
  const char *bytes = READY_BYTES(length, cursor);
  if (bytes == nullptr || memcmp(bytes + HISTORY_LENGTH, "\r\n", 2) != 0 ||
      !READ_WRITTEN_LINE(date0, bytes, values))
    return false;
  PASS_READY_BYTES(length, cursor);
  return true;
}

bool PASS_HISTORY(Trf_idx1_walk *walk) {
  long values[NB_FIELDS + 1] = {};
  if (take_ready_history(walk, values))
    return true;
  const char *text = NEXT_HISTORY_TEXT(walk);
  if (text == nullptr)
    return false;
  bool is_history = text[0] != '#' && !IS_END_MARK(text);
  if (!is_history)
    walk->line.next = walk->history.start;
  return is_history;
}

bool NEXT_HISTORY(int sens, Trf_idx1_walk *walk, long *values) {
  if (take_ready_history(walk, values))
    return true;
  char *text = NEXT_HISTORY_TEXT(walk);
  if (text == nullptr)
    return false;
  const char *damaged = sens == 1 ? walk->texts->damaged_qr : walk->texts->damaged_rq;
  if (CHECK_EXTRACT_4LINT(walk->date0, text, values) != 0)
    LOG_LINE(walk->fp_log, "%ssome error in file : %s \n", damaged, walk->path);
  return true;
}

void READ_HISTORY(int sens, int icont, Trf_idx1_walk *walk, long *values) {
  if (NEXT_HISTORY(sens, walk, values))
    return;
  LOG_AND_SAY(walk->fp_log, "%sError no detection of values icont=%d stop \n", walk->texts->missing,
              icont);
  STOP_PROGRAM(walk->fp_log, sens == 1 ? 2 : 3, "in file : %s \n", walk->path);
}
