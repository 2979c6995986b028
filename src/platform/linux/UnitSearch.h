// The units of one systemd manager: which file stands for a name, and what the unit runs.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/AutostartPlaces.h"
#include "platform/linux/FolderWatch.h"
#include "platform/linux/ParsedFiles.h"
#include "platform/linux/UnitFile.h"

namespace tallowin::platform::linux_host {

class UnitSearch {
 public:
  struct Folder {
    UnitFolder place = {};
    std::string real = {};  ///< its path without links
    std::map<std::string, NameInFolder, std::less<>> names = {};
  };

  UnitSearch(const std::vector<UnitFolder>& places, UnitMeanings meanings)
      : places_(places), meanings_(std::move(meanings)) {}

  /// Reads the names in the folders. False if the system was short of something.
  [[nodiscard]] bool BeginLook(FolderWatch& watch);
  void EndLook() { files_.EndLook(); }
  [[nodiscard]] const std::vector<Folder>& Folders() const { return folders_; }

  /// The unit that a name stands for when all its aliases are followed: its own name if there is
  /// none, or a circle of them. Only a link to a unit in one of the folders is an alias.
  [[nodiscard]] std::string WithoutAliases(std::string_view name) const;

  enum class State { Missing, Masked, Startable };
  [[nodiscard]] State StateOf(std::string_view unit) const;

  /// What the unit runs, or for a timer, path or socket what it starts. `otherFragment` is read
  /// where no folder has a file for the unit.
  struct Start {
    std::string command;
    std::vector<std::string> files;  ///< of the unit itself: its own, if it has one, and drop-ins
  };
  [[nodiscard]] Start StartOf(std::string_view unit, const std::string& otherFragment = {});

  /// True if files could not be read since BeginLook because the system was short of something.
  [[nodiscard]] bool WasShort() const { return short_; }

 private:
  [[nodiscard]] std::string Find(std::string_view name) const;
  [[nodiscard]] std::string FragmentOf(const UnitName& unit) const;
  [[nodiscard]] bool IsPlace(const std::filesystem::path& folder) const;
  [[nodiscard]] std::string AliasTarget(const UnitName& unit) const;
  [[nodiscard]] std::map<std::string, std::string> DropInsOf(const UnitName& unit);
  [[nodiscard]] std::vector<std::string> FilesOf(const UnitName& unit,
                                                 const std::string& otherFragment);
  [[nodiscard]] UnitCommands CommandsIn(const std::vector<std::string>& files);
  [[nodiscard]] std::shared_ptr<const UnitFile> Read(const std::string& path);

  const std::vector<UnitFolder>& places_;
  UnitMeanings meanings_;
  std::vector<Folder> folders_;
  ParsedFiles<UnitFile> files_{std::size_t{1} << 20U};
  FolderWatch* watch_ = nullptr;
  bool short_ = false;
};

}  // namespace tallowin::platform::linux_host
