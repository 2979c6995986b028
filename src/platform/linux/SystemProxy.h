// What the system's settings say about proxies.
#pragma once

#include <string>

namespace tallowin::platform::linux_host {

/// The proxy for this address in libcurl's form; empty if there is none. May take long, since
/// settings may name a script that has to be fetched first. Thread-safe.
[[nodiscard]] std::string SystemProxyFor(const std::string& url);

}  // namespace tallowin::platform::linux_host
