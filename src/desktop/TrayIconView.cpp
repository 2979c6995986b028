#include "desktop/TrayIconView.h"

#include <QApplication>

#include "desktop/MainWindow.h"
#include "desktop/NeverBlocked.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace mouse = forms::mouse;

TrayIconView::TrayIconView(forms::TaskBar& taskBar, platform::EventLoop& loop)
    : taskBar_(taskBar), loop_(loop), binder_(loop), area_([this] { Update(); }) {
  taskBar_.OnChange = [this] { Update(); };
  Update();
}

TrayIconView::~TrayIconView() { taskBar_.OnChange = nullptr; }

bool TrayIconView::HiddenWaitInTaskList() const {
  return icon_ == nullptr || taskBar_.TaskVisible();
}

void TrayIconView::Update() {
  const auto kind = area_.Present();
  if (!taskBar_.Icon() || kind == NotificationArea::Kind::None) {
    icon_.reset();
  } else if (icon_ == nullptr) {
    area_.Settle();
    icon_ = MakeIcon(kind);
    icon_->show();
    if (kind == NotificationArea::Kind::Embedded) KeepInReach();
  }
  if (OnChange) OnChange();
}

std::unique_ptr<QSystemTrayIcon> TrayIconView::MakeIcon(NotificationArea::Kind kind) {
  auto icon = std::make_unique<QSystemTrayIcon>(QApplication::windowIcon());
  icon->setToolTip(ToToolTip(taskBar_.Icon()->szTip.data()));
  if (kind == NotificationArea::Kind::Announced) {
    if (menu_ == nullptr) MakeMenu();
    icon->setContextMenu(menu_.get());
  }
  QObject::connect(icon.get(), &QSystemTrayIcon::activated, icon.get(),
                   [this](QSystemTrayIcon::ActivationReason reason) { Activated(reason); });
  return icon;
}

void TrayIconView::KeepInReach() {
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    if (!widget->inherits("QSystemTrayIconSys") || widget->windowHandle() == nullptr) continue;
    // It goes with its window.
    new NeverBlocked(*widget->windowHandle());
  }
}

void TrayIconView::MakeMenu() {
  menu_ = std::make_unique<QMenu>();
  if (taskBar_.IconMenu() == nullptr) return;
  menuBinder_ = std::make_unique<MenuBinder>(binder_, *taskBar_.IconMenuForm(), MainMenuLooks(),
                                             [this](forms::MenuItem& item) { Chosen(item); });
  menuBinder_->FillPopup(*menu_, *taskBar_.IconMenu());
}

/// The panel's process waits for an answer to each choice.
void TrayIconView::Chosen(forms::MenuItem& item) {
  loop_.Post([this, &item] { taskBar_.ChooseFromIconMenu(item); });
}

void TrayIconView::Activated(QSystemTrayIcon::ActivationReason reason) {
  // A click on the icon puts the menu away where the panel's windows do not.
  if (QWidget* open = QApplication::activePopupWidget()) open->close();
  std::uint32_t message = 0;
  switch (reason) {
    case QSystemTrayIcon::Trigger:
      message = IsSecondOfTwo() ? mouse::kLeftDoubleClick : mouse::kLeftButtonUp;
      break;
    case QSystemTrayIcon::DoubleClick:
      sinceActivation_.invalidate();
      message = mouse::kLeftDoubleClick;
      break;
    case QSystemTrayIcon::Context:
      message = mouse::kRightButtonUp;
      break;
    case QSystemTrayIcon::MiddleClick:
      message = mouse::kMiddleButtonUp;
      break;
    case QSystemTrayIcon::Unknown:
      return;
  }
  // Where the bus told of it, the panel waits for an answer, and must not until a menu is closed.
  loop_.Post([this, message] { taskBar_.Mouse(message); });
}

/// Many panels tell of single activations only.
bool TrayIconView::IsSecondOfTwo() {
  const bool second = sinceActivation_.isValid() &&
                      !sinceActivation_.hasExpired(QApplication::doubleClickInterval());
  if (second) {
    sinceActivation_.invalidate();
  } else {
    sinceActivation_.start();
  }
  return second;
}

}  // namespace tallowin::desktop
