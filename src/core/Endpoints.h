// Every host and address of the outside world that the suite knows by itself.
#pragma once

#include <array>

namespace tallowin::core::endpoints {

/// Registries of the Asia-Pacific region, of Europe, the routing arbiter's, and of America, in the
/// order in which they are asked.
inline constexpr std::array<const char*, 4> kWhoisServers{"whois.apnic.net", "whois.ripe.net",
                                                          "whois.radb.net", "whois.arin.net"};

inline constexpr const char* kWebSite = "https://tallowin.marrowind.example/";

/// What the field for the mail server holds before anybody has filled it in.
inline constexpr const char* kPresetSmtpServer = "smtp.gmail.com";

}  // namespace tallowin::core::endpoints
