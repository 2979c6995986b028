// Every host and address of the outside world that the suite knows by itself.
#pragma once

#include <array>
#include <string>

namespace tallowin::core::endpoints {

inline constexpr const char* kWebSite = "https://tallowin.marrowind.example/";

/// What the field for the mail server holds before anybody has filled it in.
inline constexpr const char* kPresetSmtpServer = "smtp.gmail.com";

/// Whom notifications come from, and where the owner's number is the name of a mailbox that sends
/// on to the owner's pager.
inline constexpr const char* kNotificationSender = "notify@tallowin.marrowind.example";
inline constexpr const char* kPagerDomain = "pager.marrowind.example";

}  // namespace tallowin::core::endpoints

namespace tallowin::core {

/// The servers that the suite talks to without being asked for a name. A value, so that a test can
/// build a program that talks to others.
struct Endpoints {
  /// Registries of the Asia-Pacific region, of Europe, the routing arbiter's, and of America, in
  /// the order in which they are asked.
  std::array<std::string, 4> whoisServers{"whois.apnic.net", "whois.ripe.net", "whois.radb.net",
                                          "whois.arin.net"};
  int whoisPort = 43;
  /// Answers the daytime service over UDP, in UTC.
  std::string timeServer = "time.marrowind.example";
  int timePort = 13;
  std::string updateFile = "https://update.marrowind.example/autoupdate/tallowin.txt";
};

}  // namespace tallowin::core
