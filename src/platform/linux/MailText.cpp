#include "platform/linux/MailText.h"

#include <QByteArray>
#include <QDateTime>
#include <QUuid>
#include <algorithm>

namespace tallowin::platform::linux_host {

namespace {

constexpr std::size_t kLongestLine = 998;      // RFC 5322, 2.1.1
constexpr std::size_t kLongestPlainText = 60;  // a header is folded well before 78
constexpr std::size_t kBytesInEncodedWord = 39;
constexpr std::size_t kBase64Line = 76;

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return (c >= ' ' && c <= '~') || c == '\t'; });
}

std::string Base64(std::string_view bytes) {
  return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()))
      .toBase64()
      .toStdString();
}

/// How many bytes of `text` fit into one encoded word, which may not cut a character in two.
std::size_t EncodedWordLength(std::string_view text) {
  if (text.size() <= kBytesInEncodedWord) return text.size();
  std::size_t length = kBytesInEncodedWord;
  while ((static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80) --length;
  return length;
}

/// The encoded words of RFC 2047, one a line.
std::string EncodedWords(std::string_view text) {
  std::string words;
  while (!text.empty()) {
    const std::size_t length = EncodedWordLength(text);
    if (!words.empty()) words += "\r\n ";
    words += "=?UTF-8?B?" + Base64(text.substr(0, length)) + "?=";
    text.remove_prefix(length);
  }
  return words;
}

bool NeedsEncodedWords(std::string_view text) {
  // What looks like an encoded word would be taken for one.
  return !IsAscii(text) || text.size() > kLongestPlainText ||
         text.find("=?") != std::string_view::npos;
}

std::string HeaderText(std::string_view text) {
  return NeedsEncodedWords(text) ? EncodedWords(text) : std::string(text);
}

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string HeaderText(const MailAddress& who) {
  if (who.name.empty()) return who.address;
  return (NeedsEncodedWords(who.name) ? EncodedWords(who.name) : Quoted(who.name)) + "\r\n <" +
         who.address + ">";
}

std::string HeaderText(const std::vector<MailAddress>& recipients) {
  std::string list;
  for (const auto& recipient : recipients) {
    if (!list.empty()) list += ",\r\n ";
    list += HeaderText(recipient);
  }
  return list;
}

std::string MessageID(const MailAddress& from) {
  const auto at = from.address.rfind('@');
  const std::string domain = at == std::string::npos ? "localhost" : from.address.substr(at + 1);
  return "<" + QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString() + "@" + domain +
         ">";
}

std::string WithLineEnds(std::string_view text) {
  std::string lines;
  lines.reserve(text.size() + text.size() / 16);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') {
      lines += text[i];
      continue;
    }
    lines += "\r\n";
    if (text.substr(i, 2) == "\r\n") ++i;
  }
  return lines;
}

/// Whether every server may carry these lines as they are.
bool IsPlainMail(std::string_view lines) {
  while (!lines.empty()) {
    const auto end = std::min(lines.find("\r\n"), lines.size());
    if (end > kLongestLine || !IsAscii(lines.substr(0, end))) return false;
    lines.remove_prefix(std::min(end + 2, lines.size()));
  }
  return true;
}

std::string Base64Lines(std::string_view bytes) {
  const std::string encoded = Base64(bytes);
  std::string lines;
  for (std::size_t i = 0; i < encoded.size(); i += kBase64Line) {
    lines += encoded.substr(i, kBase64Line) + "\r\n";
  }
  return lines;
}

}  // namespace

std::string MailText(const MailContent& content) {
  const std::string lines = WithLineEnds(content.text);
  const bool plain = IsPlainMail(lines);
  return "From: " + HeaderText(content.from) + "\r\nTo: " + HeaderText(content.to) +
         "\r\nSubject: " + HeaderText(content.subject) +
         "\r\nDate: " + QDateTime::currentDateTime().toString(Qt::RFC2822Date).toStdString() +
         "\r\nMessage-ID: " + MessageID(content.from) +
         "\r\nMIME-Version: 1.0"
         "\r\nContent-Type: text/plain; charset=UTF-8"
         "\r\nContent-Transfer-Encoding: " +
         (plain ? "7bit" : "base64") + "\r\n\r\n" + (plain ? lines : Base64Lines(lines));
}

}  // namespace tallowin::platform::linux_host
