// Calls to the services on the system's message bus.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <chrono>
#include <string>

namespace tallowin::platform::linux_host {

/// A connection of its own, for the time of a few calls: nothing is kept open for what is hardly
/// ever asked. Without a bus every call gives an error message.
class SystemBus {
 public:
  /// `address` in the bus's own form; empty for the system's bus.
  explicit SystemBus(const std::string& address);
  SystemBus(const SystemBus&) = delete;
  SystemBus& operator=(const SystemBus&) = delete;
  ~SystemBus();

  /// True if somebody runs as this service now. Starts nothing.
  [[nodiscard]] bool Runs(const QString& service) const;

  /// Waits for the answer, at most this long; no event is delivered meanwhile.
  [[nodiscard]] QDBusMessage Call(const QDBusMessage& call, std::chrono::milliseconds limit) const;

 private:
  QDBusConnection connection_;
};

}  // namespace tallowin::platform::linux_host
