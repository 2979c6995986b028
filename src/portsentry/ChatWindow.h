// The window in which the user talks to callers.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::portsentry {

/// One for all ports; the user talks to all chats at once. Controls only: what they do stands in
/// IntruderChat.
class ChatWindow : public forms::Form {
 public:
  ChatWindow() : Form("ChatWindow") { SetCaption("Chat With Hacker"); }

  forms::Frame Frame1{*this, "Frame1", "Chat"};
  forms::TextBox ChatBox{
      Frame1, "ChatBox", {.multiLine = true, .locked = true, .capacity = 4'000'000}};
  forms::TextBox SendBox{Frame1, "SendBox", {}};
  forms::Button SendButton{Frame1, "SendButton", "Send"};
  forms::Button EndButton{*this, "EndButton", "End Chat"};
};

}  // namespace tallowin::portsentry
