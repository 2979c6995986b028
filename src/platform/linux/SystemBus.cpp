#include "platform/linux/SystemBus.h"

#include <QDBusError>
#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <thread>

namespace tallowin::platform::linux_host {

namespace {

using std::chrono::steady_clock;

/// The library keeps connections by name, and one that was given up may still be there.
QString NewName() {
  static std::atomic<unsigned> count = 0;
  return QString("tallowin-system-bus-%1").arg(++count);
}

QDBusConnection Connect(const std::string& address, const QString& name) {
  if (address.empty()) return QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
  return QDBusConnection::connectToBus(QString::fromStdString(address), name);
}

/// The library connects without a limit of its own, and a bus that takes callers and says nothing
/// would hold the program up for half a minute. So a thread waits for it, and is left alone when it
/// takes too long; whoever comes second finds that the other has been there. Until that thread is
/// through, the library holds up everybody else who wants a connection.
std::optional<QDBusConnection> ConnectWithin(std::chrono::milliseconds limit,
                                             const std::string& address, const QString& name) {
  const auto decided = std::make_shared<std::atomic_flag>();
  std::promise<QDBusConnection> promise;
  auto connected = promise.get_future();
  std::thread thread([decided, address, name, promise = std::move(promise)]() mutable {
    promise.set_value(Connect(address, name));
    if (decided->test_and_set()) QDBusConnection::disconnectFromBus(name);
  });
  const bool inTime = connected.wait_for(limit) == std::future_status::ready;
  if (!inTime && !decided->test_and_set()) {
    thread.detach();
    return {};
  }
  // The end of a thread takes parts of the library with it, which must not meet the program's end.
  thread.join();
  return connected.get();
}

}  // namespace

SystemBus::SystemBus(const std::string& address, std::chrono::milliseconds limit)
    : deadline_(steady_clock::now() + limit),
      name_(NewName()),
      connection_(ConnectWithin(limit, address, name_)) {}

SystemBus::~SystemBus() {
  if (connection_) QDBusConnection::disconnectFromBus(name_);
}

bool SystemBus::Runs(const QString& service) const {
  constexpr const char* kBus = "org.freedesktop.DBus";
  auto hasOwner =
      QDBusMessage::createMethodCall(kBus, "/org/freedesktop/DBus", kBus, "NameHasOwner");
  hasOwner << service;
  return Ask(hasOwner).value_or(QVariant()).toBool();
}

QDBusMessage SystemBus::Call(const QDBusMessage& call) const {
  if (!connection_) return QDBusMessage::createError(QDBusError::NoReply, "no answer from the bus");
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(deadline_ - steady_clock::now()).count();
  return connection_->call(call, QDBus::Block, std::max(1, static_cast<int>(left)));
}

std::optional<QVariant> SystemBus::Ask(const QDBusMessage& call) const {
  const QDBusMessage reply = Call(call);
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
  return reply.arguments().constFirst();
}

}  // namespace tallowin::platform::linux_host
