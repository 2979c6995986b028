#include <sys/stat.h>

#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "forms/PlainText.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/SqliteRegistry.h"
#include "platform/linux/StandardDescriptors.h"

int main(int argc, char** argv) {
  using namespace tallowin;
  platform::linux_host::OpenStandardDescriptors();
  umask(S_IRWXG | S_IRWXO);  // an export may hold the password of a mail account
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.empty()) {
    std::cerr << reg::HelpText();
    return reg::kWrongUsage;
  }
  if (words.front() == "--help" || words.front() == "-h") {
    std::cout << reg::HelpText();
    return reg::kDone;
  }
  const auto folders = platform::linux_host::LinuxFolders::FromEnvironment();
  platform::linux_host::SqliteRegistry registry(
      folders.RegistryPath(), [](const std::string& path) {
        std::cerr << "tallowin-reg: the settings were damaged; the damaged file lies at "
                  << forms::PlainText(path) << '\n';
      });
  return reg::RunCommand(words, registry);
}
