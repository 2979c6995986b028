// Carries out the statements of a registry file one after the other.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Registry.h"
#include "platform/linux/RegistryFile.h"
#include "platform/linux/RegistryFileData.h"
#include "platform/linux/RegistryFileLines.h"

namespace tallowin::platform::linux_host {

class RegistryFileReader {
 public:
  RegistryFileReader(std::string_view content, Registry& registry)
      : lines_(content), registry_(registry) {}

  [[nodiscard]] RegistryFileResult Run();

 private:
  // Each of these gives false after a fault, with the reason in reason_.
  bool ReadHeader();
  bool ReadStatement(std::string_view text);
  bool ReadKey(std::string_view text);
  bool DeleteKey(const RegistryLocation& location);
  bool ReadValue(std::string_view text);
  bool ReadQuoted(std::string_view& text, std::string& content);
  bool ReadData(const std::string& name, std::string_view text);
  bool ReadDword(std::string_view digits, RegistryValue& value);
  bool ReadHexType(std::string_view& text, std::uint32_t& type);
  bool ReadHex(std::string_view text, std::string& bytes);
  bool ReadHexLine(std::string_view text, std::string& bytes);
  bool NoMore(std::string_view text);
  bool Done(RegistryResult result);
  bool Fail(const char* reason);

  RegistryFileLines lines_;
  Registry& registry_;
  RegistryFileVersion version_ = RegistryFileVersion::Five;
  std::unique_ptr<RegistryKey> key_;
  std::string reason_;
};

}  // namespace tallowin::platform::linux_host
