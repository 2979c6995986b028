#include "HostInMemory.h"

namespace tallowin::fuzz {

test::FakeHost& HostInMemory() {
  static test::FakeHost host;
  return host;
}

const std::string& TemporaryFolder() {
  static const test::TemporaryFolder folder;
  return folder.Path();
}

}  // namespace tallowin::fuzz
