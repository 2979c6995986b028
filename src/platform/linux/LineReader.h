// Lines out of a stream of bytes.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// Cuts bytes into lines at LF, without a CR before it. What a line has beyond kLongestLine bytes
/// is dropped.
class LineReader {
 public:
  static constexpr std::size_t kLongestLine = std::size_t{1} << 20U;
  using LineHandler = std::function<void(std::string)>;

  void Add(std::string_view bytes, const LineHandler& line);
  /// Hands out what stands behind the last line end, if anything does.
  void Finish(const LineHandler& line);

 private:
  void Keep(std::string_view part);
  [[nodiscard]] std::string TakeLine();

  std::string begun_;
};

}  // namespace tallowin::platform::linux_host
