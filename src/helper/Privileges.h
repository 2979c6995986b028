// What the helper may do.
#pragma once

namespace tallowin::helper {

/// Gives up every capability but `capability` (a CAP_... number), which need not be there. False if
/// the system refuses that.
[[nodiscard]] bool KeepOnly(int capability);

/// Gives up all of them.
[[nodiscard]] bool KeepNone();

}  // namespace tallowin::helper
