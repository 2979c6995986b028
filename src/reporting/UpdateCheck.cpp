#include "reporting/UpdateCheck.h"

#include <cmath>
#include <limits>
#include <utility>

#include "core/LineRoutines.h"
#include "core/MiscRoutines.h"
#include "core/NumberText.h"
#include "platform/RunTimeError.h"

namespace tallowin::reporting {

namespace {

constexpr std::size_t kVersionLine = 2;
constexpr std::size_t kDateLine = 3;
constexpr std::size_t kAddressLine = 4;
constexpr std::size_t kFirstNote = 6;
constexpr std::size_t kNeverShown = 5;

/// Every line end as CR LF.
std::string WithLineEnds(std::string_view text) {
  std::string lines;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\n') lines += '\r';
    lines += text[i];
  }
  return lines;
}

/// Throws 13 for what is no number, 6 for one that is too large.
float SingleOf(std::string_view text) {
  const auto number = core::NumberOfText(text);
  if (!number) throw platform::RunTimeError(platform::error::kTypeMismatch, "Type mismatch");
  if (std::abs(*number) > std::numeric_limits<float>::max()) {
    throw platform::RunTimeError(platform::error::kOverflow, "Overflow");
  }
  return static_cast<float>(*number);
}

bool IsOfTheWeb(std::string_view address) {
  const std::string lower = core::LowerCase(address.substr(0, address.find(':') + 1));
  return lower == "https:" || lower == "http:" || lower == "ftp:";
}

std::string ReleaseNotes(std::string_view text) {
  const auto lines = core::AllLines(text);
  std::string notes;
  for (std::size_t number = kFirstNote; number + kNeverShown <= lines.size(); ++number) {
    notes += lines[number - 1] + "\r\n";
  }
  if (notes.empty()) {
    throw platform::RunTimeError(platform::error::kInvalidProcedureCall,
                                 "Invalid procedure call or argument");
  }
  notes.resize(notes.size() - 2);
  return notes;
}

}  // namespace

UpdateCheck::UpdateCheck(AutoUpdate& form, const core::TallowinModule& module, HTTPModule& http,
                         core::Runwithbas& shell, platform::EventLoop& loop, std::string updateFile)
    : form_(form),
      module_(module),
      http_(http),
      shell_(shell),
      loop_(loop),
      updateFile_(std::move(updateFile)) {
  form_.Command1.OnClick = [this] { Command1_Click(); };
  form_.Command2.OnClick = [this] { Command2_Click(); };
  form_.OnCloseBox = [this] {
    loaded_ = false;
    form_.Hide();
  };
}

void UpdateCheck::Show() {
  // While a check is under way its button is disabled; whoever asks again sees that one.
  if (!std::exchange(loaded_, true) && form_.Command1.Enabled()) Load();
  form_.Show();
}

void UpdateCheck::Load() {
  form_.Text1.SetText("");
  Command1_Click();
  form_.InstVer.SetCaption(module_.AppVersion);
}

void UpdateCheck::Command1_Click() {
  loop_.DoEvents();
  form_.SetMousePointer(forms::MousePointer::Hourglass);
  form_.Command1.SetEnabled(false);
  form_.Command2.SetEnabled(false);
  form_.StatusTxt.SetCaption("Checking For New Version...");
  fetched_ = WithLineEnds(http_.OpenUrl(updateFile_));
  // Before any test: of a page that is no update file they show what came.
  form_.LatestVer.SetCaption(core::GetLine(fetched_, kVersionLine));
  form_.RlsDateTxt.SetCaption(core::GetLine(fetched_, kDateLine));
  constexpr std::string_view kMark = "update";
  if (core::LowerCase(std::string_view(fetched_).substr(0, kMark.size())) == kMark) {
    CompareVersions();
  } else {
    form_.StatusTxt.SetCaption("Error. Make sure you are connected to the internet and try again.");
  }
  form_.Command1.SetEnabled(true);
  form_.SetMousePointer(forms::MousePointer::Normal);
}

void UpdateCheck::CompareVersions() {
  if (SingleOf(module_.AppVersion) < SingleOf(core::GetLine(fetched_, kVersionLine))) {
    form_.StatusTxt.SetCaption("An update is available. It is recommended that you upgrade.");
    form_.Text1.SetText(ReleaseNotes(fetched_));
    form_.Command2.SetEnabled(true);
  } else {
    form_.StatusTxt.SetCaption("No updates are currently available.");
  }
}

void UpdateCheck::Command2_Click() {
  constexpr bool kPrint = false;
  constexpr std::int32_t kShowNormal = 1;
  const std::string address = core::GetLine(fetched_, kAddressLine);
  // The shell opens more than pages, and this text is whatever the server has sent.
  if (IsOfTheWeb(address)) (void)shell_.ShellOpen(address, kPrint, kShowNormal);
}

}  // namespace tallowin::reporting
