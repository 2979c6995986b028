#include "desktop/FormWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWindow>

#include "desktop/Text.h"

namespace tallowin::desktop {

using forms::Property;
using forms::WindowState;

namespace {

/// Without the buttons to minimise and maximise.
constexpr Qt::WindowFlags kModalFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                        Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

/// While another program is in front no window of ours is the active one; without an owner the
/// modal one could come to lie behind the main window, which takes no click then.
QWidget* OwnerOf(const QWidget& modal) {
  QWidget* active = QApplication::activeWindow();
  if (active != nullptr && active != &modal) return active;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == "MainForm" && window->isVisible() && !window->isMinimized()) {
      return window;
    }
  }
  return nullptr;
}

}  // namespace

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

void FormWindow::SetWhenHidden(WhenHidden whenHidden) {
  whenHidden_ = whenHidden;
  if (form_.Visible()) return;
  const QScopedValueRollback<bool> applying(applying_, true);
  ShowAsForm();
}

void FormWindow::ResizeWithinScreen(QSize wanted) {
  constexpr QSize kFrame{16, 48};
  resize(wanted.boundedTo(screen()->availableSize() - kFrame));
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
  const bool shows =
      change.property == Property::Visible || change.property == Property::WindowState;
  if (everything || (shows && !takingBack_)) ShowAsForm();
  if (change.property == Property::TopMost || (everything && form_.TopMost())) {
    SetTopMost(form_.TopMost());
  }
  if (change.property == Property::Focus) BringToFront();
  if (change.property == Property::MousePointer) {
    const bool busy = form_.MousePointer() == forms::MousePointer::Hourglass;
    busy ? setCursor(Qt::WaitCursor) : unsetCursor();
  }
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
  if (appears) TakeModality();
  if (form_.State() == WindowState::Minimised) {
    showMinimized();
  } else if (form_.State() == WindowState::Maximised) {
    showMaximized();
  } else {
    showNormal();
  }
  if (appears && whenShown_ == WhenShown::LeaveKeyboard) BringToFront();
}

void FormWindow::TakeModality() {
  const bool modal = form_.Modal();
  const bool changes = modal != isModal();
  if (!modal && !changes) return;
  if (changes) {
    setWindowFlags(modal ? kModalFlags : Qt::WindowFlags(Qt::Window));
    setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
  }
  (void)winId();  // there is no window handle before
  const QWidget* owner = modal ? OwnerOf(*this) : nullptr;
  windowHandle()->setTransientParent(owner == nullptr ? nullptr : owner->windowHandle());
  if (changes && owner != nullptr) move(owner->frameGeometry().center() - rect().center());
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

void FormWindow::keyPressEvent(QKeyEvent* event) {
  QMainWindow::keyPressEvent(event);
  if (form_.Modal() && event->matches(QKeySequence::Cancel)) close();
}

void FormWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (applying_) return;
  if (event->type() == QEvent::WindowStateChange) TakeStateOfWindow();
  // Where the system does not tell of the return from the task list, the window is active at least.
  // A window that hides may still be told late that it has come up.
  const bool waits = whenHidden_ == WhenHidden::WaitMinimised && !form_.Visible();
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && waits) TakeBack();
}

void FormWindow::TakeStateOfWindow() {
  if (isMinimized()) {
    if (!form_.Visible()) return;
    // With this window an open dialog of its own would go, and nothing would bring the two back.
    const QWidget* dialog = QApplication::activeModalWidget();
    if (dialog != nullptr && dialog != this) return showNormal();
    loop_.Deliver([this] { form_.SetState(WindowState::Minimised); });
  } else if (whenHidden_ == WhenHidden::WaitMinimised || form_.Visible()) {
    TakeBack();
  }
}

void FormWindow::TakeBack() {
  const auto state = isMaximized() ? WindowState::Maximised : WindowState::Normal;
  if (form_.Visible() && form_.State() == state) return;
  loop_.Deliver([this, state] {
    // The state alone, of a form that is hidden still, would put the window back into the task
    // list.
    {
      const QScopedValueRollback<bool> takingBack(takingBack_, true);
      form_.SetState(state);
      form_.SetVisible(true);
    }
    const QScopedValueRollback<bool> applying(applying_, true);
    ShowAsForm();
  });
}

}  // namespace tallowin::desktop
