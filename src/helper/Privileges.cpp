#include "helper/Privileges.h"

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>

namespace tallowin::helper {

namespace {

using Sets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

/// By the system's own calls: a library for two of them would be one more thing that runs with
/// privileges.
bool SetCapabilities(const Sets& sets) {
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  return syscall(SYS_capset, &header, sets.data()) == 0;
}

}  // namespace

bool KeepOnly(int capability) {
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  Sets held{};
  if (syscall(SYS_capget, &header, held.data()) != 0) return false;
  Sets kept{};
  const auto word = static_cast<std::size_t>(CAP_TO_INDEX(capability));
  const auto bit = static_cast<__u32>(CAP_TO_MASK(capability));
  kept[word].permitted = kept[word].effective = held[word].permitted & bit;
  return SetCapabilities(kept);
}

bool KeepNone() { return SetCapabilities({}); }

}  // namespace tallowin::helper
