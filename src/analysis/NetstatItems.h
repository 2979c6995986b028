// What the counters of the IP stack are called, in the order of platform/IpStatistics.h.
#pragma once

#include <array>

#include "platform/IpStatistics.h"

namespace tallowin::analysis {

inline constexpr const char* kOutgoingResets = "outgoing resets";

inline constexpr std::array<const char*, std::tuple_size_v<platform::IpCounters>> kIpItems = {
    "IP forwarding enabled or disabled",
    "default time-to-live",
    "datagrams received",
    "received header errors",
    "received address errors",
    "datagrams forwarded",
    "datagrams with unknown protocol",
    "received datagrams discarded",
    "received datagrams delivered",
    "outgoing datagrams requested",
    "outgoing datagrams discarded",
    "sent datagrams discarded",
    "datagrams for which no route",
    "datagrams for which all frags didn't arrive",
    "datagrams requiring reassembly",
    "successful reassemblies",
    "failed reassemblies",
    "successful fragmentations",
    "failed fragmentations",
    "datagrams fragmented",
    "number of interfaces on computer",
    "number of IP address on computer",
    "number of routes in routing table"};

inline constexpr std::array<const char*, std::tuple_size_v<platform::TcpCounters>> kTcpItems = {
    "timeout algorithm",
    "minimum timeout",
    "maximum timeout",
    "maximum connections",
    "active opens",
    "passive opens",
    "failed attempts",
    "establised connections reset",
    "established connections",
    "segments received",
    "segment sent",
    "segments retransmitted",
    "incoming errors",
    kOutgoingResets,
    "cumulative connections"};

inline constexpr std::array<const char*, std::tuple_size_v<platform::UdpCounters>> kUdpItems = {
    "received datagrams", "datagrams for which no port", "errors on received datagrams",
    "sent datagrams", "number of entries in UDP listener table"};

inline constexpr std::array<const char*, std::tuple_size_v<platform::IcmpCounters>> kIcmpItems = {
    "number of messages",
    "number of errors",
    "destination unreachable messages",
    "time-to-live exceeded messages",
    "parameter problem messages",
    "source quench messages",
    "redirection messages",
    "echo requests",
    "echo replies",
    "timestamp requests",
    "timestamp replies",
    "address mask requests",
    "address mask replies"};

}  // namespace tallowin::analysis
