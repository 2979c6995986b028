// Bait for a virus that alters programs as they are created or opened.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/ReadFile.h"
#include "core/MainForm.h"
#include "core/MiscRoutines.h"
#include "core/StatusLog.h"
#include "platform/EventLoop.h"
#include "platform/Files.h"

namespace tallowin::analysis {

/// Writes two harmless programs of known checksum into the root of drive C, waits, and looks
/// whether they are still what they were. They are never run.
class InfectionCheck {
 public:
  InfectionCheck(core::MainForm& mainForm, core::MiscRoutines& misc, ReadFile& readFile,
                 platform::Files& files, core::StatusLog& log, platform::EventLoop& loop);

  /// The wait in it does not end by itself (MiscRoutines::WaitForMilliseconds), and the rest of the
  /// program runs on around it. Each further click makes one more pair of files. The check is an
  /// event of its own, and waits only where no other handler stands below it: whoever pressed the
  /// item, and what else is under way, does come to an end. Where the files cannot be written, that
  /// event ends with error 75, which no handler takes.
  void ExeInfectChk_Click();

 private:
  void Run();
  void Wait();
  [[nodiscard]] std::string WritePair();
  void Compare(const std::string& base);
  void Report(const std::string& path, const char* kind, std::string_view expected);

  core::MainForm& mainForm_;
  core::MiscRoutines& misc_;
  ReadFile& readFile_;
  platform::Files& files_;
  core::StatusLog& log_;
  platform::EventLoop& loop_;
  std::unique_ptr<platform::Timer> retry_;  ///< asks again whether the wait may begin
  bool writing_ = false;
  std::vector<std::string> waiting_;  ///< what the pairs are called, up to their extensions
};

}  // namespace tallowin::analysis
