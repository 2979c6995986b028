#include "analysis/CFileVersionInfo.h"

#include <array>
#include <utility>

#include "analysis/HexText.h"

namespace tallowin::analysis {
namespace {

struct Translation {
  std::uint16_t language;
  std::uint16_t codePage;
};

/// Bytes that are missing count as 0.
Translation FirstTranslation(const std::string& value) {
  const auto word = [&](std::size_t at) {
    const auto byte = [&](std::size_t i) -> unsigned {
      return i < value.size() ? static_cast<unsigned char>(value[i]) : 0U;
    };
    return static_cast<std::uint16_t>(byte(at) | byte(at + 1) << 8U);
  };
  return {word(0), word(2)};
}

}  // namespace

void CFileVersionInfo::SetFullPathName(std::string_view path) {
  const std::string full = paths_.FullPath(path);
  if (full.empty()) return;
  fullPathName_ = full;
  Refresh();
}

void CFileVersionInfo::Refresh() {
  const auto block = versions_.GetFileVersionInfo(fullPathName_);
  available_ = block != nullptr;
  if (!available_) return;
  TakeFixedBlock(FixedFileInfo::Parse(block->VerQueryValue("\\").value_or(std::string())));
  const auto translations = block->VerQueryValue("\\VarFileInfo\\Translation");
  if (!translations || translations->empty()) return;
  const Translation first = FirstTranslation(*translations);
  language_ = versions_.VerLanguageName(first.language);
  TakeTexts(*block, HexText(first.language, 4) + HexText(first.codePage, 4));
}

void CFileVersionInfo::TakeFixedBlock(const FixedFileInfo& block) {
  verStructure_ = StructureVersionText(block.structureVersion);
  verFile_ = VersionNumberText(block.fileVersionHigh, block.fileVersionLow);
  verProduct_ = VersionNumberText(block.productVersionHigh, block.productVersionLow);
  fileFlags_ = FileFlagsText(block.fileFlags);
  fileOS_ = FileOSText(block.fileOS);
  fileType_ = FileTypeText(block.fileType);
  if (auto word = FileSubTypeText(block.fileType, block.fileSubType)) {
    fileSubType_ = *std::move(word);
  }
}

void CFileVersionInfo::TakeTexts(const platform::VersionBlock& block, const std::string& key) {
  const std::array<std::pair<const char*, std::string*>, 9> texts = {
      {{"CompanyName", &companyName_},
       {"FileDescription", &fileDescription_},
       {"FileVersion", &fileVersion_},
       {"InternalName", &internalName_},
       {"LegalCopyright", &legalCopyright_},
       {"LegalTrademarks", &legalTrademarks_},
       {"OriginalFilename", &originalFilename_},
       {"ProductName", &productName_},
       {"ProductVersion", &productVersion_}}};
  for (const auto& [name, text] : texts) {
    auto value = block.VerQueryValue("\\StringFileInfo\\" + key + "\\" + name);
    if (value && !value->empty()) *text = *std::move(value);
  }
}

}  // namespace tallowin::analysis
