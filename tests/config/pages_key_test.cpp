// The key Pages.
#include "support/prelude.h"

#include "config/pages_key.h"

#include <glib.h>

#include "config/config_values.h"
#include "support/scratch.h"
#include "util/owned.h"

namespace {

// A directory with dictionaries, and a registry read there.
struct Trf_reading {
  Scratch_dir dir;
  Trf_string registry = {};
  int n_pages = 77;

  explicit Trf_reading(const std::vector<std::string> &files) {
    for (const std::string &file : files)
      dir.write(file, "text");
    START_REGISTRY(&registry);
  }
  ~Trf_reading() {
    FREE_REGISTRY(&registry);
  }

  std::string read(const char *key_line, const std::string &lines = "") {
    dir.write("list", lines);
    Owned_stream file = OPEN_STREAM("list", "r");
    char line[CONF_LINE];
    g_strlcpy(line, key_line, sizeof(line));
    EXTRACT_PAGES(file.get(), line, &n_pages, &registry);
    return registry.st_lesson;
  }
};

std::string with_value(const char *token, long value) {
  return Owned_text(CASE_ARROW(token, value)).get();
}

std::vector<long> numbers(const char *token) {
  long n1 = -1;
  long n2 = -1;
  EXTRACT_2NB(token, &n1, &n2);
  return {n1, n2};
}

} // namespace

TEST(PagesKey, AListMayBeginOnTheKeyLine) {
  Trf_reading reading({"a", "d/b", "c"});
  EXPECT_EQ(reading.read("Pages :> a d/b", "c <:\n"), "a d/b c ");
  EXPECT_EQ(reading.registry.nb_lesson, 3);
  EXPECT_EQ(reading.n_pages, 3);
}

TEST(PagesKey, AListMayBeginOnTheNextLine) {
  Trf_reading reading({"a"});
  EXPECT_EQ(reading.read("Pages :>  ", "a\n<:\n"), "a ");
}

TEST(PagesKey, AFileThatDoesNotOpenIsLeftOut) {
  Trf_reading reading({"a"});
  EXPECT_EQ(reading.read("Pages :> b a c <:"), "a ");
  EXPECT_EQ(reading.registry.nb_lesson, 1);
}

TEST(PagesKey, ASharpEndsItsLine) {
  Trf_reading reading({"a", "b", "c"});
  EXPECT_EQ(reading.read("Pages :> a #b <:", "c # <:\n#b\n<:"), "a c ");
}

TEST(PagesKey, OnlyTheFirstNameOfARangeKeepsItsDirectory) {
  Trf_reading reading({"d/le1.txt", "d/le2.txt", "d/le4.txt", "le3.txt"});
  EXPECT_EQ(reading.read("Pages :> d/le1->4.txt <:"), "d/le1.txt le2.txt le4.txt ");
  EXPECT_EQ(reading.registry.nb_lesson, 3);
}

TEST(PagesKey, ARangeOfAnyWidthIsReadAtOnce) {
  Trf_reading reading({"words/le3", "words/le2147483647", "words/le12->9", "d2/voc", "le5"});
  EXPECT_EQ(reading.read("Pages :>",
                         "words/le3->2147483647 words/le1->999999999->9 d1->888888888/voc\n<:\n"),
            "words/le3 le2147483647 le12->9 voc ");
}

TEST(PagesKey, WhereTheFirstFileOfARangeIsMissingNoNameHasADirectory) {
  Trf_reading reading({"d/le2.txt", "d/le3.txt"});
  EXPECT_EQ(reading.read("Pages :> d/le1->3.txt <:"), "le2.txt le3.txt ");
}

TEST(PagesKey, ARangeOfDirectoriesCountsNoEmptyName) {
  Trf_reading reading({"d1/a", "d2/a"});
  EXPECT_EQ(reading.read("Pages :> d1->2/ d1/a <:"), "d1/ d1/a ");
  EXPECT_EQ(reading.registry.nb_lesson, 2);
  EXPECT_EQ(reading.n_pages, 2);
}

TEST(PagesKey, ADownwardRangeYieldsNothing) {
  Trf_reading reading({"le1.txt", "le2.txt", "le3.txt"});
  EXPECT_EQ(reading.read("Pages :> le3->1.txt <:"), "");
  EXPECT_EQ(reading.registry.nb_lesson, 0);
}

TEST(PagesKey, AMissingNumberCountsAsZero) {
  Trf_reading reading({"le0.txt", "le1.txt", "le2.txt"});
  EXPECT_EQ(reading.read("Pages :> le->1.txt le2->.txt <:"), "le0.txt le1.txt ");
}

TEST(PagesKey, ASecondArrowStandsInTheName) {
  Trf_reading reading({"u1_p1->2", "u2_p1->2"});
  EXPECT_EQ(reading.read("Pages :> u1->2_p1->2 <:"), "u1_p1->2 u2_p1->2 ");
}

TEST(PagesKey, TheRecordIsStartedAfresh) {
  Trf_reading reading({"a", "b"});
  reading.read("Pages :> a b a b <:");
  EXPECT_EQ(reading.registry.lenmx_str_lesson, 10);
  EXPECT_EQ(reading.read("Pages :> b <:"), "b ");
  EXPECT_EQ(reading.registry.nb_lesson, 1);
  EXPECT_EQ(reading.n_pages, 1);
}

TEST(PagesKey, TheListGrowsToTheNeededLengthPlusTwentyTwo) {
  Trf_reading reading({"abcdefghi", "abcdefghij"});
  reading.read("Pages :> abcdefghi <:");
  EXPECT_EQ(reading.registry.lenmx_str_lesson, 10);
  reading.read("Pages :> abcdefghij <:");
  EXPECT_EQ(reading.registry.lenmx_str_lesson, 33);
}

TEST(PagesKey, ALongListIsReadWhole) {
  Trf_reading reading({"le1", "le2", "le3"});
  std::string lines;
  std::string expected;
  for (int i = 0; i < 100; i++) {
    lines += "le1->3\n";
    expected += "le1 le2 le3 ";
  }
  EXPECT_EQ(reading.read("Pages :>", lines + "<:"), expected);
  EXPECT_EQ(reading.registry.nb_lesson, 300);
}

TEST(PagesKey, AKeyLineWithoutMarkerEndsTheProgram) {
  Trf_reading reading({});
  ENDS_WITH_STATUS(reading.read("Pages a <:"), 1, "error in line s=Pages a <: \n");
}

TEST(PagesKey, AFileThatEndsInsideTheListEndsTheProgram) {
  Trf_reading reading({"a"});
  ENDS_WITH_STATUS(reading.read("Pages :>"), 1, "error 1 while reading in EXTRACT_PAGES stop ");
  ENDS_WITH_STATUS(reading.read("Pages :> a"), 2, "error 2 while reading in EXTRACT_PAGES stop ");
  ENDS_WITH_STATUS(reading.read("Pages :>", "a\n"), 2,
                   "error 2 while reading in EXTRACT_PAGES stop ");
}

TEST(PagesKey, AMarkGluedToANameDoesNotEndTheList) {
  Trf_reading reading({"a"});
  ENDS_WITH_STATUS(reading.read("Pages :> a<:"), 2, "error 2 while reading in EXTRACT_PAGES stop ");
}

TEST(PagesKey, AnArrowThatEndsTheTokenEndsTheProgram) {
  Trf_reading reading({});
  ENDS_WITH_STATUS(reading.read("Pages :> le1-> <:"), 9, "erreur in EXTRACT_2NB stop ");
}

TEST(PagesKey, TheTwoNumbersStandAroundTheArrow) {
  EXPECT_EQ(numbers("d1/le12->034.txt"), (std::vector<long>{12, 34}));
  EXPECT_EQ(numbers("le->x"), (std::vector<long>{0, 0}));
  EXPECT_EQ(numbers("le"), (std::vector<long>{0, 0}));
  ENDS_WITH_STATUS(numbers("le4->"), 9, "erreur in EXTRACT_2NB stop ");
}

TEST(PagesKey, TheValueIsWrittenOverTheRange) {
  EXPECT_EQ(with_value("d/le08->12.txt", 9), "d/le9.txt");
  EXPECT_EQ(with_value("d/le.txt", 9), "d/le.txt");
}

TEST(PagesKey, AValueOutsideItsRangeEndsTheProgram) {
  ENDS_WITH_STATUS(with_value("le4->", 4), 9, "erreur 1 in CASE_ARROW stop ");
  ENDS_WITH_STATUS(with_value("le4->6", 3), 10, "erreur 2 in CASE_ARROW stop ");
  ENDS_WITH_STATUS(with_value("le4->6", 7), 11, "erreur 3 in CASE_ARROW stop ");
}
