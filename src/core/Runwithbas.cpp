#include "core/Runwithbas.h"

namespace tallowin::core {

std::int32_t Runwithbas::ShellOpen(std::string_view path, bool printIt, std::int32_t showCommand) {
  constexpr std::int32_t kShowNormal = 1;
  return shell_.Execute(printIt ? "Print" : "Open", path,
                        showCommand == 0 ? kShowNormal : showCommand);
}

}  // namespace tallowin::core
