#include "platform/linux/PrivilegedHelper.h"

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/linux/WaitForInput.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;
using Outcome = PrivilegedHelper::Outcome;

constexpr std::chrono::seconds kPatienceWithHelper{3};
constexpr const char* kProgram = "tallowin-helper";

/// Ended and reaped when it is dropped.
class Child {
 public:
  explicit Child(pid_t process) : process_(process) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }

 private:
  pid_t process_;
};

/// 0, or a value of errno. `standardInput` becomes the program's; it gets no environment.
int Start(const std::string& program, int standardInput, pid_t& process) {
  std::string name = kProgram;
  const std::array<char*, 2> arguments{name.data(), nullptr};
  const std::array<char*, 1> environment{nullptr};
  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0) return ENOMEM;
  int error = posix_spawn_file_actions_adddup2(&actions, standardInput, STDIN_FILENO);
  if (error == 0) {
    error = posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(),
                        environment.data());
  }
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

FileDescriptor PassedSocket(msghdr& message) {
  FileDescriptor socket;
  for (auto* part = CMSG_FIRSTHDR(&message); part != nullptr; part = CMSG_NXTHDR(&message, part)) {
    if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) continue;
    int descriptor = -1;
    if (part->cmsg_len != CMSG_LEN(sizeof descriptor)) continue;
    std::memcpy(&descriptor, CMSG_DATA(part), sizeof descriptor);
    socket = FileDescriptor(descriptor);
  }
  return socket;
}

Outcome ReadReply(int from) {
  if (!WaitForInput(from, kPatienceWithHelper)) return {.error = ETIMEDOUT};
  helper::Reply reply{};
  iovec part{.iov_base = &reply, .iov_len = sizeof reply};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  const auto size = recvmsg(from, &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
  Outcome outcome{.error = reply.error, .socket = PassedSocket(message)};
  if (size != static_cast<ssize_t>(sizeof reply)) outcome.error = EPERM;
  return outcome;
}

}  // namespace

std::string PrivilegedHelper::FindProgram(const std::string& folderOfExecutable) {
  const fs::path beside = fs::path(folderOfExecutable) / kProgram;
  std::error_code error;
  if (fs::exists(beside, error)) return beside;
  return fs::path(folderOfExecutable).parent_path() / "libexec" / "tallowin" / kProgram;
}

Outcome PrivilegedHelper::Ask(const helper::Request& request) const {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return {.error = errno};
  }
  const FileDescriptor ours(ends[0]);
  FileDescriptor theirs(ends[1]);
  if (send(ours.Get(), &request, sizeof request, MSG_NOSIGNAL) < 0) return {.error = errno};
  pid_t process = 0;
  if (const int error = Start(program_, theirs.Get(), process)) return {.error = error};
  const Child child(process);
  // The end of the helper without a word is the end of the wait, too.
  theirs = FileDescriptor();
  return ReadReply(ours.Get());
}

Outcome PrivilegedHelper::BindTcp(int port) const {
  return Ask({.kind = helper::Kind::BindTcp, .port = static_cast<std::uint32_t>(port)});
}

Outcome PrivilegedHelper::OpenRawIcmp() const { return Ask({.kind = helper::Kind::RawIcmp}); }

int PrivilegedHelper::SetClock(std::chrono::system_clock::time_point time) const {
  using std::chrono::duration_cast;
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const auto rest = duration_cast<std::chrono::nanoseconds>(time - seconds);
  return Ask({.kind = helper::Kind::SetClock,
              .seconds = seconds.time_since_epoch().count(),
              .nanoseconds = rest.count()})
      .error;
}

}  // namespace tallowin::platform::linux_host
