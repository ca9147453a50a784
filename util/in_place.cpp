// Bytes of a file changed where they stand: the file keeps its size and every offset in it.
#include "util/in_place.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Writes the text; *done becomes the bytes written. Returns 0, or the errno that tells why not all.
int write_bytes(int fd, long start, const std::string &text, size_t *done) {
  while (*done < text.size()) {
    ssize_t nb = pwrite(fd, text.data() + *done, text.size() - *done, start + (off_t)*done);
    if (nb < 0 && errno != EINTR)
      return errno;
    if (nb == 0)
      return EIO;
    *done += nb > 0 ? (size_t)nb : 0;
  }
  return 0;
}

} // namespace

int WRITE_IN_PLACE(FILE *fp, long start, const std::string &text) {
  int fd = fileno(fp);
  std::string before(text.size(), '\0');
  ssize_t nb = pread(fd, before.data(), before.size(), start);
  size_t done = 0;
  int reason = write_bytes(fd, start, text, &done);
  if (reason == 0 || nb < (ssize_t)done)
    return reason;
  before.resize(done);
  size_t put_back = 0;
  write_bytes(fd, start, before, &put_back);
  return reason;
}

int SYNC_FILE(const char *path) {
  int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0)
    return errno;
  int reason = fsync(fd) != 0 ? errno : 0;
  close(fd);
  return reason;
}

void SYNC_DIRECTORY_OF(const char *path) {
  std::string directory(path);
  size_t slash = directory.rfind('/');
  SYNC_FILE(slash == std::string::npos ? "." : directory.substr(0, slash + 1).c_str());
}
