// Paths taken apart.
#include "util/paths.h"

#include <glib.h>

#include "support/prelude.h"
#include "support/scratch.h"
#include "util/report.h"

namespace {

// What a routine makes of a path; "(null)" where it gives nothing.
std::string outcome(char *(*routine)(char *), std::string path) {
  const std::string before = path;
  char *text = routine(path.data());
  EXPECT_EQ(path, before);
  std::string result = text == nullptr ? "(null)" : text;
  g_free(text);
  return result;
}

} // namespace

TEST(PathFromString, TheDirectoryBeginsWithAPointUnlessItSaysWhereItBegins) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, "lessons/verbs.txt"), "./lessons/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "/home/x/v.txt"), "/home/x/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "C:\\dico\\v.txt"), "C:/dico/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "./a/v.txt"), "./a/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "../a/v.txt"), "../a/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, ".hidden/v.txt"), ".hidden/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "\\srv\\v.txt"), "/srv/");
}

TEST(PathFromString, ANameAloneGivesTheWorkingDirectory) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, "verbs.txt"), "./");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "C:verbs.txt"), "./");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "   "), "./");
}

TEST(PathFromString, LeadingBlanksAreSkipped) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, "  lessons/verbs.txt"), "./lessons/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "  /x"), "/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, " verbs.txt"), "./");
}

TEST(PathFromString, BackslashesBecomeSlashes) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, "a\\b/c\\v.txt"), "./a/b/c/");
}

TEST(PathFromString, ADriveIsACapitalLetterWithAColon) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, "c:\\v.txt"), "./c:/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "Z:\\v.txt"), "Z:/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "A:/v.txt"), "A:/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "@:/v.txt"), "./@:/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "[:/v.txt"), "./[:/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "AB/v.txt"), "./AB/");
}

TEST(PathFromString, APathThatEndsInASeparatorIsAllDirectory) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, "lessons/"), "./lessons/");
  EXPECT_EQ(outcome(PATH_FROM_STRING, "/"), "/");
}

TEST(PathFromString, AnEmptyStringGivesNothing) {
  EXPECT_EQ(outcome(PATH_FROM_STRING, ""), "(null)");
  EXPECT_EQ(PATH_FROM_STRING(nullptr), nullptr);
}

TEST(PathFromStringFile, TheDirectoryGoesUpToTheLastSeparator) {
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "lessons/verbs.txt"), "lessons/");
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "/home/x/v.txt"), "/home/x/");
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "./v.txt"), "./");
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "a/"), "a/");
}

TEST(PathFromStringFile, ANameAloneGivesTheWorkingDirectory) {
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "verbs.txt"), "./");
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "a\\verbs.txt"), "./");
}

TEST(PathFromStringFile, ASeparatorInTheFirstPlaceGivesTheWorkingDirectory) {
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "/x.txt"), "./");
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "//x.txt"), "//");
}

TEST(PathFromStringFile, AMarkedNameOrAnEmptyStringGivesNothing) {
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, "&/verbs.txt"), "(null)");
  EXPECT_EQ(outcome(PATH_FROM_STRING_FILE, ""), "(null)");
  EXPECT_EQ(PATH_FROM_STRING_FILE(nullptr), nullptr);
}

TEST(FileNameFromString, TheLastComponentStandsBehindEitherSeparator) {
  EXPECT_EQ(outcome(FILE_NAME_FROM_STRING, "a/b/c.txt"), "c.txt");
  EXPECT_EQ(outcome(FILE_NAME_FROM_STRING, "a/b\\c.txt"), "c.txt");
  EXPECT_EQ(outcome(FILE_NAME_FROM_STRING, "c.txt"), "c.txt");
  EXPECT_EQ(outcome(FILE_NAME_FROM_STRING, "a/"), "");
  EXPECT_EQ(outcome(FILE_NAME_FROM_STRING, ""), "(null)");
  EXPECT_EQ(FILE_NAME_FROM_STRING(nullptr), nullptr);
}

TEST(FilenameFromPath, TheLastComponentStandsBehindTheSlashAlone) {
  EXPECT_EQ(outcome(FILENAME_FROM_PATH, "a/b/c.txt"), "c.txt");
  EXPECT_EQ(outcome(FILENAME_FROM_PATH, "a/b\\c.txt"), "b\\c.txt");
  EXPECT_EQ(outcome(FILENAME_FROM_PATH, "c.txt"), "c.txt");
  EXPECT_EQ(outcome(FILENAME_FROM_PATH, "a/"), "");
  EXPECT_EQ(outcome(FILENAME_FROM_PATH, ""), "(null)");
  EXPECT_EQ(FILENAME_FROM_PATH(nullptr), nullptr);
}

TEST(RmPathFromString, TheDirectoryIsReplacedByTheMark) {
  EXPECT_EQ(outcome(RM_PATH_FROM_STRING, "a/b/c.txt"), "&/c.txt");
  EXPECT_EQ(outcome(RM_PATH_FROM_STRING, "a/b\\c.txt"), "&/c.txt");
  EXPECT_EQ(outcome(RM_PATH_FROM_STRING, "a/"), "&/");
  EXPECT_EQ(outcome(RM_PATH_FROM_STRING, ""), "(null)");
  EXPECT_EQ(RM_PATH_FROM_STRING(nullptr), nullptr);
}

TEST(RmPathFromString, TheMarkIsWrittenAlsoWithoutADirectory) {
  EXPECT_EQ(outcome(RM_PATH_FROM_STRING, "c.txt"), "&/c.txt");
}

TEST(TextWithin, ATextThatFitsIsCopied) {
  char *text = TEXT_WITHIN("abc", 4, "NOBODY");
  EXPECT_STREQ(text, "abc");
  g_free(text);
}

TEST(TextWithin, ATextBeyondTheRoomEndsTheProgram) {
  ENDS_WITH_STATUS(TEXT_WITHIN("abc", 3, "in RM_PATH_FROM_STRING"), 90,
                   "in RM_PATH_FROM_STRING error mem STOP \n");
  ENDS_WITH_STATUS(TEXT_WITHIN("abc", 3, "FILENAME_FROM_PATH"), 90,
                   "FILENAME_FROM_PATH error mem STOP \n");
}

TEST(TextWithin, ATextBeyondTheRoomIsToldInTheLogToo) {
  Scratch_dir dir;
  ENDS_WITH_STATUS(
      {
        SET_SAVED_LOG(fopen("log", "w"));
        TEXT_WITHIN("abc", 3, "FILENAME_FROM_PATH");
      },
      90, "error mem");
  EXPECT_EQ(dir.read("log"), "FILENAME_FROM_PATH error mem STOP ");
}
