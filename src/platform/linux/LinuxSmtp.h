// Mail over libcurl.
#pragma once

#include <chrono>

#include "platform/Smtp.h"
#include "platform/linux/CurlLibrary.h"

namespace tallowin::platform::linux_host {

/// A status is libcurl's code. What is refused before anything is sent has one of libcurl's too:
/// 3 for a server text that is no address, 43 for mail addresses and subjects.
///
/// The certificates that are trusted are the system's, or those in the file that the environment
/// variable SSL_CERT_FILE names, as for most programs here.
class LinuxSmtp : public Smtp {
 public:
  /// `patience` is how long one sending may take in all. `library` must outlive this object.
  explicit LinuxSmtp(const CurlLibrary& library,
                     std::chrono::milliseconds patience = std::chrono::seconds(30))
      : library_(library), patience_(patience) {}

  /// Nothing is kept between two sendings, so there is nothing to do.
  void SmtpInit(std::string_view) override {}
  std::int16_t SmtpSendMail(const SmtpMail& mail) override;
  void SmtpRelease() override {}

 private:
  const CurlLibrary& library_;
  std::chrono::milliseconds patience_;
};

}  // namespace tallowin::platform::linux_host
