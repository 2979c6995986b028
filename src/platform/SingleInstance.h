// One running program for each user.
#pragma once

namespace tallowin::platform {

class SingleInstance {
 public:
  virtual ~SingleInstance() = default;

  /// True for the first program of this user that asks, until that program's process ends, however
  /// it ends. Desktop and terminal program count as one. Where this cannot be found out, true.
  [[nodiscard]] virtual bool Claim() = 0;
};

}  // namespace tallowin::platform
