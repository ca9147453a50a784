// What is remembered from one run to the next.
#include "support/prelude.h"

#include "app/last_state.h"

#include <limits.h>

#include <random>

#include "support/scratch.h"
#include "util/safe_write.h"

namespace {

using testing::ElementsAre;
using Values = std::vector<int>;

const char WHOLE[] = "  3    Last lesson\n"
                     "  2   Sense of Q and R \n"
                     "  10  20   Position of main window left upper corner\n"
                     "  800  600   Size of main window width height\n"
                     "  350   Width of book window \n"
                     "words/a.txt b.txt \n";

// A directory with a configuration that is as old as its last state, or younger by some seconds.
struct Directory {
  Scratch_dir dir;
  Trf_book book = {};
  Start_State state = {7, 7, 7, 7, 7, 7, 7};

  explicit Directory(const std::string &last_state, int younger = 0) {
    namespace fs = std::filesystem;
    dir.write("mertu.conf", "");
    dir.write("Mertu_last_state", last_state);
    fs::last_write_time("mertu.conf",
                        fs::last_write_time("Mertu_last_state") + std::chrono::seconds(younger));
  }

  // Reads it: the seven values in their order.
  Values read() {
    START_PAGE_NUMBER(&state, &book);
    return {state.num_lesson,  state.root_x,     state.root_y, state.root_width,
            state.root_height, state.width_book, state.sens_qr};
  }
};

Values values_of(const std::string &last_state) {
  return Directory(last_state).read();
}

// What WRITE_LAST_STATE makes of these values.
std::string written(const Start_State &state, const char *st_lesson) {
  Scratch_dir dir;
  FILE *fp = fopen("file", "w");
  WRITE_LAST_STATE(&state, st_lesson, fp);
  fclose(fp);
  return dir.read("file");
}

} // namespace

TEST(LastState, NothingRememberedGivesTheFirstLessonAndNoWindow) {
  Scratch_dir dir;
  Start_State state = {7, 7, 7, 7, 7, 7, 7};
  Trf_book book = {};
  START_PAGE_NUMBER(&state, &book);
  EXPECT_EQ(state.num_lesson, 1);
  EXPECT_EQ(state.sens_qr, 0);
  for (int value : {state.root_x, state.root_y, state.root_width, state.root_height})
    EXPECT_EQ(value, -1);
  EXPECT_EQ(state.width_book, -1);
  EXPECT_EQ(book.fp, nullptr);
  EXPECT_EQ(book.exfp, 0);
}

TEST(LastState, TheSixLinesAreWrittenToTheByte) {
  EXPECT_EQ(written({3, 10, 20, 800, 600, 350, 2}, "words/a.txt b.txt "), WHOLE);
  EXPECT_EQ(written({-3, -10, -20, 0, 0, -1, 1}, nullptr),
            "  -3    Last lesson\n"
            "  1   Sense of Q and R \n"
            "  -10  -20   Position of main window left upper corner\n"
            "  0  0   Size of main window width height\n"
            "  -1   Width of book window \n"
            "\n");
}

TEST(LastState, WhatWasWrittenIsReadBack) {
  EXPECT_THAT(values_of(WHOLE), ElementsAre(3, 10, 20, 800, 600, 350, 2));
}

TEST(LastState, TheFileIsDeletedOnceItIsRead) {
  Directory directory(WHOLE);
  directory.read();
  EXPECT_FALSE(directory.dir.exists("Mertu_last_state"));
  EXPECT_THAT(directory.read(), ElementsAre(1, -1, -1, -1, -1, -1, 0));
}

TEST(LastState, TheListOfLessonsIsWrittenAndNotRead) {
  std::string other = WHOLE;
  other.replace(other.find("words/"), std::string::npos, "99  99 99\n77\n");
  EXPECT_EQ(values_of(other), values_of(WHOLE));
}

TEST(LastState, AYoungerConfigurationForgetsTheLessonAlone) {
  EXPECT_THAT(Directory(WHOLE, 1).read(), ElementsAre(0, 10, 20, 800, 600, 350, 2));
  EXPECT_THAT(Directory(WHOLE, -1).read(), ElementsAre(3, 10, 20, 800, 600, 350, 2));
}

TEST(LastState, AConfigurationOfTheSameSecondIsNotYounger) {
  EXPECT_EQ(Directory(WHOLE, 0).read()[0], 3);
}

TEST(LastState, AMalformedFirstLineGivesNoLesson) {
  for (std::string first : {"", "  ", "Last lesson 3", "x3", "-3", "  .", "\t3"})
    EXPECT_THAT(values_of(first + "\n  2\n"), ElementsAre(0, -1, -1, -1, -1, -1, 2)) << first;
}

TEST(LastState, OnlyTheFirstNumberOfTheFirstLineCounts) {
  EXPECT_EQ(values_of("4 5 6\n")[0], 4);
  EXPECT_EQ(values_of("4x\n")[0], 4);
  EXPECT_EQ(values_of("0\n")[0], 0);
}

TEST(LastState, EachMissingLineLeavesItsDefaults) {
  const std::vector<Values> expected = {{3, -1, -1, -1, -1, -1, 0},
                                        {3, -1, -1, -1, -1, -1, 2},
                                        {3, 10, 20, -1, -1, -1, 2},
                                        {3, 10, 20, 800, 600, -1, 2},
                                        {3, 10, 20, 800, 600, 350, 2}};
  std::string whole = WHOLE;
  size_t end = 0;
  for (const Values &values : expected) {
    end = whole.find('\n', end) + 1;
    EXPECT_EQ(values_of(whole.substr(0, end)), values);
    EXPECT_EQ(values_of(whole.substr(0, end - 1)), values) << "without its last line end";
  }
}

TEST(LastState, ALineWithTooFewNumbersLeavesTheDefaultsOfThoseMissing) {
  EXPECT_THAT(values_of("3\n\n10\n  800  \nx\n"), ElementsAre(3, 10, -1, 800, -1, -1, 0));
  EXPECT_THAT(values_of("3\n2\n  10  \n  Size\n"), ElementsAre(3, 10, -1, -1, -1, -1, 2));
}

TEST(LastState, AWordBehindTheFirstNumberReadsAsZero) {
  EXPECT_THAT(values_of("3\n2\n  10   Position of\n  800 Size\n"),
              ElementsAre(3, 10, 0, 800, 0, -1, 2));
}

TEST(LastState, ANegativePositionReadsAsZero) {
  EXPECT_THAT(values_of("3\n2\n  10  -20   Position\n"), ElementsAre(3, 10, 0, -1, -1, -1, 2));
  EXPECT_THAT(values_of("3\n2\n  -10  20   Position\n"), ElementsAre(3, 0, 0, -1, -1, -1, 2));
}

TEST(LastState, TheDirectionIsTakenAsItStands) {
  EXPECT_EQ(values_of("3\n77\n")[6], 77);
}

TEST(LastState, ANumberBeyondIntIsClamped) {
  EXPECT_EQ(values_of("99999999999999999999\n")[0], INT_MAX);
}

TEST(LastState, TheRestOfALineOfMoreThanAHundredCharactersIsTheNextLine) {
  std::string hundred = "  3" + std::string(97, ' ');
  EXPECT_THAT(values_of(hundred + "2\n"), ElementsAre(3, -1, -1, -1, -1, -1, 2));
  EXPECT_THAT(values_of(hundred + "\n2\n"), ElementsAre(3, 2, -1, -1, -1, -1, 0));
}

TEST(LastState, AnEmptyFileIsLeftWhereItStands) {
  Directory directory("");
  EXPECT_THAT(directory.read(), ElementsAre(1, -1, -1, -1, -1, -1, 0));
  EXPECT_TRUE(directory.dir.exists("Mertu_last_state"));
  EXPECT_EQ(directory.book.exfp, 1);
  EXPECT_NE(fileno(directory.book.fp), -1);
}

TEST(LastState, TheStreamReadStaysNotedInTheBook) {
  Directory directory(WHOLE);
  directory.read();
  EXPECT_EQ(directory.book.exfp, 1);
  EXPECT_NE(directory.book.fp, nullptr);
}

TEST(LastState, AnyBytesAreRead) {
  std::minstd_rand chance(1);
  for (int i = 0; i < 300; i++) {
    std::string bytes(chance() % 500, '\0');
    for (char &byte : bytes)
      byte = "0123456789 \n-+.x\r\377"[chance() % 19]; // the NUL among them
    Values values = values_of(bytes);
    for (int value : values)
      EXPECT_GE(value, -1);
  }
}

TEST(LastState, WithoutAConfigurationTheProgramEnds) {
  Directory directory(WHOLE);
  std::filesystem::remove("mertu.conf");
  ENDS_WITH_STATUS(directory.read(), 1, "Error file mertu.conf  does not exist stop ");
}

TEST(LastState, TheNewOneStandsBesideUntilItIsWhole) {
  Directory directory("old\n");
  Trf_new_file file;
  ASSERT_TRUE(OPEN_LAST_STATE(&file));
  Start_State state = {3, 10, 20, 800, 600, 350, 2};
  WRITE_LAST_STATE(&state, "words/a.txt b.txt ", file.fp);
  EXPECT_TRUE(directory.dir.exists("Mertu_last_state.new"));
  EXPECT_EQ(directory.dir.read("Mertu_last_state"), "old\n");
  EXPECT_EQ(COMMIT_NEW_FILE(&file), 0);
  EXPECT_EQ(directory.dir.read("Mertu_last_state"), WHOLE);
  EXPECT_FALSE(directory.dir.exists("Mertu_last_state.new"));
}

TEST(LastState, OneThatIsDroppedLeavesNothing) {
  Scratch_dir dir;
  {
    Trf_new_file file;
    ASSERT_TRUE(OPEN_LAST_STATE(&file));
  }
  EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST(LastState, OneThatCannotBeCreatedIsTold) {
  Scratch_dir dir;
  std::filesystem::create_directory("Mertu_last_state");
  Trf_new_file file;
  EXPECT_FALSE(OPEN_LAST_STATE(&file));
  EXPECT_EQ(file.fp, nullptr);
}
