// The words of the lesson being drilled, one by one, each with its history lines in its idx1 file.
#include "db/lesson_history.h"

#include <errno.h>
#include <limits.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

#include "score/position_table.h"
#include "util/day_number.h"
#include "util/report.h"

namespace {

void close_idx1(Trf_lesson_walk *walk) {
  if (walk->book->fp_idx1 != nullptr)
    fclose(walk->book->fp_idx1);
  walk->book->fp_idx1 = nullptr;
  walk->line.fp = nullptr;
  walk->path.clear();
  walk->stale = false;
}

// Opens the idx1 file that the word's record names, unless it is open.
void open_idx1(Trf_lesson_walk *walk) {
  Trf_book *book = walk->book;
  if (book->fp_idx1 != nullptr && !walk->stale && walk->path == walk->record.path)
    return;
  close_idx1(walk);
  if (walk->shut.count(walk->record.path) > 0)
    return;
  book->fp_idx1 = fopen(walk->record.path.c_str(), walk->mode);
  if (book->fp_idx1 == nullptr) {
    walk->shut.insert(walk->record.path);
    LOG_AND_SAY(book->fp_log, "%s cannot open file %s \n", walk->who, walk->record.path.c_str());
    return;
  }
  walk->line.fp = book->fp_idx1;
  walk->path = walk->record.path;
}

[[noreturn]] void stop_without_offset(Trf_lesson_walk *walk) {
  WRITE_LESSON_CHANGES(walk);
  STOP_PROGRAM(walk->book->fp_log, 1, "RECORD_FILE error cannot extract nc1 \n");
}

[[noreturn]] void stop_without_reference(Trf_lesson_walk *walk) {
  FILE *fp_log = walk->book->fp_log;
  WRITE_LESSON_CHANGES(walk);
  LOG_AND_SAY(fp_log, "%s error 1 stop 2 \n", walk->who);
  LOG_AND_SAY(fp_log, "Error no detection of values icont=%d stop \n", walk->icont);
  STOP_PROGRAM(fp_log, 2, "in file : %s \n", CURRENT_GENE_NAME(walk->book->ilesson));
}

void tell_unread(const char *path, int reason, Trf_lesson_walk *walk) {
  LOG_AND_SAY(walk->book->fp_log, "cannot read file %s: %s \n", path, strerror(reason));
}

// Finds the line as it stands in the file.
void find_line(long start, Trf_lesson_walk *walk, Trf_history_line *line) {
  *line = Trf_history_line();
  if (walk->stale)
    open_idx1(walk);
  line->unread = walk->book->fp_idx1 == nullptr; // and that has been told
  if (line->unread)
    return;
  walk->line.next = start;
  bool found = NEXT_LINE(&walk->line);
  line->start = start;
  line->next = walk->line.next;
  if (ferror(walk->line.fp)) {
    line->unread = true;
    tell_unread(walk->path.c_str(), errno, walk);
    clearerr(walk->line.fp);
    return;
  }
  line->found = found;
  line->is_record = walk->line.text[0] == '#';
}

} // namespace

Trf_lesson_walk::Trf_lesson_walk(const char *routine, FILE *fp_gene, const char *open_mode,
                                 Trf_book *of_book)
    : who(routine), mode(open_mode), book(of_book), gene(fp_gene), line(nullptr),
      date0(DIFF_JOUR()) {
  gene.limit = LONG_MAX;
  line.limit = LONG_MAX;
  close_idx1(this);
}

Trf_lesson_walk::~Trf_lesson_walk() {
  close_idx1(this);
}

// QUIRK unreadable record: where no name line stands at a word's place in the lesson file, the word
// is passed over without a message, and the next word keeps its own number; a reader would expect
// the walk to stop or to say so. It is meant: a word's counts belong to its number, and the other
// words of the lesson must not lose theirs.
// Test: RecordLesson.ARecordThatCannotBeReadIsPassedOverWithItsWordAlone
bool NEXT_LESSON_WORD(Trf_lesson_walk *walk) {
  const Trf_posit *t_posit = walk->book->t_posit;
  while (walk->icont < t_posit->nb_posit) {
    walk->icont++;
    walk->gene.next = t_posit->posit[walk->icont];
    Trf_gene_result result = READ_GENE_RECORD(&walk->gene, &walk->record);
    if (result == GENE_UNREAD)
      tell_unread(CURRENT_GENE_NAME(walk->book->ilesson), errno, walk);
    if (result == GENE_UNREAD || result == GENE_NO_NAME)
      continue;
    if (result == GENE_NO_REFERENCE)
      stop_without_reference(walk);
    open_idx1(walk);
    if (result == GENE_NO_OFFSET)
      stop_without_offset(walk);
    return true;
  }
  return false;
}

void RESTART_LESSON_WALK(Trf_lesson_walk *walk) {
  walk->icont = 0;
}

void FIND_HISTORY_LINE(long start, Trf_lesson_walk *walk, Trf_history_line *line) {
  find_line(start, walk, line);
  if (line->unread || !IS_PENDING(walk->path, line->start, line->next, walk->pending))
    return;
  WRITE_LESSON_CHANGES(walk);
  find_line(start, walk, line);
}

// The bytes are looked at themselves: the text of a line may have another length, a tab is several
// blanks there.
long ROOM_OF_HISTORY_LINE(const Trf_history_line &line, Trf_lesson_walk *walk) {
  if (!line.found)
    return 0;
  std::string bytes((size_t)(line.next - line.start), '\0');
  ssize_t nb = pread(fileno(walk->line.fp), bytes.data(), bytes.size(), line.start);
  if (nb < 0) {
    tell_unread(walk->path.c_str(), errno, walk);
    return -1;
  }
  return (long)std::min(bytes.find_first_of("\r\n\xFF"), (size_t)nb);
}

void READ_LESSON_HISTORY(long start, Trf_lesson_walk *walk, Trf_history_line *line) {
  *line = Trf_history_line();
  FILE *fp_log = walk->book->fp_log;
  if (walk->book->fp_idx1 == nullptr)
    return;
  FIND_HISTORY_LINE(start, walk, line);
  if (line->unread)
    return;
  if (walk->line.length != HISTORY_LENGTH)
    LOG_LINE(fp_log, "%s  file : %s  needs regeneration\n", walk->who, walk->path.c_str());
  line->faulty = CHECK_EXTRACT_4LINT(walk->date0, walk->line.text, line->values) != 0;
  if (line->faulty)
    LOG_LINE(fp_log, "%s and CHECK_4LINTsome error in file : %s of lesson : %s \n", walk->who,
             walk->path.c_str(), walk->record.alias.c_str());
}

bool CHANGE_LESSON_HISTORY(long start, const std::string &text, Trf_lesson_walk *walk) {
  int reason = ADD_CHANGE(walk->book->fp_idx1, walk->path, start, text, &walk->pending);
  if (reason != 0)
    tell_unread(walk->path.c_str(), reason, walk);
  return reason == 0;
}

void WRITE_LESSON_CHANGES(Trf_lesson_walk *walk) {
  FILE *fp_log = walk->book->fp_log;
  walk->stale = walk->stale || !walk->pending.waiting.empty();
  for (const auto &[path, reason] : WRITE_PENDING(&walk->pending, fp_log))
    LOG_AND_SAY(fp_log, "cannot write file %s: %s \n", path.c_str(), strerror(reason));
}
