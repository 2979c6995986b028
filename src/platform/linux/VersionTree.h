// The tree inside a version resource.
#pragma once

#include <vector>

#include "platform/VersionInfo.h"
#include "platform/linux/PeResources.h"

namespace tallowin::platform::linux_host {

/// Lengths in it are of 16 bits, so it is never larger than 64 KB.
class VersionTree : public VersionBlock {
 public:
  /// Null where there is no version resource.
  [[nodiscard]] static std::unique_ptr<VersionTree> Read(PeResources& resources);

  [[nodiscard]] std::optional<std::string> VerQueryValue(std::string_view path) const override;

 private:
  /// A node, as the places of its parts; none reaches beyond the node or the one around it.
  struct Node {
    std::string key;
    std::size_t value = 0;
    std::size_t valueEnd = 0;  ///< end of the node where the value's length is a lie
    std::size_t end = 0;
  };
  explicit VersionTree(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

  [[nodiscard]] std::optional<Node> NodeAt(std::size_t offset, std::size_t end) const;
  [[nodiscard]] std::optional<Node> Child(const Node& parent, std::string_view key) const;

  std::vector<std::uint8_t> bytes_;
};

}  // namespace tallowin::platform::linux_host
