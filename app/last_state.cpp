// What is remembered from one run to the next: lesson, direction, place and size of the window.
#include "app/last_state.h"

#include <stdlib.h>

#include "config/config_values.h"
#include "util/file_times.h"
#include "util/numbers.h"
#include "util/safe_write.h"

namespace {

const char LAST_STATE[] = "Mertu_last_state";
const char NEW_LAST_STATE[] = "Mertu_last_state.new";
const int MAX_LINE_READ = 100; // characters of a line

// The stream of an empty last state, which stays open until the next one is read.
struct {
  FILE *fp = nullptr;
} unread;

using Line = char[MAX_LINE_READ + 1];

// Reads the next line, if there is one, and takes its numbers; where the line ends before one, its
// place is left. `second` is null for a line of one number.
void read_numbers(int *first, int *second, FILE *fp) {
  Line line;
  if (!READ_CONF_LINE(line, sizeof line, fp))
    return;
  int taken[3] = {};
  EXTR_N_INT(second != nullptr ? 2 : 1, line, taken);
  if (taken[0] > 0)
    *first = taken[1];
  if (second != nullptr && taken[0] > 1)
    *second = taken[2];
}

// The lesson of the first line. A configuration that is younger may list other dictionaries, and
// the number is worth nothing then.
int lesson_of(char *line, double younger) {
  int taken[2] = {};
  EXTR_N_INT(1, line, taken);
  return taken[0] == 1 && younger >= 0 ? taken[1] : 0;
}

// Keeps the stream of an empty last state.
void keep_open(FILE *fp) {
  if (unread.fp != nullptr)
    fclose(unread.fp);
  unread.fp = fp;
}

} // namespace

void START_PAGE_NUMBER(Start_State *S_state, Trf_book *book) {
  *S_state = Start_State{1, -1, -1, -1, -1, -1, 0};
  FILE *fp = fopen("./Mertu_last_state", "r");
  if (fp == nullptr)
    return;
  book->fp = fp;
  book->exfp = 1;
  char configuration[] = "mertu.conf";
  char last_state[] = "./Mertu_last_state";
  double younger = DIFF_TIME_FILE(configuration, last_state);
  Line line;
  // QUIRK empty last state: it is left where it stands, and its stream open. One would expect it to
  // be taken away as any other; it is meant: nothing was read from it, and the next "Quit" puts a
  // whole one in its place. Test: LastState.AnEmptyFileIsLeftWhereItStands
  if (!READ_CONF_LINE(line, sizeof line, fp)) {
    keep_open(fp);
    return;
  }
  S_state->num_lesson = lesson_of(line, younger);
  read_numbers(&S_state->sens_qr, nullptr, fp);
  read_numbers(&S_state->root_x, &S_state->root_y, fp);
  read_numbers(&S_state->root_width, &S_state->root_height, fp);
  read_numbers(&S_state->width_book, nullptr, fp);
  fclose(fp);
  remove(last_state);
}

bool OPEN_LAST_STATE(Trf_new_file *file) {
  return OPEN_NEW_FILE_AS(LAST_STATE, NEW_LAST_STATE, file);
}

void WRITE_LAST_STATE(const Start_State *S_state, const char *st_lesson, FILE *fp) {
  fprintf(fp, "  %d    Last lesson\n", S_state->num_lesson);
  fprintf(fp, "  %d   Sense of Q and R \n", S_state->sens_qr);
  fprintf(fp, "  %d  %d   Position of main window left upper corner\n", S_state->root_x,
          S_state->root_y);
  fprintf(fp, "  %d  %d   Size of main window width height\n", S_state->root_width,
          S_state->root_height);
  fprintf(fp, "  %d   Width of book window \n", S_state->width_book);
  // QUIRK list of lessons unread: the registry's list is written and never read back. One would
  // expect the next start to compare it with its own; it is meant: it is there for the learner, to
  // see which lessons the number counts, and the age of mertu.conf decides.
  // Test: LastState.TheListOfLessonsIsWrittenAndNotRead
  fprintf(fp, "%s\n", st_lesson != nullptr ? st_lesson : "");
}
