// A unit file by itself: what the unit runs and what it starts. The first line is the unit's name.
#include <string>

#include "Check.h"
#include "platform/linux/UnitFile.h"

namespace linux_host = tallowin::platform::linux_host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tallowin::fuzz::Require;
  constexpr std::size_t kLongestFileName = 255;
  std::string_view text = tallowin::fuzz::TextOf(data, size);
  const std::string_view name = tallowin::fuzz::TakeLine(text).substr(0, kLongestFileName);
  const auto unit = linux_host::UnitName::Parse(name);
  Require(!unit.IsValid() || unit.Text() == name, "a name is the sum of its parts");

  linux_host::UnitCommands commands;
  const linux_host::UnitFile file({.text = std::string(text)});
  commands.Apply(file);
  const linux_host::UnitMeanings meanings = {{'h', "/home/owner"}, {'t', "/run"}, {'u', "owner"}};
  const std::string activated = commands.Activated(unit, meanings);
  const std::string command = commands.Command(unit, meanings);
  std::size_t assigned = 0;
  for (const auto& [key, value] : file.assignments) assigned += value.size();
  Require(assigned <= text.size(), "values are parts of the file");
  constexpr std::size_t kLongestCommand = std::size_t{128} << 10U;
  Require(command.size() <= kLongestCommand, "codes do not make a command longer and longer");
  Require(activated.size() <= kLongestCommand + kLongestFileName, "nor a name");
  return 0;
}
