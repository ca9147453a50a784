// The working copy of a dictionary.
#include "util/working_copy.h"

#include <glib.h>
#include <signal.h>
#include <sys/resource.h>

#include <chrono>

#include "support/prelude.h"
#include "support/scratch.h"
#include "util/line_reader.h"
#include "util/report.h"

namespace {

struct Outcome {
  int changes;
  std::string bytes;
  bool operator==(const Outcome &other) const {
    return changes == other.changes && bytes == other.bytes;
  }
};

std::ostream &operator<<(std::ostream &stream, const Outcome &outcome) {
  return stream << outcome.changes << " changes, " << testing::PrintToString(outcome.bytes);
}

Outcome copied(const std::string &source) {
  Scratch_dir dir;
  dir.write("source", source);
  int changes = win_file("source", "copy");
  return {changes, dir.read("copy")};
}

// The same told byte by byte, as plainly as it can be.
class Model {
public:
  explicit Model(const std::string &source) {
    for (size_t i = 0; i < source.size(); i++) {
      if (i % WIN_BLOCK == 0 && i > 0)
        end_block();
      take((unsigned char)source[i]);
    }
    if (expected_ > 0)
      close_sequence(true);
    write_piece();
  }
  Outcome outcome() const {
    return {changes_, bytes_};
  }

private:
  std::string bytes_, piece_;
  int changes_ = 0, expected_ = 0, carriage_returns_ = 0;
  bool bad_ = false, utf8_ = false, single_ = false, straddles_ = false;

  void end_block() {
    if (expected_ == 0)
      write_piece();
    else
      straddles_ = true;
  }

  // The sequence is complete, or cut short.
  void close_sequence(bool cut) {
    if (bad_ || cut)
      single_ = true;
    else
      utf8_ = true;
    expected_ = 0;
    bad_ = false;
    if (straddles_)
      write_piece();
  }

  void take(unsigned char byte) {
    bool stops = byte == 0 || byte == '\r' || byte == '\n';
    if (expected_ > 0 && !stops) {
      piece_ += (char)byte;
      bad_ = bad_ || byte < 0x80 || byte > 0xBF;
      if (--expected_ == 0)
        close_sequence(false);
      return;
    }
    if (expected_ > 0)
      close_sequence(true);
    take_outside(byte);
  }

  void take_outside(unsigned char byte) {
    if (carriage_returns_ == 1 && byte == '\r') {
      carriage_returns_ = 2;
      return;
    }
    if (carriage_returns_ > 0 && byte != '\n') {
      bytes_ += '\n';
      changes_++;
    }
    carriage_returns_ = 0;
    if (byte == '\r' || byte == '\n') {
      end_line(byte);
      return;
    }
    piece_ += (char)byte;
    if (byte >= 0xF8)
      single_ = true;
    else if (byte >= 0xC0)
      expected_ = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
  }

  void end_line(unsigned char byte) {
    write_piece();
    bytes_ += '\r';
    carriage_returns_ = byte == '\r' ? 1 : 0;
    if (byte == '\n') {
      bytes_ += '\n';
      changes_++;
    }
  }

  void write_piece() {
    if (utf8_ && !single_) {
      changes_++;
      gsize length = 0;
      char *text = g_convert(piece_.data(), (gssize)piece_.size(), "CP1252", "UTF-8", nullptr,
                             &length, nullptr);
      if (text != nullptr)
        piece_ = std::string(text, length);
      else if (straddles_)
        piece_ = "error ???? !!! ";
      g_free(text);
    }
    bytes_ += piece_;
    piece_.clear();
    utf8_ = single_ = straddles_ = false;
  }
};

// Pieces of text that meet every rule, in any order.
std::string any_text(size_t length) {
  static const std::vector<std::string> parts = {
      "a",    "b ",   "\n",   "\r",   "\r\n",        "\r\r",         std::string(1, '\0'),
      "\t",   "\x80", "\xBF", "\xC3", "\xC3\xA9",    "\xE2\x82\xAC", "\xE2\x82",
      "\xE2", "\xFF", "\xF8", "\xF0", "\xE9",        "\xCE\xB1",     "\xF0\x9F\x98\x80",
      "\xC0", "word", "\xF7", "\xC2", "\xEF\xBB\xBF"};
  std::string text;
  while (text.size() < length)
    text += parts[(size_t)random() % (random() % 4 == 0 ? 12 : parts.size())];
  return text.substr(0, length);
}

// A text in few marks, so that whole pieces are converted.
std::string plain_text(size_t length) {
  static const std::vector<std::string> parts = {
      "abc", "\xC3\xA9", "\xE2\x82\xAC", "\xCE\xB1", "x", "word ", "\n"};
  std::string text;
  while (text.size() < length)
    text += parts[(size_t)random() % parts.size()];
  return text.substr(0, length);
}

// No file may grow beyond so many bytes: a write beyond fails.
void limit_file_size(rlim_t bytes) {
  signal(SIGXFSZ, SIG_IGN);
  struct rlimit limit = {bytes, bytes};
  setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

TEST(WinFile, LineFeedsBecomeCarriageReturnLineFeed) {
  EXPECT_EQ(copied("a\nb\n"), (Outcome{2, "a\r\nb\r\n"}));
}

TEST(WinFile, CarriageReturnLineFeedGetsASecondCarriageReturn) {
  EXPECT_EQ(copied("a\r\n"), (Outcome{1, "a\r\r\n"}));
  EXPECT_EQ(copied("a\r\nb\r\n"), (Outcome{2, "a\r\r\nb\r\r\n"}));
}

TEST(WinFile, AWorkingCopyReadsAsItsSourceDid) {
  Scratch_dir dir;
  dir.write("source", "a\r\n\r\nb\r\n");
  win_file("source", "copy");
  FILE *fp = fopen("copy", "r");
  std::vector<std::string> lines;
  {
    Trf_line_cursor cursor(fp);
    while (NEXT_LINE(&cursor))
      lines.push_back(cursor.text);
  }
  fclose(fp);
  EXPECT_THAT(lines, testing::ElementsAre("a", "", "b"));
}

TEST(WinFile, ABareCarriageReturnBecomesCarriageReturnLineFeed) {
  EXPECT_EQ(copied("a\rb"), (Outcome{1, "a\r\nb"}));
  EXPECT_EQ(copied("\rb\rc\r"), (Outcome{2, "\r\nb\r\nc\r"}));
}

TEST(WinFile, TheSecondOfTwoCarriageReturnsIsSkipped) {
  EXPECT_EQ(copied("a\r\rb"), (Outcome{1, "a\r\nb"}));
  EXPECT_EQ(copied("a\r\r\nb"), (Outcome{1, "a\r\r\nb"}));
  EXPECT_EQ(copied("a\r\r\rb"), (Outcome{2, "a\r\n\r\nb"}));
  EXPECT_EQ(copied("a\r\r\r\nb"), (Outcome{2, "a\r\n\r\r\nb"}));
}

TEST(WinFile, ACarriageReturnAtTheEndOfTheFileGetsNoLineFeed) {
  EXPECT_EQ(copied("a\r"), (Outcome{0, "a\r"}));
  EXPECT_EQ(copied("a\r\r"), (Outcome{0, "a\r"}));
}

TEST(WinFile, ALastLineWithoutAnEndGetsNone) {
  EXPECT_EQ(copied("abc"), (Outcome{0, "abc"}));
  EXPECT_EQ(copied(""), (Outcome{0, ""}));
  EXPECT_EQ(copied("\n"), (Outcome{1, "\r\n"}));
}

TEST(WinFile, CarriageReturnsAcrossABlockEndAreOneLineEnd) {
  std::string text(511, 'a');
  EXPECT_EQ(copied(text + "\r" + "\r" + "b"), (Outcome{1, text + "\r\nb"}));
  EXPECT_EQ(copied(text + "\r" + "\n" + "b"), (Outcome{1, text + "\r\r\nb"}));
  EXPECT_EQ(copied(text + "\r" + "b"), (Outcome{1, text + "\r\nb"}));
  EXPECT_EQ(copied(text.substr(1) + "\r\r" + "b"), (Outcome{1, text.substr(1) + "\r\nb"}));
}

TEST(WinFile, AUtf8LineIsConvertedAndCounted) {
  EXPECT_EQ(copied("caf\xC3\xA9\n"), (Outcome{2, "caf\xE9\r\n"}));
  EXPECT_EQ(copied("\xE2\x82\xAC 5"), (Outcome{1, "\x80 5"}));
}

TEST(WinFile, ACp1252LineIsWrittenAsRead) {
  EXPECT_EQ(copied("caf\xE9\n"), (Outcome{1, "caf\xE9\r\n"}));
  EXPECT_EQ(copied("\x80\xA0\xBF"), (Outcome{0, "\x80\xA0\xBF"}));
}

TEST(WinFile, ALineWithBothMarksIsWrittenAsReadWithoutAChange) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(copied("\xC3\xA9 \xE9t"), (Outcome{0, "\xC3\xA9 \xE9t"}));
  EXPECT_EQ(copied("\xC3\xA9 \xFF"), (Outcome{0, "\xC3\xA9 \xFF"}));
  EXPECT_EQ(copied("\xC3\xA9 \xF8"), (Outcome{0, "\xC3\xA9 \xF8"}));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(WinFile, ALineWithBothMarksIsTraced) {
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  copied("\xC3\xA9 \xE9t");
  EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("\xC3\xA9 \xE9t@@@\n"));
  unsetenv("MERTU_TRACE");
}

TEST(WinFile, EveryLineHasItsOwnMarks) {
  EXPECT_EQ(copied("\xC3\xA9\n\xE9t\n"), (Outcome{3, "\xE9\r\n\xE9t\r\n"}));
}

TEST(WinFile, AnnouncedBytesAreTakenGoodOrBad) {
  // The lead takes the two bytes behind it, the second of which would be a lead by itself.
  EXPECT_EQ(copied("\xE9\xC3\xA9"), (Outcome{0, "\xE9\xC3\xA9"}));
  EXPECT_EQ(copied("\xE9\xFF\xC3\xC3\xA9"), (Outcome{0, "\xE9\xFF\xC3\xC3\xA9"}));
}

TEST(WinFile, ASequenceStopsAtALineEndOrANul) {
  EXPECT_EQ(copied("\xC3\n\xA9"), (Outcome{1, "\xC3\r\n\xA9"}));
  EXPECT_EQ(copied(std::string("\xC3\0\xA9 \xC3\xA9", 6)),
            (Outcome{0, std::string("\xC3\0\xA9 \xC3\xA9", 6)}));
}

TEST(WinFile, NulBytesAreKept) {
  EXPECT_EQ(copied(std::string("a\0b\n", 4)), (Outcome{1, std::string("a\0b\r\n", 5)}));
  EXPECT_EQ(copied(std::string("\xC3\xA9\0b\n", 5)), (Outcome{2, std::string("\xE9\0b\r\n", 5)}));
}

TEST(WinFile, AFailedConversionWritesTheLineAsReadAndCounts) {
  EXPECT_EQ(copied("\xCE\xB1\n"), (Outcome{2, "\xCE\xB1\r\n"}));
  EXPECT_EQ(copied("\xC3\xA9 \xA9\n"), (Outcome{2, "\xC3\xA9 \xA9\r\n"}));
}

TEST(WinFile, ALineBehindAFailedConversionIsConverted) {
  EXPECT_EQ(copied("\xCE\xB1\n\xC3\xA9\n"), (Outcome{4, "\xCE\xB1\r\n\xE9\r\n"}));
}

TEST(WinFile, ASequenceAcrossTwoBlocksIsCompleted) {
  std::string text(511, 'a');
  EXPECT_EQ(copied(text + "\xC3\xA9"), (Outcome{1, text + "\xE9"}));
  EXPECT_EQ(copied(text + "\xC3\xA9t\xE9\n"), (Outcome{2, text + "\xE9t\xE9\r\n"}));
  EXPECT_EQ(copied(text + "\xE2\x82\xAC\n"), (Outcome{2, text + "\x80\r\n"}));
  EXPECT_EQ(copied(text.substr(1) + "\xE2\x82\xAC\n"), (Outcome{2, text.substr(1) + "\x80\r\n"}));
}

TEST(WinFile, APieceAcrossTwoBlocksWithoutAFormIsReplaced) {
  std::string text = "first\n" + std::string(505, 'a');
  EXPECT_EQ(copied(text + "\xCE\xB1 b\n"), (Outcome{3, "first\r\nerror ???? !!!  b\r\n"}));
}

TEST(WinFile, AFourByteSequenceAcrossTwoBlocksIsCompleted) {
  std::string text(509, 'a');
  EXPECT_EQ(copied(text + "\xF0\x9F\x98\x80 b\n"), (Outcome{2, "error ???? !!!  b\r\n"}));
  EXPECT_EQ(copied("aa" + text + "\xF0\x9F\x98\x80 b"), (Outcome{1, "error ???? !!!  b"}));
}

TEST(WinFile, OnlyThePieceAcrossTwoBlocksIsReplaced) {
  std::string text(511, 'a');
  EXPECT_EQ(copied(text + "\xC3\xA9\n\xCE\xB1\n"), (Outcome{4, text + "\xE9\r\n\xCE\xB1\r\n"}));
}

TEST(WinFile, ASequenceAcrossTwoBlocksStopsAtANul) {
  std::string text = std::string(511, 'a') + "\xE2";
  std::string rest("\0\xC3\xA9", 3);
  EXPECT_EQ(copied(text + rest), (Outcome{1, text + std::string("\0\xE9", 2)}));
}

TEST(WinFile, ABadSequenceAcrossTwoBlocksMarksThePiece) {
  std::string text = "\xC3\xA9" + std::string(509, 'a');
  EXPECT_EQ(copied(text + "\xC3" + "b\n"), (Outcome{1, text + "\xC3" + "b\r\n"}));
  EXPECT_EQ(copied(text + "\xC3" + "\n"), (Outcome{1, text + "\xC3\r\n"}));
  EXPECT_EQ(copied(text + "\xC3"), (Outcome{0, text + "\xC3"}));
}

TEST(WinFile, ALineCutByABlockEndIsHandledPieceByPiece) {
  // The bytes of the first block are UTF-8, those of the second are not.
  std::string text = "\xC3\xA9" + std::string(510, 'a');
  EXPECT_EQ(copied(text + "\xE9t\n"), (Outcome{2, "\xE9" + text.substr(2) + "\xE9t\r\n"}));
  EXPECT_EQ(copied(text + "\xC3\xA9\n"), (Outcome{3, "\xE9" + text.substr(2) + "\xE9\r\n"}));
}

TEST(WinFile, AFileOfWholeBlocksEndsLikeAnyOther) {
  std::string text(1024, 'a');
  EXPECT_EQ(copied(text), (Outcome{0, text}));
  std::string lines = text.substr(1) + "\n";
  EXPECT_EQ(copied(lines), (Outcome{1, text.substr(1) + "\r\n"}));
}

TEST(WinFile, AnyBytesAreCopiedAsThePlainModelTells) {
  srandom(2026);
  for (int round = 0; round < 500; round++) {
    size_t around = (size_t)(random() % 6) * 512;
    size_t length = around + (size_t)(random() % 40);
    length = length < 20 ? length : length - 20;
    std::string text = round % 3 == 0 ? plain_text(length) : any_text(length);
    ASSERT_EQ(copied(text), Model(text).outcome()) << testing::PrintToString(text);
  }
}

TEST(WinFile, TenMegabytesTakeNoTime) {
  std::string line = "une ligne d'un dictionnaire assez long * caf\xC3\xA9 et th\xC3\xA9\n";
  std::string text;
  while (text.size() < 10000000)
    text += line;
  Scratch_dir dir;
  dir.write("source", text);
  auto begin = std::chrono::steady_clock::now();
  int changes = win_file("source", "copy");
  std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  EXPECT_GT(changes, (int)(2 * text.size() / line.size()) - 10000);
  EXPECT_LT(seconds.count(), 10.0);
}

TEST(WinFile, AnOldCopyIsReplacedWhole) {
  Scratch_dir dir;
  dir.write("source", "a\n");
  dir.write("copy", "an older and longer copy\r\n");
  EXPECT_EQ(win_file("source", "copy"), 1);
  EXPECT_EQ(dir.read("copy"), "a\r\n");
}

TEST(WinFile, ASourceThatCannotBeOpenedGivesMinusOne) {
  Scratch_dir dir;
  dir.write("copy", "old");
  dir.write("folder/a", "");
  EXPECT_EQ(win_file("source", "copy"), -1);
  EXPECT_EQ(win_file("folder", "copy"), -1);
  EXPECT_EQ(win_file("source", "nowhere/copy"), -1);
  EXPECT_EQ(dir.read("copy"), "old");
}

TEST(WinFile, ADestinationThatCannotBeOpenedGivesMinusTwo) {
  Scratch_dir dir;
  dir.write("source", "a\n");
  dir.write("folder/a", "");
  EXPECT_EQ(win_file("source", "nowhere/copy"), -2);
  EXPECT_EQ(win_file("source", "folder"), -2);
  EXPECT_EQ(win_file("source", ""), -2);
}

TEST(WinFile, AFullDiskEndsTheProgramAndLeavesTheOldCopy) {
  Scratch_dir dir;
  dir.write("source", std::string(100000, 'a'));
  dir.write("copy", "old");
  ENDS_WITH_STATUS(
      {
        SET_SAVED_LOG(fopen("log", "w"));
        limit_file_size(50000);
        win_file("source", "copy");
      },
      1, "cannot write file copy: File too large \n");
  EXPECT_EQ(dir.read("copy"), "old");
  EXPECT_EQ(dir.read("log"), "cannot write file copy: File too large \n");
}

TEST(WinFile, ASourceThatCannotBeReadEndsTheProgramAndLeavesTheOldCopy) {
  Scratch_dir dir;
  dir.write("copy", "old");
  ENDS_WITH_STATUS(win_file("/proc/self/mem", "copy"), 1,
                   "cannot read file /proc/self/mem: Input/output error \n");
  EXPECT_EQ(dir.read("copy"), "old");
  EXPECT_FALSE(dir.exists(".new_copy"));
}
