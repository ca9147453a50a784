// An entry put into the position table while a lesson is built: its place and its history.
#include "lesson/table_entry.h"

#include "db/idx1_walk.h"
#include "score/position_table.h"

void MAKE_ROOM_FOR_ENTRY(int icont, int *nbmx_posit, Trf_posit *t_posit) {
  if (*nbmx_posit > icont)
    return;
  t_posit->nbmx_posit = *nbmx_posit;
  *nbmx_posit += MORE_CAPACITY;
  GROW_POSIT(*nbmx_posit, t_posit);
}

void STORE_HISTORY(int sens, int icont, const long *values, Trf_posit *t_posit) {
  Trf_side side = SIDE_OF_TABLE(sens, t_posit);
  side.ord[icont] = icont;
  side.nb[icont] = side.nb0[icont] = values[1];
  side.nok[icont] = side.nok0[icont] = values[2];
  side.date_ok[icont] = values[3];
  side.date_nok[icont] = values[4];
}

void READ_ENTRY_HISTORY(int icont, Trf_idx1_walk *walk, Trf_posit *t_posit) {
  for (int sens : {1, 2}) {
    long values[NB_FIELDS + 1] = {};
    READ_HISTORY(sens, icont, walk, values);
    STORE_HISTORY(sens, icont, values, t_posit);
  }
}
