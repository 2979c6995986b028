// The registry: a tree of keys with typed values, shaped like the system calls that the suite uses.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// The predefined roots, with their handle values.
enum class RegistryRoot : std::uint32_t {
  None = 0,
  ClassesRoot = 0x80000000,
  CurrentUser = 0x80000001,
  LocalMachine = 0x80000002,
  Users = 0x80000003,
};

/// Results of registry operations, in the numbering of the Windows calls.
using RegistryResult = std::int32_t;
namespace registry {
inline constexpr RegistryResult kSuccess = 0;
inline constexpr RegistryResult kNotFound = 2;
inline constexpr RegistryResult kAccessDenied = 5;
inline constexpr RegistryResult kWriteFault = 29;        ///< the store could not be written or read
inline constexpr RegistryResult kInvalidParameter = 87;  ///< a name that cannot be stored
inline constexpr RegistryResult kNoMoreItems = 259;

inline constexpr std::uint32_t kNone = 0;
inline constexpr std::uint32_t kSz = 1;
inline constexpr std::uint32_t kExpandSz = 2;
inline constexpr std::uint32_t kBinary = 3;
inline constexpr std::uint32_t kDword = 4;
inline constexpr std::uint32_t kDwordBigEndian = 5;
inline constexpr std::uint32_t kMultiSz = 7;
}  // namespace registry

/// A value as it is stored. Texts (kSz, kExpandSz) are UTF-8 bytes without a closing NUL; kMultiSz
/// has a NUL behind each part; kDword is four bytes, lowest first.
struct RegistryValue {
  std::uint32_t type = registry::kNone;
  std::string data;

  [[nodiscard]] static RegistryValue Text(std::string_view text) {
    return {registry::kSz, std::string(text)};
  }
  [[nodiscard]] static RegistryValue Dword(std::uint32_t number) {
    RegistryValue value{registry::kDword, std::string(4, '\0')};
    for (std::size_t i = 0; i < 4; ++i) {
      value.data[i] = static_cast<char>((number >> (8 * i)) & 0xFFU);
    }
    return value;
  }
  /// The number of a kDword; 0 if the data is shorter than four bytes.
  [[nodiscard]] std::uint32_t Number() const {
    if (data.size() < 4) return 0;
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
      number = (number << 8U) | static_cast<unsigned char>(data[i]);
    }
    return number;
  }

  friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

/// An open key; destroying it closes it. A key deleted meanwhile gives kNotFound to everything.
/// Names of keys and values are matched without regard to case and keep the case of their first
/// writing. The empty value name is the key's default value.
class RegistryKey {
 public:
  virtual ~RegistryKey() = default;

  [[nodiscard]] virtual RegistryResult QueryValue(std::string_view name, RegistryValue& value) = 0;
  /// Durable when it returns kSuccess: the store holds either the old value or the new one, also
  /// when the process is killed in between.
  [[nodiscard]] virtual RegistryResult SetValue(std::string_view name,
                                                const RegistryValue& value) = 0;
  [[nodiscard]] virtual RegistryResult DeleteValue(std::string_view name) = 0;

  /// Value and sub-key number `index` from 0, in the order in which they were first written; a
  /// value that is written again keeps its place. kNoMoreItems at the end.
  [[nodiscard]] virtual RegistryResult EnumValue(std::uint32_t index, std::string& name,
                                                 RegistryValue& value) = 0;
  [[nodiscard]] virtual RegistryResult EnumKey(std::uint32_t index, std::string& name) = 0;
};

/// Paths are written with backslashes, without one at either end; the empty path is the root
/// itself. HKEY_USERS\.DEFAULT and HKEY_CURRENT_USER are one place.
class Registry {
 public:
  virtual ~Registry() = default;

  /// On failure `key` is null and the result tells why: kNotFound, kAccessDenied, kWriteFault.
  [[nodiscard]] virtual RegistryResult OpenKey(RegistryRoot root, std::string_view path,
                                               std::unique_ptr<RegistryKey>& key) = 0;
  /// Opens the key, and makes it and the keys above it where they are missing.
  [[nodiscard]] virtual RegistryResult CreateKey(RegistryRoot root, std::string_view path,
                                                 std::unique_ptr<RegistryKey>& key) = 0;
  /// Removes the key with everything below it. kNotFound if there is none.
  [[nodiscard]] virtual RegistryResult DeleteTree(RegistryRoot root, std::string_view path) = 0;
};

}  // namespace tallowin::platform
