// The resources of a PE file: a tree of types, names and languages with the data at its leaves.
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/ResourceModules.h"
#include "platform/linux/PeImage.h"

namespace tallowin::platform::linux_host {

/// The tree is never followed deeper than it has levels: entries that lead back up lead nowhere. A
/// number that a resource or a type has had before is passed over.
class PeResources {
 public:
  /// Null where this is no PE file. `userLanguage` is a language number of Windows.
  [[nodiscard]] static std::unique_ptr<PeResources> Open(std::unique_ptr<ByteSource> bytes,
                                                         std::uint16_t userLanguage);

  /// In the order of the file, each once.
  [[nodiscard]] const std::vector<ResourceId>& Types() const { return types_.ids; }
  [[nodiscard]] std::vector<ResourceId> Names(const ResourceId& type);

  /// The data of a resource in the language that suits the user best. Nothing where there is none.
  [[nodiscard]] std::optional<FileRange> Find(std::uint32_t type, std::uint32_t name);

  [[nodiscard]] ByteSource& Bytes() { return *bytes_; }

 private:
  /// A directory: what is in it, and where each leads.
  struct Directory {
    std::vector<ResourceId> ids;
    std::vector<std::uint32_t> targets;
    std::unordered_map<std::uint32_t, std::uint32_t> targetOfNumber;
  };
  PeResources(std::unique_ptr<ByteSource> bytes, PeImage image, std::uint16_t userLanguage);

  struct Entry {
    std::uint32_t id;
    std::uint32_t target;
  };
  bool ReadInTree(std::uint64_t offset, std::span<std::uint8_t> to);
  std::uint32_t EntryCount(std::uint32_t target);
  std::optional<Entry> EntryAt(std::uint64_t offset);
  Directory ReadDirectory(std::uint32_t target);
  std::optional<ResourceId> ReadName(std::uint32_t offset, std::uint64_t& budget);
  const Directory& NamesOf(std::uint32_t type);
  std::optional<std::uint32_t> ChooseLanguage(std::uint32_t target);
  std::optional<FileRange> DataOf(std::uint32_t nameTarget);

  std::unique_ptr<ByteSource> bytes_;
  PeImage image_;
  std::uint16_t userLanguage_;
  FileRange tree_;
  Directory types_;
  std::unordered_map<std::uint32_t, Directory> names_;  ///< by the type's number
};

}  // namespace tallowin::platform::linux_host
