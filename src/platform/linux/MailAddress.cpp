#include "platform/linux/MailAddress.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>

namespace tallowin::platform::linux_host {

namespace {

std::string_view WithoutBlanksAround(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view WithoutQuotesAround(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
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
  text = WithoutBlanksAround(text);
  std::string_view name;
  std::string_view address = text;
  if (const auto bracket = text.rfind('<'); bracket != std::string_view::npos) {
    if (text.back() != '>') return {};
    name = WithoutQuotesAround(WithoutBlanksAround(text.substr(0, bracket)));
    address = text.substr(bracket + 1, text.size() - bracket - 2);
  }
  if (address.empty() || address.find_first_of(" <>,;") != std::string_view::npos) return {};
  return MailAddress{std::string(name), std::string(address)};
}

std::vector<MailAddress> ParseMailAddresses(std::string_view text) {
  std::vector<MailAddress> addresses;
  for (bool more = true; more;) {
    const auto comma = text.find(',');
    auto address = ParseMailAddress(text.substr(0, comma));
    if (!address) return {};
    addresses.push_back(std::move(*address));
    more = comma != std::string_view::npos;
    if (more) text.remove_prefix(comma + 1);
  }
  return addresses;
}

}  // namespace tallowin::platform::linux_host
