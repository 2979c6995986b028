#include "platform/linux/LineReader.h"

#include <utility>

namespace tallowin::platform::linux_host {

void LineReader::Add(std::string_view bytes, const LineHandler& line) {
  for (auto end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
    Keep(bytes.substr(0, end));
    bytes.remove_prefix(end + 1);
    line(TakeLine());
  }
  Keep(bytes);
}

void LineReader::Finish(const LineHandler& line) {
  if (!begun_.empty()) line(TakeLine());
}

void LineReader::Keep(std::string_view part) {
  // One byte more than the longest line: it may be the CR of the line end.
  begun_.append(part.substr(0, kLongestLine + 1 - begun_.size()));
}

std::string LineReader::TakeLine() {
  std::string line = std::exchange(begun_, {});
  if (line.ends_with('\r')) line.pop_back();
  if (line.size() > kLongestLine) line.resize(kLongestLine);
  return line;
}

}  // namespace tallowin::platform::linux_host
