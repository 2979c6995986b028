#include "Commands.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <string_view>

#include "ValueText.h"
#include "forms/PlainText.h"
#include "platform/linux/RegistryFile.h"
#include "platform/linux/RegistryNames.h"

namespace tallowin::reg {
namespace {

namespace host = platform::linux_host;
namespace registry = platform::registry;
using forms::PlainText;
using platform::Registry;
using platform::RegistryKey;
using platform::RegistryResult;
using platform::RegistryValue;
using Words = std::vector<std::string>;

struct Command {
  std::string_view name;
  std::size_t minWords;  ///< the command's name counts
  std::size_t maxWords;
  int (*run)(const Words& words, Registry& registry);
};

int Fail(int status, std::string_view message) {
  std::cerr << "tallowin-reg: " << PlainText(message) << '\n';
  return status;
}

/// One line for one text, whatever is in it. A stored "\n" does not look like a line end.
std::string OneLine(std::string_view text) {
  std::string escaped;
  for (const char c : text) escaped += c == '\\' ? std::string("\\\\") : std::string(1, c);
  std::string line;
  for (const char c : PlainText(escaped)) {
    if (c == '\n') {
      line += "\\n";
    } else if (c == '\t') {
      line += "\\t";
    } else {
      line += c;
    }
  }
  return line;
}

/// The parts of a REG_MULTI_SZ, each as a line, with \0 between them.
std::string OneLineOfParts(std::string_view data) {
  if (data.ends_with('\0')) data.remove_suffix(1);
  std::size_t end = data.find('\0');
  std::string line = OneLine(data.substr(0, end));
  while (end != std::string_view::npos) {
    data.remove_prefix(end + 1);
    end = data.find('\0');
    line.append("\\0").append(OneLine(data.substr(0, end)));
  }
  return line;
}

std::string DataLine(const RegistryValue& value) {
  return value.type == registry::kMultiSz ? OneLineOfParts(value.data) : OneLine(DataText(value));
}

std::string Shown(const std::string& valueName) {
  return valueName.empty() ? "(default)" : '"' + valueName + '"';
}

/// kDone, or the exit status after a message.
int Locate(const std::string& text, host::RegistryLocation& location) {
  auto parsed = host::ParseRegistryLocation(text);
  if (!parsed) {
    return Fail(kWrongUsage, text +
                                 ": a key begins with HKEY_CURRENT_USER (HKCU), "
                                 "HKEY_LOCAL_MACHINE (HKLM), HKEY_CLASSES_ROOT (HKCR) or "
                                 "HKEY_USERS (HKU)");
  }
  location = std::move(*parsed);
  return kDone;
}

int Open(const std::string& text, Registry& registry, std::unique_ptr<RegistryKey>& key) {
  host::RegistryLocation location;
  if (const int status = Locate(text, location); status != kDone) return status;
  const RegistryResult result = registry.OpenKey(location.root, location.path, key);
  if (result == registry::kSuccess) return kDone;
  return Fail(kFailed, text + ": " + host::DescribeRegistryResult(result));
}

int FailOnValue(const Words& words, RegistryResult result) {
  const std::string reason = result == registry::kNotFound ? "the key has no such value"
                                                           : host::DescribeRegistryResult(result);
  return Fail(kFailed, words[1] + ": " + Shown(words[2]) + ": " + reason);
}

int Report(const std::string& fileName, const host::RegistryFileResult& result) {
  if (result.ok) return kDone;
  const std::string line = result.line > 0 ? ": line " + std::to_string(result.line) : "";
  return Fail(kFailed, fileName + line + ": " + result.reason);
}

int Import(const Words& words, Registry& registry) {
  return Report(words[1], host::ImportRegistryFile(words[1], registry));
}

int Export(const Words& words, Registry& registry) {
  if (words.size() < 3) return Report(words[1], host::ExportWholeRegistry(words[1], registry));
  std::unique_ptr<RegistryKey> key;
  if (const int status = Open(words[2], registry, key); status != kDone) return status;
  host::RegistryLocation location;
  if (const int status = Locate(words[2], location); status != kDone) return status;
  return Report(words[1], host::ExportRegistryKey(words[1], location, registry));
}

int List(const Words& words, Registry& registry) {
  std::unique_ptr<RegistryKey> key;
  if (const int status = Open(words[1], registry, key); status != kDone) return status;
  std::string name;
  RegistryValue value;
  RegistryResult result = registry::kSuccess;
  for (std::uint32_t i = 0; (result = key->EnumKey(i, name)) == registry::kSuccess; ++i) {
    std::cout << '[' << OneLine(name) << "]\n";
  }
  if (result != registry::kNoMoreItems) {
    return Fail(kFailed, words[1] + ": " + host::DescribeRegistryResult(result));
  }
  for (std::uint32_t i = 0; (result = key->EnumValue(i, name, value)) == registry::kSuccess; ++i) {
    std::cout << OneLine(Shown(name)) << ' ' << TypeName(value.type) << ' ' << DataLine(value)
              << '\n';
  }
  if (result == registry::kNoMoreItems) return kDone;
  return Fail(kFailed, words[1] + ": " + host::DescribeRegistryResult(result));
}

int Get(const Words& words, Registry& registry) {
  std::unique_ptr<RegistryKey> key;
  if (const int status = Open(words[1], registry, key); status != kDone) return status;
  RegistryValue value;
  const RegistryResult result = key->QueryValue(words[2], value);
  if (result != registry::kSuccess) return FailOnValue(words, result);
  std::cout << PlainText(DataText(value)) << '\n';
  return kDone;
}

int Set(const Words& words, Registry& registry) {
  host::RegistryLocation location;
  if (const int status = Locate(words[1], location); status != kDone) return status;
  std::string reason;
  const auto value = ParseValue(words[3], words[4], reason);
  if (!value) return Fail(kWrongUsage, words[4] + ": " + reason);
  std::unique_ptr<RegistryKey> key;
  RegistryResult result = registry.CreateKey(location.root, location.path, key);
  if (result == registry::kSuccess) result = key->SetValue(words[2], *value);
  return result == registry::kSuccess ? kDone : FailOnValue(words, result);
}

int Delete(const Words& words, Registry& registry) {
  if (words.size() == 3) {
    std::unique_ptr<RegistryKey> key;
    if (const int status = Open(words[1], registry, key); status != kDone) return status;
    const RegistryResult result = key->DeleteValue(words[2]);
    return result == registry::kSuccess ? kDone : FailOnValue(words, result);
  }
  host::RegistryLocation location;
  if (const int status = Locate(words[1], location); status != kDone) return status;
  const RegistryResult result = registry.DeleteTree(location.root, location.path);
  if (result == registry::kSuccess) return kDone;
  return Fail(kFailed, words[1] + ": " + host::DescribeRegistryResult(result));
}

constexpr std::array<Command, 6> kCommands{{
    {"import", 2, 2, Import},
    {"export", 2, 3, Export},
    {"list", 2, 2, List},
    {"get", 3, 3, Get},
    {"set", 5, 5, Set},
    {"delete", 2, 3, Delete},
}};

}  // namespace

const char* HelpText() {
  return "Usage: tallowin-reg COMMAND\n"
         "Reads and changes the settings registry of Tallowin.\n"
         "\n"
         "  import FILE                carry out a file in the registry editor's export format\n"
         "  export FILE [KEY]          write everything, or a key with what is below it\n"
         "  list KEY                   sub-keys in brackets, then values with type and data\n"
         "  get KEY VALUE              the data of one value\n"
         "  set KEY VALUE TYPE DATA    write a value; keys are made where they are missing\n"
         "  delete KEY [VALUE]         remove a value, or a key with everything below it\n"
         "\n"
         "A KEY is written whole, 'HKEY_CURRENT_USER\\Software\\Marrowind Software' for example;\n"
         "HKCU, HKLM, HKCR and HKU stand for the long names of the roots. The VALUE '' is the\n"
         "default value of a key.\n"
         "\n"
         "list shows a backslash in a text as \\\\, a line end as \\n and a tab as \\t; get gives\n"
         "them as they are.\n"
         "\n"
         "TYPE and DATA:\n"
         "  REG_SZ, REG_EXPAND_SZ      a text\n"
         "  REG_DWORD                  a number from 0 to 4294967295, decimal or with 0x\n"
         "  REG_BINARY                 pairs of hexadecimal digits\n"
         "  REG_MULTI_SZ               texts with \\0 between them\n"
         "\n"
         "Exit status: 0 done, 1 failed, 2 wrong usage.\n";
}

int RunCommand(const Words& words, Registry& registry) {
  const auto* command = std::find_if(kCommands.begin(), kCommands.end(), [&](const Command& each) {
    return each.name == words.front();
  });
  if (command == kCommands.end()) {
    return Fail(kWrongUsage, words.front() + ": there is no such command; see --help");
  }
  if (words.size() < command->minWords || words.size() > command->maxWords) {
    return Fail(kWrongUsage, words.front() + ": wrong number of arguments; see --help");
  }
  const int status = command->run(words, registry);
  // A reader that has gone away or a full disk shows when the buffer is written out.
  if (status == kDone && !std::cout.flush()) return Fail(kFailed, "the output cannot be written");
  return status;
}

}  // namespace tallowin::reg
