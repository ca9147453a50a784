// The name of a numbered lesson, and the numbers and paths that have none.
#include "lesson/lesson_name.h"

#include <gtest/gtest.h>

#include "lesson/desk.h"

namespace {

std::string name_of(Desk *desk, int n) {
  char name[LESSON_NAME_SIZE + 1];
  memset(name, 'x', sizeof(name));
  LESSON_FROM_ORDER(desk->book.fp_log, &desk->registry, n, name);
  EXPECT_EQ(name[LESSON_NAME_SIZE], 'x');
  return name;
}

void ask_name(Desk *desk, int n) {
  char name[LESSON_NAME_SIZE];
  LESSON_FROM_ORDER(desk->book.fp_log, &desk->registry, n, name);
}

TEST(LessonName, IsTheFileNameOfTheDictionary) {
  Desk desk;
  EXPECT_EQ(name_of(&desk, 1), "one.txt");
  EXPECT_EQ(name_of(&desk, 3), "three.txt");
  EXPECT_EQ(desk.log(), "");
}

TEST(LessonName, AMarkedWordIsFoundBesideTheDictionaryBeforeIt) {
  Desk desk;
  EXPECT_EQ(name_of(&desk, 2), "two.txt");
}

TEST(LessonName, AMarkedWordLooksNoFurtherThanTheNearestDirectoryBeforeIt) {
  Desk desk;
  desk.set_list("three.txt words/one.txt &/two.txt", 3);
  EXPECT_EQ(name_of(&desk, 3), "two.txt");
}

TEST(LessonName, AMarkedWordNeedsNoSlash) {
  Desk desk;
  desk.set_list("words/one.txt &two.txt", 2);
  EXPECT_EQ(name_of(&desk, 2), "two.txt");
}

TEST(LessonName, RunsOfBlanksAndLineFeedsSeparateTheWords) {
  Desk desk;
  desk.set_list("  words/one.txt  \n three.txt\n&/four.txt", 3);
  desk.dir.write("four.txt", "");
  EXPECT_EQ(name_of(&desk, 1), "one.txt");
  EXPECT_EQ(name_of(&desk, 2), "three.txt");
}

TEST(LessonName, StaysEmptyWhereTheDictionaryCannotBeOpened) {
  Desk desk;
  desk.set_list("words/gone.txt &/gone2.txt", 2);
  EXPECT_EQ(name_of(&desk, 1), "");
  EXPECT_EQ(desk.log(), "LESSON_FROM_ORDER cannot open file words/gone.txt \n");
  EXPECT_EQ(name_of(&desk, 2), "");
  EXPECT_EQ(desk.log(), "LESSON_FROM_ORDER cannot open file words/gone.txt \n"
                        "LESSON_FROM_ORDER cannot open file words/gone2.txt \n");
}

TEST(LessonName, StaysEmptyWhereTheListIsShorterThanItsCount) {
  Desk desk;
  desk.registry.nb_lesson = 9;
  EXPECT_EQ(name_of(&desk, 9), "");
  g_free(desk.registry.st_lesson);
  desk.registry.st_lesson = nullptr;
  EXPECT_EQ(name_of(&desk, 1), "");
}

TEST(LessonName, ALongNameIsCutToItsBuffer) {
  Desk desk;
  std::string name(180, 'n');
  desk.dir.write(name, "");
  desk.set_list(("./" + name).c_str(), 1);
  EXPECT_EQ(name_of(&desk, 1), name.substr(0, 100));
}

TEST(LessonName, AMarkedPathOf100CharactersIsTaken) {
  Desk desk;
  std::string name(94, 'n'); // "words/" and 94 more
  desk.dir.write("words/" + name, "");
  desk.set_list(("words/one.txt &/" + name).c_str(), 2);
  EXPECT_EQ(name_of(&desk, 2), name);
}

TEST(LessonNameDeathTest, AMarkedPathOf101CharactersEndsTheProgramWithStatus2) {
  Desk desk;
  std::string name(95, 'n');
  desk.dir.write("words/" + name, "");
  desk.set_list(("words/one.txt &/" + name).c_str(), 2);
  ENDS_WITH_STATUS(ask_name(&desk, 2), 2, "sub LESSON_FROM_ORDER error lenpf=101 > 100 stop \n");
  EXPECT_EQ(desk.log(), "sub LESSON_FROM_ORDER error lenpf=101 > 100 stop \n");
}

TEST(LessonNameDeathTest, NumbersOutsideTheRegistryEndTheProgramWithStatus2) {
  Desk desk;
  ENDS_WITH_STATUS(ask_name(&desk, 0), 2, "LESSON_FROM_ORDER error 1 i_order=0 nb_lesson=3 \n");
  EXPECT_EQ(desk.log(), "LESSON_FROM_ORDER error 1 i_order=0 nb_lesson=3 \n");
  ENDS_WITH_STATUS(ask_name(&desk, 4), 2, "LESSON_FROM_ORDER error 1 i_order=4 nb_lesson=3 \n");
  ENDS_WITH_STATUS(ask_name(&desk, -1), 2, "LESSON_FROM_ORDER error 1 i_order=-1 nb_lesson=3 \n");
}

TEST(LessonNameDeathTest, AMarkedWordThatComesFirstEndsTheProgramWithStatus3) {
  Desk desk;
  desk.set_list("&/one.txt", 1);
  ENDS_WITH_STATUS(ask_name(&desk, 1), 3, "PATH_FROM_G_dico error i=0 STOP ");
}

} // namespace
