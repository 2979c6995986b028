#include "platform/linux/FileType.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QMimeDatabase>
#include <QString>
#include <cerrno>
#include <optional>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {
namespace {

/// As much as the rules of the database look at. Nothing where it cannot be read.
std::optional<QByteArray> StartOf(const std::string& path) {
  constexpr qsizetype kEnough = 16384;
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return std::nullopt;
  QByteArray bytes(kEnough, '\0');
  ssize_t count = -1;
  do {
    count = read(file.Get(), bytes.data(), kEnough);
  } while (count < 0 && errno == EINTR);
  if (count < 0) return std::nullopt;
  bytes.truncate(count);
  return bytes;
}

const char* SpecialType(mode_t mode) {
  if (S_ISDIR(mode)) return "inode/directory";
  if (S_ISLNK(mode)) return "inode/symlink";
  if (S_ISFIFO(mode)) return "inode/fifo";
  if (S_ISSOCK(mode)) return "inode/socket";
  if (S_ISCHR(mode)) return "inode/chardevice";
  return S_ISBLK(mode) ? "inode/blockdevice" : nullptr;
}

QMimeType MimeType(const std::string& path, mode_t mode) {
  const QMimeDatabase database;
  if (const char* special = SpecialType(mode)) {
    return database.mimeTypeForName(QString::fromLatin1(special));
  }
  // The file is opened here, since a name that is no UTF-8 would not survive as a QString.
  const QString name = QString::fromStdString(path.substr(path.rfind('/') + 1));
  const auto start = StartOf(path);
  return start ? database.mimeTypeForFileNameAndData(name, *start)
               : database.mimeTypeForFile(name, QMimeDatabase::MatchExtension);
}

}  // namespace

FileType TypeOfFile(const std::string& path, mode_t mode) {
  const QMimeType type = MimeType(path, mode);
  const bool known = type.isValid() && !type.isDefault();
  return {.name = known ? type.comment().toStdString() : std::string(),
          .icon = {.name = type.iconName().toStdString(),
                   .genericName = type.genericIconName().toStdString()}};
}

}  // namespace tallowin::platform::linux_host
