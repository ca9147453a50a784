// The tags in use: which words are tags, how they are counted, ordered and written.
#include "support/prelude.h"

#include "command/tag_list.h"

#include <string.h>

#include <map>
#include <random>
#include <set>
#include <tuple>

#include "lesson/desk.h"
#include "util/accents.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// The tags of the text behind the second '*' of a name line.
std::vector<std::string> tags_of(const char *rest) {
  std::vector<std::string> found;
  std::string tag;
  while (TAGGED_WORD_LINE(&rest, &tag))
    found.push_back(tag);
  return found;
}

// The record of an entry with these tags and this history.
std::string record(const std::string &tags, const std::string &qr = NEVER(),
                   const std::string &rq = NEVER()) {
  return "#mot *a1 0 *" + tags + "\r\n" + qr + rq;
}

// A desk whose dictionary one.txt holds the given records; the others are empty.
class TagList : public testing::Test {
protected:
  TagList() {
    desk.book.nbt_lesson = 3;
    for (const char *name : {"one.txt", "two.txt", "three.txt"})
      desk.write_idx1(name, TRAILER());
  }
  // The tag lines in their order.
  std::vector<std::string> list() {
    Trf_tags tags;
    testing::internal::CaptureStdout();
    COLLECT_TAGS(&desk.book, &tags);
    fflush(stdout);
    said = testing::internal::GetCapturedStdout();
    MERGESORT_STG_CLASS(1, tags.classmt.nb, tags.classmt.order, tags.text);
    std::vector<std::string> lines;
    for (int i = 1; i <= tags.classmt.nb; i++)
      lines.push_back(TAG_LINE(tags, tags.classmt.order[i]));
    return lines;
  }
  std::vector<std::string> list(const std::string &records) {
    desk.write_idx1("one.txt", records + TRAILER());
    return list();
  }
  // The tags alone, in their order.
  std::vector<std::string> order_of(const std::string &tags) {
    std::vector<std::string> names;
    for (const std::string &line : list(record(tags)))
      names.push_back(line.substr(1, line.find(" nb=") - 1));
    return names;
  }
  void collect() {
    Trf_tags tags;
    COLLECT_TAGS(&desk.book, &tags);
  }
  Desk desk;
  std::string said;
};

} // namespace

TEST(TaggedWordLine, EveryWordIsATag) {
  EXPECT_THAT(tags_of(" food  drink a*b *"), ElementsAre("food", "drink", "a*b", "*"));
  EXPECT_THAT(tags_of("food"), ElementsAre("food"));
}

TEST(TaggedWordLine, MarksAreNoTags) {
  EXPECT_THAT(tags_of(" Q2 R3 food Q12 verb R0"), ElementsAre("food", "verb"));
  EXPECT_THAT(tags_of("Q12"), IsEmpty());
}

TEST(TaggedWordLine, WordThatOnlyBeginsLikeAMarkIsATag) {
  EXPECT_THAT(tags_of("Q R Q1a Q1R2 Quebec q2 2 \311t\351"),
              ElementsAre("Q", "R", "Q1a", "Q1R2", "Quebec", "q2", "2", "\311t\351"));
}

TEST(TaggedWordLine, TextWithoutAWordHasNoTag) {
  EXPECT_THAT(tags_of(""), IsEmpty());
  EXPECT_THAT(tags_of("   "), IsEmpty());
}

TEST(TaggedWordLine, TheTextIsLeftBehindTheTag) {
  const char *rest = " Q2 food verb";
  std::string tag;
  EXPECT_TRUE(TAGGED_WORD_LINE(&rest, &tag));
  EXPECT_STREQ(rest, " verb");
}

TEST_F(TagList, EntriesAreCountedAndThoseAskedInEachDirection) {
  desk.write_idx1("one.txt",
                  record(" food ", HISTORY(1, 0, 2900, 0)) +
                      record(" food verb ", HISTORY(0, 1, 0, 2900), HISTORY(3, 4, 5, 6)) +
                      TRAILER());
  desk.write_idx1("three.txt", record(" food ", NEVER(), NEVER()) + TRAILER());
  EXPECT_THAT(list(), ElementsAre(" food nb=3  QR=2  RQ=1 ", " verb nb=1  QR=1  RQ=1 "));
  EXPECT_EQ(desk.log(), "");
  EXPECT_EQ(said, "");
}

TEST_F(TagList, CountOfZeroIsNotAsked) {
  EXPECT_THAT(list(record("food", HISTORY(0, 0, 0, 0), HISTORY(0, 0, 0, 0))),
              ElementsAre(" food nb=1  QR=0  RQ=0 "));
}

TEST_F(TagList, TagNamedTwiceByAnEntryCountsOnce) {
  EXPECT_THAT(list(record(" food verb food ", HISTORY(1, 0, 2900, 0))),
              ElementsAre(" food nb=1  QR=1  RQ=0 ", " verb nb=1  QR=1  RQ=0 "));
}

TEST_F(TagList, WordsBehindTheSecondStarAloneAreTags) {
  desk.write_idx1("one.txt", "#a b *a1 5\r\n" + NEVER() + NEVER() + "#c\r\n" + NEVER() + NEVER() +
                                 "#d *a1 5 *x *y\r\n" + NEVER() + NEVER() + TRAILER());
  EXPECT_THAT(list(), ElementsAre(" *y nb=1  QR=0  RQ=0 ", " x nb=1  QR=0  RQ=0 "));
}

TEST_F(TagList, DoubleSignLinesHaveNoTagsAndNoHistory) {
  EXPECT_THAT(list("##a *b2 5 * drink \r\n" + record("food")),
              ElementsAre(" food nb=1  QR=0  RQ=0 "));
}

TEST_F(TagList, WhatStandsBehindTheEndMarkDoesNotCount) {
  EXPECT_THAT(list(record("food") + TRAILER() + record("drink")),
              ElementsAre(" food nb=1  QR=0  RQ=0 "));
}

TEST_F(TagList, WithoutTagsTheListIsEmpty) {
  EXPECT_THAT(list(record("") + record(" Q2 ")), IsEmpty());
}

TEST_F(TagList, TagsAreEqualWhenTheirBytesAre) {
  EXPECT_THAT(list(record("ete") + record("\351t\351") + record("Ete") + record("ete")),
              ElementsAre(" Ete nb=1  QR=0  RQ=0 ", " ete nb=2  QR=0  RQ=0 ",
                          " \351t\351 nb=1  QR=0  RQ=0 "));
}

TEST_F(TagList, OrderIsThatOfTheTextsWithoutAccents) {
  EXPECT_THAT(order_of("zoo \351tu ete Zoo \350tape"),
              ElementsAre("Zoo", "\350tape", "ete", "\351tu", "zoo"));
}

TEST_F(TagList, EqualTextsStandInTheOrderOfTheirFirstAppearance) {
  EXPECT_THAT(order_of("b \351t\351 ete a"), ElementsAre("a", "b", "\351t\351", "ete"));
  EXPECT_THAT(order_of("b ete \351t\351 a"), ElementsAre("a", "b", "ete", "\351t\351"));
}

TEST_F(TagList, ManyTagsAreAllKept) {
  std::string records;
  for (int i = 0; i < 300; i++)
    records += record("t" + std::to_string(1000 + i * 7 % 300));
  std::vector<std::string> lines = list(records);
  ASSERT_EQ(lines.size(), 300u);
  for (int i = 0; i < 300; i++)
    EXPECT_EQ(lines[size_t(i)], " t" + std::to_string(1000 + i) + " nb=1  QR=0  RQ=0 ");
}

TEST_F(TagList, DictionaryListedTwiceIsReadOnce) {
  desk.set_list("words/one.txt &/two.txt words/one.txt ", 3);
  g_free(desk.registry.st_alias);
  desk.registry.st_alias = g_strdup(" a1 b2 a1 ");
  EXPECT_THAT(list(record("food")), ElementsAre(" food nb=1  QR=0  RQ=0 "));
}

TEST_F(TagList, IndexThatCannotBeOpenedIsSkipped) {
  std::filesystem::remove("IDX1/idx1_two.txt");
  EXPECT_THAT(list(record("food")), ElementsAre(" food nb=1  QR=0  RQ=0 "));
  EXPECT_EQ(desk.log(), "cannot open file ./IDX1/idx1_two.txt, skipped \n");
}

TEST_F(TagList, DamagedHistoryLineIsLoggedWithoutThePathOfItsIndex) {
  EXPECT_THAT(list(record("food", "7;\r\n", HISTORY(5, 0, 3001, 0))),
              ElementsAre(" food nb=1  QR=1  RQ=0 "));
  EXPECT_EQ(desk.log(), "TAGS_EXTRACT and CHECK_4LINTsome error in file : fp_class \n"
                        "TAGS_EXTRACT and CHECK_4LINTsome error in file : fp_class \n");
}

TEST_F(TagList, MissingHistoryLineEndsTheProgram) {
  for (const std::string &history : {std::string(), NEVER()}) {
    desk.dir.write("log", "");
    desk.write_idx1("one.txt", "#mot *a1 0 *\r\n" + history);
    ENDS_WITH_STATUS(collect(), 1, "TAGS_EXTRACT error 1 ");
    EXPECT_THAT(desk.log(), HasSubstr("TAGS_EXTRACT error 1 \n"));
  }
}

TEST_F(TagList, IndexWithoutHeaderEndsTheProgram) {
  desk.dir.write("IDX1/idx1_two.txt", "######\r\n");
  ENDS_WITH_STATUS(collect(), 1,
                   "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt ");
  EXPECT_EQ(desk.log(), "Error no detection of ####### stop \nn file : ./IDX1/idx1_two.txt \n");
}

TEST_F(TagList, TenThousandEntriesOfADictionaryCount) {
  std::string records;
  for (int i = 1; i <= 9999; i++)
    records += record(i % 2 != 0 ? "odd" : "even");
  EXPECT_THAT(list(records + record("last") + record("over")),
              ElementsAre(" even nb=4999  QR=0  RQ=0 ", " last nb=1  QR=0  RQ=0 ",
                          " odd nb=5000  QR=0  RQ=0 "));
}

TEST_F(TagList, LineOfAHundredCharactersEndsTheProgram) {
  EXPECT_THAT(list(record(std::string(80, 'x'))), ElementsAre(testing::SizeIs(99)));
  desk.write_idx1("one.txt", record(std::string(81, 'x')) + TRAILER());
  ENDS_WITH_STATUS(list(), 2, "DICO_TAGS error length ss= x+ nb=1  QR=0  RQ=0 @@@ ");
  EXPECT_EQ(desk.log(),
            "DICO_TAGS error length ss= " + std::string(81, 'x') + " nb=1  QR=0  RQ=0 @@@ \n");
}

TEST_F(TagList, ForgottenLessonsAreMendedFirst) {
  desk.write_idx1("one.txt", "#a *a1 0 * food\r\n" + NEVER().substr(0, 52) + NEVER().substr(0, 52) +
                                 "; \r\n" + record("verb") + TRAILER());
  desk.dir.write("mertu_erased", "./IDX1/idx1_one.txt\n");
  EXPECT_THAT(list(), ElementsAre(" food nb=1  QR=0  RQ=0 ", " verb nb=1  QR=0  RQ=0 "));
  EXPECT_EQ(desk.log(), "");
}

TEST_F(TagList, IsThatOfAPlainModelForRandomDictionaries) {
  std::mt19937 chance(84);
  const char *const words[] = {"food", "\351t\351", "ete", "Ete",   "Q2",  "R15", "Q",
                               "verb", "\346",      "ae",  "verbe", "a*b", "Quiz"};
  for (int run = 0; run < 60; run++) {
    std::vector<std::string> first;
    std::map<std::string, std::tuple<long, long, long>> counts;
    for (const char *name : {"one.txt", "two.txt", "three.txt"}) {
      std::string records;
      for (unsigned nb = chance() % 6; nb > 0; nb--) {
        std::string tags = chance() % 2 != 0 ? " " : "";
        bool QR = chance() % 2 != 0;
        bool RQ = chance() % 2 != 0;
        std::set<std::string> of_entry;
        for (unsigned i = chance() % 5; i > 0; i--) {
          std::string word = words[chance() % (sizeof words / sizeof *words)];
          tags += word + (chance() % 3 != 0 ? " " : "  ");
          if (word == "Q2" || word == "R15" || !of_entry.insert(word).second)
            continue;
          auto &count = counts[word];
          if (std::get<0>(count) == 0)
            first.push_back(word);
          count = {std::get<0>(count) + 1, std::get<1>(count) + QR, std::get<2>(count) + RQ};
        }
        records += record(tags, QR ? HISTORY(chance() % 2, 1, 2000, 2000) : NEVER(),
                          RQ ? HISTORY(1, 0, 2000, 0) : NEVER());
      }
      desk.write_idx1(name, records + TRAILER());
    }
    auto key = [](const std::string &text) {
      std::vector<char> bytes(2 * text.size() + 2);
      strcpy(bytes.data(), text.c_str());
      RM_ACCENTS(bytes.data());
      return std::string(bytes.data());
    };
    std::stable_sort(first.begin(), first.end(), [&](const std::string &a, const std::string &b) {
      return strcmp(key(a).c_str(), key(b).c_str()) < 0;
    });
    std::vector<std::string> expected;
    for (const std::string &tag : first)
      expected.push_back(" " + tag + " nb=" + std::to_string(std::get<0>(counts[tag])) +
                         "  QR=" + std::to_string(std::get<1>(counts[tag])) +
                         "  RQ=" + std::to_string(std::get<2>(counts[tag])) + " ");
    ASSERT_EQ(list(), expected) << run;
  }
}
