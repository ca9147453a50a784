// The index of a dictionary that composed lessons and reports visit.
#include "lesson/visited_index.h"

#include "support/prelude.h"
#include "support/scratch.h"

#include "config/registry.h"

namespace {

// Two dictionaries, the second listed twice; only the first has an index.
struct Desk {
  Scratch_dir dir;
  Trf_string registry = {};
  Owned_stream log;

  Desk() : log(OPEN_STREAM("log", "w")) {
    START_REGISTRY(&registry);
    g_free(registry.st_lesson);
    registry.st_lesson = g_strdup("one.txt two.txt two.txt ");
    registry.st_alias = g_strdup(" a1 b2 b2 ");
    registry.nb_lesson = 3;
    std::filesystem::create_directory("IDX1");
    dir.write("IDX1/idx1_one.txt", "text");
  }
  ~Desk() {
    FREE_REGISTRY(&registry);
  }
  std::string logged() {
    fflush(log.get());
    return dir.read("log");
  }
};

} // namespace

TEST(VisitedIndex, IsOpenWithItsPath) {
  Desk desk;
  Trf_registry_walk walk(&desk.registry);
  Trf_visited_index index;
  ASSERT_TRUE(OPEN_VISITED_INDEX(1, &walk, desk.log.get(), &index));
  EXPECT_STREQ(index.s_idx1.get(), "./IDX1/idx1_one.txt");
  EXPECT_EQ(fgetc(index.fp.get()), 't');
  EXPECT_EQ(desk.logged(), "");
}

TEST(VisitedIndex, OneThatCannotBeOpenedIsSkippedWithALineInTheLog) {
  Desk desk;
  Trf_registry_walk walk(&desk.registry);
  Trf_visited_index index;
  EXPECT_FALSE(OPEN_VISITED_INDEX(2, &walk, desk.log.get(), &index));
  EXPECT_EQ(desk.logged(), "cannot open file ./IDX1/idx1_two.txt, skipped \n");
}

TEST(VisitedIndex, WithoutALogOneThatCannotBeOpenedIsSkippedToo) {
  Desk desk;
  Trf_registry_walk walk(&desk.registry);
  Trf_visited_index index;
  EXPECT_FALSE(OPEN_VISITED_INDEX(2, &walk, nullptr, &index));
}

TEST(VisitedIndex, ADictionaryListedBeforeIsPassedOverInSilence) {
  Desk desk;
  Trf_registry_walk walk(&desk.registry);
  Trf_visited_index index;
  EXPECT_FALSE(OPEN_VISITED_INDEX(3, &walk, desk.log.get(), &index));
  EXPECT_FALSE(OPEN_VISITED_INDEX(0, &walk, desk.log.get(), &index));
  EXPECT_FALSE(OPEN_VISITED_INDEX(4, &walk, desk.log.get(), &index));
  EXPECT_EQ(desk.logged(), "");
}
