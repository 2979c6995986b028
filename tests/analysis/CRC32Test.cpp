#include "analysis/CRC32.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>

namespace tallowin::analysis {
namespace {

TEST(CRC32, PublishedCheckValues) {
  EXPECT_EQ(Crc32Text(Crc32OfBytes("123456789")), "CBF43926");
  EXPECT_EQ(Crc32Text(Crc32OfBytes("The quick brown fox jumps over the lazy dog")), "414FA339");
  EXPECT_EQ(Crc32Text(Crc32OfBytes(std::string(32, '\0'))), "190A55AD");
  EXPECT_EQ(Crc32OfBytes("123456789"), std::bit_cast<std::int32_t>(0xCBF43926U));
  EXPECT_EQ(Crc32OfBytes(""), 0);
  EXPECT_EQ(Crc32Text(0), "0");
  EXPECT_EQ(Crc32Text(0x0ABCDE01), "ABCDE01");
}

/// The definition, bit by bit.
std::uint32_t PlainCrc(std::string_view bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) * 0xEDB88320U);
  }
  return ~crc;
}

TEST(CRC32, EqualsItsDefinitionAtEveryLengthAndAlignment) {
  std::mt19937 random(7);
  std::string bytes(3000, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  const std::string_view all = bytes;
  for (std::size_t length = 1; length < all.size(); length += length < 600 ? 1 : 97) {
    const std::string_view part = all.substr(length % 17, length);
    ASSERT_EQ(std::bit_cast<std::uint32_t>(Crc32OfBytes(part)), PlainCrc(part)) << length;
  }
}

}  // namespace
}  // namespace tallowin::analysis
