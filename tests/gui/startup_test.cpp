// The real program: where it finds its directory, that it runs once there, how it ends.
#include "support/prelude.h"

#include "gui/program.h"
#include "gui/window.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

void fill(const Scratch_dir &dir, const std::string &folder) {
  for (const auto &[name, bytes] : TWO_LESSONS())
    dir.write(folder + name, bytes);
}

// A button as the program traced it last: its middle, and how far its left edge is from there.
struct Place {
  int x = -1;
  int y = -1;
  int to_left = 0;
};

Place traced_place(const std::string &output, const std::string &label) {
  std::string start = "button " + label + " at ";
  size_t found = output.rfind(start);
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  if (found == std::string::npos || sscanf(output.c_str() + found + start.size(), "%d %d %d %d",
                                           &left, &top, &width, &height) != 4)
    return {};
  return {left + width / 2, top + height / 2, width / 2};
}

} // namespace

TEST(Startup, FromItsOwnDirectoryOpensTheWindowAndEndsWellWhenItIsClosed) {
  Scratch_dir dir;
  fill(dir, "");
  Program program("./prog.x", dir.path());
  EXPECT_TRUE(program.close_window()) << program.output();
  EXPECT_EQ(program.status(), 0) << program.output();
  EXPECT_THAT(program.output(), HasSubstr("argv[0]=./prog.x"));
  EXPECT_TRUE(dir.exists("mertu_log"));
  EXPECT_TRUE(dir.exists("IDX1/idx1_a.txt"));
  EXPECT_TRUE(dir.exists("CPY/b.txt"));
  EXPECT_FALSE(dir.exists("Mertu_last_state"));
}

TEST(Startup, FromElsewhereWorksInTheProgramsDirectory) {
  Scratch_dir dir;
  fill(dir, "some/dir/");
  dir.write("elsewhere/nothing", "");
  Program program(dir.path() + "/some/dir/prog.x", dir.path() + "/elsewhere");
  EXPECT_TRUE(program.close_window()) << program.output();
  EXPECT_EQ(program.status(), 0) << program.output();
  EXPECT_TRUE(dir.exists("some/dir/IDX1/idx1_a.txt"));
  EXPECT_FALSE(dir.exists("elsewhere/mertu_log"));
}

TEST(Startup, ByItsBareNameFromElsewhereFindsNoConfiguration) {
  Scratch_dir dir;
  Program program("prog.x", dir.path());
  EXPECT_EQ(program.status(), 1);
  EXPECT_THAT(program.output(), EndsWith("\nfile ./mertu.conf unreachable stop \n"));
  EXPECT_FALSE(dir.exists("mertu_log"));
}

TEST(Startup, UnderANameWithoutTheEndingEndsAtOnce) {
  Scratch_dir dir;
  fill(dir, "");
  Program program("./prog", dir.path());
  EXPECT_EQ(program.status(), 1);
  EXPECT_THAT(program.output(), EndsWith("\nerror not .x at end of argv[0]=./prog@@@@ \n"));
  EXPECT_FALSE(dir.exists("mertu_log"));
}

TEST(Startup, AFaultyConfigurationEndsTheProgramBeforeThereIsAWindow) {
  Scratch_dir dir;
  fill(dir, "");
  dir.write("mertu.conf", "\n");
  Program program("./prog.x", dir.path());
  EXPECT_EQ(program.status(), 0);
  EXPECT_THAT(program.output(), HasSubstr("order unknown =-1"));
  EXPECT_FALSE(dir.exists("mertu_log"));
}

TEST(Startup, ASecondProgramInTheSameDirectoryEndsAndTouchesNothing) {
  Scratch_dir dir;
  fill(dir, "");
  Program first("./prog.x", dir.path(), {"MERTU_TRACE=1"});
  ASSERT_TRUE(first.says("button Quit at ")) << first.output();
  dir.write("mertu_log", "what the first one wrote\n");

  Program second("./prog.x", dir.path());
  EXPECT_EQ(second.status(), 1);
  EXPECT_THAT(second.output(), EndsWith("\nMertu is already running in " + dir.path() + " \n"));
  EXPECT_EQ(dir.read("mertu_log"), "what the first one wrote\n");

  EXPECT_TRUE(first.close_window());
  EXPECT_EQ(first.status(), 0) << first.output();
}

TEST(Startup, AnotherDirectoryIsFreeForASecondProgram) {
  Scratch_dir dir;
  fill(dir, "one/");
  fill(dir, "two/");
  Program first("./prog.x", dir.path() + "/one");
  Program second("./prog.x", dir.path() + "/two");
  EXPECT_TRUE(second.close_window()) << second.output();
  EXPECT_EQ(second.status(), 0);
  EXPECT_TRUE(first.close_window()) << first.output();
  EXPECT_EQ(first.status(), 0);
}

TEST(Startup, TheDirectoryIsFreeAgainWhenTheProgramHasEnded) {
  Scratch_dir dir;
  fill(dir, "");
  for (int run = 0; run < 2; run++) {
    Program program("./prog.x", dir.path());
    EXPECT_TRUE(program.close_window()) << program.output();
    EXPECT_EQ(program.status(), 0) << program.output();
  }
}

TEST(Startup, WithoutADisplayTheToolkitSaysSo) {
  Scratch_dir dir;
  fill(dir, "");
  Program program("./prog.x", dir.path(), {"DISPLAY"});
  EXPECT_EQ(program.status(), 1);
  EXPECT_THAT(program.output(), HasSubstr("cannot open display"));
}

TEST(Startup, QuitPressedWhereItIsTracedEndsTheProgram) {
  Scratch_dir dir;
  fill(dir, "");
  Program program("./prog.x", dir.path(), {"MERTU_TRACE=1"});
  ASSERT_TRUE(program.says("button ReDr at ")) << program.output();
  Place quit = traced_place(program.output(), "Quit");
  PRESS_AT(quit.x, quit.y);
  EXPECT_EQ(program.status(), 0) << program.output();
}

TEST(Startup, ADrillCanBeWorkedByTheTraceAlone) {
  Scratch_dir dir;
  fill(dir, "");
  Program program("./prog.x", dir.path(), {"MERTU_TRACE=1"});
  ASSERT_TRUE(program.says("button ReDr at ")) << program.output();
  EXPECT_THAT(program.output(), HasSubstr("entry at "));
  const std::string question = "  Question / Response ";
  const std::string verdict = "        Verif: Yes/No       ";
  std::string label = question;
  for (auto [pane, next] : {std::pair("pane: Confirm learning", question),
                            {"pane: Question", question},
                            {"pane: Response", verdict},
                            {"pane: Question", question}}) {
    size_t before = program.output().size();
    Place answer = traced_place(program.output(), label);
    ASSERT_TRUE(program.press_until(answer.x, answer.y, pane, before)) << program.output();
    ASSERT_TRUE(program.says("button " + next + " at ", before)) << program.output();
    label = next;
  }
  EXPECT_TRUE(program.close_window());
  EXPECT_EQ(program.status(), 0) << program.output();
}

TEST(Startup, TheResourceFileColoursTheButtons) {
  Scratch_dir dir;
  fill(dir, "");
  dir.write("mertu.rc", "style \"blue\" { bg[NORMAL] = \"#1020F0\" bg[PRELIGHT] = \"#1020F0\" }\n"
                        "widget \"*buttonruz\" style \"blue\"\n");
  Program program("./prog.x", dir.path(), {"MERTU_TRACE=1"});
  ASSERT_TRUE(program.says("button ReDr at ")) << program.output();
  Place quit = traced_place(program.output(), "Quit");
  ASSERT_GE(quit.x, 0) << program.output();
  EXPECT_TRUE(HAS_COLOUR(quit.x - quit.to_left + 4, quit.y, 0x1020F0));
  EXPECT_TRUE(program.close_window());
  EXPECT_EQ(program.status(), 0) << program.output();
}

TEST(Startup, WithoutTraceNoPlaceIsTold) {
  Scratch_dir dir;
  fill(dir, "");
  Program program("./prog.x", dir.path(), {"MERTU_TRACE"});
  EXPECT_TRUE(program.close_window());
  EXPECT_EQ(program.status(), 0);
  EXPECT_THAT(program.output(), Not(HasSubstr("button")));
}
