// The merge sort of every list that is sorted: split in halves, stable, elements moved by value.
//
// compare(first, second) gives more than 0 where the second must go first. It is called with an
// element of the left run and one of the right run, and for these alone; what it does besides (a
// line read, the program ended) happens in that order.
#ifndef MERTU_SCORE_MERGE_RUNS_H
#define MERTU_SCORE_MERGE_RUNS_H

#include <algorithm>

// Merges the sorted runs list[left] to list[mid] and list[mid + 1] to list[right]. An element of
// the right run goes first only where it must, which keeps equal elements in their order.
// work: the scratch array, with elements left to mid.
template <typename Element, typename Compare>
void MERGE_RUNS(int left, int mid, int right, Element *list, Element *work, Compare compare) {
  std::copy(list + left, list + mid + 1, work + left);
  int i = left;
  int j = mid + 1;
  int k = left;
  while (i <= mid && j <= right)
    list[k++] = compare(work[i], list[j]) > 0 ? list[j++] : work[i++];
  std::copy(work + i, work + mid + 1, list + k);
}

// Sorts list[left] to list[right] by halves; merge(left, mid, right) merges two of them.
template <typename Merge> void SORT_HALVES(int left, int right, Merge merge) {
  if (right <= left)
    return;
  int mid = (left + right) / 2;
  SORT_HALVES(left, mid, merge);
  SORT_HALVES(mid + 1, right, merge);
  merge(left, mid, right);
}

#endif
