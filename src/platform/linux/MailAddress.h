// Addresses of mails, taken apart and looked at before a server gets to see them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin::platform::linux_host {

struct MailAddress {
  std::string name;  ///< may be empty
  std::string address;
};

/// True for valid UTF-8 without control characters and line separators: a text that cannot end a
/// header or a command and begin another.
[[nodiscard]] bool IsPlainLine(std::string_view text);

/// "address" or "A name <address>"; the name, or a part of it, may stand in quotes. Nothing if the
/// text is no plain line or a quote is not closed, or if the address is empty, is not all ASCII, or
/// has blanks, brackets or commas in it, behind which a server would look for more.
[[nodiscard]] std::optional<MailAddress> ParseMailAddress(std::string_view text);

/// Addresses with commas between them; a comma in quotes belongs to a name, and one too many is
/// passed over. None at all if there is an address that cannot be taken.
[[nodiscard]] std::vector<MailAddress> ParseMailAddresses(std::string_view text);

}  // namespace tallowin::platform::linux_host
