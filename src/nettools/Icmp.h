// The tools that block: names to addresses and back, one echo, and the way to a host.
#pragma once

#include <cstdint>
#include <string>

#include "platform/EventLoop.h"
#include "platform/Icmp.h"
#include "platform/Names.h"

namespace tallowin::nettools {

/// The words for a status of an echo reply; empty for 0 and for any unknown code.
[[nodiscard]] std::string IcmpStatusText(std::uint32_t status);

/// Everything blocks its caller, and nothing logs: results are texts for the status log. No failure
/// leaves a routine but as the empty text, -1 or a sentence; what stands for it is said at each.
///
/// A packed address is a signed 32-bit number in network byte order. -1 stands for failure, so that
/// 255.255.255.255 is no address here.
class IcmpTools {
 public:
  IcmpTools(platform::Icmp& icmp, platform::Names& names, platform::EventLoop& loop);

  [[nodiscard]] std::string AddressToText(std::int32_t address);
  /// Of a dotted text or a host name; -1 on failure.
  [[nodiscard]] std::int32_t TextToAddress(const std::string& host);
  /// Empty on failure.
  [[nodiscard]] std::string AddressToHostName(std::int32_t address);
  [[nodiscard]] std::string HostToAddressText(const std::string& host);
  [[nodiscard]] std::string HostToName(const std::string& host);

  /// The address of a name, the name of an address; "Lookup failed" if there is none.
  [[nodiscard]] std::string LookupHost(const std::string& host);

  /// One echo. A name in `host` becomes its address there too, or "Lookup failed". Gives the bare
  /// number of milliseconds or a sentence, and the empty text where the host has no ICMP.
  [[nodiscard]] std::string PingHost(std::string& host);

  /// The list of hops, split by CR LF; `host` changes as in PingHost. The first router is never
  /// asked. Lets the message loop run at each hop asked, so anything can happen inside; throws
  /// ProgramEnded if the program ends there.
  [[nodiscard]] std::string TraceRoute(std::string& host);

 private:
  [[nodiscard]] bool SendEcho(platform::Icmp::Handle handle, std::int32_t destination, int ttl,
                              platform::IcmpEchoReply& reply);
  void MakeAddress(std::string& host);

  platform::Icmp& icmp_;
  platform::Names& names_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::nettools
