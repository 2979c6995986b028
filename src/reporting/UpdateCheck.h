// Asks the maker's web server for a newer version.
#pragma once

#include <string>

#include "core/Runwithbas.h"
#include "core/TallowinModule.h"
#include "platform/EventLoop.h"
#include "reporting/AutoUpdate.h"
#include "reporting/HTTPModule.h"

namespace tallowin::reporting {

/// What the server says is a small text file: "UPDATE", the latest version, its date, the address
/// to download it from, a line without use, and from line 6 on the release notes, behind which lie
/// five lines that are never shown. Nothing is ever downloaded or installed.
class UpdateCheck {
 public:
  UpdateCheck(AutoUpdate& form, const core::TallowinModule& module, HTTPModule& http,
              core::Runwithbas& shell, platform::EventLoop& loop, std::string updateFile);
  UpdateCheck(const UpdateCheck&) = delete;
  UpdateCheck& operator=(const UpdateCheck&) = delete;

  /// Modeless. A form that is not open runs its check before it is seen.
  void Show();

 private:
  void Load();
  /// Throws 13 for a version that is no number, and 5 for an update without release notes.
  void Command1_Click();
  void Command2_Click();
  void CompareVersions();

  AutoUpdate& form_;
  const core::TallowinModule& module_;
  HTTPModule& http_;
  core::Runwithbas& shell_;
  platform::EventLoop& loop_;
  std::string updateFile_;
  std::string fetched_;
  bool loaded_ = false;
};

}  // namespace tallowin::reporting
