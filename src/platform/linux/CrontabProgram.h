// The program by which a user reads and changes the own table of cron.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallowin::platform::linux_host {

/// The tables themselves are hidden from users. Each operation waits two seconds for the program,
/// then ends it and waits for its end, two seconds at most.
class CrontabProgram {
 public:
  /// The program with its first arguments.
  explicit CrontabProgram(std::vector<std::string> command) : command_(std::move(command)) {}

  /// A user without a table has an empty one. False if the program is not there, does not answer,
  /// or answers without end.
  [[nodiscard]] bool List(std::string& table) const;
  /// False if the program refuses.
  [[nodiscard]] bool Install(std::string_view table) const;

 private:
  std::vector<std::string> command_;
};

}  // namespace tallowin::platform::linux_host
