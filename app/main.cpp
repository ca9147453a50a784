// Mertu, a vocabulary trainer: the order in which the program starts.
#include <gtk/gtk.h>
#include <stdio.h>

#include "app/book_start.h"
#include "app/main_window.h"
#include "app/work_dir.h"

int main(int argc, char **argv) {
  // What is told is seen at once, also in a pipe or a file.
  setvbuf(stdout, nullptr, _IOLBF, 0);
  WORK_DIR(argv[0]);
  LOCK_WORK_DIR();

  static Trf_records records; // kept for the program's life
  ALLOCATE_RECORDS(&records);
  PREPARE_WORDS(&records);

  // Parsed before the toolkit starts, so that the learner's colours and fonts are there for the
  // first widget.
  gtk_rc_parse("mertu.rc");
  gtk_init(&argc, &argv);

  OPEN_MAIN_WINDOW(&records);
  gtk_main();
  return 0;
}
