#include "platform/linux/LinuxShell.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxPaths.h"
#include "platform/linux/RegistryFile.h"
#include "platform/linux/Text.h"
#include "platform/linux/WaitForInput.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kOpened = 33;
constexpr std::int32_t kFileNotFound = 2;
constexpr std::int32_t kAccessDenied = 5;
constexpr std::int32_t kBadFormat = 11;
constexpr std::int32_t kNoAssociation = 31;

constexpr std::string_view kShellBlanks = " \t";

void SkipShellBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kShellBlanks), text.size()));
}

bool Skip(std::string_view& text, std::string_view prefix) {
  if (LowerAscii(text.substr(0, prefix.size())) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

/// What stands before the editor's name must be a folder of this host or of a drive. An address
/// that happens to have the name in it must not lead to an import.
bool IsFolderPrefix(std::string_view text) {
  if (text.starts_with('"')) text.remove_prefix(1);
  if (text.empty() || text.front() == '/') return true;
  return text.size() >= 3 && text[1] == ':' && text[2] == '\\';
}

/// What follows the editor's name in a command line; nothing if `text` names no registry editor.
std::optional<std::string_view> EditorArguments(std::string_view text) {
  constexpr std::string_view kEditor = "regedit";
  const std::string lowered = LowerAscii(text);
  for (std::size_t at = lowered.find(kEditor); at != std::string::npos;
       at = lowered.find(kEditor, at + 1)) {
    const bool nameStarts =
        at == 0 || std::string_view("/\\\"").find(text[at - 1]) != std::string_view::npos;
    std::string_view rest = text.substr(at + kEditor.size());
    (void)Skip(rest, ".exe");
    (void)Skip(rest, "\"");
    const bool nameEnds = rest.empty() || kShellBlanks.find(rest.front()) != std::string_view::npos;
    if (nameStarts && nameEnds && IsFolderPrefix(text.substr(0, at))) return rest;
  }
  return std::nullopt;
}

/// The file that the editor is to import. Empty if none is given.
std::string FileToImport(std::string_view arguments) {
  SkipShellBlanks(arguments);
  if (Skip(arguments, "/s ") || Skip(arguments, "/s\t")) SkipShellBlanks(arguments);
  if (Skip(arguments, "\"")) return std::string(arguments.substr(0, arguments.find('"')));
  return std::string(arguments.substr(0, arguments.find_last_not_of(kShellBlanks) + 1));
}

bool Exists(const std::string& path) {
  struct stat status = {};
  return path.find('\0') == std::string::npos && stat(path.c_str(), &status) == 0;
}

bool IsAddress(std::string_view text) {
  const std::string start = LowerAscii(text.substr(0, 8));
  return start.starts_with("http://") || start.starts_with("https://") ||
         start.starts_with("ftp://");
}

/// Openers hand addresses on through scripts; blanks and quotes are kept out of their way. Empty
/// for an address that holds control characters.
std::string SafeAddress(std::string_view address) {
  std::string safe;
  for (const char c : address) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) return {};
    constexpr std::string_view kEscaped = " \"'<>\\^`{|}$;()";
    if (kEscaped.find(c) == std::string_view::npos) {
      safe += c;
    } else {
      constexpr std::string_view kDigits = "0123456789ABCDEF";
      safe += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return safe;
}

/// By the first bytes: programs, scripts and starters.
bool StartsLikeProgram(const std::string& path) {
  std::array<char, 64> start = {};
  std::ifstream(path, std::ios::binary).read(start.data(), start.size());
  const std::string_view bytes(start.data(), start.size());
  return bytes.starts_with(
             "\x7F"
             "ELF") ||
         bytes.starts_with("MZ") || bytes.starts_with("#!") ||
         bytes.find("[Desktop Entry]") != std::string_view::npos;
}

/// By the endings that desktops go by.
bool EndsLikeProgram(const fs::path& path) {
  constexpr std::array<std::string_view, 20> kEndings = {
      ".appimage",   ".bat", ".cmd", ".com",  ".cpl", ".desktop", ".exe",
      ".flatpakref", ".hta", ".jar", ".jnlp", ".js",  ".lnk",     ".msi",
      ".pif",        ".ps1", ".run", ".scr",  ".sh",  ".vbs"};
  return std::ranges::find(kEndings, LowerAscii(path.extension().string())) != kEndings.end();
}

/// Whether "open" could mean to run it. A link is what it leads to, whatever it is called itself.
bool MightBeRun(const std::string& path) {
  std::error_code error;
  const fs::path target = fs::canonical(path, error);
  if (error || !fs::exists(target, error)) return true;
  if (fs::is_directory(target, error)) return false;
  return !fs::is_regular_file(target, error) || access(target.c_str(), X_OK) == 0 ||
         StartsLikeProgram(target) || EndsLikeProgram(path) || EndsLikeProgram(target);
}

/// What is started meanwhile gets the user's file mode creation mask and not this program's own.
class UserMask {
 public:
  explicit UserMask(mode_t mask) : own_(umask(mask)) {}
  ~UserMask() { (void)umask(own_); }
  UserMask(const UserMask&) = delete;
  UserMask& operator=(const UserMask&) = delete;

 private:
  mode_t own_;
};

/// Returns when the process has ended, or after `limit`.
void AwaitEnd(pid_t process, std::chrono::milliseconds limit) {
  // None for a process that has ended already.
  const FileDescriptor handle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
  if (handle) WaitForInput(handle.Get(), limit);
}

}  // namespace

std::int32_t LinuxShell::Execute(std::string_view verb, std::string_view file,
                                 std::int32_t /*showCommand*/) {
  if (file.empty() || file.front() == '-') return kFileNotFound;
  if (LowerAscii(verb) != "open") return kNoAssociation;
  if (IsAddress(file)) {
    const std::string address = SafeAddress(file);
    return address.empty() ? kAccessDenied : Open(address);
  }
  const std::string path = HelpPagesOr(AbsolutePath(file));
  if (Exists(path)) return MightBeRun(path) ? kAccessDenied : Open(path);
  if (const auto arguments = EditorArguments(file)) return Import(FileToImport(*arguments));
  return kFileNotFound;
}

std::int32_t LinuxShell::Import(const std::string& path) {
  const std::string file = AbsolutePath(path);
  std::error_code error;
  if (path.empty() || !Exists(file) || fs::is_directory(file, error)) return kFileNotFound;
  return ImportRegistryFile(file, registry_).ok ? kOpened : kBadFormat;
}

std::int32_t LinuxShell::Open(const std::string& argument) const {
  QProcess opener;
  opener.setProgram(QString::fromStdString(programs_.opener));
  opener.setArguments({QFile::decodeName(argument.c_str())});
  opener.setStandardInputFile(QProcess::nullDevice());
  opener.setStandardOutputFile(QProcess::nullDevice());
  opener.setStandardErrorFile(QProcess::nullDevice());
  const UserMask mask(userMask_);
  return opener.startDetached() ? kOpened : kNoAssociation;
}

bool LinuxShell::OpensHelpFiles() const {
  constexpr int kPatience = 3000;  // milliseconds
  const QString path = QStandardPaths::findExecutable(QString::fromStdString(programs_.mimeQuery));
  if (path.isEmpty()) return false;  // QProcess leaves a pipe open where it starts one in vain
  QProcess query;
  query.start(path, {"query", "default", "application/vnd.ms-htmlhelp"}, QIODevice::ReadOnly);
  return query.waitForFinished(kPatience) && !query.readAllStandardOutput().trimmed().isEmpty();
}

std::string LinuxShell::HelpPagesOr(const std::string& path) const {
  const fs::path file(path);
  if (LowerAscii(file.extension().string()) != ".chm") return path;
  std::string pages = (file.parent_path() / file.stem() / "index.html").string();
  if (!Exists(pages) || (Exists(path) && OpensHelpFiles())) return path;
  return pages;
}

bool LinuxShell::RunAndWait(std::string_view commandLine, std::chrono::milliseconds limit) {
  QStringList words = QProcess::splitCommand(QFile::decodeName(
      QByteArray(commandLine.data(), static_cast<qsizetype>(commandLine.size()))));
  if (words.isEmpty()) return false;
  QProcess program;
  program.setProgram(words.takeFirst());
  program.setArguments(words);
  // Detached, so that a program that outlives the limit is neither ended nor left behind dead.
  qint64 process = 0;
  {
    const UserMask mask(userMask_);
    if (!program.startDetached(&process)) return false;
  }
  AwaitEnd(static_cast<pid_t>(process), limit);
  return true;
}

}  // namespace tallowin::platform::linux_host
