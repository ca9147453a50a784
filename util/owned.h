// Owners of streams and heap blocks: what they hold is released when they go.
#ifndef MERTU_UTIL_OWNED_H
#define MERTU_UTIL_OWNED_H

#include <glib.h>
#include <stdio.h>

#include <memory>

struct Close_stream {
  void operator()(FILE *fp) const {
    fclose(fp);
  }
};

struct Free_block {
  void operator()(void *block) const {
    g_free(block);
  }
};

// An open stream, closed at the end of its scope.
using Owned_stream = std::unique_ptr<FILE, Close_stream>;

// A text from g_malloc (what the registry's lookups return), freed at the end of its scope.
using Owned_text = std::unique_ptr<char, Free_block>;

// Opens a file; null when it cannot be opened (errno tells why).
inline Owned_stream OPEN_STREAM(const char *path, const char *mode) {
  return Owned_stream(fopen(path, mode));
}

// Closes a stream that a record holds, where it is open; it is null afterwards.
inline void CLOSE_STREAM(FILE **fp) {
  if (*fp != nullptr)
    fclose(*fp);
  *fp = nullptr;
}

#endif
