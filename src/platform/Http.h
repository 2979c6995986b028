// Fetching what an address of the web names.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace tallowin::platform {

/// One fetch, which ends when this is destroyed.
class InternetUrl {
 public:
  virtual ~InternetUrl() = default;

  /// The next bytes of the body, `most` at the most; empty at its end, and where the fetch has
  /// failed. Waits for them, and delivers events meanwhile: the caller must be ready for anything
  /// that a user can do. Throws ProgramEnded like EventLoop::RunUntil.
  virtual std::string InternetReadFile(std::size_t most) = 0;
};

/// Must outlive what it opens.
class Internet {
 public:
  virtual ~Internet() = default;

  /// Starts to fetch an http or https address, always from the server and never from a store of
  /// answers. Redirections are followed to such addresses only, from https to https only; a page
  /// that tells of an error is a page like any other. Whoever offers encryption must have a good
  /// certificate. A fetch ends after 30 seconds and after 1 MiB, with what has come by then. Null
  /// if it cannot be started; what goes wrong later ends the body.
  [[nodiscard]] virtual std::unique_ptr<InternetUrl> InternetOpenUrl(const std::string& url) = 0;
};

class Http {
 public:
  virtual ~Http() = default;

  /// `agent` is the name that servers are told. Goes by the system's settings for proxies. Null
  /// where nothing can be fetched at all.
  [[nodiscard]] virtual std::unique_ptr<Internet> InternetOpen(const std::string& agent) = 0;
};

}  // namespace tallowin::platform
