// The checksum by which files are compared.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallowin::analysis {

/// The common CRC-32 (IEEE 802.3, reflected, polynomial 0xEDB88320) as a signed number. 0 for no
/// bytes, which is also what a file that could not be found has.
[[nodiscard]] std::int32_t Crc32OfBytes(std::string_view bytes);

/// The text in which checksums are compared: hexadecimal, upper case, no leading zeros.
[[nodiscard]] std::string Crc32Text(std::int32_t crc);

}  // namespace tallowin::analysis
