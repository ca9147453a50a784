// Where an entry of the lesson stands.
#include "quiz/locate_entry.h"

#include <string.h>

#include "quiz/book_of_files.h"
#include "support/prelude.h"

using testing::HasSubstr;

namespace {

class LocateEntry : public testing::Test {
protected:
  LocateEntry() {
    files.dir.write("CPY/a.txt", "the copy of a\n");
    files.dir.write("CPY/b.txt", "the copy of b\n");
  }
  // Locates entry 1 with this generated lesson file.
  void locate(const std::string &gene, const char *name = "idx1_gene") {
    files.dir.write(name, gene);
    WHAT_QR(1, alias, &files.book, &fp, &add);
  }
  Book_of_files files;
  Trf_book &book = files.book;
  char alias[ALIAS_SIZE] = "?";
  FILE *fp = nullptr;
  long add = -1;
};

} // namespace

TEST_F(LocateEntry, GivesAliasStreamAndOffset) {
  locate("#the house *bb 1234 * la maison \n ./IDX1/idx1_b.txt * 99 \n");
  EXPECT_STREQ(alias, "bb");
  EXPECT_EQ(add, 1234);
  ASSERT_NE(fp, nullptr);
  EXPECT_EQ(fp, book.fp);
  EXPECT_EQ(book.exfp, 1);
  EXPECT_EQ(book.fp_gene, nullptr);
  char line[40] = "";
  EXPECT_STREQ(fgets(line, sizeof line, fp), "the copy of b\n");
}

TEST_F(LocateEntry, ReadsTheLineAtTheEntrysPosition) {
  files.dir.write("idx1_gene", "#one *aa 10 *\n ./IDX1/idx1_a.txt * 9 \n#two *bb 20 *\n");
  files.table.posit[2] = 38;
  WHAT_QR(2, alias, &book, &fp, &add);
  EXPECT_STREQ(alias, "bb");
  EXPECT_EQ(add, 20);
}

TEST_F(LocateEntry, LineLongerThanAHundredCharactersIsReadWhole) {
  locate("#" + std::string(300, 'x') + " *bb 77 *\n");
  EXPECT_EQ(add, 77);
}

TEST_F(LocateEntry, ComposedLessonHasItsOwnFile) {
  book.ilesson = 0;
  locate("#the house *aa 5 *\n", "idx2_gene");
  EXPECT_STREQ(alias, "aa");
  EXPECT_EQ(add, 5);
}

TEST_F(LocateEntry, RemembersTheDirectoryOfTheDictionary) {
  locate("#the house *bb 1 *\n");
  EXPECT_STREQ(book.path_of_lesson, "words/");
  EXPECT_EQ(book.lenmx_path_of_lesson, 6 + 25);
}

TEST_F(LocateEntry, DirectoryThatFitsDoesNotGrowItsBuffer) {
  book.lenmx_path_of_lesson = 6;
  book.path_of_lesson = static_cast<char *>(g_malloc0(11));
  locate("#the house *bb 1 *\n");
  EXPECT_STREQ(book.path_of_lesson, "words/");
  EXPECT_EQ(book.lenmx_path_of_lesson, 6);
}

TEST_F(LocateEntry, ClosesTheStreamBefore) {
  locate("#the house *bb 1 *\n");
  locate("#the house *aa 1 *\n");
  char line[40] = "";
  EXPECT_STREQ(fgets(line, sizeof line, book.fp), "the copy of a\n");
}

TEST_F(LocateEntry, MissingGeneratedFileIsLogged) {
  WHAT_QR(1, alias, &book, &fp, &add);
  EXPECT_EQ(fp, nullptr);
  EXPECT_EQ(files.log(), "WHAT_QR unable to open file fpg \n");
}

TEST_F(LocateEntry, LineWithoutAStarIsLogged) {
  locate("#the house\n");
  EXPECT_EQ(fp, nullptr);
  EXPECT_EQ(files.log(), "WHAT_QR no * in ss=#the house@@@ \n");
}

TEST_F(LocateEntry, PositionBehindTheFileIsALineWithoutAStar) {
  files.table.posit[1] = 4000;
  locate("#the house *bb 1 *\n");
  EXPECT_EQ(files.log(), "WHAT_QR no * in ss=@@@ \n");
}

TEST_F(LocateEntry, LineWithoutANumberIsLoggedWhole) {
  locate("#the house *bb * la maison\n");
  EXPECT_EQ(fp, nullptr);
  EXPECT_EQ(files.log(), "#the house *bb * la maison\n"
                         "WHAT_QR no i_extracted in stp= * la maison@@@ \n");
}

TEST_F(LocateEntry, UnknownAliasEndsTheProgram) {
  files.dir.write("idx1_gene", "#the house *zz 1 *\n");
  ENDS_WITH_STATUS(WHAT_QR(1, alias, &book, &fp, &add), 5, "WHAT_QR not existing s_alias=zz@@@ \n");
  EXPECT_EQ(files.dir.read("log"), "WHAT_QR not existing s_alias=zz@@@ \n");
}

TEST_F(LocateEntry, AliasOverAHundredCharactersIsCutAndItsRestIsNoNumber) {
  locate("#the house *" + std::string(103, 'z') + " 1 *\n");
  EXPECT_EQ(alias, std::string(100, 'z'));
  EXPECT_THAT(files.log(), HasSubstr("WHAT_QR no i_extracted in stp=zzz 1 *@@@ \n"));
}

TEST_F(LocateEntry, MissingWorkingCopyLeavesNoStream) {
  remove("CPY/b.txt");
  locate("#the house *bb 1 *\n");
  EXPECT_EQ(fp, nullptr);
  EXPECT_EQ(book.fp, nullptr);
  EXPECT_EQ(book.exfp, 0);
  EXPECT_EQ(book.path_of_lesson, nullptr);
  EXPECT_EQ(files.log(), "");
}

TEST_F(LocateEntry, NameOfADictionaryIsItsDirectoryAndFile) {
  char path[60];
  char name[] = " bb ";
  EXTRACT_DICO_NAME(name, &files.registry, path);
  EXPECT_STREQ(path, "words/b.txt");
}

TEST_F(LocateEntry, NameOfAnUnknownDictionaryEndsTheProgram) {
  char path[60];
  char name[] = "zz";
  ENDS_WITH_STATUS(EXTRACT_DICO_NAME(name, &files.registry, path), 1,
                   "Not found zz in string  aa bb  \n");
}
