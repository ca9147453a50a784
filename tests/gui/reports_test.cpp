// The reports in the real window: the list of tags, the help page, the listing of all words.
#include "support/prelude.h"

#include "command/help.h"
#include "command/tag_pane.h"

#include <sstream>

#include "gui/window.h"
#include "quiz/pane.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// Two dictionaries with tags; the accents are UTF-8.
Test_files tagged_lessons() {
  return {{"mertu.conf", CONFIGURATION({"a.txt", "b.txt"})},
          {"a.txt", "!# aa\n\n# le pain * food noun\nQ> le pain\nR> bread\n\n"
                    "# le lait * Q2 food\nQ> le lait\nR> milk\n"},
          {"b.txt", "!# bb\n\n# \303\251t\303\251 * \303\251t\303\251 noun\nQ> \303\251t\303\251\n"
                    "R> summer\n"}};
}

std::string log_of(Test_window *window) {
  fflush(window->book->fp_log);
  return window->dir().read("mertu_log");
}

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

class Reports : public testing::Test {
protected:
  Test_window window{tagged_lessons()};
  Trf_book *book = window.book;

  std::vector<std::string> help(const std::string &page) {
    window.dir().write("mertu_list.txt", page);
    DISPLAY_HELP(book);
    EXPECT_EQ(window.book_lines(), window.pane_lines());
    return window.pane_lines();
  }
};

} // namespace

TEST_F(Reports, TagsStandInThePaneAndInTheFile) {
  DICO_TAGS(book);
  EXPECT_THAT(window.pane_lines(), ElementsAre("\303\251t\303\251 nb=1  QR=0  RQ=0",
                                               "food nb=2  QR=0  RQ=0", "noun nb=2  QR=0  RQ=0"));
  EXPECT_EQ(window.book_lines(), window.pane_lines());
  EXPECT_EQ(book->nb_line, 3);
  EXPECT_EQ(window.dir().read("mertu_ltag"), "!   \351t\351 nb=1  QR=0  RQ=0  \n"
                                             "!   food nb=2  QR=0  RQ=0  \n"
                                             "!   noun nb=2  QR=0  RQ=0  \n");
  EXPECT_THAT(log_of(&window), HasSubstr("DICO_TAGS done\n"));
}

TEST_F(Reports, TagsTakeThePlaceOfEarlierLines) {
  DICO_TAGS(book);
  DICO_TAGS(book);
  EXPECT_EQ(window.pane_lines().size(), 3u);
}

TEST_F(Reports, WithoutTagsThePaneIsEmpty) {
  Test_window other(TWO_LESSONS());
  DICO_TAGS(other.book);
  EXPECT_THAT(other.pane_lines(), IsEmpty());
  EXPECT_EQ(other.book->nb_line, 0);
  EXPECT_EQ(other.dir().read("mertu_ltag"), "");
}

TEST_F(Reports, ThePaneHoldsTwoHundredTagsAndTheFileAll) {
  std::string text = "!# aa\n";
  for (int i = 1; i <= 210; i++)
    text += "# mot" + std::to_string(i) + " * t" + std::to_string(1000 + i) + "\n";
  Test_window other({{"mertu.conf", CONFIGURATION({"a.txt"})}, {"a.txt", text}});
  DICO_TAGS(other.book);
  EXPECT_EQ(other.book->nb_line, 200);
  EXPECT_EQ(other.pane_lines().back(), "t1200 nb=1  QR=0  RQ=0");
  EXPECT_EQ(lines_of(other.dir().read("mertu_ltag")).size(), 210u);
  EXPECT_THAT(other.dir().read("mertu_ltag"), HasSubstr("!   t1210 nb=1  QR=0  RQ=0  \n"));
}

TEST_F(Reports, OverlongTagEndsTheProgram) {
  std::string tag(81, 'x');
  Test_window other(
      {{"mertu.conf", CONFIGURATION({"a.txt"})}, {"a.txt", "!# aa\n# mot * " + tag + "\n"}});
  ENDS_WITH_STATUS(DICO_TAGS(other.book), 2, "DICO_TAGS error length ss= xxx");
  EXPECT_THAT(log_of(&other),
              HasSubstr("DICO_TAGS error length ss= " + tag + " nb=1  QR=0  RQ=0 @@@ \n"));
}

TEST_F(Reports, TagFileThatCannotBeWrittenIsTold) {
  window.dir().write("mertu_ltag/x", "");
  DICO_TAGS(book);
  EXPECT_EQ(book->nb_line, 3);
  EXPECT_THAT(log_of(&window), HasSubstr("cannot write file ./mertu_ltag: Is a directory \n"));
  std::filesystem::remove_all("mertu_ltag");
  std::filesystem::create_symlink("/dev/full", "mertu_ltag");
  DICO_TAGS(book);
  EXPECT_THAT(log_of(&window),
              HasSubstr("cannot write file ./mertu_ltag: No space left on device \n"));
}

TEST_F(Reports, HelpShowsItsPage) {
  int step = book->start_lesson;
  EXPECT_THAT(help("Help\n  a line with blanks  \n\\'et\\'e \303\251t\303\251\n"),
              ElementsAre("Help", "a line with blanks", "\303\251t\303\251 \303\251t\303\251"));
  EXPECT_EQ(book->nb_line, 3);
  EXPECT_EQ(book->start_lesson, step + 1);
  EXPECT_THAT(log_of(&window), HasSubstr("DISPLAY_HELP done\n"));
}

TEST_F(Reports, HelpShowsThePane) {
  gtk_widget_hide(book->v_page);
  help("a\n");
  EXPECT_TRUE(gtk_widget_get_visible(book->v_page));
}

TEST_F(Reports, EmptyLineOfTheHelpPageIsABlankLine) {
  EXPECT_THAT(help("a\n\nb\n\n\nc\n"), ElementsAre("a", "  ", "b", "  ", "c"));
}

TEST_F(Reports, LongLineOfTheHelpPageIsCutAtAHundredBytes) {
  EXPECT_THAT(help(std::string(100, 'a') + "\n" + std::string(100, 'b') + "c\n"),
              ElementsAre(std::string(100, 'a'), std::string(100, 'b')));
}

TEST_F(Reports, AccentedLetterOfTheHelpPageCountsAsOneByte) {
  std::string accented;
  std::string shown;
  for (int i = 0; i < 101; i++)
    (i < 100 ? shown : accented) += "\303\251";
  EXPECT_THAT(help(shown + accented + "\n"), ElementsAre(shown));
}

TEST_F(Reports, HelpPageEndsAtItsEndMark) {
  EXPECT_THAT(help("a\n# END_OF_FILE *\nb\n"), ElementsAre("a"));
  EXPECT_THAT(help("a\n" + std::string(120, '.') + "END_OF_FILE\nb\n"), ElementsAre("a"));
}

TEST_F(Reports, LongHelpPageShowsTwoHundredLines) {
  std::string page;
  for (int i = 1; i <= 250; i++)
    page += std::to_string(i) + "\n";
  EXPECT_EQ(help(page).back(), "200");
  EXPECT_EQ(book->nb_line, 200);
}

TEST_F(Reports, TenThousandLinesOfTheHelpPageAreRead) {
  testing::internal::CaptureStdout(); // the blank lines that are dropped are told
  std::vector<std::string> shown = help(std::string(9999, '\n') + "last\nover\n");
  testing::internal::GetCapturedStdout();
  EXPECT_THAT(shown, ElementsAre("  ", "last"));
}

TEST_F(Reports, MissingHelpPageIsToldInThePane) {
  std::filesystem::remove("mertu_list.txt");
  int step = book->start_lesson;
  DISPLAY_HELP(book);
  EXPECT_THAT(window.pane_lines(), ElementsAre("  ", "Cannot open file ./mertu_list.txt", "  "));
  EXPECT_EQ(book->nb_line, 3);
  EXPECT_EQ(book->start_lesson, step + 1);
  EXPECT_THAT(log_of(&window), HasSubstr("DISPLAY_HELP done\n"));
}

TEST_F(Reports, ThePageOfTheFirstLessonsIsShownWhole) {
  std::ifstream stream(MERTU_SOURCE "/share/starter/mertu_list.txt");
  std::string page(std::istreambuf_iterator<char>(stream), {});
  std::vector<std::string> shown = help(page);
  std::vector<std::string> lines = lines_of(page);
  ASSERT_EQ(shown.size(), lines.size());
  for (size_t i = 0; i < lines.size(); i++)
    EXPECT_EQ(shown[i], lines[i].empty() ? "  " : lines[i].substr(lines[i].find_first_not_of(' ')));
}

TEST_F(Reports, ReportsWithoutAWindowShowNothing) {
  gtk_widget_destroy(book->pWindow);
  window.dir().write("mertu_list.txt", "a\n");
  DISPLAY_HELP(book);
  DICO_TAGS(book);
  EXPECT_EQ(book->nb_line, 0);
  EXPECT_TRUE(window.dir().exists("mertu_ltag"));
}

TEST_F(Reports, TypedCommandsGiveTheReports) {
  window.dir().write("mertu_list.txt", "a page\n");
  window.type("!ltag");
  EXPECT_THAT(window.pane_lines(), Contains("food nb=2  QR=0  RQ=0"));
  window.type("help");
  EXPECT_THAT(window.pane_lines(), ElementsAre("a page"));
  EXPECT_EQ(book->start_lesson, 0);
  window.type("!dico");
  EXPECT_THAT(window.pane_lines(), Contains("Dictionary file ./mertu_dico : DONE,"));
  EXPECT_THAT(window.dir().read("mertu_dico"), HasSubstr("##\351t\351 *bb "));
  for (int i = 0; i < 2; i++)
    window.press(book->Button1, LEFT);
  EXPECT_THAT(window.pane_lines(), Contains("2  words in lesson  1 mn=-1 mx=-1"));
}

TEST_F(Reports, TagWithACapitalIsListedButNeverFound) {
  Test_window other({{"mertu.conf", CONFIGURATION({"a.txt"})},
                     {"a.txt", "!# aa\n# le pain * Food\nQ> le pain\nR> bread\n"
                               "# le lait * food drink\nQ> le lait\nR> milk\n"}});
  other.type("!ltag");
  EXPECT_THAT(other.pane_lines(), ElementsAre("Food nb=1  QR=0  RQ=0", "drink nb=1  QR=0  RQ=0",
                                              "food nb=1  QR=0  RQ=0"));
  for (const char *typed : {"!ntag Food", "!ntag food", "!ntag food drink"}) {
    other.type(typed);
    EXPECT_THAT(other.pane_lines(), Contains("Confirm display of lesson 0")) << typed;
    EXPECT_THAT(other.dir().read("idx2_gene"), HasSubstr("#le lait ")) << typed;
    EXPECT_THAT(other.dir().read("idx2_gene"), Not(HasSubstr("#le pain "))) << typed;
  }
  other.type("!ntag drink food");
  EXPECT_THAT(other.pane_lines(), Not(Contains("Confirm display of lesson 0")));
}
