// Tests of the mend of forgotten records.
#include "db/mend_forgotten.h"

#include "db_files.h"
#include "support/killed.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

const std::string BLANK = NEVER_LINE.substr(0, 52);
const std::string ERASED = BLANK + BLANK + " ;\r\n";

std::string index_of(const std::string &records) {
  return idx1_header("./IDX1/idx1_a", "a1") + records + idx1_trailer(7);
}

// The file's modification time in nanoseconds.
long long time_of(const char *path) {
  struct stat about;
  EXPECT_EQ(stat(path, &about), 0);
  return about.st_mtim.tv_sec * 1000000000LL + about.st_mtim.tv_nsec;
}

std::string whole_text(FILE *fp) {
  std::string text;
  rewind(fp);
  for (int byte = getc(fp); byte != EOF; byte = getc(fp))
    text += (char)byte;
  return text;
}

std::string mended(const std::string &records) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_a", index_of(records));
  EXPECT_TRUE(NOTE_ERASED({"./IDX1/idx1_a"}, nullptr));
  MEND_FORGOTTEN(nullptr);
  EXPECT_FALSE(dir.exists("mertu_erased"));
  std::string text = dir.read("IDX1/idx1_a");
  size_t header = idx1_header("./IDX1/idx1_a", "a1").size();
  return text.substr(header, text.size() - header - idx1_trailer(7).size());
}

} // namespace

TEST(MendForgotten, AnErasedRecordBecomesNameBlankBlankInTheSameBytes) {
  std::string others = "#x *a1 5 * y \r\n" + history_line(1, 2, 3, 4) + history_line(5, 6, 7, 8);
  EXPECT_EQ(mended(others + "#mot *a1 0 * x \r\n" + ERASED + others),
            others + "#mot *a1 0 * x \r\n" + BLANK_HISTORY + others);
}

TEST(MendForgotten, EveryErasedRecordIsMended) {
  std::string erased;
  std::string whole;
  for (int i = 0; i < 15000; i++) {
    std::string name = "#mot" + std::to_string(i) + " *a1 0 * x \r\n";
    erased += name + ERASED;
    whole += name + BLANK_HISTORY;
  }
  EXPECT_EQ(mended(erased), whole);
}

TEST(MendForgotten, TheLastTwoOldBytesMayBeAnything) {
  for (const char *old : {" ;", "xx", "; ", "\xE9\xE9"})
    EXPECT_EQ(mended("#mot *a1 0 * x \r\n" + BLANK + BLANK + old + "\r\n"),
              "#mot *a1 0 * x \r\n" + BLANK_HISTORY);
}

TEST(MendForgotten, WhatIsNoErasedRecordStaysAsItIs) {
  std::string shifted = " " + BLANK + BLANK + ";\r\n";
  for (const std::string &records :
       {"#mot *a1 0 * x \r\n" + BLANK_HISTORY,
        "#mot *a1 0 * x \r\n" + history_line(1, 2, 3, 4) + history_line(5, 6, 7, 8),
        "#mot *a1 0 * x \r\n" + shifted + NEVER_LINE, "##mot *a1 x \r\n" + ERASED,
        "text\r\n" + ERASED, "#mot *a1 0 * x \r\n" + NEVER_LINE + ERASED,
        "#mot *a1 0 * x \r\n" + std::string(106, ' ') + "\r\n",
        "#mot *a1 0 * x \r\n" + std::string(106, 'x') + "\r\n"})
    EXPECT_EQ(mended(records), records);
}

TEST(MendForgotten, ARecordThatWasDamagedBeforeIsMendedInTheBytesItHas) {
  std::string name = "#mot *a1 0 * x \r\n";
  EXPECT_EQ(mended(name + BLANK + BLANK + ";\r\n"),
            name + NEVER_LINE + BLANK.substr(0, 51) + "\r\n");
  EXPECT_EQ(mended(name + BLANK + BLANK + "  ;\r\n"), name + NEVER_LINE + BLANK + " \r\n");
  EXPECT_EQ(mended(name + BLANK + BLANK + ";\n"), name + BLANK + "\n" + BLANK + "\n");
}

TEST(MendForgotten, ARecordAtTheEndOfACutFileIsMended) {
  Scratch_dir dir;
  for (const char *end : {"", " ", " ;"}) {
    dir.write("idx1_a", "#mot *a1 0 * x \r\n" + BLANK + BLANK + end);
    EXPECT_TRUE(NOTE_ERASED({"./idx1_a"}, nullptr));
    MEND_FORGOTTEN(nullptr);
    std::string last = BLANK;
    last.resize(50 + strlen(end), ' ');
    EXPECT_EQ(dir.read("idx1_a"), "#mot *a1 0 * x \r\n" + NEVER_LINE + last);
  }
}

TEST(MendForgotten, ABigByteInTheLastOldBytesHidesNoRecord) {
  EXPECT_EQ(mended("#mot *a1 0 * x \r\n" + BLANK + BLANK + " \xFF\r\n"),
            "#mot *a1 0 * x \r\n" + NEVER_LINE + BLANK.substr(0, 51) + "\xFF\r\n");
}

TEST(MendForgotten, APathOfAccentedLettersIsFoundAsItIsWritten) {
  for (const char *path : {"./idx1_\xC3\xA9", "./idx1_\xE9"}) {
    Scratch_dir dir;
    dir.write(path, index_of("#mot *a1 0 * x \r\n" + ERASED));
    EXPECT_TRUE(NOTE_ERASED({path}, nullptr));
    EXPECT_TRUE(NOTE_ERASED({"./idx1_b"}, nullptr));
    MEND_FORGOTTEN(nullptr);
    EXPECT_EQ(dir.read(path), index_of("#mot *a1 0 * x \r\n" + BLANK_HISTORY));
  }
}

TEST(MendForgotten, TheFileKeepsItsModificationTime) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_a", index_of("#mot *a1 0 * x \r\n" + ERASED));
  ASSERT_TRUE(NOTE_ERASED({"./IDX1/idx1_a"}, nullptr));
  make_older("IDX1/idx1_a", 5000);
  long long before = time_of("IDX1/idx1_a");
  MEND_FORGOTTEN(nullptr);
  EXPECT_EQ(dir.read("IDX1/idx1_a"), index_of("#mot *a1 0 * x \r\n" + BLANK_HISTORY));
  EXPECT_EQ(time_of("IDX1/idx1_a"), before);
}

TEST(MendForgotten, ATimeNotedByAMendThatWasCutShortComesBack) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_a", index_of("#mot *a1 0 * x \r\n" + ERASED));
  dir.write("IDX1/idx1_b", index_of("#mot *a1 0 * x \r\n" + BLANK_HISTORY));
  dir.write("mertu_erased", "./IDX1/idx1_a 1200000000 7\n./IDX1/idx1_b 1200000000 8\n");
  MEND_FORGOTTEN(nullptr);
  EXPECT_EQ(time_of("IDX1/idx1_a"), 1200000000000000007LL);
  EXPECT_EQ(time_of("IDX1/idx1_b"), 1200000000000000008LL);
}

TEST(MendForgotten, ANotedTimeNeverMakesAFileNewer) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_a", index_of(""));
  dir.write("mertu_erased", "./IDX1/idx1_a 1200000000 7\n");
  struct timespec times[2] = {{0, UTIME_OMIT}, {1100000000, 5}};
  utimensat(AT_FDCWD, "IDX1/idx1_a", times, 0);
  MEND_FORGOTTEN(nullptr);
  EXPECT_EQ(time_of("IDX1/idx1_a"), 1100000000000000005LL);
}

TEST(MendForgotten, SeveralFilesAreNotedOnceEach) {
  Scratch_dir dir;
  EXPECT_TRUE(NOTE_ERASED({"./IDX1/idx1_b", "./IDX1/idx1_a"}, nullptr));
  EXPECT_TRUE(NOTE_ERASED({"./IDX1/idx1_c", "./IDX1/idx1_a"}, nullptr));
  EXPECT_EQ(dir.read("mertu_erased"), "./IDX1/idx1_a\n./IDX1/idx1_b\n./IDX1/idx1_c\n");
}

TEST(MendForgotten, ANewNoteForgetsTheTimeOfAnOldOne) {
  Scratch_dir dir;
  dir.write("mertu_erased", "./IDX1/idx1_a 1200000000 7\n");
  EXPECT_TRUE(NOTE_ERASED({"./IDX1/idx1_a"}, nullptr));
  EXPECT_EQ(dir.read("mertu_erased"), "./IDX1/idx1_a\n");
}

TEST(MendForgotten, AMissingFileOrADirectoryHasNothingToMend) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_b", index_of("#mot *a1 0 * x \r\n" + ERASED));
  dir.write("mertu_erased", "./IDX1/idx1_a\n./IDX1\n./IDX1/idx1_b/c\n\n  \n./IDX1/idx1_b\n");
  MEND_FORGOTTEN(nullptr);
  EXPECT_EQ(dir.read("IDX1/idx1_b"), index_of("#mot *a1 0 * x \r\n" + BLANK_HISTORY));
  EXPECT_FALSE(dir.exists("mertu_erased"));
}

TEST(MendForgotten, AFileThatCannotBeMendedEndsTheProgramAndStaysNoted) {
  Scratch_dir dir;
  std::filesystem::create_symlink("idx1_a", "idx1_a");
  dir.write("mertu_erased", "./idx1_a\n");
  Owned_stream log = OPEN_STREAM("log", "w");
  std::string text = "cannot write file ./idx1_a: Too many levels of symbolic links \n";
  ENDS_WITH_STATUS(MEND_FORGOTTEN(log.get()), 1, text);
  EXPECT_EQ(dir.read("log"), text);
  EXPECT_TRUE(dir.exists("mertu_erased"));
}

TEST(MendForgotten, TheNoteIsOnTheDiskUnderItsName) {
  // Three calls, each with a moment before and one after: the bytes, the name and the directory go
  // to the disk.
  Scratch_dir dir;
  auto note = [] { NOTE_ERASED({"./IDX1/idx1_a"}, nullptr); };
  EXPECT_TRUE(KILLED_RUN(note, 6, 0));
  EXPECT_FALSE(KILLED_RUN(note, 7, 0));
}

// An index that was not mended must not be read, and its note not go.
TEST(MendForgotten, ANoteThatCannotBeReadEndsTheProgramAndStays) {
  Scratch_dir dir;
  std::filesystem::create_symlink("mertu_erased", "mertu_erased");
  Owned_stream log = OPEN_STREAM("log", "w");
  std::string text = "cannot read file ./mertu_erased: Too many levels of symbolic links \n";
  ENDS_WITH_STATUS(MEND_FORGOTTEN(log.get()), 1, text);
  EXPECT_EQ(dir.read("log"), text);
  EXPECT_TRUE(std::filesystem::is_symlink("mertu_erased"));
}

TEST(MendForgotten, WhereTheNotesCannotBeReadNothingIsNoted) {
  Scratch_dir dir;
  std::filesystem::create_symlink("mertu_erased", "mertu_erased");
  EXPECT_FALSE(NOTE_ERASED({"./IDX1/idx1_a"}, nullptr));
  EXPECT_TRUE(std::filesystem::is_symlink("mertu_erased"));
}

TEST(MendForgotten, WithoutANoteNothingIsTouched) {
  Scratch_dir dir;
  dir.write("IDX1/idx1_a", index_of("#mot *a1 0 * x \r\n" + ERASED));
  MEND_FORGOTTEN(nullptr);
  EXPECT_EQ(dir.read("IDX1/idx1_a"), index_of("#mot *a1 0 * x \r\n" + ERASED));
}

// The file is looked through in blocks of 16384 bytes.
TEST(MendForgotten, AnErasedRecordIsFoundAcrossTwoBlocks) {
  Scratch_dir dir;
  const std::string name = "#mot *a1 0 * x \r\n";
  for (size_t at = 16384 - 110; at < 16384 + 5; at++) {
    std::string long_name = "#";
    std::string end = " *a1 5 * y \r\n" + BLANK_HISTORY + name;
    long_name.resize(at - end.size() - index_of("").size() + idx1_trailer(7).size(), 'x');
    std::string others = long_name + end;
    dir.write("idx1_a", index_of(others + ERASED));
    ASSERT_EQ(dir.read("idx1_a").find(BLANK + BLANK), at);
    Owned_stream fp = OPEN_STREAM("idx1_a", "r");
    Owned_stream copy = MENDED_COPY(fp.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(whole_text(copy.get()), index_of(others + BLANK_HISTORY)) << at;
  }
}

TEST(MendForgotten, AMendedCopyIsWholeAndTheIndexIsLeftAsItIs) {
  Scratch_dir dir;
  std::string others = "#x *a1 5 * y \r\n" + history_line(1, 2, 3, 4) + history_line(5, 6, 7, 8);
  std::string erased, whole;
  for (int i = 0; i < 500; i++) {
    std::string name = "#mot" + std::to_string(i) + " *a1 0 * x \r\n";
    erased += name + ERASED + others;
    whole += name + BLANK_HISTORY + others;
  }
  dir.write("idx1_a", index_of(erased));
  Owned_stream fp = OPEN_STREAM("idx1_a", "r");
  Owned_stream copy = MENDED_COPY(fp.get());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(whole_text(copy.get()), index_of(whole));
  EXPECT_EQ(dir.read("idx1_a"), index_of(erased));
}
