// A TCP socket as a control: properties, methods and events on the main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// The numbers are those that the `State` property shows.
enum class SocketState : int {
  Closed = 0,
  Open = 1,
  Listening = 2,
  ConnectionPending = 3,
  ResolvingHost = 4,
  HostResolved = 5,
  Connecting = 6,
  Connected = 7,
  Closing = 8,  ///< the peer has closed, or is lost; what it sent may still be fetched
  Error = 9,
};

/// What a socket tells. Each is raised as an event (EventLoop::Deliver); an empty one is skipped.
/// A handler may call any method of its socket and may also destroy it.
struct SocketEvents {
  /// A caller is waiting. Its address stands in RemoteHostIP and RemotePort of the listening socket
  /// for the time of the handler, also when a nested event brings another caller meanwhile.
  std::function<void(std::int32_t requestID)> ConnectionRequest = {};
  /// Bytes have come in. At most 8192 are announced by one event, as that is the receive buffer.
  std::function<void(std::int32_t bytesTotal)> DataArrival = {};
  std::function<void()> Connect = {};
  /// The peer has closed, or the connection is lost, which Error has told before. The state is
  /// Closing until Close is called; no other event comes until then.
  std::function<void()> Close = {};
  /// An asynchronous failure, with the number and text of the Windows socket library. The state is
  /// Error. If it is a Connect or the listening that has failed, it stays so until Close is called,
  /// and no other event comes. If it is an established connection, then Close is raised behind
  /// this, unless the handler has closed or destroyed the socket.
  std::function<void(int number, const std::string& description)> Error = {};
};

/// One TCP socket (IPv4). Failing methods throw RunTimeError with the number and description of the
/// Windows socket library (10048 "Address already in use" ...). Destroying the object closes the
/// connection at once, with no event.
class Winsock {
 public:
  virtual ~Winsock() = default;

  virtual void SetEvents(SocketEvents events) = 0;

  [[nodiscard]] virtual SocketState State() const = 0;
  /// The port set, or once connected or listening the port in use.
  [[nodiscard]] virtual int LocalPort() const = 0;
  /// Takes any number; with one outside 0 to 65535 Listen and Connect fail. 0 lets the system
  /// choose.
  virtual void SetLocalPort(int port) = 0;
  [[nodiscard]] virtual int RemotePort() const = 0;
  /// Throws 380 for a number outside 0 to 65535.
  virtual void SetRemotePort(int port) = 0;
  /// Name or address to connect to.
  [[nodiscard]] virtual std::string RemoteHost() const = 0;
  virtual void SetRemoteHost(std::string host) = 0;
  /// Dotted address of the peer, of the newest caller on a listening socket; empty before the
  /// first.
  [[nodiscard]] virtual std::string RemoteHostIP() const = 0;

  /// Opens the local port on all addresses. Throws 10048 if it is taken, 10013 if it needs a
  /// privilege, 10049 if it is no port, 10022 if the socket is not closed.
  virtual void Listen() = 0;

  /// Takes over the caller of a ConnectionRequest, on this socket, which must be closed, whichever
  /// socket listened. Throws 10056 if this socket is in use, and then the caller is reset; throws
  /// 10022 if the caller is unknown or has been given up.
  virtual void Accept(std::int32_t requestID) = 0;

  /// Starts to connect to RemoteHost and RemotePort; the outcome comes as Connect or Error event,
  /// never inside this call. Throws 10022 if the socket is not closed, like Listen if LocalPort
  /// cannot be had (10048, 10013, 10049), 10024 or 10055 if the system is short of descriptors or
  /// memory; the socket is closed then. All that is wrong with the remote end comes as Error.
  virtual void Connect() = 0;

  /// Queues the bytes as they are and sends what the peer takes; never waits. In the state Closing
  /// as well: a peer that has closed its own direction still hears. Throws 10057 if not connected
  /// or if the connection is lost. Empty data is no error and sends nothing.
  virtual void SendData(std::string_view data) = 0;

  /// Everything received and not yet fetched; empty if there is nothing. Of what nobody fetches the
  /// first 64 KiB are kept, and what comes in beyond them is dropped.
  virtual std::string GetData() = 0;

  /// Ends whatever the socket does; never fails and raises no event. Data already queued by
  /// SendData still goes out, for 10 seconds at most and for the 64 connections closed last, fewer
  /// when descriptors are short; a peer whose text is cut so sees a reset. On a listening socket,
  /// callers that wait unaccepted are refused: they see a reset, no later than the next pass of the
  /// loop or the next Listen; a caller can still be accepted before that. Callers that the system
  /// has not handed over yet are kept for a moment, so that a Close followed by a Listen loses
  /// nobody.
  virtual void Close() = 0;
};

class UdpWinsock;

/// Makes sockets. A caller that no handler accepted or refused is held unanswered, the newest 32
/// for each listening socket; older ones are reset. When descriptors are short the oldest of all
/// make room for new callers, except those whose handler is still running.
class SocketFactory {
 public:
  virtual ~SocketFactory() = default;
  virtual std::unique_ptr<Winsock> MakeWinsock() = 0;
  virtual std::unique_ptr<UdpWinsock> MakeUdpWinsock() = 0;
};

}  // namespace tallowin::platform
