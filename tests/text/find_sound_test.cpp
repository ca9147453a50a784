// Where a sound file lies.
#include "text/find_sound.h"

#include <glib.h>

#include "support/prelude.h"
#include "support/scratch.h"
#include "util/book.h"

namespace {

class FindSound : public testing::Test {
protected:
  FindSound() {
    FORGET_SOUND_PLACE();
    book.path_of_lesson = directory;
  }
  // The path found for a name; "" when there is none.
  std::string find(const char *name) {
    std::string copy = name;
    char *path = nullptr;
    long size = 0;
    int found = SEARCH_SND_FILE_NAME(&path, &size, copy.data(), &book);
    std::string result = found == 1 ? path : "";
    EXPECT_TRUE(path == nullptr || size > static_cast<long>(result.size()));
    g_free(path);
    return result;
  }
  Scratch_dir dir;
  Trf_book book = {};
  char directory[7] = "words/";
};

} // namespace

TEST_F(FindSound, LooksBesideTheDictionaryFirst) {
  for (const char *name : {"words/a.wav", "a.wav", "SOUND/a.wav", "words/SOUND/a.wav"})
    dir.write(name, "");
  EXPECT_EQ(find("a.wav"), "words/a.wav");
}

TEST_F(FindSound, ThenHereThenInTheSoundDirectories) {
  dir.write("b.wav", "");
  dir.write("SOUND/c.wav", "");
  dir.write("words/SOUND/d.wav", "");
  EXPECT_EQ(find("b.wav"), "./b.wav");
  EXPECT_EQ(find("c.wav"), "./SOUND/c.wav");
  EXPECT_EQ(find("d.wav"), "words/SOUND/d.wav");
}

TEST_F(FindSound, NotFoundLeavesThePlaceAsItWas) {
  EXPECT_EQ(find("a.wav"), "");
  dir.write("words/a.wav", "");
  EXPECT_EQ(find("a.wav"), "words/a.wav");
}

TEST_F(FindSound, NeverTurnsBackToALowerPlace) {
  dir.write("words/a.wav", "");
  dir.write("SOUND/c.wav", "");
  EXPECT_EQ(find("c.wav"), "./SOUND/c.wav");
  EXPECT_EQ(find("a.wav"), "");
}

TEST_F(FindSound, PathReusesABlockThatIsLargeEnough) {
  dir.write("words/a.wav", "");
  char name[] = "a.wav";
  long size = 100;
  char *block = static_cast<char *>(g_malloc(size));
  char *path = block;
  EXPECT_EQ(SEARCH_SND_FILE_NAME(&path, &size, name, &book), 1);
  EXPECT_EQ(path, block);
  EXPECT_STREQ(path, "words/a.wav");
  g_free(path);
}

TEST_F(FindSound, PathGrowsABlockThatIsTooSmall) {
  dir.write("words/a.wav", "");
  char name[] = "a.wav";
  long size = 11;
  char *path = static_cast<char *>(g_malloc(size));
  EXPECT_EQ(SEARCH_SND_FILE_NAME(&path, &size, name, &book), 1);
  EXPECT_EQ(size, 12);
  EXPECT_STREQ(path, "words/a.wav");
  g_free(path);
}

TEST_F(FindSound, BookWithoutADirectoryLooksHere) {
  book.path_of_lesson = nullptr;
  dir.write("a.wav", "");
  EXPECT_EQ(find("a.wav"), "a.wav");
  dir.write("SOUND/d.wav", "");
  EXPECT_EQ(find("d.wav"), "./SOUND/d.wav");
}

TEST_F(FindSound, FileThatCannotBeReadIsPassedOver) {
  dir.write("SOUND/a.wav", "");
  std::filesystem::create_symlink("nowhere", "a.wav");
  EXPECT_EQ(find("a.wav"), "./SOUND/a.wav");
}

TEST_F(FindSound, DirectoryOfADictionaryIsRemembered) {
  book.path_of_lesson = nullptr;
  char deep[] = "a/rather/deep/directory/words.txt";
  REMEMBER_DIRECTORY(deep, &book);
  EXPECT_STREQ(book.path_of_lesson, "a/rather/deep/directory/");
  EXPECT_EQ(book.lenmx_path_of_lesson, 24 + 25);
  char *block = book.path_of_lesson;
  char flat[] = "words.txt";
  REMEMBER_DIRECTORY(flat, &book);
  REMEMBER_DIRECTORY(nullptr, &book);
  EXPECT_EQ(book.path_of_lesson, block);
  EXPECT_STREQ(block, "./");
  g_free(block);
}

TEST_F(FindSound, DirectoryBeyondTheBuffersLengthGrowsIt) {
  book.lenmx_path_of_lesson = 5;
  book.path_of_lesson = g_new0(char, 6);
  char fits[] = "ab/c/words.txt";
  REMEMBER_DIRECTORY(fits, &book);
  EXPECT_EQ(book.lenmx_path_of_lesson, 5);
  EXPECT_STREQ(book.path_of_lesson, "ab/c/");
  char longer[] = "ab/cd/words.txt";
  REMEMBER_DIRECTORY(longer, &book);
  EXPECT_EQ(book.lenmx_path_of_lesson, 6 + 25);
  EXPECT_STREQ(book.path_of_lesson, "ab/cd/");
  g_free(book.path_of_lesson);
}
