// The working copy of a dictionary: every line in CP1252 with one form of line end.
#include "util/working_copy.h"

#include <limits.h>

#include <algorithm>
#include <string>

#include "util/encodings.h"
#include "util/file_copy.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/safe_write.h"

namespace {

using Byte = unsigned char;

// What stands in the place of a piece that straddles two blocks and has no CP1252 form.
const char NO_FORM[] = "error ???? !!! ";

enum Line_end { END_DONE, END_CR, END_CR_CR };

// A working copy being written.
struct Trf_conversion {
  FILE *fp = nullptr;           // the new file
  std::string out;              // what the block gave; written behind it as a whole
  std::string carried;          // a piece that began in an earlier block
  int expected = 0;             // continuation bytes still announced
  bool bad = false;             // one of those taken is none
  bool utf8 = false;            // the piece holds a good sequence
  bool single = false;          // the piece holds bytes that are no UTF-8
  bool straddles = false;       // its last sequence lies in two blocks
  Line_end line_end = END_DONE; // a CR has been written, and a second one skipped
  int changes = 0;              // changes so far
};

void count_change(Trf_conversion *copy) {
  if (copy->changes < INT_MAX)
    copy->changes++;
}

void put(Trf_conversion *copy, const char *bytes, size_t length) {
  copy->out.append(bytes, length);
}

void write_out(Trf_conversion *copy) {
  fwrite(copy->out.data(), 1, copy->out.size(), copy->fp);
  copy->out.clear();
}

bool ends_line(Byte byte) {
  return byte == '\n' || byte == '\r';
}

// Puts the piece in CP1252, or what stands for it where it has no such form.
void put_converted(Trf_conversion *copy, const char *piece, size_t nb) {
  size_t start = copy->out.size();
  copy->out.resize(start + nb);
  long length = CONVERT_TO_CP1252(piece, (long)nb, &copy->out[start]);
  copy->out.resize(start + (size_t)std::max(length, 0L));
  if (length >= 0)
    return;
  // QUIRK lost piece: a piece whose UTF-8 sequence lies across two blocks and that has no CP1252
  // form is replaced by "error ???? !!! ", one inside a block is written as read; a reader would
  // expect both to be treated alike. It is meant: the offsets in the index files hang on it.
  // Test: WinFile.APieceAcrossTwoBlocksWithoutAFormIsReplaced
  if (copy->straddles)
    put(copy, NO_FORM, sizeof(NO_FORM) - 1);
  else
    put(copy, piece, nb);
}

// Puts a piece of nb bytes and begins the next one.
void end_piece(Trf_conversion *copy, const char *piece, size_t nb) {
  if (copy->utf8 && !copy->single) {
    put_converted(copy, piece, nb);
    count_change(copy);
  } else {
    if (copy->utf8)
      TRACE("win_file line with UTF-8 and single bytes: %.*s@@@", (int)nb, piece);
    put(copy, piece, nb);
  }
  copy->utf8 = copy->single = copy->straddles = false;
}

void end_carried(Trf_conversion *copy) {
  end_piece(copy, copy->carried.data(), copy->carried.size());
  copy->carried.clear();
}

void end_sequence(Trf_conversion *copy) {
  if (copy->bad || copy->expected > 0)
    copy->single = true;
  else
    copy->utf8 = true;
  copy->expected = 0;
  copy->bad = false;
}

// Takes announced continuation bytes, good or bad, from index i. Returns the index behind them; the
// sequence stays open only at the end of the block.
int take_sequence(Trf_conversion *copy, const Byte *block, int nb, int i) {
  while (copy->expected > 0 && i < nb) {
    if (block[i] == '\0' || ends_line(block[i]))
      break;
    if (block[i] < 0x80 || block[i] > 0xBF)
      copy->bad = true;
    i++;
    copy->expected--;
  }
  if (copy->expected == 0 || i < nb)
    end_sequence(copy);
  return i;
}

// Takes the bytes of a line from index i. Returns the index of its end in this block.
int take_text(Trf_conversion *copy, const Byte *block, int nb, int i) {
  while (i < nb && !ends_line(block[i])) {
    int announced = ANNOUNCED_BYTES(block[i++]);
    copy->single = copy->single || announced == NOT_UTF8;
    copy->expected = std::max(announced, 0);
    if (copy->expected > 0)
      i = take_sequence(copy, block, nb, i);
    while (i < nb && block[i] >= ' ' && block[i] < 0xC0)
      i++;
  }
  return i;
}

// Finishes a line end that began with CR, with the first byte behind it in view. Returns whether
// that byte was a second CR, which is skipped.
bool skip_second_cr(Trf_conversion *copy, Byte next) {
  // QUIRK swallowed CR: of two CRs in a row the second is skipped, so an empty line between two
  // bare CRs is lost; a reader would expect an empty line. It is meant: CR CR LF, which this very
  // routine writes, must come out as it went in.
  // Test: WinFile.TheSecondOfTwoCarriageReturnsIsSkipped
  if (copy->line_end == END_CR && next == '\r') {
    copy->line_end = END_CR_CR;
    return true;
  }
  if (copy->line_end != END_DONE && next != '\n') {
    put(copy, "\n", 1);
    count_change(copy);
  }
  copy->line_end = END_DONE;
  return false;
}

void put_line_end(Trf_conversion *copy, Byte end) {
  if (end == '\r') {
    put(copy, "\r", 1);
    copy->line_end = END_CR;
    return;
  }
  // QUIRK doubled CR: the LF of a CR LF is an empty line's end here and gets a CR of its own, so
  // CR LF becomes CR CR LF; a reader would expect it to stay. It is meant: the line reader takes
  // CR CR LF as one line end, and the offsets in the index files count it.
  // Test: WinFile.CarriageReturnLineFeedGetsASecondCarriageReturn
  put(copy, "\r\n", 2);
  count_change(copy);
}

// Takes one line, or the piece of it that this block holds, from index i. Returns the index behind
// it. A piece that ends inside a sequence waits for the next block.
int take_line(Trf_conversion *copy, const Byte *block, int nb, int i) {
  if (skip_second_cr(copy, block[i]))
    return i + 1;
  const char *piece = (const char *)block + i;
  int end = take_text(copy, block, nb, i);
  if (copy->expected == 0)
    end_piece(copy, piece, (size_t)(end - i));
  else
    copy->carried.assign(piece, (size_t)(end - i));
  i = end;
  if (i == nb)
    return i;
  put_line_end(copy, block[i]);
  return i + 1;
}

// QUIRK line in pieces: a line cut by the end of a block is written in pieces, each with its own
// marks, so the same line can be converted in one place of a file and not in another; a reader
// would expect whole lines. It is meant: the offsets in the index files hang on it.
// Test: WinFile.ALineCutByABlockEndIsHandledPieceByPiece
void take_block(Trf_conversion *copy, const Byte *block, int nb) {
  int i = 0;
  if (copy->expected > 0) {
    copy->straddles = true;
    i = take_sequence(copy, block, nb, i);
    copy->carried.append((const char *)block, (size_t)i);
    if (copy->expected == 0)
      end_carried(copy);
  }
  while (i < nb)
    i = take_line(copy, block, nb, i);
  write_out(copy);
}

// The whole source, block by block, through the copy into the new file.
void convert(FILE *fp, const char *source, Trf_new_file *file, Trf_conversion *copy) {
  Byte block[WIN_BLOCK];
  while (size_t nb = READ_OR_STOP(fp, source, block, sizeof(block), file))
    take_block(copy, block, (int)nb);
  if (copy->expected > 0)
    end_sequence(copy);
  end_carried(copy);
  write_out(copy);
}

} // namespace

int win_file(const char *source, const char *destination) {
  Owned_stream fp = OPEN_SOURCE(source);
  if (!fp)
    return -1;
  Trf_new_file file;
  if (!OPEN_NEW_FILE(destination, &file))
    return -2;
  Trf_conversion copy;
  copy.fp = file.fp;
  convert(fp.get(), source, &file, &copy);
  COMMIT_OR_STOP(&file, destination, SAVED_LOG());
  TRACE("win_file %s to %s, changes=%d", source, destination, copy.changes);
  return copy.changes;
}
