// Sends what the form of the report shows.
#pragma once

#include "core/Options.h"
#include "reporting/Mail.h"
#include "reporting/ReportHacker.h"

namespace tallowin::reporting {

class HackerReport {
 public:
  HackerReport(ReportHacker& form, const core::Options& options, Mail& mail);
  HackerReport(const HackerReport&) = delete;
  HackerReport& operator=(const HackerReport&) = delete;

  /// The form. Its address comes from the options when it is asked for first, be it by the user or
  /// by a whois run that has found addresses.
  ReportHacker& Loaded();
  /// Modeless.
  void Show();

 private:
  /// One mail for all recipients. Nothing is looked at before: an empty field goes to the mail
  /// library like any other, and the log tells what became of it. No log goes with it, whatever the
  /// form says.
  void SendReport();

  ReportHacker& form_;
  const core::Options& options_;
  Mail& mail_;
  bool loaded_ = false;
};

}  // namespace tallowin::reporting
