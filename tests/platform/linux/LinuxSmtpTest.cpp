#include "platform/linux/LinuxSmtp.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/FileDescriptor.h"

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

/// A server of one caller, which speaks the given replies, one for each line that it gets, and then
/// falls silent with the connection open. Behind the reply 354 it waits for the end of the mail.
class ScriptedServer {
 public:
  explicit ScriptedServer(std::vector<std::string> replies) : replies_(std::move(replies)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(listener_.Get(), reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(listener_.Get(), 4), 0);
    getsockname(listener_.Get(), reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;
  ~ScriptedServer() { End(); }

  [[nodiscard]] std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  /// Everything that came. The server is at its end then.
  [[nodiscard]] const std::string& Received() {
    End();
    return received_;
  }

 private:
  void End() {
    over_ = true;
    if (thread_.joinable()) thread_.join();
  }
  bool Readable(int descriptor) const {
    while (!over_) {
      pollfd wait{descriptor, POLLIN, 0};
      if (poll(&wait, 1, 10) > 0) return true;
    }
    return false;
  }
  void Serve() {
    if (!Readable(listener_.Get())) return;
    const FileDescriptor caller(accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    std::string awaited;
    for (const auto& reply : replies_) {
      if (!AwaitEnd(caller.Get(), awaited)) return;
      (void)send(caller.Get(), reply.data(), reply.size(), MSG_NOSIGNAL);
      awaited = reply.starts_with("354") ? "\r\n.\r\n" : "\r\n";
    }
    while (Receive(caller.Get())) {
    }
  }
  bool AwaitEnd(int caller, const std::string& end) {
    const auto start = received_.size();
    while (!std::string_view(received_).substr(start).ends_with(end)) {
      if (!Receive(caller)) return false;
    }
    return true;
  }
  bool Receive(int caller) {
    char buffer[4096];
    if (!Readable(caller)) return false;
    const ssize_t length = recv(caller, buffer, sizeof buffer, 0);
    if (length > 0) received_.append(buffer, static_cast<std::size_t>(length));
    return length > 0;
  }

  std::vector<std::string> replies_;
  FileDescriptor listener_{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
  int port_ = 0;
  std::atomic<bool> over_ = false;
  std::string received_;
  std::thread thread_;
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
  };
  const std::vector<std::string> whole{"220 here\r\n", "250 here\r\n", "250 from\r\n",
                                       "250 to\r\n",   "354 go\r\n",   "250 taken\r\n"};
  for (const auto& [replies, status] : {
           Case{{}, kTimedOut}, Case{{whole.begin(), whole.begin() + 5}, kTimedOut},
           Case{{"220 here\r\n", "250-here\r\n250 STARTTLS\r\n", "220 go ahead\r\n"}, kTimedOut},
           Case{whole, 0},  // it has taken the mail, and does not answer to the farewell
       }) {
    ScriptedServer server(replies);
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(SendTo(server.Address(), 400ms), status) << replies.size() << " replies";
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 2500ms) << replies.size() << " replies";
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
  // Who would be called is not there.
  EXPECT_EQ(SendTo(kNobody), kNoConnection);
  EXPECT_EQ(SendTo("smtp://" + kNobody + "/"), kNoConnection);
  for (const auto& [status, change] : {
           Case{kRefused, [](SmtpMail& mail) { mail.szFrom += "\r\nBcc: x@y.example"; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szTo += "\nRCPT TO:<x@y.example>"; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szTo += "> SIZE=1"; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szTo = ", "; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szSubject += "\rBcc: x@y.example"; }},
           Case{kRefused, [](SmtpMail& mail) { mail.szSubject += '\0'; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName += "\r\nDATA"; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName += '\0'; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName += "/a%0d%0aDATA"; }},
           Case{kNoAddress, [](SmtpMail& mail) { mail.szDomainName += "?a%0d%0aDATA"; }},
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

}  // namespace
}  // namespace tallowin::platform::linux_host
