// The position table: the current lesson in memory, and the arrays of one of its directions.
#include "score/position_table.h"

#include <glib.h>

#include <algorithm>
#include <numeric>

namespace {

// Every array of long, by its place in the record.
long *Trf_posit::*const LONG_ARRAYS[] = {
    &Trf_posit::posit,      &Trf_posit::QRcum_err,  &Trf_posit::QRcum_nb,   &Trf_posit::QRcum_nb0,
    &Trf_posit::QRcum_nok,  &Trf_posit::QRcum_nok0, &Trf_posit::QR_date_ok, &Trf_posit::QR_date_nok,
    &Trf_posit::RQcum_err,  &Trf_posit::RQcum_nb,   &Trf_posit::RQcum_nok,  &Trf_posit::RQcum_nb0,
    &Trf_posit::RQcum_nok0, &Trf_posit::RQ_date_ok, &Trf_posit::RQ_date_nok};

// Every array of int.
int *Trf_posit::*const INT_ARRAYS[] = {&Trf_posit::elem_nevez, &Trf_posit::QRord_posit,
                                       &Trf_posit::RQord_posit};

// What an undo brings back. Dates are not among it: an answer changes none before it is recorded.
long *Trf_posit::*const SAVED_ARRAYS[] = {
    &Trf_posit::QRcum_err,  &Trf_posit::RQcum_err, &Trf_posit::QRcum_nb,  &Trf_posit::RQcum_nb,
    &Trf_posit::QRcum_nb0,  &Trf_posit::RQcum_nb0, &Trf_posit::QRcum_nok, &Trf_posit::RQcum_nok,
    &Trf_posit::QRcum_nok0, &Trf_posit::RQcum_nok0};

template <typename Number> void renew_array(Number **array, int nb) {
  g_free(*array);
  *array = g_new0(Number, (gsize)nb);
}

template <typename Number> void grow_array(Number **array, int nb_before, int nb) {
  *array = g_renew(Number, *array, (gsize)nb);
  std::fill(*array + nb_before, *array + nb, (Number)0);
}

template <typename Number> void free_array(Number **array) {
  g_free(*array);
  *array = nullptr;
}

} // namespace

void ALLOCATE_POSIT(int capacity, Trf_posit *t_posit) {
  int nb = std::max(capacity, 0) + NB_SPARE_POSIT;
  for (auto array : LONG_ARRAYS)
    renew_array(&(t_posit->*array), nb);
  for (auto array : INT_ARRAYS)
    renew_array(&(t_posit->*array), nb);
  t_posit->nbmx_posit = nb - NB_SPARE_POSIT;
  t_posit->nb_posit = 0;
}

void GROW_POSIT(int capacity, Trf_posit *t_posit) {
  if (capacity <= t_posit->nbmx_posit)
    return;
  int nb_before = t_posit->nbmx_posit + NB_SPARE_POSIT;
  int nb = capacity + NB_SPARE_POSIT;
  for (auto array : LONG_ARRAYS)
    grow_array(&(t_posit->*array), nb_before, nb);
  for (auto array : INT_ARRAYS)
    grow_array(&(t_posit->*array), nb_before, nb);
  t_posit->nbmx_posit = capacity;
}

void FREE_POSIT(Trf_posit *t_posit) {
  for (auto array : LONG_ARRAYS)
    free_array(&(t_posit->*array));
  for (auto array : INT_ARRAYS)
    free_array(&(t_posit->*array));
  t_posit->nb_posit = 0;
  t_posit->nbmx_posit = 0;
}

void RENEW_ELEM_NEVEZ(Trf_posit *t_posit) {
  int nb = std::max(t_posit->nb_posit, t_posit->nbmx_posit) + NB_SPARE_POSIT;
  renew_array(&t_posit->elem_nevez, nb);
}

void COPY_SLOT(int from, int to, Trf_posit *t_posit) {
  for (auto array : SAVED_ARRAYS)
    (t_posit->*array)[to] = (t_posit->*array)[from];
}

void INIT_CUM_ERR(Trf_posit *t_posit) {
  const int NB_PLACEHOLDERS = 5;
  ALLOCATE_POSIT(NB_PLACEHOLDERS, t_posit);
  t_posit->nb_posit = NB_PLACEHOLDERS;
  for (auto array : LONG_ARRAYS) {
    long *first = t_posit->*array;
    first[0] = NB_PLACEHOLDERS;
    std::fill(first + 1, first + 1 + NB_PLACEHOLDERS, -1L);
  }
}

void INIT_ORDERING_POSIT(Trf_posit *t_posit) {
  int nb = std::max(t_posit->nb_posit, t_posit->nbmx_posit) + NB_SPARE_POSIT;
  for (auto array : {&Trf_posit::QRord_posit, &Trf_posit::RQord_posit}) {
    renew_array(&(t_posit->*array), nb);
    int *first = t_posit->*array + 1;
    std::iota(first, first + t_posit->nb_posit, 1);
  }
}
