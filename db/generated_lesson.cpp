// The generated lesson file: the entries of the lesson being drilled, each with a reference to its
// history.
#include "db/generated_lesson.h"

#include <errno.h>
#include <string.h>
#include <unistd.h>

#include "util/numbers.h"

namespace {

// Characters from the '*' of a record's second line to its offset.
const size_t STAR_TO_OFFSET = 2;

bool is_gene_name(const char *line) {
  return line[0] == '#' && strchr(line, '*') != nullptr && !IS_END_MARK(line);
}

// Takes the first word of the line just read, as its bytes stand in the file: a path holds any
// letter, and is not the same in another encoding. False where they cannot be read.
bool take_first_word(const Trf_line_cursor &line, std::string *path) {
  std::string bytes((size_t)(line.next - line.start), '\0');
  ssize_t nb = pread(fileno(line.fp), bytes.data(), bytes.size(), line.start);
  bytes.resize(nb > 0 ? (size_t)nb : 0);
  const char *word = bytes.c_str() + strspn(bytes.c_str(), " \t");
  path->assign(word, strcspn(word, " \t\r\n"));
  return nb >= 0;
}

// Takes the offset of the second line; false where there is none.
bool take_offset(Trf_gene_record *record) {
  const char *word = record->reference.c_str();
  word += strspn(word, " ");
  const char *star = strchr(word + strcspn(word, " "), '*');
  if (star == nullptr || strlen(star) < STAR_TO_OFFSET)
    return false;
  long taken[2] = {0, 0};
  EXTR_N_LINT(1, const_cast<char *>(star + STAR_TO_OFFSET), taken);
  record->history = taken[1];
  return taken[0] > 0;
}

// Reads the next line, and clears the stream's fault where that fails.
Trf_gene_result read_line(Trf_line_cursor *cursor, Trf_gene_result where_none) {
  bool found = NEXT_LINE(cursor);
  int reason = errno;
  if (!ferror(cursor->fp))
    return found ? GENE_RECORD : where_none;
  clearerr(cursor->fp);
  errno = reason;
  return GENE_UNREAD;
}

} // namespace

const char *CURRENT_GENE_NAME(int ilesson) {
  return ilesson != 0 ? "./idx1_gene" : "./idx2_gene";
}

long APPEND_GENE_NAME(FILE *fp_gene, const char *name_line) {
  long posit = ftell(fp_gene);
  fprintf(fp_gene, "%s\n", name_line);
  return posit;
}

void APPEND_GENE_REFERENCE(FILE *fp_gene, const char *s_idx1, long history) {
  fprintf(fp_gene, " %s * %ld \n", s_idx1, history);
}

long APPEND_GENE_RECORD(FILE *fp_gene, const char *name_line, const char *s_idx1, long history) {
  long posit = APPEND_GENE_NAME(fp_gene, name_line);
  APPEND_GENE_REFERENCE(fp_gene, s_idx1, history);
  return posit;
}

void APPEND_GENE_TRAILER(FILE *fp_gene) {
  fprintf(fp_gene, "# END_OF_FILE * %ld \n", ftell(fp_gene));
}

Trf_gene_result READ_GENE_RECORD(Trf_line_cursor *cursor, Trf_gene_record *record) {
  *record = Trf_gene_record();
  Trf_gene_result result = read_line(cursor, GENE_NO_NAME);
  if (result != GENE_RECORD)
    return result;
  record->name = cursor->text;
  if (!is_gene_name(cursor->text))
    return GENE_NO_NAME;
  const char *alias = strchr(cursor->text, '*') + 1;
  record->alias.assign(alias, strcspn(alias, " "));
  result = read_line(cursor, GENE_NO_REFERENCE);
  if (result != GENE_RECORD)
    return result;
  record->reference = cursor->text;
  if (!take_first_word(*cursor, &record->path))
    return GENE_UNREAD;
  return take_offset(record) ? GENE_RECORD : GENE_NO_OFFSET;
}
