// The web over libcurl.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/Http.h"
#include "platform/linux/CurlLibrary.h"

namespace tallowin::platform::linux_host {

class LinuxHttp : public Http {
 public:
  /// Of one fetch.
  struct Limits {
    std::size_t bytes = std::size_t{1} << 20U;
    std::chrono::milliseconds time = std::chrono::seconds(30);
  };

  /// `library` and `loop` must outlive it.
  LinuxHttp(const CurlLibrary& library, EventLoop& loop) : LinuxHttp(library, loop, Limits()) {}
  LinuxHttp(const CurlLibrary& library, EventLoop& loop, Limits limits)
      : library_(library), loop_(loop), limits_(limits) {}

  [[nodiscard]] std::unique_ptr<Internet> InternetOpen(const std::string& agent) override;

 private:
  const CurlLibrary& library_;
  EventLoop& loop_;
  Limits limits_;
};

}  // namespace tallowin::platform::linux_host
