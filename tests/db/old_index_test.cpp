// The old index read back, and an entry's history found by its question.
#include "db/old_index.h"

#include "support/prelude.h"
#include "support/scratch.h"

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <random>

#include "util/owned.h"

namespace {

using testing::HasSubstr;
using testing::Not;

const std::string HEADER = "./IDX1/idx1_a fr1 \r\n#######\r\n";
const std::string NEVER = "            ;            ;            ;            ;\r\n";

// An old index of this text, read or about to be.
struct Old {
  Scratch_dir dir;
  Owned_stream log;
  Trf_classmt record;

  explicit Old(const std::string &text, const char *s_idx1 = "./IDX1/idx1_a")
      : log(OPEN_STREAM("log", "w")) {
    dir.write("idx1_old", text);
    INIT_CLASSMT(fopen("idx1_old", "r"), log.get(), s_idx1, &record);
  }
  ~Old() {
    FREE_CLASSMT(&record);
  }
};

std::string classified(Old *old) {
  testing::internal::CaptureStdout();
  CLASS_OLD_WORDS(&old->record);
  fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

std::string records(int nb) {
  std::string text;
  for (int i = 1; i <= nb; i++)
    text += "#w" + std::to_string(i) + " *fr1 0 *\r\n" + NEVER + NEVER;
  return text;
}

// A file whose disk fails behind these bytes.
struct Faulty_disk {
  std::string bytes;
  size_t place = 0;
};

ssize_t read_faulty(void *cookie, char *buffer, size_t size) {
  Faulty_disk *disk = (Faulty_disk *)cookie;
  size_t nb = std::min(size, disk->bytes.size() - disk->place);
  memcpy(buffer, disk->bytes.data() + disk->place, nb);
  disk->place += nb;
  errno = EIO;
  return nb > 0 ? (ssize_t)nb : -1;
}

int seek_faulty(void *cookie, off64_t *offset, int) {
  Faulty_disk *disk = (Faulty_disk *)cookie;
  disk->place = std::min((size_t)*offset, disk->bytes.size());
  return 0;
}

FILE *open_faulty(Faulty_disk *disk) {
  cookie_io_functions_t routines = {};
  routines.read = read_faulty;
  routines.seek = seek_faulty;
  return fopencookie(disk, "r", routines);
}

// The search that the table stands for.
int searched(const std::string &ss_words, const std::string &question) {
  std::string key = "* " + question + "*";
  const char *found = strstr(ss_words.c_str(), key.c_str());
  if (found == nullptr)
    return 0;
  return (int)std::count(ss_words.c_str(), found + 1, '*');
}

} // namespace

TEST(OldIndex, EveryArrayIsFreedAndNull) {
  Trf_classmt classmt;
  INIT_CLASSMT(nullptr, nullptr, nullptr, &classmt);
  classmt.nk_QR = g_new0(long, 5);
  classmt.nk_RQ = g_new0(long, 5);
  FREE_CLASSMT(&classmt);
  EXPECT_EQ(classmt.order, nullptr);
  EXPECT_EQ(classmt.value, nullptr);
  EXPECT_EQ(classmt.nk_QR, nullptr);
  EXPECT_EQ(classmt.nk_RQ, nullptr);
  EXPECT_EQ(classmt.ss_words, nullptr);
}

TEST(ClassOldWords, StartsWithRoomForTwentyRecordsAndAStar) {
  Old old("");
  EXPECT_EQ(old.record.nb, 0);
  EXPECT_EQ(old.record.nb_tot, 20);
  EXPECT_EQ(old.record.lss_words, 30);
  EXPECT_STREQ(old.record.ss_words, "*");
}

TEST(ClassOldWords, KeepsOffsetsAndQuestionsOfTheNameLines) {
  std::string first = "#la maison *fr1 12 * the house * tag \r\n" + NEVER + NEVER;
  std::string link = "## le mot *en1 \r\n";
  std::string second = "#le mot*fr1 40 *\r\n" + NEVER + NEVER;
  Old old(HEADER + first + link + second + "# END_OF_FILE * 99  \r\n#later *fr1 1 *\r\n");
  EXPECT_EQ(classified(&old), "");
  EXPECT_EQ(old.record.nb, 2);
  EXPECT_STREQ(old.record.ss_words, "* la maison * le mot*");
  EXPECT_EQ(old.record.lss_words, (int)strlen(old.record.ss_words));
  EXPECT_EQ(old.record.order[1], 1);
  EXPECT_EQ(old.record.order[2], 2);
  EXPECT_EQ(old.record.value[1], (long)HEADER.size());
  EXPECT_EQ(old.record.value[2], (long)(HEADER + first + link).size());
}

TEST(ClassOldWords, AnEmptyIndexHasNoRecords) {
  Old old(HEADER);
  EXPECT_EQ(classified(&old), "");
  EXPECT_EQ(old.record.nb, 0);
  EXPECT_STREQ(old.record.ss_words, "*");
}

TEST(ClassOldWords, GrowsByTenWhenTheCountReachesTheCapacity) {
  const int counts[][2] = {{19, 20}, {20, 30}, {29, 30}, {30, 40}, {45, 50}};
  for (const int *count : counts) {
    Old old(HEADER + records(count[0]));
    classified(&old);
    EXPECT_EQ(old.record.nb, count[0]);
    EXPECT_EQ(old.record.nb_tot, count[1]);
    EXPECT_EQ(old.record.order[count[0]], count[0]);
  }
}

TEST(ClassOldWords, WithoutHeaderEndsTheProgram) {
  Old old("#la maison *fr1 12 *\r\n");
  ENDS_WITH_STATUS(CLASS_OLD_WORDS(&old.record), 1,
                   "Error no detection of ####### stop \nn file : ./idx1_old \n");
  EXPECT_EQ(old.dir.read("log"), "Error no detection of ####### stop \nn file : ./idx1_old \n");
}

TEST(ClassOldWords, ANameLineWithoutStarEndsTheProgram) {
  Old old(HEADER + "#la maison\r\n");
  ENDS_WITH_STATUS(CLASS_OLD_WORDS(&old.record), 1,
                   "Error no detection of #     \\*  stop \nn file : ./idx1_old \n");
  EXPECT_EQ(old.dir.read("log"), "Error no detection of #     *  stop \nn file : ./idx1_old \n");
}

TEST(ClassOldWords, AFileThatCannotBeReadToItsEndEndsTheProgram) {
  Old old("");
  Faulty_disk disk = {HEADER + records(3)};
  fclose(old.record.fp_class);
  old.record.fp_class = open_faulty(&disk);
  ENDS_WITH_STATUS(CLASS_OLD_WORDS(&old.record), 1,
                   "^cannot read file ./idx1_old: Input/output error \n$");
  EXPECT_EQ(old.dir.read("log"), "cannot read file ./idx1_old: Input/output error \n");
}

TEST(ClassOldWords, AnotherFileThatCannotBeReadToItsEndIsNamed) {
  Old old("");
  Faulty_disk disk = {HEADER + records(3)};
  fclose(old.record.fp_class);
  old.record.fp_class = open_faulty(&disk);
  old.record.s_class = "./other/idx1_a";
  ENDS_WITH_STATUS(CLASS_OLD_WORDS(&old.record), 1,
                   "^cannot read file ./other/idx1_a: Input/output error \n$");
}

TEST(ClassOldWords, TellsOfAnIndexLongerThan10000Lines) {
  // Two header lines, 3,333 records of three lines: 10,001 lines before the last.
  Old old(HEADER + records(3333) + "# END_OF_FILE * 99  \r\n");
  EXPECT_EQ(classified(&old), "index ./IDX1/idx1_a is longer than 10000 lines \n");
  EXPECT_EQ(old.record.nb, 3333);
  Old longer(HEADER + records(3400), nullptr);
  EXPECT_EQ(classified(&longer), "index ./idx1_old is longer than 10000 lines \n");
  EXPECT_EQ(longer.record.nb, 3333);
}

TEST(ClassOldWords, AnIndexOfTenThousandLinesIsNotTooLong) {
  std::string link = "##\r\n";
  Old whole(HEADER + records(3332) + link + "# END_OF_FILE * 99  \r\n");
  EXPECT_EQ(classified(&whole), "");
  Old unended(HEADER + records(3332) + link + link);
  EXPECT_EQ(classified(&unended), "");
}

TEST(OldNames, FindsARecordByItsQuestion) {
  Trf_old_names names = OLD_NAMES("* la maison * le mot* *");
  EXPECT_EQ(FIND_OLD_RECORD(names, "la maison "), 1);
  EXPECT_EQ(FIND_OLD_RECORD(names, "le mot"), 2);
  EXPECT_EQ(FIND_OLD_RECORD(names, ""), 3);
  EXPECT_EQ(FIND_OLD_RECORD(names, "la maison"), 0);
  EXPECT_EQ(FIND_OLD_RECORD(names, "maison "), 0);
}

TEST(OldNames, TheFirstRecordOfEqualQuestionsWins) {
  EXPECT_EQ(FIND_OLD_RECORD(OLD_NAMES("* a * b * b * a *"), "b "), 2);
}

TEST(OldNames, AnswersAsTheSearchInTheWordsOnEveryInput) {
  std::mt19937 chance(20260101);
  const std::string alphabet = "* ab";
  auto any_text = [&](size_t most, size_t letters) {
    std::string text;
    for (size_t n = chance() % (most + 1); n > 0; n--)
      text += alphabet[4 - letters + chance() % letters];
    return text;
  };
  int nb_found = 0;
  for (int round = 0; round < 20000; round++) {
    std::string ss_words = any_text(12, 4);
    if (round % 2 == 0)
      ss_words = "* " + any_text(3, 3) + "* " + any_text(3, 3) + "* " + any_text(3, 3) + "*";
    Trf_old_names names = OLD_NAMES(ss_words.c_str());
    for (int k = 0; k < 5; k++) {
      std::string question = any_text(3, 3);
      int due = searched(ss_words, question);
      ASSERT_EQ(FIND_OLD_RECORD(names, question), due) << ss_words << "|" << question << "|";
      nb_found += due > 0 ? 1 : 0;
    }
  }
  EXPECT_GT(nb_found, 1000);
}
