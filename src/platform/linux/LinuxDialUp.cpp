#include "platform/linux/LinuxDialUp.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QStringList>
#include <QVariant>
#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/RunTimeError.h"
#include "platform/linux/SystemBus.h"

namespace tallowin::platform::linux_host {

namespace {

constexpr std::chrono::seconds kLimit{3};
constexpr const char* kManager = "org.freedesktop.NetworkManager";
constexpr const char* kManagerPath = "/org/freedesktop/NetworkManager";

/// Nothing if it cannot be had.
std::optional<QVariant> Property(const SystemBus& bus, const QString& path,
                                 const QString& interface, const QString& name) {
  auto get =
      QDBusMessage::createMethodCall(kManager, path, "org.freedesktop.DBus.Properties", "Get");
  get << interface << name;
  const QDBusMessage reply = bus.Call(get, kLimit);
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
  return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

QString LinkText(const SystemBus& bus, const QString& path, const char* name) {
  const QString interface = QString(kManager) + ".Connection.Active";
  return Property(bus, path, interface, name).value_or(QVariant()).toString();
}

bool IsDialled(const QString& type) {
  static const QStringList kDialled{"gsm", "cdma", "ppp", "pppoe", "serial"};
  return kDialled.contains(type);
}

}  // namespace

RasResult LinuxDialUp::RasEnumConnections(std::span<RasConnection> connections,
                                          std::size_t& count) {
  count = 0;
  const SystemBus bus(busAddress_);
  if (!bus.Runs(kManager)) throw RunTimeError(error::kFileNotFound, "File not found");
  const auto active = Property(bus, kManagerPath, kManager, "ActiveConnections");
  if (!active) return ras::kEnumerationFailed;
  for (const QDBusObjectPath& path : qdbus_cast<QList<QDBusObjectPath>>(*active)) {
    // One that has gone meanwhile has no type any more.
    if (!IsDialled(LinkText(bus, path.path(), "Type"))) continue;
    if (count < connections.size()) {
      connections[count] = {.hRasConn = path.path().toStdString(),
                            .szEntryName = LinkText(bus, path.path(), "Id").toStdString()};
    }
    ++count;
  }
  return count > connections.size() ? ras::kBufferTooSmall : ras::kSuccess;
}

RasResult LinuxDialUp::RasHangUp(const RasConnection& connection) {
  auto deactivate =
      QDBusMessage::createMethodCall(kManager, kManagerPath, kManager, "DeactivateConnection");
  deactivate << QVariant::fromValue(QDBusObjectPath(QString::fromStdString(connection.hRasConn)));
  const SystemBus bus(busAddress_);
  const bool dropped = bus.Call(deactivate, kLimit).type() == QDBusMessage::ReplyMessage;
  return dropped ? ras::kSuccess : ras::kNoConnection;
}

}  // namespace tallowin::platform::linux_host
