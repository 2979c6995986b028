#include "platform/linux/LinuxSystemShutdown.h"

#include "platform/linux/SystemBus.h"

namespace tallowin::platform::linux_host {

namespace {

constexpr std::chrono::seconds kLimit{5};

}  // namespace

bool LinuxSystemShutdown::ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) {
  if ((flags & shutdown::kShutdown) == 0 || reserved != 0) return false;
  auto powerOff =
      QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                     "org.freedesktop.login1.Manager", "PowerOff");
  constexpr bool kAskForPassword = false;
  powerOff << kAskForPassword;
  const SystemBus bus(busAddress_);
  return bus.Call(powerOff, kLimit).type() == QDBusMessage::ReplyMessage;
}

}  // namespace tallowin::platform::linux_host
