// Fetching a whole page of the web.
#pragma once

#include <string>

#include "platform/EventLoop.h"
#include "platform/Http.h"

namespace tallowin::reporting {

class HTTPModule {
 public:
  HTTPModule(platform::Http& http, platform::EventLoop& loop) : http_(http), loop_(loop) {}

  /// The whole body. What cannot be opened is empty, and a fetch that fails half-way gives what
  /// came until then. Events run meanwhile.
  [[nodiscard]] std::string OpenUrl(const std::string& url);

 private:
  platform::Http& http_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::reporting
