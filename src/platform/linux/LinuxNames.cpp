#include "platform/linux/LinuxNames.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <resolv.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <memory>

namespace tallowin::platform::linux_host {
namespace {

// Twice, so that one lost packet does not cost the answer.
constexpr int kSecondsForAServer = 1;
constexpr int kTries = 2;

/// Settings of the resolver hold for this thread. They are read anew each time, because settings
/// that a program has changed are not refreshed when the system's name servers change.
void BoundResolver() {
  if (res_init() != 0) return;
  _res.retrans = std::min(_res.retrans, kSecondsForAServer);
  _res.retry = std::min(_res.retry, kTries);
}

in_addr Address(std::int32_t packed) { return {.s_addr = static_cast<in_addr_t>(packed)}; }

}  // namespace

std::int32_t LinuxNames::InetAddr(const std::string& text) const {
  return static_cast<std::int32_t>(inet_addr(text.c_str()));
}

std::string LinuxNames::InetNtoa(std::int32_t address) const {
  std::array<char, INET_ADDRSTRLEN> text{};
  const auto bytes = Address(address);
  return inet_ntop(AF_INET, &bytes, text.data(), text.size());
}

std::optional<std::int32_t> LinuxNames::GetHostByName(const std::string& name) {
  BoundResolver();
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  if (getaddrinfo(name.c_str(), nullptr, &wanted, &list) != 0) return std::nullopt;
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(list, freeaddrinfo);
  const auto* first = reinterpret_cast<const sockaddr_in*>(list->ai_addr);
  return static_cast<std::int32_t>(first->sin_addr.s_addr);
}

std::optional<std::string> LinuxNames::GetHostByAddr(std::int32_t address) {
  BoundResolver();
  sockaddr_in asked{};
  asked.sin_family = AF_INET;
  asked.sin_addr = Address(address);
  std::array<char, NI_MAXHOST> name{};
  if (getnameinfo(reinterpret_cast<const sockaddr*>(&asked), sizeof asked, name.data(), name.size(),
                  nullptr, 0, NI_NAMEREQD) != 0) {
    return std::nullopt;
  }
  return name.data();
}

}  // namespace tallowin::platform::linux_host
