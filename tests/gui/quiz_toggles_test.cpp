// The two toggles beside the answer button.
#include "support/prelude.h"

#include "quiz/toggles.h"

#include <string.h>

#include "gui/window.h"
#include "score/position_table.h"

namespace {

void start(Test_window *window) {
  for (int i = 0; i < 2; i++)
    window->press(window->book->Button1, LEFT);
}

std::string direction_label(const Test_window &window) {
  return LABEL_OF(window.book->button_qr);
}

} // namespace

TEST(QuizToggles, DirectionChangesAtOnceBeforeADrill) {
  Test_window window(TWO_LESSONS());
  window.press(window.book->button_qr, LEFT);
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(direction_label(window), "R->Q");
  window.press(window.book->button_qr, RIGHT);
  EXPECT_EQ(window.book->sens_qr, 1);
  EXPECT_EQ(direction_label(window), "Q->R");
  EXPECT_EQ(window.book->toggle_sens_qr, 0);
}

TEST(QuizToggles, DirectionInADrillChangesOnlyItsLabelUntilTheVerdict) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->button_qr, LEFT);
  EXPECT_EQ(window.book->sens_qr, 1);
  EXPECT_EQ(window.book->toggle_sens_qr, 1);
  EXPECT_EQ(direction_label(window), "R->Q");
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->sens_qr, 1);
  window.press(window.book->Button1, RIGHT);
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 1);
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.book->sens_qrm, 2);
  EXPECT_EQ(window.book->toggle_sens_qr, 0);
  EXPECT_EQ(direction_label(window), "R->Q");
}

TEST(QuizToggles, SecondPressTakesTheRequestBack) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->button_qr, LEFT);
  window.press(window.book->button_qr, LEFT);
  EXPECT_EQ(window.book->toggle_sens_qr, 0);
  EXPECT_EQ(direction_label(window), "Q->R");
}

TEST(QuizToggles, RequestFromTheOtherDirectionShowsTheFirst) {
  Test_window window(TWO_LESSONS());
  window.press(window.book->button_qr, LEFT);
  start(&window);
  window.press(window.book->button_qr, LEFT);
  EXPECT_EQ(direction_label(window), "Q->R");
  window.press(window.book->button_qr, LEFT);
  EXPECT_EQ(direction_label(window), "R->Q");
}

TEST(QuizToggles, DirectionUnderAResponseChangesAtOnce) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->button_qr, LEFT);
  window.press(window.book->Button1, LEFT);
  window.press(window.book->button_qr, LEFT);
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.book->toggle_sens_qr, 0);
  EXPECT_EQ(direction_label(window), "R->Q");
  window.press(window.book->Button1, RIGHT);
  EXPECT_EQ(window.book->t_posit->QRcum_nok[1], 1);
  EXPECT_EQ(window.book->t_posit->RQcum_nok[1], 0);
  EXPECT_EQ(window.book->sens_qr, 2);
}

TEST(QuizToggles, SkipTakesARequestedDirectionToo) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->button_qr, LEFT);
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, MIDDLE);
  EXPECT_EQ(window.book->sens_qr, 2);
}

TEST(QuizToggles, RequestOutlivesAChangeOfLesson) {
  Test_window window(TWO_LESSONS());
  start(&window);
  window.press(window.book->button_qr, LEFT);
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.press(window.button("Next"), LEFT);
  EXPECT_EQ(window.book->toggle_sens_qr, 1);
  EXPECT_EQ(direction_label(window), "Q->R");
  start(&window);
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->sens_qr, 2);
}

TEST(QuizToggles, SoundSwitchesItsFlagAndLabel) {
  Test_window window(TWO_LESSONS());
  EXPECT_EQ(LABEL_OF(window.book->button_sound), "<)))");
  window.press(window.book->button_sound, LEFT);
  EXPECT_EQ(window.book->sound, 0);
  EXPECT_EQ(LABEL_OF(window.book->button_sound), "< XX");
  window.press(window.book->button_sound, MIDDLE);
  EXPECT_EQ(window.book->sound, 1);
  EXPECT_EQ(LABEL_OF(window.book->button_sound), "<)))");
}

TEST(QuizToggles, BothFreeTheAnswerButton) {
  Test_window window(TWO_LESSONS());
  for (GtkWidget *toggle : {window.book->button_qr, window.book->button_sound}) {
    window.book->active = 0;
    gtk_widget_set_sensitive(window.book->Button1, FALSE);
    window.press(toggle, LEFT);
    EXPECT_EQ(window.book->active, 1);
    EXPECT_TRUE(SENSITIVE(window.book->Button1));
  }
}

TEST(QuizToggles, CallWithoutAnEventCountsAsAPress) {
  Test_window window(TWO_LESSONS());
  EXPECT_EQ(callback_togsound(window.book->button_sound, nullptr, window.book), FALSE);
  EXPECT_EQ(callback_togqr(window.book->button_qr, nullptr, window.book), FALSE);
  EXPECT_EQ(window.book->sound, 0);
  EXPECT_EQ(window.book->sens_qr, 2);
}

TEST(QuizToggles, EventsOfADoubleClickAreNoPresses) {
  Test_window window(TWO_LESSONS());
  GdkEvent event;
  memset(&event, 0, sizeof event);
  event.type = GDK_2BUTTON_PRESS;
  event.button.button = LEFT;
  EXPECT_EQ(callback_togsound(window.book->button_sound, &event, window.book), FALSE);
  EXPECT_EQ(callback_togqr(window.book->button_qr, &event, window.book), FALSE);
  EXPECT_EQ(window.book->sound, 1);
  EXPECT_EQ(window.book->sens_qr, 1);
}
