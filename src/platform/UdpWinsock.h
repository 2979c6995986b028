// A UDP socket as a control: properties, methods and events on the main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// Each is raised as an event (EventLoop::Deliver); an empty one is skipped. A handler may call any
/// method of its socket and may also destroy it.
struct UdpEvents {
  /// One datagram has come in, which GetData gives.
  std::function<void(std::int32_t bytesTotal)> DataArrival = {};
  /// An asynchronous failure, with the number and text of the Windows socket library: 11001 for a
  /// name without an address, 10054 where the remote host has nobody at that port, 10040 for a
  /// datagram that was too long and is lost. The socket goes on where it has an address.
  std::function<void(int number, const std::string& description)> Error = {};
};

/// One UDP socket (IPv4) between a port of the system's choice and one remote end. Datagrams from
/// elsewhere are not taken. Destroying the object closes it, with no event.
class UdpWinsock {
 public:
  static constexpr std::size_t kLongestDatagram = 8192;

  virtual ~UdpWinsock() = default;

  virtual void SetEvents(UdpEvents events) = 0;

  /// Name or address. Counts at the first SendData behind a Close, like the port.
  [[nodiscard]] virtual std::string RemoteHost() const = 0;
  virtual void SetRemoteHost(std::string host) = 0;
  virtual void SetRemotePort(int port) = 0;

  /// Sends the bytes as one datagram and never waits: while the address of a name is being looked
  /// up, it is kept. A closed socket is opened, and takes datagrams from then on. Throws 10024 or
  /// 10055 if the system is short of descriptors or memory; all that is wrong with the remote end
  /// comes as Error, never inside this call.
  virtual void SendData(std::string_view data) = 0;

  /// The oldest datagram that is not fetched yet; empty if there is none. Of those that nobody
  /// fetches the first 16 are kept.
  virtual std::string GetData() = 0;

  /// Drops what has not been sent and what has not been fetched. Never fails.
  virtual void Close() = 0;
};

}  // namespace tallowin::platform
