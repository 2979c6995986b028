#include <string>
#include <string_view>

#include "trojansentry/AutostartResponses.h"

namespace tallowin::trojansentry {

namespace {

using forms::Answer;
using forms::MessageBoxStyle;

struct WatchedLine {
  const std::string& current;
  const std::string& baseline;
  const std::string& file;
  std::string_view sectionShown;
  std::string_view nameShown;
  std::string_view section;
  std::string_view key;
};

std::string Message(const WatchedLine& check) {
  std::string text =
      "Tallowin has detected that a program has put itself into an autostart section of an INI "
      "file.\r\n"
      "This will cause the program to automatically load next time windows is booted.\r\n"
      "If you have just installed a legimate program, you should choose no.\r\n"
      "If you have installed a program from an unknown source, or think it may be suspicious, "
      "please choose yes.\r\n"
      "It is recommended that you disconnect your system from the internet as soon as possible, "
      "until you have removed the trojan.\r\n"
      "Details Of The Entry:\r\n"
      "\r\n"
      "INI File: ";
  text.append(check.file);
  text.append("\r\nSection: ").append(check.sectionShown);
  text.append("\r\nValue Name: ").append(check.nameShown);
  text.append("\r\nOld Value: ").append(check.baseline);
  text.append("\r\nNew Value: ").append(check.current);
  return text;
}

void Restore(const WatchedLine& check, const std::string& oldText, const ResponseTools& tools) {
  if (tools.iniFiles.WriteIni(check.file, check.section, check.key, oldText)) {
    tools.questions.MsgBox("Successfully Removed Possible Trojan From INI",
                           MessageBoxStyle::Information, "Item Removed");
  } else {
    tools.questions.MsgBox("Trojan could not be removed from INI, please try removing manually",
                           MessageBoxStyle::Stop, "Remove Unsuccessful");
  }
}

void CheckLine(const WatchedLine& check, std::string& offendingFile, const ResponseTools& tools) {
  if (check.current == check.baseline) return;
  // The text that the user is shown is the one to restore, also where the watch was started anew
  // behind the question.
  const std::string oldText = check.baseline;
  offendingFile = check.current;
  tools.PlayTrojanDetected();
  const Answer answer = tools.questions.MsgBox(Message(check), MessageBoxStyle::YesNoInformation,
                                               "Restore old INI value?");
  if (answer == Answer::Yes) Restore(check, oldText, tools);
}

}  // namespace

void CheckIniAutostart(AutostartPlaces& places, const ResponseTools& tools) {
  const core::TallowinModule& module = tools.module;
  for (const WatchedLine& check : {
           WatchedLine{places.CurrentShell, places.BaselineShell, module.SystemIniPath, "[Boot]",
                       "Shell", "boot", "shell"},
           WatchedLine{places.CurrentRunLine, places.BaselineRunLine, module.WinIniPath,
                       "[Windows]", "Run", "windows", "run"},
           WatchedLine{places.CurrentLoadLine, places.BaselineLoadLine, module.WinIniPath,
                       "[Windows]", "Load", "windows", "load"},
       }) {
    CheckLine(check, places.OffendingFile, tools);
  }
}

}  // namespace tallowin::trojansentry
