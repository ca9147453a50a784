// Checking and correcting: all dictionaries, one by number, one by alias, and what is refused.
#include "db/check_correct.h"

#include "maintenance_home.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string ALL_NOTICE = "warning: Check and correct whole data base. \n" + COMPARE_ALL;
const std::string SINGLE_A = "warning: Check and correct single lesson data base. \n"
                             "Look at file mertu_log for details.\n"
                             "Compare in directory IDX1 the present file\n"
                             "./IDX1/idx1_a"
                             "\n to the previous cpy_idx1_file !\n";
const std::string PATHS_A = "CHECK_CORR_SNG_DBASE num =1 s_idx1=./IDX1/idx1_a \n"
                            "CHECK_CORR_SNG_DBASE num =1 s_lesson=./a \n"
                            "CHECK_CORR_SNG_DBASE num =1 s_cpy=./CPY/a \n";

void check_single(std::string ss, Maintenance_home *home) {
  CHECK_CORR_SNG_DBASE(ss.data(), &home->book);
}

// What the text brings about where nothing is to be changed: returns the log.
std::string refused(const std::string &ss) {
  Maintenance_home home;
  std::string before = home.all_files();
  check_single(ss, &home);
  EXPECT_EQ(home.all_files(), before);
  return home.logged();
}

} // namespace

TEST(CheckCorrectAll, EveryDictionaryIsCopiedBackedUpAndRebuiltWhateverTheFileTimes) {
  Maintenance_home home;
  std::string old_a = home.dir.read("IDX1/idx1_a");
  std::string old_b = home.dir.read("IDX1/idx1_b");
  make_older("a", 1000);
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_EQ(home.dir.read("CPY/a"), "text\r\n!# fr1\r\n# one * x\r\n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), rebuilt_a());
  EXPECT_EQ(home.dir.read("IDX1/cpy_idx1_a"), old_a);
  EXPECT_EQ(home.dir.read("IDX1/cpy_idx1_b"), old_b);
}

TEST(CheckCorrectAll, TheLearnerIsToldBeforeAnythingIsDone) {
  Maintenance_home home;
  std::string before = home.all_files();
  NOTICES().meanwhile = [&] { EXPECT_EQ(home.all_files(), before); };
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_THAT(NOTICES().told, ElementsAre(ALL_NOTICE));
  EXPECT_NE(home.all_files(), before);
  EXPECT_THAT(home.logged(), HasSubstr("file = ./IDX1/idx1_a has been updated \n"));
  EXPECT_THAT(home.logged(), EndsWith("file = ./IDX1/idx1_b has been updated \n"));
}

TEST(CheckCorrectAll, DamagedLinesAreCorrectedAndTheBackUpKeepsThem) {
  Maintenance_home home;
  std::string damaged =
      index_of("b", "en2", record_of("two", "en2", 8, history_line(7, 5, 99999, 190) + NEVER_LINE));
  home.dir.write("IDX1/idx1_b", damaged);
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"),
            rebuilt_b(history_line(0, 5, 0, 190) + history_line(0, 0, 0, 0)));
  EXPECT_EQ(home.dir.read("IDX1/cpy_idx1_b"), damaged);
  EXPECT_THAT(home.logged(),
              HasSubstr("IDX1_DICO and CHECK_4LINTsome error in file : ./IDX1/idx1_b \n"));
}

TEST(CheckCorrectAll, DictionariesBehindTheNumberOfLessonsAreNotTouched) {
  Maintenance_home home;
  home.book.nbt_lesson = 1;
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_TRUE(home.dir.exists("IDX1/cpy_idx1_a"));
  EXPECT_FALSE(home.dir.exists("IDX1/cpy_idx1_b"));
}

TEST(CheckCorrectAll, MoreLessonsThanDictionariesChangeNothing) {
  Maintenance_home home;
  home.book.nbt_lesson = 5;
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(CheckCorrectAll, TheLogIsOnTheDiskAfterwards) {
  Maintenance_home home;
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_THAT(home.dir.read("mertu_log"), EndsWith("file = ./IDX1/idx1_b has been updated \n"));
}

TEST(CheckCorrectAll, WithoutALogItIsDoneAllTheSame) {
  Maintenance_home home;
  FILE *log = home.book.fp_log;
  home.book.fp_log = nullptr;
  CHECK_CORR_ALL_DBASE(&home.book);
  check_single("fr1", &home);
  check_single("unknown", &home);
  home.book.fp_log = log;
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(CheckCorrectAll, ABackUpThatCannotBeMadeLeavesItsDictionaryAsItIs) {
  Maintenance_home home;
  std::filesystem::create_directory("IDX1/cpy_idx1_a");
  std::string copy = home.dir.read("CPY/a");
  std::string idx1 = home.dir.read("IDX1/idx1_a");
  testing::internal::CaptureStdout();
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "cannot back up file ./IDX1/idx1_a: Is a directory \n");
  EXPECT_THAT(home.logged(), StartsWith("cannot back up file ./IDX1/idx1_a: Is a directory \n"));
  EXPECT_EQ(home.dir.read("CPY/a"), copy);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(CheckCorrectAll, AnIndexThatCannotBeOpenedIsToldAndItsDictionaryLeftAsItIs) {
  Maintenance_home home;
  std::filesystem::remove("IDX1/idx1_a");
  std::filesystem::create_symlink("idx1_a", "IDX1/idx1_a");
  std::string copy = home.dir.read("CPY/a");
  testing::internal::CaptureStdout();
  CHECK_CORR_ALL_DBASE(&home.book);
  std::string told = "cannot back up file ./IDX1/idx1_a: Too many levels of symbolic links \n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), told);
  EXPECT_THAT(home.logged(), StartsWith(told));
  EXPECT_TRUE(std::filesystem::is_symlink("IDX1/idx1_a"));
  EXPECT_EQ(home.dir.read("CPY/a"), copy);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(CheckCorrectAll, AMissingIndexIsBuiltWithoutABackUp) {
  Maintenance_home home;
  std::filesystem::remove("IDX1/idx1_b");
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b(BLANK_HISTORY));
  EXPECT_FALSE(home.dir.exists("IDX1/cpy_idx1_b"));
}

TEST(CheckCorrectAll, ADictionaryThatCannotBeReadKeepsItsCopyAndIsIndexedFromIt) {
  Maintenance_home home;
  std::filesystem::remove("b");
  testing::internal::CaptureStdout();
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "cannot read file ./b: No such file or directory \n");
  EXPECT_EQ(home.dir.read("CPY/b"), "!# en2\r\n# two * x\r\n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(CheckCorrectAll, WithoutDictionaryAndCopyTheProgramEnds) {
  Maintenance_home home;
  std::filesystem::remove("b");
  std::filesystem::remove("CPY/b");
  ENDS_WITH_STATUS(CHECK_CORR_ALL_DBASE(&home.book), 32, "cannot read file ./b: ");
}

TEST(CheckCorrectAll, AnIndexCutShortEndsTheProgramAndStays) {
  Maintenance_home home;
  std::string cut = idx1_header("./IDX1/idx1_a", "fr1") + record_of("one", "fr1", 8, "");
  home.dir.write("IDX1/idx1_a", cut);
  ENDS_WITH_STATUS(CHECK_CORR_ALL_DBASE(&home.book), 3, "^IDX1_DICO error in reading fp_class \n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), cut);
  EXPECT_EQ(home.dir.read("IDX1/cpy_idx1_a"), cut);
}

TEST(CheckCorrectAll, AnErasedRecordIsMendedFirst) {
  Maintenance_home home;
  std::string erased = NEVER_LINE.substr(0, 52) + NEVER_LINE.substr(0, 52) + " ;\r\n";
  home.dir.write("b", "!# en2\n# two * x\n# too * x\n");
  home.dir.write("IDX1/idx1_b", index_of("b", "en2",
                                         record_of("two", "en2", 8, erased) +
                                             record_of("too", "en2", 19, HISTORY_B)));
  home.dir.write("mertu_erased", "./IDX1/idx1_b\n");
  CHECK_CORR_ALL_DBASE(&home.book);
  EXPECT_THAT(home.dir.read("IDX1/idx1_b"),
              HasSubstr(record_of("too", "en2", 19, HISTORY_B) + "# END"));
  EXPECT_FALSE(home.dir.exists("mertu_erased"));
}

TEST(CheckCorrectSingle, ABlankTextIsLoggedAndNothingElse) {
  for (const char *ss : {"", " ", "    "}) {
    EXPECT_EQ(refused(ss), "CHECK_CORR_SNG_DBASE ss is blanc line \n");
    EXPECT_THAT(NOTICES().told, IsEmpty());
  }
  Maintenance_home home;
  CHECK_CORR_SNG_DBASE(nullptr, &home.book);
  EXPECT_EQ(home.logged(), "CHECK_CORR_SNG_DBASE ss is blanc line \n");
}

TEST(CheckCorrectSingle, ANumberOutOfRangeIsLoggedAndNothingElse) {
  EXPECT_EQ(refused("0"), "CHECK_CORR_SNG_DBASE not OK lesson  num=0 \n");
  EXPECT_EQ(refused("3"), "CHECK_CORR_SNG_DBASE not OK lesson  num=3 \n");
  EXPECT_EQ(refused("  3 fr1"), "CHECK_CORR_SNG_DBASE not OK lesson  num=3 \n");
  EXPECT_EQ(refused("99999999999999999999"),
            "CHECK_CORR_SNG_DBASE not OK lesson  num=2147483647 \n");
  EXPECT_THAT(NOTICES().told, IsEmpty());
}

TEST(CheckCorrectSingle, ANumberChecksItsDictionaryAlone) {
  Maintenance_home home;
  std::string old_a = home.dir.read("IDX1/idx1_a");
  check_single("  1 whatever", &home);
  EXPECT_THAT(home.logged(), StartsWith(PATHS_A + " \n \n              ************\n"));
  EXPECT_THAT(home.logged(), EndsWith("file = ./IDX1/idx1_a has been updated \n"));
  EXPECT_THAT(home.logged(), Not(HasSubstr("is OK")));
  EXPECT_EQ(home.dir.read("IDX1/cpy_idx1_a"), old_a);
  EXPECT_FALSE(home.dir.exists("IDX1/cpy_idx1_b"));
  EXPECT_THAT(home.dir.read("IDX1/idx1_a"), HasSubstr(record_of("one", "fr1", 14, HISTORY_A)));
  EXPECT_THAT(NOTICES().told, ElementsAre(SINGLE_A));
}

TEST(CheckCorrectSingle, TheLastNumberIsInRange) {
  Maintenance_home home;
  check_single("2", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(CheckCorrectSingle, AnAliasChecksItsDictionaryAndSaysSo) {
  Maintenance_home home;
  std::string text = "  fr1  ";
  CHECK_CORR_SNG_DBASE(text.data(), &home.book);
  EXPECT_EQ(text, "  fr1  ");
  EXPECT_THAT(home.logged(), StartsWith(PATHS_A));
  EXPECT_THAT(home.logged(), EndsWith("file = ./IDX1/idx1_a has been updated \n"
                                      "  \n CHECK_CORR_SNG_DBASE alias fr1 is OK\n"));
  EXPECT_FALSE(home.dir.exists("IDX1/cpy_idx1_b"));
  EXPECT_THAT(NOTICES().told, ElementsAre(SINGLE_A));
}

TEST(CheckCorrectSingle, TheLearnerIsToldWhenAllIsDoneAndLogged) {
  Maintenance_home home;
  NOTICES().meanwhile = [&] {
    EXPECT_TRUE(home.dir.exists("IDX1/cpy_idx1_a"));
    EXPECT_THAT(home.dir.read("mertu_log"), EndsWith("alias fr1 is OK\n"));
  };
  check_single("fr1", &home);
  EXPECT_EQ(NOTICES().told.size(), 1u);
}

TEST(CheckCorrectSingle, AnUnknownAliasIsLoggedAndToldAndNothingElse) {
  EXPECT_EQ(refused(" de3 "), "  \n CHECK_CORR_SNG_DBASE alias de3 is unknown\n");
  EXPECT_THAT(NOTICES().told, ElementsAre("warning: Check and correct single lesson data base. \n"
                                          "alias de3 is unknown.\n"
                                          "Look at file mertu_log for details.\n"));
  EXPECT_EQ(refused("fr1 more"), "  \n CHECK_CORR_SNG_DBASE alias fr1 more is unknown\n");
  EXPECT_EQ(refused("1a"), "  \n CHECK_CORR_SNG_DBASE alias 1a is unknown\n");
  EXPECT_EQ(refused("-1"), "  \n CHECK_CORR_SNG_DBASE alias -1 is unknown\n");
}

TEST(CheckCorrectSingle, AWordOfDigitsIsANumberNeverAnAlias) {
  Maintenance_home home;
  g_free(home.registry.record.st_alias);
  home.registry.record.st_alias = g_strdup(" 2 en7 ");
  check_single("2", &home);
  EXPECT_TRUE(home.dir.exists("IDX1/cpy_idx1_b"));
  EXPECT_FALSE(home.dir.exists("IDX1/cpy_idx1_a"));
  check_single("7", &home);
  EXPECT_THAT(home.logged(), EndsWith("CHECK_CORR_SNG_DBASE not OK lesson  num=7 \n"));
}
