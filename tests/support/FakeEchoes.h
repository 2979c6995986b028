// A network of names and routers in memory.
#pragma once

#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Icmp.h"
#include "platform/Names.h"

namespace tallowin::test {

/// The packed form of a.b.c.d, on a machine of either byte order.
inline std::int32_t Packed(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
  return std::bit_cast<std::int32_t>(std::array<std::uint8_t, 4>{a, b, c, d});
}

/// Without an `answer` every echo runs into its time-out.
class FakeIcmp : public platform::Icmp {
 public:
  struct Echo {
    std::int32_t destination;
    std::string data;
    int ttl;
    std::size_t replySize;
    std::chrono::milliseconds timeout;
  };
  bool available = true;
  int openHandles = 0;
  std::vector<Echo> sent;
  std::function<std::optional<platform::IcmpEchoReply>(const Echo&)> answer;

  Handle IcmpCreateFile() override { return available ? ++openHandles : kNoHandle; }
  std::uint32_t IcmpSendEcho(Handle, std::int32_t destination, std::string_view data, int ttl,
                             platform::IcmpEchoReply& reply, std::size_t replySize,
                             std::chrono::milliseconds timeout) override {
    sent.push_back({destination, std::string(data), ttl, replySize, timeout});
    const auto answered = answer ? answer(sent.back()) : std::nullopt;
    if (answered) reply = *answered;
    return answered ? 1 : 0;
  }
  bool IcmpCloseHandle(Handle) override { return --openHandles >= 0; }
};

class FakeNames : public platform::Names {
 public:
  std::map<std::string, std::int32_t> addresses;
  std::map<std::int32_t, std::string> names;
  std::vector<std::string> asked;  ///< the names that were looked up, in order

  /// Dotted texts of four decimal numbers only.
  [[nodiscard]] std::int32_t InetAddr(const std::string& text) const override {
    std::array<unsigned, 4> bytes{};
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%3u.%3u.%3u.%3u%c", &bytes[0], &bytes[1], &bytes[2],
                                 &bytes[3], &rest);
    if (read != 4) return kNoAddress;
    return Packed(static_cast<std::uint8_t>(bytes[0]), static_cast<std::uint8_t>(bytes[1]),
                  static_cast<std::uint8_t>(bytes[2]), static_cast<std::uint8_t>(bytes[3]));
  }
  [[nodiscard]] std::string InetNtoa(std::int32_t address) const override {
    std::string text;
    for (const int byte : std::bit_cast<std::array<std::uint8_t, 4>>(address)) {
      text += (text.empty() ? "" : ".") + std::to_string(byte);
    }
    return text;
  }
  std::optional<std::int32_t> GetHostByName(const std::string& name) override {
    asked.push_back(name);
    const auto found = addresses.find(name);
    return found == addresses.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<std::string> GetHostByAddr(std::int32_t address) override {
    const auto found = names.find(address);
    return found == names.end() ? std::nullopt : std::optional(found->second);
  }
};

}  // namespace tallowin::test
