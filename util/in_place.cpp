// Bytes of a file changed where they stand: the file keeps its size and every offset in it.
#include "util/in_place.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

int WRITE_IN_PLACE(FILE *fp, long start, const std::string &text) {
  size_t done = 0;
  while (done < text.size()) {
    ssize_t nb = pwrite(fileno(fp), text.data() + done, text.size() - done, start + (off_t)done);
    if (nb < 0 && errno != EINTR)
      return errno;
    if (nb == 0)
      return EIO;
    done += nb > 0 ? (size_t)nb : 0;
  }
  return 0;
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
