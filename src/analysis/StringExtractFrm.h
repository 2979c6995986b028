// All about one file: the window's controls.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/ListView.h"

namespace tallowin::analysis {

/// Controls only; FileAnalysis says what they do.
class StringExtractFrm : public forms::Form {
 public:
  StringExtractFrm() : Form("stringextractfrm") {
    SetCaption("String Extraction");
    LstTypes.SetVisible(false);
    lstnames.SetVisible(false);
  }

  forms::Frame Frame1{*this, "Frame1", "Settings"};
  forms::Label Label2{Frame1, "Label2", "Filename:"};
  forms::TextBox Text1{Frame1, "Text1", {}};
  forms::Button Command1{Frame1, "Command1", "Browse"};
  forms::Button Command2{Frame1, "Command2", "Start Scan"};
  /// The names of the file's icon in an icon theme, the best one first, with blanks between them.
  forms::PictureBox picIcon{*this, "picIcon"};
  forms::SSTab SSTab1{*this, "SSTab1", {"Version Information", "String Table"}};
  forms::ListView VersionInfoView{SSTab1, "VersionInfoView", {"Property", "Value"}};
  forms::ListView StringTableView{SSTab1, "StringTableView", {"ID", "String", "Suspicion"}};
  /// Working lists of the walk through the string table; nobody sees them.
  forms::ListBox LstTypes{*this, "LstTypes"};
  forms::ListBox lstnames{*this, "lstnames"};
};

}  // namespace tallowin::analysis
