// A mail of four parts that anybody may have written: whom from, whom to, subject (a line each) and
// text.
#include <QByteArray>
#include <string>

#include "Check.h"
#include "platform/linux/MailAddress.h"
#include "platform/linux/MailText.h"

namespace {

using tallowin::fuzz::Require;
namespace linux_host = tallowin::platform::linux_host;

void CheckAddress(const linux_host::MailAddress& who) {
  Require(!who.address.empty(), "an address is not empty");
  for (const char c : who.address) {
    Require(c > ' ' && c <= '~' && std::string_view("<>,;").find(c) == std::string_view::npos,
            "an address ends no command and no header");
  }
  Require(linux_host::IsPlainLine(who.name), "a name is a plain line");
}

/// Lines that can go over the wire; the result is how many there are that fold none before them.
int CheckLines(std::string_view lines) {
  int begun = 0;
  while (!lines.empty()) {
    const auto end = lines.find("\r\n");
    Require(end != std::string_view::npos, "each line has its end");
    const auto line = lines.substr(0, end);
    Require(line.size() <= 998, "no line is too long");
    for (const char c : line) {
      Require((c >= ' ' && c <= '~') || c == '\t', "ASCII without controls");
    }
    if (!line.starts_with(' ')) ++begun;
    lines.remove_prefix(end + 2);
  }
  return begun;
}

std::string WithLineEnds(std::string_view text) {
  QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
  bytes.replace("\r\n", "\n").replace('\r', '\n').replace("\n", "\r\n");
  return bytes.toStdString();
}

void CheckMail(const linux_host::MailContent& content) {
  const std::string mail = linux_host::MailText(content);
  const auto split = mail.find("\r\n\r\n");
  Require(split != std::string::npos, "an empty line ends the headers");
  constexpr int kHeaders = 8;
  Require(CheckLines(std::string_view(mail).substr(0, split + 2)) == kHeaders,
          "no content makes a header of its own");
  std::string body = mail.substr(split + 4);
  const bool encoded = mail.find("\r\nContent-Transfer-Encoding: base64\r\n") < split;
  if (encoded || body.ends_with("\r\n")) CheckLines(body);
  if (encoded) body = QByteArray::fromBase64(QByteArray::fromStdString(body)).toStdString();
  Require(body == WithLineEnds(content.text), "the text arrives as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = tallowin::fuzz::TextOf(data, size);
  const auto from = linux_host::ParseMailAddress(tallowin::fuzz::TakeLine(text));
  const auto to = linux_host::ParseMailAddresses(tallowin::fuzz::TakeLine(text));
  const std::string subject(tallowin::fuzz::TakeLine(text));
  if (from) CheckAddress(*from);
  for (const auto& who : to) CheckAddress(who);
  if (!from || to.empty() || !linux_host::IsPlainLine(subject)) return 0;
  CheckMail({.from = *from, .to = to, .subject = subject, .text = std::string(text)});
  return 0;
}
