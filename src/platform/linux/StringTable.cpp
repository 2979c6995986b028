#include "platform/linux/StringTable.h"

#include <algorithm>

#include "platform/linux/Utf16.h"

namespace tallowin::platform::linux_host {

/// A text that does not fit into its resource ends the bundle.
void StringTable::ReadBundle(std::uint32_t number) {
  number_ = number;
  texts_ = {};
  const auto data = resources_.Find(resource_type::kString, number);
  std::uint64_t at = 0;
  for (FileRange& text : texts_) {
    if (!data || at + 2 > data->size) return;
    const auto length = resources_.Bytes().Number16(data->offset + at);
    if (!length || at + 2 + std::uint64_t{2} * *length > data->size) return;
    text = {data->offset + at + 2, std::uint64_t{2} * *length};
    at += 2 + text.size;
  }
}

std::string StringTable::Load(std::int32_t id, std::size_t bufferSize) {
  if (id < 0 || id > 0xFFFF || bufferSize == 0) return {};
  const auto place = static_cast<std::uint32_t>(id);
  if (const std::uint32_t number = place / 16 + 1; number != number_) ReadBundle(number);
  const FileRange& text = texts_[place % 16];
  std::vector<std::uint8_t> bytes(std::min<std::uint64_t>(text.size, 2 * (bufferSize - 1)));
  if (!resources_.Bytes().Read(text.offset, bytes)) return {};
  return Utf8FromUtf16(Utf16Units(bytes));
}

}  // namespace tallowin::platform::linux_host
