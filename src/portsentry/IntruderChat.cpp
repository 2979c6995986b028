#include "portsentry/IntruderChat.h"

namespace tallowin::portsentry {

IntruderChat::IntruderChat(ChatWindow& window, PortSockets& sockets, core::SettingsStore& settings,
                           platform::EventLoop& loop)
    : window_(window), sockets_(sockets), settings_(settings), loop_(loop) {
  window_.ChatBox.OnChange = [this] { window_.ChatBox.SetSelStart(window_.ChatBox.Text().size()); };
  window_.SendButton.OnClick = [this] { Send(); };
  window_.EndButton.OnClick = [this] { EndAll(); };
}

bool IntruderChat::IsChatting(int slot) const {
  return sockets_.Accept(slot).State() == platform::SocketState::Connected &&
         settings_.PortSettings(slot).Action == core::action::kChat;
}

void IntruderChat::Incoming(int port, std::string_view data) {
  window_.ChatBox.AppendText("Port " + std::to_string(port) + ": " + std::string(data) + "\r\n");
}

void IntruderChat::Send() {
  core::ResumeOnError statement;
  // The echo comes first and says nothing about whether anybody is there to hear it.
  statement([&] { window_.ChatBox.AppendText("Host: " + window_.SendBox.Text() + "\r\n"); });
  for (int slot = core::kFirstSlot; slot <= core::kLastSlot; ++slot) {
    // A slot without a socket counts as chatting: its send fails in turn, and nothing has happened.
    bool chatting = true;
    statement([&] { chatting = IsChatting(slot); });
    if (!chatting) continue;
    statement([&] { sockets_.Accept(slot).SendData("Host: " + window_.SendBox.Text() + "\r\n"); });
    statement([&] { loop_.DoEvents(); });
  }
  statement([&] { window_.SendBox.SetText(""); });
  statement([&] { window_.SendBox.SetFocus(); });
}

void IntruderChat::EndAll() {
  core::ResumeOnError statement;
  for (int slot = core::kFirstSlot; slot <= core::kLastSlot; ++slot) {
    statement([&] {
      if (IsChatting(slot)) sockets_.Accept(slot).Close();
    });
  }
  statement([&] { window_.Hide(); });
}

void IntruderChat::CallerHasGone(core::ResumeOnError& statement) {
  bool another = false;
  for (int slot = core::kFirstSlot; slot <= core::kLastSlot; ++slot) {
    statement([&] {
      // The number of the newest failure stays: once the look has met a slot without a socket, no
      // chat behind it counts. The window goes away then, and that chat goes on out of sight.
      if (IsChatting(slot) && statement.ErrorNumber() == 0) another = true;
    });
  }
  if (!another) statement([&] { window_.Hide(); });
}

}  // namespace tallowin::portsentry
