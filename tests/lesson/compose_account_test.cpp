// The plain account of the composed lessons, held to examples counted by hand.
#include "support/prelude.h"

#include "compose_account.h"
#include "desk.h"

namespace {

using model::Composition;
using model::World;

std::string entries(int nb, const std::string &text, const std::string &histories) {
  std::string records;
  for (int i = 1; i <= nb; i++)
    records += "#" + text + std::to_string(i) + " *a 1 * \r\n" + histories;
  return records;
}

// Dictionaries "A", "B" ... with these records; today is day 3000.
World world_of(const std::vector<std::string> &dictionaries) {
  World world;
  world.today = 3000;
  for (const std::string &records : dictionaries) {
    std::string name(1, (char)('A' + world.nbt_lesson++));
    world.aliases.push_back("of" + name);
    world.paths.push_back(name);
    world.files[name] = HEADER(name, "of" + name) + records + TRAILER();
  }
  return world;
}

Composition composed(const World &world, model::Kind kind, int code = 0) {
  Composition account(world, 1, 3, 0);
  model::Command command;
  command.kind = kind;
  command.code = code;
  account.run(command);
  return account;
}

// The questions in the order of Q->R.
std::string asked(const Composition &account) {
  std::string names;
  for (int i : account.order[0]) {
    const std::string &name = account.table[(size_t)i].name;
    names += name.substr(1, name.find(' ') - 1) + " ";
  }
  return names;
}

} // namespace

TEST(ComposeAccount, TwentyNewWordsAreFifteenOfTheFirstAndFiveOfTheSecondDictionary) {
  std::string unknown = NEVER() + NEVER();
  World world =
      world_of({entries(15, "a", unknown), entries(10, "b", unknown), entries(30, "c", unknown)});
  world.files.erase("C");
  Composition account = composed(world, model::NEW);
  EXPECT_EQ(account.nb(), 20);
  EXPECT_EQ(account.table[15].name, "#a15 *a 1 * ");
  EXPECT_EQ(account.table[20].name, "#b5 *a 1 * ");
  EXPECT_EQ(account.log, "NEW_WORDS_LESSON done\n");
  EXPECT_EQ(account.gene.substr(account.gene.rfind('#')), "# END_OF_FILE * 451 \n");
}

TEST(ComposeAccount, ARejectedNewWordLeavesItsOtherHistoryToTheWordBefore) {
  World world = world_of({"#new *a 1 * \r\n" + NEVER() + NEVER() + "#old *a 1 * \r\n" +
                          HISTORY(1, 0, 2990, 0) + HISTORY(4, 2, 2980, 2970)});
  Composition account = composed(world, model::NEW);
  ASSERT_EQ(account.nb(), 1);
  EXPECT_EQ(account.table[1].way[1].value[1], 4);
  EXPECT_EQ(account.table[1].way[1].value[4], 2970);
  EXPECT_GT(account.table[1].way[1].score, 0);
}

TEST(ComposeAccount, WorstWordsRunFromTheHighestScoreWithoutThoseOfToday) {
  // Scores 28, 42, 24, 1 and 5.
  World world = world_of(
      {"#missed *a 1 * \r\n" + HISTORY(0, 1, 0, 2999) + NEVER() + "#often *a 1 * \r\n" +
       HISTORY(2, 5, 2900, 2902) + NEVER() + "#old *a 1 * \r\n" + HISTORY(9, 0, 2800, 0) + NEVER() +
       "#fresh *a 1 * \r\n" + HISTORY(3, 0, 2998, 0) + NEVER() + "#once *a 1 * \r\n" +
       HISTORY(1, 0, 2990, 0) + NEVER() + "#today *a 1 * \r\n" + HISTORY(0, 9, 0, 3000) + NEVER()});
  for (int code : {1, 2, 3, 4, 5})
    EXPECT_EQ(asked(composed(world, model::WORST, code)), "often missed old once fresh ");
  EXPECT_EQ(asked(composed(world, model::WORST, 6)), "missed often old fresh once ");
}

TEST(ComposeAccount, AmongEqualScoresEachCodeHasItsOwnOrder) {
  World world = world_of({"#few *a 1 * \r\n" + HISTORY(0, 3, 0, 2900) + NEVER() +
                          "#many *a 1 * \r\n" + HISTORY(0, 5, 0, 2990) + NEVER() +
                          "#old *a 1 * \r\n" + HISTORY(0, 4, 0, 2800) + NEVER()});
  EXPECT_EQ(asked(composed(world, model::WORST, 1)), "many old few ");
  EXPECT_EQ(asked(composed(world, model::WORST, 2)), "old few many ");
  EXPECT_EQ(asked(composed(world, model::WORST, 3)), "many few old ");
  EXPECT_EQ(asked(composed(world, model::WORST, 4)), "many old few ");
  EXPECT_EQ(asked(composed(world, model::WORST, 5)), "few old many ");
}

TEST(ComposeAccount, AWordBeyondTwentyTakesTheStorageButNotTheOtherScoreOfADroppedOne) {
  World world = world_of({entries(20, "a", HISTORY(0, 1, 0, 2998) + HISTORY(1, 0, 2990, 0)) +
                              entries(1, "b", HISTORY(0, 2, 0, 2998) + NEVER()),
                          entries(1, "c", HISTORY(0, 1, 0, 2998) + NEVER()) +
                              entries(1, "d", HISTORY(0, 3, 0, 2998) + NEVER())});
  Composition account = composed(world, model::WORST, 4);
  EXPECT_EQ(account.nb(), 20);
  EXPECT_EQ(asked(account),
            "d1 b1 a1 a2 a3 a4 a5 a6 a7 a8 a9 a10 a11 a12 a13 a14 a15 a16 a17 a18 ");
  EXPECT_EQ(account.order[0][0], 19);
  EXPECT_EQ(account.order[0][1], 20);
  EXPECT_EQ(account.table[19].way[1].value[1], 0);
  EXPECT_EQ(account.table[19].way[1].score, 5);
  EXPECT_EQ(account.table[20].way[1].score, 5);
}

TEST(ComposeAccount, QuestionAndResponseMarksAreNoTags) {
  for (const char *text : {"", " ", "x", " Q12 ", " Q12", " R3 ", " Q12 R3 ", " Q12 verbs R3 "})
    EXPECT_TRUE(model::no_tag(text)) << "'" << text << "'";
  for (const char *text : {" verbs", " Q12 verbs", " Qa", "Q12 ", " R", " R3 verbs", " Q12 Rx"})
    EXPECT_FALSE(model::no_tag(text)) << "'" << text << "'";
}

TEST(ComposeAccount, ATagIsFoundBehindTheSecondStarWithoutItsAccents) {
  EXPECT_TRUE(model::carries_tag("#a *b 1 * r\xE9gulier", " regulier "));
  EXPECT_FALSE(model::carries_tag("#a *b 1 * Verbs ", " verbs "));
  EXPECT_FALSE(model::carries_tag("#a verbs *b 1 ", ""));
  EXPECT_TRUE(model::carries_tag("#a *b 1 *", ""));
}
