// The widget tree: every container, packing, policy, label, name and handler.
#include "support/prelude.h"

#include "app/main_window.h"

#include "app/last_state.h"
#include "app/navigation.h"
#include "command/command_entry.h"
#include "gui/window.h"
#include "quiz/answer_button.h"
#include "quiz/toggles.h"
#include "text/text_pane.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Widgets = std::vector<GtkWidget *>;

Widgets children_of(GtkWidget *container) {
  GList *list = gtk_container_get_children(GTK_CONTAINER(container));
  Widgets children;
  for (GList *item = list; item != nullptr; item = item->next)
    children.push_back(GTK_WIDGET(item->data));
  g_list_free(list);
  return children;
}

// How a child is packed: "expand fill padding", as in "yes no 0".
std::string packing_of(GtkWidget *child) {
  gboolean expand = FALSE;
  gboolean fill = FALSE;
  guint padding = 0;
  GtkPackType side = GTK_PACK_END;
  gtk_box_query_child_packing(GTK_BOX(gtk_widget_get_parent(child)), child, &expand, &fill,
                              &padding, &side);
  EXPECT_EQ(side, GTK_PACK_START);
  return std::string(expand ? "yes" : "no") + (fill ? " yes " : " no ") + std::to_string(padding);
}

std::vector<std::string> packings_of(GtkWidget *box) {
  std::vector<std::string> packings;
  for (GtkWidget *child : children_of(box))
    packings.push_back(packing_of(child));
  return packings;
}

std::vector<std::string> types_of(GtkWidget *box) {
  std::vector<std::string> types;
  for (GtkWidget *child : children_of(box))
    types.push_back(G_OBJECT_TYPE_NAME(child));
  return types;
}

std::vector<std::string> labels_of(GtkWidget *box) {
  std::vector<std::string> labels;
  for (GtkWidget *child : children_of(box))
    labels.push_back(LABEL_OF(child));
  return labels;
}

std::vector<std::string> names_of(GtkWidget *box) {
  std::vector<std::string> names;
  for (GtkWidget *child : children_of(box))
    names.push_back(NAME_OF(child));
  return names;
}

template <typename Handler>
bool calls(GtkWidget *widget, const char *signal, Handler handler, Trf_book *book) {
  GSignalMatchType match =
      (GSignalMatchType)(G_SIGNAL_MATCH_ID | G_SIGNAL_MATCH_FUNC | G_SIGNAL_MATCH_DATA);
  guint id = g_signal_lookup(signal, G_OBJECT_TYPE(widget));
  return g_signal_handler_find(widget, match, id, 0, nullptr, reinterpret_cast<gpointer>(handler),
                               book) != 0;
}

template <typename Value> Value property(GtkWidget *widget, const char *name) {
  Value value = {};
  g_object_get(widget, name, &value, nullptr);
  return value;
}

std::string font_of(GtkStyle *style) {
  char *text = pango_font_description_to_string(style->font_desc);
  std::string font = text;
  g_free(text);
  return font;
}

GtkWidget *quitbox(const Test_window &window) {
  return gtk_widget_get_parent(window.book->Button1);
}

GtkWidget *clrbox(const Test_window &window) {
  return gtk_widget_get_parent(window.button("Clr"));
}

// The box of the right frame.
GtkWidget *right_box(const Test_window &window) {
  return gtk_bin_get_child(GTK_BIN(window.book->frame2));
}

// A window built by itself from a book with these flags, never shown.
struct Built_window {
  Trf_records records = {};
  explicit Built_window(int sound, int sens_qr) {
    ALLOCATE_RECORDS(&records);
    START_VALUES(&records);
    records.book->sound = sound;
    records.book->sens_qr = sens_qr;
    Trf_geometry geometry = {300, 200, 100};
    BUILD_MAIN_WINDOW(&geometry, "helvetica 18", "helvetica 18", records.book);
  }
  ~Built_window() {
    gtk_widget_destroy(records.book->pWindow);
    FREE_RECORDS(&records);
  }
};

} // namespace

TEST(MainWindow, IsTitledResizableAndCentred) {
  Test_window window(TWO_LESSONS());
  GtkWidget *top = window.book->pWindow;
  EXPECT_STREQ(gtk_window_get_title(GTK_WINDOW(top)), "Mertu");
  EXPECT_TRUE(gtk_window_get_resizable(GTK_WINDOW(top)));
  EXPECT_EQ(property<GtkWindowPosition>(top, "window-position"), GTK_WIN_POS_CENTER);
  EXPECT_EQ(property<GtkWindowType>(top, "type"), GTK_WINDOW_TOPLEVEL);
  EXPECT_TRUE(gtk_widget_get_visible(top));
}

TEST(MainWindow, TakesItsDefaultSizeWhereNothingIsConfigured) {
  Test_window window(TWO_LESSONS());
  int width = 0;
  int height = 0;
  gtk_window_get_size(GTK_WINDOW(window.book->pWindow), &width, &height);
  EXPECT_EQ(width, 1100);
  EXPECT_EQ(height, 800);
  EXPECT_EQ(gtk_paned_get_position(GTK_PANED(window.book->hpaned)), 600);
}

TEST(MainWindow, TakesTheConfiguredSizeAndDivider) {
  Test_files files = TWO_LESSONS();
  files["mertu.conf"] += "Horiz_pix_total :> 900 <:\nVerti_pix_total :> 700 <:\n"
                         "Width_pix_vocab :> 550 <:\n";
  Test_window window(files);
  int width = 0;
  int height = 0;
  gtk_window_get_size(GTK_WINDOW(window.book->pWindow), &width, &height);
  EXPECT_EQ(width, 900);
  EXPECT_EQ(height, 700);
  EXPECT_EQ(gtk_paned_get_position(GTK_PANED(window.book->hpaned)), 550);
}

TEST(MainWindow, StandsWithSizesAndFontsThatMakeNoSense) {
  for (std::string odd :
       {"Horiz_pix_total :> -5 <:", "Horiz_pix_total :> 0 <:", "Verti_pix_total :> 2147483647 <:",
        "Width_pix_vocab :> -77 <:", "Width_pix_vocab :> 2147483647 <:", "Font_vocab :> - <:",
        "Font_vocab :> 4000 <:", "Font_lesson :> helvetica 99999999999 <:"}) {
    Test_files files = TWO_LESSONS();
    files["mertu.conf"] += odd + "\n";
    Test_window window(files);
    EXPECT_TRUE(window.alive()) << odd;
    EXPECT_EQ(window.book->start_lesson, 1) << odd;
  }
}

TEST(MainWindow, TheDividerHoldsTwoFramesThatResizeAndDoNotShrink) {
  Test_window window(TWO_LESSONS());
  Trf_book *book = window.book;
  EXPECT_THAT(children_of(book->pWindow), ElementsAre(book->hpaned));
  EXPECT_TRUE(GTK_IS_HPANED(book->hpaned));
  EXPECT_EQ(gtk_paned_get_child1(GTK_PANED(book->hpaned)), book->frame1);
  EXPECT_EQ(gtk_paned_get_child2(GTK_PANED(book->hpaned)), book->frame2);
  for (GtkWidget *frame : {book->frame1, book->frame2}) {
    gboolean resize = FALSE;
    gboolean shrink = TRUE;
    gtk_container_child_get(GTK_CONTAINER(book->hpaned), frame, "resize", &resize, "shrink",
                            &shrink, nullptr);
    EXPECT_TRUE(resize);
    EXPECT_FALSE(shrink);
    EXPECT_EQ(gtk_frame_get_shadow_type(GTK_FRAME(frame)), GTK_SHADOW_IN);
    EXPECT_EQ(property<int>(frame, "width-request"), 50);
    EXPECT_EQ(property<int>(frame, "height-request"), -1);
  }
}

TEST(MainWindow, TheLeftFrameHoldsTheCommandRowThePaneAndTheButtons) {
  Test_window window(TWO_LESSONS());
  Trf_book *book = window.book;
  EXPECT_THAT(children_of(book->frame1), ElementsAre(book->vBox1));
  EXPECT_FALSE(gtk_box_get_homogeneous(GTK_BOX(book->vBox1)));
  EXPECT_EQ(gtk_box_get_spacing(GTK_BOX(book->vBox1)), 0);
  EXPECT_THAT(types_of(book->vBox1),
              ElementsAre("GtkHBox", "GtkScrolledWindow", "GtkHBox", "GtkHSeparator", "GtkHBox"));
  EXPECT_THAT(packings_of(book->vBox1),
              ElementsAre("no no 0", "yes yes 0", "no no 0", "no yes 5", "no no 0"));
  Widgets parts = children_of(book->vBox1);
  EXPECT_EQ(parts[0], gtk_widget_get_parent(book->entry_book));
  EXPECT_EQ(parts[1], book->scroll_page);
  EXPECT_THAT(children_of(parts[2]), IsEmpty());
  EXPECT_EQ(parts[4], quitbox(window));
}

TEST(MainWindow, TheRightFrameHoldsTheTextAndItsButtons) {
  Test_window window(TWO_LESSONS());
  GtkWidget *box = right_box(window);
  EXPECT_FALSE(gtk_box_get_homogeneous(GTK_BOX(box)));
  EXPECT_EQ(gtk_box_get_spacing(GTK_BOX(box)), 0);
  EXPECT_THAT(types_of(box), ElementsAre("GtkScrolledWindow", "GtkHSeparator", "GtkHBox"));
  EXPECT_THAT(packings_of(box), ElementsAre("yes yes 0", "no yes 5", "no no 0"));
  EXPECT_EQ(children_of(box)[0], window.book->scroll2_page);
  EXPECT_EQ(children_of(box)[2], clrbox(window));
}

TEST(MainWindow, BothPanesScrollTheirBoxThroughAViewport) {
  Test_window window(TWO_LESSONS());
  Trf_book *book = window.book;
  for (auto [scrolled, box] :
       {std::pair(book->scroll_page, book->v_page), {book->scroll2_page, book->v2_page}}) {
    GtkPolicyType horizontal = GTK_POLICY_NEVER;
    GtkPolicyType vertical = GTK_POLICY_NEVER;
    gtk_scrolled_window_get_policy(GTK_SCROLLED_WINDOW(scrolled), &horizontal, &vertical);
    EXPECT_EQ(horizontal, GTK_POLICY_AUTOMATIC);
    EXPECT_EQ(vertical, GTK_POLICY_ALWAYS);
    GtkWidget *viewport = gtk_bin_get_child(GTK_BIN(scrolled));
    EXPECT_TRUE(GTK_IS_VIEWPORT(viewport));
    EXPECT_EQ(gtk_bin_get_child(GTK_BIN(viewport)), box);
    EXPECT_TRUE(GTK_IS_VBOX(box));
  }
}

TEST(MainWindow, TheCommandRowHoldsItsLabelAndAnEntryOfFiftyCharacters) {
  Test_window window(TWO_LESSONS());
  GtkWidget *row = gtk_widget_get_parent(window.book->entry_book);
  EXPECT_THAT(types_of(row), ElementsAre("GtkLabel", "GtkEntry"));
  EXPECT_THAT(packings_of(row), ElementsAre("no no 0", "yes yes 0"));
  EXPECT_EQ(LABEL_OF(children_of(row)[0]), "Cmd : ");
  EXPECT_EQ(font_of(gtk_widget_get_style(children_of(row)[0])), "helvetica 18");
  EXPECT_EQ(gtk_entry_get_max_length(GTK_ENTRY(window.book->entry_book)), 50);
}

TEST(MainWindow, TheEntryIsDrawnInTheConfiguredFontThroughTheBooksStyle) {
  Test_files files = TWO_LESSONS();
  files["mertu.conf"] += "Font_vocab :> courier 14 <:\nFont_lesson :> times 11 <:\n";
  Test_window window(files);
  Trf_book *book = window.book;
  EXPECT_EQ(font_of(book->style), "courier 14");
  EXPECT_EQ(font_of(gtk_widget_get_style(book->entry_book)), "courier 14");
  EXPECT_EQ(font_of(gtk_widget_get_style(book->text_view)), "times 11");
}

TEST(MainWindow, TheQuizButtonsStandInTheirOrderWithTheirNames) {
  Test_window window(TWO_LESSONS());
  GtkWidget *row = quitbox(window);
  EXPECT_THAT(labels_of(row),
              ElementsAre("Quit", "Prev", "Next", "<)))", "Q->R", "  Question / Response "));
  EXPECT_THAT(names_of(row), ElementsAre("buttonruz", "buttonnoir", "buttonnoir", "buttonnoir",
                                         "buttonnoir", "buttonyellow"));
  EXPECT_THAT(packings_of(row),
              ElementsAre("yes no 0", "yes no 0", "yes no 0", "yes no 0", "yes no 0", "no no 0"));
  EXPECT_EQ(children_of(row)[3], window.book->button_sound);
  EXPECT_EQ(children_of(row)[4], window.book->button_qr);
  EXPECT_EQ(children_of(row)[5], window.book->Button1);
}

TEST(MainWindow, TheAnswerButtonIsBuiltWithTwoBlanksOnEachSide) {
  Built_window built(1, 1);
  EXPECT_EQ(LABEL_OF(built.records.book->Button1), "  Question / Response  ");
  EXPECT_EQ(NAME_OF(built.records.book->Button1), "buttonyellow");
}

TEST(MainWindow, TheTextButtonsStandInTheirOrderWithTheirNames) {
  Test_window window(TWO_LESSONS());
  GtkWidget *row = clrbox(window);
  EXPECT_THAT(labels_of(row), ElementsAre("Clr", "ReDr"));
  EXPECT_THAT(names_of(row), ElementsAre("buttonnoir", "buttonnoir"));
  EXPECT_THAT(packings_of(row), ElementsAre("yes no 0", "yes no 0"));
}

TEST(MainWindow, TheTextPaneIsReadOnlyWrappedAndIndented) {
  Test_window window(TWO_LESSONS());
  GtkTextView *view = GTK_TEXT_VIEW(window.book->text_view);
  EXPECT_FALSE(gtk_text_view_get_editable(view));
  EXPECT_EQ(gtk_text_view_get_wrap_mode(view), GTK_WRAP_WORD_CHAR);
  EXPECT_EQ(gtk_text_view_get_left_margin(view), 15);
  EXPECT_EQ(gtk_text_view_get_right_margin(view), 10);
  EXPECT_EQ(gtk_widget_get_parent(window.book->text_view), window.book->v2_page);
  EXPECT_EQ(packing_of(window.book->text_view), "yes yes 0");
}

TEST(MainWindow, EverySignalReachesItsHandlerWithTheBook) {
  Test_window window(TWO_LESSONS());
  Trf_book *book = window.book;
  EXPECT_TRUE(calls(book->entry_book, "activate", callback_entry_book, book));
  EXPECT_TRUE(calls(book->entry_book, "button-press-event", clean_entry_book, book));
  EXPECT_TRUE(calls(window.button("Quit"), "clicked", ON_QUIT, book));
  EXPECT_TRUE(calls(window.button("Prev"), "clicked", cback_prev_less, book));
  EXPECT_TRUE(calls(window.button("Next"), "clicked", cback_next_less, book));
  EXPECT_TRUE(calls(book->button_sound, "button_press_event", callback_togsound, book));
  EXPECT_TRUE(calls(book->button_qr, "button_press_event", callback_togqr, book));
  EXPECT_TRUE(calls(book->Button1, "button_press_event", callback_ok_nok, book));
  EXPECT_TRUE(calls(window.button("Clr"), "clicked", cback_clr_butt, book));
  EXPECT_TRUE(calls(window.button("ReDr"), "clicked", cback_redr_butt, book));
}

TEST(MainWindow, SetsNeitherTheSpareSeparatorNorTheTextPanesLabel) {
  Test_window window(TWO_LESSONS());
  EXPECT_EQ(window.book->separator, nullptr);
  EXPECT_EQ(window.book->win_label, nullptr);
}

TEST(MainWindow, LabelsTheButtonsFromTheBook) {
  Built_window on_forward(1, 1);
  EXPECT_EQ(LABEL_OF(on_forward.records.book->button_sound), "<)))");
  EXPECT_EQ(LABEL_OF(on_forward.records.book->button_qr), "Q->R");
  Built_window off_backward(0, 2);
  EXPECT_EQ(LABEL_OF(off_backward.records.book->button_sound), "< XX");
  EXPECT_EQ(LABEL_OF(off_backward.records.book->button_qr), "R->Q");
}

TEST(MainWindow, FlagsThatMeanNothingBecomeSilenceAndForward) {
  Built_window built(5, 7);
  EXPECT_EQ(LABEL_OF(built.records.book->button_sound), "< XX");
  EXPECT_EQ(built.records.book->sound, 0);
  EXPECT_EQ(LABEL_OF(built.records.book->button_qr), "Q->R");
  EXPECT_EQ(built.records.book->sens_qr, 1);
}

TEST(MainWindow, TheResourceFileColoursTheButtonsByTheirNames) {
  Test_files files = TWO_LESSONS();
  files["mertu.rc"] = "style \"red\" { bg[NORMAL] = { 1.0, 0.0, 0.0 } }\n"
                      "style \"yellow\" { bg[NORMAL] = { 1.0, 1.0, 0.0 } }\n"
                      "widget \"*buttonruz\" style \"red\"\n"
                      "widget \"*buttonyellow\" style \"yellow\"\n";
  Test_window window(files);
  GdkColor red = gtk_widget_get_style(window.button("Quit"))->bg[GTK_STATE_NORMAL];
  EXPECT_EQ(red.red, 0xFFFF);
  EXPECT_EQ(red.green, 0);
  GdkColor yellow = gtk_widget_get_style(window.book->Button1)->bg[GTK_STATE_NORMAL];
  EXPECT_EQ(yellow.red, 0xFFFF);
  EXPECT_EQ(yellow.green, 0xFFFF);
  EXPECT_EQ(yellow.blue, 0);
}

TEST(MainWindow, AnnouncesTheFirstLessonBeforeItIsShown) {
  Test_window window(TWO_LESSONS());
  EXPECT_THAT(window.pane_lines(), ElementsAre("  ", "Confirm display of lesson 1", "aa", "  ",
                                               "=============================="));
  EXPECT_EQ(window.pane_lines(), window.book_lines());
  EXPECT_EQ(window.book->start_lesson, 1);
  EXPECT_EQ(window.book->active, 1);
  EXPECT_TRUE(SENSITIVE(window.book->Button1));
}

TEST(MainWindow, HasNoOpenDictionaryAtTheStart) {
  Test_window window(TWO_LESSONS());
  EXPECT_EQ(window.book->fp, nullptr);
  EXPECT_EQ(window.book->exfp, 0);
}

TEST(MainWindow, ClosingItEndsTheMainLoopAndForgetsItsWidgets) {
  Test_window window(TWO_LESSONS());
  window.close();
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.alive());
  EXPECT_EQ(window.book->Button1, nullptr);
  EXPECT_EQ(window.book->v_page, nullptr);
  EXPECT_EQ(window.book->wbutton[0], nullptr);
  EXPECT_EQ(window.book->style, nullptr);
}

TEST(MainWindow, ClosingItRecordsAndRemembersNothing) {
  Test_window window(TWO_LESSONS());
  std::string index = window.dir().read("IDX1/idx1_a.txt");
  for (int i = 0; i < 4; i++) // describe, start, response, verdict
    window.press(window.book->Button1, LEFT);
  window.close();
  EXPECT_TRUE(window.ended());
  EXPECT_EQ(window.dir().read("IDX1/idx1_a.txt"), index);
  EXPECT_FALSE(window.dir().exists("Mertu_last_state"));
}

TEST(MainWindow, MovesToItsRememberedPlaceWhenBothCoordinatesAreUsable) {
  Test_window window(TWO_LESSONS());
  Start_State state = {1, 37, 41, -1, -1, -1, 0};
  SHOW_MAIN_WINDOW(&state, window.book);
  window.handle();
  int x = 0;
  int y = 0;
  gdk_window_get_origin(gtk_widget_get_window(window.book->pWindow), &x, &y);
  EXPECT_EQ(x, 37);
  EXPECT_EQ(y, 41);
}

TEST(MainWindow, ANegativeCoordinateLeavesItCentred) {
  Test_window window(TWO_LESSONS());
  for (Start_State state : {Start_State{1, -1, 41, -1, -1, -1, 0}, {1, 37, -1, -1, -1, -1, 0}}) {
    SHOW_MAIN_WINDOW(&state, window.book);
    window.handle();
    int x = 0;
    int y = 0;
    gdk_window_get_origin(gtk_widget_get_window(window.book->pWindow), &x, &y);
    EXPECT_EQ(x, (gdk_screen_width() - 1100) / 2);
    EXPECT_EQ(y, (gdk_screen_height() - 800) / 2);
  }
}

TEST(ButtonPlaces, AButtonInsideTheTextIsToldWhereItStandsOnTheScreen) {
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  Test_window window(TWO_LESSONS());
  GtkTextView *view = GTK_TEXT_VIEW(window.book->text_view);
  GtkTextBuffer *text = gtk_text_view_get_buffer(view);
  gtk_text_buffer_set_text(text, "one\ntwo\n", -1);
  GtkTextIter end;
  gtk_text_buffer_get_end_iter(text, &end);
  GtkWidget *button = gtk_button_new_with_label("A>1");
  gtk_widget_show(button);
  gtk_text_view_add_child_at_anchor(view, button, gtk_text_buffer_create_child_anchor(text, &end));
  window.handle();
  gtk_widget_set_sensitive(window.book->Button1, FALSE); // has every place told again
  window.handle();
  std::string told = testing::internal::GetCapturedStdout();
  unsetenv("MERTU_TRACE");
  int x = 0;
  int y = 0;
  gdk_window_get_origin(GTK_BUTTON(button)->event_window, &x, &y);
  EXPECT_THAT(told, testing::HasSubstr("button A>1 at " + std::to_string(x) + " " +
                                       std::to_string(y) + " "));
}

TEST(CommandEntry, TakesFiftyCharactersAtMost) {
  Test_window window(TWO_LESSONS());
  window.type(std::string(60, 'a'));
  EXPECT_EQ(window.command(), std::string(50, 'a'));
}

TEST(CommandEntry, AClickDeletesTheSelectedText) {
  Test_window window(TWO_LESSONS());
  window.type("!help");
  gtk_editable_select_region(GTK_EDITABLE(window.book->entry_book), 0, -1);
  window.press(window.book->entry_book, LEFT);
  EXPECT_EQ(window.command(), "");
}

TEST(CommandEntry, AClickWithoutASelectionKeepsTheText) {
  Test_window window(TWO_LESSONS());
  window.type("!help");
  gtk_editable_select_region(GTK_EDITABLE(window.book->entry_book), 2, 2);
  window.press(window.book->entry_book, LEFT);
  EXPECT_EQ(window.command(), "!help");
}
