// History lines written over where they stand: each as a whole or not at all.
#include "db/pending_changes.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "util/file_copy.h"
#include "util/in_place.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/safe_write.h"

namespace {

const char NOTE_NAME[] = "./mertu_pending";
const char INDEX_PREFIX[] = "idx1_";

// The place behind the last change of the file that `first` is in.
size_t end_of_file(const Trf_changes &changes, size_t first) {
  size_t end = first;
  while (end < changes.size() && changes[end].first.first == changes[first].first.first)
    end++;
  return end;
}

// Reads as many bytes as `bytes` has. Returns 0, or the errno that tells why they cannot be had.
int read_bytes(FILE *fp, long start, std::string *bytes) {
  ssize_t nb = pread(fileno(fp), bytes->data(), bytes->size(), start);
  if (nb < 0)
    return errno;
  return (size_t)nb < bytes->size() ? EIO : 0;
}

// Whether every byte is the old or the new one.
bool is_of_change(const std::string &bytes, const Trf_change &change) {
  for (size_t i = 0; i < bytes.size(); i++)
    if (bytes[i] != change.before[i] && bytes[i] != change.after[i])
      return false;
  return true;
}

// Writes one change. Returns 0; ESTALE where other bytes stand there; the errno that tells why it
// cannot be written, or why what stands there cannot be read.
int write_change(FILE *fp, long start, const Trf_change &change) {
  std::string bytes(change.before.size(), '\0');
  int reason = read_bytes(fp, start, &bytes);
  if (reason != 0)
    return reason;
  return is_of_change(bytes, change) ? WRITE_IN_PLACE(fp, start, change.after) : ESTALE;
}

bool stands_as_before(FILE *fp, long start, const Trf_change &change) {
  std::string bytes(change.before.size(), '\0');
  return read_bytes(fp, start, &bytes) == 0 && bytes == change.before;
}

// Writes changes of one file and syncs it. False where a place may be neither the old nor the new
// one on the disk.
bool write_file(const Trf_changes &changes, size_t first, size_t end, Trf_unwritten *unwritten) {
  const std::string &path = changes[first].first.first;
  Owned_stream fp = OPEN_STREAM(path.c_str(), "r+");
  if (fp == nullptr) {
    unwritten->emplace_back(path, errno);
    return true;
  }
  bool sure = true;
  for (size_t i = first; i < end; i++) {
    const auto &[place, change] = changes[i];
    int reason = write_change(fp.get(), place.second, change);
    if (reason == 0)
      continue;
    unwritten->emplace_back(path, reason);
    sure = sure && stands_as_before(fp.get(), place.second, change);
  }
  if (fsync(fileno(fp.get())) == 0)
    return sure;
  unwritten->emplace_back(path, errno);
  return false;
}

// Puts the note on the disk. Returns 0, or the errno that tells why it is not there.
int write_note(const Trf_changes &changes) {
  Trf_new_file file;
  if (!OPEN_NEW_FILE(NOTE_NAME, &file))
    return errno;
  std::string text;
  for (const auto &[place, change] : changes)
    text += place.first + " " + std::to_string(place.second) + " " +
            std::to_string(change.before.size()) + "\n" + change.before + "\n" + change.after +
            "\n";
  fwrite(text.data(), 1, text.size(), file.fp);
  int reason = COMMIT_NEW_FILE(&file);
  if (reason == 0)
    SYNC_DIRECTORY_OF(NOTE_NAME);
  return reason;
}

// Removes the note, for good: one that came back would be carried out over what came later. Returns
// 0, or the errno that tells why not.
int remove_note() {
  if (unlink(NOTE_NAME) != 0)
    return errno == ENOENT || errno == EISDIR ? 0 : errno;
  SYNC_DIRECTORY_OF(NOTE_NAME);
  return 0;
}

void tell_note(int reason, FILE *fp_log) {
  if (reason != 0)
    LOG_AND_SAY(fp_log, "cannot write file %s: %s \n", NOTE_NAME, strerror(reason));
}

// Reads the whole note; nothing where there is none. Returns 0, or the errno that tells why not.
int read_note(std::string *text) {
  Owned_stream fp = OPEN_SOURCE(NOTE_NAME);
  if (fp == nullptr)
    return errno == ENOENT || errno == EISDIR ? 0 : errno;
  char block[16384];
  while (size_t nb = fread(block, 1, sizeof(block), fp.get()))
    text->append(block, nb);
  return ferror(fp.get()) ? errno : 0;
}

// Takes a text of so many bytes and the line end behind it. False where they are not there.
bool take_text(const std::string &note, size_t length, size_t *at, std::string *text) {
  if (note.size() - *at <= length || note[*at + length] != '\n')
    return false;
  *text = note.substr(*at, length);
  *at += length + 1;
  return true;
}

// Takes the next place of a note. False at its end, and where it cannot be understood.
bool take_change(const std::string &note, size_t *at, Trf_place *place, Trf_change *change) {
  size_t line_end = note.find('\n', *at);
  if (line_end == std::string::npos)
    return false;
  std::string line = note.substr(*at, line_end - *at);
  size_t blank = std::min(line.find(' '), line.size());
  char *behind = nullptr;
  *place = {line.substr(0, blank), strtol(line.c_str() + blank, &behind, 10)};
  long length = strtol(behind, &behind, 10);
  *at = line_end + 1;
  return line.find('\0') == std::string::npos && *behind == '\0' && place->second >= 0 &&
         length > 0 && take_text(note, (size_t)length, at, &change->before) &&
         take_text(note, (size_t)length, at, &change->after);
}

Trf_changes changes_of_note(const std::string &note) {
  Trf_changes changes;
  size_t at = 0;
  Trf_place place;
  Trf_change change;
  while (take_change(note, &at, &place, &change))
    changes.emplace_back(place, change);
  return changes;
}

bool is_index(const std::string &path) {
  size_t slash = path.rfind('/');
  size_t name = slash == std::string::npos ? 0 : slash + 1;
  return path.compare(name, strlen(INDEX_PREFIX), INDEX_PREFIX) == 0;
}

// Carries out changes in an open file. Returns 0, or the errno that tells why not.
int finish_changes(FILE *fp, const struct stat &about, const Trf_changes &changes, size_t first,
                   size_t end) {
  for (size_t i = first; i < end; i++) {
    long room = (long)about.st_size - (long)changes[i].second.before.size();
    if (changes[i].first.second > room)
      continue;
    int reason = write_change(fp, changes[i].first.second, changes[i].second);
    if (reason != 0 && reason != ESTALE)
      return reason;
  }
  struct timespec times[2] = {{0, UTIME_OMIT}, about.st_mtim};
  return futimens(fileno(fp), times) != 0 || fsync(fileno(fp)) != 0 ? errno : 0;
}

// Whether a file that cannot be opened for this reason may be there.
bool can_be_there(int reason) {
  return reason != ENOENT && reason != ENOTDIR && reason != EISDIR && reason != ENAMETOOLONG;
}

// Carries out the changes of one file. Returns 0, or the errno that tells why not.
int finish_file(const Trf_changes &changes, size_t first, size_t end) {
  const std::string &path = changes[first].first.first;
  if (!is_index(path))
    return 0;
  Owned_stream fp = OPEN_STREAM(path.c_str(), "r+");
  if (fp == nullptr)
    return can_be_there(errno) ? errno : 0;
  struct stat about;
  if (fstat(fileno(fp.get()), &about) != 0)
    return errno;
  return S_ISREG(about.st_mode) ? finish_changes(fp.get(), about, changes, first, end) : 0;
}

[[noreturn]] void stop_on_file(FILE *fp_log, const char *verb, const char *path, int reason) {
  STOP_PROGRAM(fp_log, 1, "cannot %s file %s: %s \n", verb, path, strerror(reason));
}

} // namespace

int ADD_CHANGE(FILE *fp, const std::string &path, long start, const std::string &text,
               Trf_pending *pending) {
  Trf_change change = {std::string(text.size(), '\0'), text};
  int reason = read_bytes(fp, start, &change.before);
  if (reason == 0 && change.before != text)
    pending->waiting[{path, start}] = change;
  return reason;
}

bool IS_PENDING(const std::string &path, long start, long end, const Trf_pending &pending) {
  auto found = pending.waiting.lower_bound({path, end});
  if (found == pending.waiting.begin())
    return false;
  --found;
  const Trf_place &place = found->first;
  return place.first == path && place.second + (long)found->second.after.size() > start;
}

Trf_unwritten WRITE_PENDING(Trf_pending *pending, FILE *fp_log) {
  Trf_unwritten unwritten;
  if (pending->waiting.empty())
    return unwritten;
  Trf_changes changes = pending->unsure;
  size_t first = changes.size();
  changes.insert(changes.end(), pending->waiting.begin(), pending->waiting.end());
  pending->waiting.clear();
  tell_note(write_note(changes), fp_log);
  bool sure = first == 0;
  for (size_t end; first < changes.size(); first = end) {
    end = end_of_file(changes, first);
    sure = write_file(changes, first, end, &unwritten) && sure;
  }
  if (sure)
    tell_note(remove_note(), fp_log);
  else
    pending->unsure = changes;
  return unwritten;
}

void FINISH_PENDING(FILE *fp_log) {
  if (access(NOTE_NAME, F_OK) != 0 && errno == ENOENT)
    return;
  std::string note;
  int reason = read_note(&note);
  if (reason != 0)
    stop_on_file(fp_log, "read", NOTE_NAME, reason);
  Trf_changes changes = changes_of_note(note);
  for (size_t first = 0, end; first < changes.size(); first = end) {
    end = end_of_file(changes, first);
    reason = finish_file(changes, first, end);
    if (reason != 0)
      stop_on_file(fp_log, "write", changes[first].first.first.c_str(), reason);
  }
  reason = remove_note();
  if (reason != 0)
    stop_on_file(fp_log, "write", NOTE_NAME, reason);
}
