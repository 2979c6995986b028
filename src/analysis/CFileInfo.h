// What the directory and the desktop know about one file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileFacts.h"
#include "platform/Paths.h"
#include "platform/RegionalSettings.h"

namespace tallowin::analysis {

/// Filled by SetFullPathName. Nothing is reported: where a file is not found, FileExists becomes
/// false and all else stays what it was.
class CFileInfo {
 public:
  using Date = std::optional<platform::FileTime>;  ///< nothing where the file system keeps none

  CFileInfo(platform::FileFacts& facts, const platform::Paths& paths,
            const platform::RegionalSettings& regional)
      : facts_(facts), paths_(paths), regional_(regional) {}

  [[nodiscard]] const std::string& FullPathName() const { return fullPathName_; }
  /// Relative paths count from the current folder. Refreshes all facts.
  void SetFullPathName(std::string_view path);
  void Refresh();

  [[nodiscard]] const std::string& FileName() const { return fileName_; }
  /// With a separator at its end, each folder as it is spelt on disk.
  [[nodiscard]] const std::string& FilePath() const { return filePath_; }
  [[nodiscard]] const std::string& FileExtension() const { return fileExtension_; }
  [[nodiscard]] const std::string& ShortPathName() const { return shortPathName_; }
  [[nodiscard]] const std::string& ShortName() const { return shortName_; }
  [[nodiscard]] const std::string& ShortPath() const { return shortPath_; }
  [[nodiscard]] const std::string& DisplayName() const { return displayName_; }
  [[nodiscard]] const std::string& TypeName() const { return typeName_; }
  [[nodiscard]] bool FileExists() const { return fileExists_; }
  [[nodiscard]] bool PathExists() const { return pathExists_; }
  /// The two halves of the size; from 2 GB on the low one is negative.
  [[nodiscard]] std::int32_t FileSize() const;
  [[nodiscard]] std::int32_t FileSizeHigh() const;
  [[nodiscard]] std::int32_t CompressedFileSize() const;
  [[nodiscard]] std::int32_t CompressedFileSizeHigh() const;
  [[nodiscard]] const platform::FileIcon& hIcon() const { return icon_; }

  /// Whole seconds.
  [[nodiscard]] Date CreationTime() const { return creationTime_; }
  [[nodiscard]] Date LastAccessTime() const { return lastAccessTime_; }
  [[nodiscard]] Date ModifyTime() const { return modifyTime_; }
  /// These three change the file, where that is possible, and refresh.
  void SetCreationTime(platform::FileTime time);
  void SetLastAccessTime(platform::FileTime time);
  void SetModifyTime(platform::FileTime time);

  [[nodiscard]] std::uint32_t Attributes() const { return attributes_; }
  void SetAttributes(std::uint32_t attributes);
  [[nodiscard]] bool attrReadOnly() const { return Has(platform::attribute::kReadOnly); }
  [[nodiscard]] bool attrHidden() const { return Has(platform::attribute::kHidden); }
  [[nodiscard]] bool attrSystem() const { return Has(platform::attribute::kSystem); }
  [[nodiscard]] bool attrArchive() const { return Has(platform::attribute::kArchive); }
  [[nodiscard]] bool attrTemporary() const { return Has(platform::attribute::kTemporary); }
  [[nodiscard]] bool attrCompressed() const { return Has(platform::attribute::kCompressed); }
  void SetattrReadOnly(bool on) { SetBit(platform::attribute::kReadOnly, on); }
  void SetattrHidden(bool on) { SetBit(platform::attribute::kHidden, on); }
  void SetattrSystem(bool on) { SetBit(platform::attribute::kSystem, on); }
  void SetattrArchive(bool on) { SetBit(platform::attribute::kArchive, on); }
  /// What a file is, and nothing that can be asked for.
  void SetattrTemporary(bool /*on*/) {}
  void SetattrCompressed(bool /*on*/) {}

  /// The long date, a blank, the long time; empty where there is no date.
  [[nodiscard]] std::string FormatFileDate(Date date) const;
  [[nodiscard]] std::string FormatFileSize(std::int32_t size) const;

 private:
  [[nodiscard]] bool Has(std::uint32_t bit) const { return (attributes_ & bit) != 0; }
  void SetBit(std::uint32_t bit, bool on);
  void SetTime(platform::FileTimeKind kind, platform::FileTime time);
  void TakeEntry(const platform::FoundFile& found);
  void TakeNames(const platform::FoundFile& found);
  void TakeShellInfo();
  [[nodiscard]] std::string LongPath(std::string path) const;

  platform::FileFacts& facts_;
  const platform::Paths& paths_;
  const platform::RegionalSettings& regional_;
  std::string fullPathName_, fileName_, filePath_, fileExtension_;
  std::string shortPathName_, shortName_, shortPath_;
  std::string displayName_, typeName_;
  bool fileExists_ = false;
  bool pathExists_ = false;
  std::uint64_t fileSize_ = 0;
  std::uint64_t compressedFileSize_ = 0;
  Date creationTime_, lastAccessTime_, modifyTime_;
  std::uint32_t attributes_ = 0;
  platform::FileIcon icon_;
};

}  // namespace tallowin::analysis
