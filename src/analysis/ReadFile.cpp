#include "analysis/ReadFile.h"

namespace tallowin::analysis {

platform::FileContents ReadFile::ReadFileAsBytes(std::string_view path) {
  if (!misc_.FileExists(path)) return {};
  return files_.Read(path);
}

std::string ReadFile::ReadFileAsText(std::string_view path) {
  return std::string(ReadFileAsBytes(path).Text());
}

}  // namespace tallowin::analysis
