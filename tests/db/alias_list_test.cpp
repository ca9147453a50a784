// The list of aliases.
#include "support/prelude.h"

#include "db/alias_list.h"

#include <glib.h>

#include "support/scratch.h"
#include "util/owned.h"

namespace {

// A directory with working copies and a registry of them.
struct Trf_copies {
  Scratch_dir dir;
  Trf_string registry = {};

  Trf_copies(const char *lessons, int nb_lesson) {
    START_REGISTRY(&registry);
    g_free(registry.st_lesson);
    registry.st_lesson = g_strdup(lessons);
    registry.nb_lesson = nb_lesson;
  }
  ~Trf_copies() {
    FREE_REGISTRY(&registry);
  }
  void make() {
    Owned_stream log = OPEN_STREAM("log", "w");
    MAKE_ST_ALIAS(log.get(), &registry);
  }
};

} // namespace

TEST(AliasList, EveryAliasStandsBetweenBlanksInRegistryOrder) {
  Trf_copies copies("lessons/a.txt &/b.txt other/c.txt ", 3);
  copies.dir.write("CPY/a.txt", "!# fr1\r\n");
  copies.dir.write("CPY/b.txt", "words\r\n  !#en2 \r\n");
  copies.dir.write("CPY/c.txt", "# x * y\r\n!#  voc, of course\r\n");
  copies.make();
  EXPECT_STREQ(copies.registry.st_alias, " fr1 en2 voc ");
}

TEST(AliasList, WithoutDictionariesItIsOneBlank) {
  Trf_copies copies("", 0);
  copies.make();
  EXPECT_STREQ(copies.registry.st_alias, " ");
}

TEST(AliasList, ASecondListReplacesTheFirst) {
  Trf_copies copies("a.txt", 1);
  copies.dir.write("CPY/a.txt", "!# one\r\n");
  copies.make();
  copies.dir.write("CPY/a.txt", "!# two\r\n");
  copies.make();
  EXPECT_STREQ(copies.registry.st_alias, " two ");
}

TEST(AliasList, ItIsReadFromTheWorkingCopyNotFromTheDictionary) {
  Trf_copies copies("a.txt", 1);
  copies.dir.write("a.txt", "!# dictionary\r\n");
  copies.dir.write("CPY/a.txt", "!# copy\r\n");
  copies.make();
  EXPECT_STREQ(copies.registry.st_alias, " copy ");
}

TEST(AliasList, AMissingWorkingCopyEndsTheProgram) {
  Trf_copies copies("a.txt b.txt", 2);
  copies.dir.write("CPY/a.txt", "!# one\r\n");
  const char *expected = "MAKE_ST_ALIAS error 32 CPY for lesson 2 not found \n";
  ENDS_WITH_STATUS(copies.make(), 32, expected);
  EXPECT_EQ(copies.dir.read("log"), expected);
}

TEST(AliasList, ADictionaryWithoutAliasEndsTheProgram) {
  Trf_copies copies("lessons/a.txt &/b.txt", 2);
  copies.dir.write("CPY/a.txt", "!# one\r\n");
  copies.dir.write("CPY/b.txt", "#! two\r\n");
  const char *expected = "MAKE_ST_ALIAS no alias in file lessons/b.txt STOP \n";
  ENDS_WITH_STATUS(copies.make(), 32, expected);
  EXPECT_EQ(copies.dir.read("log"), expected);
}

TEST(AliasList, WithoutALogTheEndIsToldOnStandardOutputAlone) {
  Trf_copies copies("a.txt", 1);
  ENDS_WITH_STATUS(MAKE_ST_ALIAS(nullptr, &copies.registry), 32,
                   "MAKE_ST_ALIAS error 32 CPY for lesson 1 not found \n");
}
