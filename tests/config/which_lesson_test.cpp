// The key Which_lesson.
#include "support/prelude.h"

#include "config/which_lesson.h"

#include <glib.h>
#include <limits.h>
#include <string.h>

#include "config/config_values.h"
#include "support/scratch.h"
#include "util/owned.h"

namespace {

// A directory with dictionaries, and a registry read there.
struct Trf_reading {
  Scratch_dir dir;
  Trf_string registry = {};

  explicit Trf_reading(const std::vector<std::string> &files) {
    for (const std::string &file : files)
      dir.write(file, "text");
    START_REGISTRY(&registry);
  }
  ~Trf_reading() {
    FREE_REGISTRY(&registry);
  }

  std::string read(const std::string &lines, const char *key_line = "Which_lesson :>") {
    dir.write("list", lines);
    Owned_stream file = OPEN_STREAM("list", "r");
    char line[CONF_LINE];
    g_strlcpy(line, key_line, sizeof(line));
    EXTRACT_WHICH_LESSONS(file.get(), line, &registry);
    return registry.st_lesson;
  }
};

int count(const char *list) {
  std::string copy = list;
  return KLASK_NB_PAJ(copy.data());
}

} // namespace

TEST(WhichLesson, LaterFilesOfATokenArePackedBehindTheFirst) {
  Trf_reading reading({"lessons/le1.txt", "lessons/le2.txt", "lessons/le3.txt", "other/voc.txt"});
  EXPECT_EQ(reading.read("lessons/le1->3.txt  other/voc.txt\n<:\n"),
            "lessons/le1.txt &/le2.txt &/le3.txt other/voc.txt");
  EXPECT_EQ(reading.registry.nb_lesson, 4);
}

TEST(WhichLesson, ARangeOfAnyWidthIsReadAtOnce) {
  Trf_reading reading({"lessons/le7.txt", "lessons/le2147483647.txt", "lessons/le08.txt",
                       "lessons/le99999999999.txt", "lessons/le", "lessons/le6.tx"});
  EXPECT_EQ(reading.read("lessons/le0->2147483647.txt\n<:\n"),
            "lessons/le7.txt &/le2147483647.txt");
  EXPECT_EQ(reading.read("lessons/le2147483647->1.txt missing/le1->2147483647\n<:\n"),
            "lessons/le2147483647.txt &/le7.txt");
}

TEST(WhichLesson, ANameOfManyRangesIsReadAtOnce) {
  Trf_reading reading({"1a2b3c4d5e6f7g8h9i1j2", "1a2b3c4d5e6f7g8h9i1j3", "1a2b4c"});
  EXPECT_EQ(
      reading.read("1->9a1->9b1->9c1->9d1->9e1->9f1->9g1->9h1->9i1->9j9->1\nx1->9->9->9->9->9->9->"
                   "9->9->9->9->9->9->9->9->9->9->9->9->9->9\n<:\n"),
      "./1a2b3c4d5e6f7g8h9i1j3 &/1a2b3c4d5e6f7g8h9i1j2");
}

TEST(WhichLesson, RangesInARowAreReadFromTheLeft) {
  Trf_reading reading({"le1", "le2", "le3"});
  // 1 gives 1->2, 2 gives 2->2, 3 gives 3->2.
  EXPECT_EQ(reading.read("le1->3->2\n<:\n"), "./le1 &/le2 &/le2 &/le3 &/le2");
}

TEST(WhichLesson, RangesInARowThatGiveTooManyNamesEndTheProgramWithStatus11) {
  Trf_reading reading({"le1"});
  for (const char *list : {"le777777777->31->1\n<:\n", "le1->999->999->999\n<:\n"})
    ENDS_WITH_STATUS(reading.read(list), 11, "EXTRACT_WHICH_LESSONS error dim STOP ");
}

TEST(WhichLesson, AFaultBehindAWideRangeIsTold) {
  Trf_reading reading({"le5"});
  ENDS_WITH_STATUS(reading.read("le1->2000000000x->\n<:\n"), 13,
                   "RECUR_EXTR_ARROW error 13 for s_file =le1x-> ");
}

TEST(WhichLesson, AMissingFileIsLeftOutAndTheNumbersShift) {
  Trf_reading reading({"lessons/le1.txt", "lessons/le3.txt", "other/voc.txt"});
  EXPECT_EQ(reading.read("lessons/le1->3.txt  other/voc.txt\n<:\n"),
            "lessons/le1.txt &/le3.txt other/voc.txt");
  EXPECT_EQ(reading.registry.nb_lesson, 3);
}

TEST(WhichLesson, TheFirstFileThatIsThereBearsTheDirectory) {
  Trf_reading reading({"lessons/le2.txt", "lessons/le3.txt"});
  EXPECT_EQ(reading.read("lessons/le1->3.txt\n<:\n"), "lessons/le2.txt &/le3.txt");
}

TEST(WhichLesson, ARangeWrittenDownwardsCountsDown) {
  Trf_reading reading({"le3.txt", "le4.txt", "le5.txt"});
  EXPECT_EQ(reading.read("le5->3.txt\n<:\n"), "./le5.txt &/le4.txt &/le3.txt");
}

TEST(WhichLesson, TwoArrowsGiveEveryCombinationTheLeftmostSlowest) {
  Trf_reading reading({"u1_p1", "u1_p2", "u2_p1", "u2_p2"});
  EXPECT_EQ(reading.read("u1->2_p1->2\n<:\n"), "./u1_p1 &/u1_p2 &/u2_p1 &/u2_p2");
}

TEST(WhichLesson, ARangeOfOneValueGivesOneName) {
  Trf_reading reading({"le7.txt"});
  EXPECT_EQ(reading.read("le007->7.txt\n<:\n"), "./le7.txt");
}

TEST(WhichLesson, ATokenWhoseFilesAreAllMissingAddsNothing) {
  Trf_reading reading({"a/x.txt", "b/le1.txt", "b/le2.txt"});
  EXPECT_EQ(reading.read("a/x.txt c/le1->9.txt b/le1->2.txt\n<:\n"), "a/x.txt b/le1.txt &/le2.txt");
  EXPECT_EQ(reading.registry.nb_lesson, 3);
}

TEST(WhichLesson, ATokenWithoutDirectoryLiesInTheWorkingDirectory) {
  Trf_reading reading({"voc.txt"});
  EXPECT_EQ(reading.read("voc.txt\n<:\n"), "./voc.txt");
}

TEST(WhichLesson, BackslashesOfADirectoryBecomeSlashes) {
  Trf_reading reading({"a/b/le1.txt", "a/b/le2.txt"});
  EXPECT_EQ(reading.read("a\\b\\le1->2.txt\n<:\n"), "a/b/le1.txt &/le2.txt");
}

TEST(WhichLesson, AnArrowInADirectoryIsNoRange) {
  Trf_reading reading({"a1->2/x.txt"});
  EXPECT_EQ(reading.read("a1->2/x.txt\n<:\n"), "a1->2/x.txt");
}

TEST(WhichLesson, TheListGoesOnLineByLine) {
  Trf_reading reading({"a", "b", "c"});
  EXPECT_EQ(reading.read("a\r\n\r\n  b\nc <: a\n"), "./a ./b ./c");
}

TEST(WhichLesson, AnyOtherByteHidesTheRestOfTheLine) {
  Trf_reading reading({"a", "b", "c"});
  EXPECT_EQ(reading.read("a # b <:\nc\n<:\n"), "./a ./c");
}

TEST(WhichLesson, AccentedLettersStandInNames) {
  Trf_reading reading({"\351t\351.txt"});
  EXPECT_EQ(reading.read("\351t\351.txt\n<:\n"), "./\351t\351.txt");
}

TEST(WhichLesson, AMarkGluedToANameBelongsToTheName) {
  Trf_reading reading({"voc.txt", "voc.txt<:"});
  EXPECT_EQ(reading.read("voc.txt<:\nvoc.txt\n<:\n"), "./voc.txt<: ./voc.txt");
}

TEST(WhichLesson, ALineHoldsNinetyNineCharacters) {
  Trf_reading reading({"a", "b", "bcd"});
  EXPECT_EQ(reading.read("a" + std::string(97, ' ') + "bcd\n<:\n"), "./a ./b");
}

TEST(WhichLesson, AnEmptyListHasNoLesson) {
  Trf_reading reading({});
  EXPECT_EQ(reading.read("<:\n"), "");
  EXPECT_EQ(reading.registry.nb_lesson, 0);
  EXPECT_EQ(reading.registry.lenmx_string, 20);
}

TEST(WhichLesson, ALaterListReplacesAnEarlierOne) {
  Trf_reading reading({"a", "b"});
  reading.read("a\n<:\n");
  EXPECT_EQ(reading.read("b\n<:\n"), "./b");
  EXPECT_EQ(reading.registry.nb_lesson, 1);
}

TEST(WhichLesson, TheListGrowsAsNeeded) {
  std::vector<std::string> files;
  std::string expected = "lessons/le1.txt";
  for (int i = 1; i <= 300; i++)
    files.push_back("lessons/le" + std::to_string(i) + ".txt");
  for (int i = 2; i <= 300; i++)
    expected += " &/le" + std::to_string(i) + ".txt";
  Trf_reading reading(files);
  EXPECT_EQ(reading.read("lessons/le1->300.txt\n<:\n"), expected);
  EXPECT_EQ(reading.registry.nb_lesson, 300);
  EXPECT_GT(reading.registry.lenmx_string, (int)expected.size());
}

TEST(WhichLesson, TheListGrowsToTheNeededLengthPlusFifty) {
  Trf_reading reading({"abcdefghijklmnopq", "abcdefghijklmnopqr"});
  EXPECT_EQ(reading.read("abcdefghijklmnopq\n<:\n").size(), 19u);
  EXPECT_EQ(reading.registry.lenmx_string, 20);
  EXPECT_EQ(reading.read("abcdefghijklmnopqr\n<:\n").size(), 20u);
  EXPECT_EQ(reading.registry.lenmx_string, 70);
}

TEST(WhichLesson, TheListGrowsOnceForAnItemAndTheBlankBeforeIt) {
  Trf_reading reading({"abcdefghijklmnopq", "bcd"});
  EXPECT_EQ(reading.read("abcdefghijklmnopq bcd\n<:\n").size(), 25u);
  EXPECT_EQ(reading.registry.lenmx_string, 75);
}

TEST(WhichLesson, TheClosedListEndsInABlankAndIsShrunk) {
  Trf_reading reading({"a"});
  reading.read("a\n<:\n");
  CLOSE_LESSON_LIST(&reading.registry);
  EXPECT_STREQ(reading.registry.st_lesson, "./a ");
  EXPECT_EQ(reading.registry.lenmx_string, 5);
}

TEST(WhichLesson, AnEmptyListIsClosedByABlankToo) {
  Trf_reading reading({});
  reading.read("<:\n");
  CLOSE_LESSON_LIST(&reading.registry);
  EXPECT_STREQ(reading.registry.st_lesson, " ");
  EXPECT_EQ(reading.registry.lenmx_string, 2);
}

TEST(WhichLesson, AFullListGrowsForItsLastBlank) {
  Trf_reading reading({"abcdefghijklmnopq"});
  reading.read("abcdefghijklmnopq\n<:\n");
  CLOSE_LESSON_LIST(&reading.registry);
  EXPECT_STREQ(reading.registry.st_lesson, "./abcdefghijklmnopq ");
  EXPECT_EQ(reading.registry.lenmx_string, 21);
}

TEST(WhichLesson, AKeyLineWithoutMarkerEndsTheProgram) {
  Trf_reading reading({});
  ENDS_WITH_STATUS(reading.read("<:\n", "Which_lesson a"), 1,
                   "EXTRACT_WHICH_LESSONS error in line s=Which_lesson a \n");
}

TEST(WhichLesson, AListOnTheKeyLineEndsTheProgramWithStatus2) {
  Trf_reading reading({"a"});
  const char *expected = "EXTRACT_WHICH_LESSONS error 2 STOP ";
  ENDS_WITH_STATUS(reading.read("<:\n", "Which_lesson :> a"), 2, expected);
  ENDS_WITH_STATUS(reading.read("<:\n", "Which_lesson :> <:"), 2, expected);
}

TEST(WhichLesson, AListOnTheKeyLineIsParsedFirst) {
  Trf_reading reading({});
  ENDS_WITH_STATUS(reading.read("<:\n", "Which_lesson :> le->2"), 13, "RECUR_EXTR_ARROW error 13");
}

TEST(WhichLesson, BlanksBehindTheMarkerAreNoList) {
  Trf_reading reading({"a"});
  EXPECT_EQ(reading.read("a\n<:\n", "Which_lesson :>   "), "./a");
}

TEST(WhichLesson, AFileThatEndsBeforeTheListEndsTheProgram) {
  Trf_reading reading({});
  ENDS_WITH_STATUS(reading.read(""), 1, "error 1 while reading in EXTRACT_WHICH_LESSONS stop ");
}

TEST(WhichLesson, AListWithoutEndIsToldAsExtractPages) {
  Trf_reading reading({"a"});
  ENDS_WITH_STATUS(reading.read("a\n"), 2, "error 2 while reading in EXTRACT_PAGES stop ");
}

TEST(WhichLesson, AnArrowWithoutANumberEndsTheProgram) {
  Trf_reading reading({});
  ENDS_WITH_STATUS(reading.read("le->3.txt\n<:\n"), 13,
                   "RECUR_EXTR_ARROW error 13 for s_file =le->3.txt \n");
  ENDS_WITH_STATUS(reading.read("d/le3->.txt\n<:\n"), 13,
                   "RECUR_EXTR_ARROW error 13 for s_file =le3->.txt \n");
  ENDS_WITH_STATUS(reading.read("->\n<:\n"), 13, "RECUR_EXTR_ARROW error 13 for s_file =-> \n");
  ENDS_WITH_STATUS(reading.read("u1->2_p->3\n<:\n"), 13,
                   "RECUR_EXTR_ARROW error 13 for s_file =u1_p->3 \n");
}

TEST(WhichLesson, AListThatOutgrowsItsRoomEndsTheProgram) {
  Trf_reading reading({"abc"});
  reading.read("abc\n<:\n");
  reading.registry.lenmx_string = (int)strlen("./abc");
  ENDS_WITH_STATUS(CHECK_LESSON_LIST(&reading.registry), 11,
                   "EXTRACT_WHICH_LESSONS error dim STOP ");
  reading.registry.lenmx_string++;
  CHECK_LESSON_LIST(&reading.registry);
}

TEST(PageCount, EachWordIsOneLesson) {
  EXPECT_EQ(count("lessons/le1.txt &/le2.txt other/voc.txt "), 3);
  EXPECT_EQ(count("   a    b"), 2);
  EXPECT_EQ(count(""), 0);
  EXPECT_EQ(count("   "), 0);
  EXPECT_EQ(KLASK_NB_PAJ(nullptr), 0);
}

TEST(PageCount, AWordWithAnArrowCountsAsItsRange) {
  EXPECT_EQ(count("le3->7.txt x"), 6);
  EXPECT_EQ(count("le7->3.txt"), 5);
  EXPECT_EQ(count("a->b"), 1);
}

TEST(PageCount, AHugeRangeIsClamped) {
  EXPECT_EQ(count("0->99999999999999 0->99999999999999 x"), INT_MAX);
}
