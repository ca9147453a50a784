// The command entry in the real window: each command typed, its outcome read from pane, labels,
// files and log.
#include "support/prelude.h"

#include "command/command_entry.h"

#include <utility>

#include "config/registry.h"
#include "db/history_line.h"
#include "gui/window.h"
#include "quiz/pane.h"
#include "score/position_table.h"
#include "support/present.h"

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Lines = std::vector<std::string>;

const char RULE[] = "==============================";
const char RECORD_1[] = "Voulez-vous enregistrer la le\303\247on 1 ?";
const char BEFORE[] = "retour ancienne le\303\247on :";
const char NO_WORD[] = "Aucun mot dans la le\303\247on,";
const char DATABASE_DONE[] = "Check and correct data base : DONE,";
const char LISTING_DONE[] = "Dictionary file ./mertu_dico : DONE,";
const char UNKNOWN[] = "code is unknown,";

// Every text that is not the sound switch: one that composes, reports, works, opens, or names
// nothing.
const char *const LEAVING[] = {"!new",   "!bal",      "!worst", "!worsto", "!worsty", "!worstn",
                               "!lessv", "!ltag",     "!dico",  "!help",   "help",    "!ccdb nix",
                               "!trf",   "!synchro ", "!tag",   "!ntag",   "2",       "bb",
                               "99",     "0",         "nix",    "",        "!worstx"};

// 1 March 2026, and two days before.
const int TODAY[] = {2026, 3, 1};
const long EARLIER = 9188;

// A name line of an index as it begins, with the two histories that shall stand behind it: known,
// not known, and their days.
struct History {
  std::string question;
  long qr[5];
  long rq[5];
};

// Two dictionaries with tags: a.txt ("aa") of four entries and b.txt ("bb") of three.
Test_files tagged_lessons() {
  Test_files files = {{"mertu.conf", CONFIGURATION({"a.txt", "b.txt"})}};
  auto dictionary = [](const std::string &alias, const Lines &entries) {
    std::string text = "!# " + alias + "\n#######\nText of " + alias + ".\n#######\n";
    for (const std::string &entry : entries)
      text += "# " + entry.substr(0, entry.find(' ')) + " *" + entry.substr(entry.find(' ')) +
              "\nQ> " + entry + "\nR> r-" + entry + "\n\n";
    return text + "# END_OF_FILE\n";
  };
  files["a.txt"] =
      dictionary("aa", {"chat animal", "courir verbe irr\351gulier", "dire verbe", "et "});
  files["b.txt"] = dictionary("bb", {"chien animal", "aller verbe irr\351gulier", "ou "});
  return files;
}

// A window of today.
class Commands : public Test_window {
public:
  explicit Commands(const Test_files &files = TWO_LESSONS())
      : Test_window(files, [] { SET_PRESENT_DAY(TODAY[0], TODAY[1], TODAY[2]); }) {
  }
  ~Commands() {
    RESET_PRESENT();
  }
  // Puts histories into an index.
  void set_histories(const std::string &idx1, const std::vector<History> &histories) {
    std::string bytes = dir().read(idx1);
    for (const History &history : histories) {
      size_t at = bytes.find("\n#" + history.question + " *");
      ASSERT_NE(at, std::string::npos) << history.question << bytes;
      for (const long *values : {history.qr, history.rq}) {
        at = bytes.find('\n', at + 1);
        char line[53];
        WRITE_HISTORY_LINE(values, line);
        bytes.replace(at + 1, 52, line);
      }
    }
    dir().write(idx1, bytes);
  }
  // Three of five words asked Q->R, one of them R->Q too: chat worst, then pomme, then vache.
  void ask_some() {
    set_histories("IDX1/idx1_a.txt", {{"chat", {0, 1, 9, EARLIER, EARLIER}, {}},
                                      {"vache", {0, 5, 1, EARLIER, EARLIER - 200}, {}}});
    set_histories("IDX1/idx1_b.txt",
                  {{"pomme", {0, 1, 4, EARLIER, EARLIER}, {0, 1, 0, EARLIER, 0}}});
  }
  // Confirms the announced lesson and starts it.
  void start() {
    press(book->Button1, LEFT);
    press(book->Button1, LEFT);
    EXPECT_EQ(book->start_lesson, 3);
  }
  // Starts lesson 1 and answers a word of it.
  void drill() {
    start();
    press(book->Button1, LEFT);
    press(book->Button1, LEFT);
  }
  // Types a text, also an empty one.
  void say(const std::string &text) {
    if (text.empty())
      gtk_entry_set_text(GTK_ENTRY(book->entry_book), "");
    type(text);
  }
  // Types a command and answers the record question with No.
  void leave(const std::string &text) {
    dialogs.will_answer(GTK_RESPONSE_NO);
    type(text);
    EXPECT_EQ(dialogs.seen.back().text, RECORD_1) << text;
  }
  // Puts any text in the entry, also one that no key types, and presses Enter.
  void enter(const std::string &text) {
    gtk_entry_set_max_length(GTK_ENTRY(book->entry_book), 0);
    gtk_entry_set_text(GTK_ENTRY(book->entry_book), text.c_str());
    gtk_widget_grab_focus(book->entry_book);
    queue_keys("\n");
    handle();
  }
  std::string log() const {
    fflush(book->fp_log);
    return dir().read("mertu_log");
  }
  // The words of the composed lesson in the order of its file.
  Lines words() const {
    Lines found;
    std::istringstream text(dir().read("idx2_gene"));
    for (std::string line; std::getline(text, line);)
      if (line[0] == '#' && line.find("END_OF_FILE") == std::string::npos)
        found.push_back(line.substr(1, line.find(" *") - 1));
    return found;
  }
  // The same from the worst known to the best, in a direction.
  Lines ranked(int sens) const {
    Lines in_file = words();
    Lines found;
    std::vector<long> places(in_file.size());
    const int *ord = SIDE_OF_TABLE(sens, book->t_posit).ord;
    for (int rank = 1; rank <= book->t_posit->nb_posit; rank++) {
      std::string name = dir().read("idx2_gene").substr((size_t)book->t_posit->posit[ord[rank]]);
      found.push_back(name.substr(1, name.find(" *") - 1));
    }
    return found;
  }
  void expect_composed(int nb) {
    EXPECT_EQ(book->ilesson, 0);
    EXPECT_EQ(book->start_lesson, 1);
    EXPECT_EQ(book->t_posit->nb_posit, nb);
    EXPECT_THAT(pane_lines(), ElementsAre("  ", "Confirm display of lesson 0", "  ", RULE));
    expect_closed();
  }
  // A lesson is announced after a command that opened none.
  void expect_returned(const std::string &outcome, int ilesson, const std::string &alias) {
    EXPECT_EQ(book->ilesson, ilesson);
    EXPECT_EQ(book->start_lesson, 1);
    EXPECT_EQ(book->t_posit->nb_posit, 0);
    EXPECT_THAT(pane_lines(), ElementsAre("  ", outcome, BEFORE, "  ",
                                          "Confirm display of lesson " + std::to_string(ilesson),
                                          alias, "  ", RULE));
    expect_closed();
  }
  void expect_opened(int ilesson, const std::string &alias) {
    EXPECT_EQ(book->ilesson, ilesson);
    EXPECT_EQ(book->start_lesson, 1);
    EXPECT_THAT(pane_lines(),
                ElementsAre("  ", "Confirm display of lesson " + std::to_string(ilesson), alias,
                            "  ", RULE));
    expect_closed();
  }
  void expect_closed() {
    EXPECT_EQ(book->fp, nullptr);
    EXPECT_EQ(book->exfp, 0);
    EXPECT_EQ(book->fp_gene, nullptr);
    EXPECT_EQ(book->fp_idx1, nullptr);
  }
  std::string direction() const {
    return LABEL_OF(book->button_qr);
  }
  // The texts of the dialogs so far.
  Lines told() const {
    Lines texts;
    for (const Seen_dialog &dialog : dialogs.seen)
      texts.push_back(dialog.text);
    return texts;
  }
};

size_t count(const std::string &text, const std::string &part) {
  size_t nb = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at++)
    nb++;
  return nb;
}

long nb_open_files() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

} // namespace

TEST(SoundCommand, TwiceSwitchesOffAndOnAgain) {
  Commands window;
  window.type("!sound");
  EXPECT_EQ(window.book->sound, 0);
  EXPECT_EQ(LABEL_OF(window.book->button_sound), "< XX");
  window.type("!sound");
  EXPECT_EQ(window.book->sound, 1);
  EXPECT_EQ(LABEL_OF(window.book->button_sound), "<)))");
}

TEST(SoundCommand, OnAndOffSayWhatTheyMean) {
  Commands window;
  window.type("!sound on");
  EXPECT_EQ(window.book->sound, 1);
  EXPECT_EQ(LABEL_OF(window.book->button_sound), "<)))");
  for (int i = 0; i < 2; i++) {
    window.type("!sound off");
    EXPECT_EQ(window.book->sound, 0);
    EXPECT_EQ(LABEL_OF(window.book->button_sound), "< XX");
  }
  window.type("!sound   on");
  EXPECT_EQ(window.book->sound, 1);
  window.type("!sound louder");
  EXPECT_EQ(window.book->sound, 0);
}

TEST(SoundCommand, LeavesTheRunningDrillAlone) {
  Commands window;
  window.drill();
  Lines before = window.pane_lines();
  for (const char *text : {"!sound on", "!sound off", "!sound"}) {
    window.type(text);
    EXPECT_THAT(window.told(), IsEmpty());
    EXPECT_EQ(window.pane_lines(), before);
    EXPECT_EQ(window.book->start_lesson, 3);
    EXPECT_EQ(window.book->exfp, 1);
    EXPECT_NE(window.book->fp, nullptr);
  }
  window.press(window.book->Button1, LEFT);
  EXPECT_EQ(window.book->state, 2);
}

TEST(Command, EveryOtherTextAsksWhetherToRecordTheDrill) {
  for (const char *text : LEAVING) {
    Commands window(tagged_lessons());
    window.drill();
    window.dialogs.will_answer(GTK_RESPONSE_NO);
    if (text == std::string("!ccdb nix"))
      window.dialogs.will_answer(GTK_RESPONSE_OK);
    std::string before = window.dir().read("IDX1/idx1_a.txt");
    window.type(text);
    ASSERT_FALSE(window.dialogs.seen.empty()) << text;
    const Seen_dialog &dialog = window.dialogs.seen[0];
    EXPECT_EQ(dialog.text, RECORD_1) << text;
    EXPECT_TRUE(dialog.modal);
    EXPECT_EQ(dialog.type, GTK_MESSAGE_QUESTION);
    EXPECT_THAT(dialog.buttons, testing::UnorderedElementsAre("Yes", "No", "RAZ ?"));
    EXPECT_LE(window.book->start_lesson, 1) << text;
    EXPECT_EQ(window.command(), text);
    EXPECT_EQ(window.dir().read("IDX1/idx1_a.txt"), before) << text;
    window.expect_closed();
  }
}

TEST(Command, BeforeADrillNothingIsAsked) {
  for (const char *text : {"!new", "!help", "2", "nix", ""})
    for (int presses : {0, 1}) {
      Commands window;
      for (int i = 0; i < presses; i++)
        window.press(window.book->Button1, LEFT);
      window.type(text);
      EXPECT_THAT(window.told(), IsEmpty()) << text;
    }
}

TEST(Command, ALessonOutsideTheListIsLeftWithoutAQuestion) {
  for (int ilesson : {-1, 7}) {
    Commands window;
    window.drill();
    window.book->ilesson = ilesson;
    window.type("2");
    EXPECT_THAT(window.told(), IsEmpty());
    window.expect_opened(2, "bb");
  }
}

TEST(Command, YesRecordsTheDrillBeforeTheCommand) {
  Commands window;
  window.drill();
  window.dialogs.will_answer(GTK_RESPONSE_YES);
  window.type("!bal rq"); // the word just recorded Q->R is the one that balances R->Q
  std::string log = window.log();
  EXPECT_LT(log.find("RECORD_LESSON 1 DONE  nb_errors=0\n"), log.find("BALANCE_WORDS done\n"));
  window.expect_composed(1);
}

TEST(Command, RazForgetsTheLessonBeforeTheCommand) {
  Commands window;
  window.ask_some();
  window.drill();
  window.dialogs.will_answer(GTK_RESPONSE_OK);
  window.dialogs.will_answer(GTK_RESPONSE_YES);
  window.type("!worst");
  EXPECT_EQ(window.dialogs.seen.size(), 2u);
  EXPECT_THAT(window.words(), ElementsAre("pomme")); // those of lesson 1 are forgotten
}

TEST(Command, NoAndAClosedQuestionRecordNothing) {
  for (int response : {(int)GTK_RESPONSE_NO, (int)GTK_RESPONSE_DELETE_EVENT}) {
    Commands window;
    window.drill();
    std::string before = window.dir().read("IDX1/idx1_a.txt");
    window.dialogs.will_answer(response);
    window.type("2");
    window.expect_opened(2, "bb");
    EXPECT_EQ(window.dir().read("IDX1/idx1_a.txt"), before);
  }
}

TEST(Command, TheFilesOfTheDrillAreClosedBeforeTheQuestion) {
  Commands window;
  window.drill();
  ASSERT_NE(window.book->fp, nullptr);
  window.book->fp_gene = fopen("mertu.conf", "r");
  window.book->fp_idx1 = fopen("mertu.conf", "r");
  window.dialogs.will_do([&](GtkWidget *dialog) {
    window.expect_closed();
    QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
  });
  window.type("!sound "); // not this one
  EXPECT_NE(window.book->fp_gene, nullptr);
  window.type("2");
  EXPECT_EQ(window.dialogs.seen.size(), 1u);
}

TEST(Command, AWindowThatGoesUnderTheQuestionIsNotTouched) {
  for (const char *text : LEAVING) {
    Commands window(tagged_lessons());
    window.drill();
    std::string before = window.log();
    window.dialogs.will_do([&](GtkWidget *) { gtk_widget_destroy(window.book->pWindow); });
    window.type(text);
    EXPECT_FALSE(window.alive());
    EXPECT_TRUE(window.ended());
    EXPECT_EQ(window.book->ilesson, 1) << text;
    EXPECT_EQ(window.book->start_lesson, 3) << text;
    EXPECT_EQ(window.log(), before) << text;
    for (const char *name : {"idx2_gene", "mertu_dico", "mertu_ltag", "IDX1_TRF"})
      EXPECT_FALSE(window.dir().exists(name)) << text;
  }
}

TEST(Command, WhileTheQuestionStandsTheEntryTakesNothing) {
  Commands window;
  window.drill();
  window.dialogs.will_do([&](GtkWidget *dialog) {
    window.queue_keys("!new");
    window.queue_press(window.book->entry_book, LEFT);
    QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
  });
  window.type("2");
  EXPECT_EQ(window.dialogs.seen.size(), 1u);
  EXPECT_EQ(window.command(), "2");
  window.expect_opened(2, "bb");
}

TEST(Command, ALessonThatMovesOnUnderTheQuestionEndsIt) {
  Commands window;
  window.drill();
  window.dialogs.will_do([](GtkWidget *dialog) {
    LESSON_MOVES_ON();
    QUEUE_ANSWER(dialog, GTK_RESPONSE_NO);
  });
  window.type("2");
  EXPECT_EQ(window.dialogs.seen.size(), 1u);
  EXPECT_EQ(window.book->ilesson, 1);
  EXPECT_EQ(window.book->start_lesson, 3);
}

TEST(Command, ADoublePressInTheEntryIsLeftToIt) {
  Commands window;
  GtkWidget *entry = window.book->entry_book;
  gtk_entry_set_text(GTK_ENTRY(entry), "!help");
  for (const auto &[type, left] :
       {std::pair<GdkEventType, const char *>{GDK_2BUTTON_PRESS, "!help"},
        {GDK_BUTTON_PRESS, ""}}) {
    gtk_editable_select_region(GTK_EDITABLE(entry), 0, -1);
    GdkEvent *event = gdk_event_new(type);
    EXPECT_FALSE(clean_entry_book(entry, event, window.book));
    gdk_event_free(event);
    EXPECT_EQ(window.command(), left);
  }
}

TEST(Command, AnyOtherEventOfTheEntryEmptiesItsSelection) {
  Commands window;
  GtkWidget *entry = window.book->entry_book;
  GdkEvent event = {};
  event.type = GDK_NOTHING;
  for (GdkEvent *given : {&event, static_cast<GdkEvent *>(nullptr)}) {
    gtk_entry_set_text(GTK_ENTRY(entry), "!help");
    gtk_editable_select_region(GTK_EDITABLE(entry), 1, 3);
    EXPECT_FALSE(clean_entry_book(entry, given, window.book));
    EXPECT_EQ(window.command(), "!lp");
  }
}

TEST(Command, NeedsNoMoreOfTheWindowThanItsEntryAndItsPane) {
  Commands window;
  window.dir().write("mertu_list.txt", "a page\n");
  GtkWidget *whole = std::exchange(window.book->pWindow, nullptr);
  auto activate = [&window](const char *text) {
    gtk_entry_set_text(GTK_ENTRY(window.book->entry_book), text);
    callback_entry_book(window.book->entry_book, window.book);
  };
  window.book->ilesson = 0;
  activate("nix");
  EXPECT_EQ(window.book->ilesson, 1);
  EXPECT_THAT(window.pane_lines(), Contains(UNKNOWN));
  activate("!help");
  EXPECT_EQ(window.book->start_lesson, 0);
  EXPECT_THAT(window.pane_lines(), ElementsAre("a page"));
  activate("!ccdb 99");
  EXPECT_THAT(window.log(), HasSubstr("CHECK_CORR_SNG_DBASE not OK lesson  num=99 \n"));
  window.book->pWindow = whole;
}

TEST(Command, TheTextStaysInTheEntry) {
  Commands window;
  for (const char *text : {"!new rq", "!tag Verbes", "  2", "nix", "!sound"}) {
    window.type(text);
    EXPECT_EQ(window.command(), text);
  }
}

TEST(Command, EachStepIsTraced) {
  Commands window;
  window.drill();
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  setenv("MERTU_TRACE", "1", 1);
  testing::internal::CaptureStdout();
  for (const char *text : {"!sound off", "!bal rq", "2"})
    window.type(text);
  std::string traced = testing::internal::GetCapturedStdout();
  unsetenv("MERTU_TRACE");
  size_t at = 0;
  for (const char *step :
       {"switches the sound to 0\n", "closes the files of lesson 1\n",
        "turns from direction 1 to 2\n", "has composed 0 entries\n", "goes to lesson 1\n",
        "closes the files of lesson 1\n", "goes to lesson 2\n"}) {
    at = traced.find(std::string("callback_entry_book ") + step, at);
    ASSERT_NE(at, std::string::npos) << step << traced;
  }
}

TEST(Command, ItMayBeTypedBehindAVerdict) {
  for (const char *text : {"2", "!new", "!ltag", "!help", "!dico", "nix"}) {
    Commands window;
    window.start();
    window.press(window.book->Button1, LEFT);
    gtk_widget_grab_focus(window.book->entry_book);
    gtk_editable_select_region(GTK_EDITABLE(window.book->entry_book), 0, -1);
    window.dialogs.will_answer(GTK_RESPONSE_NO);
    window.queue_press(window.book->Button1, RIGHT);
    window.queue_keys(text + std::string("\n"));
    window.handle();
    ASSERT_EQ(window.dialogs.seen.size(), 1u) << text;
    bool shows = text == std::string("!ltag") || text == std::string("!help");
    EXPECT_EQ(window.book->start_lesson, shows ? 0 : 1) << text;
    EXPECT_THAT(window.pane_lines(), Not(Contains(HasSubstr("Question")))) << text;
    EXPECT_EQ(window.book->active, 1);
    EXPECT_TRUE(SENSITIVE(window.book->Button1));
    window.press(window.book->Button1, LEFT);
    EXPECT_EQ(window.book->start_lesson, shows ? 1 : 2) << text;
  }
}

TEST(Command, NoFileStaysOpen) {
  Commands window(tagged_lessons());
  window.drill();
  window.leave("nix");
  long before = nb_open_files();
  for (const char *text : LEAVING) {
    if (text == std::string("!ccdb nix"))
      window.dialogs.will_answer(GTK_RESPONSE_OK);
    window.say(text);
    EXPECT_EQ(nb_open_files(), before) << text;
  }
}

TEST(NewCommand, ComposesTheWordsNeverAsked) {
  Commands window;
  window.ask_some();
  window.drill();
  window.leave("!new");
  window.expect_composed(2);
  EXPECT_THAT(window.words(), ElementsAre("chien", "poire"));
  EXPECT_THAT(window.log(), HasSubstr("NEW_WORDS_LESSON done\n"));
  EXPECT_EQ(window.book->sens_qr, 1);
  window.start();
  EXPECT_THAT(window.pane_lines(), Contains(testing::AnyOf("chien", "poire")));
}

TEST(NewCommand, ADirectionIsSetBeforeComposing) {
  Commands window;
  window.ask_some();
  window.type("!new rq");
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.direction(), "R->Q");
  EXPECT_THAT(window.words(), ElementsAre("chat", "chien", "vache", "poire"));
  window.type("!new qr");
  EXPECT_EQ(window.book->sens_qr, 1);
  EXPECT_EQ(window.direction(), "Q->R");
  EXPECT_THAT(window.words(), ElementsAre("chien", "poire"));
}

TEST(NewCommand, WithoutADirectionTheOneThatStandsCounts) {
  Commands window;
  window.ask_some();
  window.press(window.book->button_qr, LEFT);
  for (const char *text : {"!new", "!new ", "!new xx", "!new QR", "!new rq"}) {
    window.type(text);
    EXPECT_EQ(window.book->sens_qr, 2) << text;
    EXPECT_EQ(window.direction(), "R->Q");
    window.expect_composed(4);
  }
}

TEST(NewCommand, TheDirectionIsKeptThoughNothingIsFound) {
  Commands window;
  window.type("!bal rq");
  window.expect_returned(NO_WORD, 1, "aa");
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.direction(), "R->Q");
}

TEST(BalanceCommand, ComposesTheWordsAskedOneWayOnly) {
  Commands window;
  window.ask_some();
  window.type("!bal rq");
  window.expect_composed(2);
  EXPECT_THAT(window.words(), ElementsAre("chat", "vache"));
  EXPECT_THAT(window.log(), HasSubstr("BALANCE_WORDS done\n"));
  window.type("!bal qr");
  window.expect_returned(NO_WORD, 1, "aa");
}

TEST(WorstCommand, EachFormPassesItsCode) {
  const std::pair<const char *, int> forms[] = {
      {"!worst", 1}, {"!worsto", 2}, {"!worsty", 3}, {"!worstn", 4}, {"!lessv", 5}};
  for (const auto &[text, code] : forms)
    for (const char *direction : {"", " qr"}) {
      Commands window;
      window.ask_some();
      window.type(text + std::string(direction));
      EXPECT_THAT(window.log(), HasSubstr("enter WORST_WORDS_LESSON  code_worst=" +
                                          std::to_string(code) + " \n"));
      window.expect_composed(3);
      EXPECT_THAT(window.words(), ElementsAre("chat", "vache", "pomme"));
    }
}

TEST(WorstCommand, DrillsTheWordsFromTheWorstOn) {
  Commands window;
  window.ask_some();
  window.type("!worst");
  EXPECT_THAT(window.ranked(1), ElementsAre("chat", "pomme", "vache"));
  window.start();
  EXPECT_EQ(window.book->t_posit->nb_posit, 3);
  EXPECT_EQ(window.book->sens_qrm, 1);
}

TEST(WorstCommand, AsksInTheDirectionTyped) {
  Commands window;
  window.ask_some();
  window.type("!worsto rq");
  EXPECT_THAT(window.words(), ElementsAre("pomme"));
  window.expect_composed(1);
  EXPECT_EQ(window.direction(), "R->Q");
  window.start();
  EXPECT_EQ(window.book->sens_qrm, 2);
  EXPECT_THAT(window.pane_lines(), Contains("apple"));
}

TEST(WorstCommand, AnyOtherLetterMakesItAnAlias) {
  Commands window;
  window.ask_some();
  window.type("!worstx");
  window.expect_returned(UNKNOWN, 1, "aa");
  EXPECT_FALSE(window.dir().exists("idx2_gene"));
  EXPECT_THAT(window.log(), HasSubstr("EXTRACT_NB_FIRST_FIELD alias !worstx is unknown\n"));
}

TEST(ComposedLesson, OneWithoutAWordSaysSoAndLeadsBack) {
  Commands window;
  window.type("2");
  for (const char *text : {"!worst", "!bal", "!lessv rq", "!tag nix", "!ntag nix"}) {
    window.type(text);
    window.expect_returned(NO_WORD, 2, "bb");
  }
  window.start(); // the lesson before is as it was
  EXPECT_EQ(window.book->t_posit->nb_posit, 2);
}

TEST(ComposedLesson, OneWithoutAWordAfterAnotherLeadsToTheFirstLesson) {
  Commands window;
  window.type("2");
  window.type("!new");
  window.expect_composed(5);
  window.type("!worst");
  window.expect_returned(NO_WORD, 1, "aa");
}

TEST(ComposedLesson, IsRecordedWhereItsWordsStand) {
  Commands window;
  window.type("!new");
  window.drill();
  window.press(window.book->Button1, LEFT);
  window.press(window.book->Button1, RIGHT);
  window.dialogs.will_answer(GTK_RESPONSE_YES);
  window.type("!worst");
  EXPECT_THAT(window.told(), ElementsAre("Voulez-vous enregistrer la le\303\247on 0 ?"));
  std::string both = window.dir().read("IDX1/idx1_a.txt") + window.dir().read("IDX1/idx1_b.txt");
  EXPECT_EQ(count(both, "     1      ;"), 2u);
  EXPECT_THAT(window.log(), HasSubstr("RECORD_LESSON 0 DONE  nb_errors=0\n"));
  window.expect_returned(NO_WORD, 1, "aa"); // what was asked today is not asked again
}

TEST(ComposedLesson, FollowsAnother) {
  Commands window;
  window.ask_some();
  for (const auto &[text, nb] : {std::pair<const char *, int>{"!new", 2},
                                 {"!worst", 3},
                                 {"!new rq", 4},
                                 {"!bal rq", 2},
                                 {"!worst", 1}}) {
    window.type(text);
    window.expect_composed(nb);
    window.start();
    window.dialogs.will_answer(GTK_RESPONSE_NO);
  }
  window.type("1");
  window.expect_opened(1, "aa");
}

TEST(ComposedLesson, PrevAndNextLeaveItForANumberedOne) {
  for (const auto &[label, ilesson] : {std::pair<const char *, int>{"Next", 1}, {"Prev", 2}}) {
    Commands window;
    window.type("!new");
    window.press(window.button(label), LEFT);
    window.expect_opened(ilesson, ilesson == 1 ? "aa" : "bb");
  }
}

TEST(TagCommand, ComposesTheWorstWordsWithTheTag) {
  Commands window(tagged_lessons());
  window.set_histories("IDX1/idx1_a.txt", {{"chat", {0, 1, 1, EARLIER, EARLIER}, {}},
                                           {"courir", {0, 1, 1, EARLIER, EARLIER}, {}},
                                           {"et", {0, 1, 1, EARLIER, EARLIER}, {}}});
  window.set_histories("IDX1/idx1_b.txt", {{"aller", {0, 1, 5, EARLIER, EARLIER}, {}}});
  window.type("!tag Verbe");
  window.expect_composed(2);
  EXPECT_THAT(window.words(), ElementsAre("courir", "aller"));
  EXPECT_THAT(window.ranked(1), ElementsAre("aller", "courir"));
  window.type("!tag");
  EXPECT_THAT(window.words(), ElementsAre("et"));
  window.expect_composed(1);
}

TEST(TagCommand, AccentsDirectionsAndSeveralWordsReachTheTag) {
  Commands window(tagged_lessons());
  window.set_histories("IDX1/idx1_a.txt", {{"courir", {}, {0, 1, 1, EARLIER, EARLIER}},
                                           {"dire", {}, {0, 1, 1, EARLIER, EARLIER}}});
  window.enter("!tagrq Verbe irr\303\251gulier");
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.direction(), "R->Q");
  window.expect_composed(1);
  EXPECT_THAT(window.words(), ElementsAre("courir"));
  window.type("!tagqr verbe");
  EXPECT_EQ(window.book->sens_qr, 1);
  window.expect_returned(NO_WORD, 1, "aa");
  EXPECT_EQ(window.direction(), "Q->R");
}

TEST(TagCommand, ADirectionThatWaitsTurnsItRound) {
  Commands window(tagged_lessons());
  window.set_histories("IDX1/idx1_a.txt", {{"dire", {}, {0, 1, 1, EARLIER, EARLIER}}});
  window.drill();
  window.press(window.book->button_qr, LEFT);
  ASSERT_EQ(window.book->toggle_sens_qr, 1);
  window.leave("!tag verbe");
  EXPECT_EQ(window.book->sens_qr, 2);
  EXPECT_EQ(window.book->toggle_sens_qr, 0);
  window.expect_composed(1);
  EXPECT_EQ(window.direction(), "R->Q");
}

TEST(TagCommand, OtherLettersGluedToItMakeItAnAlias) {
  Commands window(tagged_lessons());
  for (const char *text : {"!tags", "!tagqrs", "!ntagx", "!tagr verbe"}) {
    window.type(text);
    window.expect_returned(UNKNOWN, 1, "aa");
    EXPECT_THAT(window.log(), HasSubstr(std::string("alias ") + text + " is unknown\n"));
  }
}

TEST(NewTagCommand, ComposesTheNewWordsWithTheTag) {
  Commands window(tagged_lessons());
  window.set_histories("IDX1/idx1_a.txt", {{"dire", {0, 1, 1, EARLIER, EARLIER}, {}}});
  window.type("!ntag verbe");
  window.expect_composed(2);
  EXPECT_THAT(window.words(), ElementsAre("courir", "aller"));
  EXPECT_THAT(window.log(), HasSubstr("NEW_TAG_LESSON done\n"));
  window.type("!ntagrq verbe");
  EXPECT_EQ(window.direction(), "R->Q");
  EXPECT_THAT(window.words(), ElementsAre("courir", "dire", "aller"));
  window.type("!ntagqr");
  EXPECT_EQ(window.direction(), "Q->R");
  EXPECT_THAT(window.words(), ElementsAre("et", "ou"));
}

TEST(TagListCommand, ShowsTheTagsAndConfirmsNothing) {
  Commands window(tagged_lessons());
  window.type("2");
  window.drill();
  window.dialogs.will_answer(GTK_RESPONSE_NO);
  window.type("!ltag");
  EXPECT_THAT(window.pane_lines(), Contains("verbe nb=3  QR=0  RQ=0"));
  EXPECT_EQ(window.book_lines(), window.pane_lines());
  EXPECT_THAT(window.dir().read("mertu_ltag"), HasSubstr("!   verbe nb=3  QR=0  RQ=0  \n"));
  EXPECT_EQ(window.book->ilesson, 2);
  EXPECT_EQ(window.book->start_lesson, 0);
  window.expect_closed();
  window.press(window.book->Button1, LEFT);
  window.expect_opened(2, "bb");
}

TEST(TagListCommand, AComposedLessonStays) {
  for (const char *text : {"!ltag", "!help"}) {
    Commands window;
    window.type("!new");
    window.type(text);
    EXPECT_EQ(window.book->ilesson, 0);
    EXPECT_EQ(window.book->start_lesson, 0);
    window.press(window.book->Button1, LEFT);
    window.expect_composed(5);
    window.drill();
  }
}

TEST(TagListCommand, StandsThoughItIsTypedBehindASkip) {
  for (const char *text : {"!ltag", "!help"}) {
    Commands window(tagged_lessons());
    window.press(window.book->Button1, LEFT);
    ASSERT_EQ(window.book->start_lesson, 2);
    gtk_widget_grab_focus(window.book->entry_book);
    window.queue_press(window.book->Button1, RIGHT);
    window.queue_keys(text + std::string("\n"));
    window.handle();
    EXPECT_THAT(window.pane_lines(), Not(Contains(HasSubstr("Confirm")))) << text;
    EXPECT_EQ(window.book->start_lesson, 0);
    EXPECT_EQ(window.book->ilesson, 2);
  }
}

TEST(ListingCommand, ListsAllWordsAndLeadsBack) {
  Commands window;
  window.type("2");
  window.type("!dico");
  window.expect_returned(LISTING_DONE, 2, "bb");
  std::string listing = window.dir().read("mertu_dico");
  size_t at = 0;
  for (const char *word : {"##chat ", "##chien ", "##poire ", "##pomme ", "##vache "}) {
    EXPECT_NE(listing.find(word, at), std::string::npos) << word << listing;
    at = listing.find(word, at);
  }
  EXPECT_THAT(window.log(), HasSubstr("file : ./mertu_dico  done\n"));
  window.drill();
}

TEST(ListingCommand, AComposedLessonIsGone) {
  Commands window;
  window.type("2");
  window.type("!new");
  window.type("!dico");
  window.expect_returned(LISTING_DONE, 1, "aa");
}

TEST(HelpCommand, BothFormsShowTheHelpAndConfirmNothing) {
  Test_files files = TWO_LESSONS();
  files["mertu_list.txt"] = "First line\n\nLast line\nEND_OF_FILE\nunseen\n";
  for (const char *text : {"!help", "help", "!help me", "help "}) {
    Commands window(files);
    window.type("2");
    window.drill();
    window.dialogs.will_answer(GTK_RESPONSE_NO);
    window.type(text);
    EXPECT_THAT(window.pane_lines(), ElementsAre("First line", "  ", "Last line")) << text;
    EXPECT_EQ(window.book->start_lesson, 0);
    EXPECT_EQ(window.book->ilesson, 2);
    EXPECT_THAT(window.log(), HasSubstr("DISPLAY_HELP done\n"));
    window.expect_closed();
    window.press(window.book->Button1, LEFT);
    window.expect_opened(2, "bb");
  }
}

TEST(CheckCommand, ChecksTheNamedDictionariesOneAfterTheOther) {
  Commands window;
  window.type("2");
  for (int i = 0; i < 2; i++)
    window.dialogs.will_answer(GTK_RESPONSE_OK);
  window.type("!ccdb bb aa");
  window.expect_returned(DATABASE_DONE, 2, "bb");
  std::string log = window.log();
  EXPECT_LT(log.find("CHECK_CORR_SNG_DBASE alias bb is OK\n"),
            log.find("CHECK_CORR_SNG_DBASE alias aa is OK\n"));
  EXPECT_NE(log.find("CHECK_CORR_SNG_DBASE alias aa is OK\n"), std::string::npos);
  EXPECT_EQ(window.dialogs.seen.size(), 2u);
  EXPECT_TRUE(window.dir().exists("IDX1/cpy_idx1_a.txt"));
}

TEST(CheckCommand, NumbersAndUnknownNamesAreTakenWordByWord) {
  Commands window;
  for (int i = 0; i < 2; i++)
    window.dialogs.will_answer(GTK_RESPONSE_OK);
  window.type("!ccdb  7  nix  1 ");
  std::string log = window.log();
  EXPECT_THAT(log, HasSubstr("CHECK_CORR_SNG_DBASE not OK lesson  num=7 \n"));
  EXPECT_THAT(log, HasSubstr("CHECK_CORR_SNG_DBASE alias nix is unknown\n"));
  EXPECT_THAT(log, HasSubstr("CHECK_CORR_SNG_DBASE num =1 s_idx1=./IDX1/idx1_a.txt \n"));
  window.expect_returned(DATABASE_DONE, 1, "aa");
}

TEST(CheckCommand, WithoutANameAllAreChecked) {
  Commands window;
  window.dialogs.will_answer(GTK_RESPONSE_OK);
  window.type("!ccdb ");
  EXPECT_THAT(window.told(), ElementsAre(HasSubstr("Check and correct whole data base. \n")));
  window.expect_returned(DATABASE_DONE, 1, "aa");
  EXPECT_TRUE(window.dir().exists("IDX1/cpy_idx1_a.txt"));
  EXPECT_TRUE(window.dir().exists("IDX1/cpy_idx1_b.txt"));
}

TEST(CheckCommand, AComposedLessonIsGone) {
  for (const char *text : {"!ccdb", "!trf", "!synchro "}) {
    Commands window;
    window.type("2");
    window.type("!new");
    if (text == std::string("!ccdb"))
      window.dialogs.will_answer(GTK_RESPONSE_OK);
    window.type(text);
    window.expect_returned(DATABASE_DONE, 1, "aa");
  }
}

TEST(CheckCommand, AWindowThatGoesUnderTheNoticeEndsIt) {
  for (const char *text : {"!ccdb", "!ccdb aa bb", "!synchro other"}) {
    Commands window;
    window.dialogs.will_do([&](GtkWidget *) { gtk_widget_destroy(window.book->pWindow); });
    window.type(text);
    EXPECT_FALSE(window.alive());
    EXPECT_EQ(window.dialogs.seen.size(), 1u);
    EXPECT_THAT(window.log(), Not(HasSubstr("alias bb is OK")));
    EXPECT_EQ(window.book->start_lesson, 1);
  }
}

TEST(TransferCommand, WritesTheTransferFiles) {
  Commands window;
  window.type("2");
  window.type("!trf");
  window.expect_returned(DATABASE_DONE, 2, "bb");
  EXPECT_TRUE(window.dir().exists("IDX1_TRF/idx1_a.txt"));
  EXPECT_TRUE(window.dir().exists("IDX1_TRF/idx1_b.txt"));
  EXPECT_THAT(window.log(), HasSubstr("TRF_IDX1_FILE done\n"));
}

TEST(SynchroniseCommand, MergesWithTheFirstDirectoryNamed) {
  Commands window;
  std::string empty = window.dir().read("IDX1/idx1_a.txt");
  window.ask_some();
  fs::create_directory("other");
  window.dir().write("other/idx1_a.txt", window.dir().read("IDX1/idx1_a.txt"));
  window.dir().write("IDX1/idx1_a.txt", empty);
  window.dialogs.will_answer(GTK_RESPONSE_OK);
  window.type("!synchro  other more");
  window.expect_returned(DATABASE_DONE, 1, "aa");
  EXPECT_THAT(window.log(), HasSubstr("with file ./other/idx1_a.txt \n"));
  std::string merged = window.dir().read("IDX1/idx1_a.txt");
  EXPECT_THAT(merged,
              HasSubstr("#chat *aa 38 * \r\n     1      ;     9      ;    9188    ;    9188    ;"));
  EXPECT_THAT(merged, HasSubstr("     5      ;     1      ;    9188    ;    8988    ;"));
}

TEST(SynchroniseCommand, WithNoDirectoryTheDrillEndsAndNothingIsSynchronised) {
  Commands window;
  window.drill();
  window.leave("!synchro ");
  window.expect_returned(DATABASE_DONE, 1, "aa");
  EXPECT_EQ(window.dialogs.seen.size(), 1u);
  EXPECT_FALSE(window.dir().exists("IDX1/cpy_idx1_a.txt"));
}

TEST(SynchroniseCommand, WithoutASpaceItIsAnAlias) {
  Commands window;
  window.drill();
  window.leave("!synchro");
  window.expect_returned(UNKNOWN, 1, "aa");
  EXPECT_THAT(window.log(), HasSubstr("EXTRACT_NB_FIRST_FIELD alias !synchro is unknown\n"));
}

TEST(Command, ANumberOpensItsLesson) {
  Commands window;
  for (const char *text : {"2", "  2", "2 ", "02 and more"}) {
    window.type("1");
    window.type(text);
    window.expect_opened(2, "bb");
  }
}

TEST(Command, ANumberPastTheLastLessonOpensTheFirst) {
  Commands window;
  for (const char *text : {"3", "99", "99999999999999999999"}) {
    window.type("2");
    window.type(text);
    window.expect_opened(1, "aa");
  }
}

TEST(Command, AnAliasOpensItsLesson) {
  Commands window;
  window.type("bb");
  window.expect_opened(2, "bb");
  window.type(" aa ");
  window.expect_opened(1, "aa");
}

TEST(Command, ATypedAccentIsReadInTheEncodingOfTheWords) {
  Commands window;
  window.enter("\303\251t\303\251"); // no alias has an accent
  window.expect_returned(UNKNOWN, 1, "aa");
  EXPECT_THAT(window.log(), HasSubstr("EXTRACT_NB_FIRST_FIELD alias \351t\351 is unknown\n"));
}

TEST(Command, WhatNamesNoLessonLeadsBack) {
  Commands window;
  for (const char *text : {"0", "", "   ", "nix", "!newx", "00"}) {
    window.type("2");
    window.drill();
    window.dialogs.will_answer(GTK_RESPONSE_NO);
    window.say(text);
    window.expect_returned(UNKNOWN, 2, "bb");
    window.type("!new");
    window.say(text);
    window.expect_returned(UNKNOWN, 1, "aa");
  }
}

TEST(Command, AnUnknownAliasIsLoggedOnceAndSaid) {
  Commands window;
  testing::internal::CaptureStdout();
  window.type("!newx");
  const char line[] = "EXTRACT_NB_FIRST_FIELD alias !newx is unknown\n";
  EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr(line));
  EXPECT_EQ(count(window.log(), line), 1u);
  window.type("0");
  window.type("  ");
  EXPECT_EQ(count(window.log(), "EXTRACT_NB_FIRST_FIELD"), 1u);
}

TEST(Command, ATextWithALetterThatCp1252LacksNamesNoLesson) {
  for (const char *text : {"\320\266", "2 \320\266", "!new \320\266", "!sound \320\266"}) {
    Commands window;
    window.drill();
    window.dialogs.will_answer(GTK_RESPONSE_NO);
    window.enter(text);
    EXPECT_EQ(window.dialogs.seen.size(), 1u);
    window.expect_returned(UNKNOWN, 1, "aa");
    EXPECT_THAT(window.log(),
                HasSubstr(std::string("EXTRACT_NB_FIRST_FIELD alias ") + text + " is unknown\n"));
    EXPECT_EQ(window.book->sound, 1);
  }
}

TEST(Command, ATextOfAnyLengthIsTaken) {
  Commands window;
  std::string many(5000, 'a');
  for (const std::string &text :
       {many, "!tag " + many, "!ntag " + many, "!ccdb " + many, "!synchro " + many,
        std::string(5000, ' ') + "nix", "!new" + std::string(5000, ' ') + "rq"}) {
    if (text.rfind("!ccdb", 0) == 0 || text.rfind("!synchro", 0) == 0)
      window.dialogs.will_answer(GTK_RESPONSE_DELETE_EVENT);
    window.enter(text);
    EXPECT_EQ(window.command(), text);
    EXPECT_EQ(window.book->start_lesson, 1);
  }
  window.expect_composed(5);
  window.enter(std::string(5000, '1'));
  window.expect_opened(1, "aa");
}

TEST(Command, ADictionaryThatIsRegisteredTwiceIsVisitedOnce) {
  Test_files files = TWO_LESSONS();
  files["mertu.conf"] = CONFIGURATION({"a.txt", "b.txt", "a.txt"});
  Commands window(files);
  window.type("!new");
  window.expect_composed(5);
}
