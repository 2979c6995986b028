// The words that make a program suspicious, and the search for them.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace tallowin::analysis {

struct SuspiciousWord {
  std::string_view word;  ///< in lower case
  int level;
};

/// The blanks of " port " belong to the word: it must not be found in "export" or "report".
inline constexpr std::array<SuspiciousWord, 16> kSuspiciousWords = {{{"winsock", 2},
                                                                     {"trojan", 3},
                                                                     {"virus", 3},
                                                                     {"password", 2},
                                                                     {"hack", 3},
                                                                     {"socket", 2},
                                                                     {"bind", 2},
                                                                     {"tcp", 2},
                                                                     {"udp", 2},
                                                                     {"server", 2},
                                                                     {"client", 2},
                                                                     {" port ", 2},
                                                                     {"31337", 3},
                                                                     {"orifice", 3},
                                                                     {"deltree", 3},
                                                                     {"warez", 3}}};

/// Puts A to Z of `text` in lower case, in place, and returns the highest level of the words that
/// occur in it, 1 if none does. One pass over all of it, whatever is found.
[[nodiscard]] int LowerAndRate(std::span<char> text);

}  // namespace tallowin::analysis
