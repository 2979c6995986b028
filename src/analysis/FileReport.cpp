#include "analysis/FileReport.h"

#include <algorithm>

#include "analysis/CRC32.h"
#include "core/MiscRoutines.h"

namespace tallowin::analysis {
namespace {

std::string YesNo(bool flag) { return core::BoolText(flag ? std::int16_t{-1} : std::int16_t{0}); }

std::string WithoutLineEnds(std::string text) {
  constexpr std::string_view kLineEnd = "\r\n";
  constexpr std::string_view kInstead = ", ";
  for (std::size_t at = 0; (at = text.find(kLineEnd, at)) != std::string::npos;) {
    text.replace(at, kLineEnd.size(), kInstead);
    at += kInstead.size();
  }
  return text;
}

/// Of UTF-8: bytes that start one.
std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

void FileReport::Row(const char* property, const std::function<std::string()>& value) {
  statement_([&] { rows_.Add(property); });
  statement_([&] { rows_.SetValue(value()); });
}

/// The buffer for it holds 164 characters with the NUL at the end. What is longer is not cut: it
/// does not come at all.
std::string FileReport::ShortPath(const std::string& path) const {
  constexpr std::size_t kBuffer = 164;
  std::string text = host_.paths.ShortPath(path);
  return CountCharacters(text) < kBuffer ? text : std::string();
}

void FileReport::ShowFileFacts(const std::string& path) {
  fileInfo_.emplace(host_.fileFacts, host_.paths, host_.regional);
  statement_([&] { fileInfo_->SetFullPathName(path); });
  versionInfo_.emplace(host_.versionInfo, host_.paths);
  statement_([&] { versionInfo_->SetFullPathName(path); });
  statement_([&] { rows_.ShowIcon(fileInfo_->hIcon()); });
  statement_([&] { rows_.Clear(); });
  Row("Full Path", [&] { return path; });
  Row("Short Path", [&] { return ShortPath(path); });
  Row("File Type", [&] { return fileInfo_->TypeName(); });
  ShowDateRows();
  ShowAttributeRows();
  ShowSizeRows();
  ShowCrcRow(path);
  ShowVersionRows();
  Row("Virii Found In File", [&] { return WithoutLineEnds(detect_.ScanFileForVirii(path)); });
}

void FileReport::ShowDateRows() {
  Row("Created", [&] { return fileInfo_->FormatFileDate(fileInfo_->CreationTime()); });
  Row("Modified", [&] { return fileInfo_->FormatFileDate(fileInfo_->ModifyTime()); });
  Row("Accessed", [&] { return fileInfo_->FormatFileDate(fileInfo_->LastAccessTime()); });
}

void FileReport::ShowAttributeRows() {
  Row("Read Only", [&] { return YesNo(fileInfo_->attrReadOnly()); });
  Row("Archive", [&] { return YesNo(fileInfo_->attrArchive()); });
  Row("Hidden", [&] { return YesNo(fileInfo_->attrHidden()); });
  Row("System", [&] { return YesNo(fileInfo_->attrSystem()); });
  Row("Compressed", [&] { return YesNo(fileInfo_->attrCompressed()); });
  Row("Temporary", [&] { return YesNo(fileInfo_->attrTemporary()); });
}

void FileReport::ShowSizeRows() {
  Row("File Size", [&] { return fileInfo_->FormatFileSize(fileInfo_->FileSize()); });
  Row("Compressed File Size", [&] {
    if (!fileInfo_->attrCompressed()) return std::string("File is not compressed");
    return fileInfo_->FormatFileSize(fileInfo_->CompressedFileSize());
  });
}

void FileReport::ShowCrcRow(const std::string& path) {
  // What cannot be read has the checksum of no bytes.
  platform::FileContents contents;
  statement_([&] { contents = readFile_.ReadFileAsBytes(path); });
  Row("CRC32", [&] { return Crc32Text(Crc32OfBytes(contents.Text())); });
}

void FileReport::ShowVersionRows() {
  Row("Product Name", [&] { return versionInfo_->ProductName(); });
  Row("File Description", [&] { return versionInfo_->FileDescription(); });
  Row("File Version", [&] { return versionInfo_->FileVersion(); });
  Row("Legal Copyright", [&] { return versionInfo_->LegalCopyright(); });
  // Users know the report with the trade marks under this label.
  Row("Language", [&] { return versionInfo_->LegalTrademarks(); });
  Row("Company Name", [&] { return versionInfo_->CompanyName(); });
  Row("Internal Name", [&] { return versionInfo_->InternalName(); });
  Row("Language", [&] { return versionInfo_->Language(); });
  Row("Original Filename", [&] { return versionInfo_->OriginalFilename(); });
}

}  // namespace tallowin::analysis
