// Questions as message boxes.
#pragma once

#include "forms/Questions.h"
#include "platform/EventLoop.h"

namespace tallowin::desktop {

/// The box waits in the program's own loop, so that the end of the program ends the question too.
/// Where Yes and No are offered, No is what Enter and Escape choose.
class DesktopQuestions : public forms::Questions {
 public:
  explicit DesktopQuestions(platform::EventLoop& loop) : loop_(loop) {}

  forms::Answer MsgBox(const std::string& text, forms::MessageBoxStyle style,
                       const std::string& title) override;

 private:
  platform::EventLoop& loop_;
};

}  // namespace tallowin::desktop
