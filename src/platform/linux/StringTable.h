// The string table of a PE file: bundles of sixteen texts.
#pragma once

#include <array>

#include "platform/linux/PeResources.h"

namespace tallowin::platform::linux_host {

class StringTable {
 public:
  explicit StringTable(PeResources& resources) : resources_(resources) {}

  /// As platform::ResourceModule::LoadString.
  [[nodiscard]] std::string Load(std::int32_t id, std::size_t bufferSize);

 private:
  void ReadBundle(std::uint32_t number);

  PeResources& resources_;
  std::uint32_t number_ = 0;              ///< of the bundle read last; no bundle has 0
  std::array<FileRange, 16> texts_ = {};  ///< where its texts lie
};

}  // namespace tallowin::platform::linux_host
