// Answers who the user is to whoever asks: one line, always the same name.
#pragma once

#include <cstdint>
#include <memory>

#include "core/MainForm.h"
#include "core/Options.h"
#include "core/StatusLog.h"
#include "platform/EventLoop.h"
#include "platform/Winsock.h"

namespace tallowin::nettools {

/// One socket, which stops listening while it serves. The query is not read as such (RFC 1413 has a
/// pair of ports there): it comes back as it came, with the name of Options.IdentDTxt behind it.
class IdentDServer {
 public:
  static constexpr int kPort = 113;

  /// `port` is another one only in tests.
  IdentDServer(platform::SocketFactory& sockets, core::MainForm& mainForm, core::Options& options,
               core::StatusLog& log, platform::EventLoop& loop, int port = kPort);

  /// The handler of Options.IdentDChk.
  void IdentDChk_Click();

 private:
  void ConnectionRequest(std::int32_t requestID);
  void DataArrival();
  void Reopen();

  core::MainForm& mainForm_;
  core::Options& options_;
  core::StatusLog& log_;
  platform::EventLoop& loop_;
  /// Another one with each caller, whenever the service listens again, and whenever the user
  /// switches it.
  std::uint64_t exchange_ = 0;
  std::uint64_t answered_ = 0;  ///< the exchange whose query came last
  std::unique_ptr<platform::Winsock> IdentDSck_;
};

}  // namespace tallowin::nettools
