#include "desktop/ToolBarView.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "desktop/Text.h"

namespace tallowin::desktop {

ToolBarView::ToolBarView(forms::ToolBar& control, Binder& binder, std::span<const ToolLook> looks,
                         QWidget* parent)
    : QWidget(parent), looks_(looks) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins({});
  for (const auto& button : control.Buttons()) AddButton(control, button, binder);
}

void ToolBarView::AddButton(forms::ToolBar& control, const forms::ToolBarButton& button,
                            Binder& binder) {
  auto* widget = new QToolButton(this);
  widget->setObjectName(QString::fromStdString(button.Key));
  widget->setText(ToQString(button.Caption));
  widget->setToolTip(LookOf(button.Key).toolTip);
  widget->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  widget->setFocusPolicy(Qt::StrongFocus);
  layout()->addWidget(widget);
  connect(widget, &QToolButton::clicked, widget,
          [&control, &button, &binder] { binder.Deliver([&] { control.Click(button); }); });
}

ToolLook ToolBarView::LookOf(std::string_view key) const {
  const auto found = std::find_if(looks_.begin(), looks_.end(),
                                  [&](const ToolLook& look) { return look.key == key; });
  return found == looks_.end() ? ToolLook{} : *found;
}

void ToolBarView::HoldKeyboard() {
  QWidget* holder = window()->focusWidget();
  if (holder == nullptr || !isAncestorOf(holder)) return;
  hadKeyboard_ = holder;
  holder->clearFocus();
}

void ToolBarView::GiveKeyboardBack() {
  if (hadKeyboard_ != nullptr && window()->focusWidget() == nullptr) hadKeyboard_->setFocus();
  hadKeyboard_ = nullptr;
}

void ToolBarView::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  // A search of the icon theme takes long, and the window may wait for days before it is seen.
  if (std::exchange(iconsWanted_, false)) QTimer::singleShot(0, this, [this] { FindIcons(); });
}

void ToolBarView::FindIcons() {
  const auto iconOf = [this](const QToolButton* button) {
    return QIcon::fromTheme(LookOf(button->objectName().toStdString()).icon);
  };
  const auto buttons = findChildren<QToolButton*>();
  // A theme that has some of them only would make the others look forgotten.
  if (std::ranges::any_of(buttons, [&](auto* button) { return iconOf(button).isNull(); })) return;
  for (auto* button : buttons) button->setIcon(iconOf(button));
}

}  // namespace tallowin::desktop
