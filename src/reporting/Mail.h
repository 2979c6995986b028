// One mail by way of the mail library, and its outcome in the status log.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/StatusLog.h"
#include "platform/EventLoop.h"
#include "platform/Smtp.h"

namespace tallowin::reporting {

class Mail {
 public:
  Mail(platform::Smtp& smtp, core::StatusLog& log, platform::EventLoop& loop)
      : smtp_(smtp), log_(log), loop_(loop) {}

  /// Sends in a bracket of its own; the program stands still until that is over. Then events run
  /// once, before the outcome is logged. `form` is the name of the form that sends.
  void Send(std::string_view form, const platform::SmtpMail& mail);

 private:
  void Report(std::int16_t status);

  platform::Smtp& smtp_;
  core::StatusLog& log_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::reporting
