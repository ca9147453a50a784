// The speaking lessons: every sound they name is there, questions are heard, the buttons are known,
// and the learner is warned before the first sound.
#include "starter/speaking.h"

#include <algorithm>

using testing::Contains;
using testing::HasSubstr;

TEST_F(Speaking, EverySoundNamedIsFoundInSound) {
  for (const Played &sound : all_sounds())
    EXPECT_EQ(path_of(sound.name), "./SOUND/" + sound.name);
  EXPECT_EQ(log().find("rror"), std::string::npos) << log();
}

TEST_F(Speaking, EveryRecordingIsPlayedSomewhere) {
  std::vector<std::string> played;
  for (const Played &sound : all_sounds())
    played.push_back(sound.name);
  for (const auto &file : fs::directory_iterator(starter / "SOUND"))
    EXPECT_THAT(played, Contains(file.path().filename().string()));
}

TEST_F(Speaking, QuestionWithASoundIsHeardAndNotWritten) {
  load(HEARD_LESSON);
  Shown shown = question(1);
  ASSERT_EQ(shown.sounds.size(), 1u);
  EXPECT_EQ(shown.sounds[0].name, "french-words.ogg");
  EXPECT_THAT(shown.lines, testing::ElementsAre("french-words.ogg", "   "));
}

TEST_F(Speaking, QuestionIsWrittenWithTheSoundOff) {
  load(HEARD_LESSON);
  book.sound = 0;
  Shown shown = question(1);
  EXPECT_TRUE(shown.sounds.empty());
  EXPECT_THAT(shown.lines, Contains(HasSubstr("le poisson")));
}

TEST_F(Speaking, QuestionMarkedTwoIsHeardTwice) {
  load(HEARD_LESSON);
  int marked = 0;
  for (int jcont = 1; jcont <= table.nb_posit; jcont++) {
    Shown shown = question(jcont);
    bool two = testing::Value(shown.lines, Contains("(2)"));
    bool twice = shown.sounds.size() == 2 && !shown.sounds[0].whole && !shown.sounds[1].whole;
    EXPECT_EQ(two, twice) << jcont;
    marked += two ? 1 : 0;
  }
  EXPECT_EQ(marked, 7);
}

TEST_F(Speaking, EveryKindOfSoundLineIsThere) {
  int ranges = 0;
  int wholes = 0;
  int boths = 0;
  int silent = 0;
  load(HEARD_LESSON);
  for (int jcont = 1; jcont <= table.nb_posit; jcont++) {
    std::vector<Played> sounds = question(jcont).sounds;
    if (sounds.empty())
      silent++;
    else if (!sounds.back().whole)
      ranges++;
    else if (sounds.size() == 1)
      wholes++;
    else
      boths++;
  }
  EXPECT_EQ(ranges, 33);
  EXPECT_EQ(wholes, 2);
  EXPECT_EQ(boths, 2);
  EXPECT_EQ(silent, 4);
}

TEST_F(Speaking, BorrowedEntryIsWritten) {
  load(HEARD_LESSON);
  Shown shown = question(table.nb_posit - 1);
  EXPECT_TRUE(shown.sounds.empty());
  EXPECT_THAT(shown.lines, Contains(HasSubstr("La gare est loin d'ici.")));
}

TEST_F(Speaking, EveryButtonOfTheTextIsKnownAndPlays) {
  int buttons = 0;
  for (const Trf_piece &piece : text_of(TEXT_LESSON)) {
    if (!piece.button)
      continue;
    buttons++;
    EXPECT_TRUE(piece.known) << piece.text;
    EXPECT_FALSE(sounds_of(piece.text).empty()) << piece.text;
  }
  EXPECT_EQ(buttons, 10);
  EXPECT_EQ(log().find("rror"), std::string::npos) << log();
}

TEST_F(Speaking, OneButtonPlaysSeveralRanges) {
  text_of(TEXT_LESSON);
  std::vector<Played> talk = sounds_of("D>1");
  ASSERT_EQ(talk.size(), 4u);
  const char *const lines[] = {"L>1", "J>1", "L>2", "J>2"};
  for (int i = 0; i < 4; i++) {
    std::vector<Played> line = sounds_of(lines[i]);
    ASSERT_EQ(line.size(), 1u);
    EXPECT_EQ(talk[i].start, line[0].start);
    EXPECT_EQ(talk[i].stop, line[0].stop);
  }
}

TEST_F(Speaking, TextsWarnBeforeTheFirstSoundAndTellTheWayOut) {
  for (int lesson : {HEARD_LESSON, TEXT_LESSON}) {
    std::string text;
    for (const Trf_piece &piece : text_of(lesson))
      text += piece.text;
    std::replace(text.begin(), text.end(), '\240', ' '); // bound blanks beside quotation marks
    Owned_text small(g_ascii_strdown(text.c_str(), -1));
    EXPECT_THAT(small.get(), HasSubstr("on a machine without any sound device mertu ends at the "
                                       "first sound; this is meant to be so."));
    EXPECT_THAT(small.get(),
                HasSubstr("press \"<)))\" below the questions, on the left. the button "
                          "then reads \"< xx\""));
  }
}
