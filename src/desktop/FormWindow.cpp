#include "desktop/FormWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScopedValueRollback>
#include <QWindow>

#include "desktop/Text.h"

namespace tallowin::desktop {

using forms::Property;
using forms::WindowState;

FormWindow::FormWindow(forms::Form& form, platform::EventLoop& loop, WhenHidden whenHidden,
                       WhenShown whenShown)
    : form_(form), loop_(loop), whenHidden_(whenHidden), whenShown_(whenShown), binder_(loop) {
  setObjectName(QString::fromStdString(form.Name()));
  setAttribute(Qt::WA_ShowWithoutActivating, whenShown == WhenShown::LeaveKeyboard);
  setContextMenuPolicy(Qt::NoContextMenu);
}

void FormWindow::Follow() {
  binder_.Observe(form_, [this](const forms::Change& change) { Apply(change); });
}

int FormWindow::HeightOfForm() const {
  constexpr int kTwipsPerInch = 1440;
  return form_.Height() * logicalDpiY() / kTwipsPerInch;
}

void FormWindow::Apply(const forms::Change& change) {
  const QScopedValueRollback<bool> applying(applying_, true);
  const bool everything = change.property == Property::Everything;
  if (everything || change.property == Property::Caption) {
    setWindowTitle(ToWindowTitle(form_.Caption()));
  }
  if (everything || change.property == Property::Visible ||
      change.property == Property::WindowState) {
    ShowAsForm();
  }
  if (change.property == Property::TopMost || (everything && form_.TopMost())) {
    SetTopMost(form_.TopMost());
  }
  if (change.property == Property::Focus) BringToFront();
}

void FormWindow::ShowAsForm() {
  if (!form_.Visible()) {
    if (whenHidden_ == WhenHidden::Hide) {
      hide();
    } else if (!isMinimized() || !isVisible()) {
      showMinimized();
    }
    return;
  }
  const bool appears = !isVisible();
  if (form_.State() == WindowState::Minimised) {
    showMinimized();
  } else if (form_.State() == WindowState::Maximised) {
    showMaximized();
  } else {
    showNormal();
  }
  if (appears && whenShown_ == WhenShown::LeaveKeyboard) BringToFront();
}

void FormWindow::BringToFront() {
  raise();
  if (whenShown_ == WhenShown::TakeKeyboard) {
    activateWindow();
  } else {
    QApplication::alert(this);
  }
}

void FormWindow::SetTopMost(bool topMost) {
  (void)winId();  // there is no window handle before
  windowHandle()->setFlag(Qt::WindowStaysOnTopHint, topMost);
  if (!topMost && form_.Visible()) BringToFront();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (loop_.Ended() || qGuiApp->isSavingSession()) return;
  event->ignore();
  loop_.Deliver([this] { form_.PressCloseBox(); });
}

void FormWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (applying_) return;
  if (event->type() == QEvent::WindowStateChange) TakeStateOfWindow();
  // Where the system does not tell of the return from the task list, the window is active at least.
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && !form_.Visible()) TakeBack();
}

void FormWindow::TakeStateOfWindow() {
  if (isMinimized()) {
    if (!form_.Visible()) return;
    loop_.Deliver([this] { form_.SetState(WindowState::Minimised); });
  } else if (whenHidden_ == WhenHidden::WaitMinimised || form_.Visible()) {
    TakeBack();
  }
}

void FormWindow::TakeBack() {
  const auto state = isMaximized() ? WindowState::Maximised : WindowState::Normal;
  if (form_.Visible() && form_.State() == state) return;
  loop_.Deliver([this, state] {
    form_.SetState(state);
    form_.SetVisible(true);
  });
}

}  // namespace tallowin::desktop
