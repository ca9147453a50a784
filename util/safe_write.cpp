// A file is replaced as a whole: written beside the old one, flushed, synced, renamed over it.
#include "util/safe_write.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/owned.h"
#include "util/report.h"

namespace {

const int MAX_LINKS = 40;
const size_t BUFFER_SIZE = 65536;

std::string directory_of(const std::string &path) {
  size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

std::string name_of(const std::string &path) {
  size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The name of the new file until it is renamed, cut to what a file system takes.
std::string name_beside(const std::string &path) {
  return (".new_" + name_of(path)).substr(0, NAME_MAX);
}

// The path that the chain of symbolic links at `path` ends in, whether or not a file stands there.
std::string follow_links(std::string path) {
  for (int i = 0; i < MAX_LINKS; i++) {
    char target[4096];
    ssize_t length = readlink(path.c_str(), target, sizeof(target));
    if (length <= 0 || length == (ssize_t)sizeof(target))
      break;
    std::string link(target, (size_t)length);
    path = link[0] == '/' ? link : directory_of(path) + link;
  }
  return path;
}

// Whether neither an old file nor an empty name forbids the writing; sets errno as opening it for
// writing would.
bool may_replace(const std::string &path, struct stat *old, bool *exists) {
  *exists = stat(path.c_str(), old) == 0;
  if (!*exists)
    return errno == ENOENT && !path.empty();
  if (!S_ISREG(old->st_mode)) {
    errno = S_ISDIR(old->st_mode) ? EISDIR : EINVAL;
    return false;
  }
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

// Opens a file that is not there. One that an earlier end of the program left is taken away.
FILE *open_new(const char *path) {
  FILE *fp = fopen(path, "wx+b");
  if (fp == nullptr && errno == EEXIST) {
    unlink(path);
    fp = fopen(path, "wx+b");
  }
  return fp;
}

bool open_beside(Trf_new_file *file, const char *destination, const std::string &beside) {
  DROP_NEW_FILE(file);
  file->destination = follow_links(destination);
  struct stat old;
  bool exists = false;
  if (!may_replace(file->destination, &old, &exists))
    return false;
  file->beside =
      directory_of(file->destination) + (beside.empty() ? name_beside(file->destination) : beside);
  file->fp = open_new(file->beside.c_str());
  if (file->fp == nullptr)
    return false;
  file->buffer.reset(new char[BUFFER_SIZE]);
  setvbuf(file->fp, file->buffer.get(), _IOFBF, BUFFER_SIZE);
  if (exists && fchmod(fileno(file->fp), old.st_mode & 07777) != 0) {
    int reason = errno;
    DROP_NEW_FILE(file);
    errno = reason;
    return false;
  }
  return true;
}

// Why an earlier write to the stream failed: the stream remembers only that it did, so one more
// byte is tried (the file is dropped anyway).
int reason_of_fault(FILE *fp) {
  if (fputc('\n', fp) == EOF || fflush(fp) != 0)
    return errno;
  return EIO;
}

// Whether the two files hold the same bytes.
bool are_equal(FILE *one, FILE *other) {
  char blocks[2][16384];
  rewind(one);
  rewind(other);
  for (;;) {
    size_t nb = fread(blocks[0], 1, sizeof(blocks[0]), one);
    if (fread(blocks[1], 1, sizeof(blocks[1]), other) != nb ||
        memcmp(blocks[0], blocks[1], nb) != 0)
      return false;
    if (nb < sizeof(blocks[0]))
      return !ferror(one) && !ferror(other);
  }
}

// Where the old file holds the bytes of the new one it becomes as young, and nothing need be
// written. Returns whether that was done.
bool renew_equal(const Trf_new_file &file) {
  Owned_stream old = OPEN_STREAM(file.destination.c_str(), "r");
  struct stat about[2];
  if (old == nullptr || ferror(file.fp) || fflush(file.fp) != 0 ||
      fstat(fileno(file.fp), &about[0]) != 0 || fstat(fileno(old.get()), &about[1]) != 0)
    return false;
  return about[0].st_size == about[1].st_size && are_equal(file.fp, old.get()) &&
         futimens(fileno(old.get()), nullptr) == 0;
}

int flush_sync_close(FILE *fp) {
  int reason = 0;
  if (ferror(fp))
    reason = reason_of_fault(fp);
  if (reason == 0 && fflush(fp) != 0)
    reason = errno;
  if (reason == 0 && fsync(fileno(fp)) != 0)
    reason = errno;
  if (fclose(fp) != 0 && reason == 0)
    reason = errno;
  return reason;
}

} // namespace

Trf_new_file::~Trf_new_file() {
  DROP_NEW_FILE(this);
}

bool OPEN_NEW_FILE(const char *destination, Trf_new_file *file) {
  return open_beside(file, destination, "");
}

bool OPEN_NEW_FILE_AS(const char *destination, const char *beside, Trf_new_file *file) {
  return open_beside(file, destination, beside);
}

int COMMIT_NEW_FILE(Trf_new_file *file) {
  FILE *fp = file->fp;
  if (fp == nullptr)
    return EBADF;
  if (renew_equal(*file)) {
    DROP_NEW_FILE(file);
    return 0;
  }
  file->fp = nullptr;
  int reason = flush_sync_close(fp);
  if (reason == 0 && rename(file->beside.c_str(), file->destination.c_str()) != 0)
    reason = errno;
  if (reason != 0)
    unlink(file->beside.c_str());
  return reason;
}

void DROP_NEW_FILE(Trf_new_file *file) {
  if (file->fp == nullptr)
    return;
  fclose(file->fp);
  file->fp = nullptr;
  unlink(file->beside.c_str());
}

void COMMIT_OR_STOP(Trf_new_file *file, const char *name, FILE *fp_log) {
  int reason = COMMIT_NEW_FILE(file);
  if (reason != 0)
    STOP_PROGRAM(fp_log, 1, "cannot write file %s: %s \n", name, strerror(reason));
}
