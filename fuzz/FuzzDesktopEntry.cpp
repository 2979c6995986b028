// A desktop entry, and how its command comes into a list of values.
#include <string>
#include <vector>

#include "Check.h"
#include "platform/linux/AutostartListing.h"
#include "platform/linux/AutostartNames.h"
#include "platform/linux/DesktopEntry.h"

namespace linux_host = tallowin::platform::linux_host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tallowin::fuzz::Require;
  const std::string text(tallowin::fuzz::TextOf(data, size));
  const linux_host::DesktopEntry entry({.text = text});
  const linux_host::DesktopEntry begun({.text = text, .whole = false});
  const std::vector<std::string> desktops = {"GNOME", "KDE"};
  const auto always = [](const std::string&) { return true; };
  const auto never = [](const std::string&) { return false; };

  Require(begun.IsStarted(desktops, never), "an entry whose end was not read is started");
  Require(entry.IsStarted(desktops, always) || !entry.IsStarted(desktops, never),
          "a missing program starts nothing");
  const std::string command = entry.Command();
  // Eight readings of the text, in which each byte becomes two.
  Require(command.size() <= 8 * (2 * text.size() + 8), "the command grows with the file alone");

  const std::string printed = linux_host::Printable(command);
  Require(tallowin::fuzz::IsPlainLine(printed), "it is printed in one plain line");
  Require(linux_host::ShortenedText(printed).size() <= linux_host::kEnumerableBytes,
          "and fits a buffer when shortened");
  return 0;
}
