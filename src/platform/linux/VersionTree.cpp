#include "platform/linux/VersionTree.h"

#include <algorithm>

#include "platform/linux/Text.h"
#include "platform/linux/Utf16.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::uint32_t kName = 1;  ///< what the version resource of a file is called
constexpr std::size_t kLargest = 0xFFFF;
constexpr std::size_t kHeader = 6;

std::size_t Aligned(std::size_t offset) { return (offset + 3) / 4 * 4; }

}  // namespace

std::unique_ptr<VersionTree> VersionTree::Read(PeResources& resources) {
  const auto data = resources.Find(resource_type::kVersion, kName);
  if (!data || data->size == 0) return nullptr;
  std::vector<std::uint8_t> bytes(std::min<std::uint64_t>(data->size, kLargest));
  if (!resources.Bytes().Read(data->offset, bytes)) return nullptr;
  return std::unique_ptr<VersionTree>(new VersionTree(std::move(bytes)));
}

/// Each node starts with its length, the length of its value (in characters where that is text) and
/// the kind of the value, then its key with a NUL behind it, the value and the children.
std::optional<VersionTree::Node> VersionTree::NodeAt(std::size_t offset, std::size_t end) const {
  if (offset > end || end - offset < kHeader) return std::nullopt;
  const std::size_t length = Little16(bytes_, offset);
  if (length < kHeader) return std::nullopt;
  Node node;
  node.end = std::min(end, offset + length);
  const std::size_t unit = Little16(bytes_, offset + 4) == 1 ? 2 : 1;
  const std::span rest = std::span(bytes_).subspan(offset + kHeader, node.end - offset - kHeader);
  const std::u16string units = Utf16Units(rest);
  const std::size_t keyLength = std::min(units.find(u'\0'), units.size());
  node.key = LowerAscii(Utf8FromUtf16(units.substr(0, keyLength)));
  node.value = std::min(node.end, Aligned(offset + kHeader + 2 * (keyLength + 1)));
  node.valueEnd = std::min(node.end, node.value + unit * Little16(bytes_, offset + 2));
  return node;
}

std::optional<VersionTree::Node> VersionTree::Child(const Node& parent,
                                                    std::string_view key) const {
  for (std::size_t at = Aligned(parent.valueEnd); at < parent.end;) {
    auto child = NodeAt(at, parent.end);
    if (!child) return std::nullopt;
    if (child->key == key) return child;
    at = Aligned(child->end);
  }
  return std::nullopt;
}

std::optional<std::string> VersionTree::VerQueryValue(std::string_view path) const {
  auto node = NodeAt(0, bytes_.size());
  const std::string names = LowerAscii(path);
  for (const std::string_view name : Parts(names, '\\')) {
    if (node) node = Child(*node, name);
  }
  if (!node) return std::nullopt;
  const auto bytes = std::span(bytes_);
  const auto value = bytes.subspan(node->value, node->valueEnd - node->value);
  if (!names.starts_with("\\stringfileinfo\\")) return std::string(value.begin(), value.end());
  if (value.empty()) return std::string();
  // Compilers have been careless with the kind and the length of a text. Its NUL ends it.
  const std::u16string units = Utf16Units(bytes.subspan(node->value, node->end - node->value));
  return Utf8FromUtf16(units.substr(0, units.find(u'\0')));
}

}  // namespace tallowin::platform::linux_host
