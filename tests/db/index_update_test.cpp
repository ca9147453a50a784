// Working copies and idx1 files brought up to date: when, with what in the log, and what ends it.
#include "db/index_update.h"

#include "db_files.h"

#include <sys/stat.h>

#include "util/file_times.h"
#include "util/report.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string UP_TO_DATE = "  \n \n              ************\n \n";

// A learner's directory with an open log.
struct Home {
  Scratch_dir dir;
  Owned_stream log;

  Home() : log(OPEN_STREAM("mertu_log", "w")) {
    std::filesystem::create_directory("IDX1");
    std::filesystem::create_directory("CPY");
  }
  std::string logged() const {
    fflush(log.get());
    return dir.read("mertu_log");
  }
};

void update(Home *home) {
  std::string copy = "./CPY/a";
  std::string idx1 = "./IDX1/idx1_a";
  UPDATE_IDX1_FILE(home->log.get(), copy.data(), idx1.data());
}

// In the forked test: files are no longer open to everything.
void become_nobody() {
  if (geteuid() == 0 && setuid(65534) != 0)
    _exit(77);
}

void give_to_nobody(const std::vector<std::string> &paths) {
  for (const std::string &path : paths)
    ASSERT_TRUE(geteuid() != 0 || chown(path.c_str(), 65534, 65534) == 0);
}

const std::string HISTORY = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
const std::string OLD_IDX1 =
    idx1_header("./IDX1/idx1_a", "fr1") + "#a *fr1 7 * 1 \r\n" + HISTORY + idx1_trailer(14);

std::string new_idx1() {
  return idx1_header("./IDX1/idx1_a", "fr1") + "#a *fr1 8 * 2 \r\n" + HISTORY + idx1_trailer(16);
}

const std::string COPY = "!# fr1\r\n#a * 2\r\n";

} // namespace

TEST(UpdateIdx1File, WithoutAnOldIndexHistoriesAreBlank) {
  Home home;
  home.dir.write("CPY/a", "!# fr1\r\n#a * 1\r\n");
  update(&home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1_header("./IDX1/idx1_a", "fr1") +
                                              "#a *fr1 8 * 1 \r\n" + BLANK_HISTORY +
                                              idx1_trailer(16));
  EXPECT_FALSE(home.dir.exists("idx1_old"));
  EXPECT_THAT(home.logged(), HasSubstr("NOT taking account of old history \n"));
  EXPECT_THAT(home.logged(), EndsWith("file = ./IDX1/idx1_a has been updated \n"));
}

TEST(UpdateIdx1File, WithoutAnAliasTheNameLinesCarryNone) {
  Home home;
  home.dir.write("CPY/a", "#a * 1\r\n");
  update(&home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"),
            idx1_header("./IDX1/idx1_a", "") + "#a * 0 * 1 \r\n" + BLANK_HISTORY + idx1_trailer(8));
}

TEST(UpdateIdx1File, TheOldHistoryIsKeptAndTheOldIndexStaysBehind) {
  Home home;
  home.dir.write("CPY/a", COPY);
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  home.dir.write("idx1_old", "something else");
  update(&home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), new_idx1());
  EXPECT_EQ(home.dir.read("idx1_old"), OLD_IDX1);
  EXPECT_THAT(home.logged(), HasSubstr("Taking account of old history records \n"));
  EXPECT_EQ(SAVED_LOG(), nullptr);
}

TEST(UpdateIdx1File, ASymbolicLinkIsFollowedAndTheModeKept) {
  Home home;
  home.dir.write("CPY/a", COPY);
  home.dir.write("elsewhere", OLD_IDX1);
  chmod("elsewhere", 0640);
  std::filesystem::create_symlink("../elsewhere", "IDX1/idx1_a");
  update(&home);
  EXPECT_TRUE(std::filesystem::is_symlink("IDX1/idx1_a"));
  EXPECT_EQ(home.dir.read("elsewhere"), new_idx1());
  struct stat about;
  stat("elsewhere", &about);
  EXPECT_EQ(about.st_mode & 07777, 0640u);
}

TEST(UpdateIdx1File, AMissingWorkingCopyEndsTheProgramWithoutAWord) {
  Home home;
  ENDS_WITH_STATUS(update(&home), 32, "^$");
  EXPECT_EQ(home.logged(), "");
}

TEST(UpdateIdx1File, AWorkingCopyThatIsADirectoryLeavesTheOldIndex) {
  Home home;
  std::filesystem::create_directory("CPY/a");
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  ENDS_WITH_STATUS(update(&home), 32, "^$");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), OLD_IDX1);
}

TEST(UpdateIdx1File, AWorkingCopyThatCannotBeReadToItsEndLeavesTheOldIndex) {
  Home home;
  // Opens like a file, and nothing can be read where it begins.
  std::filesystem::create_symlink("/proc/self/mem", "CPY/a");
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  ENDS_WITH_STATUS(update(&home), 1, "^cannot read file ./CPY/a: Input/output error \n$");
  EXPECT_THAT(home.logged(), EndsWith("cannot read file ./CPY/a: Input/output error \n"));
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), OLD_IDX1);
}

TEST(UpdateIdx1File, AnOldIndexThatIsNoFileEndsTheProgram) {
  Home home;
  home.dir.write("CPY/a", COPY);
  std::filesystem::create_directory("IDX1/idx1_a");
  ENDS_WITH_STATUS(update(&home), 1, "^cannot read file ./IDX1/idx1_a: Is a directory \n$");
  EXPECT_EQ(home.logged(), "cannot read file ./IDX1/idx1_a: Is a directory \n");
}

TEST(UpdateIdx1File, AnOldIndexWithoutReadPermissionIsNeverReplacedByABlankOne) {
  Home home;
  home.dir.write("CPY/a", COPY);
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  chmod("IDX1/idx1_a", 0200);
  give_to_nobody({".", "IDX1", "IDX1/idx1_a"});
  ENDS_WITH_STATUS(
      {
        become_nobody();
        update(&home);
      },
      1, "cannot read file ./IDX1/idx1_a: Permission denied \n");
  chmod("IDX1/idx1_a", 0600);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), OLD_IDX1);
}

TEST(UpdateIdx1File, AScratchFileThatCannotBeWrittenEndsTheProgramBeforeAnythingIs) {
  Home home;
  home.dir.write("CPY/a", COPY);
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  std::filesystem::create_directory("idx1_old");
  ENDS_WITH_STATUS(update(&home), 1, "^cannot write file ./idx1_old: Is a directory \n$");
  EXPECT_EQ(home.logged(), "cannot write file ./idx1_old: Is a directory \n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), OLD_IDX1);
}

TEST(UpdateIdx1File, AScratchFileThatCannotBeOpenedAgainEndsTheProgram) {
  Home home;
  home.dir.write("CPY/a", COPY);
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  give_to_nobody({".", "IDX1", "IDX1/idx1_a"});
  ENDS_WITH_STATUS(
      {
        become_nobody();
        umask(0444);
        update(&home);
      },
      1, "^sub IDX1_EACH_DICO error fp_class STOP \n$");
  EXPECT_EQ(home.logged(), "sub IDX1_EACH_DICO error fp_class STOP \n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), OLD_IDX1);
}

TEST(UpdateIdx1File, AnIndexThatCannotBeWrittenEndsTheProgram) {
  Home home;
  home.dir.write("CPY/a", COPY);
  std::filesystem::remove("IDX1");
  ENDS_WITH_STATUS(update(&home), 1,
                   "cannot write file ./IDX1/idx1_a: No such file or directory \n$");
}

TEST(UpdateIdx1File, AnOldIndexWithoutSeparatorIsLeftAlone) {
  Home home;
  home.dir.write("CPY/a", COPY);
  home.dir.write("IDX1/idx1_a", "#a *fr1 7 * 1 \r\n" + HISTORY);
  ENDS_WITH_STATUS(update(&home), 1,
                   "^Error no detection of ####### stop \nn file : ./idx1_old \n$");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), "#a *fr1 7 * 1 \r\n" + HISTORY);
}

TEST(UpdateIdx1File, AnOldIndexCutShortIsLeftAlone) {
  Home home;
  home.dir.write("CPY/a", COPY);
  std::string cut = OLD_IDX1.substr(0, OLD_IDX1.find("#a") + 30);
  home.dir.write("IDX1/idx1_a", cut);
  ENDS_WITH_STATUS(update(&home), 3, "./IDX1/idx1_a ends in the middle of an entry: remove its");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), cut);
}

TEST(UpdateIdx1File, TellsTheIndexThatIsTooLong) {
  Home home;
  home.dir.write("CPY/a", COPY);
  std::string records;
  for (int i = 0; i < 3400; i++)
    records += "#w" + std::to_string(i) + " *fr1 7 *\r\n" + HISTORY;
  home.dir.write("IDX1/idx1_a", idx1_header("./IDX1/idx1_a", "fr1") + records);
  testing::internal::CaptureStdout();
  update(&home);
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "index ./IDX1/idx1_a is longer than 10000 lines \n");
}

TEST(CpyAllLessons, CopiesWhatIsNewerThanItsCopyOrHasNone) {
  Home home;
  Test_registry registry({"./one", "lessons/two", "&/three"});
  home.dir.write("one", "#a * 1\n");
  home.dir.write("lessons/two", "#b * 1\n");
  home.dir.write("lessons/three", "#c * 1\n");
  home.dir.write("CPY/two", "older");
  home.dir.write("CPY/three", "newer");
  make_older("CPY/two", 100);
  make_older("lessons/two", 50);
  make_older("lessons/three", 50);
  testing::internal::CaptureStdout();
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "you need to create ./CPY/one \n");
  EXPECT_EQ(home.dir.read("CPY/one"), "#a * 1\r\n");
  EXPECT_EQ(home.dir.read("CPY/two"), "#b * 1\r\n");
  EXPECT_EQ(home.dir.read("CPY/three"), "newer");
  EXPECT_EQ(home.logged(), "CPY_ALL_LESSONS current_dir=" + home.dir.path() +
                               "@@@ \n"
                               "CPY_ALL_LESSONS updated lesson=1  s_cpy=./CPY/one \n"
                               "CPY_ALL_LESSONS updated lesson=2  s_cpy=./CPY/two \n");
}

// The clock was set back since the index was recorded last, or it was recorded this very second.
TEST(CpyAllLessons, TheIndexOfANewCopyIsOutOfDateWhateverItsTime) {
  for (int seconds : {-1000, 0, 5}) {
    Home home;
    Test_registry registry({"./one"});
    home.dir.write("one", "!# one\n#a * 1\n");
    home.dir.write("CPY/one", "older");
    make_older("CPY/one", 100);
    home.dir.write("IDX1/idx1_one", OLD_IDX1);
    make_older("IDX1/idx1_one", seconds);
    CPY_ALL_LESSONS(home.log.get(), &registry.record);
    std::string copy = "CPY/one";
    std::string idx1 = "IDX1/idx1_one";
    EXPECT_EQ(DIFF_TIME_FILE(copy.data(), idx1.data()), -1) << seconds;
    EXPECT_EQ(home.dir.read("IDX1/idx1_one"), OLD_IDX1);
  }
}

TEST(CpyAllLessons, ACopyWithNothingChangedIsToldToo) {
  Home home;
  Test_registry registry({"./one"});
  home.dir.write("one", "#a * 1");
  home.dir.write("CPY/one", "older");
  make_older("CPY/one", 100);
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  EXPECT_EQ(home.dir.read("CPY/one"), "#a * 1");
  EXPECT_THAT(home.logged(), HasSubstr("CPY_ALL_LESSONS updated lesson=1  s_cpy=./CPY/one \n"));
}

TEST(CpyAllLessons, AFileOfTheSameSecondIsNotCopied) {
  Home home;
  Test_registry registry({"./one"});
  home.dir.write("one", "#a * 1\n");
  home.dir.write("CPY/one", "same");
  std::filesystem::last_write_time("CPY/one", std::filesystem::last_write_time("one"));
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  EXPECT_EQ(home.dir.read("CPY/one"), "same");
}

TEST(CpyAllLessons, MakesTheCopyDirectoryWhereItIsMissing) {
  Home home;
  Test_registry registry({});
  std::filesystem::remove("CPY");
  mode_t before = umask(022);
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  umask(before);
  EXPECT_THAT(home.logged(), EndsWith("@@@ \n\n Create directory ./CPY \n"));
  struct stat about;
  ASSERT_EQ(stat("CPY", &about), 0);
  EXPECT_TRUE(S_ISDIR(about.st_mode));
  EXPECT_EQ(about.st_mode & 0777, 0755u);
}

TEST(CpyAllLessons, TheCopyDirectoryIsTheIndexDirectoryLessFourCharacters) {
  const char *directories[][2] = {
      {"./data/IDX1", "./data/CPY"}, {"histories", "histoCPY"}, {"ab", "CPY"}};
  for (auto &directory : directories) {
    Home home;
    std::filesystem::create_directory("data");
    Test_registry registry({"./one"});
    home.dir.write("one", "#a * 1\n");
    g_free(registry.record.spath_idx1);
    registry.record.spath_idx1 = g_strdup(directory[0]);
    testing::internal::CaptureStdout();
    CPY_ALL_LESSONS(home.log.get(), &registry.record);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(home.dir.read(std::string(directory[1]) + "/one"), "#a * 1\r\n");
  }
}

TEST(CpyAllLessons, AMissingDictionaryEndsTheProgram) {
  Home home;
  Test_registry registry({"./one"});
  ENDS_WITH_STATUS(CPY_ALL_LESSONS(home.log.get(), &registry.record), 1,
                   "Error file ./one  does not exist stop \n");
}

TEST(CpyAllLessons, ACopyThatCannotBeMadeIsTold) {
  Home home;
  Test_registry registry({"./one", "./two"});
  home.dir.write("one", "#a * 1\n");
  std::filesystem::create_directory("CPY/one");
  make_older("CPY/one", 100);
  std::filesystem::create_directory("two");
  testing::internal::CaptureStdout();
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  fflush(stdout);
  EXPECT_THAT(testing::internal::GetCapturedStdout(),
              StartsWith("cannot write file ./CPY/one: Is a directory \n"));
  EXPECT_THAT(home.logged(), EndsWith("cannot write file ./CPY/one: Is a directory \n"
                                      "cannot read file ./two: Is a directory \n"));
}

// What it was made from is still there as it was.
TEST(CpyAllLessons, AnIndexKeepsItsTimeWhereItsCopyCannotBeMade) {
  Home home;
  Test_registry registry({"./one"});
  std::filesystem::create_directory("one");
  home.dir.write("CPY/one", "older");
  make_older("CPY/one", 100);
  home.dir.write("IDX1/idx1_one", OLD_IDX1);
  make_older("IDX1/idx1_one", 50);
  auto before = std::filesystem::last_write_time("IDX1/idx1_one");
  testing::internal::CaptureStdout();
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "cannot read file ./one: Is a directory \n");
  EXPECT_EQ(home.dir.read("CPY/one"), "older");
  EXPECT_TRUE(std::filesystem::last_write_time("IDX1/idx1_one") == before);
}

TEST(CpyAllLessons, TellsDictionariesThatShareAnIndex) {
  Home home;
  Test_registry registry({"a/one", "b/one"});
  home.dir.write("a/one", "#a * 1\n");
  home.dir.write("b/one", "#b * 1\n");
  testing::internal::CaptureStdout();
  CPY_ALL_LESSONS(home.log.get(), &registry.record);
  fflush(stdout);
  EXPECT_THAT(testing::internal::GetCapturedStdout(),
              StartsWith("two dictionaries named one share one index \n"));
}

TEST(Idx1AllLessons, RebuildsWhatIsOlderThanItsCopyOrMissing) {
  Home home;
  Test_registry registry({"./a", "./b", "./c"});
  for (const char *name : {"CPY/a", "CPY/b", "CPY/c"}) {
    home.dir.write(name, "!# fr1\r\n#a * 2\r\n");
    make_older(name, 50);
  }
  home.dir.write("IDX1/idx1_a", OLD_IDX1);
  make_older("IDX1/idx1_a", 100);
  home.dir.write("IDX1/idx1_b", "edited by hand");
  testing::internal::CaptureStdout();
  IDX1_ALL_LESSONS(home.log.get(), &registry.record);
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "you need to create ./IDX1/idx1_c \n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), new_idx1());
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), "edited by hand");
  EXPECT_THAT(home.dir.read("IDX1/idx1_c"), HasSubstr("#a *fr1 8 * 2 \r\n" + BLANK_HISTORY));
  EXPECT_THAT(home.logged(),
              HasSubstr("file = ./IDX1/idx1_a has been updated \n"
                        "IDX1_ALL_LESSONS updated lesson=1  s_idx1=./IDX1/idx1_a \n" +
                        UP_TO_DATE + "file = ./IDX1/idx1_b is up to date \n"));
  EXPECT_THAT(home.logged(),
              EndsWith("IDX1_ALL_LESSONS updated lesson=3  s_idx1=./IDX1/idx1_c \n"));
}

TEST(Idx1AllLessons, MakesTheIndexDirectoryWhereItIsMissing) {
  Home home;
  Test_registry registry({});
  std::filesystem::remove("IDX1");
  IDX1_ALL_LESSONS(home.log.get(), &registry.record);
  EXPECT_EQ(home.logged(), "\n Create directory ./IDX1 \n");
  EXPECT_TRUE(std::filesystem::is_directory("IDX1"));
}

TEST(CalcIndex, BringsEverythingUpToDateAndPreparesTheTable) {
  Home home;
  std::filesystem::remove("IDX1");
  std::filesystem::remove("CPY");
  Test_registry registry({"./one", "./two"});
  home.dir.write("one", "!# fr1\n#a * 1\n");
  home.dir.write("two", "!# en2\n#b * 1\n");
  Trf_posit table;
  Owned_stream other = OPEN_STREAM("other_log", "w");
  SET_SAVED_LOG(other.get());
  testing::internal::CaptureStdout();
  CALC_INDEX(home.log.get(), &registry.record, &table);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(SET_SAVED_LOG(nullptr), other.get());
  EXPECT_STREQ(registry.record.st_alias, " fr1 en2 ");
  EXPECT_THAT(home.dir.read("IDX1/idx1_two"), HasSubstr("#b *en2 8 * 1 \r\n"));
  EXPECT_EQ(table.nb_posit, 5);
  EXPECT_EQ(table.QRcum_err[1], -1);
  EXPECT_EQ(table.QRord_posit[5], 5);
  FREE_POSIT(&table);
  std::string log = home.logged();
  EXPECT_LT(log.find("updated lesson=2  s_cpy=./CPY/two"), log.find("updated lesson=1  s_idx1="));
}

TEST(CalcIndex, ASecondStartFindsEverythingUpToDate) {
  Home home;
  Test_registry registry({"./one"});
  home.dir.write("one", "!# fr1\n#a * 1\n");
  Trf_posit table;
  testing::internal::CaptureStdout();
  CALC_INDEX(home.log.get(), &registry.record, &table);
  std::string idx1 = home.dir.read("IDX1/idx1_one");
  size_t logged = home.logged().size();
  CALC_INDEX(home.log.get(), &registry.record, &table);
  testing::internal::GetCapturedStdout();
  FREE_POSIT(&table);
  EXPECT_EQ(home.dir.read("IDX1/idx1_one"), idx1);
  EXPECT_EQ(home.logged().substr(logged), "CPY_ALL_LESSONS current_dir=" + home.dir.path() +
                                              "@@@ \n" + UP_TO_DATE +
                                              "file = ./IDX1/idx1_one is up to date \n");
}
