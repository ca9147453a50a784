// The real program started in a directory that was damaged in one random way: its window stands, or
// it ends as it is meant to. tests/damage tries many more without the window.
#include "support/prelude.h"

#include <stdlib.h>

#include "damage/damage.h"
#include "damage/ends.h"
#include "gui/program.h"
#include "support/scratch.h"

namespace {

const char WINDOW_STANDS[] = "Mertu is ready";

// A directory as it was before its damage, made once.
const Damage_files &healthy() {
  static const Damage_files files = [] {
    Scratch_dir dir;
    WRITE_DICTIONARIES();
    Program program("./mertu.x", dir.path());
    EXPECT_TRUE(program.says(WINDOW_STANDS) && program.close_window()) << program.output();
    EXPECT_EQ(program.status(), 0);
    WRITE_HISTORIES();
    return FILES_OF(dir.path());
  }();
  return files;
}

void damage_and_start(unsigned seed) {
  Scratch_dir dir;
  for (const auto &[name, bytes] : healthy())
    dir.write(name, bytes);
  std::string told = "damage " + std::to_string(seed) + ", " + DAMAGE(seed);
  Program program("./mertu.x", dir.path());
  if (program.says(WINDOW_STANDS)) {
    EXPECT_TRUE(program.close_window()) << told;
    EXPECT_EQ(program.status(), 0) << told << "\n" << program.output();
    return;
  }
  int status = program.status();
  EXPECT_TRUE(IS_MEANT_END(status, program.output())) << told << ": status " << status << " after\n"
                                                      << program.output();
}

} // namespace

// MERTU_DAMAGES=FROM-TO in the environment tries other damages.
TEST(DamageStart, TheWindowStandsOrTheProgramEndsAsMeant) {
  unsigned from = 1;
  unsigned to = 5;
  if (const char *range = getenv("MERTU_DAMAGES"))
    sscanf(range, "%u-%u", &from, &to);
  for (unsigned seed = from; seed <= to; seed++)
    damage_and_start(seed);
}
