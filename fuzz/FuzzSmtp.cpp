// A mail server that answers anything: all that it ever says lies in the connection from its start.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

#include "Check.h"
#include "platform/linux/CurlLibrary.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxSmtp.h"

namespace {

using tallowin::fuzz::Require;
namespace linux_host = tallowin::platform::linux_host;

/// On a port of the loopback address.
class Server {
 public:
  Server() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* place = reinterpret_cast<sockaddr*>(&address);
    const bool listens = bind(socket_.Get(), place, size) == 0 && listen(socket_.Get(), 8) == 0 &&
                         getsockname(socket_.Get(), place, &size) == 0;
    Require(listens, "the server listens");
    url_ = "smtp://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
  }
  [[nodiscard]] const std::string& Url() const { return url_; }

  /// Serves one client to its end, and gives what that one said.
  std::string Serve(std::string_view replies) {
    const linux_host::FileDescriptor client(accept(socket_.Get(), nullptr, nullptr));
    (void)send(client.Get(), replies.data(), replies.size(), MSG_NOSIGNAL);
    (void)shutdown(client.Get(), SHUT_WR);
    std::string said;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = recv(client.Get(), buffer.data(), buffer.size(), 0)) > 0;) {
      said.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return said;
  }

 private:
  linux_host::FileDescriptor socket_;
  std::string url_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Server server;
  static const linux_host::CurlLibrary library;
  linux_host::LinuxSmtp smtp(library, std::chrono::seconds(2));
  std::string said;
  std::thread serving([&] { said = server.Serve(tallowin::fuzz::TextOf(data, size)); });
  const auto status = smtp.SmtpSendMail({.szDomainName = server.Url(),
                                         .szFrom = "Guard <guard@home.example>",
                                         .szTo = "owner@home.example",
                                         .szSubject = "Alarm",
                                         .szMessage = "somebody called\r\n.\r\nQUIT\r\n"});
  serving.join();
  constexpr int kTimedOut = 28;
  Require(status != kTimedOut, "a server that has said all is not waited for");
  Require(status >= 0 && status < 200, "a status is one of the library's");
  if (status == 0) {
    Require(said.find("MAIL FROM:<guard@home.example>") != std::string::npos &&
                said.find("RCPT TO:<owner@home.example>") != std::string::npos &&
                said.find("\r\n..\r\nQUIT\r\n") != std::string::npos,
            "what was sent is the whole mail");
  }
  return 0;
}
