// Calls to the services on the system's message bus.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>
#include <chrono>
#include <optional>
#include <string>

namespace tallowin::platform::linux_host {

/// A connection of its own, for the time of a few calls: nothing is kept open for what is hardly
/// ever asked. Without a bus every call gives an error message.
class SystemBus {
 public:
  /// `address` in the bus's own form; empty for the system's bus. Connecting and all calls together
  /// take no longer than `limit`, whatever the bus and the services do.
  SystemBus(const std::string& address, std::chrono::milliseconds limit);
  SystemBus(const SystemBus&) = delete;
  SystemBus& operator=(const SystemBus&) = delete;
  ~SystemBus();

  /// True if somebody runs as this service now. Starts nothing.
  [[nodiscard]] bool Runs(const QString& service) const;

  /// Waits for the answer; no event is delivered meanwhile.
  [[nodiscard]] QDBusMessage Call(const QDBusMessage& call) const;

  /// The first value of the answer; nothing where there is none.
  [[nodiscard]] std::optional<QVariant> Ask(const QDBusMessage& call) const;

 private:
  std::chrono::steady_clock::time_point deadline_;
  QString name_;
  std::optional<QDBusConnection> connection_;  ///< none if it could not be had in time
};

}  // namespace tallowin::platform::linux_host
