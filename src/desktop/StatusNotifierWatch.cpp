#include "desktop/StatusNotifierWatch.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <utility>

namespace tallowin::desktop {

namespace {

constexpr const char* kRegistrar = "org.kde.StatusNotifierWatcher";
constexpr const char* kRegistrarPath = "/StatusNotifierWatcher";
constexpr int kPatienceAtStart = 500;  // milliseconds: a service that hangs must not hold us up

QDBusMessage HostQuestion() {
  auto question = QDBusMessage::createMethodCall(kRegistrar, kRegistrarPath,
                                                 "org.freedesktop.DBus.Properties", "Get");
  question.setAutoStartService(false);
  question << QString(kRegistrar) << QString("IsStatusNotifierHostRegistered");
  return question;
}

bool SaysYes(const QDBusMessage& answer) {
  return answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty() &&
         answer.arguments().constFirst().value<QDBusVariant>().variant().toBool();
}

}  // namespace

StatusNotifierWatch::StatusNotifierWatch(std::function<void()> changed)
    : changed_(std::move(changed)),
      bus_(QDBusConnection::sessionBus()),
      serviceWatcher_(kRegistrar, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
  if (!bus_.isConnected()) return;
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, &StatusNotifierWatch::Ask);
  connect(&serviceWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, &soon_,
          [this] { soon_.start(); });
  for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    bus_.connect(kRegistrar, kRegistrarPath, kRegistrar, signal, &soon_, SLOT(start()));
  }
  host_ = SaysYes(bus_.call(HostQuestion(), QDBus::Block, kPatienceAtStart));
}

void StatusNotifierWatch::Ask() {
  question_ = std::make_unique<QDBusPendingCallWatcher>(bus_.asyncCall(HostQuestion()));
  connect(question_.get(), &QDBusPendingCallWatcher::finished, this,
          [this](const QDBusPendingCallWatcher* question) {
            const bool host = SaysYes(question->reply());
            if (std::exchange(host_, host) != host) changed_();
          });
}

}  // namespace tallowin::desktop
