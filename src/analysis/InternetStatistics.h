// What the window of the Internet statistics does.
#pragma once

#include <optional>
#include <string>

#include "analysis/Netstat.h"
#include "analysis/Netstatfrm.h"
#include "core/StatusLog.h"
#include "forms/Questions.h"

namespace tallowin::analysis {

class InternetStatistics {
 public:
  InternetStatistics(Netstatfrm& form, platform::IpStatistics& statistics, core::StatusLog& log,
                     forms::Questions& questions);

  /// Shows the window, its lists empty if it was closed.
  void Open();

 private:
  void Toolbar2_ButtonClick(const forms::ToolBarButton& button);
  void Refresh();
  void CopyToLog();
  std::optional<TableOverflow> TakeConnections(std::string& text);
  void TellMissing(const TableOverflow& overflow);
  void LogAligned(std::string& text);

  Netstatfrm& form_;
  Netstat netstat_;
  core::StatusLog& log_;
  forms::Questions& questions_;
  bool toldOverflow_ = false;  ///< since the window was opened
};

}  // namespace tallowin::analysis
