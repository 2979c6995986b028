// The form for complaints to a caller's provider.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::reporting {

/// Nothing opens it yet; the whois client fills its list.
class ReportHacker : public forms::Form {
 public:
  ReportHacker() : Form("reporthacker") { SetCaption("Automated Hacker Report System"); }

  forms::ListBox emaillist{*this, "emaillist"};
};

}  // namespace tallowin::reporting
