#include "helper/Messages.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <cstring>

namespace tallowin::helper {

namespace {

constexpr timeval kPatience{.tv_sec = 2, .tv_usec = 0};

}  // namespace

bool Receive(int parent, Request& request) {
  setsockopt(parent, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  return recv(parent, &request, sizeof request, MSG_TRUNC) == static_cast<ssize_t>(sizeof request);
}

bool Send(int parent, const Outcome& outcome) {
  Reply reply{.error = outcome.error};
  iovec part{.iov_base = &reply, .iov_len = sizeof reply};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))]{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (outcome.socket >= 0) {
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr* rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof outcome.socket);
    std::memcpy(CMSG_DATA(rights), &outcome.socket, sizeof outcome.socket);
  }
  return sendmsg(parent, &message, MSG_NOSIGNAL) >= 0;
}

}  // namespace tallowin::helper
