// Keeps what the user was typing elsewhere from answering a question.
#pragma once

#include <QElapsedTimer>
#include <QMessageBox>

namespace tallowin::desktop {

/// A question may come up under the hands of somebody who is at work. While the guard lives, its
/// box takes
/// - no key until none has come for a moment, counted from the box's being shown or given the
///   keyboard; each key that comes too early starts that moment anew;
/// - no click right after it was shown;
/// - no bare letter ever, since those would press the button that has the letter underlined.
class AnswerGuard : public QObject {
 public:
  static constexpr int kQuietMilliseconds = 700;
  static constexpr int kClicklessMilliseconds = 400;

  explicit AnswerGuard(QMessageBox& box);

  /// Whether a key would be taken now.
  [[nodiscard]] bool Armed() const { return quiet_.hasExpired(kQuietMilliseconds); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool IsOfBox(const QObject* watched) const;
  [[nodiscard]] bool TakesKey(const QEvent& event);

  QMessageBox& box_;
  QElapsedTimer shown_;
  QElapsedTimer quiet_;
};

}  // namespace tallowin::desktop
