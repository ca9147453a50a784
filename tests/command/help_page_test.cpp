// The help page tells the commands that there are: each one it names is read as one, none is left
// out.
#include "support/prelude.h"

#include <algorithm>
#include <set>

#include "command/command_forms.h"

namespace {

// What stands before " : " in the lines of the page's commands and lists.
std::vector<std::string> commands_told() {
  std::ifstream page(MERTU_SOURCE "/share/starter/mertu_list.txt");
  std::vector<std::string> told;
  for (std::string line; std::getline(page, line);) {
    size_t end = line.find(" : ");
    if (end != std::string::npos && (line[0] == '!' || line.rfind("help", 0) == 0))
      told.push_back(line.substr(0, end));
  }
  return told;
}

Trf_command reading(const std::string &typed) {
  return READ_COMMAND(typed.c_str());
}

} // namespace

TEST(HelpPage, EachCommandItTellsIsOne) {
  for (const std::string &typed : commands_told())
    EXPECT_NE(reading(typed).action, ACTION_LESSON) << typed;
}

TEST(HelpPage, TellsEveryCommand) {
  std::vector<std::string> told = commands_told();
  std::set<std::string> words;
  for (const std::string &typed : told)
    words.insert(typed.substr(0, typed.find(' ')));
  for (const char *word : {"!sound", "!new", "!bal", "!worst", "!worsto", "!worsty", "!worstn",
                           "!lessv", "!ltag", "!dico", "!help", "help", "!ccdb", "!trf", "!synchro",
                           "!tag", "!tagrq", "!ntag", "!ntagqr"})
    EXPECT_EQ(words.count(word), 1u) << word;
}

TEST(HelpPage, TellsEveryActionAndCode) {
  std::set<std::pair<int, int>> told;
  for (const std::string &typed : commands_told())
    told.insert({reading(typed).action, reading(typed).code});
  for (int code = 1; code <= 5; code++)
    EXPECT_EQ(told.count({ACTION_WORST, code}), 1u) << code;
  for (int code : {SOUND_OFF, SOUND_ON, SOUND_OTHER})
    EXPECT_EQ(told.count({ACTION_SOUND, code}), 1u) << code;
  for (int action = ACTION_SOUND; action < ACTION_LESSON; action++)
    EXPECT_TRUE(std::any_of(told.begin(), told.end(), [action](auto one) {
      return one.first == action;
    })) << action;
}

TEST(HelpPage, ItsDirectionsAreRead) {
  EXPECT_EQ(reading("!new rq").sens_qr, 2);
  EXPECT_EQ(reading("!worst qr").sens_qr, 1);
  EXPECT_EQ(reading("!tagrq verbs").sens_qr, 2);
  EXPECT_EQ(reading("!ntagqr verbs").sens_qr, 1);
  for (const char *typed : {"!tag verbs", "!ntag verbs", "!tagrq verbs", "!ntagqr verbs"})
    EXPECT_EQ(reading(typed).argument, " verbs ") << typed;
}

TEST(HelpPage, TellsThatAComposedLessonIsNotForgotten) {
  std::ifstream page(MERTU_SOURCE "/share/starter/mertu_list.txt");
  std::string text(std::istreambuf_iterator<char>(page), {});
  EXPECT_THAT(text,
              testing::HasSubstr("in a lesson that a command\nhas put together it does nothing"));
}
