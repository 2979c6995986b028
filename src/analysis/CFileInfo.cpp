#include "analysis/CFileInfo.h"

#include <algorithm>
#include <chrono>

#include "analysis/FileSizeText.h"
#include "core/MiscRoutines.h"
#include "core/TallowinModule.h"

namespace tallowin::analysis {
namespace {

std::int32_t LowHalf(std::uint64_t size) { return static_cast<std::int32_t>(size & 0xFFFFFFFFU); }
std::int32_t HighHalf(std::uint64_t size) { return static_cast<std::int32_t>(size >> 32U); }

std::string ExtensionOf(const std::string& name) {
  const std::size_t point = name.rfind('.');
  return point == std::string::npos ? std::string() : name.substr(point + 1);
}

CFileInfo::Date WholeSeconds(CFileInfo::Date time) {
  if (!time) return time;
  return std::chrono::floor<std::chrono::seconds>(*time);
}

/// A server and what it shares, with nothing behind it: no directory tells how it is spelt.
bool IsBareShare(const std::string& path, char separator) {
  if (path.size() < 2 || path[0] != separator || path[1] != separator) return false;
  const std::size_t next = path.find(separator, 2);
  return next != std::string::npos && path.find(separator, next + 1) == std::string::npos;
}

bool IsDrive(const std::string& path, char separator) {
  return path.size() == 3 && path[1] == ':' && path[2] == separator;
}

}  // namespace

void CFileInfo::SetFullPathName(std::string_view path) {
  const std::string full = paths_.FullPath(path);
  if (full.empty()) return;
  fullPathName_ = full;
  Refresh();
}

void CFileInfo::Refresh() {
  const auto found = facts_.FindFirstFile(fullPathName_);
  fileExists_ = found.has_value();
  if (!found) return;
  TakeEntry(*found);
  TakeNames(*found);
  compressedFileSize_ = facts_.GetCompressedFileSize(fullPathName_);
  TakeShellInfo();
}

void CFileInfo::TakeEntry(const platform::FoundFile& found) {
  fileSize_ = found.size;
  attributes_ = found.attributes;
  pathExists_ = true;
  creationTime_ = WholeSeconds(found.creationTime);
  lastAccessTime_ = WholeSeconds(found.lastAccessTime);
  modifyTime_ = WholeSeconds(found.modifyTime);
}

void CFileInfo::TakeNames(const platform::FoundFile& found) {
  fileName_ = found.fileName;
  const std::size_t last = fullPathName_.rfind(paths_.Separator());
  if (last != std::string::npos) {
    filePath_ = LongPath(fullPathName_.substr(0, last + 1));
    core::AddBackslash(filePath_, paths_.Separator());
  }
  fullPathName_ = filePath_ + fileName_;
  fileExtension_ = ExtensionOf(fileName_);
  shortName_ = found.alternateName.empty() ? core::UpperCase(fileName_) : found.alternateName;
  const std::string shortPathName = paths_.ShortPath(fullPathName_);
  if (shortPathName.empty()) return;
  shortPathName_ = shortPathName;
  const std::size_t nameLength = std::min(shortName_.size(), shortPathName_.size());
  shortPath_ = shortPathName_.substr(0, shortPathName_.size() - nameLength);
}

void CFileInfo::TakeShellInfo() {
  const platform::ShellFileInfo info = facts_.GetShellFileInfo(fullPathName_);
  displayName_ = info.displayName;
  icon_ = info.icon;
  typeName_ = info.typeName;
  if (core::Trim(typeName_).empty()) {
    typeName_ = core::Trim(core::UpperCase(fileExtension_) + " File");
  }
}

/// Each folder of the path as it is spelt on disk; empty where one is missing.
std::string CFileInfo::LongPath(std::string path) const {
  const char separator = paths_.Separator();
  if (path.ends_with(separator)) {
    if (IsDrive(path, separator)) return core::UpperCase(path);
    path.pop_back();
  }
  if (IsBareShare(path, separator)) return path;
  const std::size_t last = path.rfind(separator);
  if (last == std::string::npos) return core::UpperCase(path);
  const std::string parent = LongPath(path.substr(0, last)) + separator;
  const auto found = facts_.FindFirstFile(path);
  if (!found || (found->attributes & platform::attribute::kFolder) == 0) return {};
  return parent + found->fileName;
}

std::int32_t CFileInfo::FileSize() const { return LowHalf(fileSize_); }
std::int32_t CFileInfo::FileSizeHigh() const { return HighHalf(fileSize_); }
std::int32_t CFileInfo::CompressedFileSize() const { return LowHalf(compressedFileSize_); }
std::int32_t CFileInfo::CompressedFileSizeHigh() const { return HighHalf(compressedFileSize_); }

void CFileInfo::SetCreationTime(platform::FileTime time) {
  SetTime(platform::FileTimeKind::Creation, time);
}
void CFileInfo::SetLastAccessTime(platform::FileTime time) {
  SetTime(platform::FileTimeKind::LastAccess, time);
}
void CFileInfo::SetModifyTime(platform::FileTime time) {
  SetTime(platform::FileTimeKind::Modify, time);
}

void CFileInfo::SetTime(platform::FileTimeKind kind, platform::FileTime time) {
  if (fileExists_ && facts_.SetFileTime(fullPathName_, kind, time)) Refresh();
}

void CFileInfo::SetAttributes(std::uint32_t attributes) {
  if (attributes == attributes_ || !fileExists_) return;
  if (facts_.SetFileAttributes(fullPathName_, attributes)) Refresh();
}

void CFileInfo::SetBit(std::uint32_t bit, bool on) {
  SetAttributes(on ? attributes_ | bit : attributes_ & ~bit);
}

std::string CFileInfo::FormatFileDate(Date date) const {
  if (!date) return {};
  return regional_.LongDate(*date) + " " + regional_.DefaultTime(*date);
}

std::string CFileInfo::FormatFileSize(std::int32_t size) const {
  return FileSizeText(size, regional_.Numbers());
}

}  // namespace tallowin::analysis
