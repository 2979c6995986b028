#include "platform/linux/RegistryNames.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <array>

namespace tallowin::platform::linux_host {
namespace {

struct KnownRoot {
  RegistryRoot root;
  std::string_view name;
  std::string_view shortName;
};

constexpr std::array<KnownRoot, 4> kRoots{{
    {RegistryRoot::CurrentUser, "HKEY_CURRENT_USER", "HKCU"},
    {RegistryRoot::LocalMachine, "HKEY_LOCAL_MACHINE", "HKLM"},
    {RegistryRoot::ClassesRoot, "HKEY_CLASSES_ROOT", "HKCR"},
    {RegistryRoot::Users, "HKEY_USERS", "HKU"},
}};

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return LowerAscii(c); });
  return lower;
}

bool IsAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

std::string_view TrimBackslashes(std::string_view path) {
  while (path.starts_with('\\')) path.remove_prefix(1);
  while (path.ends_with('\\')) path.remove_suffix(1);
  return path;
}

std::vector<std::string_view> Split(std::string_view path) {
  std::vector<std::string_view> names;
  while (!path.empty()) {
    const auto end = std::min(path.find('\\'), path.size());
    if (end > 0) names.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return names;
}

}  // namespace

std::string_view RootName(RegistryRoot root) {
  const auto* known = std::find_if(kRoots.begin(), kRoots.end(),
                                   [root](const KnownRoot& each) { return each.root == root; });
  return known == kRoots.end() ? std::string_view() : known->name;
}

std::optional<RegistryLocation> ParseRegistryLocation(std::string_view text) {
  const auto end = std::min(text.find('\\'), text.size());
  const std::string name = LowerAscii(text.substr(0, end));
  for (const KnownRoot& known : kRoots) {
    if (name != LowerAscii(known.name) && name != LowerAscii(known.shortName)) continue;
    return RegistryLocation{known.root, std::string(TrimBackslashes(text.substr(end)))};
  }
  return std::nullopt;
}

std::string WriteRegistryLocation(const RegistryLocation& location) {
  std::string text(RootName(location.root));
  if (!location.path.empty()) text += '\\' + location.path;
  return text;
}

std::string FoldName(std::string_view name) {
  // Nearly every name is ASCII, and names are folded at each connection attempt.
  if (IsAscii(name)) return LowerAscii(name);
  QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString text = decode(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
  // Bytes that are no UTF-8 all decode to one and the same character; unfolded they stay distinct.
  if (decode.hasError()) return LowerAscii(name);
  return text.toCaseFolded().toStdString();
}

std::vector<std::string_view> NamesAlongPath(RegistryRoot root, std::string_view path) {
  if (RootName(root).empty()) return {};
  std::vector<std::string_view> names = Split(path);
  const bool defaultUser =
      root == RegistryRoot::Users && !names.empty() && LowerAscii(names.front()) == ".default";
  if (defaultUser) {
    names.front() = RootName(RegistryRoot::CurrentUser);
  } else {
    names.insert(names.begin(), RootName(root));
  }
  return names;
}

}  // namespace tallowin::platform::linux_host
