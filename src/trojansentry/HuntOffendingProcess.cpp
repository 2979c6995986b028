#include "trojansentry/HuntOffendingProcess.h"

#include "analysis/CRC32.h"
#include "platform/RunTimeError.h"

namespace tallowin::trojansentry {

using forms::MessageBoxStyle;

void OffendingProcessHunt::HuntOffendingProcess(std::string& offendingFile) {
  try {
    // The message loop runs behind each question, so a copy is what is hunted for.
    const std::string target = offendingFile;
    if (Hunt(target)) offendingFile.clear();
  } catch (const std::exception& failure) {
    TellError(platform::AsRunTimeError(failure));
  }
}

bool OffendingProcessHunt::Hunt(const std::string& offendingFile) {
  if (offendingFile.empty() || !services_.misc.FileExists(offendingFile)) return true;
  const auto target = ChecksumOf(offendingFile);
  if (!target) return true;
  // Nobody is shown the verdict: it is the same for every file.
  (void)services_.trojanDetect.ScanFileForVirii(offendingFile);
  const auto snapshot = services_.processes.Snapshot();
  if (!snapshot) return false;
  for (const platform::ProcessEntry& entry : *snapshot) {
    const std::string runningFile = services_.modList9x.ProgramOf(entry);
    if (services_.modList9x.NamesOneFile(runningFile) && ChecksumOf(runningFile) == target) {
      AskToKill(entry, runningFile);
    }
  }
  return true;
}

std::optional<std::string> OffendingProcessHunt::ChecksumOf(const std::string& path) {
  const platform::FileContents contents = services_.readFile.ReadFileAsBytes(path);
  if (contents.Text().empty()) return {};
  return analysis::Crc32Text(analysis::Crc32OfBytes(contents.Text()));
}

void OffendingProcessHunt::AskToKill(const platform::ProcessEntry& entry,
                                     const std::string& runningFile) {
  if (!Confirmed("A program running has been identified as the same program which added itself to "
                 "your ini files/auto startup. Would you like to kill this process?",
                 "Kill Process?")) {
    return;
  }
  services_.modList9x.KillProcessById(entry);
  // What the process ran, and not the offending file: the two differ where a copy is running.
  if (Confirmed("Would you like to delete the file?", "Delete File?")) {
    services_.files.Delete(runningFile);
  }
}

bool OffendingProcessHunt::Confirmed(const char* text, const char* title) {
  return services_.questions.MsgBox(text, MessageBoxStyle::YesNoQuestion, title) ==
         forms::Answer::Yes;
}

void OffendingProcessHunt::TellError(const platform::RunTimeError& error) {
  if (error.Number() == platform::error::kPathFileAccess) {
    services_.questions.MsgBox(
        "Cannot delete program - It is suggested that you disconnect from the internet and run a "
        "virus scanner",
        MessageBoxStyle::Information, "Could not remove file");
    return;
  }
  services_.questions.MsgBox(error.Description(), MessageBoxStyle::Stop,
                             "Error Removing (Possible) Virus");
}

}  // namespace tallowin::trojansentry
