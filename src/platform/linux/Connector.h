// The way from a host name and a port to a connected descriptor.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/HostLookUp.h"
#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

/// Looks names up off the main thread. Destroying it gives the attempt up, with no event.
class Connector {
 public:
  /// Each may destroy the connector.
  struct Events {
    /// The name has an address, and the connection is being made.
    std::function<void()> connecting;
    std::function<void(FileDescriptor socket, std::string address)> connected;
    std::function<void(const RunTimeError&)> failed;
  };

  /// Throws RunTimeError if there is no descriptor or `localPort`, 0 being any, cannot be had. What
  /// else goes wrong comes as an event, in a later pass of the loop.
  Connector(LinuxEventLoop& loop, int localPort, std::string host, int port, Events events);
  ~Connector();

  /// True if `host` has to be looked up.
  [[nodiscard]] static bool IsName(const std::string& host);

 private:
  void LookUp();
  void TakeAddress(const std::string& address);
  void ConnectTo(const std::string& address);
  void OnReady();
  void FailLater(const RunTimeError& error);
  void Fail(const RunTimeError& error);
  /// Posts a handler that is skipped if the connector is gone by then.
  void Later(std::function<void()> handler);

  LinuxEventLoop& loop_;
  std::string host_;
  int port_;
  Events events_;
  std::string address_;
  FileDescriptor socket_;
  std::unique_ptr<EventPoller::Watch> watch_;
  std::unique_ptr<HostLookUp> lookUp_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace tallowin::platform::linux_host
