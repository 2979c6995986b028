// One open key of the registry: what is in it, as text, and how to change it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "forms/Questions.h"
#include "platform/Registry.h"
#include "trojansentry/EasyRegVariant.h"

namespace tallowin::trojansentry {

/// What needs an open key does nothing without one and gives false or nothing. No failure of the
/// registry is told but by false, by nothing or by a text in place of the value.
class CReadWriteEasyReg {
 public:
  CReadWriteEasyReg(platform::Registry& registry, forms::Questions& questions)
      : registry_(registry), questions_(questions) {}

  /// An array of names in their order in the key, the first in slot 0; one that is not there where
  /// the key has no sub-keys.
  [[nodiscard]] EasyRegVariant GetAllSubDirectories() const;
  bool CreateDirectory(std::string_view subKeyName);
  bool DeleteDirectory(std::string_view subKeyName);

  /// An array of names in their order in the key. Slot 0 is empty, so that the upper bound is the
  /// number of names; an array that is not there where the key has no values. The first value whose
  /// name or data is longer than its buffer, 240 bytes with the closing NUL, ends the list.
  [[nodiscard]] EasyRegVariant GetAllValues() const;

  /// Writes a kSz, a kExpandSz or a kMultiSz, of which `valueData` is the first part and
  /// `multiStringData`, one value or an array, the others; empty ones are left out. A kDword
  /// becomes the first four characters of the number's decimal text and not the number. Any other
  /// type is refused with a message box.
  bool CreateValue(std::string_view valueName, const core::Variant& valueData,
                   std::uint32_t valueType, const EasyRegVariant& multiStringData = {});
  bool DeleteValue(std::string_view valueName);

  /// Nothing if there is no such value. Texts come as they are; a kMultiSz comes as an array of its
  /// parts, the empty part at the end of the list included. Binary data and numbers come as pairs
  /// of hexadecimal digits, each followed by a blank, in the order of storage, or with
  /// `returnBinStr` as the bytes themselves. Failures and types without a text come as texts that
  /// tell so.
  [[nodiscard]] EasyRegVariant GetValue(std::string_view valueName, bool returnBinStr) const;

  [[nodiscard]] platform::RegistryRoot RegistryRootKey() const { return rootKey_; }
  [[nodiscard]] const std::string& SubDirectory() const { return subDirectory_; }

  /// Closes the key that is open and opens another, always for full access. Root key None only
  /// makes the object count as closed: the key behind it stays open.
  bool OpenRegistry(platform::RegistryRoot rootKey, std::string_view subDirectory);

  /// One level up. Throws RunTimeError 5 where there is no level above.
  void OneBackOnKey();

  /// False if there was no open key.
  bool CloseRegistry();

  /// The elements in ascending order. What is no array comes back as it is; an array that is not
  /// there comes back as nothing.
  [[nodiscard]] static EasyRegVariant SortArrayAscending(const EasyRegVariant& valueArray);

 private:
  [[nodiscard]] std::string PathOf(std::string_view subKeyName) const;

  platform::Registry& registry_;
  forms::Questions& questions_;
  platform::RegistryRoot rootKey_ = platform::RegistryRoot::None;
  std::string subDirectory_;
  std::unique_ptr<platform::RegistryKey> key_;
  bool open_ = false;
};

}  // namespace tallowin::trojansentry
