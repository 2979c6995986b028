// Sound through libcanberra, the library for the sounds of desktop events.
#pragma once

#include <memory>

#include "platform/Sound.h"

namespace tallowin::platform::linux_host {

/// The library is loaded and a sound server is sought at the first sound: most runs never play one,
/// and the program also runs where there is no such library. A new sound ends the one before it, so
/// that a flood of callers does not pile them up.
class LinuxSound : public Sound {
 public:
  LinuxSound();
  LinuxSound(const LinuxSound&) = delete;
  LinuxSound& operator=(const LinuxSound&) = delete;
  ~LinuxSound() override;

  bool PlaySound(std::string_view file) override;
  void Beep() override;

 private:
  class Player;
  Player& LoadedPlayer();
  std::unique_ptr<Player> player_;
};

}  // namespace tallowin::platform::linux_host
