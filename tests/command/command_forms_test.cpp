// What the learner types in the command entry, read.
#include "support/prelude.h"

#include "command/command_forms.h"

#include <random>

#include "quiz/book_of_files.h"

namespace {

// "action code direction argument" of a typed text.
std::string read(const std::string &typed) {
  const char *const names[] = {"sound", "new",  "balance", "worst",  "list tags",
                               "list",  "help", "check",   "trf",    "synchronise",
                               "tag",   "ntag", "lesson",  "unknown"};
  Trf_command command = READ_COMMAND(typed.c_str());
  return names[command.action] + std::string(" ") + std::to_string(command.code) + " " +
         std::to_string(command.sens_qr) + " [" + command.argument + "]";
}

// The lesson a text names with nbt_lesson lessons; what was said and logged.
struct Named : Book_of_files {
  std::string said;

  Named() {
    book.nbt_lesson = 2;
  }
  int operator()(std::string text) {
    testing::internal::CaptureStdout();
    int num = EXTRACT_NB_FIRST_FIELD(text.data(), &book);
    said = testing::internal::GetCapturedStdout();
    return num;
  }
};

const char UNKNOWN_ALIAS[] = "EXTRACT_NB_FIRST_FIELD alias ";

} // namespace

TEST(CommandForms, EachFormIsRead) {
  EXPECT_EQ(read("!sound"), "sound 2 0 []");
  EXPECT_EQ(read("!new"), "new 0 0 []");
  EXPECT_EQ(read("!bal"), "balance 0 0 []");
  EXPECT_EQ(read("!worst"), "worst 1 0 []");
  EXPECT_EQ(read("!worsto"), "worst 2 0 []");
  EXPECT_EQ(read("!worsty"), "worst 3 0 []");
  EXPECT_EQ(read("!worstn"), "worst 4 0 []");
  EXPECT_EQ(read("!lessv"), "worst 5 0 []");
  EXPECT_EQ(read("!ltag"), "list tags 0 0 []");
  EXPECT_EQ(read("!dico"), "list 0 0 []");
  EXPECT_EQ(read("!help"), "help 0 0 []");
  EXPECT_EQ(read("help"), "help 0 0 []");
  EXPECT_EQ(read("!ccdb"), "check 0 0 []");
  EXPECT_EQ(read("!trf"), "trf 0 0 []");
  EXPECT_EQ(read("!synchro other"), "synchronise 0 0 [other]");
  EXPECT_EQ(read("!tag"), "tag 0 0 []");
  EXPECT_EQ(read("!ntag"), "ntag 0 0 []");
  EXPECT_EQ(read("12"), "lesson 0 0 [12]");
}

TEST(CommandForms, ASpaceEndsAWordAsTheEndDoes) {
  for (const char *word : {"!new", "!bal", "!worst", "!worsto", "!worsty", "!worstn", "!lessv",
                           "!ltag", "!dico", "!help", "help", "!ccdb", "!trf", "!tag", "!tagqr",
                           "!tagrq", "!ntag", "!ntagqr", "!ntagrq"}) {
    std::string form = word;
    EXPECT_NE(READ_COMMAND(word).action, ACTION_LESSON) << word;
    EXPECT_EQ(read(form + " "), read(form)) << word;
    EXPECT_EQ(read(form + "   "), read(form)) << word;
  }
}

TEST(CommandForms, ALetterGluedToTheWordMakesItAnAlias) {
  for (std::string word : {"!new",  "!bal",   "!worst", "!worsto", "!worsty", "!worstn", "!lessv",
                           "!ltag", "!dico",  "!help",  "help",    "!ccdb",   "!trf",    "!synchro",
                           "!tag",  "!tagqr", "!tagrq", "!ntag",   "!ntagqr", "!ntagrq"})
    for (std::string glued : {"x", "s ", "!", "\t", "."})
      EXPECT_EQ(read(word + glued), "lesson 0 0 [" + word + glued + "]");
  EXPECT_EQ(read("!newx"), "lesson 0 0 [!newx]");
  EXPECT_EQ(read("!worstx"), "lesson 0 0 [!worstx]");
  EXPECT_EQ(read("!newqr"), "lesson 0 0 [!newqr]"); // glued directions are for tags alone
}

TEST(CommandForms, AWordCutShortOrWrittenLargeIsAnAlias) {
  for (std::string text : {"!ne", "!", "new", "!New", "!WORST", "hel", "Help", " !new", " help",
                           "!ta", "!nta", "!sond", " !sound", "!Sound", "bal"})
    EXPECT_EQ(read(text), "lesson 0 0 [" + text + "]");
}

TEST(CommandForms, SoundIsSwitchedOnOffOrOver) {
  EXPECT_EQ(READ_COMMAND("!sound on").code, SOUND_ON);
  EXPECT_EQ(READ_COMMAND("!sound   on").code, SOUND_ON);
  EXPECT_EQ(READ_COMMAND("!sound once more").code, SOUND_ON);
  EXPECT_EQ(READ_COMMAND("!sound off").code, SOUND_OFF);
  EXPECT_EQ(READ_COMMAND("!sound offer").code, SOUND_OFF);
  for (const char *text : {"!sound", "!sound ", "!sound o", "!sound of", "!sound On", "!sound OFF",
                           "!sound please on"})
    EXPECT_EQ(READ_COMMAND(text).code, SOUND_OTHER) << text;
}

TEST(CommandForms, WhateverBeginsWithSoundIsTheSoundSwitch) {
  EXPECT_EQ(read("!soundon"), "sound 1 0 [on]");
  EXPECT_EQ(read("!soundoff"), "sound 0 0 [off]");
  EXPECT_EQ(read("!sounds off"), "sound 2 0 [s off]");
}

TEST(CommandForms, ADirectionMayFollowAComposition) {
  for (std::string word : {"!new", "!bal", "!worst", "!worsto", "!worsty", "!worstn", "!lessv"}) {
    EXPECT_EQ(READ_COMMAND((word + " qr").c_str()).sens_qr, 1) << word;
    EXPECT_EQ(READ_COMMAND((word + " rq").c_str()).sens_qr, 2) << word;
    EXPECT_EQ(READ_COMMAND((word + "    rq 12").c_str()).sens_qr, 2) << word;
    EXPECT_EQ(READ_COMMAND((word + " qrs").c_str()).sens_qr, 1) << word;
    for (const char *other : {" q", " r", " QR", " Rq", " x rq", " -rq", " 2"})
      EXPECT_EQ(READ_COMMAND((word + other).c_str()).sens_qr, 0) << word << other;
  }
}

TEST(CommandForms, NoDirectionFollowsAReportOrATask) {
  for (const char *text : {"!ltag rq", "!dico rq", "!help rq", "help rq", "!ccdb rq", "!trf rq",
                           "!synchro rq", "!tag rq", "!ntag qr"})
    EXPECT_EQ(READ_COMMAND(text).sens_qr, 0) << text;
}

TEST(CommandForms, TheDirectionOfATagIsGluedToItsCommand) {
  EXPECT_EQ(read("!tagqr verbs"), "tag 0 1 [ verbs ]");
  EXPECT_EQ(read("!tagrq verbs"), "tag 0 2 [ verbs ]");
  EXPECT_EQ(read("!ntagqr verbs"), "ntag 0 1 [ verbs ]");
  EXPECT_EQ(read("!ntagrq verbs"), "ntag 0 2 [ verbs ]");
  EXPECT_EQ(read("!tagrq"), "tag 0 2 []");
  EXPECT_EQ(read("!ntagqr  "), "ntag 0 1 []");
  EXPECT_EQ(read("!tag qr"), "tag 0 0 [ qr ]"); // a tag of that name
}

TEST(CommandForms, OtherLettersGluedToATagCommandMakeItAnAlias) {
  for (std::string text : {"!tags", "!tagq", "!tagr verbs", "!tagqrs", "!tagrqx verbs", "!tagqq",
                           "!tagQR", "!ntagx", "!ntagqrs", "!ntagr", "!tagverbs"})
    EXPECT_EQ(read(text), "lesson 0 0 [" + text + "]");
}

TEST(CommandForms, TheTagIsPassedSmallAndWithoutAccentsBetweenSpaces) {
  EXPECT_EQ(read("!tag Verbes"), "tag 0 0 [ verbes ]");
  EXPECT_EQ(read("!tagrq Verbes irr\303\251guliers"), "tag 0 2 [ verbes irreguliers ]");
  EXPECT_EQ(read("!ntag    \303\211T\303\211"), "ntag 0 0 [ ete ]");
  EXPECT_EQ(read("!tag \\'et\\'e"), "tag 0 0 [ ete ]");
  EXPECT_EQ(read("!tag Q12"), "tag 0 0 [ q12 ]");
}

TEST(CommandForms, SeveralWordsStayOneTag) {
  EXPECT_EQ(read("!tag a b"), "tag 0 0 [ a b ]");
  EXPECT_EQ(read("!tag  a  b"), "tag 0 0 [ a  b ]");
  EXPECT_EQ(read("!tag a "), "tag 0 0 [ a  ]"); // her own space, and the one behind every tag
}

TEST(CommandForms, NoTagIsPassedAsTheEmptyText) {
  EXPECT_EQ(TAG_TO_SEARCH(""), "");
  EXPECT_EQ(TAG_TO_SEARCH("   "), "");
  EXPECT_EQ(read("!tag"), "tag 0 0 []");
  EXPECT_EQ(read("!ntag   "), "ntag 0 0 []");
  EXPECT_EQ(TAG_TO_SEARCH("\\"), "  "); // a sign that means nothing is a tag that no entry has
}

TEST(CommandForms, LigaturesInATagHaveRoomForTheirLetters) {
  EXPECT_EQ(TAG_TO_SEARCH("\346"), " ae ");
  EXPECT_EQ(TAG_TO_SEARCH("\306"), " ae ");
  EXPECT_EQ(TAG_TO_SEARCH("\306\306\346\346").front(), ' ');
  EXPECT_EQ(TAG_TO_SEARCH(std::string(5000, '\346').c_str()).size() % 2, 0u);
}

TEST(CommandForms, LettersThatKeepTheirAccentsAreNotMadeSmall) {
  EXPECT_EQ(TAG_TO_SEARCH("\300B\304"), " \300b\304 "); // capital A with an accent
}

TEST(CommandForms, NamesFollowACheckAsTyped) {
  EXPECT_EQ(read("!ccdb verbs nouns"), "check 0 0 [verbs nouns]");
  EXPECT_EQ(read("!ccdb   \303\251t\303\251 2 "), "check 0 0 [\351t\351 2 ]");
}

TEST(CommandForms, SynchronisingAsksForASpaceNotForADirectory) {
  EXPECT_EQ(read("!synchro"), "lesson 0 0 [!synchro]");
  EXPECT_EQ(read("!synchro "), "synchronise 0 0 []");
  EXPECT_EQ(read("!synchro   ../a b"), "synchronise 0 0 [../a b]");
}

TEST(CommandForms, AnythingElseIsALessonInCp1252) {
  EXPECT_EQ(read(""), "lesson 0 0 []");
  EXPECT_EQ(read("  "), "lesson 0 0 [  ]");
  EXPECT_EQ(read(" fran\303\247ais "), "lesson 0 0 [ fran\347ais ]");
  EXPECT_EQ(read("\342\202\254"), "lesson 0 0 [\200]");
}

TEST(CommandForms, ATextWithALetterThatCp1252LacksNamesNothing) {
  for (std::string text : {"\320\266", "!new \320\266", "!sound \320\266", "2 \320\266", "\377"})
    EXPECT_EQ(read(text), "unknown 0 0 [" + text + "]");
}

TEST(CommandForms, ATextOfAnyLengthIsRead) {
  std::string many(100000, 'a');
  EXPECT_EQ(READ_COMMAND(many.c_str()).argument, many);
  EXPECT_EQ(READ_COMMAND(("!tag " + many).c_str()).argument, " " + many + " ");
  EXPECT_EQ(READ_COMMAND(("!new" + std::string(100000, ' ') + "rq").c_str()).sens_qr, 2);
}

TEST(CommandForms, AnyBytesAreReadInBounds) {
  std::mt19937 chance(8);
  const std::string parts[] = {"!tag",     "!new",     "!sound", "qr", "rq",       " ",
                               "\\",       "\\'",      "\\a",    "e",  "\303\206", "\303\246",
                               "\303\251", "\320\266", "\377",   "!",  "help"};
  for (int i = 0; i < 3000; i++) {
    std::string text;
    for (unsigned nb = chance() % 8; nb > 0; nb--)
      text += parts[chance() % std::size(parts)];
    Trf_command command = READ_COMMAND(text.c_str());
    if ((command.action == ACTION_TAG || command.action == ACTION_NEW_TAG) &&
        !command.argument.empty()) {
      EXPECT_EQ(command.argument.front(), ' ') << text;
      EXPECT_EQ(command.argument.back(), ' ') << text;
      EXPECT_GE(command.argument.size(), 2u) << text;
    }
  }
}

TEST(LessonNamed, ANumberIsTakenAsItIs) {
  Named named;
  EXPECT_EQ(named("2"), 2);
  EXPECT_EQ(named("   2"), 2);
  EXPECT_EQ(named("007"), 7);
  EXPECT_EQ(named("0"), 0);
  EXPECT_EQ(named("99"), 99); // what the entry makes of it is its own
  EXPECT_EQ(named.log(), "");
  EXPECT_EQ(named.said, "");
}

TEST(LessonNamed, WhatFollowsTheNumberDoesNotMatter) {
  Named named;
  EXPECT_EQ(named("2 bb"), 2);
  EXPECT_EQ(named("1 2"), 1);
  EXPECT_EQ(named("1   "), 1);
}

TEST(LessonNamed, ANumberOfAnyLengthStaysAnInteger) {
  Named named;
  EXPECT_EQ(named("99999999999"), INT_MAX);
  EXPECT_EQ(named(std::string(5000, '9')), INT_MAX);
}

TEST(LessonNamed, AWordOfDigitsIsNeverAnAlias) {
  Named named;
  g_free(named.registry.st_alias);
  named.registry.st_alias = g_strdup(" aa 1 ");
  EXPECT_EQ(named("1"), 1);
}

TEST(LessonNamed, AnAliasIsLookedUpAsAWhole) {
  Named named;
  EXPECT_EQ(named("aa"), 1);
  EXPECT_EQ(named("  bb "), 2);
  EXPECT_EQ(named("bb 1"), -1);
  EXPECT_EQ(named("2nd"), -1);
}

TEST(LessonNamed, ABlankTextNamesNoneInSilence) {
  Named named;
  EXPECT_EQ(named(""), -1);
  EXPECT_EQ(named("    "), -1);
  EXPECT_EQ(named.log(), "");
  EXPECT_EQ(named.said, "");
}

TEST(LessonNamed, AnUnknownAliasIsLoggedAndSaid) {
  Named named;
  EXPECT_EQ(named(" !newx "), -1);
  EXPECT_EQ(named.log(), UNKNOWN_ALIAS + std::string("!newx is unknown\n"));
  EXPECT_EQ(named.said, named.log());
}

TEST(LessonNamed, SignsMakeANumberAnAlias) {
  Named named;
  for (const char *text : {"-1", "+1", "1.", "1,2", "1a"})
    EXPECT_EQ(named(text), -1) << text;
}

TEST(LessonNamed, TheTextIsLeftAsItIs) {
  Named named;
  char text[] = "  bb  ";
  EXPECT_EQ(EXTRACT_NB_FIRST_FIELD(text, &named.book), 2);
  EXPECT_STREQ(text, "  bb  ");
}
