#include "platform/linux/HostLookUp.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QObject>
#include <utility>

namespace tallowin::platform::linux_host {
namespace {

std::string FirstAddress(const QHostInfo& info) {
  for (const QHostAddress& address : info.addresses()) {
    if (address.protocol() == QAbstractSocket::IPv4Protocol)
      return address.toString().toStdString();
  }
  return {};
}

}  // namespace

HostLookUp::HostLookUp(LinuxEventLoop& loop, const std::string& host, Found found)
    : receiver_(std::make_unique<QObject>()) {
  QHostInfo::lookupHost(
      QString::fromStdString(host), receiver_.get(),
      [&loop, alive = std::weak_ptr(alive_), found = std::move(found)](const QHostInfo& info) {
        loop.Post([alive, found, address = FirstAddress(info)] {
          if (!alive.expired()) found(address);
        });
      });
}

HostLookUp::~HostLookUp() = default;

}  // namespace tallowin::platform::linux_host
