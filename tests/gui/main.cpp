// The window tests' own main: the toolkit starts before the first test.
#include "support/prelude.h"

#include <gtk/gtk.h>

int main(int argc, char **argv) {
  testing::InitGoogleMock(&argc, argv);
  if (!testing::GTEST_FLAG(list_tests))
    gtk_init(&argc, &argv);
  return RUN_ALL_TESTS();
}
