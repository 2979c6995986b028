#include "platform/linux/Ipv6OnlySockets.h"

#include <libmnl/libmnl.h>
#include <linux/inet_diag.h>
#include <linux/sock_diag.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <memory>

namespace tallowin::platform::linux_host {
namespace {

using Inodes = std::unordered_set<std::uint32_t>;
using Netlink = std::unique_ptr<mnl_socket, decltype(&mnl_socket_close)>;

/// Larger than any message of a dump.
using Buffer = std::array<std::byte, std::size_t{32} << 10U>;

bool Ask(const Netlink& kernel, std::uint8_t protocol) {
  alignas(nlmsghdr) Buffer buffer;
  nlmsghdr* message = mnl_nlmsg_put_header(buffer.data());
  message->nlmsg_type = SOCK_DIAG_BY_FAMILY;
  message->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  auto* request =
      static_cast<inet_diag_req_v2*>(mnl_nlmsg_put_extra_header(message, sizeof(inet_diag_req_v2)));
  request->sdiag_family = AF_INET6;
  request->sdiag_protocol = protocol;
  // A UDP socket that has no other end counts as closed.
  request->idiag_states = 1U << TCP_LISTEN | 1U << TCP_CLOSE;
  return mnl_socket_sendto(kernel.get(), message, message->nlmsg_len) >= 0;
}

int TakeAttribute(const nlattr* attribute, void* ipv6Only) {
  if (mnl_attr_get_type(attribute) == INET_DIAG_SKV6ONLY) {
    *static_cast<bool*>(ipv6Only) = mnl_attr_get_u8(attribute) != 0;
  }
  return MNL_CB_OK;
}

int TakeSocket(const nlmsghdr* message, void* inodes) {
  const auto* socket = static_cast<const inet_diag_msg*>(mnl_nlmsg_get_payload(message));
  bool ipv6Only = false;
  mnl_attr_parse(message, sizeof(*socket), TakeAttribute, &ipv6Only);
  if (ipv6Only) static_cast<Inodes*>(inodes)->insert(socket->idiag_inode);
  return MNL_CB_OK;
}

}  // namespace

Inodes Ipv6OnlySockets(std::uint8_t protocol) {
  const Netlink kernel(mnl_socket_open2(NETLINK_SOCK_DIAG, SOCK_CLOEXEC), mnl_socket_close);
  Inodes inodes;
  if (!kernel || !Ask(kernel, protocol)) return inodes;
  alignas(nlmsghdr) Buffer buffer;
  int more = MNL_CB_OK;
  while (more == MNL_CB_OK) {
    const ssize_t size = mnl_socket_recvfrom(kernel.get(), buffer.data(), buffer.size());
    if (size <= 0) break;
    more = mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), 0, 0, TakeSocket, &inodes);
  }
  return inodes;
}

}  // namespace tallowin::platform::linux_host
