// Executable files opened as data, for the resources in them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// What a type or a resource is called: a number below 0x10000, or a name, and then `value` is the
/// address at which the name stands, which is 0x10000 or more and means nothing else.
struct ResourceId {
  std::uint32_t value = 0;
  std::string name = {};  ///< the text at that address, in UTF-8, up to its first NUL

  [[nodiscard]] bool IsName() const { return value >= 0x10000; }
};

namespace resource_type {
inline constexpr std::uint32_t kString = 6;
inline constexpr std::uint32_t kVersion = 16;
}  // namespace resource_type

/// A file that is open; closed when this is destroyed. No byte comes from outside the file, and
/// time and memory are bounded by its true size, whatever its numbers say.
class ResourceModule {
 public:
  /// Returns true to go on.
  using Callback = std::function<bool(const ResourceId&)>;
  virtual ~ResourceModule() = default;

  /// Each type once, in the order of the file. False if there is none or the callback ended it.
  virtual bool EnumResourceTypes(const Callback& callback) = 0;
  /// The resources of a type, likewise. A name is found without regard to case.
  virtual bool EnumResourceNames(const ResourceId& type, const Callback& callback) = 0;

  /// The text of the string table under `id`, as UTF-8 with U+FFFD for what is no character, in
  /// the user's language where there is a choice. A buffer takes one character less than its size,
  /// a character being a unit of UTF-16: a pair that the end cuts in two is no character. Empty
  /// where there is none, as for every id above 65535. NULs may stand in it.
  virtual std::string LoadString(std::int32_t id, std::size_t bufferSize) = 0;
};

class ResourceModules {
 public:
  virtual ~ResourceModules() = default;

  /// Null for what is no PE file (EXE, DLL, driver, resources alone; 32 or 64 bit), or cannot be
  /// read. Nothing of the file is run. Paths as in platform/Files.h.
  [[nodiscard]] virtual std::unique_ptr<ResourceModule> LoadLibraryAsDataFile(
      std::string_view path) = 0;
};

}  // namespace tallowin::platform
