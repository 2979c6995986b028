// The text of an INI file: where a key stands in it, and the text with that key changed.
#pragma once

#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// The value of the first such key in the first such section, without blanks and one pair of quotes
/// around it. Empty if there is none.
[[nodiscard]] std::string_view IniValue(std::string_view text, std::string_view section,
                                        std::string_view key);

/// `text` with the value set, and every other byte as it was. A new key goes behind the last line
/// of its section that is not blank, a new section to the end; new lines end as the first line of
/// the text does, those of an empty text with CR LF.
[[nodiscard]] std::string WithIniValue(std::string_view text, std::string_view section,
                                       std::string_view key, std::string_view value);

}  // namespace tallowin::platform::linux_host
