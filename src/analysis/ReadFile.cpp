#include "analysis/ReadFile.h"

#include "platform/RunTimeError.h"

namespace tallowin::analysis {

platform::FileContents ReadFile::ReadFileAsBytes(std::string_view path) {
  if (!misc_.FileExists(path)) return {};
  try {
    return files_.Read(path);
  } catch (const platform::RunTimeError& error) {
    // What has gone since it was looked for does not exist either.
    if (error.Number() == platform::error::kSubscriptOutOfRange && !misc_.FileExists(path)) {
      return {};
    }
    throw;
  }
}

std::string ReadFile::ReadFileAsText(std::string_view path) {
  return std::string(ReadFileAsBytes(path).Text());
}

}  // namespace tallowin::analysis
