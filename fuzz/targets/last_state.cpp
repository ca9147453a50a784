// The last state: any file gives usable values, and what is written is read back.
#include <algorithm>

#include "app/book_start.h"
#include "app/last_state.h"
#include "config/config_file.h"
#include "fuzz/harness.h"
#include "util/safe_write.h"

namespace {

const char LAST_STATE[] = "Mertu_last_state";

Start_State read_state(Trf_records *records) {
  START_PAGE_NUMBER(records->S_state, records->book);
  records->book->fp = nullptr;
  records->book->exfp = 0;
  return *records->S_state;
}

void write_state(const Start_State &state) {
  Trf_new_file file;
  HOLDS(OPEN_LAST_STATE(&file));
  WRITE_LAST_STATE(&state, "one two ", file.fp);
  HOLDS(COMMIT_NEW_FILE(&file) == 0);
}

// A written number is read without its sign, "-5" as 0.
int unsigned_part(int value) {
  return std::max(value, 0);
}

void check_read_back(const Start_State &state, Trf_records *records) {
  write_state(state);
  Start_State again = read_state(records);
  HOLDS(again.num_lesson == unsigned_part(state.num_lesson));
  HOLDS(again.sens_qr == unsigned_part(state.sens_qr));
  HOLDS(again.root_width == unsigned_part(state.root_width) || state.root_width < 0);
  HOLDS(again.width_book == unsigned_part(state.width_book));
  HOLDS(!FILE_THERE(LAST_STATE));
}

} // namespace

FUZZ_TARGET(last_state) {
  PUT_FILE("mertu.conf", "");
  AGE_FILE("mertu.conf", 100);
  PUT_FILE(LAST_STATE, input);
  Trf_records records = {};
  ALLOCATE_RECORDS(&records);
  Start_State state = read_state(&records);
  HOLDS(FILE_THERE(LAST_STATE) == input.empty());
  HOLDS(state.num_lesson >= 0 && state.sens_qr >= 0 && state.width_book >= -1);
  START_VALUES(&records);
  HOLDS(records.book->sens_qr == 1 || records.book->sens_qr == 2);
  HOLDS(records.book->ilesson >= 1);
  Prenestro window = {};
  window.book_pix_size[0] = window.book_pix_size[1] = 700;
  Trf_geometry geometry = WINDOW_GEOMETRY(&state, &window);
  HOLDS(geometry.width > 0 && geometry.height > 0);
  check_read_back(state, &records);
  FREE_RECORDS(&records);
}
