#include "platform/linux/MailAddress.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <utility>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {

namespace {

/// Tells which characters of a text stand between quotes, where a backslash takes the meaning from
/// the character behind it.
class Quotes {
 public:
  /// True if the character is part of what is meant, and no sign that only frames it.
  bool Take(char character) {
    if (std::exchange(escaped_, false)) return true;
    escaped_ = open_ && character == '\\';
    if (character == '"') open_ = !open_;
    return !escaped_ && character != '"';
  }
  [[nodiscard]] bool Open() const { return open_; }

 private:
  bool open_ = false;
  bool escaped_ = false;
};

/// Nothing if a quote is not closed: nobody knows then what was to belong to the name.
std::optional<std::string> Unquoted(std::string_view text) {
  std::string meant;
  Quotes quotes;
  for (const char character : text) {
    if (quotes.Take(character)) meant += character;
  }
  return quotes.Open() ? std::optional<std::string>() : meant;
}

/// Where the first entry of a list ends: at a comma, but not at one in quotes.
std::size_t EntryLength(std::string_view list) {
  Quotes quotes;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (quotes.Take(list[i]) && !quotes.Open() && list[i] == ',') return i;
  }
  return list.size();
}

bool IsAddress(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return c > ' ' && c <= '~' && std::string_view("<>,;").find(c) == std::string_view::npos;
  });
}

bool EndsLine(QChar character) {
  switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool IsPlainLine(std::string_view text) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString decoded = decoder(QByteArrayView(text.data(), qsizetype(text.size())));
  return !decoder.hasError() && std::none_of(decoded.begin(), decoded.end(), EndsLine);
}

std::optional<MailAddress> ParseMailAddress(std::string_view text) {
  if (!IsPlainLine(text)) return {};
  text = Trimmed(text);
  std::optional<std::string> name("");
  std::string_view address = text;
  if (const auto bracket = text.rfind('<'); bracket != std::string_view::npos) {
    if (text.back() != '>') return {};
    name = Unquoted(Trimmed(text.substr(0, bracket)));
    address = text.substr(bracket + 1, text.size() - bracket - 2);
  }
  if (!name || !IsAddress(address)) return {};
  return MailAddress{*name, std::string(address)};
}

std::vector<MailAddress> ParseMailAddresses(std::string_view text) {
  std::vector<MailAddress> addresses;
  while (!text.empty()) {
    const std::size_t length = EntryLength(text);
    const auto entry = Trimmed(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
    if (entry.empty()) continue;
    auto address = ParseMailAddress(entry);
    if (!address) return {};
    addresses.push_back(std::move(*address));
  }
  return addresses;
}

}  // namespace tallowin::platform::linux_host
