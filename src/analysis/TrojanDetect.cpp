#include "analysis/TrojanDetect.h"

#include "analysis/SuspiciousWords.h"

namespace tallowin::analysis {

namespace {

constexpr const char* kFileNotFound = "File Not Found";

}  // namespace

std::string StripTrailingNulls(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of('\0') + 1));
}

std::string TrojanDetect::Rate(std::span<char> text) {
  const int level = LowerAndRate(text);
  loop_.DoEvents();
  if (level == 3) return "High";
  return level == 2 ? "Medium" : "Safe";
}

std::string TrojanDetect::RateSuspicion(std::string& text) { return Rate(text); }

std::string TrojanDetect::GetFileSuspicion(std::string_view path) {
  if (!misc_.FileExists(path)) return kFileNotFound;
  // Where the bytes lie they are rated; a text of them would be one more copy of the file.
  platform::FileContents contents = readFile_.ReadFileAsBytes(path);
  return Rate(contents.Bytes());
}

std::string TrojanDetect::ScanFileForVirii(std::string_view path) const {
  return misc_.FileExists(path) ? "No Virii Found" : kFileNotFound;
}

}  // namespace tallowin::analysis
