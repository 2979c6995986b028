#include "platform/linux/AutostartPlaces.h"

#include <pwd.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

std::string Variable(const char* name, const char* fallback) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : fallback;
}

std::vector<std::string> List(const std::string& text) {
  const std::vector<std::string_view> parts = Parts(text, ':');
  return {parts.begin(), parts.end()};
}

/// Relative folders in such lists are to be passed over.
std::vector<std::string> AbsoluteFolders(const std::string& text, std::string_view below) {
  std::vector<std::string> folders;
  for (const std::string& folder : List(text)) {
    if (folder.front() == '/') folders.push_back(folder + std::string(below));
  }
  return folders;
}

std::string UserName() {
  const passwd* entry = getpwuid(getuid());
  return entry != nullptr && entry->pw_name != nullptr ? entry->pw_name : std::to_string(getuid());
}

/// Where "/lib" is a link to "/usr/lib", the same units must not be there twice.
void DropRepeated(std::vector<UnitFolder>& folders) {
  std::vector<UnitFolder> kept;
  for (UnitFolder& folder : folders) {
    bool repeated = false;
    for (const UnitFolder& other : kept) {
      std::error_code error;
      repeated =
          repeated || other.path == folder.path || fs::equivalent(other.path, folder.path, error);
    }
    if (!repeated) kept.push_back(std::move(folder));
  }
  folders = std::move(kept);
}

std::vector<UnitFolder> UserUnitFolders(const std::string& config, const std::string& data) {
  const std::string runtime = Variable("XDG_RUNTIME_DIR", "");
  const bool hasRuntime = runtime.starts_with('/');
  std::vector<UnitFolder> folders = {{config + "/systemd/user.control"}};
  if (hasRuntime) folders.push_back({runtime + "/systemd/user.control"});
  folders.push_back({config + "/systemd/user"});
  folders.push_back({"/etc/systemd/user"});
  for (const std::string& folder :
       AbsoluteFolders(Variable("XDG_CONFIG_DIRS", "/etc/xdg"), "/systemd/user")) {
    folders.push_back({folder});
  }
  if (hasRuntime) folders.push_back({runtime + "/systemd/user"});
  folders.push_back({"/run/systemd/user"});
  // Whatever runs as the user may write there too.
  folders.push_back({data + "/systemd/user"});
  for (const char* base : {"/usr/local/share", "/usr/share", "/usr/local/lib", "/usr/lib"}) {
    folders.push_back({base + std::string("/systemd/user"), true});
  }
  DropRepeated(folders);
  return folders;
}

std::vector<UnitFolder> SystemUnitFolders() {
  std::vector<UnitFolder> folders = {{"/etc/systemd/system.control"},
                                     {"/run/systemd/system.control"},
                                     {"/etc/systemd/system"},
                                     {"/run/systemd/system"}};
  for (const char* base : {"/usr/local/lib", "/usr/lib", "/lib"}) {
    folders.push_back({base + std::string("/systemd/system"), true});
  }
  DropRepeated(folders);
  return folders;
}

std::string HostName() {
  std::string name(HOST_NAME_MAX + 1, '\0');
  if (gethostname(name.data(), name.size()) != 0) return {};
  return name.substr(0, name.find('\0'));
}

/// %S is left out: where a user's units keep their state differs with the version of systemd.
UnitMeanings UserMeanings(const std::string& home, const std::string& config) {
  const std::string number = std::to_string(getuid());
  return {{'h', home},
          {'u', UserName()},
          {'U', number},
          {'H', HostName()},
          {'E', config},
          {'C', Variable("XDG_CACHE_HOME", (home + "/.cache").c_str())},
          {'t', Variable("XDG_RUNTIME_DIR", ("/run/user/" + number).c_str())},
          {'T', Variable("TMPDIR", "/tmp")}};
}

UnitMeanings SystemMeanings() {
  return {{'h', "/root"},      {'u', "root"},     {'U', "0"},    {'H', HostName()}, {'E', "/etc"},
          {'C', "/var/cache"}, {'S', "/var/lib"}, {'t', "/run"}, {'T', "/tmp"}};
}

std::string UserTables() {
  std::error_code error;
  for (const char* folder :
       {"/var/spool/cron/crontabs", "/var/spool/cron/tabs", "/var/spool/cron"}) {
    if (fs::exists(folder, error)) return folder;
  }
  return "/var/spool/cron/crontabs";
}

}  // namespace

AutostartPlaces AutostartPlaces::FromEnvironment(const LinuxFolders& folders) {
  const std::string config = fs::path(folders.config).parent_path().string();
  const std::string data = fs::path(folders.data).parent_path().string();
  return {.userAutostart = config + "/autostart",
          .systemAutostart = AbsoluteFolders(Variable("XDG_CONFIG_DIRS", "/etc/xdg"), "/autostart"),
          .desktops = List(Variable("XDG_CURRENT_DESKTOP", "")),
          .programFolders = AbsoluteFolders(
              Variable("PATH", "/usr/local/bin:/usr/bin:/bin:/usr/local/games:/usr/games"), ""),
          .userUnits = UserUnitFolders(config, data),
          .systemUnits = SystemUnitFolders(),
          .userMeanings = UserMeanings(folders.home, config),
          .systemMeanings = SystemMeanings(),
          .userName = UserName(),
          .systemCrontab = "/etc/crontab",
          .cronFolder = "/etc/cron.d",
          .userTables = UserTables(),
          .crontabProgram = {"crontab"},
          .own = OwnAutostart::Of(folders.executables),
          .copies = folders.data + "/undone"};
}

}  // namespace tallowin::platform::linux_host
