// The window of the Internet statistics.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/ListView.h"

namespace tallowin::analysis {

/// Controls only. What they do is in analysis/InternetStatistics.h.
class Netstatfrm : public forms::Form {
 public:
  Netstatfrm() : Form("Netstatfrm") { SetCaption("Internet Statistics"); }

  forms::ToolBar Toolbar2{*this, "Toolbar2", {{"refresh", "Refresh"}, {"copy", "Copy to log"}}};
  forms::ListView NSview{
      *this, "NSview", {"Protocol", "Local Address:port", "Remote Address:port", "State"}};
  forms::ListView GeneralStats{
      *this, "GeneralStats", {"Protocol", "Item", "Value", "Packet Direction"}};
};

}  // namespace tallowin::analysis
