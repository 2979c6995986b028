#include "analysis/CRC32.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "analysis/HexText.h"

namespace tallowin::analysis {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr std::size_t kSlices = 16;
using Tables = std::array<std::array<std::uint32_t, 256>, kSlices>;

/// Table 0 is the standard one. Table n is what a byte has become after n zero bytes behind it, so
/// that the bytes of a whole block can be looked up side by side instead of one after the other.
constexpr Tables MakeTables() {
  Tables tables = {};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1U) ^ ((value & 1U) * kPolynomial);
    tables[0][byte] = value;
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[slice - 1][byte];
      tables[slice][byte] = (before >> 8U) ^ tables[0][before & 0xFFU];
    }
  }
  return tables;
}
constexpr Tables kTables = MakeTables();
static_assert(kTables[0][1] == 0x77073096 && kTables[0][2] == 0xEE0E612C &&
              kTables[0][3] == 0x990951BA && kTables[0][128] == kPolynomial);

/// Four bytes as a number, the first being the lowest, on machines of either byte order.
[[gnu::always_inline]] inline std::uint32_t Load(const char* bytes) {
  std::array<unsigned char, 4> b = {};
  std::memcpy(b.data(), bytes, b.size());
  return static_cast<std::uint32_t>(b[0]) | static_cast<std::uint32_t>(b[1]) << 8U |
         static_cast<std::uint32_t>(b[2]) << 16U | static_cast<std::uint32_t>(b[3]) << 24U;
}

/// What the four bytes contribute, the last of them `behind` bytes in front of the block's end.
template <std::size_t behind>
[[gnu::always_inline]] inline std::uint32_t LookUp(std::uint32_t word) {
  return kTables[behind + 3][word & 0xFFU] ^ kTables[behind + 2][(word >> 8U) & 0xFFU] ^
         kTables[behind + 1][(word >> 16U) & 0xFFU] ^ kTables[behind][word >> 24U];
}

[[gnu::always_inline]] inline std::uint32_t AddBlock(std::uint32_t crc, const char* block) {
  return LookUp<4>(Load(block + 8)) ^ LookUp<0>(Load(block + 12)) ^ LookUp<8>(Load(block + 4)) ^
         LookUp<12>(Load(block) ^ crc);
}

// Each block has to wait for the one before it. So long texts are taken as two lanes side by side,
// which need not wait for each other, and the lanes' remainders are put together.
constexpr std::size_t kLane = 256;
constexpr std::size_t kStretch = 2 * kLane;

constexpr std::uint32_t BehindZeros(std::uint32_t crc, std::size_t zeros) {
  for (; zeros > 0; --zeros) crc = (crc >> 8U) ^ kTables[0][crc & 0xFFU];
  return crc;
}

/// Table n is what the n-th byte of a remainder has become a lane later.
constexpr std::array<std::array<std::uint32_t, 256>, 4> MakeLaneTables() {
  std::array<std::array<std::uint32_t, 256>, 4> tables = {};
  for (std::uint32_t n = 0; n < 4; ++n) {
    for (std::uint32_t bit = 0; bit < 8; ++bit) {
      const std::uint32_t later = BehindZeros(1U << (8 * n + bit), kLane);
      for (std::uint32_t byte = 0; byte < 256; ++byte) {
        if ((byte >> bit & 1U) != 0) tables[n][byte] ^= later;
      }
    }
  }
  return tables;
}
constexpr auto kLaneTables = MakeLaneTables();

std::uint32_t ALaneLater(std::uint32_t crc) {
  return kLaneTables[0][crc & 0xFFU] ^ kLaneTables[1][(crc >> 8U) & 0xFFU] ^
         kLaneTables[2][(crc >> 16U) & 0xFFU] ^ kLaneTables[3][crc >> 24U];
}

std::uint32_t AddStretch(std::uint32_t crc, const char* bytes) {
  std::uint32_t second = 0;
  for (const char* end = bytes + kLane; bytes != end; bytes += kSlices) {
    crc = AddBlock(crc, bytes);
    second = AddBlock(second, bytes + kLane);
  }
  return ALaneLater(crc) ^ second;
}

}  // namespace

std::int32_t Crc32OfBytes(std::string_view bytes) {
  if (bytes.empty()) return 0;
  std::uint32_t crc = 0xFFFFFFFF;
  for (; bytes.size() >= kStretch; bytes.remove_prefix(kStretch)) {
    crc = AddStretch(crc, bytes.data());
  }
  for (; bytes.size() >= kSlices; bytes.remove_prefix(kSlices)) crc = AddBlock(crc, bytes.data());
  for (const char c : bytes) {
    crc = (crc >> 8U) ^ kTables[0][(crc ^ static_cast<unsigned char>(c)) & 0xFFU];
  }
  return std::bit_cast<std::int32_t>(~crc);
}

std::string Crc32Text(std::int32_t crc) { return HexText(std::bit_cast<std::uint32_t>(crc)); }

}  // namespace tallowin::analysis
