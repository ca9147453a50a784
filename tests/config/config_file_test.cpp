// The settings file as a whole.
#include "support/prelude.h"

#include "config/config_file.h"

#include <stddef.h>
#include <string.h>
#include <sys/wait.h>

#include <random>

#include "score/error_score.h"
#include "support/scratch.h"

namespace {

// A directory with a settings file, and all that it fills.
struct Trf_settings {
  Scratch_dir dir;
  Prenestro window = {};
  Trf_book book = {};
  Trf_err t_err = {};
  Trf_string registry = {};
  char font_lesson[101] = "";
  char font_vocab[101] = "";

  explicit Trf_settings(const std::string &text) {
    dir.write("mertu.conf", text);
    book.t_err = &t_err;
  }
  ~Trf_settings() {
    FREE_REGISTRY(&registry);
  }
  Trf_settings &read() {
    FURCH_SET(&window, &book, &registry, font_lesson, font_vocab);
    return *this;
  }
  std::vector<float> weights() const {
    return {t_err.cof1_err, t_err.cof2_err, t_err.cof3_err, t_err.cof4_err, t_err.cof5_err};
  }
  std::vector<int> color(int i) const {
    const GdkColor &color = window.Color_dico[i];
    return {color.red, color.green, color.blue};
  }
};

std::vector<float> weights_from(const std::string &text) {
  return Trf_settings(text).read().weights();
}

void read_settings(const std::string &text) {
  Trf_settings(text).read();
}

} // namespace

TEST(ConfigFile, TheColourRecordHasTheLayoutOfTheToolkit) {
  EXPECT_EQ(sizeof(GdkColor), 12u);
  EXPECT_EQ(offsetof(GdkColor, red), 4u);
  EXPECT_EQ(offsetof(GdkColor, green), 6u);
  EXPECT_EQ(offsetof(GdkColor, blue), 8u);
}

TEST(ConfigFile, AnEmptyFileLeavesTheDefaults) {
  Trf_settings settings("");
  strcpy(settings.window.font_dico, "as it was");
  settings.read();
  EXPECT_EQ(settings.window.npix_tot_dico[0], 600);
  EXPECT_THAT(settings.window.book_pix_size, testing::ElementsAre(1100, 800, 600));
  EXPECT_STREQ(settings.window.font_dico, "as it was");
  EXPECT_THAT(settings.weights(), testing::ElementsAre(9.0f, 3.0f, 2.0f, 6.0f, 10.0f));
  EXPECT_STREQ(settings.font_lesson, "helvetica 18");
  EXPECT_STREQ(settings.font_vocab, "helvetica 18");
  EXPECT_STREQ(settings.registry.spath_idx1, "./IDX1");
}

TEST(ConfigFile, TheDefaultColoursAreSet) {
  Trf_settings settings("");
  settings.read();
  EXPECT_THAT(settings.color(0), testing::ElementsAre(0xFFFF, 0xFFFF, 0xFFFF));
  EXPECT_THAT(settings.color(1), testing::ElementsAre(0xDDDD, 0xDDDD, 0xFFFF));
  EXPECT_THAT(settings.color(2), testing::ElementsAre(0xDDDD, 0xFFFF, 0xDDDD));
  EXPECT_THAT(settings.color(3), testing::ElementsAre(0xFFFF, 0xDDDD, 0xDDDD));
  EXPECT_THAT(settings.color(4), testing::ElementsAre(0xEEEE, 0xEEEE, 0xDDDD));
}

TEST(ConfigFile, WithoutAListThereIsNoLesson) {
  Trf_settings settings("");
  settings.book.nbt_lesson = 7;
  settings.read();
  EXPECT_EQ(settings.book.nbt_lesson, 0);
  EXPECT_EQ(settings.registry.nb_lesson, 0);
  EXPECT_STREQ(settings.registry.st_lesson, "");
}

TEST(ConfigFile, EveryKeyReachesItsField) {
  Trf_settings settings("# settings of a test\n"
                        "Coef_Err :> 1 2 3 4 5 <:\n"
                        "Level_dico :> 1 <:\n"
                        "Width_pix_dico :> 2 <:\n"
                        "Width_pix_vocab :> 510 <:\n"
                        "Width_char_dico :> 3 <:\n"
                        "Color_0_dico :> 0 1 2 <:\n"
                        "Color_1_dico :> 10 11 12 <:\n"
                        "Color_2_dico :> 20 21 22 <:\n"
                        "Color_3_dico :> 30 31 32 <:\n"
                        "Color_4_dico :> 40 41 42 <:\n"
                        "Horiz_pix_total :> 1201 <:\n"
                        "Verti_pix_total :> 901 <:\n"
                        "Font_lesson :> mono 12 <:\n"
                        "Font_vocab :> sans 14 <:\n"
                        "Which_lesson :>\nlessons/le1->2.txt voc.txt\n<:\n"
                        "Path_idx1 :> ./base/IDX1 <:\n");
  for (const char *name : {"lessons/le1.txt", "lessons/le2.txt", "voc.txt"})
    settings.dir.write(name, "text");
  settings.read();
  EXPECT_THAT(settings.weights(), testing::ElementsAre(1.0f, 2.0f, 3.0f, 4.0f, 5.0f));
  EXPECT_THAT(settings.window.book_pix_size, testing::ElementsAre(1201, 901, 510));
  EXPECT_EQ(settings.window.npix_tot_dico[0], 600);
  for (int i = 0; i < 5; i++)
    EXPECT_THAT(settings.color(i), testing::ElementsAre(10 * i, 10 * i + 1, 10 * i + 2));
  EXPECT_STREQ(settings.font_lesson, " mono 12");
  EXPECT_STREQ(settings.font_vocab, " sans 14");
  EXPECT_STREQ(settings.registry.st_lesson, "lessons/le1.txt &/le2.txt ./voc.txt ");
  EXPECT_EQ(settings.registry.nb_lesson, 3);
  EXPECT_EQ(settings.registry.lenmx_string, (int)strlen(settings.registry.st_lesson) + 1);
  EXPECT_EQ(settings.book.nbt_lesson, 3);
  EXPECT_STREQ(settings.registry.spath_idx1, "./base/IDX1");
  EXPECT_STREQ(settings.registry.st_idx1, "./base/IDX1/idx1_le1.txt ./base/IDX1/idx1_le2.txt "
                                          "./base/IDX1/idx1_voc.txt");
}

TEST(ConfigFile, TheKeyPagesFillsTheRegistry) {
  Trf_settings settings("Pages :> lessons/le1->2.txt #two\n<:\n");
  settings.dir.write("lessons/le1.txt", "text");
  settings.dir.write("lessons/le2.txt", "text");
  settings.read();
  EXPECT_STREQ(settings.registry.st_lesson, "lessons/le1.txt le2.txt ");
  EXPECT_EQ(settings.book.nbt_lesson, 2);
}

TEST(ConfigFile, TheLaterOfTwoListsCounts) {
  Trf_settings settings("Pages :> a b <:\nWhich_lesson :>\nb\n<:\n");
  settings.dir.write("a", "text");
  settings.dir.write("b", "text");
  settings.read();
  EXPECT_STREQ(settings.registry.st_lesson, "./b ");
  EXPECT_EQ(settings.book.nbt_lesson, 1);
}

TEST(ConfigFile, LessonsAreCountedByTheirWords) {
  Trf_settings settings("Which_lesson :>\nd1->2/a\n<:\n");
  settings.dir.write("d1->2/a", "text");
  settings.read();
  EXPECT_EQ(settings.registry.nb_lesson, 1);
  EXPECT_EQ(settings.book.nbt_lesson, 2);
}

TEST(ConfigFile, CommentsMayBeginWithBlanks) {
  EXPECT_THAT(weights_from("#\n   # Coef_Err :> 1 2 3 4 5 <:\n"),
              testing::ElementsAre(9.0f, 3.0f, 2.0f, 6.0f, 10.0f));
}

TEST(ConfigFile, FiveWeightsAreSet) {
  EXPECT_THAT(weights_from("Coef_Err :> 9 3 2 6 10 <:\n"),
              testing::ElementsAre(9.0f, 3.0f, 2.0f, 6.0f, 10.0f));
}

TEST(ConfigFile, AWeightOutsideItsRangeKeepsItsDefault) {
  EXPECT_THAT(weights_from("Coef_Err :> 0 4 0.05 0.5 11 <:\n"),
              testing::ElementsAre(9.0f, 4.0f, 2.0f, 6.0f, 10.0f));
  EXPECT_THAT(weights_from("Coef_Err :> 10.1 0 10.1 10.1 0.9 <:\n"),
              testing::ElementsAre(9.0f, 3.0f, 2.0f, 6.0f, 10.0f));
  EXPECT_THAT(weights_from("Coef_Err :> 1e99 nan -1 -1 -1 <:\n"),
              testing::ElementsAre(9.0f, 3.0f, 2.0f, 6.0f, 10.0f));
}

TEST(ConfigFile, TheBoundsOfAWeightBelongToItsRange) {
  EXPECT_THAT(weights_from("Coef_Err :> 10 10 10 10 10 <:\n"), testing::Each(10.0f));
  EXPECT_THAT(weights_from("Coef_Err :> 0.001 0.001 0.1 1 1 <:\n"),
              testing::ElementsAre(0.001f, 0.001f, 0.1f, 1.0f, 1.0f));
}

TEST(ConfigFile, AThirdWeightJustBelowATenthKeepsItsDefault) {
  EXPECT_THAT(weights_from("Coef_Err :> 1 1 0.09999999 1 1 <:\n"),
              testing::ElementsAre(1.0f, 1.0f, 2.0f, 1.0f, 1.0f));
}

TEST(ConfigFile, AValueIsReadAcrossTwoLines) {
  Trf_settings settings("Horiz_pix_total :>\n1200 <:\nVerti_pix_total :> 700 <:\n");
  settings.read();
  EXPECT_THAT(settings.window.book_pix_size, testing::ElementsAre(1200, 700, 600));
}

TEST(ConfigFile, AColourLineMayGiveTheDefaultAgain) {
  Trf_settings settings("Color_2_dico :> 1 2 3 <:\nColor_2_dico :> 0xDDDD 0xFFFF 0xDDDD <:\n");
  settings.read();
  EXPECT_THAT(settings.color(2), testing::ElementsAre(0xDDDD, 0xFFFF, 0xDDDD));
}

TEST(ConfigFile, TheIndexDirectoryMayBeGivenTwice) {
  std::string longest(140, 'p');
  Trf_settings settings("Path_idx1:>\n" + longest + "\n<:\nPath_idx1 :> ./b/IDX1 <:\n");
  EXPECT_STREQ(settings.read().registry.spath_idx1, "./b/IDX1");
}

TEST(ConfigFile, ALineThatHoldsTwoKeysBelongsToTheFirstOfTheTable) {
  Trf_settings settings("Font_vocab :> Horiz_pix_total Pages <:\n");
  settings.read();
  EXPECT_STREQ(settings.font_vocab, "helvetica 18");
  EXPECT_STREQ(settings.registry.st_lesson, "");
}

TEST(ConfigFile, TheKeysAreTriedInTheOrderOfTheTable) {
  const char *integers = "error in EXTRACT_LEVEL n_pages=3";
  read_settings("Coef_Err Pages :> 1 2 3 <:\n");
  ENDS_WITH_STATUS(read_settings("Level_dico Coef_Err :> 1 2 3 <:\n"), 1, "FLOAT_EXTRACT_LEVEL");
  read_settings("Width_pix_vocab Width_pix_dico Level_dico :> 1 2 3 <:\n");
  ENDS_WITH_STATUS(read_settings("Width_char_dico Width_pix_vocab :> 1 2 3 <:\n"), 1, integers);
  Trf_settings skipped("Color_0_dico Width_char_dico :> 1 2 3 <:\n");
  EXPECT_EQ(skipped.read().color(0)[0], 0xFFFF);
  for (int i = 0; i < 5; i++) {
    std::string next = i < 4 ? "Color_" + std::to_string(i + 1) + "_dico" : "Horiz_pix_total";
    Trf_settings colored(next + " Color_" + std::to_string(i) + "_dico :> 1 2 3 <:\n");
    EXPECT_THAT(colored.read().color(i), testing::ElementsAre(1, 2, 3));
  }
  ENDS_WITH_STATUS(read_settings("Font_lesson Verti_pix_total :> 1 2 3 <:\n"), 1, integers);
  Trf_settings both("Verti_pix_total Horiz_pix_total :> 1 <:\nFont_vocab Font_lesson :> 1 <:\n");
  both.read();
  EXPECT_THAT(both.window.book_pix_size, testing::ElementsAre(1, 800, 600));
  EXPECT_STREQ(both.font_lesson, " 1");
  Trf_settings vocab("Which_lesson Font_vocab :> 1 <:\n");
  EXPECT_STREQ(vocab.read().font_vocab, " 1");
  ENDS_WITH_STATUS(read_settings("Path_idx1 Which_lesson :> 1 <:\n"), 2, "EXTRACT_WHICH_LESSONS");
}

TEST(ConfigFile, AKeyIsFoundInsideALine) {
  Trf_settings settings("  the width: myWidth_pix_vocabulary :> 321 <:\n");
  EXPECT_EQ(settings.read().window.book_pix_size[2], 321);
}

TEST(ConfigFile, ACarriageReturnEndsALine) {
  Trf_settings settings("Horiz_pix_total :> 1200 <:\r\nVerti_pix_total :> 700 <:\r\n#\r\n");
  settings.read();
  EXPECT_THAT(settings.window.book_pix_size, testing::ElementsAre(1200, 700, 600));
}

TEST(ConfigFile, ASkippedKeyIsPassedOver) {
  read_settings("Level_dico\nWidth_pix_dico :> \nWidth_char_dico :> x y z\n");
}

TEST(ConfigFile, ASkippedKeyMustHoldItsValueOnItsOwnLine) {
  ENDS_WITH_STATUS(read_settings("Level_dico :>\n3 <:\n"), 0, "s=3 <: order unknown =-1 \n");
}

TEST(ConfigFile, AnUnknownKeyEndsTheProgramWithStatus0) {
  ENDS_WITH_STATUS(read_settings("  Colour :> 3 <:\r\n"), 0,
                   "s=  Colour :> 3 <: order unknown =-1 \n");
  ENDS_WITH_STATUS(read_settings("coef_err :> 9 3 2 6 10 <:\n"), 0, "order unknown =-1 \n");
}

TEST(ConfigFile, AnEmptyLineEndsTheProgramWithStatus0) {
  ENDS_WITH_STATUS(read_settings("#\n\n#\n"), 0, "s= order unknown =-1 \n");
  ENDS_WITH_STATUS(read_settings("   \n"), 0, "s=    order unknown =-1 \n");
}

TEST(ConfigFile, TheRestOfALongLineIsALineOfItsOwn) {
  std::string comment = "#" + std::string(148, '-');
  ENDS_WITH_STATUS(read_settings(comment + "rest\n"), 0, "s=rest order unknown =-1 \n");
  ENDS_WITH_STATUS(read_settings(comment + "\n"), 0, "s= order unknown =-1 \n");
  read_settings(comment.substr(0, 148) + "\n");
  Trf_settings settings(comment + "Horiz_pix_total :> 1200 <:\n");
  EXPECT_EQ(settings.read().window.book_pix_size[0], 1200);
}

TEST(ConfigFile, AWrongCountEndsTheProgram) {
  ENDS_WITH_STATUS(read_settings("Width_pix_vocab :> 500 600 <:\n"), 1,
                   "error in EXTRACT_LEVEL n_pages=2 nb_tobe=1 stop \n");
}

TEST(ConfigFile, AMissingMarkerEndsTheProgram) {
  ENDS_WITH_STATUS(read_settings("  Width_pix_vocab 500\n"), 1,
                   "error in line s=  Width_pix_vocab 500 \n");
  ENDS_WITH_STATUS(read_settings("Which_lesson\n"), 1,
                   "EXTRACT_WHICH_LESSONS error in line s=Which_lesson \n");
}

TEST(ConfigFile, AnEndMarkerMissingAtTheEndOfTheFileEndsTheProgramWithStatus2) {
  ENDS_WITH_STATUS(read_settings("Width_pix_vocab :> 500\n"), 2,
                   "error 2 while reading in EXTRACT_ORDER stop ");
  ENDS_WITH_STATUS(read_settings("Color_0_dico :> 1 2 3\n"), 2,
                   "error 2 while reading in EXTRACT_COLOR stop ");
  ENDS_WITH_STATUS(read_settings("Font_lesson :> mono\n"), 2,
                   "error 2 while reading in EXTRACT_FONT_DICO stop ");
  ENDS_WITH_STATUS(read_settings("Path_idx1 :> ./IDX1\n"), 2,
                   "error 2 while reading in EXTRACT_FONT_DICO stop ");
}

// The program would start without a lesson.
TEST(ConfigFile, AFileThatCannotBeReadEndsTheProgram) {
  auto with_directory = []() {
    Trf_settings settings("");
    unlink("mertu.conf");
    std::filesystem::create_directory("mertu.conf");
    settings.read();
  };
  ENDS_WITH_STATUS(with_directory(), 1, "cannot read file ./mertu.conf: Is a directory ");
}

TEST(ConfigFile, AFileThatDoesNotOpenEndsTheProgram) {
  auto without_file = []() {
    Trf_settings settings("");
    unlink("mertu.conf");
    settings.read();
  };
  ENDS_WITH_STATUS(without_file(), 1, "file ./mertu.conf unreachable stop ");
}

namespace {

// A piece of a settings file: a key, a value, a mark or chance bytes (without digits, so that no
// range grows without bound).
std::string chance_piece(std::mt19937 *chance) {
  static const std::vector<std::string> PIECES = {
      "Pages",        "Coef_Err",    "Level_dico",    "Width_pix_vocab",
      "Color_0_dico", "Font_lesson", "Which_lesson",  "Verti_pix_total",
      "Path_idx1",    " :>",         " <:",           "\n",
      "\r\n",         "#",           " 9 3 2 6 10 ",  " 1 ",
      "le1->3.txt",   "u2->1_",      "\n<:\n",        "->",
      " a/b\\c ",     " 1 2 3 ",     "Font_vocab :>", "Which_lesson :>\n"};
  size_t pick = (*chance)() % (PIECES.size() + 2);
  if (pick < PIECES.size())
    return PIECES[pick];
  std::string bytes((*chance)() % 160, ' ');
  for (char &byte : bytes)
    byte = (char)((*chance)() % 256);
  bytes.erase(std::remove_if(bytes.begin(), bytes.end(), isdigit), bytes.end());
  return bytes;
}

// Reads the settings in a child process; true where it ended as it should.
bool survives(const std::string &text) {
  Trf_settings settings(text);
  settings.dir.write("le1.txt", "text");
  settings.dir.write("le2.txt", "text");
  fflush(nullptr);
  pid_t child = fork();
  if (child == 0) {
    if (freopen("/dev/null", "w", stdout) == nullptr || freopen("err", "w", stderr) == nullptr)
      _exit(99);
    settings.read();
    _exit(77);
  }
  int status = 0;
  waitpid(child, &status, 0);
  std::string complaint = settings.dir.read("err");
  EXPECT_EQ(complaint, "");
  static const std::vector<int> STATUSES = {0, 1, 2, 9, 10, 11, 13, 77};
  return complaint.empty() && WIFEXITED(status) &&
         std::count(STATUSES.begin(), STATUSES.end(), WEXITSTATUS(status)) == 1;
}

} // namespace

TEST(ConfigFile, ChanceBytesNeverHarmTheReading) {
  std::mt19937 chance(20240229);
  for (int i = 0; i < 150; i++) {
    std::string text;
    int nb_pieces = (int)(chance() % 30);
    for (int j = 0; j < nb_pieces; j++)
      text += chance_piece(&chance);
    ASSERT_TRUE(survives(text)) << "settings " << i << ": " << testing::PrintToString(text);
  }
}
