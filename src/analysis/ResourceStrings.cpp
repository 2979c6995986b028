#include "analysis/ResourceStrings.h"

#include <charconv>
#include <cstdint>
#include <limits>

#include "analysis/HexText.h"

namespace tallowin::analysis {
namespace {

constexpr const char* kString = "String";
constexpr std::size_t kBuffer = 255;
constexpr std::int64_t kTextsOfBundle = 16;

std::string TypeText(const platform::ResourceId& type) {
  if (type.IsName()) return type.name;
  if (type.value == platform::resource_type::kString) return kString;
  if (type.value == platform::resource_type::kVersion) return "Version";
  return HexText(type.value);
}

/// The file is closed whatever happened, also by the end of the program.
class Closing {
 public:
  explicit Closing(std::unique_ptr<platform::ResourceModule>& module) : module_(module) {}
  Closing(const Closing&) = delete;
  Closing& operator=(const Closing&) = delete;
  ~Closing() { module_.reset(); }

 private:
  std::unique_ptr<platform::ResourceModule>& module_;
};

}  // namespace

ResourceStrings::ResourceStrings(platform::ResourceModules& modules, TrojanDetect& detect,
                                 platform::EventLoop& loop, forms::ListBox& types,
                                 forms::ListBox& names, StringRows& rows)
    : modules_(modules),
      detect_(detect),
      loop_(loop),
      LstTypes_(types),
      lstnames_(names),
      rows_(rows) {
  LstTypes_.OnClick = [this] { ListResourceNames(); };
}

void ResourceStrings::Stop() {
  ++scan_;
  module_.reset();
}

void ResourceStrings::Clear() {
  Stop();
  rows_.Clear();
  LstTypes_.Clear();
  types_.clear();
  lstnames_.Clear();
}

void ResourceStrings::ExtractStringTable(std::string_view path) {
  Clear();
  const std::uint64_t scan = scan_;
  const Closing closing(module_);
  module_ = modules_.LoadLibraryAsDataFile(path);
  if (module_) {
    module_->EnumResourceTypes([this](const auto& type) {
      EnumTypeProc(type);
      return true;
    });
    loop_.DoEvents();
  }
  SelectStringTypes();
  // While rows are rated a second scan may run and be over: then the lists are those of the other
  // one.
  for (std::size_t i = 0; scan == scan_ && i < lstnames_.ListCount(); ++i) {
    const std::string name = lstnames_.List(i);
    ShowBundle(name);
  }
}

void ResourceStrings::SelectStringTypes() {
  for (std::size_t i = 0; i < LstTypes_.ListCount(); ++i) {
    if (LstTypes_.List(i) == kString) LstTypes_.Select(i);
  }
}

void ResourceStrings::ListResourceNames() {
  const auto selected = LstTypes_.ListIndex();
  if (LstTypes_.ListCount() == 0 || !module_ || !selected) return;
  lstnames_.Clear();
  module_->EnumResourceNames(types_.at(*selected), [this](const auto& name) {
    EnumNameProc(name);
    return true;
  });
}

void ResourceStrings::EnumTypeProc(const platform::ResourceId& type) {
  types_.push_back(type);
  LstTypes_.AddItem(TypeText(type));
}

/// A name that is a text goes by the address at which it stands, which is the number of no bundle.
void ResourceStrings::EnumNameProc(const platform::ResourceId& name) {
  lstnames_.AddItem(HexText(name.value));
}

void ResourceStrings::ShowBundle(const std::string& name) {
  std::uint32_t number = 0;
  std::from_chars(name.data(), name.data() + name.size(), number, 16);
  const std::int64_t first = (std::int64_t{number} - 1) * kTextsOfBundle + 1;
  if (first + kTextsOfBundle > std::numeric_limits<std::int32_t>::max()) return;
  for (std::int64_t id = first; id < first + kTextsOfBundle; ++id) {
    ShowString(static_cast<std::int32_t>(id));
  }
}

void ResourceStrings::ShowString(std::int32_t id) {
  if (!module_) return;
  const std::uint64_t scan = scan_;
  const std::string loaded = module_->LoadString(id, kBuffer);
  if (loaded.empty()) return;
  std::string text = StripTrailingNulls(loaded);
  rows_.Add(std::to_string(id), text);
  const std::string suspicion = detect_.RateSuspicion(text);
  if (scan == scan_) rows_.SetSuspicion(suspicion);
}

}  // namespace tallowin::analysis
