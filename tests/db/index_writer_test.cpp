// Writing an idx1 file: every kind of line, the history carried over, the faults.
#include "db/index_writer.h"

#include "db_files.h"
#include "support/present.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

const std::string PATH = "./idx1_a";

std::string old_index_of(const std::string &records) {
  return idx1_header(PATH, "fr1") + records + idx1_trailer(5);
}

// Runs IDX1_DICO with a record made by hand.
void write_with(Trf_classmt *old, const std::string &copy, Scratch_dir *dir,
                std::string path = PATH) {
  dir->write("copy", copy);
  Owned_stream fp = OPEN_STREAM("copy", "r");
  Owned_stream fpi = OPEN_STREAM("new", "w");
  Owned_stream log = OPEN_STREAM("log", "w");
  std::string alias = "fr1";
  int nb = 0;
  IDX1_DICO(log.get(), fp.get(), path.data(), alias.data(), fpi.get(), old, &nb);
}

void write_old(const std::string &old_index, const std::string &copy, Scratch_dir *dir) {
  dir->write("idx1_old", old_index);
  Trf_classmt old;
  INIT_CLASSMT(fopen("idx1_old", "r"), nullptr, nullptr, &old);
  CLASS_OLD_WORDS(&old);
  write_with(&old, copy, dir);
  FREE_CLASSMT(&old);
}

} // namespace

TEST(Idx1Dico, WritesTheWholeFile) {
  std::string copy = "My words\r\n!# fr1\r\n#  la maison   * the house\r\nR>the house\r\n";
  Written written = write_index(copy);
  EXPECT_EQ(written.idx1, "./idx1_a fr1 \r\n"
                          "#####################################################\r\n"
                          "#la maison *fr1 18 * the house \r\n"
                          "            ;            ;            ;            ;\r\n"
                          "            ;            ;            ;            ;\r\n"
                          "# END_OF_FILE * " +
                              std::to_string(copy.size()) + "  \r\n");
  EXPECT_EQ(written.nb, 1);
  EXPECT_EQ(written.log, " \n \n              ************\n \n"
                         "entrance IDX1_DICO s_fp=./idx1_a fr1@@@ \n"
                         "NOT taking account of old history \n"
                         "Primary entries (words, expressions ...) : 1 \n");
  EXPECT_EQ(written.said, "");
}

TEST(Idx1Dico, AnEmptyDictionaryGivesHeaderAndTrailer) {
  EXPECT_EQ(write_index("").idx1, idx1_header(PATH, "fr1") + idx1_trailer(0));
}

TEST(Idx1Dico, ANeverIndexedDictionaryHasBlankHistories) {
  EXPECT_EQ(body_of(write_index("#a * 1\n#b * 2\n")),
            "#a *fr1 0 * 1 \r\n" + BLANK_HISTORY + "#b *fr1 7 * 2 \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, OffsetsFollowTheDoubledLineEnds) {
  EXPECT_EQ(body_of(write_index("x\r\r\n#a * 1\r\r\n#b * 2\r\r\n")),
            "#a *fr1 4 * 1 \r\n" + BLANK_HISTORY + "#b *fr1 13 * 2 \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, ADoubleLineIsWrittenWithItsMarksTogetherAndNoHistory) {
  Written written = write_index("  #  #  le   mot  *en1  \n## b\n");
  EXPECT_EQ(body_of(written), "##  le   mot  *en1   \r\n## b \r\n");
  EXPECT_EQ(written.nb, 2);
  EXPECT_THAT(written.log, HasSubstr("Primary entries (words, expressions ...) : 0 \n"));
}

TEST(Idx1Dico, ASectionIsSkippedUpToItsClosingLine) {
  EXPECT_EQ(body_of(write_index("#######\n#a * 1\n### ######\n#b * 2\n")),
            "#b *fr1 26 * 2 \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, AnUnclosedSectionRunsToTheEnd) {
  EXPECT_EQ(write_index("#a * 1\n######\n#b * 2\n").idx1,
            idx1_header(PATH, "fr1") + "#a *fr1 0 * 1 \r\n" + BLANK_HISTORY + idx1_trailer(21));
}

TEST(Idx1Dico, TheEndMarkEndsTheDictionaryAndTheTrailerStandsBehindIt) {
  EXPECT_EQ(write_index("#a * 1\nEND_OF_FILE\n#b * 2\n").idx1,
            idx1_header(PATH, "fr1") + "#a *fr1 0 * 1 \r\n" + BLANK_HISTORY + idx1_trailer(19));
}

TEST(Idx1Dico, TheEndMarkEndsTheDictionaryInsideASectionToo) {
  EXPECT_EQ(write_index("######\nEND_OF_FILE\n######\n#b * 2\n").idx1,
            idx1_header(PATH, "fr1") + idx1_trailer(19));
}

TEST(Idx1Dico, ADictionaryWithoutLastLineEndIsReadOnePastItsEnd) {
  EXPECT_THAT(write_index("#a * 1").idx1, EndsWith(idx1_trailer(7)));
}

TEST(Idx1Dico, ALineIsCutTo101BytesBeforeItIsLookedAt) {
  std::string blanks(100, ' ');
  EXPECT_EQ(body_of(write_index("#" + std::string(99, 'a') + "*bcd\n")),
            "#" + std::string(99, 'a') + "*fr1 0 * \r\n" + BLANK_HISTORY);
  EXPECT_EQ(body_of(write_index("#" + std::string(100, 'a') + "*bcd\n")),
            "#" + std::string(100, 'a') + "*fr1 0 * \r\n" + BLANK_HISTORY);
  EXPECT_EQ(body_of(write_index(blanks + "#abc * x\n")), "");
  // What lies behind the cut neither ends the dictionary nor opens a section.
  EXPECT_EQ(body_of(write_index(blanks + "END_OF_FILE\n" + blanks + " ######\n#a * 1\n")),
            "#a *fr1 220 * 1 \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, AnEntryWithoutStarIsNamedByItsWholeLine) {
  EXPECT_EQ(body_of(write_index("# la  maison\n")), "#la maison*fr1 0 * \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, ALoneMarkIsNamedByALaterLine) {
  Written written = write_index("x\n#\ntext\nQ>  bonjour, madame\n#a * 1\n");
  EXPECT_EQ(body_of(written),
            "# bonjour *fr1 2 * \r\n" + BLANK_HISTORY + "#a *fr1 29 * 1 \r\n" + BLANK_HISTORY);
  EXPECT_EQ(written.nb, 2);
  EXPECT_THAT(written.log, HasSubstr("Primary entries (words, expressions ...) : 2 \n"));
}

TEST(Idx1Dico, ABlankNameIsTakenFromTheNextLineThatIsNot) {
  EXPECT_EQ(body_of(write_index("  # \nQ>   \n   \n\nun \\'etat; x\n#a * 1\n")),
            "#un \351tat *fr1 0 * \r\n" + BLANK_HISTORY + "#a *fr1 29 * 1 \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, TheLinesReadInSearchOfANameAreConsumed) {
  Written written = write_index("#\n#a * 1\n######\n## c\nQ>b\n#d * 1\n");
  EXPECT_EQ(body_of(written),
            "#b *fr1 0 * \r\n" + BLANK_HISTORY + "#d *fr1 25 * 1 \r\n" + BLANK_HISTORY);
  EXPECT_EQ(written.nb, 2);
}

TEST(Idx1Dico, ANameThatNeverComesGivesNoRecord) {
  EXPECT_EQ(write_index("#\ntext\n").idx1, idx1_header(PATH, "fr1") + idx1_trailer(7));
  EXPECT_EQ(write_index("#\nQ> \n \n").idx1, idx1_header(PATH, "fr1") + idx1_trailer(8));
  Written ended = write_index("#\nEND_OF_FILE\nQ>a\n#b * 1\n");
  EXPECT_EQ(ended.idx1, idx1_header(PATH, "fr1") + idx1_trailer(14));
  EXPECT_EQ(ended.nb, 1);
  EXPECT_THAT(ended.log, HasSubstr("Primary entries (words, expressions ...) : 0 \n"));
}

TEST(Idx1Dico, ADictionaryIsIndexedUpToLine10000) {
  std::string lines;
  for (int i = 0; i < 9999; i++)
    lines += "x\n";
  Written written = write_index(lines + "#a * 1\n#b * 2\n");
  EXPECT_EQ(written.idx1, idx1_header(PATH, "fr1") + "#a *fr1 19998 * 1 \r\n" + BLANK_HISTORY +
                              idx1_trailer(20005));
}

TEST(Idx1Dico, ALineThatReadsAsTheEndOfTheDictionaryIsTold) {
  Written written = write_index("#a * 1\r\n\377\r\n#b * 2\r\n");
  EXPECT_EQ(body_of(written), "#a *fr1 0 * 1 \r\n" + BLANK_HISTORY);
  EXPECT_EQ(written.said, "index ./idx1_a ends before line 2 of its dictionary: it begins with a y "
                          "with diaeresis \n");
  // Where nothing is hidden, nothing is told.
  for (const char *copy : {"#a * 1\r\n", "#a * 1\377\r\n", "#a * 1\r\n# END_OF_FILE\r\n\377\r\n"})
    EXPECT_EQ(write_index(copy).said, "");
}

TEST(Idx1Dico, LinesOfSectionsAndOfTheNameSearchCountTowardsTheLimit) {
  std::string lines;
  for (int i = 0; i < 4998; i++)
    lines += "x\n";
  std::string copy = "######\n" + lines + "######\n#\n" + lines + "Q>a\n#b * 1\n#c * 1\n";
  // 1 + 4998 + 1 + 1 + 4998 + 1 lines are 10,000.
  EXPECT_EQ(body_of(write_index(copy)), "#a *fr1 10010 * \r\n" + BLANK_HISTORY);
  EXPECT_EQ(body_of(write_index("x\n" + copy)), "");
}

TEST(Idx1Dico, AnEditOfTheAnswerKeepsTheHistory) {
  std::string history = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  Written written =
      write_index("text\n#a  * other answer\n", old_index_of("#a *old 99 * answer \r\n" + history));
  EXPECT_EQ(body_of(written), "#a *fr1 5 * other answer \r\n" + history);
  EXPECT_THAT(written.log, HasSubstr("Taking account of old history records \n"));
  EXPECT_THAT(written.log, Not(HasSubstr("NOT taking")));
}

TEST(Idx1Dico, AnEditOfTheQuestionStartsAnEmptyHistory) {
  std::string history = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  EXPECT_EQ(body_of(write_index("#b * x\n", old_index_of("#a *fr1 0 * x \r\n" + history))),
            "#b *fr1 0 * x \r\n" + BLANK_HISTORY);
}

TEST(Idx1Dico, MovedEntriesKeepTheirHistoryAndGetNewOffsets) {
  std::string a = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  std::string b = history_line(7, 0, 70, 0) + history_line(0, 4, 0, 60);
  EXPECT_EQ(body_of(write_index("#b * 2\n#a * 1\n",
                                old_index_of("#a *fr1 0 * 1 \r\n" + a + "#b *fr1 7 * 2 \r\n" + b))),
            "#b *fr1 0 * 2 \r\n" + b + "#a *fr1 7 * 1 \r\n" + a);
}

TEST(Idx1Dico, TwoEntriesOfOneQuestionTakeTheFirstHistory) {
  std::string first = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  std::string second = history_line(7, 0, 70, 0) + history_line(0, 4, 0, 60);
  EXPECT_EQ(body_of(write_index("#a * 1\n#a * 2\n", old_index_of("#a *fr1 0 * 1 \r\n" + first +
                                                                 "#a *fr1 7 * 2 \r\n" + second))),
            "#a *fr1 0 * 1 \r\n" + first + "#a *fr1 7 * 2 \r\n" + first);
}

TEST(Idx1Dico, ANameWithoutTheLetterThatKeptItsLineIsNotFoundAgain) {
  const std::string question = "\303\251t\303\251"; // UTF-8
  const std::string odd = "\342\230\272";           // a letter that CP1252 lacks
  const std::string history = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  auto rebuilt = [&](const std::string &copy) {
    std::string old_index = write_index(copy).idx1;
    old_index.replace(old_index.find(BLANK_HISTORY), BLANK_HISTORY.size(), history);
    return body_of(write_index(copy, old_index));
  };
  std::string far = "#" + question + " * " + std::string(100, 'x');
  EXPECT_EQ(rebuilt(far + odd + "\n"),
            "#" + question + " *fr1 0 * " + std::string(92, 'x') + " \r\n" + BLANK_HISTORY);
  EXPECT_EQ(rebuilt("#\nQ>" + question + ", " + odd + "\n"),
            "#" + question + " *fr1 0 * \r\n" + BLANK_HISTORY);
  // Where the letter stays in the name line, or no letter lacks a form, the history is found.
  EXPECT_THAT(rebuilt("#" + question + " * " + odd + "\n"), EndsWith(history));
  EXPECT_THAT(rebuilt(far + "\n"), EndsWith(history));
}

TEST(Idx1Dico, ALaterNameThatBeginsWithTheMarkIsNotFoundAgain) {
  const std::string copy = "#\nQ>\n# a * 1\n";
  Written once = write_index(copy);
  EXPECT_EQ(body_of(once), "## a * 1 *fr1 0 * \r\n" + BLANK_HISTORY);
  EXPECT_EQ(body_of(write_index(copy, once.idx1)), body_of(once));
}

TEST(Idx1Dico, ABlankHistoryIsCarriedOverAsZeros) {
  std::string zeros = history_line(0, 0, 0, 0);
  EXPECT_EQ(body_of(write_index("#a * 1\n", old_index_of("#a *fr1 0 * 1 \r\n" + BLANK_HISTORY))),
            "#a *fr1 0 * 1 \r\n" + zeros + zeros);
}

TEST(Idx1Dico, ADamagedHistoryIsCorrectedAndLogged) {
  SET_PRESENT_DAY(2004, 3, 1); // day 1155
  std::string damaged = history_line(3, 1, 1156, 90) + "2;\r\n";
  Written written = write_index("#a * 1\n", old_index_of("#a *fr1 0 * 1 \r\n" + damaged));
  RESET_PRESENT();
  EXPECT_EQ(body_of(written),
            "#a *fr1 0 * 1 \r\n" + history_line(0, 1, 0, 90) + history_line(2, 0, 0, 0));
  EXPECT_THAT(written.log,
              HasSubstr("IDX1_DICO and CHECK_4LINTsome error in file : ./idx1_a \n"
                        "IDX1_DICO and CHECK_4LINTsome error 2 in file : ./idx1_a \n"));
}

TEST(Idx1Dico, AnOldRecordCutShortEndsTheProgramAndSaysWhatToDo) {
  const std::string history = history_line(3, 1, 100, 90);
  const std::string name = idx1_header(PATH, "fr1") + "#a *fr1 0 * 1 \r\n";
  for (const std::string &old_index :
       {name, name + idx1_trailer(5), name + history, name + history + idx1_trailer(5)}) {
    Scratch_dir dir;
    ENDS_WITH_STATUS(write_old(old_index, "#a * 1\n", &dir), 3,
                     "IDX1_DICO error in reading fp_class \n"
                     "./idx1_a ends in the middle of an entry: remove its last name line, or put "
                     "the cpy_ file back \n");
    EXPECT_THAT(dir.read("log"), EndsWith("IDX1_DICO error in reading fp_class \n"));
  }
}

TEST(Idx1Dico, AnOldOffsetBehindTheEndEndsTheProgram) {
  Scratch_dir dir;
  dir.write("idx1_old", idx1_header(PATH, "fr1") + "#a *fr1 0 * 1 \r\n" + BLANK_HISTORY);
  Trf_classmt old;
  INIT_CLASSMT(fopen("idx1_old", "r"), nullptr, nullptr, &old);
  CLASS_OLD_WORDS(&old);
  old.value[1] = 100000;
  ENDS_WITH_STATUS(write_with(&old, "#a * 1\n", &dir), 3, "IDX1_DICO error in reading fp_class ");
  FREE_CLASSMT(&old);
}

TEST(Idx1Dico, AnotherNameAtTheOldPlaceStandsAsTheFirstHistoryLine) {
  Scratch_dir dir;
  std::string history = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  dir.write("idx1_old", "#b *fr1 0 * 1 \r\n" + history);
  Trf_classmt old;
  INIT_CLASSMT(fopen("idx1_old", "r"), nullptr, nullptr, &old);
  g_free(old.ss_words);
  old.ss_words = g_strdup("* a *");
  old.nb = 1;
  old.value[1] = 0;
  write_with(&old, "#a * 1\n", &dir);
  FREE_CLASSMT(&old);
  EXPECT_EQ(dir.read("new"), idx1_header(PATH, "fr1") + "#a *fr1 0 * 1 \r\n#b *fr1 0 * 1 \r\n" +
                                 NEVER_LINE + idx1_trailer(7));
}

TEST(Idx1Dico, AQuestionGivenToAnotherRecordMeetsThatRecordsNameLine) {
  Scratch_dir dir;
  std::string history = history_line(3, 1, 100, 90) + history_line(2, 0, 80, 0);
  dir.write("idx1_old", idx1_header(PATH, "fr1") + "#b *fr1 0 * 1 \r\n" + history);
  Trf_classmt old;
  INIT_CLASSMT(fopen("idx1_old", "r"), nullptr, nullptr, &old);
  CLASS_OLD_WORDS(&old);
  ASSERT_STREQ(old.ss_words, "* b *");
  old.ss_words[2] = 'a';
  write_with(&old, "#a * 1\n", &dir);
  FREE_CLASSMT(&old);
  EXPECT_EQ(dir.read("new"), idx1_header(PATH, "fr1") + "#a *fr1 0 * 1 \r\n#b *fr1 0 * 1 \r\n" +
                                 NEVER_LINE + idx1_trailer(7));
}

TEST(Idx1Dico, APathWithoutIdx1EndsTheProgram) {
  Scratch_dir dir;
  ENDS_WITH_STATUS(write_with(nullptr, "#a * 1\n", &dir, "./words.txt"), 1,
                   "IDX1_DICO erreur 1 stop c=\\. \n");
  EXPECT_THAT(dir.read("log"), EndsWith("IDX1_DICO erreur 1 stop c=. \n"));
  ENDS_WITH_STATUS(write_with(nullptr, "#a * 1\n", &dir, ""), 1, "IDX1_DICO erreur 1 stop c=  \n");
}

TEST(Idx1Dico, IsStableOnceEveryHistoryHasBeenCarriedOver) {
  std::string copy = "#a * 1\n#b\n## x\n#\nQ> c, d\n#b * other\n";
  std::string once = write_index(copy, write_index(copy).idx1).idx1;
  EXPECT_EQ(write_index(copy, once).idx1, once);
}
