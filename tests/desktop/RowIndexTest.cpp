#include "desktop/RowIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tallowin::desktop {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> Rows(const RowIndex& index, const std::string& text) {
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < index.Count(); ++row) {
    rows.emplace_back(index.Row(text, row));
  }
  return rows;
}

TEST(RowIndexTest, KnowsAllLineEndsHoweverTheTextArrives) {
  const std::string text = "a\r\nb\nc\rd\r\r\n\ne\r\n";
  RowIndex atOnce;
  atOnce.ExtendTo(text);
  EXPECT_THAT(Rows(atOnce, text), ElementsAre("a", "b", "c", "d", "", "", "e", ""));

  RowIndex byteByByte;
  for (std::size_t size = 0; size <= text.size(); ++size) {
    byteByByte.ExtendTo(std::string_view(text).substr(0, size));
  }
  EXPECT_EQ(Rows(byteByByte, text), Rows(atOnce, text));
}

TEST(RowIndexTest, CutsLongLinesBetweenCharacters) {
  const std::string full(RowIndex::MaxRowBytes, 'x');
  const std::string split = std::string(RowIndex::MaxRowBytes - 1, 'y') + "\xc3\xa9";
  const std::string noise(RowIndex::MaxRowBytes + 1, '\x80');
  const std::string text = full + "\r\n" + split + "\n" + noise;
  RowIndex index;
  index.ExtendTo(text);
  const std::string fullOfNoise = noise.substr(1);
  EXPECT_THAT(Rows(index, text), ElementsAre(full, split.substr(0, RowIndex::MaxRowBytes - 1),
                                             "\xc3\xa9", fullOfNoise, "\x80"));
  EXPECT_TRUE(index.HasLineEnd(text, 0));
  EXPECT_FALSE(index.HasLineEnd(text, 1));
  EXPECT_EQ(index.RowAt(0), 0U);
  EXPECT_EQ(index.RowAt(full.size() + 2), 1U);
  EXPECT_EQ(index.RowAt(text.size()), 4U);
}

}  // namespace
}  // namespace tallowin::desktop
