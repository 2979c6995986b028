// The window in which the user talks to callers.
#pragma once

#include "desktop/FormWindow.h"
#include "portsentry/ChatWindow.h"

namespace tallowin::desktop {

class ChatWindowView : public FormWindow {
 public:
  ChatWindowView(portsentry::ChatWindow& form, platform::EventLoop& loop);

 private:
  [[nodiscard]] QWidget* MakeChat(portsentry::ChatWindow& form, QWidget* parent);
};

}  // namespace tallowin::desktop
