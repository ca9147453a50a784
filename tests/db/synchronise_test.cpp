// Synchronising: the larger of each value, the forms of the path, and what ends it.
#include "db/synchronise.h"

#include "maintenance_home.h"

#include <random>

#include "db/index_update.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string NOTICE = "warning: Synchronize whole data base. \n" + COMPARE_ALL;
const std::string ZEROS = history_line(0, 0, 0, 0) + history_line(0, 0, 0, 0);

void synchronise_with(std::string path, Maintenance_home *home) {
  SYNCHRO_ALL_DBASE(path.data(), &home->book);
}

// The learner's directory where dictionary a stands as it is indexed: only histories may change.
struct Quiet_home : Maintenance_home {
  Quiet_home() {
    book.nbt_lesson = 1;
    dir.write("a", "!# fr1\n# one * x\n");
  }
};

std::string merged_a(const std::string &records) {
  return idx1_header("./IDX1/idx1_a", "fr1") + records + idx1_trailer(19);
}

// The history of "one" in a, after a merge with another copy that holds this one.
std::string merged_history(const std::string &own, const std::string &other) {
  Quiet_home home;
  home.dir.write("IDX1/idx1_a", index_of("a", "fr1", record_of("one", "fr1", 8, own)));
  home.dir.write("other/idx1_a", index_of("a", "xx", record_of("one", "xx", 77, other)));
  synchronise_with("other", &home);
  std::string idx1 = home.dir.read("IDX1/idx1_a");
  size_t begin = idx1.find(" \r\n", idx1.find("#one")) + 3;
  std::string history = idx1.substr(begin, 108);
  EXPECT_EQ(idx1, merged_a(record_of("one", "fr1", 8, history)));
  return history;
}

// The path of a's other index, as it is logged, when the directory is typed so.
std::string other_index_of(const std::string &typed) {
  Quiet_home home;
  synchronise_with(typed, &home);
  std::string log = home.logged();
  std::string before = "cannot read file ";
  if (log.compare(0, before.size(), before) != 0)
    return log;
  return log.substr(before.size(), log.find(": No such") - before.size());
}

void synchro_file(Maintenance_home *home) {
  std::string copy = "./CPY/a", idx1 = "./IDX1/idx1_a", bis = "./other/idx1_a";
  SYNCHRO_IDX1_FILE(home->book.fp_log, copy.data(), idx1.data(), bis.data());
}

} // namespace

TEST(SynchroAll, TheDirectoryIsTakenInEveryForm) {
  EXPECT_EQ(other_index_of("other"), "./other/idx1_a");
  EXPECT_EQ(other_index_of("   other/  "), "./other/idx1_a");
  EXPECT_EQ(other_index_of("x y"), "./x y/idx1_a");
  EXPECT_EQ(other_index_of("./other"), "./other/idx1_a");
  EXPECT_EQ(other_index_of(".\\other\\deep"), "./other/deep/idx1_a");
  EXPECT_EQ(other_index_of("/nowhere/other"), "/nowhere/other/idx1_a");
  EXPECT_EQ(other_index_of("\\nowhere\\"), "/nowhere/idx1_a");
  EXPECT_EQ(other_index_of(".hidden"), "./.hidden/idx1_a");
  EXPECT_EQ(other_index_of(".."), "./../idx1_a");
  EXPECT_EQ(other_index_of("."), "././idx1_a");
  EXPECT_EQ(other_index_of("./"), "./idx1_a");
  EXPECT_EQ(other_index_of("C:\\x"), "./C:/x/idx1_a");
}

TEST(SynchroAll, ABlankPathDoesNothing) {
  Maintenance_home home;
  std::string before = home.all_files();
  synchronise_with("", &home);
  synchronise_with("   ", &home);
  SYNCHRO_ALL_DBASE(nullptr, &home.book);
  EXPECT_EQ(home.all_files(), before);
  EXPECT_EQ(home.logged(), "");
  EXPECT_THAT(NOTICES().told, IsEmpty());
}

TEST(SynchroAll, ThePathIsNotChanged) {
  Quiet_home home;
  std::string path = "  x\\y ";
  SYNCHRO_ALL_DBASE(path.data(), &home.book);
  EXPECT_EQ(path, "  x\\y ");
}

TEST(SynchroAll, TheLearnerIsToldBeforeAnythingIsDone) {
  Maintenance_home home;
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  std::string before = home.all_files();
  NOTICES().meanwhile = [&] { EXPECT_EQ(home.all_files(), before); };
  synchronise_with("other", &home);
  EXPECT_THAT(NOTICES().told, ElementsAre(NOTICE));
  EXPECT_NE(home.all_files(), before);
}

TEST(SynchroAll, CopyAndBackUpAreMadeAndTheIndexIsWrittenFromTheNewCopy) {
  Maintenance_home home;
  std::string old_a = home.dir.read("IDX1/idx1_a");
  home.dir.write("other/idx1_a", index_of("a", "zz", record_of("one", "zz", 1, HISTORY_B)));
  home.dir.write("other/idx1_b", home.dir.read("IDX1/idx1_b"));
  make_older("a", 1000);
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("CPY/a"), "text\r\n!# fr1\r\n# one * x\r\n");
  EXPECT_EQ(home.dir.read("IDX1/cpy_idx1_a"), old_a);
  EXPECT_THAT(home.dir.read("IDX1/idx1_a"), HasSubstr(record_of("one", "fr1", 14, HISTORY_B)));
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
  EXPECT_FALSE(home.dir.exists("idx1_old"));
}

TEST(SynchroAll, TheLogTellsOfEachFile) {
  Quiet_home home;
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("mertu_log"),
            "SYNCHRO_IDX1_FILE reads file ./IDX1/cpy_idx1_a \n"
            "SYNCHRO_IDX1_FILE reads file ./other/idx1_a \n"
            " \n \n              ************\n \n"
            "entrance IDX1_DICO s_fp=./IDX1/idx1_a fr1@@@ \n"
            "Taking account of old history records \n"
            "Primary entries (words, expressions ...) : 1 \n"
            " \n file = ./IDX1/idx1_a has been recomputed and synchronized \n"
            "with file ./other/idx1_a \n");
}

TEST(SynchroAll, ADictionaryWithoutAnotherIndexIsLeftAsItIs) {
  Maintenance_home home;
  home.dir.write("other/idx1_b", home.dir.read("IDX1/idx1_b"));
  std::string copy = home.dir.read("CPY/a");
  std::string idx1 = home.dir.read("IDX1/idx1_a");
  testing::internal::CaptureStdout();
  synchronise_with("other", &home);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(home.dir.read("CPY/a"), copy);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1);
  EXPECT_FALSE(home.dir.exists("IDX1/cpy_idx1_a"));
  EXPECT_THAT(home.logged(), StartsWith("cannot read file ./other/idx1_a: No such file"));
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(SynchroAll, AnotherIndexThatIsNoFileIsToldAndTheDictionaryLeftAsItIs) {
  Quiet_home home;
  std::string before = home.all_files();
  std::filesystem::create_directories("other/idx1_a");
  testing::internal::CaptureStdout();
  synchronise_with("other", &home);
  std::string told = "cannot read file ./other/idx1_a: Is a directory \n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), told);
  EXPECT_EQ(home.logged(), told);
  EXPECT_EQ(home.all_files(), before);
}

TEST(SynchroAll, AnIdenticalCopyLeavesEveryHistoryUnchanged) {
  Maintenance_home home;
  std::filesystem::copy("IDX1", "other");
  synchronise_with("other", &home);
  EXPECT_THAT(home.dir.read("IDX1/idx1_a"), HasSubstr(record_of("one", "fr1", 14, HISTORY_A)));
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
  std::string once = home.dir.read("IDX1/idx1_a") + home.dir.read("IDX1/idx1_b");
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a") + home.dir.read("IDX1/idx1_b"), once);
}

TEST(SynchroAll, TheOwnDirectoryLeavesEveryHistoryUnchanged) {
  Maintenance_home home;
  synchronise_with("IDX1", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_b"), rebuilt_b());
}

TEST(SynchroAll, AMissingIndexOfOnesOwnEndsTheProgramThoughAnOldBackUpIsThere) {
  Quiet_home home;
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  home.dir.write("IDX1/cpy_idx1_a", home.dir.read("IDX1/idx1_a"));
  std::filesystem::remove("IDX1/idx1_a");
  ENDS_WITH_STATUS(synchronise_with("other", &home), 1,
                   "^sub SYNCHRO_IDX1_FILE error fp_class STOP \n$");
  EXPECT_EQ(home.logged(), "sub SYNCHRO_IDX1_FILE error fp_class STOP \n");
}

TEST(SynchroAll, ABackUpThatCannotBeMadeEndsTheProgramAndNothingIsChanged) {
  Quiet_home home;
  home.dir.write("a", "edited\n!# fr1\n# one * x\n");
  home.dir.write("other/idx1_a", index_of("a", "fr1", record_of("one", "fr1", 8, HISTORY_B)));
  std::string before = home.dir.read("IDX1/idx1_a") + home.dir.read("CPY/a");
  std::filesystem::create_directory("IDX1/cpy_idx1_a");
  ENDS_WITH_STATUS(synchronise_with("other", &home), 1,
                   "^sub SYNCHRO_IDX1_FILE error fp_class STOP \n$");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a") + home.dir.read("CPY/a"), before);
}

TEST(SynchroAll, AnErasedRecordIsMendedFirst) {
  Quiet_home home;
  std::string erased = NEVER_LINE.substr(0, 52) + NEVER_LINE.substr(0, 52) + " ;\r\n";
  home.dir.write("a", "!# fr1\n# one * x\n# two * x\n");
  home.dir.write("IDX1/idx1_a", index_of("a", "fr1",
                                         record_of("one", "fr1", 8, HISTORY_B) +
                                             record_of("two", "fr1", 19, erased)));
  home.dir.write("mertu_erased", "./IDX1/idx1_a\n");
  home.dir.write("other/idx1_a", index_of("a", "fr1", ""));
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"),
            idx1_header("./IDX1/idx1_a", "fr1") + record_of("one", "fr1", 8, HISTORY_B) +
                record_of("two", "fr1", 19, ZEROS) + idx1_trailer(30));
  EXPECT_FALSE(home.dir.exists("mertu_erased"));
}

TEST(SynchroIdx1File, EachOfTheEightValuesIsTheLargerOne) {
  EXPECT_EQ(merged_history(history_line(9, 1, 90, 10) + history_line(1, 8, 10, 80),
                           history_line(2, 7, 20, 70) + history_line(6, 3, 60, 30)),
            history_line(9, 7, 90, 70) + history_line(6, 8, 60, 80));
  EXPECT_EQ(merged_history(HISTORY_A, HISTORY_A), HISTORY_A);
}

TEST(SynchroIdx1File, AForgottenHistoryComesBackFromTheOtherCopy) {
  EXPECT_EQ(merged_history(BLANK_HISTORY, HISTORY_B), HISTORY_B);
  EXPECT_EQ(merged_history(HISTORY_B, BLANK_HISTORY), HISTORY_B);
}

TEST(SynchroIdx1File, AFaultyLineIsLoggedWithItsFileAndGoesOnCorrected) {
  Quiet_home home;
  home.dir.write("IDX1/idx1_a",
                 index_of("a", "fr1", record_of("one", "fr1", 8, "short\r\n" + NEVER_LINE)));
  std::string later = history_line(2, 7, 20, 70) + history_line(6, 3, 99999, 30);
  home.dir.write("other/idx1_a", index_of("a", "fr1", record_of("one", "fr1", 8, later)));
  synchronise_with("other", &home);
  EXPECT_EQ(
      home.dir.read("IDX1/idx1_a"),
      merged_a(record_of("one", "fr1", 8, history_line(2, 7, 20, 70) + history_line(0, 3, 0, 30))));
  EXPECT_THAT(home.logged(),
              HasSubstr("IDX1_DICO and CHECK_4LINTsome error in file : ./IDX1/idx1_a \n"));
  EXPECT_THAT(home.logged(),
              HasSubstr("IDX1_DICO and CHECK_4LINTsome error 2 in file : ./other/idx1_a \n"));
}

TEST(SynchroIdx1File, AnEntryInOneCopyOnlyKeepsThatHistory) {
  Quiet_home home;
  home.dir.write("a", "!# fr1\n# one * x\n# two * x\n");
  home.dir.write("other/idx1_a", index_of("a", "fr1", record_of("two", "fr1", 8, HISTORY_B)));
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"),
            idx1_header("./IDX1/idx1_a", "fr1") + record_of("one", "fr1", 8, HISTORY_A) +
                record_of("two", "fr1", 19, HISTORY_B) + idx1_trailer(30));
}

TEST(SynchroIdx1File, AnEntryInNeitherCopyGetsEightZeros) {
  Quiet_home home;
  home.dir.write("a", "!# fr1\n# new * x\n");
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), merged_a(record_of("new", "fr1", 8, ZEROS)));
}

// Forgotten in the other copy, which was taken away before its next start made the record whole.
TEST(SynchroIdx1File, AnErasedRecordOfTheOtherCopyIsABlankHistory) {
  std::string erased = NEVER_LINE.substr(0, 52) + NEVER_LINE.substr(0, 52) + " ;\r\n";
  Quiet_home home;
  std::string other =
      index_of("a", "fr1",
               record_of("one", "fr1", 8, erased) + record_of("le 5 mai", "fr1", 19, HISTORY_B) +
                   record_of("last", "fr1", 30, erased));
  home.dir.write("other/idx1_a", other);
  home.dir.write("a", "!# fr1\n# one * x\n# le 5 mai * x\n# last * x\n");
  synchronise_with("other", &home);
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"),
            idx1_header("./IDX1/idx1_a", "fr1") + record_of("one", "fr1", 8, HISTORY_A) +
                record_of("le 5 mai", "fr1", 19, HISTORY_B) + record_of("last", "fr1", 35, ZEROS) +
                idx1_trailer(47));
  EXPECT_EQ(home.dir.read("other/idx1_a"), other);
  EXPECT_THAT(home.logged(), Not(HasSubstr("error")));
}

TEST(SynchroIdx1File, AnotherLineAtTheNotedPlaceIsNoHistory) {
  Quiet_home home;
  home.dir.write("CPY/a", "!# fr1\r\n# one * x\r\n");
  home.dir.write("idx1_x", index_of("a", "fr1", record_of("one", "fr1", 8, HISTORY_A)));
  Owned_stream fp = OPEN_STREAM("CPY/a", "r");
  Owned_stream fpi = OPEN_STREAM("new", "w");
  Trf_classmt own, other;
  for (Trf_classmt *old : {&own, &other}) {
    INIT_CLASSMT(fopen("idx1_x", "r"), nullptr, "idx1_x", old);
    CLASS_OLD_WORDS(old);
  }
  own.value[1] = 0;
  std::string path = "./IDX1/idx1_a", alias = "fr1";
  int nb = 0;
  SYNCHRO_IDX1(nullptr, fp.get(), path.data(), alias.data(), fpi.get(), &own, &other, &nb);
  fpi.reset();
  EXPECT_EQ(nb, 1);
  EXPECT_EQ(home.dir.read("new"), merged_a(record_of("one", "fr1", 8, HISTORY_A)));
  EXPECT_NE(own.fp_class, nullptr);
  FREE_CLASSMT(&own);
  FREE_CLASSMT(&other);
}

TEST(SynchroIdx1File, EverythingButTheHistoriesIsWrittenAsByARebuild) {
  Quiet_home home;
  home.dir.write("CPY/a",
                 "free text\r\n!# fr1\r\n  #  one   * x\r\n## two * y\r\n#\r\nQ> three, "
                 "four\r\n#######\r\n# no * \r\n#######\r\n# five\r\nEND_OF_FILE\r\n# six\r\n");
  std::string copy = "./CPY/a", idx1 = "./IDX1/idx1_a", bis = "./IDX1/cpy_idx1_a";
  UPDATE_IDX1_FILE(nullptr, copy.data(), idx1.data());
  std::string rebuilt = home.dir.read("IDX1/idx1_a");
  home.dir.write("IDX1/cpy_idx1_a", rebuilt);
  SYNCHRO_IDX1_FILE(nullptr, copy.data(), idx1.data(), bis.data());
  for (size_t at = rebuilt.find(NEVER_LINE); at != std::string::npos; at = rebuilt.find(NEVER_LINE))
    rebuilt.replace(at, 54, history_line(0, 0, 0, 0));
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), rebuilt);
  EXPECT_THAT(rebuilt, HasSubstr("## two * y \r\n"));
}

TEST(SynchroIdx1File, ManyRandomHistoriesAreMergedValueByValue) {
  std::mt19937 random(4711);
  auto upto = [&](long limit) { return (long)(random() % (unsigned long)limit); };
  for (int round = 0; round < 5; round++) {
    Quiet_home home;
    std::string dictionary = "!# fr1\n", own, other, merged;
    for (int i = 0; i < 40; i++) {
      std::string question = "word " + std::to_string(i);
      long offset = (long)dictionary.size() + 1 + i;
      std::string lines[3];
      for (int sens = 0; sens < 2; sens++) {
        long values[2][4];
        for (auto &value : values)
          for (long &number : value)
            number = 1 + upto(3000);
        for (int copy = 0; copy < 2; copy++)
          lines[copy] +=
              history_line(values[copy][0], values[copy][1], values[copy][2], values[copy][3]);
        lines[2] += history_line(
            std::max(values[0][0], values[1][0]), std::max(values[0][1], values[1][1]),
            std::max(values[0][2], values[1][2]), std::max(values[0][3], values[1][3]));
      }
      dictionary += "# " + question + " * x\n";
      own += record_of(question, "fr1", 0, lines[0]);
      other = record_of(question, "fr1", 0, lines[1]) + other; // in another order
      merged += record_of(question, "fr1", offset, lines[2]);
    }
    home.dir.write("a", dictionary);
    home.dir.write("IDX1/idx1_a", index_of("a", "fr1", own));
    home.dir.write("other/idx1_a", index_of("a", "fr1", other));
    synchronise_with("other", &home);
    EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1_header("./IDX1/idx1_a", "fr1") + merged +
                                                idx1_trailer((long)dictionary.size() + 41));
  }
}

TEST(SynchroIdx1File, WithoutTheOtherIndexNothingIsChanged) {
  Quiet_home home;
  home.dir.write("IDX1/cpy_idx1_a", home.dir.read("IDX1/idx1_a"));
  std::string before = home.all_files();
  synchro_file(&home);
  EXPECT_EQ(home.all_files(), before);
  EXPECT_EQ(home.logged(), "cannot read file ./other/idx1_a: No such file or directory \n");
}

TEST(SynchroIdx1File, ABackUpThatCannotBeOpenedEndsTheProgram) {
  Quiet_home home;
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  std::string before = home.all_files();
  ENDS_WITH_STATUS(synchro_file(&home), 1, "^sub SYNCHRO_IDX1_FILE error fp_class STOP \n$");
  EXPECT_EQ(home.logged(), "sub SYNCHRO_IDX1_FILE error fp_class STOP \n");
  EXPECT_EQ(home.all_files(), before);
}

TEST(SynchroIdx1File, AMissingWorkingCopyEndsTheProgramWithoutAWord) {
  Quiet_home home;
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  std::filesystem::remove("CPY/a");
  ENDS_WITH_STATUS(synchro_file(&home), 32, "^$");
}

TEST(SynchroIdx1File, AFaultyOtherIndexEndsTheProgramAndChangesNothing) {
  Quiet_home home;
  std::string idx1 = home.dir.read("IDX1/idx1_a");
  home.dir.write("IDX1/cpy_idx1_a", idx1);
  home.dir.write("other/idx1_a", "no header\r\n");
  ENDS_WITH_STATUS(synchro_file(&home), 1,
                   "^Error no detection of ####### stop \nn file : ./idx1_old \n$");
  EXPECT_THAT(home.logged(), EndsWith("SYNCHRO_IDX1_FILE reads file ./other/idx1_a \n"
                                      "Error no detection of ####### stop \n"
                                      "n file : ./idx1_old \n"));
  home.dir.write("other/idx1_a", index_of("a", "fr1", "#no star \r\n"));
  ENDS_WITH_STATUS(synchro_file(&home), 1,
                   "^Error no detection of #     \\*  stop \nn file : ./idx1_old \n$");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1);
}

TEST(SynchroIdx1File, AnotherIndexCutShortEndsTheProgramAndIsNamed) {
  Quiet_home home;
  std::string idx1 = home.dir.read("IDX1/idx1_a");
  home.dir.write("IDX1/cpy_idx1_a", idx1);
  home.dir.write("other/idx1_a", index_of("a", "fr1", record_of("one", "fr1", 8, NEVER_LINE)));
  ENDS_WITH_STATUS(synchro_file(&home), 3,
                   "^IDX1_DICO error in reading fp_class \n./other/idx1_a ends in the middle");
  EXPECT_THAT(home.logged(), EndsWith("IDX1_DICO error in reading fp_class \n"));
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1);
}

TEST(SynchroIdx1File, ABackUpThatCannotBeReadEndsTheProgram) {
  Quiet_home home;
  std::filesystem::create_symlink("/proc/self/mem", "IDX1/cpy_idx1_a");
  home.dir.write("other/idx1_a", home.dir.read("IDX1/idx1_a"));
  ENDS_WITH_STATUS(synchro_file(&home), 1, "^Error no detection of ####### stop \n");
}

TEST(SynchroIdx1File, AnotherIndexThatCannotBeReadEndsTheProgram) {
  Quiet_home home;
  std::string idx1 = home.dir.read("IDX1/idx1_a");
  home.dir.write("IDX1/cpy_idx1_a", idx1);
  std::filesystem::create_directory("other");
  std::filesystem::create_symlink("/proc/self/mem", "other/idx1_a");
  ENDS_WITH_STATUS(synchro_file(&home), 1,
                   "^cannot read file ./other/idx1_a: Input/output error \n");
  EXPECT_EQ(home.dir.read("IDX1/idx1_a"), idx1);
}

TEST(SynchroIdx1File, APathWithoutIdx1EndsTheProgramBeforeAnythingIsWritten) {
  Quiet_home home;
  std::string copy = "./CPY/a", index = "./x", bis = "./other";
  home.dir.write("x", "mine");
  home.dir.write("cpy_x", home.dir.read("IDX1/idx1_a"));
  home.dir.write("other", home.dir.read("IDX1/idx1_a"));
  ENDS_WITH_STATUS(SYNCHRO_IDX1_FILE(nullptr, copy.data(), index.data(), bis.data()), 1,
                   "^IDX1_DICO erreur 1 stop c=. \n$");
  EXPECT_EQ(home.dir.read("x"), "mine");
}
