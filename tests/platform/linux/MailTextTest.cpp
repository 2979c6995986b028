#include "platform/linux/MailText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QByteArray>

namespace tallowin::platform::linux_host {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string Headers(const std::string& mail) { return mail.substr(0, mail.find("\r\n\r\n")); }
std::string Body(const std::string& mail) { return mail.substr(mail.find("\r\n\r\n") + 4); }

std::size_t LongestLine(std::string_view text) {
  std::size_t longest = 0;
  while (!text.empty()) {
    const auto end = std::min(text.find("\r\n"), text.size());
    longest = std::max(longest, end);
    text.remove_prefix(std::min(end + 2, text.size()));
  }
  return longest;
}

std::string Parsed(std::string_view list) {
  std::string parsed;
  for (const auto& [name, address] : ParseMailAddresses(list))
    parsed += name + "|" + address + "\n";
  return parsed;
}

TEST(MailAddress, WhatIsTakenAndWhatIsRefused) {
  EXPECT_EQ(Parsed("a@one.example, B <b@two.example>,postmaster"),
            "|a@one.example\nB|b@two.example\n|postmaster\n");
  EXPECT_EQ(Parsed(" \"Doe, \\\"J\\\\\" Jr. <j@home.example> , , a@one.example, "),
            "Doe, \"J\\ Jr.|j@home.example\n|a@one.example\n");

  using namespace std::string_view_literals;
  for (const auto text : {""sv,
                          "a@b.example\r\nBcc: c@d.example"sv,
                          "a@b.example\nx"sv,
                          "a@b.example\rx"sv,
                          "a@b\0.example"sv,
                          "a@b.example\x1B"sv,
                          "a@b.example\x7F"sv,
                          "a@b.example\xC2\x85x"sv,
                          "a@b.example\xE2\x80\xA8x"sv,
                          "a@b.example\xFF"sv,
                          "A\nBcc: c@d.example <a@b.example>"sv,
                          "j\xC3\xB6@b.example"sv,
                          "\"A <a@b.example>"sv,
                          "\"A\\\" <a@b.example>"sv,
                          "a@b.example> SIZE=1"sv,
                          "<a@b.example> NOTIFY=NEVER"sv,
                          "<a@b.example> <>"sv,
                          "a@b.example SIZE=1"sv,
                          "<a@b.example"sv,
                          "A <>"sv}) {
    EXPECT_FALSE(ParseMailAddress(text)) << text;
    EXPECT_EQ(Parsed(std::string(text) + ", a@b.example"), text.empty() ? "|a@b.example\n" : "");
  }
}

TEST(MailText, PlainTextGoesOutAsItIs) {
  const std::string mail = MailText({.from = {"A \"quoted\" name", "me@home.example"},
                                     .to = {{"", "a@one.example"}, {"B", "b@two.example"}},
                                     .subject = "A subject",
                                     .text = "first\nsecond\rthird\r\n.\r\n"});
  EXPECT_THAT(mail, StartsWith("From: \"A \\\"quoted\\\" name\"\r\n <me@home.example>\r\n"
                               "To: a@one.example,\r\n \"B\"\r\n <b@two.example>\r\n"
                               "Subject: A subject\r\nDate: "));
  EXPECT_THAT(Headers(mail), testing::ContainsRegex("\r\nDate: [0-9]{2} [A-Z][a-z]{2} [0-9]{4} "
                                                    "[0-9:]{8} [+-][0-9]{4}\r\n"
                                                    "Message-ID: <[0-9a-f-]{36}@home.example>\r\n"
                                                    "MIME-Version: 1.0\r\n"
                                                    "Content-Type: text/plain; charset=UTF-8\r\n"
                                                    "Content-Transfer-Encoding: 7bit$"));
  EXPECT_EQ(Body(mail), "first\r\nsecond\r\nthird\r\n.\r\n");
}

TEST(MailText, WhatALineCannotCarryIsEncoded) {
  MailContent content{
      .from = {"", "me@home.example"}, .to = {{"", "a@one.example"}}, .subject = "", .text = ""};
  for (const std::string& text : {std::string(999, 'x'), std::string("a\xC3\xA4\r\n.b"),
                                  std::string("nul\0", 4), std::string(4, '\x1B')}) {
    content.text = text;
    const std::string mail = MailText(content);
    EXPECT_THAT(Headers(mail), EndsWith("Content-Transfer-Encoding: base64"));
    EXPECT_LE(LongestLine(mail), 78U);
    EXPECT_EQ(QByteArray::fromBase64(QByteArray::fromStdString(Body(mail))).toStdString(), text);
  }
  content.text = std::string(998, 'x') + "\n\ty";
  EXPECT_EQ(Body(MailText(content)), std::string(998, 'x') + "\r\n\ty");
}

TEST(MailText, HeadersAreFoldedAndNoCharacterIsCut) {
  std::string subject;
  for (int i = 0; i < 40; ++i) subject += "x\xF0\x9F\x94\x91";
  const std::string mail = MailText({.from = {"=?looks encoded", "me@home.example"},
                                     .to = std::vector<MailAddress>(50, {"", "a@one.example"}),
                                     .subject = subject,
                                     .text = ""});
  EXPECT_LE(LongestLine(mail), 76U);
  EXPECT_THAT(mail, StartsWith("From: =?UTF-8?B?"));
  std::string decoded;
  std::string rest = mail.substr(mail.find("Subject: "));
  rest.resize(rest.find("\r\nDate"));
  for (std::size_t at = rest.find("?B?"); at != std::string::npos; at = rest.find("?B?")) {
    rest.erase(0, at + 3);
    const std::string word =
        QByteArray::fromBase64(QByteArray::fromStdString(rest.substr(0, rest.find("?="))))
            .toStdString();
    EXPECT_TRUE(IsPlainLine(word)) << "each word is whole";
    decoded += word;
  }
  EXPECT_EQ(decoded, subject);
}

}  // namespace
}  // namespace tallowin::platform::linux_host
