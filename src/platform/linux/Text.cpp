#include "platform/linux/Text.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>

namespace tallowin::platform::linux_host {

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerAscii(c);
  return lower;
}

std::string CaseFolded(std::string_view name) {
  // Nearly all names are ASCII; they are folded at each connection attempt, and a poll folds those
  // of a whole folder.
  if (std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
    // Bytes that are no UTF-8 all decode to one and the same character.
    if (!decode.hasError()) return text.toCaseFolded().toStdString();
  }
  return LowerAscii(name);
}

std::string_view Trimmed(std::string_view text) {
  SkipBlanks(text);
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

void SkipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

std::vector<std::string_view> Parts(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

}  // namespace tallowin::platform::linux_host
