// The pictures of the documentation: each is a PNG of the window, and small.
#include "starter/starter_set.h"

namespace {

const fs::path pictures = fs::path(MERTU_SOURCE) / "docs/pictures";

// The number of four bytes at a place of a PNG file, which stores the highest byte first.
int number_at(const std::string &bytes, size_t place) {
  int number = 0;
  for (size_t i = place; i < place + 4; i++)
    number = number * 256 + static_cast<unsigned char>(bytes[i]);
  return number;
}

} // namespace

TEST(Pictures, AreSmallPngFilesOfTheWindowInOneOfTwoSizes) {
  int nb = 0;
  for (const auto &file : fs::directory_iterator(pictures)) {
    std::string bytes = bytes_of(file.path());
    ASSERT_GT(bytes.size(), 24u) << file.path();
    EXPECT_EQ(bytes.substr(0, 8), "\211PNG\r\n\032\n") << file.path();
    EXPECT_LE(bytes.size(), 40960u) << file.path();
    int width = number_at(bytes, 16);
    int height = number_at(bytes, 20);
    EXPECT_TRUE((width == 1100 && height == 800) || (width == 800 && height == 500))
        << file.path() << ' ' << width << ' ' << height;
    nb++;
  }
  EXPECT_GE(nb, 12);
}
