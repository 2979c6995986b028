// The window that tells whether there is a newer version.
#pragma once

#include "desktop/FormWindow.h"
#include "reporting/AutoUpdate.h"

class QHBoxLayout;
class QLabel;

namespace tallowin::desktop {

class AutoUpdateWindow : public FormWindow {
 public:
  AutoUpdateWindow(reporting::AutoUpdate& form, platform::EventLoop& loop);

 private:
  [[nodiscard]] QHBoxLayout* MakeVersions(reporting::AutoUpdate& form, QWidget* parent);
  /// A text of the server, which may be of any length.
  void BindValue(forms::Label& control, QLabel& label);
};

}  // namespace tallowin::desktop
