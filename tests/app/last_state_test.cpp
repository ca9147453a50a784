// What is remembered from one run to the next.
#include "support/prelude.h"

#include "app/last_state.h"

#include "support/scratch.h"

TEST(LastState, NothingRememberedGivesTheFirstLessonAndNoWindow) {
  Scratch_dir dir;
  Start_State state = {7, 7, 7, 7, 7, 7, 7};
  Trf_book book = {};
  START_PAGE_NUMBER(&state, &book);
  EXPECT_EQ(state.num_lesson, 1);
  EXPECT_EQ(state.sens_qr, 0);
  for (int value : {state.root_x, state.root_y, state.root_width, state.root_height})
    EXPECT_EQ(value, -1);
  EXPECT_EQ(state.width_book, -1);
}
