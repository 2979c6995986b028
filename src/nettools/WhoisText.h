// What is made of the answers of whois servers.
#pragma once

#include <string>
#include <string_view>

#include "forms/Controls.h"

namespace tallowin::nettools {

/// An answer, or a part of one, as it goes into the log: each LF becomes CR LF, also where a CR
/// stands in front of it already; every "%" goes; blanks at both ends go.
[[nodiscard]] std::string ReadableAnswer(std::string_view data);

/// Replaces the entries of `emaillist` by the mail addresses in `status`, the whole log: words,
/// that is what stands between blanks, with an "@" and a dot somewhere behind it. Punctuation
/// around an address stays on it. Words that hold the name of a registry are left out, wherever the
/// letters stand in them. The list has no duplicates, but for very long ones
/// (core::RemoveDuplicates).
void ExtractWhoisEmails(std::string_view status, forms::ItemList& emaillist);

}  // namespace tallowin::nettools
