// The generated lesson file: which is current, records appended and read back.
#include "db/generated_lesson.h"

#include "support/prelude.h"
#include "support/scratch.h"

#include "util/owned.h"

namespace {

Trf_gene_result read_at(const std::string &text, long posit, Trf_gene_record *record) {
  Scratch_dir dir;
  dir.write("gene", text);
  Owned_stream fp = OPEN_STREAM("gene", "r");
  Trf_line_cursor cursor(fp.get());
  cursor.next = posit;
  return READ_GENE_RECORD(&cursor, record);
}

} // namespace

TEST(GeneratedLesson, ANumberedLessonAndAComposedOneHaveTheirOwnFiles) {
  EXPECT_STREQ(CURRENT_GENE_NAME(1), "./idx1_gene");
  EXPECT_STREQ(CURRENT_GENE_NAME(-1), "./idx1_gene");
  EXPECT_STREQ(CURRENT_GENE_NAME(0), "./idx2_gene");
}

TEST(GeneratedLesson, RecordsAreAppendedWithTheirOffsets) {
  Scratch_dir dir;
  Owned_stream fp = OPEN_STREAM("gene", "w");
  EXPECT_EQ(APPEND_GENE_RECORD(fp.get(), "#a *fr1 0 *", "./IDX1/idx1_a", 120), 0);
  EXPECT_EQ(APPEND_GENE_NAME(fp.get(), "#b *fr1 9 *"), 12 + 22);
  APPEND_GENE_REFERENCE(fp.get(), "./IDX1/idx1_b", 7);
  APPEND_GENE_TRAILER(fp.get());
  fp.reset();
  EXPECT_EQ(dir.read("gene"), "#a *fr1 0 *\n ./IDX1/idx1_a * 120 \n"
                              "#b *fr1 9 *\n ./IDX1/idx1_b * 7 \n# END_OF_FILE * 66 \n");
}

TEST(GeneratedLesson, ARecordIsReadBackAtItsOffset) {
  Trf_gene_record record;
  std::string first = "#a *fr1 0 * x\n ./IDX1/idx1_a * 120 \n";
  std::string second = "#b *en2 9 *\n ./IDX1/idx1_b * 7 \n";
  EXPECT_EQ(read_at(first + second, (long)first.size(), &record), GENE_RECORD);
  EXPECT_EQ(record.name, "#b *en2 9 *");
  EXPECT_EQ(record.alias, "en2");
  EXPECT_EQ(record.path, "./IDX1/idx1_b");
  EXPECT_EQ(record.history, 7);
  EXPECT_EQ(read_at(first + second, 0, &record), GENE_RECORD);
  EXPECT_EQ(record.alias, "fr1");
  EXPECT_EQ(record.history, 120);
}

TEST(GeneratedLesson, RecordsFollowEachOther) {
  Scratch_dir dir;
  dir.write("gene", "#a *f 0 *\n p * 1 \n#b *f 0 *\n p * 2 \n# END_OF_FILE * 36 \n");
  Owned_stream fp = OPEN_STREAM("gene", "r");
  Trf_line_cursor cursor(fp.get());
  Trf_gene_record record;
  EXPECT_EQ(READ_GENE_RECORD(&cursor, &record), GENE_RECORD);
  EXPECT_EQ(READ_GENE_RECORD(&cursor, &record), GENE_RECORD);
  EXPECT_EQ(record.history, 2);
  EXPECT_EQ(READ_GENE_RECORD(&cursor, &record), GENE_NO_NAME);
  EXPECT_EQ(READ_GENE_RECORD(&cursor, &record), GENE_NO_NAME);
}

TEST(GeneratedLesson, ALineThatNamesNoEntryIsNoRecord) {
  Trf_gene_record record;
  EXPECT_EQ(read_at("", 0, &record), GENE_NO_NAME);
  EXPECT_EQ(read_at("a *fr1 0 *\n p * 1 \n", 0, &record), GENE_NO_NAME);
  EXPECT_EQ(read_at("#a fr1 0\n p * 1 \n", 0, &record), GENE_NO_NAME);
  EXPECT_EQ(record.name, "#a fr1 0");
}

TEST(GeneratedLesson, AMissingReferenceOrOffsetIsTold) {
  Trf_gene_record record;
  EXPECT_EQ(read_at("#a *fr1 0 *\n", 0, &record), GENE_NO_REFERENCE);
  EXPECT_EQ(record.alias, "fr1");
  EXPECT_EQ(read_at("#a *fr1 0 *\n path \n", 0, &record), GENE_NO_OFFSET);
  EXPECT_EQ(record.path, "path");
  EXPECT_EQ(read_at("#a *fr1 0 *\n path *\n", 0, &record), GENE_NO_OFFSET);
  EXPECT_EQ(read_at("#a *fr1 0 *\n path * \n", 0, &record), GENE_NO_OFFSET);
  EXPECT_EQ(read_at("#a *fr1 0 *\n path * x\n", 0, &record), GENE_NO_OFFSET);
}

TEST(GeneratedLesson, TheOffsetStandsTwoCharactersBehindTheStar) {
  Trf_gene_record record;
  EXPECT_EQ(read_at("#a *fr1 0 *\n p *123 \n", 0, &record), GENE_RECORD);
  EXPECT_EQ(record.history, 23);
}
