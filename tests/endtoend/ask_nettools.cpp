// ask-nettools ping|trace|lookup HOST
//
// One tool on this system's own network. Prints what the caller's host has become, then the result.
#include <iostream>
#include <string>

#include "nettools/Icmp.h"
#include "platform/linux/LinuxIcmp.h"
#include "platform/linux/LinuxNames.h"
#include "support/FakeHost.h"

int main(int count, char** arguments) {
  if (count != 3) return 2;
  tallowin::platform::linux_host::LinuxIcmp icmp;
  tallowin::platform::linux_host::LinuxNames names;
  tallowin::test::FakeLoop loop;
  tallowin::nettools::IcmpTools tools(icmp, names, loop);

  const std::string tool = arguments[1];
  std::string host = arguments[2];
  std::string result;
  if (tool == "ping") {
    result = tools.PingHost(host);
  } else if (tool == "trace") {
    result = tools.TraceRoute(host);
  } else if (tool == "lookup") {
    result = tools.LookupHost(host);
  } else {
    return 2;
  }
  std::cout << host << "\r\n" << result << "\r\n";
  return 0;
}
