// The orderings sorted: heaviest score first, equal ones in their previous order.
#include "score/merge_sort.h"

#include <vector>

#include "score/merge_runs.h"
#include "util/report.h"

namespace {

template <typename Compare> void merge_sort(int left0, int right0, int *num, Compare compare) {
  if (right0 <= left0)
    return;
  std::vector<int> work((size_t)right0 + 5);
  SORT_HALVES(left0, right0, [num, &work, compare](int left, int mid, int right) {
    MERGE_RUNS(left, mid, right, num, work.data(), compare);
  });
}

void list_keys(int left0, int right0, const int *num, const long *cum_err, const long *nb_nok,
               const long *date) {
  if (!TRACING())
    return;
  for (int i = left0; i <= right0; i++)
    TRACE("MERGESORT_3ERR i=%d num=%d err=%ld nb_nok=%ld date=%ld \n", i, num[i], cum_err[num[i]],
          nb_nok[num[i]], date[num[i]]);
}

// Which of two numbers is larger: -1 the first, 1 the second, 0 neither.
int larger_first(long first, long second) {
  if (first > second)
    return -1;
  return first < second ? 1 : 0;
}

} // namespace

int COMPARE_ERR(long err1, long err2) {
  if (err1 < 0)
    return err2 < 0 ? 0 : -1;
  if (err2 < 0)
    return 1;
  return larger_first(err1, err2);
}

int CMP_3GERR(long *a, long *b) {
  int order = COMPARE_ERR(a[1], b[1]);
  // Two entries never asked are equal: their other keys are not looked at.
  if (order != 0 || a[1] < 0)
    return order;
  order = larger_first(a[2], b[2]);
  return order != 0 ? order : larger_first(a[3], b[3]);
}

void MERGESORT(int left0, int right0, int *num, long *cum_err) {
  merge_sort(left0, right0, num, [cum_err](int first, int second) {
    return COMPARE_ERR(cum_err[first], cum_err[second]);
  });
}

void MERGESORT_3ERR(int left0, int right0, int *num, long *cum_err, long *nb_nok, long *date) {
  list_keys(left0, right0, num, cum_err, nb_nok, date);
  merge_sort(left0, right0, num, [cum_err, nb_nok, date](int first, int second) {
    long a[4] = {0, cum_err[first], nb_nok[first], date[first]};
    long b[4] = {0, cum_err[second], nb_nok[second], date[second]};
    return CMP_3GERR(a, b);
  });
  list_keys(left0, right0, num, cum_err, nb_nok, date);
}
