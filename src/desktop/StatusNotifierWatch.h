// Whether a panel shows the icons that programs announce on the session's message bus.
#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

namespace tallowin::desktop {

class StatusNotifierWatch : public QObject {
 public:
  /// Looks at once; `changed` runs on each later change.
  explicit StatusNotifierWatch(std::function<void()> changed);

  /// Icons are registered, and shown by somebody.
  [[nodiscard]] bool HostRuns() const { return host_; }

 private:
  void Ask();

  std::function<void()> changed_;
  QDBusConnection bus_;
  QDBusServiceWatcher serviceWatcher_;
  /// Collects the signals that come together, and is what they can be connected to.
  QTimer soon_;
  std::unique_ptr<QDBusPendingCallWatcher> question_;
  bool host_ = false;
};

}  // namespace tallowin::desktop
