// tallowin-helper: opens a port below 1024, opens a raw ICMP socket or sets the clock for the
// program of the suite that started it, once, and ends. It is the only part of the suite with
// privileges, which are file capabilities for just these three things.

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string_view>

#include "helper/Deeds.h"
#include "helper/Messages.h"
#include "helper/Privileges.h"

namespace {

constexpr int kParent = STDIN_FILENO;

int Refuse(std::string_view why) {
  (void)!write(STDERR_FILENO, why.data(), why.size());
  return 2;
}

/// The other end was made by the process that started this one, under the same user.
bool IsAskedByParent() {
  int type = 0;
  socklen_t size = sizeof type;
  if (getsockopt(kParent, SOL_SOCKET, SO_TYPE, &type, &size) != 0 || type != SOCK_SEQPACKET) {
    return false;
  }
  ucred peer{};
  size = sizeof peer;
  if (getsockopt(kParent, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  return peer.pid == getppid() && peer.uid == getuid();
}

/// Of what the parent had open only its output and errors are held here, and nothing can be started
/// from here.
bool Isolate() {
  if (close_range(STDERR_FILENO + 1, ~0U, 0) != 0) return false;
  const rlimit noFiles{.rlim_cur = 0, .rlim_max = 0};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0 &&
         setrlimit(RLIMIT_FSIZE, &noFiles) == 0 && setrlimit(RLIMIT_NPROC, &noFiles) == 0;
}

}  // namespace

int main(int argc, char** /*argv*/) {
  if (argc > 1 || !IsAskedByParent()) {
    return Refuse("tallowin-helper is started by the programs of Tallowin, not by hand.\n");
  }
  if (!Isolate()) return Refuse("tallowin-helper: the system does not let it shut itself in.\n");
  tallowin::helper::Request request{};
  if (!tallowin::helper::Receive(kParent, request))
    return Refuse("tallowin-helper: no request that it understands.\n");
  const auto outcome = tallowin::helper::Answer(request);
  if (!tallowin::helper::KeepNone()) return 2;
  return tallowin::helper::Send(kParent, outcome) ? 0 : 2;
}
