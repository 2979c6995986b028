#include "platform/linux/SystemBus.h"

#include <QDBusConnectionInterface>

namespace tallowin::platform::linux_host {

namespace {

constexpr const char* kName = "tallowin-system-bus";

QDBusConnection Connect(const std::string& address) {
  if (address.empty()) return QDBusConnection::connectToBus(QDBusConnection::SystemBus, kName);
  return QDBusConnection::connectToBus(QString::fromStdString(address), kName);
}

}  // namespace

SystemBus::SystemBus(const std::string& address) : connection_(Connect(address)) {}

SystemBus::~SystemBus() { QDBusConnection::disconnectFromBus(kName); }

bool SystemBus::Runs(const QString& service) const {
  return connection_.isConnected() && connection_.interface()->isServiceRegistered(service);
}

QDBusMessage SystemBus::Call(const QDBusMessage& call, std::chrono::milliseconds limit) const {
  return connection_.call(call, QDBus::Block, static_cast<int>(limit.count()));
}

}  // namespace tallowin::platform::linux_host
