// Files as they lie in a temporary folder, and what a test makes up about them and about processes.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileFacts.h"
#include "platform/Files.h"
#include "platform/IniFiles.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/ResourceModules.h"
#include "platform/RunTimeError.h"
#include "platform/Shell.h"
#include "platform/VersionInfo.h"

namespace tallowin::test {

using namespace platform;

inline std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FakePaths : public Paths {
 public:
  explicit FakePaths(std::string folder) : folder_(std::move(folder)) {}
  [[nodiscard]] char Separator() const override { return '/'; }
  [[nodiscard]] std::string ProgramFolder() const override { return folder_; }
  [[nodiscard]] std::string WindowsFolder() const override { return folder_ + "/windows"; }
  [[nodiscard]] std::string SystemFolder() const override { return folder_ + "/system"; }
  [[nodiscard]] std::string DriveC() const override { return folder_; }
  [[nodiscard]] bool Find(std::string_view path) const override {
    return std::filesystem::exists(path) || patterns.contains(path);
  }
  std::set<std::string, std::less<>>
      patterns;  ///< which a search finds, though no file is called so
  std::string MakeTempFile(std::string_view, std::string_view) override { return {}; }
  std::map<std::string, std::string, std::less<>> searchPath;  ///< where a search finds a name
  [[nodiscard]] std::string SearchPath(std::string_view name) const override {
    const auto found = searchPath.find(name);
    return found == searchPath.end() ? "" : found->second;
  }
  [[nodiscard]] std::string FullPath(std::string_view path) const override {
    if (path.empty()) return {};
    return path.starts_with('/') ? std::string(path) : folder_ + "/" + std::string(path);
  }
  bool allHaveShortPaths = false;  ///< or else only files that are there
  [[nodiscard]] std::string ShortPath(std::string_view path) const override {
    return allHaveShortPaths || std::filesystem::exists(path) ? std::string(path) : std::string();
  }

 private:
  std::string folder_;
};

class FakeIniFiles : public IniFiles {
 public:
  std::map<std::string, std::string> values;  ///< under "file section key", in lower case
  bool writable = true;

  static std::string Place(std::string_view file, std::string_view section, std::string_view key) {
    return Lower(file.substr(file.rfind('/') + 1)) + " " + Lower(section) + " " + Lower(key);
  }
  std::string GetPrivateProfileString(std::string_view file, std::string_view section,
                                      std::string_view key, std::size_t bufferSize) override {
    const auto found = values.find(Place(file, section, key));
    return found == values.end() ? "" : found->second.substr(0, bufferSize - 1);
  }
  bool WritePrivateProfileString(std::string_view file, std::string_view section,
                                 std::string_view key, std::string_view value) override {
    if (writable) values[Place(file, section, key)] = value;
    return writable;
  }
};

/// Files as they lie on the disk, unless a test says that one cannot be read or deleted.
struct FakeFiles : Files {
  std::set<std::string, std::less<>> unreadable;
  std::set<std::string, std::less<>> undeletable;
  std::vector<std::string> deleted;

  [[nodiscard]] FileContents Read(std::string_view path) override {
    const std::string text = ReadFile(path);
    if (text.empty() || unreadable.contains(path)) {
      throw RunTimeError(9, "Subscript out of range");
    }
    auto* data = static_cast<char*>(std::malloc(text.size()));
    std::copy(text.begin(), text.end(), data);
    return {data, text.size()};
  }
  void Delete(std::string_view path) override {
    if (undeletable.contains(path)) throw RunTimeError(75, "Path/File access error");
    if (!std::filesystem::remove(path)) throw RunTimeError(53, "File not found");
    deleted.emplace_back(path);
  }
};

/// The processes that a test makes up. Ending one takes it out of the list.
struct FakeProcesses : Processes {
  std::vector<ProcessEntry> running;
  std::map<std::uint32_t, std::vector<ModuleEntry>> modules;
  std::uint32_t modulesResult = processes::kSuccess;
  bool snapshots = true;
  std::vector<std::uint32_t> terminated;

  [[nodiscard]] std::optional<std::vector<ProcessEntry>> Snapshot() override {
    return snapshots ? std::optional(running) : std::nullopt;
  }
  std::uint32_t Modules(std::uint32_t processId, std::vector<ModuleEntry>& found) override {
    if (modulesResult == processes::kSuccess) found = modules[processId];
    return modulesResult;
  }
  void Terminate(const ProcessEntry& entry) override {
    terminated.push_back(entry.processId);
    std::erase_if(running, [&](const auto& other) { return other.processId == entry.processId; });
  }
};

/// The directory entries that a test makes up; letters of any case find them.
struct FakeFileFacts : FileFacts {
  std::map<std::string, FoundFile> entries;  ///< under the path in lower case
  ShellFileInfo shellInfo;
  std::uint64_t compressedSize = 0;
  bool settable = true;

  FoundFile* Entry(std::string_view path) {
    const auto found = entries.find(Lower(path));
    return found == entries.end() ? nullptr : &found->second;
  }
  std::optional<FoundFile> FindFirstFile(std::string_view path) override {
    const auto* entry = Entry(path);
    return entry == nullptr ? std::nullopt : std::optional(*entry);
  }
  std::uint64_t GetCompressedFileSize(std::string_view) override { return compressedSize; }
  ShellFileInfo GetShellFileInfo(std::string_view) override { return shellInfo; }
  bool SetFileAttributes(std::string_view path, std::uint32_t attributes) override {
    if (settable) Entry(path)->attributes = attributes;
    return settable;
  }
  bool SetFileTime(std::string_view path, FileTimeKind kind, FileTime time) override {
    if (settable && kind == FileTimeKind::Modify) Entry(path)->modifyTime = time;
    return settable;
  }
};

/// One version resource for every file, by the paths of its values.
struct FakeVersionInfo : VersionInfo {
  using Values = std::map<std::string, std::string, std::less<>>;
  std::optional<Values> values;

  struct Block : VersionBlock {
    explicit Block(Values of) : values(std::move(of)) {}
    Values values;
    [[nodiscard]] std::optional<std::string> VerQueryValue(std::string_view path) const override {
      const auto found = values.find(path);
      return found == values.end() ? std::nullopt : std::optional(found->second);
    }
  };
  std::unique_ptr<VersionBlock> GetFileVersionInfo(std::string_view) override {
    return values ? std::make_unique<Block>(*values) : nullptr;
  }
  std::string VerLanguageName(std::uint16_t language) override {
    return "Language " + std::to_string(language);
  }
};

/// One set of resources for every file. A type's names are found under its number or name.
struct FakeModules : ResourceModules {
  bool executable = true;
  std::vector<ResourceId> types;
  std::map<std::string, std::vector<ResourceId>> names;
  std::map<std::int32_t, std::string> strings;
  int open = 0;

  static std::string Key(const ResourceId& type) {
    return type.IsName() ? type.name : std::to_string(type.value);
  }
  struct Module : ResourceModule {
    explicit Module(FakeModules& of) : file(of) { ++file.open; }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() override { --file.open; }
    FakeModules& file;
    bool EnumResourceTypes(const Callback& callback) override {
      return std::ranges::all_of(file.types, callback);
    }
    bool EnumResourceNames(const ResourceId& type, const Callback& callback) override {
      return std::ranges::all_of(file.names[Key(type)], callback);
    }
    std::string LoadString(std::int32_t id, std::size_t bufferSize) override {
      const auto found = file.strings.find(id);
      return found == file.strings.end() ? "" : found->second.substr(0, bufferSize - 1);
    }
  };
  std::unique_ptr<ResourceModule> LoadLibraryAsDataFile(std::string_view) override {
    return executable ? std::make_unique<Module>(*this) : nullptr;
  }
};

class FakeShell : public Shell {
 public:
  std::vector<std::string> ran;     ///< command lines
  std::vector<std::string> opened;  ///< verb and file

  std::int32_t Execute(std::string_view verb, std::string_view file, std::int32_t) override {
    opened.push_back(std::string(verb) + " " + std::string(file));
    return 42;
  }
  bool RunAndWait(std::string_view commandLine, std::chrono::milliseconds) override {
    ran.emplace_back(commandLine);
    return true;
  }
};

}  // namespace tallowin::test
