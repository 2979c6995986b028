// The about box.
#pragma once

#include "core/FrmAbout.h"
#include "desktop/FormWindow.h"

namespace tallowin::desktop {

class AboutView : public FormWindow {
 public:
  AboutView(core::FrmAbout& form, platform::EventLoop& loop);

 private:
  [[nodiscard]] QWidget* MakeTexts(core::FrmAbout& form, QWidget* parent);
};

}  // namespace tallowin::desktop
