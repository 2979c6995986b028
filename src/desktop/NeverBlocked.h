// Keeps a window in reach of the mouse while modal windows are open.
#pragma once

#include <QObject>
#include <QWindow>

namespace tallowin::desktop {

/// A modal window blocks all others but its own children. The icon in a panel, which is a window of
/// this program there, has to answer all the same: so it becomes a child of each that blocks it.
class NeverBlocked : public QObject {
 public:
  /// `window` becomes this object's parent.
  explicit NeverBlocked(QWindow& window);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWindow& window_;
};

}  // namespace tallowin::desktop
