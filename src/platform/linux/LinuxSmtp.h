// Mail over libcurl.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "platform/Smtp.h"
#include "platform/linux/CurlLibrary.h"

namespace tallowin::platform::linux_host {

/// A status is libcurl's code. What is refused before anything is sent has one of libcurl's too:
/// 1 for another scheme, 3 for a server text that is no address, 43 for mail addresses and
/// subjects. 64 is a server that does not encrypt and whose address has a user in it.
class LinuxSmtp : public Smtp {
 public:
  /// `patience` is how long one sending may take in all. `authorities` is a file of certificates
  /// that are trusted instead of the system's. `library` must outlive this object.
  explicit LinuxSmtp(const CurlLibrary& library,
                     std::chrono::milliseconds patience = std::chrono::seconds(30),
                     std::string authorities = {})
      : library_(library), patience_(patience), authorities_(std::move(authorities)) {}

  /// Nothing is kept between two sendings, so there is nothing to do.
  void SmtpInit(std::string_view) override {}
  std::int16_t SmtpSendMail(const SmtpMail& mail) override;
  void SmtpRelease() override {}

 private:
  [[nodiscard]] int Send(const SmtpMail& mail) const;

  const CurlLibrary& library_;
  std::chrono::milliseconds patience_;
  std::string authorities_;
};

}  // namespace tallowin::platform::linux_host
