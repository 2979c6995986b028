#include "platform/linux/PeResources.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "platform/linux/Text.h"
#include "platform/linux/Utf16.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kDirectoryHeader = 16;
constexpr std::size_t kEntry = 8;
/// In an entry's first number: it is the place of a name. In its second: it leads to a directory.
constexpr std::uint32_t kFlag = 0x80000000;
constexpr std::uint32_t kNameAddresses = 0x10000;

/// UTF-16 units in all names of one directory. Resource compilers allow 256 for one name.
constexpr std::uint64_t kMostNameUnits = std::uint64_t{1} << 20U;

constexpr std::uint16_t kAmericanEnglish = 0x409;
constexpr std::uint16_t kDefaultDialect = 0x400;
constexpr std::uint16_t kPrimaryLanguage = 0x3FF;

}  // namespace

std::unique_ptr<PeResources> PeResources::Open(std::unique_ptr<ByteSource> bytes,
                                               std::uint16_t userLanguage) {
  auto image = PeImage::Parse(*bytes);
  if (!image) return nullptr;
  return std::unique_ptr<PeResources>(
      new PeResources(std::move(bytes), *std::move(image), userLanguage));
}

PeResources::PeResources(std::unique_ptr<ByteSource> bytes, PeImage image,
                         std::uint16_t userLanguage)
    : bytes_(std::move(bytes)), image_(std::move(image)), userLanguage_(userLanguage) {
  tree_ = image_.Resources().value_or(FileRange{});
  types_ = ReadDirectory(kFlag);
}

/// Names may lie on top of each other, and a file may have holes that take no room: so neither the
/// size of the file nor that of the tree bounds what they take together. Those behind the budget
/// are passed over.
std::optional<ResourceId> PeResources::ReadName(std::uint32_t offset, std::uint64_t& budget) {
  std::array<std::uint8_t, 2> prefix = {};
  if (!ReadInTree(offset, prefix)) return std::nullopt;
  const std::uint64_t length = Little16(prefix);
  const std::uint64_t start = offset + std::uint64_t{2};
  if (length > budget || start + 2 * length > tree_.size) return std::nullopt;
  budget -= length;
  std::vector<std::uint8_t> bytes(2 * length);
  if (!ReadInTree(start, bytes)) return std::nullopt;
  const std::u16string units = Utf16Units(bytes);
  return ResourceId{kNameAddresses + offset, Utf8FromUtf16(units.substr(0, units.find(u'\0')))};
}

bool PeResources::ReadInTree(std::uint64_t offset, std::span<std::uint8_t> to) {
  return offset + to.size() <= tree_.size && bytes_->Read(tree_.offset + offset, to);
}

/// 0 for a target that is no directory.
std::uint32_t PeResources::EntryCount(std::uint32_t target) {
  std::array<std::uint8_t, kDirectoryHeader> header = {};
  if ((target & kFlag) == 0 || !ReadInTree(target & ~kFlag, header)) return 0;
  return std::uint32_t{Little16(header, 12)} + Little16(header, 14);
}

std::optional<PeResources::Entry> PeResources::EntryAt(std::uint64_t offset) {
  std::array<std::uint8_t, kEntry> bytes = {};
  if (!ReadInTree(offset, bytes)) return std::nullopt;
  return Entry{Little32(bytes), Little32(bytes, 4)};
}

PeResources::Directory PeResources::ReadDirectory(std::uint32_t target) {
  Directory directory;
  std::unordered_set<std::string> known;
  std::uint64_t nameBudget = kMostNameUnits;
  std::uint64_t offset = (target & ~kFlag) + kDirectoryHeader;
  for (std::uint32_t left = EntryCount(target); left > 0; --left, offset += kEntry) {
    const auto entry = EntryAt(offset);
    if (!entry) break;
    if ((entry->id & kFlag) == 0) {
      const std::uint32_t number = entry->id & 0xFFFFU;
      if (!directory.targetOfNumber.try_emplace(number, entry->target).second) continue;
      directory.ids.push_back({.value = number});
    } else {
      auto name = ReadName(entry->id & ~kFlag, nameBudget);
      if (!name || !known.insert(name->name).second) continue;
      directory.ids.push_back(*std::move(name));
    }
    directory.targets.push_back(entry->target);
  }
  return directory;
}

const PeResources::Directory& PeResources::NamesOf(std::uint32_t type) {
  const auto known = names_.find(type);
  if (known != names_.end()) return known->second;
  const auto found = types_.targetOfNumber.find(type);
  const std::uint32_t target = found == types_.targetOfNumber.end() ? 0 : found->second;
  return names_.emplace(type, ReadDirectory(target)).first->second;
}

std::vector<ResourceId> PeResources::Names(const ResourceId& type) {
  if (!type.IsName()) return NamesOf(type.value).ids;
  const std::string name = LowerAscii(type.name);
  for (std::size_t i = 0; i < types_.ids.size(); ++i) {
    if (types_.ids[i].IsName() && LowerAscii(types_.ids[i].name) == name) {
      return ReadDirectory(types_.targets[i]).ids;
    }
  }
  return {};
}

/// What is read for each single resource has to stay small, as one directory may be the languages
/// of all of them.
std::optional<std::uint32_t> PeResources::ChooseLanguage(std::uint32_t target) {
  constexpr int kMostLanguages = 512;
  const auto primary = static_cast<std::uint16_t>(userLanguage_ & kPrimaryLanguage);
  const std::array<std::uint32_t, 5> wanted = {
      0, userLanguage_, primary, std::uint32_t{kDefaultDialect} | primary, kAmericanEnglish};
  const std::uint64_t offset = target & ~kFlag;
  std::optional<std::uint32_t> chosen;
  std::size_t rank = wanted.size();
  const auto count = EntryCount(target);
  for (std::uint32_t i = 0; i < std::min<std::uint32_t>(count, kMostLanguages); ++i) {
    const auto entry = EntryAt(offset + kDirectoryHeader + kEntry * std::uint64_t{i});
    if (!entry) break;
    std::size_t place = 0;
    while (place < rank && wanted[place] != entry->id) ++place;
    if (chosen && place == rank) continue;
    rank = place;
    chosen = entry->target;
  }
  return chosen;
}

std::optional<FileRange> PeResources::DataOf(std::uint32_t nameTarget) {
  const auto target = ChooseLanguage(nameTarget);
  std::array<std::uint8_t, 8> entry = {};
  if (!target || (*target & kFlag) != 0 || !ReadInTree(*target, entry)) return std::nullopt;
  auto data = image_.At(Little32(entry));
  if (data) data->size = std::min<std::uint64_t>(data->size, Little32(entry, 4));
  return data;
}

std::optional<FileRange> PeResources::Find(std::uint32_t type, std::uint32_t name) {
  const Directory& names = NamesOf(type);
  const auto found = names.targetOfNumber.find(name);
  if (found == names.targetOfNumber.end()) return std::nullopt;
  return DataOf(found->second);
}

}  // namespace tallowin::platform::linux_host
