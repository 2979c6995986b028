#include "nettools/Icmp.h"

#include <chrono>
#include <cstddef>
#include <map>

namespace tallowin::nettools {
namespace {

constexpr std::size_t kPayloadBytes = 32;
constexpr std::size_t kReplyBytes = 163;
constexpr std::chrono::milliseconds kTimeout{2700};
constexpr int kPingTtl = 255;
constexpr int kFirstTraceTtl = 2;
constexpr int kLastTraceTtl = 30;
constexpr std::size_t kAddressTextBytes = 32;
constexpr std::size_t kHostNameBytes = 256;
constexpr const char* kLookupFailed = "Lookup failed";

}  // namespace

std::string IcmpStatusText(std::uint32_t status) {
  static const std::map<std::uint32_t, const char*> texts{
      {11001, "Buffer too Small"},
      {11002, "Destination Network Not Reachable"},
      {11003, "Destination Host Not Reachable"},
      {11004, "Destination Protocol Not Reachable"},
      {11005, "Destination Port Not Reachable"},
      {11006, "No Resources Available"},
      {11007, "Bad Option"},
      {11008, "Hardware Error"},
      {11009, "Packet too Big"},
      {11010, "Request Timed Out"},
      {11011, "Bad Request"},
      {11012, "Bad Route"},
      {11013, "TTL Expired in Transit"},
      {11014, "TTL Expired Reassembly"},
      {11015, "Parameter Problem"},
      {11016, "Source Quench"},
      {11017, "Option too Big"},
      {11018, "Bad Destination"},
      {11019, "Address Deleted"},
      {11020, "Spec MTU Change"},
      {11021, "MTU Change"},
      {11022, "Unload"},
      {11050, "General Failure"},
  };
  const auto found = texts.find(status);
  return found == texts.end() ? "" : found->second;
}

IcmpTools::IcmpTools(platform::Icmp& icmp, platform::Names& names, platform::EventLoop& loop)
    : icmp_(icmp), names_(names), loop_(loop) {}

std::string IcmpTools::AddressToText(std::int32_t address) {
  return names_.InetNtoa(address).substr(0, kAddressTextBytes);
}

std::int32_t IcmpTools::TextToAddress(const std::string& host) {
  const auto address = names_.InetAddr(host);
  if (address != platform::Names::kNoAddress) return address;
  return names_.GetHostByName(host).value_or(platform::Names::kNoAddress);
}

std::string IcmpTools::AddressToHostName(std::int32_t address) {
  return names_.GetHostByAddr(address).value_or("").substr(0, kHostNameBytes);
}

std::string IcmpTools::HostToAddressText(const std::string& host) {
  return AddressToText(TextToAddress(host));
}

std::string IcmpTools::HostToName(const std::string& host) {
  return AddressToHostName(TextToAddress(host));
}

std::string IcmpTools::LookupHost(const std::string& host) {
  std::string result;
  if (names_.InetAddr(host) != platform::Names::kNoAddress) {
    result = HostToName(host);
  } else if (names_.GetHostByName(host)) {
    result = HostToAddressText(host);
  }
  return result.empty() ? kLookupFailed : result;
}

void IcmpTools::MakeAddress(std::string& host) {
  if (names_.InetAddr(host) == platform::Names::kNoAddress) host = LookupHost(host);
}

bool IcmpTools::SendEcho(platform::Icmp::Handle handle, std::int32_t destination, int ttl,
                         platform::IcmpEchoReply& reply) {
  const std::string payload(kPayloadBytes, '\0');
  return icmp_.IcmpSendEcho(handle, destination, payload, ttl, reply, kReplyBytes, kTimeout) != 0;
}

std::string IcmpTools::PingHost(std::string& host) {
  MakeAddress(host);
  const auto handle = icmp_.IcmpCreateFile();
  if (handle == platform::Icmp::kNoHandle) return {};
  platform::IcmpEchoReply reply;
  std::string result;
  if (!SendEcho(handle, TextToAddress(host), kPingTtl, reply)) result = "Request Timed Out";
  if (result.empty()) result = IcmpStatusText(reply.status);
  if (result.empty()) result = std::to_string(reply.roundTripTime);
  icmp_.IcmpCloseHandle(handle);
  return result;
}

std::string IcmpTools::TraceRoute(std::string& host) {
  MakeAddress(host);
  if (host.empty()) return {};
  const auto handle = icmp_.IcmpCreateFile();
  if (handle == platform::Icmp::kNoHandle) return {};
  // Once only: where the name service is dead, each asking holds the program still for seconds.
  const auto destination = TextToAddress(host);
  int hop = 0;
  std::string route;
  for (int ttl = kFirstTraceTtl; ttl <= kLastTraceTtl; ++ttl) {
    platform::IcmpEchoReply reply;
    // A status of this machine's own has no address, and is no hop.
    if (SendEcho(handle, destination, ttl, reply) && reply.address != 0) {
      const std::string address = AddressToText(reply.address);
      if (hop != 0) route += "\r\n";
      route += "Hop #" + std::to_string(hop) + "  " + address + " - " + LookupHost(address);
      if (address == host) return route;
      ++hop;
    }
    if (ttl == kLastTraceTtl) route += "\r\nTrace Route to Long.";
    loop_.DoEvents();
  }
  return route;
}

}  // namespace tallowin::nettools
