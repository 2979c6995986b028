#include "platform/linux/TcpSocket.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "platform/linux/SocketErrors.h"

namespace tallowin::platform::linux_host {

std::optional<sockaddr_in> AddressOf(const std::string& dotted, int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  if (inet_pton(AF_INET, dotted.c_str(), &address.sin_addr) != 1) return std::nullopt;
  return address;
}

std::string DottedAddress(const sockaddr_in& address) {
  std::array<char, INET_ADDRSTRLEN> text{};
  inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
  return text.data();
}

int PortOf(const sockaddr_in& address) { return ntohs(address.sin_port); }

FileDescriptor OpenTcpSocket() {
  FileDescriptor opened(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!opened) throw SocketError(errno);
  return opened;
}

int TryToBind(const FileDescriptor& socket, int port) {
  // Connections of an earlier run that the system has not forgotten yet do not count as taken.
  const int on = 1;
  setsockopt(socket.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  return bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
             ? 0
             : errno;
}

void BindToPort(const FileDescriptor& socket, int port) {
  if (const int error = TryToBind(socket, port)) throw SocketError(error);
}

int LocalPortOf(const FileDescriptor& socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(socket.Get(), reinterpret_cast<sockaddr*>(&address), &size);
  return PortOf(address);
}

void SetResetOnClose(const FileDescriptor& socket, bool reset) {
  const linger value{reset ? 1 : 0, 0};
  setsockopt(socket.Get(), SOL_SOCKET, SO_LINGER, &value, sizeof value);
}

}  // namespace tallowin::platform::linux_host
