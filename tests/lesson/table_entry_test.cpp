// An entry put into the table: growth, and where each value of a history line goes.
#include "lesson/table_entry.h"

#include <gtest/gtest.h>

#include "lesson/desk.h"

namespace {

TEST(TableEntry, TheCapacityGrowsByTwentyWhenItIsReached) {
  Desk desk;
  int capacity = 10;
  ALLOCATE_POSIT(capacity, &desk.table);
  MAKE_ROOM_FOR_ENTRY(9, &capacity, &desk.table);
  EXPECT_EQ(capacity, 10);
  MAKE_ROOM_FOR_ENTRY(10, &capacity, &desk.table);
  EXPECT_EQ(capacity, 30);
  EXPECT_EQ(desk.table.nbmx_posit, 30);
  MAKE_ROOM_FOR_ENTRY(30, &capacity, &desk.table);
  EXPECT_EQ(desk.table.nbmx_posit, 50);
}

// Such is a table whose own nbmx_posit is only set when the lesson is loaded.
TEST(TableEntry, TheCapacityHandedOverCountsAndNotThatOfTheTable) {
  Desk desk;
  int capacity = 10;
  ALLOCATE_POSIT(capacity, &desk.table);
  for (int i = 0; i < capacity + NB_SPARE_POSIT; i++)
    desk.table.QRcum_nb[i] = 100 + i;
  desk.table.nbmx_posit = 0;
  MAKE_ROOM_FOR_ENTRY(10, &capacity, &desk.table);
  EXPECT_EQ(desk.table.nbmx_posit, 30);
  for (int i = 0; i < 10 + NB_SPARE_POSIT; i++)
    EXPECT_EQ(desk.table.QRcum_nb[i], 100 + i);
  for (int i = 10 + NB_SPARE_POSIT; i < 30 + NB_SPARE_POSIT; i++)
    EXPECT_EQ(desk.table.QRcum_nb[i], 0);
}

TEST(TableEntry, EachValueOfAHistoryLineHasItsArrays) {
  Desk desk;
  ALLOCATE_POSIT(10, &desk.table);
  const long qr[] = {99, 1, 2, 3, 4};
  const long rq[] = {99, 5, 6, 7, 8};
  STORE_HISTORY(1, 2, qr, &desk.table);
  STORE_HISTORY(2, 2, rq, &desk.table);
  const Trf_posit &t = desk.table;
  EXPECT_EQ(t.QRord_posit[2], 2);
  EXPECT_EQ(t.QRcum_nb[2], 1);
  EXPECT_EQ(t.QRcum_nb0[2], 1);
  EXPECT_EQ(t.QRcum_nok[2], 2);
  EXPECT_EQ(t.QRcum_nok0[2], 2);
  EXPECT_EQ(t.QR_date_ok[2], 3);
  EXPECT_EQ(t.QR_date_nok[2], 4);
  EXPECT_EQ(t.RQord_posit[2], 2);
  EXPECT_EQ(t.RQcum_nb[2], 5);
  EXPECT_EQ(t.RQcum_nb0[2], 5);
  EXPECT_EQ(t.RQcum_nok[2], 6);
  EXPECT_EQ(t.RQcum_nok0[2], 6);
  EXPECT_EQ(t.RQ_date_ok[2], 7);
  EXPECT_EQ(t.RQ_date_nok[2], 8);
}

} // namespace
