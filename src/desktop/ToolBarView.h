// The buttons of a tool bar, side by side.
#pragma once

#include <QPointer>
#include <QWidget>
#include <span>
#include <string_view>

#include "desktop/Binder.h"

namespace tallowin::desktop {

/// How a button looks, besides what the control says.
struct ToolLook {
  std::string_view key;
  const char* icon = "";     ///< of the icon theme; none where the theme has none
  const char* toolTip = "";  ///< what the button does, in a sentence
};

/// Buttons that take the keyboard, unlike those of Qt's own tool bars. Each has its key as its
/// object name.
class ToolBarView : public QWidget {
 public:
  ToolBarView(forms::ToolBar& control, Binder& binder, std::span<const ToolLook> looks,
              QWidget* parent);

  /// Before the bar is disabled and after it is enabled again: Qt would give the keyboard to the
  /// next widget, and it would stay there. Meanwhile nobody has it, unless the user gives it away.
  void HoldKeyboard();
  void GiveKeyboardBack();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void AddButton(forms::ToolBar& control, const forms::ToolBarButton& button, Binder& binder);
  [[nodiscard]] ToolLook LookOf(std::string_view key) const;
  void FindIcons();

  std::span<const ToolLook> looks_;
  bool iconsWanted_ = true;
  QPointer<QWidget> hadKeyboard_;
};

}  // namespace tallowin::desktop
