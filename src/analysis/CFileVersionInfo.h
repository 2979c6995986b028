// The version resource of one file, in words.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "analysis/VersionWords.h"
#include "platform/Paths.h"
#include "platform/VersionInfo.h"

namespace tallowin::analysis {

/// Filled by SetFullPathName. A text that a later file does not have stays what it was, so each
/// file wants an object of its own. Only the first language of a resource is read.
class CFileVersionInfo {
 public:
  CFileVersionInfo(platform::VersionInfo& versions, const platform::Paths& paths)
      : versions_(versions), paths_(paths) {}

  [[nodiscard]] const std::string& FullPathName() const { return fullPathName_; }
  /// Relative paths count from the current folder. Refreshes everything.
  void SetFullPathName(std::string_view path);
  void Refresh();

  /// The file has a version resource.
  [[nodiscard]] bool Available() const { return available_; }
  [[nodiscard]] const std::string& FileFlags() const { return fileFlags_; }
  [[nodiscard]] const std::string& FileOS() const { return fileOS_; }
  [[nodiscard]] const std::string& FileType() const { return fileType_; }
  [[nodiscard]] const std::string& FileSubType() const { return fileSubType_; }
  /// These three come from the numbers of the fixed block.
  [[nodiscard]] const std::string& VerFile() const { return verFile_; }
  [[nodiscard]] const std::string& VerProduct() const { return verProduct_; }
  [[nodiscard]] const std::string& VerStructure() const { return verStructure_; }
  /// What the first language is called.
  [[nodiscard]] const std::string& Language() const { return language_; }
  [[nodiscard]] const std::string& CompanyName() const { return companyName_; }
  [[nodiscard]] const std::string& FileDescription() const { return fileDescription_; }
  [[nodiscard]] const std::string& FileVersion() const { return fileVersion_; }
  [[nodiscard]] const std::string& InternalName() const { return internalName_; }
  [[nodiscard]] const std::string& LegalCopyright() const { return legalCopyright_; }
  [[nodiscard]] const std::string& LegalTrademarks() const { return legalTrademarks_; }
  [[nodiscard]] const std::string& OriginalFilename() const { return originalFilename_; }
  [[nodiscard]] const std::string& ProductName() const { return productName_; }
  [[nodiscard]] const std::string& ProductVersion() const { return productVersion_; }

 private:
  void TakeFixedBlock(const FixedFileInfo& block);
  void TakeTexts(const platform::VersionBlock& block, const std::string& key);

  platform::VersionInfo& versions_;
  const platform::Paths& paths_;
  std::string fullPathName_;
  bool available_ = false;
  std::string fileFlags_, fileOS_, fileType_, fileSubType_;
  std::string verFile_, verProduct_, verStructure_, language_;
  std::string companyName_, fileDescription_, fileVersion_, internalName_, legalCopyright_;
  std::string legalTrademarks_, originalFilename_, productName_, productVersion_;
};

}  // namespace tallowin::analysis
