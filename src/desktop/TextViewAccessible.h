// What screen readers are told of a text view.
#pragma once

#include <QAccessibleWidget>

namespace tallowin::desktop {

class TextView;

/// Offers the rows on show, as terminals do: the whole log would be far too long to be read out,
/// and to be counted through at each question.
class TextViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit TextViewAccessible(TextView& view);

  /// For QAccessible::installFactory: null for any other kind of object.
  static QAccessibleInterface* Make(const QString& className, QObject* object);

  void* interface_cast(QAccessible::InterfaceType type) override;
  [[nodiscard]] QAccessible::State state() const override;
  [[nodiscard]] QString text(QAccessible::Text kind) const override;

  void selection(int index, int* start, int* end) const override;
  [[nodiscard]] int selectionCount() const override { return 0; }
  void addSelection(int /*start*/, int /*end*/) override {}
  void removeSelection(int /*index*/) override {}
  void setSelection(int /*index*/, int /*start*/, int /*end*/) override {}
  [[nodiscard]] int cursorPosition() const override { return characterCount(); }
  void setCursorPosition(int /*position*/) override {}
  [[nodiscard]] QString text(int start, int end) const override;
  [[nodiscard]] int characterCount() const override;
  [[nodiscard]] QRect characterRect(int /*offset*/) const override { return {}; }
  [[nodiscard]] int offsetAtPoint(const QPoint& /*point*/) const override { return -1; }
  void scrollToSubstring(int /*start*/, int /*end*/) override {}
  QString attributes(int offset, int* start, int* end) const override;

 private:
  TextView& view_;
};

}  // namespace tallowin::desktop
