// Blanks folded and cut; words counted and picked.
#include "util/words.h"

#include <string.h>

namespace {

std::string changed(void (*routine)(char *), const char *text) {
  char *copy = strdup(text);
  routine(copy);
  std::string result = copy;
  free(copy);
  return result;
}

} // namespace

TEST(Words, ExtraBlanksShrinkToOne) {
  EXPECT_EQ(changed(RM_EXTRA_BLANCS, "   a   b  "), " a b ");
  EXPECT_EQ(changed(RM_EXTRA_BLANCS, "a b"), "a b");
  EXPECT_EQ(changed(RM_EXTRA_BLANCS, "    "), " ");
  EXPECT_EQ(changed(RM_EXTRA_BLANCS, ""), "");
}

TEST(Words, OnlySpacesAreBlanks) {
  EXPECT_EQ(changed(RM_EXTRA_BLANCS, "a\t\tb\240\240c"), "a\t\tb\240\240c");
  EXPECT_EQ(changed(RM_ALL_BLANCS, "a\tb c"), "a\tb");
  EXPECT_EQ(COUNT_WORDS("a\tb"), 1);
}

TEST(Words, AllBlanksCutsAtTheFirstSpace) {
  EXPECT_EQ(changed(RM_ALL_BLANCS, "ab cd"), "ab");
  EXPECT_EQ(changed(RM_ALL_BLANCS, " ab"), "");
  EXPECT_EQ(changed(RM_ALL_BLANCS, "ab"), "ab");
  EXPECT_EQ(changed(RM_ALL_BLANCS, ""), "");
}

TEST(Words, WordsAreCountedFromOne) {
  EXPECT_EQ(NTH_WORD(" one  two three ", 1), "one");
  EXPECT_EQ(NTH_WORD(" one  two three ", 2), "two");
  EXPECT_EQ(NTH_WORD(" one  two three ", 3), "three");
}

TEST(Words, WordThatIsNotThereIsEmpty) {
  EXPECT_EQ(NTH_WORD("one two", 3), "");
  EXPECT_EQ(NTH_WORD("one two", 0), "");
  EXPECT_EQ(NTH_WORD("one two", -1), "");
  EXPECT_EQ(NTH_WORD("", 1), "");
  EXPECT_EQ(NTH_WORD("   ", 1), "");
}

TEST(Words, ListHasSoManyWords) {
  EXPECT_EQ(COUNT_WORDS(""), 0);
  EXPECT_EQ(COUNT_WORDS("   "), 0);
  EXPECT_EQ(COUNT_WORDS("one"), 1);
  EXPECT_EQ(COUNT_WORDS("  one two  three "), 3);
}
