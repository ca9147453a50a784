// A file copied byte for byte, and the back-up beside a file.
#include "util/file_copy.h"

#include <errno.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "util/paths.h"
#include "util/report.h"

namespace {

const size_t COPY_BLOCK = 16384;

// Whether an open file is also the one at the path.
bool is_file_at(FILE *fp, const char *path) {
  struct stat open_one;
  struct stat other;
  return fstat(fileno(fp), &open_one) == 0 && stat(path, &other) == 0 &&
         open_one.st_dev == other.st_dev && open_one.st_ino == other.st_ino;
}

} // namespace

Owned_stream OPEN_SOURCE(const char *source) {
  Owned_stream fp = OPEN_STREAM(source, "rb");
  struct stat about;
  if (fp && fstat(fileno(fp.get()), &about) == 0 && S_ISDIR(about.st_mode)) {
    fp.reset();
    errno = EISDIR;
  }
  return fp;
}

size_t READ_OR_STOP(FILE *fp, const char *source, void *block, size_t nb, Trf_new_file *file) {
  size_t nb_read = fread(block, 1, nb, fp);
  if (nb_read == 0 && ferror(fp)) {
    int reason = errno;
    DROP_NEW_FILE(file);
    STOP_PROGRAM(SAVED_LOG(), 1, "cannot read file %s: %s \n", source, strerror(reason));
  }
  return nb_read;
}

int copier_fichier(const char *source, const char *destination) {
  Owned_stream fp = OPEN_SOURCE(source);
  if (!fp)
    return 1;
  Trf_new_file copy;
  if (!OPEN_NEW_FILE(destination, &copy))
    return 2;
  char block[COPY_BLOCK];
  while (size_t nb = READ_OR_STOP(fp.get(), source, block, sizeof(block), &copy))
    fwrite(block, 1, nb, copy.fp);
  COMMIT_OR_STOP(&copy, destination, SAVED_LOG());
  return 0;
}

int COPY_STREAM(FILE *fp, FILE *copy) {
  char block[COPY_BLOCK];
  while (size_t nb = fread(block, 1, sizeof(block), fp))
    if (fwrite(block, 1, nb, copy) != nb)
      return 2;
  if (ferror(fp))
    return 1;
  return fflush(copy) == 0 ? 0 : 2;
}

int COPY_TO_SCRATCH(FILE *fp, const char *scratch) {
  if (is_file_at(fp, scratch))
    return 0;
  if (unlink(scratch) != 0 && errno != ENOENT)
    return 2;
  Owned_stream copy = OPEN_STREAM(scratch, "wxb");
  return copy ? COPY_STREAM(fp, copy.get()) : 2;
}

char *back_up_file(char *file_path) {
  Owned_text directory(PATH_FROM_STRING(file_path));
  Owned_text name(FILE_NAME_FROM_STRING(file_path));
  if (!directory || !name)
    return nullptr;
  std::string back_up = std::string(directory.get()) + BACK_UP_PREFIX + name.get();
  if (copier_fichier(file_path, back_up.c_str()) != 0)
    return nullptr;
  return g_strdup(back_up.c_str());
}
