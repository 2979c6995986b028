#include <string>
#include <string_view>

#include "trojansentry/AutostartResponses.h"

namespace tallowin::trojansentry {

namespace {

using forms::Answer;
using forms::MessageBoxStyle;

/// The two lines of advice. "Yes" deletes the value in every check.
struct Advice {
  std::string_view legitimate;
  std::string_view suspicious;
};

constexpr Advice kMachineRunAdvice = {
    "If you have just installed a legimate program, you should choose no.",
    "If you have installed a program from an unknown source, or think it may be suspicious, please "
    "choose yes.",
};

/// Points the wrong way, and users know it so: neither the texts nor the buttons are to be changed
/// to agree.
constexpr Advice kReversedAdvice = {
    "If you have just installed a legimate program, you should choose yes.",
    "If you have installed a program from an unknown source, or think it may be suspicious, please "
    "choose no.",
};

struct WatchedKey {
  CReadWriteEasyReg& reader;
  const VariantArray& current;
  const VariantArray& baseline;
  std::string_view rootName;
  const Advice& advice;
};

std::string Message(const WatchedKey& check, const std::string& name) {
  std::string text =
      "Tallowin has detected that a program has put itself into an autostart section of your "
      "registry.\r\n"
      "This will cause the program to automatically load next time windows is booted.\r\n";
  text.append(check.advice.legitimate).append("\r\n");
  text.append(check.advice.suspicious).append("\r\n");
  text +=
      "It is recommended that you disconnect your system from the internet as soon as possible, "
      "until you have removed the trojan.\r\n"
      "Details Of The Entry:\r\n"
      "\r\n"
      "Registry Key: ";
  text.append(check.rootName).append("\\").append(check.reader.SubDirectory());
  text += "\r\nValue Name: " + name;
  text += "\r\nValue Data: " + ToText(check.reader.GetValue(name, false));
  return text;
}

void Delete(CReadWriteEasyReg& reader, const std::string& name, forms::Questions& questions) {
  if (reader.DeleteValue(name)) {
    questions.MsgBox("Successfully Removed Possible Trojan From Registry",
                     MessageBoxStyle::Information, "Item Removed");
  } else {
    questions.MsgBox("Trojan could not be removed from registry, please try removing manually",
                     MessageBoxStyle::Stop, "Remove Unsuccessful");
  }
}

void CheckKey(const WatchedKey& check, std::string& offendingFile, const ResponseTools& tools) {
  if (NameCount(check.current) <= NameCount(check.baseline)) return;
  const std::string name = core::ToText(check.current->back());
  offendingFile = ToText(check.reader.GetValue(name, false));
  tools.PlayTrojanDetected();
  const Answer answer = tools.questions.MsgBox(
      Message(check, name), MessageBoxStyle::YesNoInformation, "Remove Registry Entry?");
  if (answer == Answer::Yes) Delete(check.reader, name, tools.questions);
}

}  // namespace

void CheckRegistryAutostart(AutostartPlaces& places, const ResponseTools& tools) {
  for (const WatchedKey& check : {
           WatchedKey{places.MachineRunReader, places.CurrentMachineRun, places.BaselineMachineRun,
                      "HKEY_LOCAL_MACHINE", kMachineRunAdvice},
           WatchedKey{places.MachineServicesReader, places.CurrentMachineServices,
                      places.BaselineMachineServices, "HKEY_LOCAL_MACHINE", kReversedAdvice},
           WatchedKey{places.UserRunReader, places.CurrentUserRun, places.BaselineUserRun,
                      "HKEY_CURRENT_USER", kReversedAdvice},
       }) {
    CheckKey(check, places.OffendingFile, tools);
  }
}

}  // namespace tallowin::trojansentry
