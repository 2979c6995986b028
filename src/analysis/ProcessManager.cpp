#include "analysis/ProcessManager.h"

#include <utility>

#include "analysis/AlignColumns.h"
#include "analysis/BusyPointer.h"
#include "analysis/ListViewMod.h"

namespace tallowin::analysis {
namespace {

using forms::CheckBox;
using forms::MessageBoxStyle;
using platform::RunTimeError;

constexpr std::size_t kIdColumn = 1;
constexpr std::size_t kPriorityColumn = 2;
constexpr std::size_t kProcessRatingColumn = 3;
constexpr std::size_t kModuleRatingColumn = 2;

bool IsChecked(const CheckBox& box) { return box.Value() == CheckBox::Checked; }

const char* PriorityWord(std::int32_t basePriority) {
  if (basePriority < 5) return "Idle";
  if (basePriority <= 8) return "Normal";
  return basePriority <= 13 ? "High" : "Realtime";
}

RunTimeError NoRowSelected() {
  return {platform::error::kObjectNotSet, "Object variable or With block variable not set"};
}

}  // namespace

std::string PriorityText(std::int32_t basePriority) {
  std::string number = std::to_string(basePriority);
  if (number.size() == 1) number.insert(0, "0");
  return number + " " + PriorityWord(basePriority);
}

ProcessManager::ProcessManager(ProcessManFrm& form, const Services& services)
    : form_(form), services_(services) {
  form_.Toolbar1.OnButtonClick = [this](const auto& button) { Toolbar1_ButtonClick(button); };
  form_.ProcView1.OnItemClick = [this](std::size_t row) { ProcView1_ItemClick(row); };
}

void ProcessManager::Open() {
  if (!form_.Visible()) {
    form_.ChkScanProcs.SetValue(CheckBox::Unchecked);
    form_.ChkScanThreads.SetValue(CheckBox::Unchecked);
    form_.ThreadsView1.Clear();
    form_.Toolbar1.Click(form_.Toolbar1.Buttons(1));
  }
  form_.Show();
}

void ProcessManager::ProcView1_ItemClick(std::size_t row) {
  try {
    ShowModulesOfProcess(std::stoi(form_.ProcView1.Text(row, kIdColumn)));
  } catch (const std::exception& failure) {
    TellError(platform::AsRunTimeError(failure));
  }
}

void ProcessManager::GetProcessesIntoLV() {
  const unsigned filling = ++processFillings_;
  form_.ProcView1.Clear();
  listed_.clear();
  auto snapshot = services_.processes.Snapshot();
  if (!snapshot) return;
  std::optional<BusyPointer> pointer;
  if (IsChecked(form_.ChkScanProcs)) pointer.emplace(form_);
  for (std::size_t i = 1; i < snapshot->size() && filling == processFillings_; ++i) {
    AddProcess((*snapshot)[i]);
  }
}

void ProcessManager::AddProcess(const platform::ProcessEntry& entry) {
  forms::ListView& list = form_.ProcView1;
  std::string path = services_.modList9x.ProgramOf(entry);
  listed_.push_back(entry);
  const std::size_t row = list.AddItem(std::move(path));
  list.SetSubItem(row, kIdColumn, std::to_string(static_cast<std::int32_t>(entry.processId)));
  list.SetSubItem(row, kPriorityColumn, PriorityText(entry.basePriority));
  if (!IsChecked(form_.ChkScanProcs)) return;
  RateRow(list, row, kProcessRatingColumn, processFillings_);
}

void ProcessManager::ShowModulesOfProcess(std::int32_t processId) {
  std::vector<platform::ModuleEntry> modules;
  (void)services_.processes.Modules(static_cast<std::uint32_t>(processId), modules);
  const unsigned filling = ++moduleFillings_;
  form_.ThreadsView1.Clear();
  std::optional<BusyPointer> pointer;
  if (IsChecked(form_.ChkScanThreads)) pointer.emplace(form_);
  for (std::size_t i = 0; i < modules.size() && filling == moduleFillings_; ++i) {
    AddModule(modules[i]);
  }
}

void ProcessManager::AddModule(const platform::ModuleEntry& module) {
  forms::ListView& list = form_.ThreadsView1;
  const std::size_t row = list.AddItem(services_.misc.GetFullPath(module.exePath));
  list.SetSubItem(row, kIdColumn, std::to_string(static_cast<std::int64_t>(module.handle)));
  if (!IsChecked(form_.ChkScanThreads)) return;
  RateRow(list, row, kModuleRatingColumn, moduleFillings_);
}

void ProcessManager::RateRow(forms::ListView& list, std::size_t row, std::size_t column,
                             const unsigned& filling) {
  const unsigned before = filling;
  const std::string path = list.Text(row);
  const Rating rating = Rate(path);
  if (filling != before) return;
  list.SetSubItem(row, column, rating.suspicion);
  list.SetSubItem(row, column + 1, rating.virii);
}

ProcessManager::Rating ProcessManager::Rate(const std::string& path) {
  constexpr const char* kNotFound = "File Not Found";
  if (!services_.modList9x.NamesOneFile(path)) return {kNotFound, kNotFound};
  std::string suspicion = services_.trojanDetect.GetFileSuspicion(path);
  return {std::move(suspicion), services_.trojanDetect.ScanFileForVirii(path)};
}

void ProcessManager::Toolbar1_ButtonClick(const forms::ToolBarButton& button) {
  try {
    Run(button.Key);
  } catch (const std::exception& failure) {
    TellError(platform::AsRunTimeError(failure));
  }
}

void ProcessManager::Run(const std::string& key) {
  if (key == "refresh") GetProcessesIntoLV();
  if (key == "scan") ScanSelected();
  if (key == "terminate") Terminate();
  if (key == "terminateanddel") TerminateAndDelete();
  if (key == "copy") CopyToLog();
}

std::optional<ProcessManager::Process> ProcessManager::Selected() const {
  const auto row = form_.ProcView1.SelectedItem();
  if (!row) return {};
  return Process{.entry = listed_.at(*row), .path = form_.ProcView1.Text(*row)};
}

void ProcessManager::ScanSelected() {
  const auto row = form_.ProcView1.SelectedItem();
  if (!row) throw NoRowSelected();
  const BusyPointer pointer(form_);
  RateRow(form_.ProcView1, *row, kProcessRatingColumn, processFillings_);
}

void ProcessManager::Terminate() {
  // Taken before the question: what it names is what is ended, whatever the list shows behind it.
  const auto process = Selected();
  if (!process) throw NoRowSelected();
  if (!Confirmed("Are you sure you wish to terminate the process:\r\n" + CellText(process->path),
                 "Terminate Process?")) {
    return;
  }
  services_.modList9x.KillProcessById(process->entry);
  Toolbar1_ButtonClick(form_.Toolbar1.Buttons(1));
}

void ProcessManager::TerminateAndDelete() {
  const auto process = Selected();
  const std::string answer = services_.questions.InputBox(
      "This file may be important to the running of your system, if you know that you want this "
      "file to be deleted enter \"REMOVEFILE\" without the quotes below",
      "Terminate Process and Delete Program?");
  if (core::LowerCase(answer) != "removefile") return;
  if (!process) throw NoRowSelected();
  services_.modList9x.KillProcessById(process->entry);
  Delete(process->path);
  Toolbar1_ButtonClick(form_.Toolbar1.Buttons(1));
}

void ProcessManager::Delete(const std::string& path) {
  if (!services_.modList9x.NamesOneFile(path))
    throw RunTimeError(platform::error::kFileNotFound, "File not found");
  services_.files.Delete(path);
}

void ProcessManager::CopyToLog() {
  LogList(form_.ProcView1);
  if (Confirmed("Do you want to add the threads for the current process to the status too?",
                "Add current threads?")) {
    LogList(form_.ThreadsView1);
  }
}

void ProcessManager::LogList(const forms::ListView& list) {
  constexpr std::int16_t kGap = 2;
  std::string text = LVToString(list);
  services_.log.LogStatus(AlignColumns(text, kGap), true, false);
}

bool ProcessManager::Confirmed(const std::string& text, const std::string& title) {
  return services_.questions.MsgBox(text, MessageBoxStyle::YesNoQuestion, title) ==
         forms::Answer::Yes;
}

void ProcessManager::TellError(const RunTimeError& error) {
  if (error.Number() == platform::error::kPathFileAccess) {
    services_.questions.MsgBox(
        "Cannot delete program. If you suspect this program to be a virus, it is recommended you "
        "disconnect from the internet and run a virus scanner.",
        MessageBoxStyle::Information, "Could not remove file");
    return;
  }
  services_.questions.MsgBox(error.Description(), MessageBoxStyle::Stop, "Error");
}

}  // namespace tallowin::analysis
