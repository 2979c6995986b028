#include "nettools/WhoisText.h"

#include <algorithm>
#include <array>

#include "core/ErrorRegimes.h"
#include "core/MiscRoutines.h"

namespace tallowin::nettools {

namespace {

constexpr std::array<std::string_view, 4> kRegistries{"iana", "arin", "whois", "ripe"};

std::string Without(std::string_view text, std::string_view part) {
  std::string rest;
  for (auto found = text.find(part); found != std::string_view::npos; found = text.find(part)) {
    rest += text.substr(0, found);
    text.remove_prefix(found + part.size());
  }
  return rest.append(text);
}

bool HoldsAddress(std::string_view text) {
  const auto at = text.find('@');
  return at != std::string_view::npos && text.find('.', at) != std::string_view::npos;
}

bool NamesRegistry(std::string_view text) {
  const std::string word = core::LowerCase(text);
  return std::any_of(kRegistries.begin(), kRegistries.end(), [&](std::string_view registry) {
    return word.find(registry) != std::string::npos;
  });
}

/// Takes what stands in front of `separator`, or all, off the text, and the separator with it.
std::string_view TakePiece(std::string_view& text, char separator) {
  const auto piece = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(text.size(), piece.size() + 1));
  return piece;
}

void AddAddressesOf(std::string_view line, forms::ItemList& emaillist) {
  const std::string words = Without(core::Trim(line), "mailto:");
  for (std::string_view left = words; !left.empty();) {
    const std::string word(TakePiece(left, ' '));
    if (HoldsAddress(word) && !NamesRegistry(word)) emaillist.AddItem(word);
  }
}

}  // namespace

std::string ReadableAnswer(std::string_view data) {
  std::string text = core::ReplaceChar(data, "\n", "\r\n");
  std::erase(text, '%');
  return std::string(core::Trim(text));
}

void ExtractWhoisEmails(std::string_view status, forms::ItemList& emaillist) {
  emaillist.Clear();
  // The lines are those of core::GetLine, which would look for each of them from the start again:
  // strangers decide how long the log is.
  while (!status.empty()) {
    std::string line(TakePiece(status, '\r'));
    std::erase(line, '\n');
    if (HoldsAddress(line)) AddAddressesOf(line, emaillist);
  }
  core::ResumeOnError statement;
  statement([&] { core::RemoveDuplicates(emaillist); });
}

}  // namespace tallowin::nettools
