// Lines, their offsets and capacities; a byte-by-byte model of the reader to compare with.
#include "util/line_reader.h"

#include <glib.h>
#include <limits.h>
#include <malloc.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include <memory>
#include <random>

#include "support/scratch.h"
#include "util/owned.h"

namespace {

using std::string;
using std::string_literals::operator""s;

// A line as one call hands it over.
struct Read {
  long result;
  long next;
  long capacity;
  string text;

  bool operator==(const Read &other) const {
    return result == other.result && next == other.next && capacity == other.capacity &&
           text == other.text;
  }
};

std::ostream &operator<<(std::ostream &out, const Read &read) {
  return out << "result " << read.result << " next " << read.next << " capacity " << read.capacity
             << " text " << testing::PrintToString(read.text);
}

// ---- the model: one fgetc for each byte, one fseek for each call ----

struct Model {
  FILE *fp;
  string text;
  long capacity;
  long next = 0;
  bool utf8 = false;
  bool single = false;

  int get() {
    next++;
    return fgetc(fp) & 0xFF;
  }
};

bool model_ends(int byte) {
  return byte == '\n' || byte == '\r' || byte == 0xFF;
}

int model_announced(int byte) {
  if (byte >= 0xC0 && byte <= 0xDF)
    return 1;
  if (byte >= 0xE0 && byte <= 0xEF)
    return 2;
  return byte >= 0xF0 && byte <= 0xF7 ? 3 : 0;
}

int model_after(Model *model, int lead) {
  int byte = model->get();
  int expected = model_announced(lead);
  if (lead >= 0xF8)
    model->single = true;
  if (expected == 0)
    return byte;
  bool good = true;
  int taken = 0;
  while (taken < expected && byte != 0 && !model_ends(byte)) {
    model->text += (char)byte;
    if (byte < 0x80 || byte > 0xBF)
      good = false;
    taken++;
    byte = model->get();
  }
  if (taken < expected)
    good = false;
  (good ? model->utf8 : model->single) = true;
  return byte;
}

int model_text(Model *model, int byte) {
  while (!model_ends(byte)) {
    long width = byte == '\t' ? 8 : 1;
    if (width + (long)model->text.size() >= model->capacity)
      model->capacity += 108;
    if (byte == '\t')
      model->text += "        ";
    else if (byte != 0)
      model->text += (char)byte;
    byte = model_after(model, byte);
  }
  return byte;
}

void model_convert(Model *model) {
  if (!model->utf8 || model->single)
    return;
  Owned_text converted(g_convert(model->text.data(), (gssize)model->text.size(), "CP1252", "UTF-8",
                                 nullptr, nullptr, nullptr));
  if (converted)
    model->text = converted.get();
}

Read model_empty_line(Model *model) {
  long position = 0;
  int byte = '\r';
  while (byte == '\r') {
    position = ftell(model->fp);
    byte = fgetc(model->fp);
  }
  if (byte == '\n')
    position++;
  fseek(model->fp, position, SEEK_SET);
  return {0, position, model->capacity, ""};
}

Read model_read(FILE *fp, long start, long capacity) {
  Model model = {fp, "", capacity, start};
  if (fseek(fp, start, SEEK_SET) != 0)
    return {-1, start, capacity, ""};
  int byte = model.get();
  if (byte == 0xFF)
    return {-2, start, capacity, ""};
  if (byte == '\n')
    return {0, start + 1, capacity, ""};
  if (byte == '\r')
    return model_empty_line(&model);
  byte = model_text(&model, byte);
  model_convert(&model);
  while (byte == '\r') {
    fseek(fp, model.next, SEEK_SET);
    byte = model.get();
  }
  return {(long)model.text.size(), model.next, model.capacity, model.text};
}

// ---- helpers ----

// The reader on one stream with one buffer that lives as long as this does.
struct Reader {
  FILE *fp;
  char *ss = nullptr;
  long nbytes = 0;

  explicit Reader(FILE *stream) : fp(stream) {
  }
  Reader(const Reader &) = delete;
  Reader &operator=(const Reader &) = delete;
  ~Reader() {
    free(ss);
  }
  Read at(long offset) {
    long next = offset;
    long result = aln_getline(&next, &ss, &nbytes, fp);
    return {result, next, nbytes, ss};
  }
};

Owned_stream file_of(const string &bytes) {
  FILE *fp = fdopen(memfd_create("lines", 0), "w+");
  fwrite(bytes.data(), 1, bytes.size(), fp);
  fseek(fp, 0, SEEK_SET);
  return Owned_stream(fp);
}

// The lines of a text, one after the other, with '|' behind each; at most 100.
string lines_of(const string &bytes) {
  Owned_stream fp = file_of(bytes);
  Trf_line_cursor cursor(fp.get());
  cursor.limit = 100;
  string lines;
  while (NEXT_LINE(&cursor))
    lines += string(cursor.text, (size_t)cursor.length) + "|";
  return lines;
}

Read first_line(const string &bytes) {
  Owned_stream fp = file_of(bytes);
  Reader reader(fp.get());
  return reader.at(0);
}

void expect_first(const string &bytes, long result, long next, const string &text) {
  Read read = first_line(bytes);
  EXPECT_EQ(read.result, result);
  EXPECT_EQ(read.next, next);
  EXPECT_EQ(read.text, text);
}

} // namespace

TEST(LineReader, EmptyFileIsAtItsEnd) {
  expect_first("", -2, 0, "");
}

TEST(LineReader, ByteFFEndsTheLineAndReadsAsTheEndOfTheFile) {
  expect_first("\377abc\n", -2, 0, "");
  expect_first("ab\377cd\n", 2, 3, "ab");
  EXPECT_EQ(lines_of("ab\377cd\n"), "ab|cd|");
  EXPECT_EQ(lines_of("ab\377\377cd\n"), "ab|");
  expect_first("ab\r\377cd\n", 2, 4, "ab");
  expect_first("\r\377cd\n", 0, 1, "");
  expect_first("ab\303\377cd\n", 3, 4, "ab\303");
}

TEST(LineReader, CarriageReturnLineFeedIsOneLineEnd) {
  expect_first("abc\r\ndef\n", 3, 5, "abc");
  EXPECT_EQ(lines_of("abc\r\ndef\n"), "abc|def|");
  EXPECT_EQ(lines_of("abc\r\r\ndef\r\r\n"), "abc|def|");
}

TEST(LineReader, BareCarriageReturnMakesTheNextLineLoseItsFirstCharacter) {
  expect_first("abc\rdef", 3, 5, "abc");
  EXPECT_EQ(lines_of("abc\rdef"), "abc|ef|");
  EXPECT_EQ(lines_of("abc\r\r\rdef\rg"), "abc|ef|");
}

TEST(LineReader, CarriageReturnAtTheEndOfTheFileGivesAnOffsetOnePastTheEnd) {
  expect_first("abc\r", 3, 5, "abc");
  expect_first("abc\r\r", 3, 6, "abc");
  expect_first("\r", 0, 1, "");
  EXPECT_EQ(lines_of("abc\r"), "abc|");
}

TEST(LineReader, LineWithoutEndGivesAnOffsetOnePastTheEndOfTheFile) {
  expect_first("abc", 3, 4, "abc");
  EXPECT_EQ(lines_of("abc"), "abc|");
}

TEST(LineReader, RunOfCarriageReturnsIsOneEmptyLine) {
  expect_first("\r\nabc", 0, 2, "");
  expect_first("\r\r\nabc", 0, 3, "");
  expect_first("\rabc", 0, 1, "");
  expect_first("\r\r\rabc", 0, 3, "");
  EXPECT_EQ(lines_of("\r\r\rabc\n\n\r\n\nd"), "|abc||||d|");
}

TEST(LineReader, LineFeedAloneIsAnEmptyLine) {
  expect_first("\nabc", 0, 1, "");
  EXPECT_EQ(lines_of("\n\n\n"), "|||");
}

TEST(LineReader, TabBecomesEightSpaces) {
  expect_first("a\tb\n", 10, 4, "a        b");
  expect_first("\t\t\n", 16, 3, string(16, ' '));
}

TEST(LineReader, NulByteIsDropped) {
  expect_first("a\0b\0\n"s, 2, 5, "ab");
  expect_first("\0\0\nx"s, 0, 3, "");
}

TEST(LineReader, NulByteEndsASequenceAndIsDropped) {
  expect_first("a\303\0\251\n"s, 3, 5, "a\303\251");
}

TEST(LineReader, Utf8LineComesBackInCp1252) {
  expect_first("caf\303\251\n", 4, 6, "caf\351");
  expect_first("\342\202\254 \305\223\n", 3, 7, "\200 \234");
}

TEST(LineReader, Cp1252LineComesBackUnchanged) {
  expect_first("caf\351\n", 4, 5, "caf\351");
  expect_first("caf\351 noir\n", 9, 10, "caf\351 noir");
  expect_first("\200\223\277\n", 3, 4, "\200\223\277");
}

TEST(LineReader, LineThatMixesBothEncodingsStaysAsItIs) {
  expect_first("caf\303\251 \351t\n", 8, 9, "caf\303\251 \351t");
  expect_first("caf\303\251 \370\n", 7, 8, "caf\303\251 \370");
}

TEST(LineReader, MixedLineIsOnlyTraced) {
  const string line = "\303\251 \370";
  testing::internal::CaptureStdout();
  first_line(line + "\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  first_line(line + "\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "aln_getline bad mixture of iso and utf8 \n ss=" + line + "@@@\n");
  unsetenv("MERTU_TRACE");
}

TEST(LineReader, EveryKindOfBadSequenceMakesALineMixed) {
  // Bytes below and above those that continue, too few of them, a byte that announces nothing.
  setenv("MERTU_TRACE", "1", 1);
  for (const char *bad : {"\351t", "\303\300", "\342\202", "\342\202t", "\370", "\376"}) {
    testing::internal::CaptureStdout();
    first_line(string("\303\251") + bad + "\n");
    EXPECT_NE(testing::internal::GetCapturedStdout(), "") << testing::PrintToString(bad);
    testing::internal::CaptureStdout();
    first_line(string(bad) + "\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << testing::PrintToString(bad);
  }
  unsetenv("MERTU_TRACE");
}

TEST(LineReader, CharacterThatCp1252LacksLeavesTheLineAsItIs) {
  expect_first("\316\261 \303\251\n", 5, 6, "\316\261 \303\251");
  expect_first("\303\251 \302\201\n", 5, 6, "\303\251 \302\201");
}

TEST(LineReader, SequenceThatOnlyLooksWellFormedLeavesTheLineAsItIs) {
  expect_first("\300\200a\n", 3, 4, "\300\200a");
  expect_first("\355\240\200a\n", 4, 5, "\355\240\200a");
  expect_first("\367\277\277\277\n", 4, 5, "\367\277\277\277");
}

TEST(LineReader, BytesBehindAnAnnouncingByteAreTakenGoodOrBad) {
  // The tab behind 0xC9 stays a tab, and 0xC3 behind 0xC9 begins no sequence of its own.
  expect_first("\311\tx\n", 3, 4, "\311\tx");
  expect_first("\311\303\251\n", 3, 4, "\311\303\251");
  // All three bytes behind 0xF0 are taken though the first is bad; the sequence behind converts
  // nothing, the line being mixed.
  expect_first("\360abc\303\251\n", 6, 7, "\360abc\303\251");
}

TEST(LineReader, ContinuationByteWithoutAnAnnouncingByteSaysNothing) {
  expect_first("\222 \303\251\n", 4, 5, "\222 \303\251"); // 0x92 alone is no UTF-8: not converted
  expect_first("a\222b\n", 3, 4, "a\222b");
}

TEST(LineReader, OtherSequencesBehindAreStillConverted) {
  expect_first("\303\251t\303\251 \342\200\231\n", 5, 10, "\351t\351 \222");
}

TEST(LineReader, NullBufferIsGivenWhatItsCapacityCallsFor) {
  Owned_stream fp = file_of("\nabc\n");
  Reader reader(fp.get());
  EXPECT_EQ(reader.at(0), (Read{0, 1, 0, ""}));
  EXPECT_EQ(reader.at(1), (Read{3, 5, 108, "abc"}));
}

TEST(LineReader, BufferGrowsBy108WhenTheTextReachesItsCapacity) {
  const long capacities[][3] = {// length, capacity before, capacity after
                                {4, 5, 5},       {5, 5, 113},     {107, 108, 108}, {108, 108, 216},
                                {215, 108, 216}, {216, 108, 324}, {1000, 0, 1080}, {1, 0, 108},
                                {1, 1, 109},     {1, 2, 2}};
  for (const auto &row : capacities) {
    Owned_stream fp = file_of(string((size_t)row[0], 'x') + "\n");
    Reader reader(fp.get());
    reader.nbytes = row[1];
    Read read = reader.at(0);
    EXPECT_EQ(read.capacity, row[2]) << row[0] << " bytes into " << row[1];
    EXPECT_EQ(read.result, row[0]);
  }
}

TEST(LineReader, TabAsksForEightBytesAtOnce) {
  for (long before : {8, 9}) {
    Owned_stream fp = file_of("\t\n");
    Reader reader(fp.get());
    reader.nbytes = before;
    EXPECT_EQ(reader.at(0).capacity, before == 8 ? 116 : 9);
  }
}

TEST(LineReader, ContinuationBytesFitIntoTheSpareBytes) {
  // The announcing byte is the last that fits below the capacity; three more follow unasked.
  for (long before : {5, 6, 7, 8}) {
    Owned_stream fp = file_of("abcd\360\237\230\200\n");
    Reader reader(fp.get());
    reader.nbytes = before;
    Read read = reader.at(0);
    EXPECT_EQ(read.text, "abcd\360\237\230\200");
    EXPECT_EQ(read.capacity, before == 5 ? 113 : before);
  }
}

TEST(LineReader, BufferOfItsCapacityAloneIsGivenTheSpareBytes) {
  for (const string sequence : {"\303\251", "\342\202\254", "\360\237\230\200"}) {
    for (long before = 2; before < 60; before++) {
      Owned_stream fp = file_of(string((size_t)before - 2, 'x') + sequence + "\n");
      Reader reader(fp.get());
      reader.ss = (char *)malloc((size_t)before);
      reader.nbytes = before;
      EXPECT_EQ(reader.at(0).capacity, before);
      EXPECT_GE(malloc_usable_size(reader.ss), (size_t)before + 5);
    }
  }
}

TEST(LineReader, OffsetThatCannotBeSoughtGivesMinusOne) {
  Owned_stream fp = file_of("abc\n");
  Reader reader(fp.get());
  reader.at(0);
  EXPECT_EQ(reader.at(-1), (Read{-1, -1, 108, ""}));
  EXPECT_EQ(reader.at(-7), (Read{-1, -7, 108, ""}));
}

TEST(LineReader, StreamThatCannotSeekGivesMinusOne) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  Owned_stream input(fdopen(ends[0], "r"));
  Owned_stream output(fdopen(ends[1], "w"));
  fputs("abc\n", output.get());
  fflush(output.get());
  Reader reader(input.get());
  EXPECT_EQ(reader.at(0), (Read{-1, 0, 0, ""}));
}

TEST(LineReader, DirectoryIsAtItsEnd) {
  Owned_stream fp = OPEN_STREAM("/", "r");
  ASSERT_TRUE(fp);
  Reader reader(fp.get());
  EXPECT_LT(reader.at(0).result, 0);
}

TEST(LineReader, OffsetBehindTheEndOfTheFileIsItsEnd) {
  Owned_stream fp = file_of("abc\n");
  Reader reader(fp.get());
  EXPECT_EQ(reader.at(4000).result, -2);
  EXPECT_EQ(reader.at(0).text, "abc");
}

TEST(LineReader, LinesWrittenBehindTheEndAreSeenByTheNextCall) {
  Scratch_dir scratch;
  scratch.write("list", "abc\n");
  Owned_stream fp = OPEN_STREAM("list", "r");
  Reader reader(fp.get());
  EXPECT_EQ(reader.at(0).next, 4);
  EXPECT_EQ(reader.at(4).result, -2);
  Owned_stream writer = OPEN_STREAM("list", "a");
  fputs("def\n", writer.get());
  fflush(writer.get());
  EXPECT_EQ(reader.at(4).text, "def");
}

TEST(LineReader, LineWrittenThroughTheSameStreamIsRead) {
  Scratch_dir scratch;
  for (const char *mode : {"w+", "r+", "a+"}) {
    Owned_stream fp = OPEN_STREAM("list", mode);
    Reader reader(fp.get());
    long end = 0;
    for (int i = 0; i < 50; i++) {
      fseek(fp.get(), end, SEEK_SET);
      fprintf(fp.get(), "%s number %d\n", mode, i);
      long behind = ftell(fp.get());
      Read read = reader.at(end);
      EXPECT_EQ(read.text, string(mode) + " number " + std::to_string(i));
      EXPECT_EQ(read.next, behind);
      end = behind;
    }
    fp.reset();
    scratch.write("list", "");
  }
}

TEST(LineReader, LineOverwrittenThroughTheSameStreamIsRead) {
  Owned_stream fp = file_of("one\ntwo\nsix\n");
  Reader reader(fp.get());
  EXPECT_EQ(reader.at(4).text, "two");
  fseek(fp.get(), 4, SEEK_SET);
  fputs("TWO", fp.get());
  fflush(fp.get());
  EXPECT_EQ(reader.at(7).next, 8);
  EXPECT_EQ(reader.at(4).text, "TWO");
  EXPECT_EQ(reader.at(8).text, "six");
}

TEST(LineReader, PushedBackByteIsNotPartOfTheLine) {
  Owned_stream fp = file_of("one\ntwo\n");
  Reader reader(fp.get());
  reader.at(0);
  ungetc('X', fp.get());
  EXPECT_EQ(reader.at(3).next, 4);
  ungetc('X', fp.get());
  EXPECT_EQ(reader.at(4).text, "two");
  ungetc('X', fp.get());
  EXPECT_EQ(reader.at(7), (Read{0, 8, 108, ""}));
}

TEST(LineReader, PushedBackBytesMoveNoLineBeforeOrAfterTheyAreRead) {
  for (int nb_read_again : {0, 1, 2}) {
    Owned_stream fp = file_of("one\ntwo\nsix\nten\n");
    Reader reader(fp.get());
    EXPECT_EQ(reader.at(4).text, "two");
    ungetc('y', fp.get());
    ungetc('x', fp.get());
    for (int i = 0; i < nb_read_again; i++)
      EXPECT_EQ(fgetc(fp.get()), i == 0 ? 'x' : 'y');
    EXPECT_EQ(reader.at(0).text, "one") << nb_read_again << " read again";
    EXPECT_EQ(reader.at(8).text, "six") << nb_read_again << " read again";
  }
}

TEST(LineReader, StreamInMemoryIsReadAsAFile) {
  char bytes[] = "one\ntwo\r\nthree";
  Owned_stream fp(fmemopen(bytes, strlen(bytes), "r"));
  Reader reader(fp.get());
  EXPECT_EQ(reader.at(0).text, "one");
  EXPECT_EQ(reader.at(4).text, "two");
  EXPECT_EQ(reader.at(9).text, "three");
  EXPECT_EQ(reader.at(1).text, "ne");
}

TEST(LineReader, StreamStandsWhereTheNextLineBegins) {
  Owned_stream fp = file_of("one\ntwo\r\n\r\rsix\n");
  Reader reader(fp.get());
  for (long offset : {0L, 4L, 9L, 11L}) {
    long next = reader.at(offset).next;
    EXPECT_EQ(ftell(fp.get()), next);
  }
}

TEST(LineReader, LineOfAMillionBytesIsReadWhole) {
  const string line(1000000, 'x');
  Owned_stream fp = file_of(line + "\r\r\nend");
  Reader reader(fp.get());
  Read read = reader.at(0);
  EXPECT_EQ(read.result, 1000000);
  EXPECT_EQ(read.next, 1000003);
  EXPECT_EQ(read.capacity, (1000000 / 108 + 1) * 108);
  EXPECT_TRUE(read.text == line);
}

namespace {

// Bytes of a file made by chance, of an alphabet in which the troublesome ones are frequent.
string random_bytes(std::mt19937 *chance) {
  static const string alphabets[] = {
      "ab \n",
      "abc\r\n\t",
      "\r\n\r\na\377",
      "ab\0\303\251\n\r"s,
      "e\351\303\251\342\202\254\n",
      "\300\302\340\355\360\364\370\376\200\277\223a\r\n\t\0\377"s,
  };
  const string &alphabet = alphabets[(*chance)() % 6];
  static const char *const texts[] = {"\303\251", "\342\202\254", "\360\237\230\200", "\r\r\n",
                                      "caf\351",  "\303\240 ",    "plain text ",      "\n"};
  size_t length = (*chance)() % ((*chance)() % 4 == 0 ? 9000 : 60);
  bool any_byte = (*chance)() % 8 == 0;
  string bytes;
  while (bytes.size() < length) {
    if ((*chance)() % 5 == 0)
      bytes += texts[(*chance)() % 8];
    else
      bytes += any_byte ? (char)(*chance)() : alphabet[(*chance)() % alphabet.size()];
  }
  return bytes;
}

// Reads on from an offset to the end, line by line, and compares each line with the model's.
::testing::AssertionResult same_walk(Reader *reader, FILE *model, long offset) {
  for (int i = 0; i < 400; i++) {
    Read expected = model_read(model, offset, reader->nbytes);
    Read read = reader->at(offset);
    if (!(read == expected))
      return ::testing::AssertionFailure()
             << "at " << offset << ": " << read << ", not " << expected;
    if (read.result < 0)
      break;
    offset = read.next;
  }
  return ::testing::AssertionSuccess();
}

} // namespace

TEST(LineReader, AnyFileReadsAsTheByteByByteModelReadsIt) {
  std::mt19937 chance(20010101);
  for (int i = 0; i < 3000; i++) {
    string bytes = random_bytes(&chance);
    Owned_stream fp = file_of(bytes);
    Owned_stream model = file_of(bytes);
    Reader reader(fp.get());
    reader.nbytes = chance() % 3 == 0 ? 0 : (long)(chance() % 250);
    if (chance() % 2 == 0)
      reader.ss = (char *)malloc((size_t)reader.nbytes + 5);
    for (int walk = 0; walk < 3; walk++) {
      long offset = walk == 0 ? 0 : (long)(chance() % (bytes.size() + 3));
      ASSERT_TRUE(same_walk(&reader, model.get(), offset)) << testing::PrintToString(bytes);
    }
  }
}

TEST(LineReader, JumpingBetweenTwoStreamsReadsAsTheModelReads) {
  std::mt19937 chance(7);
  for (int i = 0; i < 300; i++) {
    string bytes = random_bytes(&chance);
    Owned_stream fps[2] = {file_of(bytes), file_of(bytes + "\nmore")};
    Owned_stream models[2] = {file_of(bytes), file_of(bytes + "\nmore")};
    Reader readers[2] = {Reader(fps[0].get()), Reader(fps[1].get())};
    long offsets[2] = {0, 0};
    for (int step = 0; step < 60; step++) {
      int which = (int)(chance() % 2);
      if (chance() % 6 == 0)
        offsets[which] = (long)(chance() % (bytes.size() + 3));
      Read expected = model_read(models[which].get(), offsets[which], readers[which].nbytes);
      ASSERT_EQ(readers[which].at(offsets[which]), expected) << testing::PrintToString(bytes);
      offsets[which] = expected.next;
    }
  }
}

namespace {

// Writes a few bytes somewhere in the file, through a stream of its own.
void scribble(std::mt19937 *chance, size_t length) {
  Owned_stream writer = OPEN_STREAM("list", "r+");
  fseek(writer.get(), (long)((*chance)() % (length + 1)), SEEK_SET);
  string bytes = random_bytes(chance).substr(0, 40);
  fwrite(bytes.data(), 1, bytes.size(), writer.get());
}

} // namespace

TEST(LineReader, FileThatIsRewrittenMeanwhileReadsAsTheModelReadsIt) {
  std::mt19937 chance(11);
  Scratch_dir scratch;
  for (int i = 0; i < 200; i++) {
    string bytes = random_bytes(&chance);
    scratch.write("list", bytes);
    Owned_stream fp = OPEN_STREAM("list", "r");
    Owned_stream model = OPEN_STREAM("list", "r");
    Reader reader(fp.get());
    long offset = 0;
    for (int step = 0; step < 60; step++) {
      if (chance() % 5 == 0)
        scribble(&chance, bytes.size());
      if (chance() % 8 == 0)
        offset = (long)(chance() % (bytes.size() + 3));
      Read expected = model_read(model.get(), offset, reader.nbytes);
      ASSERT_EQ(reader.at(offset), expected);
      offset = expected.next;
    }
  }
}

TEST(LineCursor, TellsWhereEachLineBeginsAndHowLongItIs) {
  Owned_stream fp = file_of("one\r\n\nthree\n");
  Trf_line_cursor cursor(fp.get());
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_EQ(cursor.start, 0);
  EXPECT_EQ(cursor.next, 5);
  EXPECT_EQ(cursor.length, 3);
  EXPECT_STREQ(cursor.text, "one");
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_EQ(cursor.start, 5);
  EXPECT_EQ(cursor.length, 0);
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_EQ(cursor.start, 6);
  EXPECT_STREQ(cursor.text, "three");
  EXPECT_FALSE(NEXT_LINE(&cursor));
  EXPECT_EQ(cursor.length, -2);
  EXPECT_STREQ(cursor.text, "");
  EXPECT_EQ(cursor.nb_read, 3);
}

TEST(LineCursor, StartsWhereItIsTold) {
  Owned_stream fp = file_of("one\ntwo\n");
  Trf_line_cursor cursor(fp.get());
  cursor.next = 4;
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_STREQ(cursor.text, "two");
}

TEST(LineCursor, StopsAtItsLimitWithoutReading) {
  Owned_stream fp = file_of("one\ntwo\nsix\n");
  Trf_line_cursor cursor(fp.get());
  cursor.limit = 2;
  while (NEXT_LINE(&cursor)) {
  }
  EXPECT_EQ(cursor.nb_read, 2);
  EXPECT_EQ(cursor.length, 3);
  EXPECT_STREQ(cursor.text, "two");
  EXPECT_EQ(cursor.next, 8);
}

TEST(LineCursor, ReadsTenThousandLinesUnlessToldOtherwise) {
  const string bytes(10005, '\n');
  Owned_stream fp = file_of(bytes);
  Trf_line_cursor cursor(fp.get());
  while (NEXT_LINE(&cursor)) {
  }
  EXPECT_EQ(cursor.nb_read, 10000);
  cursor.limit = LONG_MAX;
  while (NEXT_LINE(&cursor)) {
  }
  EXPECT_EQ(cursor.nb_read, 10005);
}

TEST(LineCursor, FailedSeekEndsTheWalk) {
  Owned_stream fp = file_of("one\n");
  Trf_line_cursor cursor(fp.get());
  cursor.next = -3;
  EXPECT_FALSE(NEXT_LINE(&cursor));
  EXPECT_EQ(cursor.length, -1);
  EXPECT_STREQ(cursor.text, "");
}

#ifdef __GLIBC__
TEST(ReadyBytes, AreThoseOfTheFileWhereTheCursorStands) {
  Owned_stream fp = file_of("one\r\ntw\xF4\tthree\n");
  Trf_line_cursor cursor(fp.get());
  ASSERT_TRUE(NEXT_LINE(&cursor));
  ASSERT_NE(READY_BYTES(6, &cursor), nullptr);
  EXPECT_EQ(string(READY_BYTES(6, &cursor), 6), "tw\xF4\tth");
  cursor.next = 9;
  ASSERT_NE(READY_BYTES(6, &cursor), nullptr);
  EXPECT_EQ(string(READY_BYTES(6, &cursor), 6), "three\n");
}

TEST(ReadyBytes, CountAsOneLineWhenTheyArePassed) {
  Owned_stream fp = file_of("one\ntwo\nsix\nten\n");
  Trf_line_cursor cursor(fp.get());
  ASSERT_TRUE(NEXT_LINE(&cursor));
  ASSERT_NE(READY_BYTES(4, &cursor), nullptr);
  PASS_READY_BYTES(4, &cursor);
  EXPECT_EQ(cursor.start, 4);
  EXPECT_EQ(cursor.next, 8);
  EXPECT_EQ(cursor.nb_read, 2);
  EXPECT_STREQ(cursor.text, "one");
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_STREQ(cursor.text, "six");
}
#endif

TEST(ReadyBytes, AreNoneWhereTheFileWouldHaveToBeRead) {
  Owned_stream fp = file_of("one\ntwo\n");
  Trf_line_cursor cursor(fp.get());
  EXPECT_EQ(READY_BYTES(4, &cursor), nullptr);
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_EQ(READY_BYTES(5, &cursor), nullptr);
  cursor.next = 6;
  EXPECT_EQ(READY_BYTES(3, &cursor), nullptr);
  cursor.next = 0;
  EXPECT_EQ(READY_BYTES(4, &cursor), nullptr);
  cursor.next = 8;
  EXPECT_EQ(READY_BYTES(1, &cursor), nullptr);
  cursor.next = -1;
  EXPECT_EQ(READY_BYTES(1, &cursor), nullptr);
}

TEST(ReadyBytes, AreNoneWhereTheLimitIsReached) {
  Owned_stream fp = file_of("one\ntwo\n");
  Trf_line_cursor cursor(fp.get());
  cursor.limit = 1;
  ASSERT_TRUE(NEXT_LINE(&cursor));
  EXPECT_EQ(READY_BYTES(4, &cursor), nullptr);
}
