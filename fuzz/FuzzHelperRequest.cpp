// A message to the helper, up to the moment at which it would use a privilege: here it never gets
// one.
#include <linux/capability.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "Check.h"
#include "helper/Deeds.h"
#include "helper/Messages.h"
#include "helper/Privileges.h"
#include "platform/linux/FileDescriptor.h"

namespace {

using tallowin::fuzz::Require;
using tallowin::helper::Kind;
using tallowin::platform::linux_host::FileDescriptor;

int asked = -1;  ///< the capability that the last request needs

bool Fits(const tallowin::helper::Request& request) {
  switch (request.kind) {
    case Kind::BindTcp:
      return asked == CAP_NET_BIND_SERVICE && request.port >= 1 && request.port <= 1023;
    case Kind::RawIcmp:
      return asked == CAP_NET_RAW;
    case Kind::SetClock:
      return asked == CAP_SYS_TIME && request.seconds >= 0 && request.nanoseconds >= 0 &&
             request.nanoseconds < 1'000'000'000;
  }
  return false;
}

}  // namespace

// In place of those of Privileges.cpp.
bool tallowin::helper::KeepOnly(int capability) {
  asked = capability;
  return false;
}
bool tallowin::helper::KeepNone() { return true; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::array<int, 2> ends{};
  Require(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) == 0, "sockets");
  const FileDescriptor suite(ends[0]);
  const FileDescriptor helper(ends[1]);
  (void)send(suite.Get(), data, size, MSG_NOSIGNAL);

  tallowin::helper::Request request;
  if (!tallowin::helper::Receive(helper.Get(), request)) {
    Require(size != sizeof request, "a request is taken");
    return 0;
  }
  Require(size == sizeof request && std::memcmp(&request, data, size) == 0,
          "and nothing but a request");
  asked = -1;
  const auto outcome = tallowin::helper::Answer(request);
  Require(outcome.socket == -1, "nothing is opened without a privilege");
  Require(outcome.error == (asked < 0 ? EINVAL : EPERM), "what is not known is refused");
  Require(asked < 0 || Fits(request), "a request gets the one capability that it needs");

  Require(tallowin::helper::Send(helper.Get(), outcome), "an answer goes out");
  tallowin::helper::Reply reply{};
  Require(recv(suite.Get(), &reply, sizeof reply, 0) == static_cast<ssize_t>(sizeof reply) &&
              reply.error == outcome.error,
          "and arrives");
  return 0;
}
