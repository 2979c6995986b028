// Sounds, played to the user.
#pragma once

#include <string_view>

namespace tallowin::platform {

class Sound {
 public:
  virtual ~Sound() = default;

  /// Starts to play the file, a full path, and returns; the sound goes on behind the call. No other
  /// sound takes the place of one that cannot be played: where the file is missing or is no sound,
  /// or the host has nothing to play it with, it stays silent. False tells of that where it is
  /// known at once.
  virtual bool PlaySound(std::string_view file) = 0;

  /// The short sound by which the desktop tells of a wrong key. Like the above in all else.
  virtual void Beep() = 0;
};

}  // namespace tallowin::platform
