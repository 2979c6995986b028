#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "LoopbackServer.h"
#include "platform/linux/LinuxSmtp.h"
#include "platform/linux/MailText.h"

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;

constexpr std::int16_t kNoProtocol = 1;
constexpr std::int16_t kNoAddress = 3;
constexpr std::int16_t kNoConnection = 7;
constexpr std::int16_t kTimedOut = 28;
constexpr std::int16_t kRefused = 43;
constexpr std::int16_t kNotEncrypted = 64;

/// A port that the system gives to nobody by itself.
const std::string kNobody = "127.0.0.1:1";

/// Speaks the given replies, one for each line that it gets, and then falls silent with the
/// connection open. Behind the reply 354 it waits for the end of the mail.
class ScriptedServer {
 public:
  explicit ScriptedServer(std::vector<std::string> replies) : replies_(std::move(replies)) {}
  [[nodiscard]] std::string Address() const { return server_.Address(); }
  /// Everything that came. The server is at its end then.
  [[nodiscard]] const std::string& Received() {
    server_.End();
    return received_;
  }

 private:
  void Serve(int caller) {
    std::string awaited;
    for (const auto& reply : replies_) {
      const auto start = received_.size();
      while (!std::string_view(received_).substr(start).ends_with(awaited)) {
        if (!server_.Receive(caller, received_)) return;
      }
      (void)send(caller, reply.data(), reply.size(), MSG_NOSIGNAL);
      awaited = reply.starts_with("354") ? "\r\n.\r\n" : "\r\n";
    }
    while (server_.Receive(caller, received_)) {
    }
  }

  std::vector<std::string> replies_;
  std::string received_;
  test::LoopbackServer server_{[this](int caller) { Serve(caller); }};
};

const SmtpMail kMail{.szDomainName = {},
                     .szFrom = "A name <me@home.example>",
                     .szTo = "you@home.example",
                     .szSubject = "A subject",
                     .szMessage = "A text"};

struct LinuxSmtpTest : testing::Test {
  CurlLibrary library;
  std::int16_t SendTo(const std::string& server, std::chrono::milliseconds patience = 20s) {
    SmtpMail mail = kMail;
    mail.szDomainName = server;
    return LinuxSmtp(library, patience).SmtpSendMail(mail);
  }
};

TEST_F(LinuxSmtpTest, AServerThatFallsSilentCostsItsTimeAndNoMore) {
  struct Case {
    std::vector<std::string> replies;
    std::int16_t status;
    std::chrono::milliseconds patience = 400ms;
  };
  const std::vector<std::string> whole{"220 here\r\n", "250 here\r\n", "250 from\r\n",
                                       "250 to\r\n",   "354 go\r\n",   "250 taken\r\n"};
  for (const auto& [replies, status, patience] : {
           Case{{}, kTimedOut}, Case{{whole.begin(), whole.begin() + 5}, kTimedOut},
           Case{{"220 here\r\n", "250-here\r\n250 STARTTLS\r\n", "220 go ahead\r\n"}, kTimedOut},
           Case{whole, 0, 3s},  // it has taken the mail, and does not answer to the farewell
       }) {
    ScriptedServer server(replies);
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(SendTo(server.Address(), patience), status) << replies.size() << " replies";
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 20s) << replies.size() << " replies";
  }
}

TEST_F(LinuxSmtpTest, APasswordNeverGoesInTheClear) {
  for (const std::vector<std::string>& replies : {
           std::vector<std::string>{"220 here\r\n", "250 AUTH PLAIN LOGIN\r\n"},
           {"220 here\r\n", "250-STARTTLS\r\n250 AUTH PLAIN LOGIN\r\n", "454 not now\r\n"},
       }) {
    ScriptedServer server(replies);
    EXPECT_EQ(SendTo("smtp://me:secret@" + server.Address()), kNotEncrypted);
    EXPECT_THAT(server.Received(), testing::StartsWith("EHLO "));
    EXPECT_THAT(server.Received(), testing::Not(testing::HasSubstr("AUTH")));
  }
}

TEST_F(LinuxSmtpTest, TextsThatSmuggleAreRefusedBeforeAnybodyIsCalled) {
  struct Case {
    std::int16_t status;
    void (*change)(SmtpMail&);
  };
  EXPECT_EQ(SendTo(kNobody), kNoConnection);
  EXPECT_EQ(SendTo("smtp://" + kNobody + "/"), kNoConnection);
  for (const auto& [status, change] : {
           Case{kRefused, [](SmtpMail& mail) { mail.szFrom += "\r\nBcc: x@y.example"; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szTo += "\nRCPT TO:<x@y.example>"; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szTo = ", "; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szSubject += "\rBcc: x@y.example"; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName += "\r\nDATA"; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName += "/a%0d%0aDATA"; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName.insert(0, "a%0d%0aDATA@"); }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName.clear(); }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName = "file:///etc/passwd#"; }},
           Case{kNoProtocol, [](SmtpMail& mail) { mail.szDomainName.insert(0, "http://"); }},
       }) {
    SmtpMail mail = kMail;
    mail.szDomainName = kNobody;
    change(mail);
    EXPECT_EQ(LinuxSmtp(library).SmtpSendMail(mail), status) << mail.szDomainName << mail.szTo;
  }
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
  for (const auto text :
       {""sv, "a@b.example\r\nBcc: c@d.example"sv, "a@b\0.example"sv, "a@b.example\x1B"sv,
        "a@b.example\xC2\x85x"sv, "a@b.example\xFF"sv, "A\nBcc: c@d.example <a@b.example>"sv,
        "j\xC3\xB6@b.example"sv, "\"A\\\" <a@b.example>"sv, "a@b.example> SIZE=1"sv,
        "<a@b.example> <>"sv, "<a@b.example"sv, "A <>"sv}) {
    EXPECT_FALSE(ParseMailAddress(text)) << text;
    EXPECT_EQ(Parsed(std::string(text) + ", a@b.example"), text.empty() ? "|a@b.example\n" : "");
  }
}

TEST(MailText, WhatALineCannotCarryIsEncoded) {
  MailContent content{
      .from = {"", "me@home.example"}, .to = {{"", "a@one.example"}}, .subject = "", .text = ""};
  const auto isEncoded = [&](const std::string& text) {
    content.text = text;
    return MailText(content).find("\r\nContent-Transfer-Encoding: base64\r\n") != std::string::npos;
  };
  EXPECT_FALSE(isEncoded(std::string(998, 'x') + "\n\ty\r\n.\r\n"));
  EXPECT_TRUE(isEncoded(std::string(999, 'x')));
  EXPECT_TRUE(isEncoded("a\xC3\xA4"));
  EXPECT_TRUE(isEncoded(std::string("nul\0", 4)));
}

}  // namespace
}  // namespace tallowin::platform::linux_host
