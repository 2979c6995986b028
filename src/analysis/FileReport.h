// All that can be found out about one file without running it, as rows of a property and a value.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "analysis/CFileInfo.h"
#include "analysis/CFileVersionInfo.h"
#include "analysis/ReadFile.h"
#include "analysis/TrojanDetect.h"
#include "core/ErrorRegimes.h"

namespace tallowin::analysis {

/// Where the report is shown.
class PropertyRows {
 public:
  virtual ~PropertyRows() = default;
  virtual void ShowIcon(const platform::FileIcon& icon) = 0;
  virtual void Clear() = 0;
  virtual void Add(const std::string& property) = 0;
  /// Of the row added last.
  virtual void SetValue(const std::string& value) = 0;
};

/// Every row is there whatever fails: it is added first, and a value that cannot be had stays
/// empty. Nothing is reported.
class FileReport {
 public:
  struct Host {
    platform::FileFacts& fileFacts;
    platform::VersionInfo& versionInfo;
    platform::Paths& paths;
    platform::RegionalSettings& regional;
  };
  FileReport(const Host& host, ReadFile& readFile, const TrojanDetect& detect, PropertyRows& rows)
      : host_(host), readFile_(readFile), detect_(detect), rows_(rows) {}

  /// Reads the whole file for its checksum.
  void ShowFileFacts(const std::string& path);

 private:
  void ShowDateRows();
  void ShowAttributeRows();
  void ShowSizeRows();
  void ShowCrcRow(const std::string& path);
  void ShowVersionRows();
  void Row(const char* property, const std::function<std::string()>& value);
  [[nodiscard]] std::string ShortPath(const std::string& path) const;

  Host host_;
  ReadFile& readFile_;
  const TrojanDetect& detect_;
  PropertyRows& rows_;
  core::ResumeOnError statement_;
  std::optional<CFileInfo> fileInfo_;  ///< of the last scan, as is the next
  std::optional<CFileVersionInfo> versionInfo_;
};

}  // namespace tallowin::analysis
