#include "analysis/InternetStatistics.h"

#include <utility>

#include "analysis/AlignColumns.h"
#include "analysis/ListViewMod.h"

namespace tallowin::analysis {

InternetStatistics::InternetStatistics(Netstatfrm& form, platform::IpStatistics& statistics,
                                       core::StatusLog& log, forms::Questions& questions)
    : form_(form), netstat_(statistics), log_(log), questions_(questions) {
  form_.Toolbar2.OnButtonClick = [this](const auto& button) { Toolbar2_ButtonClick(button); };
}

void InternetStatistics::Open() {
  if (!form_.Visible()) {
    form_.NSview.Clear();
    form_.GeneralStats.Clear();
    toldOverflow_ = false;
  }
  form_.Show();
}

void InternetStatistics::Toolbar2_ButtonClick(const forms::ToolBarButton& button) {
  if (button.Key == "refresh") Refresh();
  if (button.Key == "copy") CopyToLog();
}

void InternetStatistics::Refresh() {
  std::string stats = netstat_.GetStatsText();
  LVFromString(form_.GeneralStats, stats);
  std::string connections;
  const auto overflow = TakeConnections(connections);
  LVFromString(form_.NSview, connections);
  // A user who watches an attack refreshes often.
  if (overflow && !std::exchange(toldOverflow_, true)) TellMissing(*overflow);
}

void InternetStatistics::CopyToLog() {
  // Not what the lists show, but what holds now.
  std::string stats = netstat_.GetStatsText();
  LogAligned(stats);
  std::string connections;
  const auto overflow = TakeConnections(connections);
  LogAligned(connections);
  if (overflow) TellMissing(*overflow);
}

/// A machine under attack has many connections: the guard must neither end by that nor show none of
/// them.
std::optional<TableOverflow> InternetStatistics::TakeConnections(std::string& text) {
  try {
    netstat_.GetConnectionsText(text);
  } catch (const TableOverflow& overflow) {
    return overflow;
  }
  return {};
}

void InternetStatistics::TellMissing(const TableOverflow& overflow) {
  questions_.MsgBox(std::string("The table holds 101 rows. This machine has more: ") +
                        overflow.Missing() + " are missing.",
                    forms::MessageBoxStyle::Exclamation, form_.Caption());
}

void InternetStatistics::LogAligned(std::string& text) {
  constexpr std::int16_t kGap = 2;
  log_.LogStatus(AlignColumns(text, kGap), true, false);
}

}  // namespace tallowin::analysis
