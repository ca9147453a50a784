// The lesson registry: lookups by number and by alias.
#include "support/prelude.h"

#include "config/registry.h"

#include <glib.h>
#include <string.h>

#include "support/scratch.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// A registry with these strings.
struct Trf_sample {
  Trf_string record = {};

  Trf_sample(const char *lessons, int nb_lesson, const char *aliases = nullptr,
             const char *idx1_directory = "./IDX1") {
    START_REGISTRY(&record);
    set(&record.st_lesson, lessons);
    set(&record.st_alias, aliases);
    set(&record.spath_idx1, idx1_directory);
    record.nb_lesson = nb_lesson;
  }
  ~Trf_sample() {
    FREE_REGISTRY(&record);
  }
  static void set(char **field, const char *text) {
    g_free(*field);
    *field = g_strdup(text);
  }
};

// The text, or "(null)"; frees it.
std::string text_of(char *text) {
  Owned_text owned(text);
  return text == nullptr ? "(null)" : text;
}

int number_of(const char *alias, Trf_sample *sample) {
  std::string copy = alias;
  return NUM_FROM_ALIAS(copy.data(), &sample->record);
}

std::string directory_at(int i, Trf_sample *sample) {
  return text_of(PATH_FROM_G_lesson(i, &sample->record));
}

const char FOUR[] = "lessons/le1.txt &/le2.txt &/le3.txt other/voc.txt ";

} // namespace

TEST(Registry, StartsEmptyWithItsDefaultDirectory) {
  Trf_string record = {};
  START_REGISTRY(&record);
  EXPECT_STREQ(record.st_lesson, "");
  EXPECT_STREQ(record.st_idx1, "");
  EXPECT_EQ(record.st_alias, nullptr);
  EXPECT_STREQ(record.spath_idx1, "./IDX1");
  EXPECT_EQ(record.nb_lesson, 0);
  EXPECT_EQ(record.lenmx_string, 20);
  EXPECT_EQ(record.lenmx_str_lesson, 10);
  FREE_REGISTRY(&record);
  EXPECT_EQ(record.st_lesson, nullptr);
}

TEST(Registry, AnItemWithItsDirectoryIsReturnedAsItStands) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(1, &sample.record)), "lessons/le1.txt");
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(4, &sample.record)), "other/voc.txt");
}

TEST(Registry, AMarkedItemTakesTheDirectoryOfTheNearestItemThatHasOne) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(2, &sample.record)), "lessons/le2.txt");
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(3, &sample.record)), "lessons/le3.txt");
}

TEST(Registry, AnItemWithoutSlashLendsTheWorkingDirectory) {
  Trf_sample sample("le1.txt &/le2.txt /le3.txt &/le4.txt", 4);
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(2, &sample.record)), "./le2.txt");
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(4, &sample.record)), "/le4.txt");
}

TEST(Registry, ItemsAreSeparatedByRunsOfBlanks) {
  Trf_sample sample("   a/x    b/y  ", 2);
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(1, &sample.record)), "a/x");
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(2, &sample.record)), "b/y");
}

TEST(Registry, AMarkedItemWithNoDirectoryBeforeItEndsTheProgram) {
  Trf_sample sample("&/x &/y", 2);
  const char *expected = "S_LESSON_FROM_NUM error i=0 STOP ";
  ENDS_WITH_STATUS(S_LESSON_FROM_NUM(1, &sample.record), 3, expected);
  ENDS_WITH_STATUS(S_LESSON_FROM_NUM(2, &sample.record), 3, expected);
}

TEST(Registry, TheEndOfTheProgramIsLoggedWhereTheLogIsOpen) {
  Scratch_dir dir;
  Trf_sample sample("&/x", 1);
  auto with_log = [&sample]() {
    SET_SAVED_LOG(fopen("log", "w"));
    S_LESSON_FROM_NUM(1, &sample.record);
  };
  ENDS_WITH_STATUS(with_log(), 3, "S_LESSON_FROM_NUM");
  EXPECT_EQ(dir.read("log"), "S_LESSON_FROM_NUM error i=0 STOP ");
}

TEST(Registry, ANumberOutOfRangeGivesNothing) {
  Trf_sample sample(FOUR, 4, " a b c d ");
  for (int num : {-1, 0, 5}) {
    EXPECT_EQ(S_LESSON_FROM_NUM(num, &sample.record), nullptr);
    EXPECT_EQ(S_CPY_LESSON_FROM_NUM(num, &sample.record), nullptr);
    EXPECT_EQ(S_IDX1_FROM_NUM(num, &sample.record), nullptr);
    EXPECT_EQ(S_ALIAS_FROM_NUM(num, &sample.record), nullptr);
  }
}

TEST(Registry, ANumberBeyondTheListGivesNothing) {
  Trf_sample sample("a/x", 2);
  EXPECT_EQ(S_LESSON_FROM_NUM(2, &sample.record), nullptr);
  EXPECT_EQ(S_IDX1_FROM_NUM(2, &sample.record), nullptr);
  EXPECT_EQ(S_ALIAS_FROM_NUM(1, &sample.record), nullptr);
}

TEST(Registry, TheIndexIsNamedAfterTheFile) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(text_of(S_IDX1_FROM_NUM(1, &sample.record)), "./IDX1/idx1_le1.txt");
  EXPECT_EQ(text_of(S_IDX1_FROM_NUM(2, &sample.record)), "./IDX1/idx1_le2.txt");
}

TEST(Registry, TheCopyLiesBesideTheIndexDirectory) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(text_of(S_CPY_LESSON_FROM_NUM(1, &sample.record)), "./CPY/le1.txt");
  EXPECT_EQ(text_of(S_CPY_LESSON_FROM_NUM(3, &sample.record)), "./CPY/le3.txt");
}

TEST(Registry, TheCopyDirectoryIsTheIndexDirectoryLessFourCharacters) {
  Trf_sample other("a/x", 1, nullptr, "/var/words");
  EXPECT_EQ(text_of(S_CPY_LESSON_FROM_NUM(1, &other.record)), "/var/wCPY/x");
  EXPECT_EQ(text_of(S_IDX1_FROM_NUM(1, &other.record)), "/var/words/idx1_x");
  Trf_sample slash("a/x", 1, nullptr, "./IDX1/");
  EXPECT_EQ(text_of(S_CPY_LESSON_FROM_NUM(1, &slash.record)), "./ICPY/x");
}

TEST(Registry, AShortIndexDirectoryPutsTheCopiesInCpy) {
  for (const char *directory : {"", "ab", "abc", "abcd"}) {
    Trf_sample sample("a/x", 1, nullptr, directory);
    EXPECT_EQ(text_of(S_CPY_LESSON_FROM_NUM(1, &sample.record)), "CPY/x");
  }
}

TEST(Registry, TheListOfIndexPathsFollowsTheDictionaries) {
  Trf_sample sample(FOUR, 4);
  LIST_IDX1_PATHS(&sample.record);
  EXPECT_STREQ(sample.record.st_idx1,
               "./IDX1/idx1_le1.txt ./IDX1/idx1_le2.txt ./IDX1/idx1_le3.txt ./IDX1/idx1_voc.txt");
}

TEST(Registry, AnAliasIsFoundByItsNumber) {
  Trf_sample sample(FOUR, 4, " fr1 en2 voc x ");
  EXPECT_EQ(text_of(S_ALIAS_FROM_NUM(1, &sample.record)), "fr1");
  EXPECT_EQ(text_of(S_ALIAS_FROM_NUM(4, &sample.record)), "x");
}

TEST(Registry, ANumberIsFoundByItsAlias) {
  Trf_sample sample(FOUR, 4, " fr1 en2 voc x ");
  EXPECT_EQ(number_of("fr1", &sample), 1);
  EXPECT_EQ(number_of("en2", &sample), 2);
  EXPECT_EQ(number_of("x", &sample), 4);
  EXPECT_EQ(number_of("fr", &sample), -1);
  EXPECT_EQ(number_of("de3", &sample), -1);
}

TEST(Registry, AnAliasIsTrimmedInPlace) {
  Trf_sample sample(FOUR, 4, " fr1 en2 voc x ");
  char alias[] = "  fr1  ";
  EXPECT_EQ(NUM_FROM_ALIAS(alias, &sample.record), 1);
  EXPECT_STREQ(alias, "fr1");
}

TEST(Registry, ABlankAliasIsUnknown) {
  Trf_sample sample(FOUR, 4, " fr1 en2 voc x ");
  EXPECT_EQ(number_of("", &sample), -1);
  EXPECT_EQ(number_of("    ", &sample), -1);
}

TEST(Registry, TheEndOfAnAliasNamesItsDictionary) {
  Trf_sample sample(FOUR, 4, " fr1 en2 voc oc ");
  EXPECT_EQ(number_of("r1", &sample), 1);
  EXPECT_EQ(number_of("n2", &sample), 2);
  EXPECT_EQ(number_of("oc", &sample), 3);
}

TEST(Registry, AnOccurrenceThatGoesOnIsPassedOver) {
  Trf_sample sample(FOUR, 4, " fr12 fr1x fr1 aaab ");
  EXPECT_EQ(number_of("fr1", &sample), 3);
  EXPECT_EQ(number_of("aab", &sample), 4);
}

TEST(Registry, AnAliasAtTheVeryEndOfTheListIsFound) {
  Trf_sample sample(FOUR, 2, "fr1 en2");
  EXPECT_EQ(number_of("fr1", &sample), 1);
  EXPECT_EQ(number_of("en2", &sample), 2);
}

TEST(Registry, TwoAliasesTogetherNameTheFirst) {
  Trf_sample sample(FOUR, 4, " fr1 en2 voc x ");
  EXPECT_EQ(number_of("en2 voc", &sample), 2);
}

TEST(Registry, WithoutAliasesNoneIsKnown) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(number_of("fr1", &sample), -1);
}

TEST(Registry, TheDirectoryIsFoundFromAnyCharacterOfAnItem) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(directory_at(0, &sample), "lessons/");
  EXPECT_EQ(directory_at(14, &sample), "lessons/");
  EXPECT_EQ(directory_at(16, &sample), "lessons/");
  EXPECT_EQ(directory_at(30, &sample), "lessons/");
  EXPECT_EQ(directory_at(36, &sample), "other/");
  EXPECT_EQ(directory_at(48, &sample), "other/");
}

TEST(Registry, ABlankHasNoDirectory) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(directory_at(15, &sample), "(null)");
  EXPECT_EQ(directory_at(49, &sample), "(null)");
}

TEST(Registry, OutsideOfTheListThereIsNoDirectory) {
  Trf_sample sample(FOUR, 4);
  EXPECT_EQ(directory_at(-1, &sample), "(null)");
  EXPECT_EQ(directory_at((int)strlen(FOUR), &sample), "(null)");
  EXPECT_EQ(directory_at(5000, &sample), "(null)");
}

TEST(Registry, AnItemWithoutSlashLiesInTheWorkingDirectory) {
  Trf_sample sample("voc.txt   &/le2.txt /x.txt", 3);
  EXPECT_EQ(directory_at(0, &sample), "./");
  EXPECT_EQ(directory_at(12, &sample), "./");
  EXPECT_EQ(directory_at(20, &sample), "./");
}

TEST(Registry, AMarkedFirstItemHasNoDirectoryAndEndsTheProgram) {
  const char *expected = "PATH_FROM_G_dico error i=0 STOP ";
  Trf_sample first("&/x &/y", 2);
  ENDS_WITH_STATUS(directory_at(0, &first), 3, expected);
  ENDS_WITH_STATUS(directory_at(5, &first), 3, expected);
  Trf_sample behind_blanks("  &/x", 1);
  ENDS_WITH_STATUS(directory_at(3, &behind_blanks), 3, expected);
}

TEST(Registry, AnItemOfAHundredCharactersMustEndTheList) {
  std::string item = "d/" + std::string(98, 'x');
  const char *expected = "PATH_FROM_G_dico error j=100 STOP ";
  Trf_sample at_end(item.c_str(), 1);
  EXPECT_EQ(directory_at(0, &at_end), "d/");
  Trf_sample before_blank((item + " ").c_str(), 1);
  ENDS_WITH_STATUS(directory_at(0, &before_blank), 3, expected);
  Trf_sample longer((item + "x").c_str(), 1);
  ENDS_WITH_STATUS(directory_at(0, &longer), 3, expected);
  Trf_sample shorter((item.substr(0, 99) + " ").c_str(), 1);
  EXPECT_EQ(directory_at(0, &shorter), "d/");
}

TEST(Registry, SharedIndexesAreToldOnceEach) {
  Trf_sample sample("a/x.txt b/x.txt &/y.txt c/x.txt &/y.txt &/z.txt", 6);
  testing::internal::CaptureStdout();
  TELL_SHARED_INDEXES(&sample.record);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "two dictionaries named x.txt share one index \n"
            "two dictionaries named y.txt share one index \n");
}

TEST(Registry, DifferentNamesShareNothing) {
  Trf_sample sample(FOUR, 4);
  testing::internal::CaptureStdout();
  TELL_SHARED_INDEXES(&sample.record);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}
