// The lesson registry: lookups by number and by alias.
#include "support/prelude.h"

#include "config/registry.h"

#include <glib.h>
#include <string.h>

#include <algorithm>
#include <random>
#include <sstream>

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

// The words of a list.
std::vector<std::string> words_of(const std::string &list) {
  std::vector<std::string> words;
  std::istringstream in(list);
  for (std::string word; in >> word;)
    words.push_back(word);
  return words;
}

std::string drawn_word(std::mt19937 *chance, size_t most) {
  std::string word;
  for (size_t length = 1 + (*chance)() % most; length > 0; length--)
    word += "abA"[(*chance)() % 3];
  return word;
}

// A list of nb words, some of them alike, some the ends of others.
std::string drawn_list(int nb, const char *before, std::mt19937 *chance) {
  std::string list;
  for (int i = 0; i < nb; i++)
    list += std::string(1 + (*chance)() % 2, ' ') + ((*chance)() % 2 == 0 ? "" : before) +
            drawn_word(chance, 4);
  return list + " ";
}

// Whether no alias before the num-th one ends with it.
bool is_first_of_its_end(size_t num, const std::vector<std::string> &aliases) {
  if (num < 1 || num > aliases.size())
    return false;
  const std::string &end = aliases[num - 1];
  return std::none_of(aliases.begin(), aliases.begin() + (long)num - 1,
                      [&](const std::string &alias) {
                        return alias.size() >= end.size() &&
                               alias.compare(alias.size() - end.size(), end.size(), end) == 0;
                      });
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

TEST(RegistryWalk, AnswersAsTheLookupsDoInWhateverOrderItIsAsked) {
  std::mt19937 chance(5);
  for (int round = 0; round < 300; round++) {
    int nb = (int)(chance() % 9);
    std::string lessons = "first/one" + drawn_list(nb, "&/", &chance);
    std::string aliases = drawn_list((int)(chance() % 11), "", &chance);
    Trf_sample sample(lessons.c_str(), nb, aliases.c_str());
    Trf_string *registry = &sample.record;
    Trf_registry_walk walk(registry);
    for (int step = 0; step < 20; step++) {
      int num = (int)(chance() % 12) - 1;
      ASSERT_EQ(text_of(S_LESSON_FROM_NUM(num, &walk)), text_of(S_LESSON_FROM_NUM(num, registry)));
      ASSERT_EQ(text_of(S_CPY_LESSON_FROM_NUM(num, &walk)),
                text_of(S_CPY_LESSON_FROM_NUM(num, registry)));
      ASSERT_EQ(text_of(S_IDX1_FROM_NUM(num, &walk)), text_of(S_IDX1_FROM_NUM(num, registry)));
      Owned_text alias(S_ALIAS_FROM_NUM(num, registry));
      ASSERT_EQ(IS_FOUND_BY_ALIAS(num, &walk),
                alias != nullptr && NUM_FROM_ALIAS(alias.get(), registry) == num)
          << aliases << num;
    }
  }
}

TEST(RegistryWalk, FindsADictionaryWhereNoEarlierAliasEndsWithItsOwn) {
  std::mt19937 chance(6);
  for (int round = 0; round < 300; round++) {
    std::string aliases = drawn_list(12, "", &chance);
    Trf_sample sample(FOUR, 12, aliases.c_str());
    Trf_registry_walk walk(&sample.record);
    for (int num = 0; num <= 13; num++)
      ASSERT_EQ(IS_FOUND_BY_ALIAS(num, &walk), is_first_of_its_end((size_t)num, words_of(aliases)))
          << aliases << num;
  }
}

TEST(RegistryWalk, ADictionaryListedTwiceIsFoundOnce) {
  Trf_sample sample(FOUR, 4, " a1 a1 xa1 c3 ");
  Trf_registry_walk walk(&sample.record);
  EXPECT_TRUE(IS_FOUND_BY_ALIAS(1, &walk));
  EXPECT_FALSE(IS_FOUND_BY_ALIAS(2, &walk));
  EXPECT_TRUE(IS_FOUND_BY_ALIAS(3, &walk));
  EXPECT_TRUE(IS_FOUND_BY_ALIAS(4, &walk));
  EXPECT_TRUE(IS_FOUND_BY_ALIAS(1, &walk));
}

TEST(RegistryWalk, WithoutAliasesNothingIsFound) {
  Trf_sample none(FOUR, 4);
  Trf_registry_walk walk(&none.record);
  EXPECT_FALSE(IS_FOUND_BY_ALIAS(1, &walk));
  Trf_sample few(FOUR, 4, " a1 ");
  Trf_registry_walk short_walk(&few.record);
  EXPECT_TRUE(IS_FOUND_BY_ALIAS(1, &short_walk));
  EXPECT_FALSE(IS_FOUND_BY_ALIAS(2, &short_walk));
  EXPECT_FALSE(IS_FOUND_BY_ALIAS(0, &short_walk));
}

TEST(RegistryWalk, AnItemWithoutAnyDirectoryBeforeItEndsTheProgram) {
  Trf_sample sample("&/le1.txt a/le2.txt ", 2);
  Trf_registry_walk walk(&sample.record);
  EXPECT_EQ(text_of(S_LESSON_FROM_NUM(2, &walk)), "a/le2.txt");
  ENDS_WITH_STATUS(S_LESSON_FROM_NUM(1, &walk), 3, "S_LESSON_FROM_NUM error i=0 STOP ");
}
