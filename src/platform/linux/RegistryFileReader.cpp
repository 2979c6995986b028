#include "platform/linux/RegistryFileReader.h"

#include <charconv>

namespace tallowin::platform::linux_host {
namespace {

std::string_view Trim(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const auto begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// What stands before a comment; for data that can hold no semicolon of its own.
std::string_view CutComment(std::string_view text) { return Trim(text.substr(0, text.find(';'))); }

bool TakePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

/// The whole text as a hexadecimal number of at most `maxDigits` digits.
std::optional<std::uint32_t> HexNumber(std::string_view text, std::size_t maxDigits) {
  if (text.empty() || text.size() > maxDigits) return std::nullopt;
  std::uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number, 16);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

RegistryFileResult RegistryFileReader::Run() {
  bool good = ReadHeader();
  while (good) {
    const auto line = lines_.Next();
    if (!line) break;
    good = ReadStatement(Trim(*line));
  }
  if (good && lines_.Broken()) good = Fail("the line holds bytes that are no text");
  if (good) return {};
  return {false, lines_.Number(), reason_};
}

bool RegistryFileReader::ReadHeader() {
  const auto line = lines_.Next();
  const std::string_view header = line ? Trim(*line) : std::string_view();
  if (header == "REGEDIT4") {
    version_ = RegistryFileVersion::Four;
  } else if (header != "Windows Registry Editor Version 5.00") {
    return Fail(
        "this is no registry file: its first line is neither \"REGEDIT4\" nor "
        "\"Windows Registry Editor Version 5.00\"");
  }
  return true;
}

bool RegistryFileReader::ReadStatement(std::string_view text) {
  if (text.empty() || text.front() == ';') return true;
  if (text.front() == '[') return ReadKey(text);
  if (text.front() == '"' || text.front() == '@') return ReadValue(text);
  return Fail("the line is neither a key nor a value nor a comment");
}

bool RegistryFileReader::ReadKey(std::string_view text) {
  key_.reset();
  // A key's name may hold brackets of its own, so that the last one is the end.
  const auto end = text.rfind(']');
  if (end == std::string_view::npos) return Fail("the bracket that closes the key is missing");
  if (!NoMore(text.substr(end + 1))) return false;
  text = text.substr(1, end - 1);
  const bool deletion = TakePrefix(text, "-");
  const auto location = ParseRegistryLocation(text);
  if (!location) return Fail("the key begins with no known root such as HKEY_CURRENT_USER");
  if (deletion) return DeleteKey(*location);
  return Done(registry_.CreateKey(location->root, location->path, key_));
}

bool RegistryFileReader::DeleteKey(const RegistryLocation& location) {
  const RegistryResult result = registry_.DeleteTree(location.root, location.path);
  return result == registry::kNotFound || Done(result);
}

bool RegistryFileReader::ReadValue(std::string_view text) {
  if (!key_) return Fail("the value stands below no key");
  std::string name;
  if (!TakePrefix(text, "@") && !ReadQuoted(text, name)) return false;
  text = Trim(text);
  if (!TakePrefix(text, "=")) return Fail("the equals sign behind the value's name is missing");
  return ReadData(name, Trim(text));
}

bool RegistryFileReader::ReadQuoted(std::string_view& text, std::string& content) {
  text.remove_prefix(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') {
      text.remove_prefix(i + 1);
      return true;
    }
    if (text[i] == '\\') {
      ++i;
      const bool known = i < text.size() && (text[i] == '\\' || text[i] == '"');
      if (!known)
        return Fail("a backslash in quotes stands before neither a backslash nor a quote");
    }
    content += text[i];
  }
  return Fail("the closing quote is missing");
}

bool RegistryFileReader::ReadData(const std::string& name, std::string_view text) {
  RegistryValue value;
  if (text.starts_with('-')) {
    if (!NoMore(text.substr(1))) return false;
    const RegistryResult result = key_->DeleteValue(name);
    return result == registry::kNotFound || Done(result);
  }
  if (text.starts_with('"')) {
    value.type = registry::kSz;
    if (!ReadQuoted(text, value.data) || !NoMore(text)) return false;
  } else if (TakePrefix(text, "dword:")) {
    if (!ReadDword(CutComment(text), value)) return false;
  } else if (TakePrefix(text, "hex")) {
    std::uint32_t type = registry::kBinary;
    std::string bytes;
    if (!ReadHexType(text, type) || !ReadHex(text, bytes)) return false;
    auto read = ValueFromFileBytes(type, std::move(bytes), version_);
    if (!read) return Fail("the data of the text is no UTF-16");
    value = std::move(*read);
  } else {
    return Fail("the data is neither a text in quotes nor dword: nor hex: nor hex(N):");
  }
  return Done(key_->SetValue(name, value));
}

bool RegistryFileReader::ReadDword(std::string_view digits, RegistryValue& value) {
  const auto number = HexNumber(digits, 8);
  if (!number) return Fail("behind dword: stand not one to eight hexadecimal digits");
  value = RegistryValue::Dword(*number);
  return true;
}

bool RegistryFileReader::ReadHexType(std::string_view& text, std::uint32_t& type) {
  if (TakePrefix(text, "(")) {
    const auto end = text.find(')');
    const auto number = HexNumber(text.substr(0, end), 8);
    if (end == std::string_view::npos || !number) return Fail("the type in hex(N): is no number");
    type = *number;
    text.remove_prefix(end + 1);
  }
  return TakePrefix(text, ":") || Fail("the colon behind hex is missing");
}

bool RegistryFileReader::ReadHex(std::string_view text, std::string& bytes) {
  std::optional<std::string> line;
  text = CutComment(text);
  while (text.ends_with('\\')) {
    text.remove_suffix(1);
    text = Trim(text);
    // An empty first line is what is left when the value's name is a long one.
    const bool empty = text.empty() && bytes.empty();
    if (!empty && !text.ends_with(',')) return Fail("the comma before the backslash is missing");
    if (!empty && !ReadHexLine(text.substr(0, text.size() - 1), bytes)) return false;
    line = lines_.Next();
    if (!line) return Fail("the file ends in the middle of the data");
    text = CutComment(*line);
  }
  // A comma may close the data; nothing but a comma may not.
  if (text.ends_with(',')) text.remove_suffix(1);
  return text.empty() || ReadHexLine(text, bytes);
}

bool RegistryFileReader::ReadHexLine(std::string_view text, std::string& bytes) {
  while (true) {
    const auto comma = text.find(',');
    const auto byte = HexNumber(Trim(text.substr(0, comma)), 2);
    if (!byte) return Fail("the data is no list of hexadecimal bytes with commas between them");
    bytes += static_cast<char>(*byte);
    if (comma == std::string_view::npos) return true;
    text.remove_prefix(comma + 1);
  }
}

bool RegistryFileReader::NoMore(std::string_view text) {
  text = Trim(text);
  return text.empty() || text.front() == ';' ||
         Fail("something stands behind the end of the statement");
}

bool RegistryFileReader::Done(RegistryResult result) {
  if (result == registry::kSuccess) return true;
  reason_ = DescribeRegistryResult(result);
  return false;
}

bool RegistryFileReader::Fail(const char* reason) {
  reason_ = reason;
  return false;
}

}  // namespace tallowin::platform::linux_host
