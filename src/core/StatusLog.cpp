#include "core/StatusLog.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "core/Endpoints.h"
#include "core/ErrorRegimes.h"
#include "core/MiscRoutines.h"

namespace tallowin::core {

namespace {

using platform::RunTimeError;
namespace fs = std::filesystem;

constexpr std::size_t kLongLine = 10000;
constexpr std::chrono::milliseconds kPauseBehindLongLine{1500};

void MakeFolder(const std::string& folder) {
  std::error_code failure;
  fs::create_directory(folder, failure);
  if (failure) throw RunTimeError(platform::error::kPathFileAccess, "Path/File access error");
}

/// Throws RunTimeError 75 with the old file untouched, or 61 with as much of the new one as fits.
void WriteFile(const std::string& path, std::string_view header, std::string_view text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) throw RunTimeError(platform::error::kPathFileAccess, "Path/File access error");
  file << header << "\r\n" << text << "\r\n";
  file.close();
  if (!file) throw RunTimeError(platform::error::kDiskFull, "Disk full");
}

/// A file of the pattern *.log, without regard to case.
bool IsLogFile(const fs::directory_entry& file) {
  std::error_code unknown;
  if (file.is_directory(unknown) && !file.is_symlink(unknown)) return false;
  return LowerCase(file.path().filename().string()).ends_with(".log");
}

}  // namespace

StatusLog::StatusLog(MainForm& mainForm, Options& options, const TallowinModule& module,
                     platform::EventLoop& loop, const platform::RegionalSettings& regional)
    : mainForm_(mainForm), options_(options), module_(module), loop_(loop), regional_(regional) {
  mainForm_.Status.OnChange = [this] {
    mainForm_.Status.SetSelStart(mainForm_.Status.Text().size());
    loop_.DoEvents();
  };
}

void StatusLog::LogStatus(std::string& message, bool alwaysShow, bool notify) {
  const auto now = regional_.Now();
  message = regional_.LongDate(now) + " " + regional_.TwelveHourTime(now) + " :" + message;
  const bool verbose = options_.VerboseChk.Value() == forms::CheckBox::Checked;
  if ((alwaysShow || verbose) && CheckLogSize(message)) Show(message);
  const bool mailIsSetUp = !options_.EmailTxt.Text().empty() && !options_.SMTPTxt.Text().empty();
  if (notify && mailIsSetUp && OnNotify) OnNotify();
}

void StatusLog::Show(const std::string& line) { mainForm_.Status.AppendText(line + "\r\n"); }

bool StatusLog::CheckLogSize(std::string_view line) {
  const bool mayBeAdded = line.size() <= kLongLine;
  if (!mayBeAdded) {
    WriteLogFile(line);
    // The name of a log file tells the second: without the pause the rotation's file would have the
    // same name and replace this one.
    loop_.Sleep(kPauseBehindLongLine);
  }
  if (line.size() >= kLongLine) Rotate();
  return mayBeAdded;
}

void StatusLog::Rotate() {
  LogStatus("End Of Log... Continued In Next File", true);
  WriteLogFile(mainForm_.Status.Text());
  mainForm_.Status.SetText("");
  LogStatus("Status Continued From Last Log", true);
  LogStatus("---", true);
}

std::string StatusLog::LogFolder() const { return module_.AppFolder() + "Logs"; }

void StatusLog::WriteLogFile(std::string_view text) {
  const auto now = regional_.Now();
  const std::string date = regional_.ShortDate(now);
  const std::string time = regional_.DefaultTime(now);
  std::string path = LogFolder();
  path = AddBackslash(path, module_.Separator()) + "Log " + ReplaceChar(date, "/", "_") + " " +
         ReplaceChar(time, ":", "_") + ".log";

  ResumeOnError statement;
  statement([&] { MakeFolder(LogFolder()); });
  statement([&] {
    WriteFile(path,
              std::string("Tallowin Log - ") + endpoints::kWebSite + " - " +
                  ReplaceChar(date, "/", "-") + " " + time,
              text);
  });
  statement([&] { LogStatus("Wrote Log To File: " + path, true); });
}

void StatusLog::ClearLog() {
  WriteLogFile(mainForm_.Status.Text());
  mainForm_.Status.SetText("");
}

void StatusLog::RemoveLogFiles() {
  std::error_code passedOver;  // a file that stays is no reason to keep the others
  for (fs::directory_iterator file(LogFolder(), passedOver), end; file != end;
       file.increment(passedOver)) {
    if (IsLogFile(*file)) fs::remove(file->path(), passedOver);
  }
}

}  // namespace tallowin::core
