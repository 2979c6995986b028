// A UDP socket of the system, watched by the event loop.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/UdpWinsock.h"
#include "platform/linux/HostLookUp.h"
#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

/// Connected to its remote end, so that the kernel keeps strangers out and tells of a closed port.
class LinuxUdpWinsock final : public UdpWinsock {
 public:
  /// The loop outlives it.
  explicit LinuxUdpWinsock(LinuxEventLoop& loop) : loop_(loop) {}

  void SetEvents(UdpEvents events) override { events_ = std::move(events); }
  [[nodiscard]] std::string RemoteHost() const override { return remoteHost_; }
  void SetRemoteHost(std::string host) override { remoteHost_ = std::move(host); }
  void SetRemotePort(int port) override { remotePort_ = port; }
  void SendData(std::string_view data) override;
  std::string GetData() override;
  void Close() override;

 private:
  void OpenTo(const std::string& address);
  void GiveUp(const RunTimeError& error);
  void SendAll();
  void OnReady();
  void Arrived(std::string datagram);
  void Fail(const RunTimeError& error);
  void FailLater(const RunTimeError& error);

  LinuxEventLoop& loop_;
  UdpEvents events_;
  std::string remoteHost_;
  int remotePort_ = 0;
  std::vector<std::string> unsent_;  ///< for the time of the look-up
  std::deque<std::string> unread_;
  FileDescriptor socket_;
  std::unique_ptr<HostLookUp> lookUp_;
  std::unique_ptr<EventPoller::Watch> watch_;
  /// What is posted is dropped with it, at a Close as well.
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace tallowin::platform::linux_host
