#include "platform/linux/LinuxSmtp.h"

#include <arpa/inet.h>
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
constexpr std::int16_t kTimedOut = 28;

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
  ~ScriptedServer() {
    over_ = true;
    thread_.join();
  }

  [[nodiscard]] std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  [[nodiscard]] bool Called() const { return called_; }

 private:
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
    called_ = true;
    std::string awaited;
    for (const auto& reply : replies_) {
      if (!AwaitEnd(caller.Get(), awaited)) return;
      (void)send(caller.Get(), reply.data(), reply.size(), MSG_NOSIGNAL);
      awaited = reply.starts_with("354") ? "\r\n.\r\n" : "\r\n";
    }
    std::string ignored;
    while (Receive(caller.Get(), ignored)) {
    }
  }
  bool AwaitEnd(int caller, const std::string& end) const {
    std::string received;
    while (!received.ends_with(end)) {
      if (!Receive(caller, received)) return false;
    }
    return true;
  }
  bool Receive(int caller, std::string& received) const {
    char buffer[4096];
    if (!Readable(caller)) return false;
    const ssize_t length = recv(caller, buffer, sizeof buffer, 0);
    if (length > 0) received.append(buffer, static_cast<std::size_t>(length));
    return length > 0;
  }

  std::vector<std::string> replies_;
  FileDescriptor listener_{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
  int port_ = 0;
  std::atomic<bool> over_ = false;
  std::atomic<bool> called_ = false;
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
           Case{{}, kTimedOut}, Case{{"220 he"}, kTimedOut},
           Case{{whole.begin(), whole.begin() + 4}, kTimedOut},
           Case{{whole.begin(), whole.begin() + 5}, kTimedOut},
           Case{{"220 here\r\n", "250-here\r\n250 STARTTLS\r\n", "220 go ahead\r\n"}, kTimedOut},
           Case{whole, 0},  // it has taken the mail, and does not answer to the farewell
       }) {
    ScriptedServer server(replies);
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(SendTo(server.Address(), 400ms), status) << replies.size() << " replies";
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 2500ms) << replies.size() << " replies";
  }
}

TEST_F(LinuxSmtpTest, TextsThatSmuggleAreRefusedBeforeAnythingIsSent) {
  using Change = void (*)(SmtpMail&);
  for (const Change change : {
           Change([](SmtpMail& mail) { mail.szFrom += "\r\nBcc: x@y.example"; }),
           Change([](SmtpMail& mail) { mail.szTo += "\nRCPT TO:<x@y.example>"; }),
           Change([](SmtpMail& mail) { mail.szTo += ", "; }),
           Change([](SmtpMail& mail) { mail.szTo.clear(); }),
           Change([](SmtpMail& mail) { mail.szSubject += "\rBcc: x@y.example"; }),
           Change([](SmtpMail& mail) { mail.szSubject += '\0'; }),
           Change([](SmtpMail& mail) { mail.szDomainName += "\r\nDATA"; }),
           Change([](SmtpMail& mail) { mail.szDomainName += '\0'; }),
           Change([](SmtpMail& mail) { mail.szDomainName += "/a%0d%0aDATA"; }),
           Change([](SmtpMail& mail) { mail.szDomainName.clear(); }),
           Change([](SmtpMail& mail) { mail.szDomainName.insert(0, "http://"); }),
           Change([](SmtpMail& mail) { mail.szDomainName.insert(0, "file:///etc/passwd#"); }),
       }) {
    const ScriptedServer server({"220 here\r\n"});
    SmtpMail mail = kMail;
    mail.szDomainName = server.Address();
    change(mail);
    EXPECT_NE(LinuxSmtp(library, 5s).SmtpSendMail(mail), 0) << mail.szDomainName;
    EXPECT_FALSE(server.Called()) << mail.szDomainName;
  }
}

TEST_F(LinuxSmtpTest, WhoIsNotThereIsAFailure) { EXPECT_EQ(SendTo("127.0.0.1:1"), 7); }

}  // namespace
}  // namespace tallowin::platform::linux_host
