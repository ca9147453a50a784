// The sort of lines by their keys: against a plain model that reads both lines at each comparison,
// with its ends of the program; each line read once.
#include "support/prelude.h"

#include "command/dictionary_listing.h"

#include <string.h>

#include <algorithm>
#include <random>

#include "support/scratch.h"
#include "util/accents.h"
#include "util/owned.h"

using testing::ElementsAre;

namespace {

// A file of these lines, and where they begin.
struct Lines_file {
  Scratch_dir dir;
  std::vector<std::string> lines;
  std::vector<long> posit = {0}; // element 0 is no line
  Owned_stream fp;

  explicit Lines_file(const std::vector<std::string> &l) : lines(l) {
    std::string bytes;
    for (const std::string &line : lines) {
      posit.push_back((long)bytes.size());
      bytes += line + "\n";
    }
    dir.write("lines", bytes);
    fp = OPEN_STREAM("lines", "r");
  }
  int nb() const {
    return (int)lines.size();
  }
  void sort() {
    MERGESORT_ABC_FILE(1, nb(), posit.data(), fp.get());
  }
  std::vector<std::string> sorted() const {
    std::string bytes = dir.read("lines");
    std::vector<std::string> found;
    for (size_t i = 1; i < posit.size(); i++)
      found.push_back(
          bytes.substr((size_t)posit[i], bytes.find('\n', (size_t)posit[i]) - (size_t)posit[i]));
    return found;
  }
};

std::string model_key(const std::string &line) {
  std::string key = line.substr(1, line.find('*') - 1);
  for (char &byte : key)
    if (byte >= 'A' && byte <= 'Z')
      byte = (char)(byte + 32);
  std::vector<char> bytes(2 * key.size() + 2);
  strcpy(bytes.data(), key.c_str());
  RM_ACCENTS(bytes.data());
  return bytes.data();
}

int model_compare(const std::string &left, const std::string &right) {
  std::string a = model_key(left);
  std::string b = model_key(right);
  bool blank_a = a.find_first_not_of(' ') == std::string::npos;
  bool blank_b = b.find_first_not_of(' ') == std::string::npos;
  if (blank_a || blank_b)
    return blank_a && blank_b ? 0 : (blank_a ? -1 : 1);
  return strcmp(a.c_str(), b.c_str());
}

bool sortable(const std::string &line) {
  return line[0] == '#' && line.find("END_OF_FILE") == std::string::npos;
}

// What reading both lines at each comparison would end with: 0 when the list gets sorted.
int model_sort(std::vector<std::string> *lines, size_t i0, size_t i1) {
  if (i1 <= i0)
    return 0;
  size_t mid = (i0 + i1) / 2;
  int status = model_sort(lines, i0, mid);
  if (status == 0)
    status = model_sort(lines, mid + 1, i1);
  if (status != 0)
    return status;
  std::vector<std::string> merged;
  size_t i = i0;
  size_t j = mid + 1;
  while (i <= mid && j <= i1) {
    if (!sortable((*lines)[i]))
      return 13;
    if (!sortable((*lines)[j]))
      return 14;
    merged.push_back((*lines)[model_compare((*lines)[i], (*lines)[j]) > 0 ? j++ : i++]);
  }
  merged.insert(merged.end(), lines->begin() + (long)i, lines->begin() + (long)mid + 1);
  merged.insert(merged.end(), lines->begin() + (long)j, lines->begin() + (long)i1 + 1);
  std::copy(merged.begin(), merged.end(), lines->begin() + (long)i0);
  return 0;
}

std::string random_line(std::mt19937 *chance) {
  static const char letters[] = "aAbB eE\351\350\311\346\306\\'`* z\337!";
  std::string line = "#";
  for (unsigned length = (*chance)() % 6; length > 0; length--)
    line += letters[(*chance)() % (sizeof letters - 1)];
  return line + "*x " + std::to_string((*chance)() % 1000);
}

std::vector<std::string> random_lines(size_t nb, std::mt19937 *chance) {
  std::vector<std::string> lines(nb);
  for (std::string &line : lines)
    line = random_line(chance);
  return lines;
}

// Bytes that were taken from a stream.
struct Counted {
  FILE *fp;
  long nb = 0;
};

ssize_t counted_read(void *cookie, char *buffer, size_t size) {
  Counted *counted = static_cast<Counted *>(cookie);
  size_t got = fread(buffer, 1, size, counted->fp);
  counted->nb += (long)got;
  return (ssize_t)got;
}

int counted_seek(void *cookie, off64_t *offset, int whence) {
  Counted *counted = static_cast<Counted *>(cookie);
  int result = fseek(counted->fp, *offset, whence);
  *offset = ftell(counted->fp);
  return result;
}

} // namespace

TEST(SortedLines, AreThoseOfAPlainModel) {
  std::mt19937 chance(82);
  for (int run = 0; run < 150; run++) {
    Lines_file file(random_lines(chance() % 40, &chance));
    std::vector<std::string> expected = file.lines;
    int status = expected.empty() ? 0 : model_sort(&expected, 0, expected.size() - 1);
    ASSERT_EQ(status, 0);
    file.sort();
    ASSERT_EQ(file.sorted(), expected) << run;
    std::vector<std::string> stable = file.lines;
    std::stable_sort(stable.begin(), stable.end(), [](const std::string &a, const std::string &b) {
      return model_compare(a, b) < 0;
    });
    ASSERT_EQ(expected, stable) << run;
  }
}

TEST(SortedLines, OnlyTheRangeAskedForIsSorted) {
  Lines_file file({"#d*", "#c*", "#b*", "#a*"});
  MERGESORT_ABC_FILE(2, 3, file.posit.data(), file.fp.get());
  EXPECT_THAT(file.sorted(), ElementsAre("#d*", "#b*", "#c*", "#a*"));
}

TEST(SortedLines, LineWithoutAStarIsItsOwnKey) {
  Lines_file file({"#b", "#a z", "#a"});
  file.sort();
  EXPECT_THAT(file.sorted(), ElementsAre("#a", "#a z", "#b"));
}

TEST(SortedLines, SingleLineIsNotReadAndMayBeAnything) {
  Lines_file file({"damaged"});
  file.posit[1] = 5000;
  file.sort();
  EXPECT_EQ(file.posit[1], 5000);
  MERGESORT_ABC_FILE(1, 0, file.posit.data(), file.fp.get());
  MERGESORT_ABC_FILE(1, 0, nullptr, nullptr);
}

TEST(SortedLines, UnreadableLineOfTheLeftRunEndsWithThirteen) {
  Lines_file file({"#b*", "#a*"});
  file.posit[1] = 5000;
  ENDS_WITH_STATUS(file.sort(), 13, "MERGE_ABC_FILE error 13 ");
}

TEST(SortedLines, UnreadableLineOfTheRightRunEndsWithFourteen) {
  Lines_file file({"#b*", "#a*"});
  file.posit[2] = 5000;
  ENDS_WITH_STATUS(file.sort(), 14, "MERGE_ABC_FILE error 14 ");
}

TEST(SortedLines, LineWithTheEndMarkOrWithoutSignCannotBeSorted) {
  Lines_file left({"# END_OF_FILE *", "#a*"});
  ENDS_WITH_STATUS(left.sort(), 13, "");
  Lines_file right({"#a*", "a*"});
  ENDS_WITH_STATUS(right.sort(), 14, "");
  Lines_file empty({"", "#a*"});
  ENDS_WITH_STATUS(empty.sort(), 13, "");
}

TEST(SortedLines, OfTwoDamagedLinesTheLeftOneTells) {
  Lines_file file({"a*", "b*"});
  ENDS_WITH_STATUS(file.sort(), 13, "");
}

TEST(SortedLines, TheRestOfARunIsStillReadWhenItWasCompared) {
  // The damaged third line is first met as the head of the right run.
  Lines_file file({"#a*", "#b*", "c*"});
  ENDS_WITH_STATUS(file.sort(), 14, "");
  // The damaged fourth line is met in a run of two.
  Lines_file other({"#a*", "#b*", "#c*", "d*"});
  ENDS_WITH_STATUS(other.sort(), 14, "");
}

TEST(SortedLines, DamagedOnesEndAsReadingAtEachComparisonWould) {
  std::mt19937 chance(13);
  int ends[2] = {0, 0};
  for (int run = 0; run < 20; run++) {
    std::vector<std::string> lines = random_lines(2 + chance() % 12, &chance);
    for (unsigned nb = 1 + chance() % 2; nb > 0; nb--)
      lines[chance() % lines.size()] = chance() % 2 != 0 ? "damaged" : "#END_OF_FILE";
    Lines_file file(lines);
    int status = model_sort(&lines, 0, lines.size() - 1);
    ASSERT_NE(status, 0);
    ends[status - 13]++;
    ENDS_WITH_STATUS(file.sort(), status, "");
  }
  EXPECT_GT(ends[0], 3);
  EXPECT_GT(ends[1], 3);
}

TEST(SortedLines, EachLineIsReadOnce) {
  std::mt19937 chance(1);
  Lines_file file(random_lines(500, &chance));
  Counted counted = {file.fp.get()};
  cookie_io_functions_t functions = {counted_read, nullptr, counted_seek, nullptr};
  Owned_stream fp(fopencookie(&counted, "r", functions));
  ASSERT_NE(fp, nullptr);
  setvbuf(fp.get(), nullptr, _IONBF, 0);
  MERGESORT_ABC_FILE(1, file.nb(), file.posit.data(), fp.get());
  EXPECT_EQ(counted.nb, (long)file.dir.read("lines").size());
}
