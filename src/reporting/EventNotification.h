// Tells the owner, away from the screen, that a caller has been dealt with.
#pragma once

#include <string>

#include "core/MainForm.h"
#include "core/Options.h"
#include "reporting/Mail.h"

namespace tallowin::reporting {

/// Each notification is sent at once and on its own: nothing is gathered, slowed down or tried
/// again. The settings are read at the moment of sending and go to the mail library as typed.
class EventNotification {
 public:
  EventNotification(const core::MainForm& mainForm, const core::Options& options, Mail& mail)
      : mainForm_(mainForm), options_(options), mail_(mail) {}

  /// The tail of the log in its frame.
  [[nodiscard]] std::string ComposeMessage() const;

  /// One mail to the owner, and one to the owner's pager whatever became of the first.
  void SendNotification(const std::string& message);

 private:
  void SendTo(const std::string& recipient, const std::string& message);

  const core::MainForm& mainForm_;
  const core::Options& options_;
  Mail& mail_;
};

}  // namespace tallowin::reporting
