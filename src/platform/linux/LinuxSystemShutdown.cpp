#include "platform/linux/LinuxSystemShutdown.h"

#include "platform/linux/SystemBus.h"

namespace tallowin::platform::linux_host {

namespace {

constexpr std::chrono::seconds kLimit{5};

QDBusMessage ManagerCall(const char* method) {
  return QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                        "org.freedesktop.login1.Manager", method);
}

bool Succeeds(const SystemBus& bus, const QDBusMessage& call) {
  return bus.Call(call).type() == QDBusMessage::ReplyMessage;
}

}  // namespace

bool LinuxSystemShutdown::ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) {
  if ((flags & shutdown::kShutdown) == 0 || reserved != 0) return false;
  const SystemBus bus(busAddress_, kLimit);
  if ((flags & shutdown::kForce) != 0) {
    // A program that has asked the manager not to shut down makes the plain call fail for anybody
    // but root.
    constexpr qulonglong kSkipInhibitors = 1U << 4U;
    auto forced = ManagerCall("PowerOffWithFlags");
    forced << kSkipInhibitors;
    if (Succeeds(bus, forced)) return true;
  }
  // Managers before version 255 do not know that flag, and newer ones may keep it from ordinary
  // users: there, whoever holds the machine up has the last word.
  constexpr bool kAskForPassword = false;
  auto powerOff = ManagerCall("PowerOff");
  powerOff << kAskForPassword;
  return Succeeds(bus, powerOff);
}

}  // namespace tallowin::platform::linux_host
