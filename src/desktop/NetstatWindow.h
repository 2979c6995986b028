// The window of the Internet statistics.
#pragma once

#include "analysis/Netstatfrm.h"
#include "desktop/FormWindow.h"

namespace tallowin::desktop {

class NetstatWindow : public FormWindow {
 public:
  NetstatWindow(analysis::Netstatfrm& form, platform::EventLoop& loop);

 private:
  [[nodiscard]] QWidget* MakeTables(analysis::Netstatfrm& form, QWidget* parent);
};

}  // namespace tallowin::desktop
