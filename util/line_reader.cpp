// Reads one line of any text file: aln_getline, and the cursor over the lines of an open file.
#include "util/line_reader.h"

#include <glib.h>
#include <stdlib.h>
#include <string.h>

#include <array>
#include <string>

#include "util/encodings.h"
#include "util/report.h"

namespace {

const int END_BYTE = 0xFF; // what the end of the file reads as
const long GROWTH = 108;   // bytes a full buffer grows by
const long SPARE = 5;      // bytes of the buffer beyond its capacity
const long TAB_WIDTH = 8;  // spaces a tab becomes
const long NO_LINE_THERE = -1;
const long END_OF_FILE_REACHED = -2;

// A line being read, and its buffer.
struct Line {
  FILE *fp;
  char *text;
  long capacity;
  long length = 0;
  long nb_read = 0;        // bytes read, the end of the file counted as one
  bool has_utf8 = false;   // a well-formed sequence was read
  bool has_single = false; // something was read that only single-byte text can hold
};

bool ends_line(int byte) {
  return byte == '\n' || byte == '\r' || byte == END_BYTE;
}

// The bytes that are stored as they are and announce nothing.
constexpr std::array<bool, 256> plain_bytes() {
  std::array<bool, 256> plain = {};
  for (int byte = 1; byte < 0xC0; byte++)
    plain[(size_t)byte] = byte != '\n' && byte != '\r' && byte != '\t';
  return plain;
}
constexpr std::array<bool, 256> PLAIN = plain_bytes();

// Looks into the stream spare most lines every call into the library. The library that offers none
// gives the same lines, byte by byte and with a seek for each.
#ifdef __GLIBC__

// Where a stream that is being read stands; negative when only a seek can tell. One that holds no
// bytes ready must be sought, which makes it look at the file again: it may have been rewritten.
long known_position(FILE *fp) {
  long ready = fp->_IO_read_end - fp->_IO_read_ptr;
  bool pushed_back = fp->_IO_save_base != nullptr;
  return ready > 0 && !pushed_back ? (long)fp->_offset - ready : -1;
}

// How many of the bytes that the stream holds ready stand before the one at `offset`; negative
// where that one is not among them.
long ready_before(FILE *fp, long offset) {
  long position = known_position(fp);
  long ready = fp->_IO_read_end - fp->_IO_read_ptr;
  return position >= 0 && offset < position + ready ? offset - position : -1;
}

// The bytes that the stream holds ready behind so many of them; *nb: how many.
const char *ready_behind(FILE *fp, long passed, long *nb) {
  *nb = fp->_IO_read_end - fp->_IO_read_ptr - passed;
  return fp->_IO_read_ptr + passed;
}

void pass_ready_bytes(FILE *fp, long nb) {
  fp->_IO_read_ptr += nb;
}

// Takes the plain bytes that the stream holds ready; returns how many, *bytes being the first.
long take_ready_bytes(FILE *fp, const char **bytes) {
  const char *start = fp->_IO_read_ptr;
  const char *end = start;
  while (end < fp->_IO_read_end && PLAIN[(unsigned char)*end])
    end++;
  pass_ready_bytes(fp, end - start);
  *bytes = start;
  return end - start;
}

#else

long ready_before(FILE *, long) {
  return -1;
}

const char *ready_behind(FILE *, long, long *nb) {
  *nb = 0;
  return nullptr;
}

void pass_ready_bytes(FILE *, long) {
}

long take_ready_bytes(FILE *, const char **) {
  return 0;
}

#endif

bool stand_at(FILE *fp, long offset) {
  long passed = ready_before(fp, offset);
  if (passed < 0)
    return fseek(fp, offset, SEEK_SET) == 0;
  pass_ready_bytes(fp, passed);
  return true;
}

// QUIRK byte 255: the byte 0xFF reads as the end of the file: it ends a line, and at the start of
// one there is no further line. A reader would take it for a sign char mistaken for EOF. It is
// meant: in the learner's languages only a rare y with diaeresis is that byte, what stands behind
// it is taken for damage, and the offsets in the index files count on it. Test:
// LineReader.ByteFFEndsTheLineAndReadsAsTheEndOfTheFile
int next_byte(Line *line) {
  int byte = getc_unlocked(line->fp);
  line->nb_read++;
  return byte == EOF ? END_BYTE : byte;
}

// Gives the buffer as many bytes as its capacity calls for.
void resize(Line *line) {
  line->text = (char *)g_realloc(line->text, (gsize)line->capacity + SPARE);
}

// Makes room for bytes to be added; the text then still ends below the capacity.
void make_room(Line *line, long added) {
  long missing = line->length + added - line->capacity;
  if (missing < 0)
    return;
  line->capacity += (missing / GROWTH + 1) * GROWTH;
  resize(line);
}

// Room is made for a dropped NUL byte too.
void store(Line *line, int byte) {
  long width = byte == '\t' ? TAB_WIDTH : 1;
  make_room(line, width);
  if (byte == 0)
    return;
  memset(line->text + line->length, byte == '\t' ? ' ' : byte, (size_t)width);
  line->length += width;
}

void store_ready_bytes(Line *line) {
  const char *bytes = nullptr;
  long taken = take_ready_bytes(line->fp, &bytes);
  if (taken == 0)
    return;
  make_room(line, taken);
  memcpy(line->text + line->length, bytes, (size_t)taken);
  line->length += taken;
  line->nb_read += taken;
}

// Takes the bytes behind the first of a UTF-8 sequence. They may go into the spare bytes of the
// buffer; the capacity does not grow. Returns the byte behind the last one taken.
//
// QUIRK swallowed sequence: as many bytes as the first one announces belong to the sequence, good
// or bad; a tab among them stays a tab, and an accented letter or a further first byte is not
// looked at. A reader would expect the reading to start afresh at the bad byte. It is meant: a
// line of CP1252 text, where 0xE9 is a letter, is told from UTF-8 by these very sequences, and the
// working copy is made by the same count. Test:
// LineReader.BytesBehindAnAnnouncingByteAreTakenGoodOrBad
int take_sequence(Line *line, int announced) {
  // The caller's own block may lack the spare bytes.
  if (line->length + announced >= line->capacity)
    resize(line);
  bool good = true;
  int byte = next_byte(line);
  while (announced > 0 && byte != 0 && !ends_line(byte)) {
    line->text[line->length++] = (char)byte;
    good = good && (byte & 0xC0) == 0x80;
    announced--;
    byte = next_byte(line);
  }
  if (good && announced == 0)
    line->has_utf8 = true;
  else
    line->has_single = true;
  return byte;
}

// Reads the text of a line from its first byte on; returns the byte that ended it.
int read_text(Line *line, int byte) {
  while (!ends_line(byte)) {
    store(line, byte);
    int announced = ANNOUNCED_BYTES(byte);
    if (announced > 0) {
      byte = take_sequence(line, announced);
      continue;
    }
    if (announced == NOT_UTF8)
      line->has_single = true;
    store_ready_bytes(line);
    byte = next_byte(line);
  }
  line->text[line->length] = 0;
  return byte;
}

// Turns the text into CP1252 where it is UTF-8 throughout; else it stays as read.
//
// QUIRK mixed line: a line that holds both a UTF-8 sequence and a single-byte letter is handed
// back as read. A reader would expect the sequences to be converted. It is meant: which of the two
// the learner's editor wrote cannot be told, and a line left alone can still be mended.
// Test: LineReader.LineThatMixesBothEncodingsStaysAsItIs
void fold_to_cp1252(Line *line) {
  if (!line->has_utf8)
    return;
  if (line->has_single) {
    TRACE("aln_getline bad mixture of iso and utf8 \n ss=%s@@@\n", line->text);
    return;
  }
  std::string folded((size_t)line->length, '\0');
  long length = CONVERT_TO_CP1252(line->text, line->length, folded.data());
  if (length < 0)
    return;
  memcpy(line->text, folded.data(), (size_t)length);
  line->length = length;
  line->text[length] = 0;
}

// The offset behind an empty line that begins with a CR, which has been read. Without LF the next
// line begins with the byte behind the CRs, which is given back by a seek.
//
// QUIRK empty lines of CRs: any run of CRs at the start of a line is one empty line, with or
// without an LF behind it. A reader would count one line for each. It is meant: line ends of
// working copies are CR CR LF. Test: LineReader.RunOfCarriageReturnsIsOneEmptyLine
long behind_empty_line(Line *line, long start) {
  int byte = next_byte(line);
  while (byte == '\r')
    byte = next_byte(line);
  long next = start + line->nb_read - (byte == '\n' ? 0 : 1);
  stand_at(line->fp, next);
  return next;
}

// The offset behind a text line, whose last byte has been read.
//
// QUIRK bare CR: where a text line ends in CRs without an LF, the byte behind them counts as part
// of the line end: the next line has lost its first character. A reader would take it for an
// off-by-one. It is meant: index files hold offsets that were counted so, and working copies have
// no bare CR. At the end of the file the offset lies one past the end in the same way.
// Test: LineReader.BareCarriageReturnMakesTheNextLineLoseItsFirstCharacter
long behind_text_line(Line *line, long start, int byte) {
  while (byte == '\r') {
    stand_at(line->fp, start + line->nb_read);
    byte = next_byte(line);
  }
  return start + line->nb_read;
}

long read_line(Line *line, long *nc) {
  line->text[0] = 0;
  if (!stand_at(line->fp, *nc))
    return NO_LINE_THERE;
  int byte = next_byte(line);
  if (byte == END_BYTE)
    return END_OF_FILE_REACHED;
  if (byte == '\n') {
    *nc += 1;
  } else if (byte == '\r') {
    *nc = behind_empty_line(line, *nc);
  } else {
    byte = read_text(line, byte);
    fold_to_cp1252(line);
    *nc = behind_text_line(line, *nc, byte);
  }
  return line->length;
}

} // namespace

long aln_getline(long *nc, char **ss, long *nbytes, FILE *fp) {
  Line line = {fp, *ss, *nbytes};
  if (line.text == nullptr)
    resize(&line);
  long result = read_line(&line, nc);
  *ss = line.text;
  *nbytes = line.capacity;
  return result;
}

Trf_line_cursor::~Trf_line_cursor() {
  free(text);
}

bool NEXT_LINE(Trf_line_cursor *cursor) {
  if (cursor->nb_read >= cursor->limit)
    return false;
  cursor->start = cursor->next;
  cursor->length = aln_getline(&cursor->next, &cursor->text, &cursor->nbytes, cursor->fp);
  if (cursor->length < 0)
    return false;
  cursor->nb_read++;
  return true;
}

const char *READY_BYTES(long nb, const Trf_line_cursor *cursor) {
  long passed = ready_before(cursor->fp, cursor->next);
  if (passed < 0 || cursor->nb_read >= cursor->limit)
    return nullptr;
  long nb_ready = 0;
  const char *bytes = ready_behind(cursor->fp, passed, &nb_ready);
  return nb_ready >= nb ? bytes : nullptr;
}

void PASS_READY_BYTES(long nb, Trf_line_cursor *cursor) {
  cursor->start = cursor->next;
  cursor->next += nb;
  cursor->nb_read++;
}
