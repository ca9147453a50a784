// What is remembered from one run to the next: lesson, direction, place and size of the window.
#include "app/last_state.h"

void START_PAGE_NUMBER(Start_State *S_state, Trf_book *) {
  *S_state = Start_State{1, -1, -1, -1, -1, -1, 0};
}
