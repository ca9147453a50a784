// Writing an idx1 file from a dictionary's working copy.
#include "db/index_writer.h"

#include <string.h>

#include "db/dictionary_file.h"
#include "db/history_line.h"
#include "db/idx1_format.h"
#include "db/old_history.h"
#include "util/report.h"

namespace {

const char NAME_MARK[] = "Q>";

// One idx1 file being written.
struct Trf_index_job {
  FILE *fp_log;                     // the log
  FILE *fpi;                        // the idx1 file
  const char *s_idx1;               // its path
  const char *s_alias;              // the dictionary's alias
  const Trf_history_source *source; // where histories come from
  Trf_line_cursor line;             // over the working copy
  int nb_marks;                     // '#' lines seen
  int nb_entries;                   // records written
  bool ended;                       // the dictionary's END_OF_FILE line has been read
  std::string record;               // the record being written
};

void log_banner(FILE *fp_log) {
  LOG_LINE(fp_log, " \n");
  LOG_LINE(fp_log, " \n");
  LOG_LINE(fp_log, "              ************\n");
  LOG_LINE(fp_log, " \n");
}

void log_entrance(const Trf_index_job &job) {
  log_banner(job.fp_log);
  LOG_LINE(job.fp_log, "entrance IDX1_DICO s_fp=%s %s@@@ \n", job.s_idx1, job.s_alias);
  LOG_LINE(job.fp_log, job.source->carries ? "Taking account of old history records \n"
                                           : "NOT taking account of old history \n");
}

// Without "idx1" in its path the file may be something of the learner's own.
void check_path(const Trf_index_job &job) {
  if (strstr(job.s_idx1, "idx1") == nullptr)
    STOP_PROGRAM(job.fp_log, 1, "IDX1_DICO erreur 1 stop c=%c \n",
                 job.s_idx1[0] != '\0' ? job.s_idx1[0] : ' ');
}

void write_header(const Trf_index_job &job) {
  fprintf(job.fpi, "%s %s \r\n", job.s_idx1, job.s_alias);
  fprintf(job.fpi, "%s\r\n", std::string(NB_HEADER_MARKS, '#').c_str());
}

void write_trailer(const Trf_index_job &job) {
  LOG_LINE(job.fp_log, "Primary entries (words, expressions ...) : %d \n", job.nb_entries);
  fprintf(job.fpi, "# %s * %ld  \r\n", END_MARK, job.line.next);
}

// A byte 255 at the start of a line hides all entries from there on, and their histories with them.
void tell_of_false_end(const Trf_index_job &job) {
  const Trf_line_cursor &line = job.line;
  bool at_end = line.length == -2 && fseek(line.fp, line.next, SEEK_SET) == 0;
  if (at_end && getc(line.fp) != EOF)
    SAY("index %s ends before line %ld of its dictionary: it begins with a y with diaeresis \n",
        job.s_idx1, line.nb_read + 1);
}

// QUIRK name read otherwise: a dictionary line in UTF-8 that cannot be turned into CP1252 is taken
// as it stands. Where the letter at fault is not in the name line (it stands behind the cut, or the
// name on a later line ends before it), the name line can be turned, and is when it is read back:
// the question is not found, and its history starts empty at each rebuild. A reader would expect
// the two readings to agree. It is meant: a line is always read as a whole, and the names in the
// index files were made so.
// Test: Idx1Dico.ANameWithoutTheLetterThatKeptItsLineIsNotFoundAgain
void write_entry(const std::string &name_line, Trf_index_job *job) {
  job->nb_entries++;
  job->record.assign(name_line).append(" \r\n");
  job->source->add_history(QUESTION_OF_NAME_LINE(name_line), job->source->from, &job->record);
  fwrite(job->record.data(), 1, job->record.size(), job->fpi);
}

// Reads the next line, cut. Returns false at the end of the file, at the END_OF_FILE line (*ended)
// and at the line limit.
bool next_dico_line(Trf_line_cursor *line, bool *ended) {
  if (!NEXT_LINE(line))
    return false;
  CUT_DICO_LINE(line->text);
  *ended = IS_END_MARK(line->text);
  return !*ended;
}

void skip_section(Trf_index_job *job) {
  while (next_dico_line(&job->line, &job->ended))
    if (KIND_OF_DICO_LINE(job->line.text, nullptr) == DICO_SECTION)
      return;
}

void write_unnamed_entry(Trf_index_job *job) {
  std::string name_line;
  if (IDX1_DICO_NONAME_LINE(&job->line, job->s_alias, job->line.start, &name_line, &job->ended))
    write_entry(name_line, job);
}

void index_line(Trf_index_job *job) {
  const char *text = nullptr;
  Trf_dico_line kind = KIND_OF_DICO_LINE(job->line.text, &text);
  if (kind == DICO_SECTION)
    skip_section(job);
  if (kind != DICO_ENTRY && kind != DICO_NONAME && kind != DICO_DOUBLE)
    return;
  job->nb_marks++;
  // QUIRK double line as it stands: only its two '#' are put together; the rest is neither decoded
  // nor folded, unlike an entry's; a reader would expect one treatment. It is meant: the line is a
  // reference, and the entry it names is sought with its text as the learner wrote it.
  // Test: Idx1Dico.ADoubleLineIsWrittenWithItsMarksTogetherAndNoHistory
  if (kind == DICO_DOUBLE)
    fprintf(job->fpi, "##%s \r\n", text);
  else if (kind == DICO_NONAME)
    write_unnamed_entry(job);
  else
    write_entry(NAME_LINE_OF_ENTRY(text, job->s_alias, job->line.start), job);
}

void add_line(const char *line, std::string *record) {
  record->append(line).append("\r\n");
}

void no_history(const std::string &, void *, std::string *record) {
  add_line(BLANK_HISTORY_LINE(), record);
  add_line(BLANK_HISTORY_LINE(), record);
}

// QUIRK blank history becomes zeros: a history carried over is written as numbers also where it was
// blank; a reader would expect it to stay blank. It is meant: every field is checked and written
// anew, and no reader tells a blank field from a 0.
// Test: Idx1Dico.ABlankHistoryIsCarriedOverAsZeros
void carried_history(const std::string &question, void *from, std::string *record) {
  auto *old = static_cast<Trf_old_histories *>(from);
  Trf_values values;
  switch (READ_OLD_HISTORY(question, old, &values)) {
  case OLD_HISTORY:
    ADD_HISTORY(values, record);
    return;
  // QUIRK other name at the old place: where the old file does not hold the question at the noted
  // offset, the line read there stands as the Q->R line, and the R->Q line is blank; a reader would
  // expect two blank lines. It is meant, and no index written here brings it about: its name lines
  // are where the list of questions comes from.
  // Test: Idx1Dico.AnotherNameAtTheOldPlaceStandsAsTheFirstHistoryLine
  case OLD_OTHER_NAME:
    add_line(old->record.text, record);
    add_line(BLANK_HISTORY_LINE(), record);
    return;
  default:
    no_history(question, from, record);
  }
}

} // namespace

// QUIRK name on a later line: every line read in search of the name is used up, entry lines too; a
// reader would expect only the named line to be. It is meant: from the lone '#' to its name is one
// entry.
// Test: Idx1Dico.TheLinesReadInSearchOfANameAreConsumed
bool IDX1_DICO_NONAME_LINE(Trf_line_cursor *line, const char *st_alias, long offset,
                           std::string *name_line, bool *ended) {
  bool marked = false;
  while (next_dico_line(line, ended)) {
    const char *mark = marked ? nullptr : strstr(line->text, NAME_MARK);
    if (!marked && mark == nullptr)
      continue;
    marked = true;
    const char *text = mark != nullptr ? mark + strlen(NAME_MARK) : line->text;
    if (text[strspn(text, " ")] == '\0')
      continue;
    *name_line = NAME_LINE_OF_TEXT(text, st_alias, offset);
    return true;
  }
  return false;
}

void ADD_HISTORY(const Trf_values &values, std::string *record) {
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values.qr, line);
  add_line(line, record);
  WRITE_HISTORY_LINE(values.rq, line);
  add_line(line, record);
}

// QUIRK first 10000 lines of a dictionary: what lies behind is not indexed; a reader would take the
// limit for a mistake. It is meant: no reader of a dictionary goes further.
// Test: Idx1Dico.ADictionaryIsIndexedUpToLine10000
void WRITE_INDEX(FILE *fp_log, FILE *fp, char *sfp1, char *st_alias, FILE *fpi,
                 const Trf_history_source *source, int *nb) {
  Trf_index_job job = {
      fp_log, fpi,   sfp1, st_alias != nullptr ? st_alias : "", source, Trf_line_cursor(fp), 0,
      0,      false, ""};
  job.line.limit = MAX_DICO_LINES;
  log_entrance(job);
  check_path(job);
  write_header(job);
  while (!job.ended && next_dico_line(&job.line, &job.ended))
    index_line(&job);
  write_trailer(job);
  tell_of_false_end(job);
  *nb = job.nb_marks;
}

void IDX1_DICO(FILE *fp_log, FILE *fp, char *sfp1, char *st_alias, FILE *fpi,
               Trf_classmt *trf_classmt, int *nb) {
  if (trf_classmt == nullptr) {
    Trf_history_source source = {false, no_history, nullptr};
    WRITE_INDEX(fp_log, fp, sfp1, st_alias, fpi, &source, nb);
    return;
  }
  Trf_old_histories old(trf_classmt, sfp1, fp_log);
  Trf_history_source source = {true, carried_history, &old};
  WRITE_INDEX(fp_log, fp, sfp1, st_alias, fpi, &source, nb);
  fclose(trf_classmt->fp_class);
  trf_classmt->fp_class = nullptr;
}
