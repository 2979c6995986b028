// Folders of units, their links, drop-ins and dependencies, as the watch looks at them. The input
// tells what lies there: a line "> PATH TARGET" is a link, "= PATH" begins a file, whose text are
// the lines up to the next one of these. A path is "etc/NAME" or "etc/FOLDER/NAME", or in "lib".
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Check.h"
#include "HostInMemory.h"
#include "platform/linux/AutostartListing.h"
#include "platform/linux/AutostartNames.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/SystemdUnits.h"
#include "platform/linux/Text.h"

namespace {

namespace linux_host = tallowin::platform::linux_host;
using linux_host::FileDescriptor;
using tallowin::fuzz::Require;

/// Makes what the input names, below one folder and nowhere else: no link is followed on the way.
class Tree {
 public:
  explicit Tree(std::string root) : root_(std::move(root)) {
    mkdir(root_.c_str(), S_IRWXU);
    for (const char* place : {"etc", "lib"}) mkdir((root_ + "/" + place).c_str(), S_IRWXU);
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  ~Tree() { std::filesystem::remove_all(root_); }

  void AddLink(std::string_view path, std::string target) {
    std::string name;
    const FileDescriptor folder = FolderOf(path, name);
    // An absolute one leads to places of this tree, but for the way to mask a unit.
    if (target.starts_with('/') && target != "/dev/null") target.insert(0, root_);
    if (folder) (void)!symlinkat(target.c_str(), folder.Get(), name.c_str());
  }
  void AddFile(std::string_view path, std::string_view text) {
    std::string name;
    const FileDescriptor folder = FolderOf(path, name);
    if (!folder) return;
    const FileDescriptor file(openat(folder.Get(), name.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                     S_IRUSR | S_IWUSR));
    if (file) (void)!write(file.Get(), text.data(), text.size());
  }

 private:
  static FileDescriptor Open(int folder, const std::string& name) {
    return FileDescriptor(
        openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  }
  static bool IsName(std::string_view part) {
    return part != "." && part != ".." && part.size() <= 255 &&
           part.find('\0') == std::string_view::npos;
  }

  [[nodiscard]] FileDescriptor FolderOf(std::string_view path, std::string& name) const {
    const auto parts = linux_host::Parts(path, '/');
    if (parts.size() < 2 || parts.size() > 3 || !std::ranges::all_of(parts, IsName))
      return FileDescriptor();
    if (parts[0] != "etc" && parts[0] != "lib") return FileDescriptor();
    name = parts.back();
    FileDescriptor folder = Open(AT_FDCWD, root_ + "/" + std::string(parts[0]));
    if (parts.size() == 2) return folder;
    const std::string middle(parts[1]);
    (void)!mkdirat(folder.Get(), middle.c_str(), S_IRWXU);
    return Open(folder.Get(), middle);
  }

  std::string root_;
};

void Build(Tree& tree, std::string_view text) {
  while (!text.empty()) {
    std::string_view line = tallowin::fuzz::TakeLine(text);
    if (line.starts_with("> ")) {
      line.remove_prefix(2);
      const auto blank = std::min(line.find(' '), line.size());
      tree.AddLink(line.substr(0, blank),
                   std::string(line.substr(std::min(blank + 1, line.size()))));
    } else if (line.starts_with("= ")) {
      const auto next = std::min({text.find("\n> "), text.find("\n= "), text.size()});
      tree.AddFile(line.substr(2), text.substr(0, next));
      text.remove_prefix(std::min(next + 1, text.size()));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static linux_host::FolderWatch watch;
  const std::string root = tallowin::fuzz::TemporaryFolder() + "/units";
  Tree tree(root);
  Build(tree, tallowin::fuzz::TextOf(data, size));

  const std::vector<linux_host::UnitFolder> places = {{.path = root + "/etc"},
                                                      {.path = root + "/lib", .packaged = true}};
  const linux_host::UndoneCopies copies(tallowin::fuzz::TemporaryFolder() + "/copies");
  linux_host::SystemdUnits units(places, {{'h', "/home/owner"}}, copies);
  std::vector<linux_host::AutostartEntry> entries;
  watch.BeginLook();
  Require(units.Look(watch, entries), "there is enough of all");
  watch.EndLook();
  for (const auto& entry : entries) Require(!entry.files.empty(), "something enables each unit");

  const linux_host::AutostartListing listing({}, {}, {entries});
  Require(listing.Rows().size() == entries.size(), "each entry is a row");
  std::set<std::string> names;
  for (const auto& row : listing.Rows()) {
    Require(row.name.size() <= linux_host::kEnumerableBytes, "a name fits a buffer");
    Require(tallowin::fuzz::IsPlainLine(row.name), "a name is a plain line");
    Require(tallowin::fuzz::IsPlainLine(row.value.data), "a command is a plain line");
    Require(names.insert(linux_host::CaseFolded(row.name)).second, "no two have the same name");
  }
  return 0;
}
