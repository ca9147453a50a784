// The line reader against a plain model of its table: texts, lengths, and offsets that grow.
#include <glib.h>
#include <limits.h>
#include <stdlib.h>

#include "fuzz/harness.h"
#include "util/line_reader.h"
#include "util/owned.h"

namespace {

using Byte = unsigned char;

struct Line {
  long length = -2; // -2 where there is no line
  long next = 0;
  std::string text;
};

bool ends_line(const std::string &bytes, size_t at) {
  return at >= bytes.size() || bytes[at] == '\n' || bytes[at] == '\r' || bytes[at] == '\377';
}

// The line end at `end` of a line that has text: where the next line begins.
long behind_text(const std::string &bytes, size_t end) {
  while (end < bytes.size() && bytes[end] == '\r')
    end++;
  return (long)end + 1;
}

long behind_empty(const std::string &bytes, size_t at) {
  size_t end = bytes.find_first_not_of('\r', at);
  if (end == std::string::npos)
    return (long)bytes.size();
  return (long)end + (bytes[end] == '\n' ? 1 : 0);
}

int announced(Byte byte) {
  return byte < 0xC0 || byte > 0xF7 ? 0 : byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
}

// The text of the raw bytes of a line.
std::string text_of(const std::string &raw) {
  std::string text;
  bool utf8 = false;
  bool single = false;
  for (size_t i = 0; i < raw.size(); i++) {
    Byte byte = (Byte)raw[i];
    if (byte == '\t')
      text += "        ";
    else if (byte != 0)
      text += raw[i];
    single = single || byte > 0xF7;
    int due = announced(byte);
    bool good = due > 0;
    for (; due > 0 && i + 1 < raw.size() && raw[i + 1] != 0; due--) {
      text += raw[++i];
      good = good && ((Byte)raw[i] & 0xC0) == 0x80;
    }
    utf8 = utf8 || (good && due == 0);
    single = single || (announced(byte) > 0 && !(good && due == 0)) || due > 0;
  }
  if (!utf8 || single)
    return text;
  Owned_text folded(g_convert(text.c_str(), -1, "CP1252", "UTF-8", nullptr, nullptr, nullptr));
  return folded != nullptr ? folded.get() : text;
}

Line line_at(const std::string &bytes, long start) {
  Line line;
  line.next = start;
  size_t at = (size_t)start;
  if (at >= bytes.size() || bytes[at] == '\377')
    return line;
  line.length = 0;
  if (bytes[at] == '\n') {
    line.next = start + 1;
  } else if (bytes[at] == '\r') {
    line.next = behind_empty(bytes, at);
  } else {
    size_t end = at;
    while (!ends_line(bytes, end))
      end++;
    line.text = text_of(bytes.substr(at, end - at));
    line.length = (long)line.text.size();
    line.next = behind_text(bytes, end);
  }
  return line;
}

// Reads the line at `start` with a buffer of this capacity and compares.
long compare(const std::string &bytes, long start, long capacity, FILE *fp) {
  Line due = line_at(bytes, start);
  char *text = capacity < 0 ? nullptr : static_cast<char *>(malloc((size_t)capacity));
  long nbytes = capacity < 0 ? 0 : capacity;
  long next = start;
  long length = aln_getline(&next, &text, &nbytes, fp);
  HOLDS(length == due.length);
  HOLDS(next == due.next);
  HOLDS(text == due.text);
  HOLDS(length < 0 || next > start);
  HOLDS(nbytes >= (capacity < 0 ? 0 : capacity));
  free(text);
  return length < 0 ? -1 : next;
}

} // namespace

// The first byte is the capacity of the buffer that is handed in, the rest the file.
FUZZ_TARGET(line_reader) {
  long capacity = input.empty() ? -1 : (long)(Byte)input[0] - 1;
  std::string bytes = input.substr(input.empty() ? 0 : 1);
  PUT_FILE("file", bytes);
  Owned_stream fp = OPEN_STREAM("file", "r");
  for (long at = 0; at >= 0;)
    at = compare(bytes, at, capacity, fp.get());
  // In any order, from any place.
  for (long at = (long)bytes.size() + 1; at >= 0; at -= 1 + (long)bytes.size() / 40)
    compare(bytes, at, capacity, fp.get());

  Trf_line_cursor cursor(fp.get());
  cursor.limit = LONG_MAX;
  while (NEXT_LINE(&cursor)) {
    Line due = line_at(bytes, cursor.start);
    HOLDS(cursor.length == due.length);
    HOLDS(cursor.next == due.next);
    HOLDS(cursor.text == due.text);
  }
  HOLDS(cursor.length == -2);
}
