// What the machine takes for the bare work.
#include "bench/floors.h"

#include <ctype.h>
#include <fcntl.h>
#include <iconv.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "util/line_reader.h"
#include "util/owned.h"

namespace {

const size_t BLOCK = 1 << 16;

std::string read_whole(const std::string &path) {
  int fd = open(path.c_str(), O_RDONLY);
  struct stat about;
  fstat(fd, &about);
  std::string bytes((size_t)about.st_size, '\0');
  size_t at = 0;
  ssize_t nb = 0;
  while ((nb = read(fd, &bytes[at], std::min(BLOCK, bytes.size() - at))) > 0)
    at += (size_t)nb;
  close(fd);
  return bytes;
}

void write_all(int fd, const std::string &bytes) {
  for (size_t at = 0; at < bytes.size();) {
    ssize_t nb = write(fd, &bytes[at], std::min(BLOCK, bytes.size() - at));
    if (nb <= 0)
      abort();
    at += (size_t)nb;
  }
}

void write_synced(const std::string &path, const std::string &bytes) {
  std::string beside = path + ".new";
  int fd = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  write_all(fd, bytes);
  fsync(fd);
  close(fd);
  rename(beside.c_str(), path.c_str());
}

void write_plain(const std::string &path, const std::string &bytes) {
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  write_all(fd, bytes);
  close(fd);
}

std::string to_cp1252(iconv_t converter, std::string bytes) {
  std::string result(bytes.size(), '\0');
  char *from = bytes.data();
  char *to = result.data();
  size_t left = bytes.size();
  size_t room = result.size();
  iconv(converter, &from, &left, &to, &room);
  result.resize(result.size() - room);
  return result;
}

// The key of a line: between the '#' and the first '*', in small letters.
std::string key_of(const std::string &line) {
  std::string key = line.substr(1, line.find('*', 1) - 1);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? (char)(c - 'A' + 'a') : c; });
  return key;
}

} // namespace

long READ_LINES(const std::vector<std::string> &paths) {
  long nb = 0;
  for (const std::string &path : paths) {
    Owned_stream fp = OPEN_STREAM(path.c_str(), "r");
    Trf_line_cursor line(fp.get());
    line.limit = LONG_MAX;
    while (NEXT_LINE(&line))
      nb += line.length;
  }
  return nb;
}

long LOOP_OVER_BYTES(const std::string &bytes) {
  long nb_lines = 0;
  long nb = 0;
  for (char byte : bytes) {
    if (byte == '\n' || byte == '\r')
      nb_lines++;
    else
      nb += (unsigned char)byte;
    asm volatile("" : "+r"(nb), "+r"(nb_lines)); // one byte after the other
  }
  return nb + nb_lines;
}

Index_floor::Index_floor(const Life &life, bool old) : dictionaries(DICTIONARIES_OF(life)) {
  std::filesystem::create_directory("floor");
  for (const std::string &path : INDEXES_OF(life)) {
    if (old)
      old_indexes.push_back(path);
    indexes.push_back(BYTES_OF(path));
  }
}

void Index_floor::run() const {
  iconv_t converter = iconv_open("CP1252", "UTF-8");
  for (size_t i = 0; i < dictionaries.size(); i++) {
    std::string copy = "floor/" + dictionaries[i];
    write_synced(copy, to_cp1252(converter, read_whole(dictionaries[i])));
    read_whole(copy);
    if (i < old_indexes.size()) {
      write_plain("floor/idx1_old", read_whole(old_indexes[i]));
      read_whole("floor/idx1_old");
    }
    write_synced(copy + ".idx1", indexes[i]);
  }
  iconv_close(converter);
}

Listing_floor::Listing_floor(const Life &life)
    : indexes(INDEXES_OF(life)), listed(BYTES_OF("mertu_dico1")), sorted(BYTES_OF("mertu_dico")) {
  std::string keys;
  for (size_t at = 0; at < listed.size();) {
    size_t end = listed.find('\n', at);
    keys += key_of(listed.substr(at, end - at)) + "\n";
    at = end + 1;
  }
  WRITE_BYTES("keys", keys);
}

void Listing_floor::run() const {
  READ_LINES(indexes);
  if (system("LC_ALL=C sort -s --parallel=1 keys >/dev/null") != 0)
    abort();
  write_plain("floor_dico1", listed);
  write_plain("floor_dico", sorted);
}
