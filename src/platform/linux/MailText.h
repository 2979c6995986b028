// A mail as it goes over the wire: headers, an empty line, the text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/MailAddress.h"

namespace tallowin::platform::linux_host {

struct MailContent {
  MailAddress from;
  std::vector<MailAddress> to;
  std::string subject;
  std::string text;
};

/// Subject and addresses must be plain lines (IsPlainLine). The text goes out as it is where each
/// server on the way can carry it, ASCII in lines of up to 998 bytes, so that the simplest of
/// readers shows it; otherwise as base64. Date and Message-ID are made anew at each call.
[[nodiscard]] std::string MailText(const MailContent& content);

}  // namespace tallowin::platform::linux_host
