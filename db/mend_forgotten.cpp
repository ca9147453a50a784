// A forgotten lesson made whole again, so that it does not hurt the entries behind it.
#include "db/mend_forgotten.h"

#include <errno.h>
#include <limits.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <map>

#include "db/history_line.h"
#include "db/idx1_format.h"
#include "db/pending_changes.h"
#include "util/file_copy.h"
#include "util/in_place.h"
#include "util/line_reader.h"
#include "util/numbers.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/safe_write.h"

namespace {

const char ERASED_NAME[] = "./mertu_erased";

// A modification time; none where it was not noted.
struct Trf_moment {
  bool noted = false;
  struct timespec time = {0, 0};
};

// The noted idx1 files, by path.
using Trf_erased = std::map<std::string, Trf_moment>;

bool is_earlier(const struct timespec &time, const struct timespec &other) {
  return time.tv_sec != other.tv_sec ? time.tv_sec < other.tv_sec : time.tv_nsec < other.tv_nsec;
}

// Takes the bytes of the line just read, with its line end. Returns 0, or the errno that tells why
// they could not be read.
int take_bytes(const Trf_line_cursor &line, std::string *bytes) {
  bytes->assign((size_t)(line.next - line.start), '\0');
  ssize_t nb = pread(fileno(line.fp), bytes->data(), bytes->size(), line.start);
  int reason = nb < 0 ? errno : 0;
  bytes->resize(nb > 0 ? (size_t)nb : 0);
  return reason;
}

// Takes a line of the notes, as its bytes stand: a path may hold any letter.
void read_line(std::string bytes, Trf_erased *erased) {
  size_t length = strcspn(bytes.c_str(), " \r\n");
  if (length == 0)
    return;
  Trf_moment moment;
  long taken[3] = {0, 0, 0};
  EXTR_N_LINT(2, bytes.data() + length, taken);
  moment.noted = taken[0] == 2;
  moment.time = {taken[1], taken[2]};
  (*erased)[bytes.substr(0, length)] = moment;
}

// Reads what is noted; nothing where there is no such file. Returns 0, or the errno that tells why
// not all of it could be read.
int read_erased(Trf_erased *erased) {
  Owned_stream fp = OPEN_SOURCE(ERASED_NAME);
  if (fp == nullptr)
    return errno == ENOENT || errno == EISDIR ? 0 : errno;
  Trf_line_cursor line(fp.get());
  line.limit = LONG_MAX;
  int reason = 0;
  std::string bytes;
  while (reason == 0 && NEXT_LINE(&line)) {
    reason = take_bytes(line, &bytes);
    read_line(bytes, erased);
  }
  return reason != 0 || !ferror(fp.get()) ? reason : EIO;
}

// Replaces the notes. Returns 0, or the errno that tells why not.
int write_erased(const Trf_erased &erased) {
  Trf_new_file file;
  if (!OPEN_NEW_FILE(ERASED_NAME, &file))
    return errno;
  for (const auto &[path, moment] : erased)
    if (moment.noted)
      fprintf(file.fp, "%s %ld %ld\n", path.c_str(), (long)moment.time.tv_sec,
              (long)moment.time.tv_nsec);
    else
      fprintf(file.fp, "%s\n", path.c_str());
  int reason = COMMIT_NEW_FILE(&file);
  if (reason == 0)
    SYNC_DIRECTORY_OF(ERASED_NAME);
  return reason;
}

// Notes the modification times before the first mend changes them. Where the disk refuses the note,
// only an end of the program in the middle of the mend could tell.
void note_times(Trf_erased *erased) {
  bool changed = false;
  for (auto &[path, moment] : *erased) {
    struct stat about;
    if (moment.noted || stat(path.c_str(), &about) != 0)
      continue;
    moment = {true, about.st_mtim};
    changed = true;
  }
  if (changed)
    write_erased(*erased);
}

// What makes an erased line whole from behind its first blank history line: a line end like its
// own, and a blank history line in the bytes that are left (52 unless the old lines were damaged).
// A line at the end of a file that was cut short has no line end; that of other lines is taken.
// "" where the line is not an erased one.
std::string mended_rest(const std::string &bytes) {
  std::string blank = BLANK_HISTORY_LINE();
  size_t end = std::min(bytes.find_first_of("\r\n\xFF"), bytes.size());
  if (bytes.compare(0, 2 * blank.size(), blank + blank) != 0)
    return "";
  std::string line_end = bytes.compare(end, 1, "\n") == 0 ? "\n" : "\r\n";
  size_t left = end - blank.size() - line_end.size();
  blank.resize(left, ' ');
  return line_end + blank;
}

// Whether two blank history lines stand in a row anywhere: without them there is nothing to mend.
// Where the file cannot be read, a walk over it will tell.
bool may_hold_erased(FILE *fp) {
  const std::string sought = std::string(BLANK_HISTORY_LINE()) + BLANK_HISTORY_LINE();
  char block[16384];
  std::string bytes;
  rewind(fp);
  while (size_t nb = fread(block, 1, sizeof(block), fp)) {
    bytes.append(block, nb);
    if (memmem(bytes.data(), bytes.size(), sought.data(), sought.size()) != nullptr)
      return true;
    bytes.erase(0, bytes.size() - std::min(bytes.size(), sought.size() - 1));
  }
  return ferror(fp) != 0;
}

// Hands every place of an open file that may be one to be mended, with what comes there ("" where
// it is none), to `mend`, which returns 0, or the errno that tells why it cannot be done. So does
// this routine.
int visit_erased(FILE *fp, const std::function<int(long start, const std::string &text)> &mend) {
  if (!may_hold_erased(fp))
    return 0;
  Trf_line_cursor line(fp);
  line.limit = LONG_MAX;
  int reason = 0;
  bool behind_name = false;
  std::string bytes;
  while (reason == 0 && NEXT_LINE(&line) && !ferror(fp)) {
    if (behind_name && line.length >= 2 * HISTORY_LENGTH) {
      reason = take_bytes(line, &bytes);
      if (reason == 0)
        reason = mend(line.start + HISTORY_LENGTH, mended_rest(bytes));
    }
    behind_name = IS_NAME_LINE(line.text + strspn(line.text, " "));
  }
  return reason != 0 || !ferror(fp) ? reason : EIO;
}

// Gives an open file the noted time, unless it is older.
int keep_time(FILE *fp, const Trf_moment &moment) {
  struct stat about;
  if (fstat(fileno(fp), &about) != 0)
    return errno;
  struct timespec times[2] = {{0, UTIME_OMIT}, moment.time};
  if (!moment.noted || !is_earlier(moment.time, about.st_mtim))
    return 0;
  return futimens(fileno(fp), times) == 0 ? 0 : errno;
}

// The time of an open file stands for one that is not noted. Returns 0, or the errno that tells why
// it cannot be known.
int take_time(FILE *fp, Trf_moment *moment) {
  struct stat about;
  if (moment->noted)
    return 0;
  if (fstat(fileno(fp), &about) != 0)
    return errno;
  *moment = {true, about.st_mtim};
  return 0;
}

// Opens a noted file; null where it cannot be, and then *reason becomes the errno that tells why,
// or 0 where there is none to mend.
Owned_stream open_noted(const char *path, int *reason) {
  Owned_stream fp = OPEN_STREAM(path, "r+");
  bool is_there = fp != nullptr || (errno != ENOENT && errno != ENOTDIR && errno != EISDIR);
  *reason = fp == nullptr && is_there ? errno : 0;
  return fp;
}

// Adds what is to be mended in a file, and takes its time. Returns 0, or the errno that tells why
// not.
int add_mends(const std::string &path, Trf_moment *moment, Trf_pending *pending) {
  int reason = 0;
  Owned_stream fp = open_noted(path.c_str(), &reason);
  if (fp == nullptr)
    return reason;
  reason = take_time(fp.get(), moment);
  if (reason != 0)
    return reason;
  return visit_erased(fp.get(), [&](long start, const std::string &text) {
    return ADD_CHANGE(fp.get(), path, start, text, pending);
  });
}

// Gives a mended file its time back, on the disk. Returns 0, or the errno that tells why not.
int settle_file(const char *path, const Trf_moment &moment) {
  int reason = 0;
  Owned_stream fp = open_noted(path, &reason);
  if (fp == nullptr)
    return reason;
  reason = keep_time(fp.get(), moment);
  return reason == 0 && fsync(fileno(fp.get())) != 0 ? errno : reason;
}

[[noreturn]] void stop_on_file(FILE *fp_log, const char *verb, const char *path, int reason) {
  STOP_PROGRAM(fp_log, 1, "cannot %s file %s: %s \n", verb, path, strerror(reason));
}

// Mends the noted files.
void mend_files(Trf_erased *erased, FILE *fp_log) {
  Trf_pending pending;
  for (auto &[path, moment] : *erased) {
    int reason = add_mends(path, &moment, &pending);
    if (reason != 0)
      stop_on_file(fp_log, "write", path.c_str(), reason);
  }
  for (const auto &[path, reason] : WRITE_PENDING(&pending, fp_log))
    stop_on_file(fp_log, "write", path.c_str(), reason);
  for (const auto &[path, moment] : *erased) {
    int reason = settle_file(path.c_str(), moment);
    if (reason != 0)
      stop_on_file(fp_log, "write", path.c_str(), reason);
  }
}

// The same file with nothing read ahead.
Owned_stream read_afresh(Owned_stream fp) {
  Owned_stream fresh;
  int fd = dup(fileno(fp.get()));
  if (fd >= 0)
    fresh.reset(fdopen(fd, "r"));
  if (fd >= 0 && fresh == nullptr)
    close(fd);
  return fresh;
}

} // namespace

bool NOTE_ERASED(const std::set<std::string> &paths, FILE *fp_log) {
  Trf_erased erased;
  int reason = read_erased(&erased);
  for (const std::string &path : paths)
    erased[path] = Trf_moment();
  if (reason == 0)
    reason = write_erased(erased);
  if (reason != 0)
    LOG_AND_SAY(fp_log, "cannot write file %s: %s \n", ERASED_NAME, strerror(reason));
  return reason == 0;
}

void MEND_FORGOTTEN(FILE *fp_log) {
  FINISH_PENDING(fp_log);
  if (access(ERASED_NAME, F_OK) != 0 && errno == ENOENT)
    return;
  Trf_erased erased;
  int reason = read_erased(&erased);
  if (reason != 0)
    stop_on_file(fp_log, "read", ERASED_NAME, reason);
  note_times(&erased);
  mend_files(&erased, fp_log);
  unlink(ERASED_NAME);
}

Owned_stream MENDED_COPY(FILE *fp) {
  Owned_stream copy(tmpfile());
  if (!copy)
    return nullptr;
  int reason = COPY_STREAM(fp, copy.get()) == 0 ? 0 : errno;
  if (reason == 0)
    reason = visit_erased(copy.get(), [&](long start, const std::string &text) {
      return WRITE_IN_PLACE(copy.get(), start, text);
    });
  if (reason == 0)
    return read_afresh(std::move(copy));
  copy.reset();
  errno = reason;
  return nullptr;
}
