// The status log: the one way to tell the user what happens, and the files it is written to.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/MainForm.h"
#include "core/Options.h"
#include "core/TallowinModule.h"
#include "platform/EventLoop.h"
#include "platform/RegionalSettings.h"

namespace tallowin::core {

/// The text of MainForm.Status is the log; there is no other buffer. Each line that is added lets
/// the message loop run once, so any event can run nested inside whoever logs.
///
/// Text is bytes, and its length is counted in bytes: what callers send stands in it as it came.
class StatusLog {
 public:
  StatusLog(MainForm& mainForm, Options& options, const TallowinModule& module,
            platform::EventLoop& loop, const platform::RegionalSettings& regional);

  /// Stamps `message` with date and time, and adds it to the log if `alwaysShow` is set or verbose
  /// mode is on. On return `message` is the stamped line. `notify` asks for a mail to the owner,
  /// whether or not the line was shown.
  void LogStatus(std::string& message, bool alwaysShow, bool notify = false);
  void LogStatus(std::string&& message, bool alwaysShow, bool notify = false) {
    LogStatus(message, alwaysShow, notify);
  }

  /// Runs where a line asks for a notification and both mail settings are filled in.
  std::function<void()> OnNotify;

  /// True if the line may be added. A line of 10000 bytes or more rotates the log first, and one of
  /// more than that goes to a file of its own instead. The size of the log is never looked at.
  [[nodiscard]] bool CheckLogSize(std::string_view line);

  /// Writes `text` to a new file in the folder "Logs" and logs that it did, also where it could
  /// not. The name has a grain of one second; a second file within it replaces the first.
  void WriteLogFile(std::string_view text);

  void ClearLog();
  void RemoveLogFiles();

 private:
  void Show(const std::string& line);
  void Rotate();
  [[nodiscard]] std::string LogFolder() const;

  MainForm& mainForm_;
  Options& options_;
  const TallowinModule& module_;
  platform::EventLoop& loop_;
  const platform::RegionalSettings& regional_;
};

}  // namespace tallowin::core
