// The three ways in which a routine takes run-time errors, each visible at a glance.
//
//   1. Resume on error: a failing statement is passed over and the next one runs, also where the
//      failure lay inside a called routine without a handler of its own:
//
//          ResumeOnError statement;
//          statement([&] { listen.Close(); });
//          statement([&] { listen.Listen(); });
//
//      Given a handler, ResumeOnError tells it of each failure before the next statement runs.
//   2. One handler for the routine: an ordinary try and catch (const platform::RunTimeError&).
//   3. None: no code at all. The error travels to the caller's handler; where there is none it ends
//      the program with a message box (tallowin/Tallowin.cpp).
#pragma once

#include <functional>
#include <utility>

#include "platform/RunTimeError.h"

namespace tallowin::core {

class ResumeOnError {
 public:
  using Handler = std::function<void(const platform::RunTimeError&)>;

  ResumeOnError() = default;
  explicit ResumeOnError(Handler handler) : handler_(std::move(handler)) {}

  /// Runs one statement; false if it failed.
  template <typename Statement>
  bool operator()(Statement&& statement) {
    try {
      std::forward<Statement>(statement)();
      return true;
    } catch (const std::exception& failure) {
      const platform::RunTimeError error = platform::AsRunTimeError(failure);
      number_ = error.Number();
      if (handler_) handler_(error);
      return false;
    }
  }

  /// The number of the newest failure. It stays, as nothing clears it; 0 if nothing has failed.
  [[nodiscard]] int ErrorNumber() const { return number_; }

 private:
  Handler handler_;
  int number_ = 0;
};

}  // namespace tallowin::core
