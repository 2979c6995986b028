// Whether a panel takes icons as small windows of the X Window System.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace tallowin::desktop {

/// On other window systems there never is one.
class EmbedderWatch : public QAbstractNativeEventFilter {
 public:
  /// Looks at once; `changed` runs on each later change.
  explicit EmbedderWatch(std::function<void()> changed);
  ~EmbedderWatch() override;
  EmbedderWatch(const EmbedderWatch&) = delete;
  EmbedderWatch& operator=(const EmbedderWatch&) = delete;

  [[nodiscard]] bool Runs() const { return owner_ != 0; }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  [[nodiscard]] std::uint32_t FindOwner() const;
  void Look();

  std::function<void()> changed_;
  xcb_connection_t* connection_ = nullptr;
  std::uint32_t selection_ = 0;
  std::uint32_t manager_ = 0;
  std::uint32_t owner_ = 0;  ///< the window of the panel
  QTimer soon_;
};

}  // namespace tallowin::desktop
