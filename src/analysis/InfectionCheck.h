// Bait for a virus that alters programs as they are created or opened.
#pragma once

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
                 platform::Files& files, core::StatusLog& log, platform::EventLoop& loop)
      : mainForm_(mainForm),
        misc_(misc),
        readFile_(readFile),
        files_(files),
        log_(log),
        loop_(loop) {}

  /// The wait in it does not end by itself (MiscRoutines::WaitForMilliseconds), and the rest of the
  /// program runs on around it. Each further click makes one more pair of files. The check is an
  /// event of its own: whoever pressed the item, a menu or a command, does come to an end. There 75
  /// is thrown where the files cannot be written.
  void ExeInfectChk_Click();

 private:
  void Run();
  [[nodiscard]] std::string WritePair();
  void Compare(const std::string& base);
  void Report(const std::string& path, const char* kind, std::string_view expected);

  core::MainForm& mainForm_;
  core::MiscRoutines& misc_;
  ReadFile& readFile_;
  platform::Files& files_;
  core::StatusLog& log_;
  platform::EventLoop& loop_;
  bool writing_ = false;
  std::vector<std::string> waiting_;  ///< what the pairs are called, up to their extensions
};

}  // namespace tallowin::analysis
