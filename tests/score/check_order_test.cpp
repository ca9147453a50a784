// The check of both orderings, its faults and their listing, and the listing for the curious.
#include "score/check_order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <vector>

#include "score/error_score.h"
#include "score/merge_sort.h"
#include "score/position_table.h"
#include "support/present.h"
#include "support/scratch.h"
#include "util/book.h"

using testing::HasSubstr;

namespace {

// A book with a ranked lesson whose entry i has the i-th score in both directions.
struct Ranked_book : Trf_book {
  explicit Ranked_book(const std::vector<long> &errs) : Trf_book(), table(), weights() {
    t_posit = &table;
    t_err = &weights;
    weights = {9.0F, 3.0F, 2.0F, 6.0F, 10.0F};
    sens_qr = 2;
    ALLOCATE_POSIT((int)errs.size() + 1, &table);
    table.nb_posit = (int)errs.size();
    INIT_ORDERING_POSIT(&table);
    std::copy(errs.begin(), errs.end(), table.QRcum_err + 1);
    std::copy(errs.begin(), errs.end(), table.RQcum_err + 1);
    MERGESORT(1, table.nb_posit, table.QRord_posit, table.QRcum_err);
    MERGESORT(1, table.nb_posit, table.RQord_posit, table.RQcum_err);
  }
  ~Ranked_book() {
    FREE_POSIT(&table);
  }
  Trf_posit table;
  Trf_err weights;
};

std::string said_by(void (*routine)(Trf_book *), Trf_book *book) {
  testing::internal::CaptureStdout();
  routine(book);
  return testing::internal::GetCapturedStdout();
}

void check_with_log(Trf_book *book) {
  book->fp_log = fopen("log", "w");
  VERIF_CLASSMENT(book);
}

TEST(CheckOrder, TwoSoundOrderingsAreSaidToBeSo) {
  Ranked_book book({-1, 9, 9, 0, -1});
  EXPECT_EQ(said_by(VERIF_CLASSMENT, &book), "VERIF_CLASSMENT two senses OK \n");
}

TEST(CheckOrder, AnEmptyTableIsNotChecked) {
  Ranked_book book({});
  EXPECT_EQ(said_by(VERIF_CLASSMENT, &book), "");
}

TEST(CheckOrder, ThePlaceholderIsInOrder) {
  Ranked_book book({});
  INIT_CUM_ERR(&book.table);
  INIT_ORDERING_POSIT(&book.table);
  EXPECT_EQ(said_by(VERIF_CLASSMENT, &book), "VERIF_CLASSMENT two senses OK \n");
}

TEST(CheckOrderDeathTest, AFaultInQuestionToResponseEndsTheProgramWithStatus11) {
  Scratch_dir dir;
  Ranked_book book({9, 7, 5});
  book.table.QRcum_err[3] = 8;
  ENDS_WITH_STATUS(check_with_log(&book), 11,
                   "VERIF_CLASSMENT Sens QR error present sens_qr=2\n"
                   "1  elem=1  err=9 \n2  elem=2  err=7 \n3  elem=3  err=8 \n");
  EXPECT_EQ(dir.read("log"), "   \nVERIF_CLASSMENT Sens QR error present sens_qr=2\n   \n"
                             "1  elem=1  err=9 \n2  elem=2  err=7 \n3  elem=3  err=8 \n");
}

TEST(CheckOrderDeathTest, AFaultInResponseToQuestionEndsTheProgramWithStatus11) {
  Scratch_dir dir;
  Ranked_book book({9, 7});
  book.table.RQcum_err[2] = -1;
  ENDS_WITH_STATUS(check_with_log(&book), 11,
                   "^VERIF_CLASSMENT Sens RQ error present sens_qr=2\n"
                   "1  elem=1  err=9 \n2  elem=2  err=-1 \n");
  EXPECT_EQ(dir.read("log"), "   \nVERIF_CLASSMENT Sens RQ error present sens_qr=2\n   \n"
                             "1  elem=1  err=9 \n2  elem=2  err=-1 \n");
}

TEST(CheckOrderDeathTest, QuestionToResponseIsCheckedFirst) {
  Ranked_book book({9, 7});
  book.table.RQcum_err[2] = 10;
  book.table.QRcum_err[2] = 10;
  ENDS_WITH_STATUS(VERIF_CLASSMENT(&book), 11, "^VERIF_CLASSMENT Sens QR");
}

TEST(CheckOrder, AScoreAbove500000BehindANeverAskedEntryIsAFault) {
  Ranked_book book({-1, 500000});
  EXPECT_EQ(said_by(VERIF_CLASSMENT, &book), "VERIF_CLASSMENT two senses OK \n");
  book.table.QRcum_err[2] = 500001;
  ENDS_WITH_STATUS(VERIF_CLASSMENT(&book), 11, "Sens QR error present");
}

TEST(CheckOrder, TheListingIsTraceAndSetsTodaysScoreBesideTheStoredOne) {
  Ranked_book book({5, 28});
  SET_PRESENT_DAY(2009, 3, 20); // day number 3000
  book.table.QRcum_nb[1] = 1;
  book.table.QR_date_ok[1] = 2980;
  book.table.RQcum_nok[2] = 1;
  book.table.RQ_date_nok[2] = 2999;
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(said_by(SORT_CLASSMENT, &book), "");
  setenv("MERTU_TRACE", "1", 1);
  std::string listing = said_by(SORT_CLASSMENT, &book);
  unsetenv("MERTU_TRACE");
  RESET_PRESENT();
  EXPECT_THAT(listing, HasSubstr("QR rank=2 elem=1 err=5 err today=10"));
  EXPECT_THAT(listing, HasSubstr("RQ rank=1 elem=2 err=28 err today=28"));
}

} // namespace
