// The transfer: six-field histories into four-field ones, and every way it can end.
#include "db/transfer.h"

#include "maintenance_home.h"
#include "support/present.h"

#include <sys/stat.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// A six-field history line with its line end.
std::string six_line(std::vector<long> values) {
  std::string line;
  for (long value : values)
    line += history_line(value, 0, 0, 0).substr(0, 13);
  return line + "\r\n";
}

std::string without_cr(const std::string &text) {
  std::string result;
  for (char byte : text)
    if (byte != '\r')
      result += byte;
  return result;
}

std::string four_lines(long nb, long nok, long date_ok, long date_nok, long nb2 = 0, long nok2 = 0,
                       long date_ok2 = 0, long date_nok2 = 0) {
  return without_cr(history_line(nb, nok, date_ok, date_nok) +
                    history_line(nb2, nok2, date_ok2, date_nok2));
}

const std::string HEADER = idx1_header("./IDX1/idx1_a", "fr1");

// What became of an idx1 file.
struct Transferred {
  std::string text; // the transfer file
  std::string log;
  std::string said;
};

Transferred transferred(const std::string &idx1) {
  Scratch_dir dir;
  dir.write("idx1_a", idx1);
  Owned_stream log = OPEN_STREAM("log", "w");
  std::string source = "idx1_a";
  std::string destination = "trf";
  testing::internal::CaptureStdout();
  TRF_IDX1_FILE(log.get(), source.data(), destination.data());
  fflush(stdout);
  Transferred result;
  result.said = testing::internal::GetCapturedStdout();
  log.reset();
  EXPECT_EQ(dir.read("idx1_a"), idx1);
  result.text = dir.read("trf");
  result.log = dir.read("log");
  return result;
}

// The transfer file of these records, and what it is due to be.
Transferred records_transferred(const std::string &records) {
  return transferred(HEADER + records + idx1_trailer(0));
}

std::string due(const std::string &records) {
  std::string text = without_cr(HEADER) + records;
  return text + "# END_OF_FILE * " + std::to_string(text.size()) + " \n";
}

const std::string NAME = "#one *fr1 8 * x \r\n";
const std::string NAME_LF = "#one *fr1 8 * x \n";

// What the three values of one direction become.
std::string become(long total, long wrong, long day) {
  Transferred result = records_transferred(NAME + six_line({total, wrong, day, 0, 0, 0}));
  size_t begin = result.text.find(NAME_LF) + NAME_LF.size();
  return result.text.substr(begin, 53);
}

std::string four_line(long nb, long nok, long date_ok, long date_nok) {
  return without_cr(history_line(nb, nok, date_ok, date_nok));
}

void transfer_in(const Scratch_dir &dir, const std::string &idx1) {
  dir.write("idx1_a", idx1);
  std::string source = "idx1_a";
  std::string destination = "trf";
  Owned_stream log = OPEN_STREAM("log", "w");
  TRF_IDX1_FILE(log.get(), source.data(), destination.data());
}

} // namespace

TEST(TransferFile, TotalFiveWrongTwoDay100BecomesThreeTwo100And99) {
  EXPECT_EQ(become(5, 2, 100), four_line(3, 2, 100, 99));
}

TEST(TransferFile, ATotalOf0BecomesFourZeros) {
  EXPECT_EQ(become(0, 0, 100), four_line(0, 0, 0, 0));
  EXPECT_EQ(become(0, 0, 0), four_line(0, 0, 0, 0));
}

TEST(TransferFile, OnlyRightAnswersHaveNoDayOfAWrongOne) {
  EXPECT_EQ(become(5, 0, 100), four_line(5, 0, 100, 0));
}

TEST(TransferFile, OnlyWrongAnswersHaveNoDayOfARightOne) {
  EXPECT_EQ(become(5, 5, 100), four_line(0, 5, 0, 99));
}

TEST(TransferFile, TheDayBeforeIsNeverBelow0) {
  EXPECT_EQ(become(5, 2, 0), four_line(3, 2, 0, 0));
  EXPECT_EQ(become(5, 2, 1), four_line(3, 2, 1, 0));
}

TEST(TransferFile, BothDirectionsComeFromOneLine) {
  Transferred result = records_transferred(NAME + six_line({5, 2, 100, 9, 3, 50}));
  EXPECT_EQ(result.text, due(NAME_LF + four_lines(3, 2, 100, 99, 6, 3, 50, 49)));
  EXPECT_EQ(result.log, "TRF_IDX1_FILE done\n");
  EXPECT_EQ(result.said, "");
}

TEST(TransferFile, ABlankLineBecomesZeros) {
  std::string blank;
  for (int k = 0; k < 6; k++)
    blank += std::string(12, ' ') + ";";
  Transferred result = records_transferred(NAME + blank + "\r\n");
  EXPECT_EQ(result.text, due(NAME_LF + four_lines(0, 0, 0, 0)));
  EXPECT_EQ(result.log, "TRF_IDX1_FILE done\n");
}

TEST(TransferFile, EveryLineEndsWithALineFeedAlone) {
  Transferred result = records_transferred(NAME + six_line({5, 2, 100, 9, 3, 50}));
  EXPECT_THAT(result.text, Not(HasSubstr("\r")));
  EXPECT_THAT(result.text, EndsWith(" \n"));
}

TEST(TransferFile, TheTrailerHoldsTheLengthBeforeIt) {
  std::string text = records_transferred(NAME + six_line({5, 2, 100, 9, 3, 50})).text;
  size_t trailer = text.find("# END_OF_FILE");
  EXPECT_EQ(text.substr(trailer), "# END_OF_FILE * " + std::to_string(trailer) + " \n");
}

TEST(TransferFile, EveryLineUpToTheEndOfTheHeaderIsCopied) {
  std::string before = "first line\r\n#second ###\r\nthird #######\r\n\r\n";
  Transferred result = transferred(before + HEADER + NAME + six_line({5, 2, 100, 9, 3, 50}));
  EXPECT_EQ(result.text.substr(0, before.size() - 4 + HEADER.size() - 2),
            without_cr(before + HEADER));
  EXPECT_THAT(result.text, HasSubstr(NAME_LF + four_lines(3, 2, 100, 99, 6, 3, 50, 49) + "# END"));
}

TEST(TransferFile, WithoutAnEntryTheHeaderAndTheTrailerStand) {
  EXPECT_EQ(records_transferred("").text, due(""));
  EXPECT_EQ(transferred(HEADER).text, due(""));
}

TEST(TransferFile, DoubleLinesAreLeftOut) {
  Transferred result = records_transferred(
      "##elsewhere * x \r\n" + NAME + six_line({5, 2, 100, 9, 3, 50}) + "##again \r\nfree\r\n");
  EXPECT_EQ(result.text, due(NAME_LF + four_lines(3, 2, 100, 99, 6, 3, 50, 49)));
}

TEST(TransferFile, NothingBehindTheEndMarkIsRead) {
  Transferred result = transferred(HEADER + "END_OF_FILE\r\n" + NAME + "no history\r\n");
  EXPECT_EQ(result.text, due(""));
}

TEST(TransferFile, AFaultyLineIsLoggedAndGoesOnCorrected) {
  Transferred result = records_transferred(NAME + six_line({2, 5, 100, 9, 3, 50}) +
                                           "#two *fr1 9 * \r\n" + six_line({1, 0, 7, 0, 0, 0}));
  EXPECT_EQ(result.text, due(NAME_LF + four_lines(0, 0, 0, 0, 6, 3, 50, 49) + "#two *fr1 9 * \n" +
                             four_lines(1, 0, 7, 0)));
  EXPECT_EQ(result.log, "TRF_IDX1_FILE and CHECK_6LINTsome error in file : idx1_a \n"
                        "TRF_IDX1_FILE done\n");
}

TEST(TransferFile, AnEndMarkInPlaceOfAHistoryIsAFaultyLine) {
  Transferred result = transferred(HEADER + NAME + "# END_OF_FILE\r\n");
  EXPECT_EQ(result.text, due(NAME_LF + four_lines(0, 0, 0, 0)));
  EXPECT_THAT(result.log, HasSubstr("TRF_IDX1_FILE and CHECK_6LINTsome error in file"));
}

TEST(TransferFile, ALaterDayClearsTheCounts) {
  SET_PRESENT_DAY(2001, 4, 11); // day 100
  EXPECT_EQ(become(5, 2, 100), four_line(3, 2, 100, 99));
  EXPECT_EQ(become(5, 2, 101), four_line(0, 0, 0, 0));
  RESET_PRESENT();
}

TEST(TransferFile, AFourFieldLineIsTakenForASixFieldOne) {
  SET_PRESENT_DAY(2001, 7, 20); // day 200
  Transferred result = records_transferred(NAME + history_line(5, 2, 100, 90) + NEVER_LINE);
  EXPECT_EQ(result.text, due(NAME_LF + four_lines(3, 2, 100, 99, 90, 0, 200, 0)));
  EXPECT_THAT(result.log, HasSubstr("TRF_IDX1_FILE and CHECK_6LINTsome error in file"));
  RESET_PRESENT();
}

TEST(TransferFile, AFileWithoutAHeaderEndsTheProgramAndTheTransferFileStays) {
  Scratch_dir dir;
  dir.write("trf", "earlier");
  ENDS_WITH_STATUS(transfer_in(dir, "one\r\n######\r\n" + NAME), 1,
                   "^Error no detection of ####### stop \nn file : idx1_a \n$");
  EXPECT_EQ(dir.read("log"), "Error no detection of ####### stop \nn file : idx1_a \n");
  EXPECT_EQ(dir.read("trf"), "earlier");
}

TEST(TransferFile, AMissingHistoryEndsTheProgramAndTheTransferFileStays) {
  Scratch_dir dir;
  dir.write("trf", "earlier");
  ENDS_WITH_STATUS(
      transfer_in(dir, HEADER + NAME + six_line({5, 2, 100, 9, 3, 50}) + "#two *fr1 9 * \r\n"), 2,
      "^Error no detection of values icont=2 stop \nin file : idx1_a \n$");
  EXPECT_EQ(dir.read("log"), "Error no detection of values icont=2 stop \nin file : idx1_a \n");
  EXPECT_EQ(dir.read("trf"), "earlier");
  EXPECT_FALSE(dir.exists(".new_trf"));
}

TEST(TransferFile, TenThousandLinesBehindTheHeaderAreReadAndTheRestIsTold) {
  std::string records, four;
  for (int i = 0; i < 10000; i++) {
    records += NAME + six_line({5, 2, 100, 9, 3, 50});
    four += NAME_LF + four_lines(3, 2, 100, 99, 6, 3, 50, 49);
  }
  Transferred whole = transferred(HEADER + records);
  EXPECT_EQ(whole.text, due(four));
  EXPECT_EQ(whole.said, "");
  Transferred cut = transferred(HEADER + records + NAME + six_line({1, 0, 1, 0, 0, 0}));
  EXPECT_EQ(cut.text, due(four));
  EXPECT_EQ(cut.said, "index idx1_a is longer than 10000 lines \n");
}

TEST(TransferFile, AnIndexThatCannotBeOpenedIsToldAndNothingIsWritten) {
  Scratch_dir dir;
  std::string source = "idx1_a";
  std::string destination = "trf";
  Owned_stream log = OPEN_STREAM("log", "w");
  testing::internal::CaptureStdout();
  TRF_IDX1_FILE(log.get(), source.data(), destination.data());
  log.reset();
  std::string told = "cannot read file idx1_a: No such file or directory \n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), told);
  EXPECT_EQ(dir.read("log"), told);
  EXPECT_FALSE(dir.exists("trf"));
}

TEST(TransferFile, AnIndexThatCannotBeReadEndsTheProgram) {
  Scratch_dir dir;
  std::filesystem::create_symlink("/proc/self/mem", "idx1_b");
  std::string source = "idx1_b";
  std::string destination = "trf";
  ENDS_WITH_STATUS(TRF_IDX1_FILE(nullptr, source.data(), destination.data()), 1,
                   "^Error no detection of ####### stop \n");
  EXPECT_FALSE(dir.exists("trf"));
}

TEST(TransferFile, ATransferFileThatCannotBeOpenedEndsTheProgram) {
  Scratch_dir dir;
  std::filesystem::create_directory("trf");
  ENDS_WITH_STATUS(transfer_in(dir, HEADER), 1, "^cannot write file trf: Is a directory \n$");
  EXPECT_EQ(dir.read("log"), "cannot write file trf: Is a directory \n");
}

TEST(TransferAll, EveryIndexGetsATransferFileOfItsName) {
  Maintenance_home home;
  home.dir.write("IDX1/idx1_a", HEADER + NAME + six_line({5, 2, 100, 9, 3, 50}));
  home.dir.write("IDX1/idx1_b", HEADER + NAME + six_line({1, 0, 7, 0, 0, 0}));
  std::string before = home.all_files();
  testing::internal::CaptureStdout();
  TRF_ALL_DBASE(&home.book);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Create directory IDX1_TRF \n");
  EXPECT_EQ(home.dir.read("IDX1_TRF/idx1_a"),
            due(NAME_LF + four_lines(3, 2, 100, 99, 6, 3, 50, 49)));
  EXPECT_EQ(home.dir.read("IDX1_TRF/idx1_b"), due(NAME_LF + four_lines(1, 0, 7, 0)));
  EXPECT_EQ(home.logged(), "TRF_IDX1_FILE done\nTRF_IDX1_FILE done\n");
  EXPECT_EQ(home.all_files(), before);
  EXPECT_THAT(NOTICES().told, IsEmpty());
}

TEST(TransferAll, TheDirectoryIsMadeForEveryoneLessTheMask) {
  Maintenance_home home;
  home.book.nbt_lesson = 0;
  mode_t mask = umask(027);
  TRF_ALL_DBASE(&home.book);
  umask(mask);
  struct stat about;
  ASSERT_EQ(stat("IDX1_TRF", &about), 0);
  EXPECT_EQ(about.st_mode & 0777, 0750u);
}

TEST(TransferAll, ADirectoryThatIsThereIsNotMadeAgain) {
  Maintenance_home home;
  home.dir.write("IDX1_TRF/idx1_a", "earlier");
  home.dir.write("IDX1/idx1_a", HEADER);
  home.dir.write("IDX1/idx1_b", HEADER);
  testing::internal::CaptureStdout();
  TRF_ALL_DBASE(&home.book);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(home.dir.read("IDX1_TRF/idx1_a"), due(""));
}

TEST(TransferAll, AMissingIndexIsToldAndTheOthersAreTransferred) {
  Maintenance_home home;
  std::filesystem::remove("IDX1/idx1_a");
  home.dir.write("IDX1/idx1_b", HEADER);
  TRF_ALL_DBASE(&home.book);
  EXPECT_EQ(home.logged(), "cannot read file ./IDX1/idx1_a: No such file or directory \n"
                           "TRF_IDX1_FILE done\n");
  EXPECT_FALSE(home.dir.exists("IDX1_TRF/idx1_a"));
  EXPECT_EQ(home.dir.read("IDX1_TRF/idx1_b"), due(""));
}

TEST(TransferAll, AnErasedRecordIsMendedFirst) {
  Maintenance_home home;
  std::string erased = NEVER_LINE.substr(0, 52) + NEVER_LINE.substr(0, 52) + " ;\r\n";
  home.dir.write("IDX1/idx1_a", HEADER + NAME + erased + idx1_trailer(0));
  home.dir.write("mertu_erased", "./IDX1/idx1_a\n");
  TRF_ALL_DBASE(&home.book);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), HEADER + NAME + BLANK_HISTORY + idx1_trailer(0));
  EXPECT_FALSE(home.dir.exists("mertu_erased"));
}

TEST(TransferAll, WhereTheDirectoryCannotBeMadeTheProgramEnds) {
  Maintenance_home home;
  home.dir.write("IDX1_TRF", "a file");
  home.dir.write("IDX1/idx1_a", HEADER);
  ENDS_WITH_STATUS(TRF_ALL_DBASE(&home.book), 1,
                   "^Create directory IDX1_TRF \ncannot write file ./IDX1_TRF/idx1_a: Not a "
                   "directory \n$");
}
