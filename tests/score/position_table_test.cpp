// The position table: its arrays and their sizes, the two directions, the placeholder.
#include "score/position_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using testing::Each;
using testing::ElementsAre;

namespace {

// A table freed with its scope.
struct Table : Trf_posit {
  ~Table() {
    FREE_POSIT(this);
  }
};

template <typename Number> std::vector<Number> first_of(const Number *array, int nb) {
  return std::vector<Number>(array, array + nb);
}

std::vector<long *> long_arrays(const Trf_posit &t) {
  return {t.posit,      t.QRcum_err,  t.QRcum_nb,    t.QRcum_nb0,  t.QRcum_nok,
          t.QRcum_nok0, t.QR_date_ok, t.QR_date_nok, t.RQcum_err,  t.RQcum_nb,
          t.RQcum_nok,  t.RQcum_nb0,  t.RQcum_nok0,  t.RQ_date_ok, t.RQ_date_nok};
}

std::vector<int *> int_arrays(const Trf_posit &t) {
  return {t.elem_nevez, t.QRord_posit, t.RQord_posit};
}

TEST(PositionTable, EveryArrayHasTheCapacityAndFiveZeroedElements) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  EXPECT_EQ(t.nbmx_posit, 10);
  EXPECT_EQ(t.nb_posit, 0);
  for (long *array : long_arrays(t))
    EXPECT_THAT(first_of(array, 15), Each(0));
  for (int *array : int_arrays(t))
    EXPECT_THAT(first_of(array, 15), Each(0));
}

TEST(PositionTable, ALoadFreesWhatWasThere) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  t.nb_posit = 7;
  t.QRcum_err[3] = 9;
  ALLOCATE_POSIT(25, &t);
  EXPECT_EQ(t.nb_posit, 0);
  EXPECT_EQ(t.nbmx_posit, 25);
  EXPECT_THAT(first_of(t.QRcum_err, 30), Each(0));
}

TEST(PositionTable, GrowingKeepsTheContentsAndZeroesTheRest) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  for (long *array : long_arrays(t))
    array[14] = 14;
  for (int *array : int_arrays(t))
    array[14] = 14;
  GROW_POSIT(30, &t);
  EXPECT_EQ(t.nbmx_posit, 30);
  for (long *array : long_arrays(t)) {
    EXPECT_EQ(array[14], 14);
    EXPECT_THAT(first_of(array + 15, 20), Each(0));
  }
  for (int *array : int_arrays(t)) {
    EXPECT_EQ(array[14], 14);
    EXPECT_THAT(first_of(array + 15, 20), Each(0));
  }
}

TEST(PositionTable, GrowingToNoMoreThanTheCapacityChangesNothing) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  long *posit = t.posit;
  GROW_POSIT(10, &t);
  GROW_POSIT(3, &t);
  EXPECT_EQ(t.nbmx_posit, 10);
  EXPECT_EQ(t.posit, posit);
}

TEST(PositionTable, FreeingSetsEveryArrayToNull) {
  Trf_posit t;
  ALLOCATE_POSIT(10, &t);
  FREE_POSIT(&t);
  EXPECT_THAT(long_arrays(t), Each(nullptr));
  EXPECT_THAT(int_arrays(t), Each(nullptr));
  EXPECT_EQ(t.nbmx_posit, 0);
}

TEST(PositionTable, TheDirectionIsOneForQuestionsAndAnythingElseForResponses) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  Trf_side qr = SIDE_OF_TABLE(1, &t);
  EXPECT_EQ(qr.ord, t.QRord_posit);
  EXPECT_EQ(qr.cum_err, t.QRcum_err);
  EXPECT_EQ(qr.nb, t.QRcum_nb);
  EXPECT_EQ(qr.nb0, t.QRcum_nb0);
  EXPECT_EQ(qr.nok, t.QRcum_nok);
  EXPECT_EQ(qr.nok0, t.QRcum_nok0);
  EXPECT_EQ(qr.date_ok, t.QR_date_ok);
  EXPECT_EQ(qr.date_nok, t.QR_date_nok);
  for (int sens : {2, 0, 7}) {
    Trf_side rq = SIDE_OF_TABLE(sens, &t);
    EXPECT_EQ(rq.ord, t.RQord_posit);
    EXPECT_EQ(rq.cum_err, t.RQcum_err);
    EXPECT_EQ(rq.nb, t.RQcum_nb);
    EXPECT_EQ(rq.nb0, t.RQcum_nb0);
    EXPECT_EQ(rq.nok, t.RQcum_nok);
    EXPECT_EQ(rq.nok0, t.RQcum_nok0);
    EXPECT_EQ(rq.date_ok, t.RQ_date_ok);
    EXPECT_EQ(rq.date_nok, t.RQ_date_nok);
  }
}

TEST(PositionTable, ThePlaceholderHoldsFiveUnknownEntries) {
  Table t;
  INIT_CUM_ERR(&t);
  EXPECT_EQ(t.nb_posit, 5);
  EXPECT_EQ(t.nbmx_posit, 5);
  for (long *array : long_arrays(t)) {
    EXPECT_THAT(first_of(array, 6), ElementsAre(5, -1, -1, -1, -1, -1));
    EXPECT_THAT(first_of(array + 6, 4), Each(0));
  }
}

TEST(PositionTable, TheOrderingsOfThePlaceholderAreTheIdentity) {
  Table t;
  INIT_CUM_ERR(&t);
  INIT_ORDERING_POSIT(&t);
  EXPECT_THAT(first_of(t.QRord_posit, 10), ElementsAre(0, 1, 2, 3, 4, 5, 0, 0, 0, 0));
  EXPECT_THAT(first_of(t.RQord_posit, 10), ElementsAre(0, 1, 2, 3, 4, 5, 0, 0, 0, 0));
}

TEST(PositionTable, ElemNevezIsRenewedWithRoomForTheSaveSlot) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  t.nb_posit = 9;
  t.elem_nevez[0] = 3;
  t.elem_nevez[10] = 4;
  RENEW_ELEM_NEVEZ(&t);
  EXPECT_THAT(first_of(t.elem_nevez, 9 + 5), Each(0));
  GROW_POSIT(30, &t);
  EXPECT_THAT(first_of(t.elem_nevez, 35), Each(0));
}

TEST(PositionTable, ACopiedSlotHoldsTheTenArraysAndNoDates) {
  Table t;
  ALLOCATE_POSIT(10, &t);
  for (long *array : long_arrays(t))
    array[2] = 8;
  for (int *array : int_arrays(t))
    array[2] = 8;
  COPY_SLOT(2, 11, &t);
  for (long *array : {t.QRcum_err, t.RQcum_err, t.QRcum_nb, t.RQcum_nb, t.QRcum_nb0, t.RQcum_nb0,
                      t.QRcum_nok, t.RQcum_nok, t.QRcum_nok0, t.RQcum_nok0})
    EXPECT_EQ(array[11], 8);
  for (long *array : {t.posit, t.QR_date_ok, t.QR_date_nok, t.RQ_date_ok, t.RQ_date_nok})
    EXPECT_EQ(array[11], 0);
  for (int *array : int_arrays(t))
    EXPECT_EQ(array[11], 0);
}

} // namespace
