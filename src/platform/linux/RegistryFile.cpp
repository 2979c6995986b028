#include "platform/linux/RegistryFile.h"

#include <sys/stat.h>

#include <QFile>
#include <QSaveFile>

#include "platform/linux/RegistryFileReader.h"
#include "platform/linux/RegistryFileWriter.h"
#include "platform/linux/RegistryText.h"

namespace tallowin::platform::linux_host {
namespace {

// A whole export of a desktop's settings has a few megabytes; a device file has no end.
constexpr qint64 kMaxFileBytes = 64LL * 1024 * 1024;

RegistryFileResult Failure(std::string reason) { return {false, 0, std::move(reason)}; }

bool IsDeviceOrPipe(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

/// What is no file cannot be replaced by one.
RegistryFileResult WriteInto(const std::string& path, const QByteArray& bytes) {
  QFile file(QString::fromStdString(path));
  const bool written =
      file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size();
  return written ? RegistryFileResult{} : Failure(file.errorString().toStdString());
}

RegistryFileResult Save(const std::string& path, const std::string& text) {
  const QByteArray bytes = QByteArray::fromStdString("\xFF\xFE" + ToUtf16(text));
  if (IsDeviceOrPipe(path)) return WriteInto(path, bytes);
  QSaveFile file(QString::fromStdString(path));
  // Where the folder takes no new file, the file itself is written.
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly)) return Failure(file.errorString().toStdString());
  if (file.write(bytes) != bytes.size() || !file.commit()) {
    return Failure(file.errorString().toStdString());
  }
  return {};
}

bool IsEmptyRoot(RegistryRoot root, Registry& registry) {
  std::unique_ptr<RegistryKey> key;
  std::string name;
  RegistryValue value;
  return registry.OpenKey(root, "", key) == registry::kNotFound ||
         (key && key->EnumValue(0, name, value) == registry::kNoMoreItems &&
          key->EnumKey(0, name) == registry::kNoMoreItems);
}

}  // namespace

RegistryFileResult ImportRegistryFile(const std::string& path, Registry& registry) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return Failure(file.errorString().toStdString());
  const QByteArray content = file.read(kMaxFileBytes + 1);
  if (file.error() != QFileDevice::NoError) return Failure(file.errorString().toStdString());
  if (content.size() > kMaxFileBytes) return Failure("the file is larger than 64 MiB");
  return ImportRegistryText({content.data(), static_cast<std::size_t>(content.size())}, registry);
}

RegistryFileResult ImportRegistryText(std::string_view content, Registry& registry) {
  return RegistryFileReader(content, registry).Run();
}

RegistryFileResult ExportRegistryKey(const std::string& path, const RegistryLocation& key,
                                     Registry& registry) {
  RegistryFileWriter writer(registry);
  const RegistryResult result = writer.Add(key);
  if (result != registry::kSuccess) return Failure(DescribeRegistryResult(result));
  return Save(path, writer.Text());
}

RegistryFileResult ExportWholeRegistry(const std::string& path, Registry& registry) {
  RegistryFileWriter writer(registry);
  for (const RegistryRoot root : {RegistryRoot::CurrentUser, RegistryRoot::LocalMachine,
                                  RegistryRoot::ClassesRoot, RegistryRoot::Users}) {
    if (IsEmptyRoot(root, registry)) continue;
    const RegistryResult result = writer.Add({root, ""});
    if (result != registry::kSuccess) return Failure(DescribeRegistryResult(result));
  }
  return Save(path, writer.Text());
}

std::string DescribeRegistryResult(RegistryResult result) {
  switch (result) {
    case registry::kNotFound:
      return "there is no such key";
    case registry::kAccessDenied:
      return "the registry does not allow it (access denied)";
    case registry::kWriteFault:
      return "the registry's file could not be read or written";
    case registry::kInvalidParameter:
      return "a name is too long or holds control characters";
    default:
      return "the registry failed with result " + std::to_string(result);
  }
}

}  // namespace tallowin::platform::linux_host
