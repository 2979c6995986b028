#include "platform/linux/SystemProxy.h"

#include <QNetworkProxy>
#include <QUrl>

namespace tallowin::platform::linux_host {
namespace {

QString SchemeOf(QNetworkProxy::ProxyType type) {
  switch (type) {
    case QNetworkProxy::HttpProxy:
    case QNetworkProxy::HttpCachingProxy:
      return QStringLiteral("http");
    case QNetworkProxy::Socks5Proxy:
      return QStringLiteral("socks5h");  // the proxy looks names up
    default:
      return {};
  }
}

}  // namespace

std::string SystemProxyFor(const std::string& url) {
  const QNetworkProxyQuery query(QUrl(QString::fromStdString(url)));
  for (const QNetworkProxy& proxy : QNetworkProxyFactory::systemProxyForQuery(query)) {
    if (proxy.type() == QNetworkProxy::NoProxy) return {};
    const QString scheme = SchemeOf(proxy.type());
    if (scheme.isEmpty()) continue;
    QUrl address;
    address.setScheme(scheme);
    address.setHost(proxy.hostName());
    address.setPort(proxy.port());
    if (!proxy.user().isEmpty()) address.setUserName(proxy.user());
    if (!proxy.password().isEmpty()) address.setPassword(proxy.password());
    return address.toString(QUrl::FullyEncoded).toStdString();
  }
  return {};
}

}  // namespace tallowin::platform::linux_host
