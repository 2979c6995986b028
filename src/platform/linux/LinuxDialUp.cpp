#include "platform/linux/LinuxDialUp.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QMap>
#include <QStringList>
#include <QVariant>
#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/linux/SystemBus.h"

namespace tallowin::platform::linux_host {

namespace {

constexpr std::chrono::seconds kLimit{3};
constexpr const char* kManager = "org.freedesktop.NetworkManager";
constexpr const char* kManagerPath = "/org/freedesktop/NetworkManager";

QDBusMessage ManagerCall(const QString& path, const char* interface, const char* method) {
  return QDBusMessage::createMethodCall(kManager, path, interface, method);
}

/// Nothing if it cannot be had.
std::optional<QVariant> Property(const SystemBus& bus, const QString& path,
                                 const QString& interface, const char* name) {
  auto get = ManagerCall(path, "org.freedesktop.DBus.Properties", "Get");
  get << interface << name;
  const auto answer = bus.Ask(get);
  if (!answer) return {};
  return answer->value<QDBusVariant>().variant();
}

QVariant LinkProperty(const SystemBus& bus, const QString& path, const char* name) {
  const QString interface = QString(kManager) + ".Connection.Active";
  return Property(bus, path, interface, name).value_or(QVariant());
}

/// By Bluetooth a telephone is dialled, or it is the router of a small network: only the stored
/// settings of the link tell which.
bool DialsByBluetooth(const SystemBus& bus, const QString& path) {
  const auto stored = LinkProperty(bus, path, "Connection").value<QDBusObjectPath>().path();
  const auto settings = bus.Ask(
      ManagerCall(stored, "org.freedesktop.NetworkManager.Settings.Connection", "GetSettings"));
  if (!settings || settings->userType() != qMetaTypeId<QDBusArgument>()) return false;
  const auto argument = settings->value<QDBusArgument>();
  if (argument.currentSignature() != "a{sa{sv}}") return false;
  const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(argument);
  return groups.value("bluetooth").value("type").toString() == "dun";
}

bool IsDialled(const SystemBus& bus, const QString& path) {
  static const QStringList kDialled{"gsm", "cdma", "adsl", "ppp", "pppoe"};
  // One that has gone meanwhile has no type any more.
  const QString type = LinkProperty(bus, path, "Type").toString();
  return kDialled.contains(type) || (type == "bluetooth" && DialsByBluetooth(bus, path));
}

}  // namespace

RasResult LinuxDialUp::RasEnumConnections(std::span<RasConnection> connections,
                                          std::size_t& count) {
  count = 0;
  const SystemBus bus(busAddress_, kLimit);
  if (!bus.Runs(kManager)) return ras::kEnumerationFailed;
  const auto active = Property(bus, kManagerPath, kManager, "ActiveConnections");
  if (!active) return ras::kEnumerationFailed;
  for (const QDBusObjectPath& path : qdbus_cast<QList<QDBusObjectPath>>(*active)) {
    if (!IsDialled(bus, path.path())) continue;
    // A link whose name cannot be had is not one without a name, which may be hung up.
    const QVariant name = LinkProperty(bus, path.path(), "Id");
    if (!name.isValid()) continue;
    if (count < connections.size()) {
      connections[count] = {.hRasConn = path.path().toStdString(),
                            .szEntryName = name.toString().toStdString()};
    }
    ++count;
  }
  return count > connections.size() ? ras::kBufferTooSmall : ras::kSuccess;
}

RasResult LinuxDialUp::RasHangUp(const RasConnection& connection) {
  auto deactivate = ManagerCall(kManagerPath, kManager, "DeactivateConnection");
  deactivate << QVariant::fromValue(QDBusObjectPath(QString::fromStdString(connection.hRasConn)));
  const SystemBus bus(busAddress_, kLimit);
  const bool dropped = bus.Call(deactivate).type() == QDBusMessage::ReplyMessage;
  return dropped ? ras::kSuccess : ras::kNoConnection;
}

}  // namespace tallowin::platform::linux_host
