// The transfer: index files with six-field histories written again with four-field ones.
#include "db/transfer.h"

#include <dirent.h>
#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>

#include "config/registry.h"
#include "db/history_line.h"
#include "db/idx1_walk.h"
#include "db/mend_forgotten.h"
#include "util/file_copy.h"
#include "util/owned.h"
#include "util/paths.h"
#include "util/report.h"
#include "util/safe_write.h"

namespace {

const char TRANSFER_DIRECTORY[] = "./IDX1_TRF";
const mode_t NEW_DIRECTORY_MODE = 0777;

void make_transfer_directory() {
  DIR *directory = opendir(TRANSFER_DIRECTORY);
  if (directory != nullptr) {
    closedir(directory);
    return;
  }
  SAY("Create directory IDX1_TRF ");
  mkdir(TRANSFER_DIRECTORY, NEW_DIRECTORY_MODE);
}

// QUIRK plain line ends of the transfer: a line ends with LF alone; a reader would expect the CR LF
// of an idx1 file. It is meant: a transfer file is taken to other machines, and every reader here
// takes both.
// Test: TransferFile.EveryLineEndsWithALineFeedAlone
void add_line(const char *line, std::string *text) {
  *text += line;
  *text += '\n';
}

// The four-field line of one direction. six: total, wrong and day of the last answer.
//
// QUIRK wrong answers a day earlier: the last wrong answer is dated one day before the last answer;
// a reader would expect the same day. It is meant: the six-field line tells only one day, and the
// shift makes the right answers the later ones where both were given.
// Test: TransferFile.TotalFiveWrongTwoDay100BecomesThreeTwo100And99
void add_direction(const long *six, std::string *text) {
  long right = six[0] - six[1];
  long wrong = six[1];
  long day = six[2];
  long values[NB_FIELDS + 1] = {0, right, wrong, right != 0 ? day : 0,
                                wrong != 0 ? std::max(day - 1, 0L) : 0};
  char line[HISTORY_LENGTH + 1];
  WRITE_HISTORY_LINE(values, line);
  add_line(line, text);
}

// QUIRK transfer of today's index: the one line behind a name is read as a six-field line, also
// where it is the first of two four-field ones: its days then stand as counts of the other
// direction. A reader would expect the two forms to be told apart. It is meant: only databases in
// the form before are transferred, the log names every other one as faulty, and the index itself is
// not touched.
// Test: TransferFile.AFourFieldLineIsTakenForASixFieldOne
void add_history(int icont, Trf_idx1_walk *walk, std::string *text) {
  char *line = NEXT_HISTORY_TEXT(walk);
  if (line == nullptr) {
    LOG_AND_SAY(walk->fp_log, "Error no detection of values icont=%d stop \n", icont);
    STOP_PROGRAM(walk->fp_log, 2, "in file : %s \n", walk->path);
  }
  long values[NB_FIELDS_6 + 1] = {};
  if (CHECK_EXTRACT_6LINT(walk->date0, line, values) != 0)
    LOG_LINE(walk->fp_log, "TRF_IDX1_FILE and CHECK_6LINTsome error in file : %s \n", walk->path);
  add_direction(&values[1], text);
  add_direction(&values[4], text);
}

// The lines up to the one that ends the header.
void add_header(Trf_idx1_walk *walk, std::string *text) {
  SKIP_HEADER(walk);
  Trf_line_cursor header(walk->line.fp);
  while (header.next < walk->line.next && NEXT_LINE(&header))
    add_line(header.text, text);
}

// QUIRK double lines stay behind: "##" lines are not written to the transfer file; a reader would
// expect a whole copy. It is meant: they hold no history, and the next rebuild writes them again
// from the dictionary.
// Test: TransferFile.DoubleLinesAreLeftOut
void add_entries(Trf_idx1_walk *walk, std::string *text) {
  int icont = 0;
  ALLOW_LINES(MAX_IDX1_LINES, walk);
  for (Trf_walk_line kind = NEXT_NAME(walk); kind != WALK_END; kind = NEXT_NAME(walk)) {
    if (kind != WALK_ENTRY)
      continue;
    add_line(walk->line.text, text);
    add_history(++icont, walk, text);
  }
  TELL_WHERE_CUT(walk->path, walk);
}

void write_transfer(FILE *fp_log, const char *s_trf, const std::string &text) {
  Trf_new_file file;
  if (!OPEN_NEW_FILE(s_trf, &file))
    STOP_PROGRAM(fp_log, 1, "cannot write file %s: %s \n", s_trf, strerror(errno));
  fwrite(text.data(), 1, text.size(), file.fp);
  fprintf(file.fp, "# %s * %ld \n", END_MARK, (long)text.size());
  COMMIT_OR_STOP(&file, s_trf, fp_log);
}

} // namespace

void TRF_IDX1_FILE(FILE *fp_log, char *s_idx1, char *s_trf) {
  Owned_stream fp = OPEN_SOURCE(s_idx1);
  if (!fp) {
    LOG_AND_SAY(fp_log, "cannot read file %s: %s \n", s_idx1, strerror(errno));
    return;
  }
  Trf_idx1_walk walk(fp.get(), s_idx1, fp_log, nullptr);
  std::string text;
  add_header(&walk, &text);
  add_entries(&walk, &text);
  write_transfer(fp_log, s_trf, text);
  LOG_LINE(fp_log, "TRF_IDX1_FILE done\n");
}

void TRF_ALL_DBASE(Trf_book *book) {
  MEND_FORGOTTEN(book->fp_log);
  make_transfer_directory();
  Trf_registry_walk walk(book->G_kentel);
  for (int num = 1; num <= book->nbt_lesson; num++) {
    Owned_text s_idx1(S_IDX1_FROM_NUM(num, &walk));
    if (!s_idx1)
      continue;
    Owned_text name(FILENAME_FROM_PATH(s_idx1.get()));
    std::string s_trf = std::string(TRANSFER_DIRECTORY) + "/" + name.get();
    TRF_IDX1_FILE(book->fp_log, s_idx1.get(), s_trf.data());
  }
}
