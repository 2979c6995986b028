#include "trojansentry/CReadWriteEasyReg.h"

#include <utility>

#include "platform/RunTimeError.h"
#include "trojansentry/RegistryValueText.h"

namespace tallowin::trojansentry {

namespace {

using core::Variant;
using platform::RegistryRoot;
using platform::RegistryValue;
namespace registry = platform::registry;

constexpr std::size_t kValueBuffers = 240;
constexpr std::size_t kKeyBuffer = 256;
constexpr int kInvalidProcedureCall = 5;

bool FitsWithNul(std::string_view name, std::size_t buffer) { return name.size() < buffer; }

std::string CutAtNul(const std::string& text) { return text.substr(0, text.find('\0')); }

/// Length 4 of the decimal text, and not of the number.
RegistryValue TextAsDword(const Variant& number) {
  std::string digits = core::ToText(number);
  digits.resize(4, '\0');
  return {registry::kDword, std::move(digits)};
}

void AddPart(std::vector<std::string>& parts, const Variant& part) {
  std::string text = core::ToText(part);
  if (!text.empty() && text != std::string(1, '\0')) parts.push_back(std::move(text));
}

RegistryValue TextsAsList(const Variant& first, const EasyRegVariant& others) {
  std::vector<std::string> parts = {core::ToText(first)};
  if (const auto* array = std::get_if<VariantArray>(&others)) {
    for (const Variant& part : array->value_or(std::vector<Variant>())) AddPart(parts, part);
  } else {
    AddPart(parts, ToText(others));
  }
  return ListOf(parts);
}

std::optional<RegistryValue> Stored(const Variant& data, std::uint32_t type,
                                    const EasyRegVariant& others) {
  switch (type) {
    case registry::kSz:
    case registry::kExpandSz:
      return RegistryValue{type, core::ToText(data)};
    case registry::kDword:
      return TextAsDword(data);
    case registry::kMultiSz:
      return TextsAsList(data, others);
    default:
      return std::nullopt;
  }
}

}  // namespace

EasyRegVariant CReadWriteEasyReg::GetAllSubDirectories() const {
  if (!open_) return {};
  VariantArray names;
  std::string name;
  for (std::uint32_t index = 0; key_->EnumKey(index, name) == registry::kSuccess; ++index) {
    if (!FitsWithNul(name, kKeyBuffer)) break;
    if (!names) names.emplace();
    names->emplace_back(CutAtNul(name));
  }
  return names;
}

std::string CReadWriteEasyReg::PathOf(std::string_view subKeyName) const {
  if (subDirectory_.empty()) return std::string(subKeyName);
  return subDirectory_ + "\\" + std::string(subKeyName);
}

bool CReadWriteEasyReg::CreateDirectory(std::string_view subKeyName) {
  if (!open_) return false;
  std::unique_ptr<platform::RegistryKey> made;
  return registry_.CreateKey(rootKey_, PathOf(subKeyName), made) == registry::kSuccess;
}

bool CReadWriteEasyReg::DeleteDirectory(std::string_view subKeyName) {
  // Without a name the path would be that of the open key itself.
  if (!open_ || subKeyName.empty()) return false;
  return registry_.DeleteTree(rootKey_, PathOf(subKeyName)) == registry::kSuccess;
}

EasyRegVariant CReadWriteEasyReg::GetAllValues() const {
  if (!open_) return {};
  VariantArray names;
  std::string name;
  RegistryValue value;
  for (std::uint32_t index = 0; key_->EnumValue(index, name, value) == registry::kSuccess;
       ++index) {
    if (!FitsWithNul(name, kValueBuffers) || SizeInBuffer(value) > kValueBuffers) break;
    if (!names) names.emplace(1);
    names->emplace_back(CutAtNul(name));
  }
  return names;
}

bool CReadWriteEasyReg::CreateValue(std::string_view valueName, const Variant& valueData,
                                    std::uint32_t valueType,
                                    const EasyRegVariant& multiStringData) {
  if (!open_) return false;
  const auto value = Stored(valueData, valueType, multiStringData);
  if (!value) {
    questions_.MsgBox("Unable to process that Type of data.", forms::MessageBoxStyle::Plain,
                      "Tallowin");
    return false;
  }
  return key_->SetValue(valueName, *value) == registry::kSuccess;
}

bool CReadWriteEasyReg::DeleteValue(std::string_view valueName) {
  return open_ && key_->DeleteValue(valueName) == registry::kSuccess;
}

EasyRegVariant CReadWriteEasyReg::GetValue(std::string_view valueName, bool returnBinStr) const {
  if (!open_) return {};
  RegistryValue value;
  const platform::RegistryResult result = key_->QueryValue(valueName, value);
  if (result == registry::kSuccess) return ValueText(value, returnBinStr);
  if (result == registry::kNotFound) return {};
  if (result == registry::kAccessDenied) return "Access Denied";
  return "RegQueryValueEx Returned : (" + std::to_string(result) + ")";
}

bool CReadWriteEasyReg::OpenRegistry(RegistryRoot rootKey, std::string_view subDirectory) {
  if (rootKey == RegistryRoot::None) {
    open_ = false;
    return false;
  }
  std::string path(subDirectory);  // it may be our own
  rootKey_ = rootKey;
  subDirectory_ = std::move(path);
  if (open_) CloseRegistry();
  open_ = registry_.OpenKey(rootKey_, subDirectory_, key_) == registry::kSuccess;
  return open_;
}

void CReadWriteEasyReg::OneBackOnKey() {
  if (!open_) return;
  const std::size_t last = subDirectory_.rfind('\\');
  if (last == std::string::npos) {
    throw platform::RunTimeError(kInvalidProcedureCall, "Invalid procedure call or argument");
  }
  subDirectory_.resize(last);
  CloseRegistry();
  OpenRegistry(rootKey_, subDirectory_);
}

bool CReadWriteEasyReg::CloseRegistry() {
  if (key_ == nullptr) return false;
  key_.reset();
  open_ = false;
  return true;
}

EasyRegVariant CReadWriteEasyReg::SortArrayAscending(const EasyRegVariant& valueArray) {
  const auto* array = std::get_if<VariantArray>(&valueArray);
  if (array == nullptr) return valueArray;
  if (!*array) return {};
  std::vector<Variant> sorted = **array;
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    Variant element = std::move(sorted[i]);
    std::size_t slot = i;
    for (; slot > 0 && !IsLess(sorted[slot - 1], element); --slot) {
      sorted[slot] = std::move(sorted[slot - 1]);
    }
    sorted[slot] = std::move(element);
  }
  return VariantArray(std::move(sorted));
}

}  // namespace tallowin::trojansentry
