#include "desktop/TextViewAccessible.h"

#include "desktop/TextView.h"

namespace tallowin::desktop {

TextViewAccessible::TextViewAccessible(TextView& view)
    : QAccessibleWidget(&view, QAccessible::EditableText), view_(view) {}

QAccessibleInterface* TextViewAccessible::Make(const QString& /*className*/, QObject* object) {
  auto* view = dynamic_cast<TextView*>(object);
  return view == nullptr ? nullptr : new TextViewAccessible(*view);
}

void* TextViewAccessible::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QAccessible::State TextViewAccessible::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = true;
  state.multiLine = true;
  return state;
}

QString TextViewAccessible::text(QAccessible::Text kind) const {
  return kind == QAccessible::Value ? view_.VisibleText() : QAccessibleWidget::text(kind);
}

void TextViewAccessible::selection(int /*index*/, int* start, int* end) const { *start = *end = 0; }

QString TextViewAccessible::text(int start, int end) const {
  return view_.VisibleText().mid(start, end - start);
}

int TextViewAccessible::characterCount() const {
  return static_cast<int>(view_.VisibleText().size());
}

QString TextViewAccessible::attributes(int /*offset*/, int* start, int* end) const {
  *start = 0;
  *end = characterCount();
  return {};
}

}  // namespace tallowin::desktop
