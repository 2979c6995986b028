#include "core/OptionsDialog.h"

#include "core/MiscRoutines.h"
#include "core/NumberText.h"
#include "core/VbRegMod.h"

namespace tallowin::core {

namespace {

using forms::CheckBox;

struct FlagBox {
  CheckBox Options::*box;
  std::int16_t PortSetting::*field;
};
// In the order in which they are shown. "Traceroute" is missing on purpose: its box goes on showing
// what it showed for the slot before, and nothing is stored for it until the user clicks it.
constexpr FlagBox kShownFlags[] = {
    {&Options::SirenChk, &PortSetting::SoundSiren},
    {&Options::VisualAlert, &PortSetting::VisualWarning},
    {&Options::WhoisChk, &PortSetting::WhoisHacker},
    {&Options::HangupChk, &PortSetting::HangUpModem},
    {&Options::ShutDownChk, &PortSetting::ShutDown},
};
constexpr FlagBox kTraceRouteFlag{&Options::TraceRouteChk, &PortSetting::TraceRouteHacker};

/// Empty for a text that is no action.
std::string PictureOfAction(const std::string& text) {
  if (text == action::kRefuse) return "DontAccept";
  if (text == action::kSend) return "SendMessage";
  if (text == action::kChat) return "ChatToHacker";
  return {};
}

}  // namespace

OptionsDialog::OptionsDialog(Options& options, SettingsStore& settings, TallowinModule& module,
                             const Services& services)
    : options_(options),
      settings_(settings),
      module_(module),
      loop_(services.loop),
      shell_(services.shell),
      sound_(services.sound),
      questions_(services.questions) {
  Form_Load();
  options_.OnActivate = [this] { Form_Activate(); };
  WirePortControls();
  options_.Command1.OnClick = [this] { OK_Click(); };
  options_.Command2.OnClick = [this] { Cancel_Click(); };
  options_.Command3.OnClick = [this] { LoadDefaults_Click(); };
  options_.OnCloseBox = [this] { Cancel_Click(); };
}

void OptionsDialog::Form_Load() {
  options_.ActionCombo.Clear();
  for (const char* text : {action::kRefuse, action::kSend, action::kChat}) {
    options_.ActionCombo.AddItem(text);
  }
}

void OptionsDialog::Form_Activate() {
  settings_.BackupPortSettings(true);
  // The caption of Frame1 stays as it was until a slot button is pressed.
  currentSlot_ = kFirstSlot;
  ShowPortSlot(currentSlot_);
}

void OptionsDialog::WirePortControls() {
  options_.Command4[0].OnClick = [this] { MoveTo(currentSlot_ - 1); };
  options_.Command4[1].OnClick = [this] { MoveTo(currentSlot_ + 1); };
  options_.PortNumTxt.OnChange = [this] { PortNumTxt_Change(); };
  options_.PortDescrip.OnChange = [this] {
    CurrentSetting().PortDescription = options_.PortDescrip.Text();
  };
  options_.TextToSend.OnChange = [this] {
    CurrentSetting().PacketToSend = options_.TextToSend.Text();
  };
  options_.ActionCombo.OnChange = [this] { ActionCombo_Change(); };
  options_.ActionCombo.OnClick = [this] { ActionCombo_Change(); };
  auto wire = [this](const FlagBox& flag) {
    CheckBox& box = options_.*flag.box;
    box.OnClick = [this, &box, field = flag.field] {
      CurrentSetting().*field = static_cast<std::int16_t>(box.Value());
    };
  };
  for (const auto& flag : kShownFlags) wire(flag);
  wire(kTraceRouteFlag);
}

void OptionsDialog::ShowPortSlot(std::int16_t slot) {
  const PortSetting& setting = settings_.PortSettings(slot);
  options_.PortNumTxt.SetText(std::to_string(setting.SocketNumber));
  options_.PortDescrip.SetText(setting.PortDescription);
  options_.ActionCombo.SetText(setting.Action);
  options_.TextToSend.SetText(setting.PacketToSend);
  for (const auto& flag : kShownFlags) (options_.*flag.box).SetValue(setting.*flag.field);
}

void OptionsDialog::MoveTo(int slot) {
  if (slot < kFirstSlot || slot > kLastSlot) return;
  currentSlot_ = static_cast<std::int16_t>(slot);
  ShowPortSlot(currentSlot_);
  options_.Frame1.SetCaption("Port Setting " + std::to_string(currentSlot_));
}

void OptionsDialog::UpdatePortImage() {
  const std::string& port = options_.PortNumTxt.Text();
  const bool empty = port.empty() || port == "0";
  const std::string picture = empty ? "DontProtect" : PictureOfAction(options_.ActionCombo.Text());
  if (!picture.empty()) options_.Image7.SetPicture(picture);
}

bool OptionsDialog::FindPortConflict() const {
  for (int first = kFirstSlot; first <= kLastSlot; ++first) {
    const auto port = settings_.PortSettings(first).SocketNumber;
    for (int second = first + 1; second <= kLastSlot; ++second) {
      if (port != 0 && settings_.PortSettings(second).SocketNumber == port) return true;
    }
  }
  return false;
}

void OptionsDialog::PortNumTxt_Change() {
  // Each new text runs this handler again, inside this run of it.
  forms::TextBox& box = options_.PortNumTxt;
  UpdatePortImage();
  if (!IsNumeric(box.Text())) {
    box.SetText(DigitsOnly(box.Text()));
    sound_.Beep();
  }
  if (box.Text().empty()) box.SetText("0");
  CurrentSetting().SocketNumber = ToInteger(box.Text());
}

void OptionsDialog::ActionCombo_Change() {
  UpdatePortImage();
  const std::string& text = options_.ActionCombo.Text();
  CurrentSetting().Action = text;
  options_.TextToSend.SetEnabled(text == action::kSend);
}

void OptionsDialog::OK_Click() {
  if (FindPortConflict()) {
    questions_.MsgBox(
        "You have two or more conflicting sockets, please resolve the problem and try again",
        forms::MessageBoxStyle::Information, "Conflicting Ports");
    return;
  }
  settings_.BackupPortSettings(true);
  options_.Hide();
  settings_.SaveSettings();
  settings_.SavePortSettings();
  settings_.LoadSettings();
  BouncePortSentry();
}

void OptionsDialog::Cancel_Click() {
  settings_.BackupPortSettings(false);
  settings_.LoadSettings();
  options_.Hide();
  BouncePortSentry();
}

void OptionsDialog::LoadDefaults_Click() {
  std::string commandLine = module_.GetWindowsFolder();
  AddBackslash(commandLine, module_.Separator());
  // The quote is never closed: the whole line goes to the shell as one file.
  commandLine += "regedit.exe /s \"" + module_.AppFolder() + "defaults.reg";
  shell_.ShellOpen(commandLine, false, 0);
  loop_.DoEvents();
  // The slot on show and the snapshot stay as they are: Cancel brings the table from before back.
  settings_.LoadPortSettings();
  settings_.LoadSettings();
}

void OptionsDialog::BouncePortSentry() {
  if (options_.PortChk.Value() != CheckBox::Checked) return;
  options_.PortChk.SetValue(CheckBox::Greyed);
  options_.PortChk.SetValue(CheckBox::Checked);
}

}  // namespace tallowin::core
