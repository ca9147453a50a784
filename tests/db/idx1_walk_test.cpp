// The cursor over an idx1 file.
#include "db/idx1_walk.h"

#include "support/prelude.h"
#include "support/present.h"
#include "support/scratch.h"

#include "util/owned.h"

namespace {

using testing::ElementsAre;

const Trf_walk_texts texts = {"SOME_LESSON and CHECK_4LINT", "OTHER and CHECK_4LINT",
                              "SOME_LESSON "};
const std::string HEADER =
    "./IDX1/idx1_a fr1 \r\n#####################################################\r\n";
const std::string KNOWN = "     5      ;     1      ;    100     ;     90     ;\r\n";
const std::string NEVER = "            ;            ;            ;            ;\r\n";

// A walk over a file of this text.
struct Walked {
  Scratch_dir dir;
  Owned_stream fp;
  Owned_stream log;
  Trf_idx1_walk walk;

  explicit Walked(const std::string &text)
      : fp(open(text)), log(OPEN_STREAM("log", "w")), walk(fp.get(), "idx1_a", log.get(), &texts) {
  }
  FILE *open(const std::string &text) {
    dir.write("idx1_a", text);
    return fopen("idx1_a", "r");
  }
  std::string logged() {
    fflush(log.get());
    return dir.read("log");
  }
};

std::vector<long> history(int sens, Walked *walked) {
  long values[5] = {0, 0, 0, 0, 0};
  READ_HISTORY(sens, 1, &walked->walk, values);
  return std::vector<long>(values + 1, values + 5);
}

} // namespace

TEST(Idx1Walk, GoesFromNameToNameAndReadsBothHistories) {
  Walked walked(HEADER + "#a *fr1 0 * x \r\n" + KNOWN + NEVER + "## b *en1 \r\n#c *fr1 9 * \r\n" +
                NEVER + KNOWN + "# END_OF_FILE * 12  \r\n#d *fr1 9 *\r\n");
  SKIP_HEADER(&walked.walk);
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  EXPECT_EQ(walked.walk.line.start, (long)HEADER.size());
  EXPECT_EQ(walked.walk.line.next, (long)HEADER.size() + 16);
  EXPECT_THAT(history(1, &walked), ElementsAre(5, 1, 100, 90));
  EXPECT_STREQ(walked.walk.line.text, "#a *fr1 0 * x ");
  EXPECT_THAT(history(2, &walked), ElementsAre(0, 0, 0, 0));
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_DOUBLE);
  EXPECT_STREQ(walked.walk.line.text, "## b *en1 ");
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  EXPECT_THAT(history(1, &walked), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(history(2, &walked), ElementsAre(5, 1, 100, 90));
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_END);
  EXPECT_EQ(walked.logged(), "");
}

TEST(Idx1Walk, LinesWithoutMarkAreSkipped) {
  Walked walked(HEADER + "\r\n text\r\n #x\r\n#a *fr1 0 *\r\n" + NEVER + NEVER);
  SKIP_HEADER(&walked.walk);
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_END);
}

TEST(Idx1Walk, AFileWithoutHeaderEndsTheProgram) {
  Walked walked("#a *fr1 0 *\r\n ########\r\n");
  ENDS_WITH_STATUS(SKIP_HEADER(&walked.walk), 1,
                   "Error no detection of ####### stop \nn file : idx1_a \n");
  EXPECT_EQ(walked.dir.read("log"), "Error no detection of ####### stop \nn file : idx1_a \n");
}

TEST(Idx1Walk, AHeaderBehindTenThousandLinesEndsTheProgram) {
  std::string lines;
  for (int i = 0; i < 9999; i++)
    lines += "x\n";
  Walked found(lines + "#######\n");
  SKIP_HEADER(&found.walk);
  EXPECT_EQ(found.walk.line.nb_read, 10000);
  Walked late("y\n" + lines + "#######\n");
  ENDS_WITH_STATUS(SKIP_HEADER(&late.walk), 1, "n file : idx1_a ");
}

TEST(Idx1Walk, HeaderAndEntriesShareTheLinesUnlessMoreAreAllowed) {
  std::string records;
  for (int i = 0; i < 3; i++)
    records += "#a *fr1 0 *\r\n" + NEVER + NEVER;
  Walked shared(HEADER + records);
  shared.walk.line.limit = 3;
  SKIP_HEADER(&shared.walk);
  EXPECT_EQ(NEXT_NAME(&shared.walk), WALK_ENTRY);
  EXPECT_EQ(NEXT_NAME(&shared.walk), WALK_END);
  Walked own(HEADER + records);
  SKIP_HEADER(&own.walk);
  ALLOW_LINES(2, &own.walk);
  EXPECT_EQ(NEXT_NAME(&own.walk), WALK_ENTRY);
  EXPECT_EQ(NEXT_NAME(&own.walk), WALK_END);
}

TEST(Idx1Walk, HistoryLinesAreNotCounted) {
  Walked walked(HEADER + "#a *fr1 0 *\r\n" + NEVER + NEVER + "#b *fr1 0 *\r\n" + NEVER + NEVER);
  SKIP_HEADER(&walked.walk);
  ALLOW_LINES(2, &walked.walk);
  for (int i = 0; i < 2; i++) {
    ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
    history(1, &walked);
    history(2, &walked);
  }
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_END);
}

TEST(Idx1Walk, AFaultyHistoryLineIsLoggedForItsDirectionAndCorrected) {
  Walked walked(HEADER + "#a *fr1 0 *\r\n5;1;\r\n" + KNOWN.substr(1));
  SKIP_HEADER(&walked.walk);
  NEXT_NAME(&walked.walk);
  testing::internal::CaptureStdout();
  EXPECT_EQ(history(1, &walked)[0], 5);
  EXPECT_THAT(history(2, &walked), ElementsAre(5, 1, 100, 90));
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(walked.logged(), "SOME_LESSON and CHECK_4LINTsome error in file : idx1_a \n"
                             "OTHER and CHECK_4LINTsome error in file : idx1_a \n");
}

TEST(Idx1Walk, TheEndMarkWhereAHistoryIsDueIsADamagedLine) {
  Walked walked(HEADER + "#a *fr1 0 *\r\n# END_OF_FILE * 5  \r\n" + KNOWN);
  SKIP_HEADER(&walked.walk);
  NEXT_NAME(&walked.walk);
  testing::internal::CaptureStdout();
  history(1, &walked);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(walked.logged(), "SOME_LESSON and CHECK_4LINTsome error in file : idx1_a \n");
}

TEST(Idx1Walk, AMissingHistoryLineEndsTheProgramByItsDirection) {
  for (int sens = 1; sens <= 2; sens++) {
    Walked walked(HEADER + "#a *fr1 0 *\r\n");
    SKIP_HEADER(&walked.walk);
    NEXT_NAME(&walked.walk);
    long values[5] = {7, 7, 7, 7, 7};
    EXPECT_FALSE(NEXT_HISTORY(sens, &walked.walk, values));
    EXPECT_EQ(values[1], 7);
    ENDS_WITH_STATUS(READ_HISTORY(sens, 4, &walked.walk, values), sens + 1,
                     "SOME_LESSON Error no detection of values icont=4 stop \nin file : idx1_a \n");
    EXPECT_EQ(walked.dir.read("log"),
              "SOME_LESSON Error no detection of values icont=4 stop \nin file : idx1_a \n");
  }
}

TEST(Idx1Walk, HistoriesAreReadWhereverTheBlocksOfTheFileEnd) {
  SET_PRESENT_DAY(2009, 3, 19);
  std::string text = HEADER;
  for (int i = 1; i <= 600; i++) {
    long values[5] = {0, i, 2 * i, 1 + i, 2 + i};
    char line[HISTORY_LENGTH + 1];
    WRITE_HISTORY_LINE(values, line);
    std::string name = "#" + std::string((size_t)i % 7, 'a') + " *fr1 0 * \r\n";
    text += name + line + (i % 9 == 0 ? "\n" : "\r\n") + line + "\r\n";
  }
  Walked walked(text);
  SKIP_HEADER(&walked.walk);
  for (int i = 1; i <= 600; i++) {
    ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
    for (int sens : {1, 2})
      ASSERT_THAT(history(sens, &walked), ElementsAre(i, 2 * i, 1 + i, 2 + i)) << i;
  }
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_END);
  EXPECT_EQ(walked.logged(), "");
}

TEST(Idx1Walk, HistoryLinesOnTheWayToANameAreCounted) {
  const std::string entry = "#a *fr1 0 *\r\n" + KNOWN + NEVER;
  Walked walked(HEADER + entry + entry + entry + "# END_OF_FILE * 12  \r\n");
  SKIP_HEADER(&walked.walk);
  ALLOW_LINES(5, &walked.walk);
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  EXPECT_EQ(walked.walk.line.nb_read, 1);
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  EXPECT_EQ(walked.walk.line.nb_read, 4);
  EXPECT_EQ(walked.walk.line.start, (long)(HEADER.size() + entry.size()));
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_END);
  EXPECT_EQ(walked.walk.line.nb_read, 5);
  EXPECT_EQ(walked.walk.line.start, (long)(HEADER.size() + entry.size() + 13));
}

TEST(Idx1Walk, OnlyHistoryLinesArePassedOver) {
  Walked walked(HEADER + "#a *fr1 0 *\r\n" + KNOWN + "damaged\r\n" + NEVER + "#b *fr1 9 *\r\n" +
                KNOWN + "# END_OF_FILE * 12  \r\n");
  SKIP_HEADER(&walked.walk);
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  for (int i = 1; i <= 3; i++)
    EXPECT_TRUE(PASS_HISTORY(&walked.walk));
  EXPECT_FALSE(PASS_HISTORY(&walked.walk));
  ASSERT_EQ(NEXT_NAME(&walked.walk), WALK_ENTRY);
  EXPECT_STREQ(walked.walk.line.text, "#b *fr1 9 *");
  EXPECT_TRUE(PASS_HISTORY(&walked.walk));
  EXPECT_FALSE(PASS_HISTORY(&walked.walk));
  EXPECT_EQ(NEXT_NAME(&walked.walk), WALK_END);
  EXPECT_FALSE(PASS_HISTORY(&walked.walk));
  EXPECT_EQ(walked.logged(), "");
}

TEST(Idx1Walk, KnowsToday) {
  SET_PRESENT_DAY(2004, 3, 1);
  Walked walked("");
  EXPECT_EQ(walked.walk.date0, 1155);
  RESET_PRESENT();
}
