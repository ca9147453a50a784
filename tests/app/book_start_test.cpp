// The records of the program: allocated, given their start values, freed.
#include "support/prelude.h"

#include "app/book_start.h"

#include <glib.h>
#include <stddef.h>

#include <algorithm>

#include "app/last_state.h"
#include "config/config_file.h"
#include "config/registry.h"
#include "score/error_score.h"
#include "score/position_table.h"
#include "support/scratch.h"
#include "util/report.h"

namespace {

// The records of a test, freed at its end.
struct Records : Trf_records {
  Records() : Trf_records{} {
    ALLOCATE_RECORDS(this);
  }
  ~Records() {
    FREE_RECORDS(this);
  }
};

const char *const DICTIONARY = "!# aa\n#######\n#######\n# chat *\nQ> chat\nR> cat\n";
const char *const CONFIGURATION = "Horiz_pix_total :> 900 <:\nVerti_pix_total :> 700 <:\n"
                                  "Width_pix_vocab :> 500 <:\nWhich_lesson :>\na.txt\n<:\n"
                                  "Font_vocab :> helvetica 14 <:\n";

} // namespace

TEST(BookStart, EveryRecordIsThere) {
  Records records;
  EXPECT_NE(records.Caract_win, nullptr);
  EXPECT_NE(records.S_state, nullptr);
  EXPECT_NE(records.G_kentel, nullptr);
  EXPECT_NE(records.t_posit, nullptr);
  EXPECT_NE(records.book, nullptr);
  EXPECT_EQ(records.book->t_err, records.t_err);
}

TEST(BookStart, TheTextBuffersHaveTheirFirstSizes) {
  Records records;
  EXPECT_EQ(records.book->lenmx_str_lessons, 49);
  EXPECT_EQ(records.book->lenmx_path_of_lesson, 5);
  memset(records.book->lessons, 'x', 50);
  memset(records.book->path_of_lesson, 'x', 10);
}

TEST(BookStart, TheLabelTableHasNoLabels) {
  Records records;
  EXPECT_STREQ(records.book->s_label, " ");
  EXPECT_EQ(records.book->nc_label[0], 0);
}

TEST(BookStart, TheBookStartsZeroed) {
  Records records;
  const Trf_book *book = records.book;
  EXPECT_EQ(book->active, 0);
  EXPECT_EQ(book->QR_no, 0);
  EXPECT_EQ(book->QR_order, 0);
  EXPECT_EQ(book->sens_qrm, 0);
  EXPECT_EQ(book->nbt_lesson, 0);
  EXPECT_EQ(book->fp, nullptr);
  EXPECT_EQ(book->exfp, 0);
  EXPECT_EQ(book->fp_gene, nullptr);
  EXPECT_EQ(book->fp_idx1, nullptr);
  EXPECT_EQ(book->fp_log, nullptr);
  EXPECT_EQ(book->separator, nullptr);
  EXPECT_EQ(book->extrm, nullptr);
  EXPECT_STREQ(book->lessons, "");
  for (GtkWidget *widget : book->wbutton)
    EXPECT_EQ(widget, nullptr);
  for (GtkWidget *widget : book->lbox2)
    EXPECT_EQ(widget, nullptr);
}

TEST(BookStart, TheFieldsOfTheBookStandInTheirOrder) {
#define AT(field) offsetof(Trf_book, field)
  const std::vector<size_t> offsets = {AT(active),
                                       AT(start_lesson),
                                       AT(state),
                                       AT(toggle_sens_qr),
                                       AT(sens_qr),
                                       AT(sens_qrm),
                                       AT(sound),
                                       AT(interro_sound),
                                       AT(nb_line),
                                       AT(QR_no),
                                       AT(QR_order),
                                       AT(nb0),
                                       AT(nb),
                                       AT(ilesson),
                                       AT(nbt_lesson),
                                       AT(ibb),
                                       AT(posit),
                                       AT(fp),
                                       AT(exfp),
                                       AT(fp_gene),
                                       AT(fp_idx1),
                                       AT(fp_log),
                                       AT(lenmx_str_lessons),
                                       AT(lessons),
                                       AT(lenmx_path_of_lesson),
                                       AT(path_of_lesson),
                                       AT(s_label),
                                       AT(nc_label),
                                       AT(t_posit),
                                       AT(t_err),
                                       AT(style),
                                       AT(win_label),
                                       AT(pWindow),
                                       AT(hpaned),
                                       AT(frame1),
                                       AT(frame2),
                                       AT(vBox1),
                                       AT(entry_book),
                                       AT(scroll_page),
                                       AT(scroll2_page),
                                       AT(button_qr),
                                       AT(button_sound),
                                       AT(Button1),
                                       AT(v_page),
                                       AT(v2_page),
                                       AT(text_view),
                                       AT(lbox2),
                                       AT(wbutton),
                                       AT(separator),
                                       AT(G_kentel),
                                       AT(extrm)};
#undef AT
  EXPECT_EQ(offsets.size(), 51u);
  EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end()));
  EXPECT_EQ(sizeof(Trf_book::lbox2) / sizeof(GtkWidget *), 205u);
  EXPECT_EQ(sizeof(Trf_book::wbutton) / sizeof(GtkWidget *), 205u);
}

TEST(BookStart, OnlyTheLinesThatThePaneCanHoldAreCleared) {
  Trf_book book = {};
  GtkWidget *something = reinterpret_cast<GtkWidget *>(&book);
  std::fill_n(book.wbutton, 205, something);
  std::fill_n(book.lbox2, 205, something);
  CLEAR_LINE_WIDGETS(&book);
  for (int i = 0; i < 205; i++) {
    EXPECT_EQ(book.wbutton[i], i < 200 ? nullptr : something) << i;
    EXPECT_EQ(book.lbox2[i], i < 200 ? nullptr : something) << i;
  }
}

TEST(BookStart, TheDrillStartsWithLessonOneAskedForward) {
  Records records;
  Trf_book *book = records.book;
  book->nb_line = book->state = book->toggle_sens_qr = book->start_lesson = 9;
  *records.S_state = Start_State{0, -1, -1, -1, -1, -1, 0};
  START_VALUES(&records);
  EXPECT_EQ(book->nb_line, 0);
  EXPECT_EQ(book->state, 1);
  EXPECT_EQ(book->sens_qr, 1);
  EXPECT_EQ(book->toggle_sens_qr, 0);
  EXPECT_EQ(book->ilesson, 1);
  EXPECT_EQ(book->start_lesson, 0);
  EXPECT_EQ(book->interro_sound, 1);
  EXPECT_EQ(book->t_posit, records.t_posit);
  EXPECT_EQ(book->G_kentel, records.G_kentel);
}

TEST(BookStart, TheRememberedLessonAndDirectionAreTaken) {
  Records records;
  *records.S_state = Start_State{4, -1, -1, -1, -1, -1, 2};
  START_VALUES(&records);
  EXPECT_EQ(records.book->ilesson, 4);
  EXPECT_EQ(records.book->sens_qr, 2);
}

TEST(BookStart, ARememberedDirectionThatIsNoneBecomesForward) {
  Records records;
  for (int direction : {1, 3, -1, 2147483647}) {
    *records.S_state = Start_State{1, -1, -1, -1, -1, -1, direction};
    START_VALUES(&records);
    EXPECT_EQ(records.book->sens_qr, 1) << direction;
  }
}

TEST(BookStart, WithoutARememberedSizeTheWindowTakesTheConfiguredOne) {
  Prenestro appearance = {};
  appearance.book_pix_size[0] = 1100;
  appearance.book_pix_size[1] = 800;
  appearance.book_pix_size[2] = 600;
  for (auto [width, height] : {std::pair(-1, -1), {0, 500}, {500, 0}, {-5, 500}, {500, -5}}) {
    Start_State state = {1, 0, 0, width, height, 333, 0};
    Trf_geometry geometry = WINDOW_GEOMETRY(&state, &appearance);
    EXPECT_EQ(geometry.width, 1100);
    EXPECT_EQ(geometry.height, 800);
    EXPECT_EQ(geometry.width_book, 600);
  }
}

TEST(BookStart, TheRememberedSizeIsTakenWhole) {
  Prenestro appearance = {};
  Start_State state = {1, -1, -1, 640, 480, 320, 0};
  Trf_geometry geometry = WINDOW_GEOMETRY(&state, &appearance);
  EXPECT_EQ(geometry.width, 640);
  EXPECT_EQ(geometry.height, 480);
  EXPECT_EQ(geometry.width_book, 320);
}

TEST(BookStart, PreparingReadsTheConfigurationAndBuildsTheIndexes) {
  Scratch_dir dir;
  dir.write("a.txt", DICTIONARY);
  dir.write("mertu.conf", CONFIGURATION);
  dir.write("mertu_log", "what the last run left\n");
  Records records;
  PREPARE_WORDS(&records);
  EXPECT_EQ(records.book->nbt_lesson, 1);
  EXPECT_EQ(records.book->sound, 1);
  EXPECT_EQ(records.Caract_win->book_pix_size[0], 900);
  EXPECT_STREQ(records.ss_font_lesson, "helvetica 18");
  EXPECT_STREQ(records.ss_font_vocab, " helvetica 14");
  EXPECT_TRUE(dir.exists("CPY/a.txt"));
  EXPECT_TRUE(dir.exists("IDX1/idx1_a.txt"));
  ASSERT_NE(records.book->fp_log, nullptr);
  EXPECT_EQ(SAVED_LOG(), records.book->fp_log);
  EXPECT_THAT(dir.read("mertu_log"), testing::Not(testing::HasSubstr("last run")));
}

TEST(BookStart, ALineOfTheLogStandsInTheFileAtOnce) {
  Scratch_dir dir;
  dir.write("a.txt", DICTIONARY);
  dir.write("mertu.conf", CONFIGURATION);
  Records records;
  PREPARE_WORDS(&records);
  LOG_LINE(records.book->fp_log, "the last thing before the light went out \n");
  EXPECT_THAT(dir.read("mertu_log"), testing::EndsWith("before the light went out \n"));
}

TEST(BookStart, ALogThatCannotBeOpenedIsNotMissed) {
  Scratch_dir dir;
  dir.write("a.txt", DICTIONARY);
  dir.write("mertu.conf", CONFIGURATION);
  dir.write("mertu_log/in_the_way", "");
  Records records;
  PREPARE_WORDS(&records);
  EXPECT_EQ(records.book->fp_log, nullptr);
  EXPECT_TRUE(dir.exists("IDX1/idx1_a.txt"));
}

TEST(BookStart, FreeingTheRecordsGivesTheLogBack) {
  Scratch_dir dir;
  dir.write("a.txt", DICTIONARY);
  dir.write("mertu.conf", CONFIGURATION);
  Trf_records records = {};
  ALLOCATE_RECORDS(&records);
  PREPARE_WORDS(&records);
  FREE_RECORDS(&records);
  EXPECT_EQ(SAVED_LOG(), nullptr);
  EXPECT_EQ(records.book, nullptr);
  EXPECT_EQ(records.t_posit, nullptr);
}
