// The lesson text pane of the real window: its text, its sound buttons, "Clr" and "ReDr".
#include "support/prelude.h"

#include "text/text_pane.h"

#include "gui/heard.h"
#include "gui/window.h"
#include "quiz/locate_entry.h"
#include "sound/device.h"
#include "sound/recordings.h"
#include "text/button_block.h"
#include "text/label_click.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char SPEAKING[] = "!# aa\n"
                        "#######\n"
                        "<)start)\n"
                        "A>1 lecon1.wav 0 88200\n"
                        "lecon1.wav 132300 176400\n"
                        "B>2 missing.wav 0 44100\n"
                        "lecon1.wav 1 2\n"
                        "E>5 lecon1.wav 7\n"
                        "<)end)\n"
                        "Une petite\n"
                        "le\\,con : \n"
                        "\n"
                        "A>1 Bonjour, madame.\n"
                        "B>2\n"
                        "C>3 unknown\n"
                        "E>5 one number\n"
                        "#######\n"
                        "# chat *\nQ> chat\nR> cat\n\n"
                        "# chien *\nQ> chien\nR> dog\n\n"
                        "# END_OF_FILE\n";

const char MUTE[] = "!# bb\n# pomme *\nQ> pomme\nR> apple\n\n# END_OF_FILE\n";

// The pane's own sign where a button stands.
const char BUTTON[] = "\357\277\274";

Test_files speaking_files() {
  return {{"mertu.conf", CONFIGURATION({"a.txt", "b.txt"})},
          {"mertu.rc", "style \"y\" { bg[NORMAL] = \"#f0e080\" }\n"
                       "widget \"*buttonyellow\" style \"y\"\n"},
          {"a.txt", SPEAKING},
          {"b.txt", MUTE},
          {"lecon1.wav", ""}};
}

class TextPane : public testing::Test {
protected:
  TextPane() {
    HEARD();
  }
  // Everything in the pane, BUTTON where a button stands.
  std::string slice() {
    GtkTextBuffer *buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(book->text_view));
    GtkTextIter begin;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(buffer, &begin, &end);
    char *text = gtk_text_buffer_get_slice(buffer, &begin, &end, TRUE);
    std::string result = text;
    g_free(text);
    return result;
  }
  std::string log() {
    fflush(book->fp_log);
    return window.dir().read("mertu_log");
  }
  void press(const char *label, int button = LEFT) {
    ASSERT_NE(window.button(label), nullptr) << label;
    window.press(window.button(label), button);
  }
  void describe() {
    window.press(book->Button1, LEFT);
  }
  Test_window window{speaking_files()};
  Trf_book *book = window.book;
};

std::string shown_text() {
  std::string button = BUTTON;
  return "KENTEL : ./a.txt\n \nEILSKRID : ./CPY/a.txt\n \n"
         "Une petite le\303\247on\302\240:\n" +
         button + "Bonjour, madame.\n" + button + "\n" + button + "unknown\n" + button +
         "one number\n";
}

} // namespace

TEST_F(TextPane, AnnouncedLessonShowsNoTextAndHasNoLabels) {
  EXPECT_EQ(slice(), "");
  EXPECT_STREQ(book->s_label, " ");
  EXPECT_EQ(book->nc_label[0], 0);
}

TEST_F(TextPane, DescribedLessonShowsItsTextWithItsButtons) {
  describe();
  EXPECT_EQ(slice(), shown_text());
  EXPECT_STREQ(book->s_label, " A>1 B>2 E>5 ");
}

TEST_F(TextPane, RightPressShowsNoText) {
  window.press(book->Button1, RIGHT);
  EXPECT_EQ(book->start_lesson, 2);
  EXPECT_EQ(slice(), "");
}

TEST_F(TextPane, ButtonWithAKnownLabelIsYellow) {
  describe();
  for (const char *label : {"A>1", "B>2", "E>5"})
    EXPECT_EQ(NAME_OF(window.button(label)), "buttonyellow") << label;
  EXPECT_EQ(NAME_OF(window.button("C>3")), "GtkButton");
  GdkColor colour = gtk_widget_get_style(window.button("A>1"))->bg[GTK_STATE_NORMAL];
  EXPECT_EQ(colour.red, 0xf0f0);
  EXPECT_NE(gtk_widget_get_style(window.button("C>3"))->bg[GTK_STATE_NORMAL].red, 0xf0f0);
}

TEST_F(TextPane, ButtonsKeepAwayFromTheTextAndOnlyTheyAreLetDown) {
  describe();
  EXPECT_EQ(gtk_container_get_border_width(GTK_CONTAINER(window.button("A>1"))), 3u);
  GtkTextBuffer *buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(book->text_view));
  GtkTextTag *tag =
      gtk_text_tag_table_lookup(gtk_text_buffer_get_tag_table(buffer), "sound-button");
  ASSERT_NE(tag, nullptr);
  GtkTextIter place;
  gtk_text_buffer_get_start_iter(buffer, &place);
  int let_down = 0;
  do {
    bool button = gtk_text_iter_get_child_anchor(&place) != nullptr;
    EXPECT_EQ(gtk_text_iter_has_tag(&place, tag) != 0, button);
    let_down += button ? 1 : 0;
  } while (gtk_text_iter_forward_char(&place));
  EXPECT_EQ(let_down, 4);
}

TEST_F(TextPane, DictionaryWithoutATextShowsItsHeadings) {
  press("Next");
  describe();
  EXPECT_EQ(slice(), "KENTEL : ./b.txt\n \nEILSKRID : ./CPY/b.txt\n \n");
}

TEST_F(TextPane, ClickPlaysTheRangesOfItsLabelOneAfterTheOther) {
  describe();
  press("A>1");
  EXPECT_THAT(HEARD(), ElementsAre("./lecon1.wav 0 88200", "./lecon1.wav 132300 176400"));
  press("A>1");
  EXPECT_THAT(HEARD(), testing::SizeIs(2));
  EXPECT_EQ(log().find("cback_button"), std::string::npos);
}

TEST_F(TextPane, RangesOfALabelReachTheDeviceOneAfterTheOther) {
  describe();
  // The second range of the label, 132300 to 176400, ends with the recording.
  const std::vector<short> samples = noise(176400);
  make_sound("lecon1.wav", WAV_16, 1, samples);
  Fake_sound sound;
  Sounding sounding;
  press("A>1");
  std::vector<float> floats = as_floats(samples);
  std::vector<float> expected = cut(floats, 0, 88200, 90112);
  std::vector<float> second = cut(floats, 132300, 176400, 45056);
  expected.insert(expected.end(), second.begin(), second.end());
  EXPECT_EQ(sound.floats, expected);
}

// The click is made by hand: the child must leave the parent's display alone.
TEST_F(TextPane, MachineWithoutAnyDeviceEndsAtTheFirstRange) {
  describe();
  make_sound("lecon1.wav", WAV_16, 1, noise(4000));
  Fake_sound sound;
  sound.alsa_cards = false;
  sound.dsp = "";
  Sounding sounding;
  GtkWidget *button = window.button("A>1");
  ENDS_WITH_STATUS(cback_button(button, book), 1, "linux_open_dsp_device : open ");
}

TEST_F(TextPane, ClickPlaysWithTheSoundSwitchedOff) {
  window.press(book->button_sound, LEFT);
  describe();
  press("A>1");
  EXPECT_EQ(book->sound, 0);
  EXPECT_THAT(HEARD(), testing::SizeIs(2));
}

TEST_F(TextPane, MissingSoundFileIsLoggedAndTheNextRangePlayed) {
  describe();
  press("B>2");
  EXPECT_THAT(HEARD(), ElementsAre("./lecon1.wav 1 2"));
  EXPECT_THAT(log(), HasSubstr("cback_button snd_file=missing.wav not found \n"));
}

TEST_F(TextPane, RangeOfOneNumberPlaysNothing) {
  describe();
  press("E>5");
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_EQ(log().find("cback_button"), std::string::npos);
}

TEST_F(TextPane, ClickOnAnUnknownLabelIsOnlyTraced) {
  describe();
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  press("C>3");
  unsetenv("MERTU_TRACE");
  EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Unknown  button C>3  \n"));
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_EQ(log().find("cback_button"), std::string::npos);
}

TEST_F(TextPane, OnlyTheLeftButtonClicks) {
  describe();
  press("A>1", RIGHT);
  EXPECT_THAT(HEARD(), IsEmpty());
}

TEST_F(TextPane, ButtonsPlayWhileTheLessonIsDrilled) {
  describe();
  window.press(book->Button1, LEFT);
  EXPECT_EQ(book->start_lesson, 3);
  EXPECT_EQ(slice(), shown_text());
  press("A>1");
  EXPECT_THAT(HEARD(), testing::SizeIs(2));
  window.press(book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines().back(), testing::StrEq("  "));
}

TEST_F(TextPane, ClickFindsNoLineInTheCopyOfAnotherDictionary) {
  describe();
  DROP_STREAM(book);
  book->fp = fopen("CPY/b.txt", "r");
  book->exfp = 1;
  press("A>1");
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_THAT(log(), HasSubstr("cback_button not found button A>1 \n"));
}

TEST_F(TextPane, ClickWithoutAnOpenCopyIsLogged) {
  describe();
  DROP_STREAM(book);
  press("A>1");
  EXPECT_THAT(HEARD(), IsEmpty());
  EXPECT_THAT(log(), HasSubstr("cback_button error fp == NULL \n"));
}

TEST_F(TextPane, ButtonsOfAReplacedTableAreSafe) {
  describe();
  char *line = nullptr;
  long nc = 1000000;
  long capacity = 0;
  EXTRACT_LABEL_BUTTONS(&nc, &line, &capacity, book);
  free(line);
  for (const char *label : {"A>1", "B>2", "E>5"})
    press(label);
  EXPECT_THAT(HEARD(), IsEmpty());
}

TEST_F(TextPane, LabelOutsideAsciiIsFoundAgain) {
  describe();
  GtkWidget *button = gtk_button_new_with_label("A>1\303\251");
  g_object_ref_sink(button);
  g_free(book->s_label);
  book->s_label = g_strdup(" A>1\351 ");
  testing::internal::CaptureStdout();
  setenv("MERTU_TRACE", "1", 1);
  cback_button(button, book);
  gtk_button_set_label(GTK_BUTTON(button), "A>1\342\230\272");
  cback_button(button, book);
  unsetenv("MERTU_TRACE");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "cback_button not found button A>1\351 \nUnknown  button A>1\342\230\272  \n");
  gtk_widget_destroy(button);
  g_object_unref(button);
}

TEST_F(TextPane, ClearingEmptiesThePaneAndItsButtonsGo) {
  describe();
  press("Clr");
  EXPECT_EQ(slice(), "");
  EXPECT_EQ(window.button("A>1"), nullptr);
  press("Clr");
  EXPECT_EQ(slice(), "");
}

TEST_F(TextPane, RedrawingFillsThePaneAgain) {
  describe();
  press("Clr");
  press("ReDr");
  EXPECT_EQ(slice(), shown_text());
  press("ReDr");
  EXPECT_EQ(slice(), shown_text());
  press("A>1");
  EXPECT_THAT(HEARD(), testing::SizeIs(2));
}

TEST_F(TextPane, RedrawingBeforeTheDescriptionLeavesThePaneAsItIs) {
  press("ReDr");
  EXPECT_EQ(slice(), "");
  EXPECT_EQ(book->exfp, 0);
}

TEST_F(TextPane, RedrawingOutsideTheListOfLessonsLeavesThePaneAsItIs) {
  describe();
  for (int ilesson : {0, -1, 3}) {
    book->ilesson = ilesson;
    press("ReDr");
    EXPECT_EQ(slice(), shown_text()) << ilesson;
  }
  book->ilesson = 1;
}

TEST_F(TextPane, NextLessonEmptiesThePane) {
  describe();
  press("Next");
  EXPECT_EQ(slice(), "");
  EXPECT_EQ(window.button("A>1"), nullptr);
}

TEST_F(TextPane, RedrawingAndClicksThatWaitBehindAVerdictAreSafe) {
  describe();
  window.press(book->Button1, LEFT);
  window.press(book->Button1, LEFT);
  window.queue_press(book->Button1, LEFT);
  window.queue_press(window.button("A>1"), LEFT);
  window.queue_press(window.button("ReDr"), LEFT);
  window.queue_press(window.button("Clr"), LEFT);
  window.handle();
  EXPECT_THAT(HEARD(), testing::SizeIs(2));
  EXPECT_EQ(slice(), "");
}

TEST_F(TextPane, NothingIsDoneWithoutATextView) {
  GtkWidget *text_view = book->text_view;
  book->text_view = nullptr;
  DISPLAY_TEXT(book);
  CLR_TEXT(book);
  EXPECT_EQ(book->exfp, 0);
  book->text_view = text_view;
}
