// The lines of INI files that start programs: what the watch reads of them, and puts back.
#include <array>
#include <string>

#include "Check.h"
#include "platform/linux/IniText.h"

namespace {

namespace linux_host = tallowin::platform::linux_host;
using tallowin::fuzz::Require;

struct Place {
  const char* section;
  const char* key;
};
constexpr std::array<Place, 3> kPlaces{
    {{"boot", "shell"}, {"windows", "run"}, {"windows", "load"}}};

std::string_view ValueAt(std::string_view text, const Place& place) {
  return linux_host::IniValue(text, place.section, place.key);
}

/// Blanks and one pair of quotes around a value go at each reading, and what no line can hold is
/// refused before it is written.
bool ComesBack(std::string_view value) {
  if (value.find_first_of(std::string_view("\r\0", 2)) != std::string_view::npos) return false;
  if (value.empty()) return true;
  constexpr std::string_view kAround = " \t\"'";
  return kAround.find(value.front()) == std::string_view::npos &&
         kAround.find(value.back()) == std::string_view::npos;
}

void PutBack(std::string_view text, const Place& changed, std::string_view value) {
  const std::string written = linux_host::WithIniValue(text, changed.section, changed.key, value);
  Require(ValueAt(written, changed) == value, "a value is read as it was written");
  Require(written.size() <= text.size() + value.size() + 32, "nothing else is added");
  for (const Place& other : kPlaces) {
    if (&other == &changed) continue;
    Require(ValueAt(written, other) == ValueAt(text, other), "the other values stay");
  }
  const std::string again = linux_host::WithIniValue(written, changed.section, changed.key, value);
  Require(again == written, "to write it again changes nothing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = tallowin::fuzz::TextOf(data, size);
  for (const Place& place : kPlaces) {
    const auto value = ValueAt(text, place);
    Require(value.find('\n') == std::string_view::npos, "a value is of one line");
    for (const Place& changed : kPlaces) {
      if (ComesBack(value)) PutBack(text, changed, value);
    }
    PutBack(text, place, "Explorer.exe");
    PutBack(text, place, "");
  }
  return 0;
}
