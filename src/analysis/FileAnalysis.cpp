#include "analysis/FileAnalysis.h"

#include "analysis/BusyPointer.h"

namespace tallowin::analysis {

FileAnalysis::FileAnalysis(const Parts& parts, StringExtractFrm& form)
    : form_(form),
      misc_(parts.misc),
      loop_(parts.loop),
      questions_(parts.questions),
      properties_(form),
      strings_(form.StringTableView),
      report_(parts.host, parts.readFile, parts.detect, properties_),
      resourceStrings_(parts.modules, parts.detect, parts.loop, form.LstTypes, form.lstnames,
                       strings_) {
  form_.Command1.OnClick = [this] { Command1_Click(); };
  form_.Command2.OnClick = [this] { Command2_Click(); };
  whenHidden_ = form_.Observe([this](const forms::Change& change) {
    if (change.property == forms::Property::Visible && !form_.Visible()) Abandon();
  });
}

void FileAnalysis::Show() {
  Empty();
  form_.ShowModal(loop_);
}

void FileAnalysis::Empty() {
  dialogFileName_.clear();
  form_.Text1.SetText({});
  form_.picIcon.SetPicture({});
  form_.SSTab1.SetTab(0);
  properties_.Clear();
  resourceStrings_.Clear();
}

/// The form may be opened again before the scan that was under way returns.
void FileAnalysis::Abandon() {
  resourceStrings_.Stop();
  form_.SetMousePointer(forms::MousePointer::Normal);
}

/// A dialog that is cancelled holds the name of the time before, and that is what is shown.
void FileAnalysis::Command1_Click() {
  const std::string chosen = questions_.OpenFileName("Open");
  if (!chosen.empty()) dialogFileName_ = chosen;
  form_.Text1.SetText(dialogFileName_);
}

void FileAnalysis::Command2_Click() {
  const std::string path = form_.Text1.Text();
  if (!misc_.FileExists(path)) return;
  const BusyPointer busy(form_);
  report_.ShowFileFacts(path);
  resourceStrings_.ExtractStringTable(path);
}

void FileAnalysis::Properties::ShowIcon(const platform::FileIcon& icon) {
  const bool both = !icon.name.empty() && !icon.genericName.empty();
  form_.picIcon.SetPicture(icon.name + (both ? " " : "") + icon.genericName);
}

void FileAnalysis::Properties::Clear() {
  row_.reset();
  form_.VersionInfoView.Clear();
}

void FileAnalysis::Properties::Add(const std::string& property) {
  row_ = form_.VersionInfoView.AddItem(property);
}

void FileAnalysis::Properties::SetValue(const std::string& value) {
  if (row_) form_.VersionInfoView.SetSubItem(*row_, 1, value);
}

void FileAnalysis::Strings::Clear() {
  row_.reset();
  view_.Clear();
}

void FileAnalysis::Strings::Add(const std::string& id, const std::string& text) {
  row_ = view_.AddItem(id);
  view_.SetSubItem(*row_, 1, text);
}

void FileAnalysis::Strings::SetSuspicion(const std::string& suspicion) {
  if (row_) view_.SetSubItem(*row_, 2, suspicion);
}

}  // namespace tallowin::analysis
