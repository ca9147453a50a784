// What was learned is written back: the counts of the current lesson into the idx1 files.
#include "db/record_lesson.h"

#include <string.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "config/registry.h"
#include "db/check_correct.h"
#include "db/lesson_history.h"
#include "db/maintenance.h"
#include "db/mend_forgotten.h"
#include "score/position_table.h"
#include "util/day_number.h"
#include "util/dialogs.h"
#include "util/file_copy.h"
#include "util/numbers.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const char WHO[] = "RECORD_LESSON";
// A known answer more than this many times in one lesson counts once, whatever the score.
const long FEW_ANSWERS = 2;

// A lesson being recorded.
struct Trf_recording {
  Trf_lesson_walk walk;
  std::set<std::string> backed_up = {}; // idx1 files not changed since their back-up was taken
  std::vector<std::string> faulty = {}; // aliases of dictionaries with faulty lines, in order
  std::set<std::pair<std::string, long>> met = {}; // the words so far: idx1 file and offset
  bool twice = false;                              // the word was met before
};

// Opens the current generated lesson file as the book's.
bool open_gene(Trf_book *book) {
  CLOSE_STREAM(&book->fp_gene);
  const char *name = CURRENT_GENE_NAME(book->ilesson);
  book->fp_gene = fopen(name, "r");
  if (book->fp_gene == nullptr)
    LOG_AND_SAY(book->fp_log, "%s cannot open file %s \n", WHO, name);
  return book->fp_gene != nullptr;
}

// Backs the word's idx1 file up, unless its back-up holds what the file holds, and remembers its
// dictionary.
void note_faulty(Trf_recording *job) {
  Trf_lesson_walk *walk = &job->walk;
  if (job->backed_up.insert(walk->path).second) {
    WRITE_LESSON_CHANGES(walk);
    std::string path = walk->path;
    Owned_text back_up(back_up_file(path.data()));
    if (back_up == nullptr)
      LOG_AND_SAY(walk->book->fp_log, "cannot back up file %s \n", path.c_str());
  }
  if (std::find(job->faulty.begin(), job->faulty.end(), walk->record.alias) == job->faulty.end())
    job->faulty.push_back(walk->record.alias);
}

[[noreturn]] void stop_on_count(int status, Trf_recording *job) {
  WRITE_LESSON_CHANGES(&job->walk);
  STOP_PROGRAM(job->walk.book->fp_log, status, "RECORD_LESSON error %d \n", status);
}

// QUIRK entry twice in a lesson: where a lesson names one entry twice and the first of the two was
// answered, the second finds a count in the file that is above its own, and the program ends; a
// reader would expect both to be added up. It is meant: counts only ever grow, and a file that is
// ahead of the memory may come from anywhere. The learner is told which entry it was.
// Test: RecordLesson.AnEntryThatStandsTwiceIsNamedBeforeTheEnd
void tell_twice(Trf_recording *job) {
  std::string question = QUESTION_OF_NAME_LINE(job->walk.record.name);
  question.resize(question.find_last_not_of(' ') + 1);
  SAY("entry %s stands twice in the lesson \n", question.c_str());
}

// Ends the program where memory holds counts that cannot be.
void check_counts(long nb, long nok, const long *values, Trf_recording *job) {
  if (nb > MAX_RECORDED_COUNT || nok > MAX_RECORDED_COUNT)
    stop_on_count(1, job);
  if (nb >= values[1] && nok >= values[2])
    return;
  if (job->twice)
    tell_twice(job);
  stop_on_count(2, job);
}

// QUIRK damped count: known answers of a lesson raise the recorded count by one at most, and not at
// all where one or two leave a score above 0, though their day is recorded; a reader would expect
// the count of the memory in the file. It is meant: what was known twice and is still owed shall
// not look well known because of one lesson.
// Test: RecordLesson.OneOrTwoKnownAnswersOnAScoreKeepTheCountAndChangeTheDay
void take_known(long nb, long cum_err, long today, long *values) {
  if (cum_err == 0 || nb - values[1] > FEW_ANSWERS)
    values[1] += 1;
  values[3] = today;
}

// QUIRK a miss hides the known answers: where the entry was missed too, neither the known answers
// of the lesson nor their day are recorded; a reader would expect both. It is meant: a word missed
// in a lesson was not known in it.
// Test: RecordLesson.AMissChangesFieldsTwoAndFourAlone
void take_missed(long nok, long today, long *values) {
  values[2] = nok;
  values[4] = today;
}

// Takes the counts of direction sens into the values read. False where they are equal.
//
// QUIRK faulty line left: a damaged line whose corrected counts are those of the memory is not
// rewritten; a reader would expect the chance to be taken. It is meant: the correction at the end
// of the recording, or of the next rebuild, puts whole files right, and recording changes only what
// was learned. Test: RecordLesson.AFaultyLineWithEqualCountsStaysAsItIs
bool take_counts(int sens, long *values, Trf_recording *job) {
  const Trf_lesson_walk &walk = job->walk;
  Trf_side side = SIDE_OF_TABLE(sens, walk.book->t_posit);
  long nb = side.nb[walk.icont];
  long nok = side.nok[walk.icont];
  check_counts(nb, nok, values, job);
  if (nok != values[2])
    take_missed(nok, walk.date0, values);
  else if (nb != values[1])
    take_known(nb, side.cum_err[walk.icont], walk.date0, values);
  else
    return false;
  return true;
}

// The history line of these values in so many bytes.
std::string text_of_length(const long *values, long length) {
  std::string text((size_t)std::max<long>(length, HISTORY_LENGTH) + 1, '\0');
  WRITE_HISTORY_LINE(values, text.data());
  RESIZE_STRING((int)length, text.data());
  text.resize((size_t)length);
  return text;
}

// Writes the line anew at its own length. Where it is missing there is nothing to write over. False
// where the disk refuses it.
bool rewrite_line(const Trf_history_line &line, Trf_recording *job) {
  long room = ROOM_OF_HISTORY_LINE(line, &job->walk);
  if (room <= 0)
    return room == 0;
  job->backed_up.erase(job->walk.path);
  return CHANGE_LESSON_HISTORY(line.start, text_of_length(line.values, room), &job->walk);
}

void record_word(Trf_recording *job) {
  Trf_lesson_walk *walk = &job->walk;
  if (walk->book->fp_idx1 == nullptr)
    return;
  job->twice = !job->met.emplace(walk->path, walk->record.history).second;
  long next = walk->record.history;
  bool is_of_next = false; // from the next record's name on nothing is written over
  for (int sens : {1, 2}) {
    Trf_history_line line;
    READ_LESSON_HISTORY(next, walk, &line);
    if (line.unread)
      return;
    next = line.next;
    is_of_next = is_of_next || line.is_record;
    if (line.faulty)
      note_faulty(job);
    bool changed = take_counts(sens, line.values, job);
    if (changed && !is_of_next && !rewrite_line(line, job))
      return;
  }
}

// Tells of the faulty dictionaries and corrects one.
//
// QUIRK last dictionary corrected: of several dictionaries with faulty lines only the last one met
// is corrected; a reader would expect all of them. It is meant: the others are in the log and keep
// their back-ups, and the correction of the whole database is one command away.
// Test: RecordLesson.OnlyTheLastFaultyDictionaryIsCorrected
void correct_last(const std::vector<std::string> &faulty, Trf_book *book) {
  std::string notice = std::string("Errors found in data base. \n") + COMPARE_ALL_NOTICE;
  if (book->fp_log != nullptr)
    fflush(book->fp_log); // the learner is about to look at it
  TELL_LEARNER(NOTICE_ERROR, notice.c_str(), book);
  LOG_LINE(book->fp_log, "    \n");
  LOG_LINE(book->fp_log, "Please compare corrected idx1 files \n");
  LOG_LINE(book->fp_log, "with the original (and faulty) cpy_idx1 files \n");
  LOG_LINE(book->fp_log, "    \n");
  std::string alias = faulty.back();
  CHECK_CORR_SNG_DBASE(alias.data(), book);
  LOG_LINE(book->fp_log, "CORRECTION of data base for lesson %d DONE \n", book->ilesson);
}

// Records the words. Returns the aliases of the dictionaries with faulty lines.
std::vector<std::string> record_words(Trf_book *book) {
  Trf_recording job = {Trf_lesson_walk(WHO, book->fp_gene, "r+", book)};
  while (NEXT_LESSON_WORD(&job.walk))
    record_word(&job);
  WRITE_LESSON_CHANGES(&job.walk);
  return job.faulty;
}

// A line of a word to be forgotten.
struct Trf_erasure {
  Trf_history_line line;
  long room = 0; // bytes that may be written over
};

// Finds the line at offset `start`. False where the disk refuses it.
bool find_erasure(long start, Trf_lesson_walk *walk, Trf_erasure *found) {
  FIND_HISTORY_LINE(start, walk, &found->line);
  if (!found->line.unread)
    found->room = ROOM_OF_HISTORY_LINE(found->line, walk);
  return !found->line.unread && found->room >= 0;
}

// Forgets a word whose lines are too short for two blank ones in a row: each becomes blank at its
// own length, so that nothing of the next record is lost.
void blank_line(const Trf_erasure &erased, Trf_lesson_walk *walk) {
  if (erased.line.is_record)
    return;
  std::string text = BLANK_HISTORY_LINE();
  text.resize((size_t)erased.room, ' ');
  CHANGE_LESSON_HISTORY(erased.line.start, text, walk);
}

// The offset behind the last byte of a word's history lines, the first of which is there.
long end_of_history(const Trf_erasure &qr, const Trf_erasure &rq) {
  const Trf_erasure &last = rq.line.is_record || rq.room == 0 ? qr : rq;
  return last.line.start + last.room;
}

// QUIRK forgotten in one line: the two blank history lines are written in a row with no line end
// between them, over the end of the Q->R line; a reader would expect one over each line. It is
// meant: an entry that was forgotten can so be told from one never asked until the file is next
// read, when its record is made whole again (db/mend_forgotten).
// Test: RazLesson.TwoBlankLinesInARowCoverTheEndOfTheFirst
void erase_word(Trf_lesson_walk *walk) {
  Trf_erasure qr;
  Trf_erasure rq;
  if (!find_erasure(walk->record.history, walk, &qr) || qr.line.is_record)
    return;
  if (!find_erasure(qr.line.next, walk, &rq))
    return;
  std::string blank = BLANK_HISTORY_LINE();
  if (end_of_history(qr, rq) - qr.line.start >= 2 * HISTORY_LENGTH) {
    CHANGE_LESSON_HISTORY(qr.line.start, blank + blank, walk);
    return;
  }
  blank_line(qr, walk);
  blank_line(rq, walk);
}

void erase_words(Trf_book *book) {
  Trf_lesson_walk walk(WHO, book->fp_gene, "r+", book);
  std::set<std::string> paths;
  while (NEXT_LESSON_WORD(&walk))
    if (book->fp_idx1 != nullptr)
      paths.insert(walk.path);
  if (paths.empty() || !NOTE_ERASED(paths, book->fp_log))
    return;
  RESTART_LESSON_WALK(&walk);
  while (NEXT_LESSON_WORD(&walk))
    if (book->fp_idx1 != nullptr && paths.count(walk.path) > 0)
      erase_word(&walk);
  WRITE_LESSON_CHANGES(&walk);
}

void forget_lesson(Trf_book *book) {
  MEND_FORGOTTEN(book->fp_log);
  if (!open_gene(book))
    return;
  erase_words(book);
  CLOSE_STREAM(&book->fp_gene);
}

Trf_answer ask_to_forget(Trf_book *book) {
  Owned_text path(S_LESSON_FROM_NUM(book->ilesson, book->G_kentel));
  std::string question = std::string("Really forget history of lesson : \n \n ") +
                         (path != nullptr ? path.get() : "") + " ?";
  return ASK_LEARNER(QUESTION_FORGET, question.c_str(), book);
}

} // namespace

// QUIRK last day: nothing is recorded after day 10000, in May 2028; the program ends instead. A
// reader would take the limit for a mistake. It is meant: a later day comes from a clock set wrong,
// and a day in the future would clear counts when it is read with the clock set right.
// Test: RecordLesson.AfterDay10000TheProgramEndsWithStatus10
void RECORD_LESSON(Trf_book *book) {
  if (DIFF_JOUR() > LAST_RECORDED_DAY)
    STOP_PROGRAM(book->fp_log, 10, "RECORD_LESSON error 10 \n");
  if (book->ilesson < 0)
    return;
  MEND_FORGOTTEN(book->fp_log);
  if (!open_gene(book))
    return;
  std::vector<std::string> faulty = record_words(book);
  CLOSE_STREAM(&book->fp_gene);
  LOG_LINE(book->fp_log, "RECORD_LESSON %d DONE  nb_errors=%d\n", book->ilesson,
           (int)faulty.size());
  if (!faulty.empty())
    correct_last(faulty, book);
}

// QUIRK composed lesson neither forgotten nor recorded: "RAZ ?" on it asks nothing and records
// nothing; a reader would expect at least the recording. It is meant: its words belong to several
// dictionaries, and no question could name what would be lost. The learner is told.
// Test: RazLesson.AComposedLessonIsNeitherAskedForNorRecorded
//
// QUIRK closing forgets: closing the question erases as "Yes" does, and only "No" records; a reader
// would expect a closed question to leave all as it is. It is meant: "RAZ ?" was pressed, and the
// question stands there to take it back.
// Test: RazLesson.EveryAnswerButNoForgets
void RAZ_LESSON(Trf_book *book) {
  if (book->ilesson == 0)
    SAY("composed lesson: nothing recorded, nothing forgotten \n");
  if (book->ilesson < 1)
    return;
  bool had_window = book->pWindow != nullptr;
  int ilesson = book->ilesson;
  Trf_answer answer = ask_to_forget(book);
  if ((had_window && book->pWindow == nullptr) || book->ilesson != ilesson)
    return;
  if (answer == ANSWER_NO)
    RECORD_LESSON(book);
  else
    forget_lesson(book);
}
