// A network in memory: names, routers, sockets that a test plays the other end of, mail and web.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/DialUp.h"
#include "platform/Http.h"
#include "platform/Icmp.h"
#include "platform/IpStatistics.h"
#include "platform/Names.h"
#include "platform/RunTimeError.h"
#include "platform/Smtp.h"
#include "platform/UdpWinsock.h"
#include "platform/Winsock.h"

namespace tallowin::test {

using namespace platform;

/// The packed form of a.b.c.d, on a machine of either byte order.
inline std::int32_t Packed(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
  return std::bit_cast<std::int32_t>(std::array<std::uint8_t, 4>{a, b, c, d});
}

/// Without an `answer` every echo runs into its time-out.
class FakeIcmp : public Icmp {
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
  std::function<std::optional<IcmpEchoReply>(const Echo&)> answer;

  Handle IcmpCreateFile() override { return available ? ++openHandles : kNoHandle; }
  std::uint32_t IcmpSendEcho(Handle, std::int32_t destination, std::string_view data, int ttl,
                             IcmpEchoReply& reply, std::size_t replySize,
                             std::chrono::milliseconds timeout) override {
    sent.push_back({destination, std::string(data), ttl, replySize, timeout});
    const auto answered = answer ? answer(sent.back()) : std::nullopt;
    if (answered) reply = *answered;
    return answered ? 1 : 0;
  }
  bool IcmpCloseHandle(Handle) override { return --openHandles >= 0; }
};

class FakeNames : public Names {
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

/// Sockets that a test plays the network for. Each keeps what was done to it.
class FakeSockets : public SocketFactory {
 public:
  class Socket : public Winsock {
   public:
    explicit Socket(FakeSockets& network) : network_(network) { network_.all.push_back(this); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() override { std::erase(network_.all, this); }

    SocketEvents events;
    SocketState state = SocketState::Closed;
    int localPort = 0;
    int remotePort = 0;
    std::string remoteHost;
    std::string remoteIP;
    std::string sent;
    std::string received;

    void SetEvents(SocketEvents newEvents) override { events = std::move(newEvents); }
    [[nodiscard]] SocketState State() const override { return state; }
    [[nodiscard]] int LocalPort() const override { return localPort; }
    void SetLocalPort(int port) override { localPort = port; }
    [[nodiscard]] int RemotePort() const override { return remotePort; }
    void SetRemotePort(int port) override {
      if (port < 0 || port > 65535) throw RunTimeError(380, "Invalid property value");
      remotePort = port;
    }
    [[nodiscard]] std::string RemoteHost() const override { return remoteHost; }
    void SetRemoteHost(std::string host) override { remoteHost = std::move(host); }
    [[nodiscard]] std::string RemoteHostIP() const override { return remoteIP; }
    void Listen() override {
      if (network_.takenPorts[localPort]) {
        throw RunTimeError(10048, "Address already in use");
      }
      state = SocketState::Listening;
    }
    void Accept(std::int32_t) override {
      if (state != SocketState::Closed) {
        throw RunTimeError(10056, "Socket is already connected");
      }
      state = SocketState::Connected;
    }
    void Connect() override {
      if (state != SocketState::Closed) {
        throw RunTimeError(10022, "Invalid argument");
      }
      state = SocketState::Connecting;
    }
    void SendData(std::string_view data) override {
      if (state != SocketState::Connected) {
        throw RunTimeError(10057, "Socket is not connected");
      }
      sent += data;
    }
    std::string GetData() override { return std::exchange(received, {}); }
    void Close() override { state = SocketState::Closed; }

    // What the server at the other end does. The handlers may destroy the socket.
    void ServerAccepts() { Raise(SocketState::Connected, events.Connect); }
    void ServerSends(std::string data) {
      received += data;
      Raise(state, events.DataArrival, static_cast<std::int32_t>(data.size()));
    }
    void ServerCloses() { Raise(SocketState::Closing, events.Close); }
    void ServerFails(int number, const std::string& description) {
      Raise(SocketState::Error, events.Error, number, description);
    }

   private:
    template <typename Handler, typename... Args>
    void Raise(SocketState newState, Handler handler, Args... args) {
      state = newState;
      if (handler) handler(args...);
    }
    FakeSockets& network_;
  };

  /// The one UDP socket of a program.
  struct Udp {
    UdpEvents events;
    std::string host;
    int port = 0;
    bool open = false;
    std::vector<std::string> sent;
    std::string received;
    int sendFailure = 0;  ///< the number of the error of every SendData; 0 for none
  };
  Udp udp;
  struct UdpSocket : UdpWinsock {
    explicit UdpSocket(Udp& state) : udp(state) {}
    Udp& udp;
    void SetEvents(UdpEvents events) override { udp.events = std::move(events); }
    [[nodiscard]] std::string RemoteHost() const override { return udp.host; }
    void SetRemoteHost(std::string host) override { udp.host = std::move(host); }
    void SetRemotePort(int port) override { udp.port = port; }
    void SendData(std::string_view data) override {
      if (udp.sendFailure != 0) throw RunTimeError(udp.sendFailure, "Failed");
      udp.open = true;
      udp.sent.emplace_back(data);
    }
    std::string GetData() override { return std::exchange(udp.received, {}); }
    void Close() override { udp.open = false; }
  };
  std::unique_ptr<UdpWinsock> MakeUdpWinsock() override { return std::make_unique<UdpSocket>(udp); }

  std::vector<Socket*> all;
  std::map<int, bool> takenPorts;

  std::unique_ptr<Winsock> MakeWinsock() override { return std::make_unique<Socket>(*this); }
  [[nodiscard]] Socket* ConnectingTo(const std::string& host) const {
    for (auto* socket : all) {
      if (socket->remoteHost == host && socket->state == SocketState::Connecting) {
        return socket;
      }
    }
    return nullptr;
  }
  [[nodiscard]] Socket* ListeningOn(int port) const {
    for (auto* socket : all) {
      if (socket->localPort == port && socket->state == SocketState::Listening) {
        return socket;
      }
    }
    return nullptr;
  }
};

/// Keeps each mail. What a test does in `whileSending` happens where the real one would block.
struct FakeSmtp : Smtp {
  std::vector<std::string> calls;
  std::vector<SmtpMail> mails;
  std::deque<std::int16_t> statuses;  ///< of the next sendings; 0 where there is none
  std::function<void()> whileSending;

  void SmtpInit(std::string_view form) override { calls.push_back("init " + std::string(form)); }
  std::int16_t SmtpSendMail(const SmtpMail& mail) override {
    calls.push_back("send " + mail.szTo);
    mails.push_back(mail);
    if (whileSending) whileSending();
    if (statuses.empty()) return 0;
    const auto status = statuses.front();
    statuses.pop_front();
    return status;
  }
  void SmtpRelease() override { calls.emplace_back("release"); }
};

/// One page for every address.
struct FakeHttp : Http {
  std::string page;
  std::vector<std::string> asked;
  std::function<void()> whileReading;

  struct Page : InternetUrl {
    Page(std::string body, std::function<void()> onRead)
        : rest(std::move(body)), whileReading(std::move(onRead)) {}
    std::string rest;
    std::function<void()> whileReading;
    std::string InternetReadFile(std::size_t most) override {
      if (whileReading) whileReading();
      std::string piece = rest.substr(0, most);
      rest.erase(0, piece.size());
      return piece;
    }
  };
  struct Session : Internet {
    explicit Session(FakeHttp& web) : http(web) {}
    FakeHttp& http;
    std::unique_ptr<InternetUrl> InternetOpenUrl(const std::string& url) override {
      http.asked.push_back(url);
      return std::make_unique<Page>(http.page, http.whileReading);
    }
  };
  std::unique_ptr<Internet> InternetOpen(const std::string&) override {
    return std::make_unique<Session>(*this);
  }
};

struct FakeDialUp : DialUp {
  std::vector<RasConnection> links;
  std::vector<std::string> hungUp;
  bool supported = true;
  RasResult result = ras::kSuccess;
  RasResult RasEnumConnections(std::span<RasConnection> connections, std::size_t& count) override {
    if (!supported) throw RunTimeError(53, "File not found");
    count = std::min(links.size(), connections.size());
    std::copy_n(links.begin(), count, connections.begin());
    return result;
  }
  RasResult RasHangUp(const RasConnection& connection) override {
    hungUp.push_back(connection.hRasConn);
    return ras::kSuccess;
  }
};

/// Tables and counters that a test makes up; what it puts in `failing` cannot be had.
struct FakeIpStatistics : IpStatistics {
  enum class Part { Ip, Tcp, Udp, Icmp, Tables };
  IpCounters ip = {};
  TcpCounters tcp = {};
  UdpCounters udp = {};
  IcmpStatistics icmp = {};
  std::vector<TcpRow> tcpTable;
  std::vector<UdpRow> udpTable;
  std::set<Part> failing;

  std::uint32_t GetIpStatistics(IpCounters& to) override { return Give(Part::Ip, ip, to); }
  std::uint32_t GetTcpStatistics(TcpCounters& to) override { return Give(Part::Tcp, tcp, to); }
  std::uint32_t GetUdpStatistics(UdpCounters& to) override { return Give(Part::Udp, udp, to); }
  std::uint32_t GetIcmpStatistics(IcmpStatistics& to) override {
    return Give(Part::Icmp, icmp, to);
  }
  std::uint32_t GetTcpTable(std::vector<TcpRow>& to, bool) override {
    return Give(Part::Tables, tcpTable, to);
  }
  std::uint32_t GetUdpTable(std::vector<UdpRow>& to, bool) override {
    return Give(Part::Tables, udpTable, to);
  }

 private:
  template <typename T>
  std::uint32_t Give(Part part, const T& from, T& to) {
    if (failing.contains(part)) return ip_statistics::kNotSupported;
    to = from;
    return ip_statistics::kSuccess;
  }
};

}  // namespace tallowin::test
