#include "platform/linux/IniAnswers.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/linux/Files.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
/// A file may change twice within a tick of its file system's clock and keep its stamp. The
/// coarsest clock in use ticks every two seconds.
constexpr std::int64_t kTickOfTheClock = 3 * kSecond;
/// Writing through a mapping, and files on other machines, may change without a new stamp. So an
/// answer is read anew after this time in any case.
constexpr std::int64_t kLifetime = 5 * kSecond;
/// Far more than anybody asks for.
constexpr std::size_t kMostAnswers = 64;

std::vector<FileStamp> StampsOf(const IniAnswers::Sources& sources) {
  std::vector<FileStamp> stamps;
  FileStamp file;
  (void)StampOfFile(sources.file, file);
  stamps.push_back(file);
  // Behind the slash lies the folder itself, also where its name is a link.
  for (const std::string& folder : sources.folders) stamps.push_back(StampOfName(folder + "/."));
  return stamps;
}

}  // namespace

std::int64_t IniAnswers::SystemTime() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

void IniAnswers::Observe(Sources sources) {
  observed_.time = clock_();
  observed_.stamps = StampsOf(sources);
  observed_.sources = std::move(sources);
}

void IniAnswers::Keep(const Question& question, const std::string& value) {
  if (answers_.size() >= kMostAnswers) answers_.clear();
  answers_[question] = {observed_, value};
}

bool IniAnswers::IsSettled(const Observation& observation) const {
  const std::int64_t age = clock_() - observation.time;
  if (age < 0 || age > kLifetime) return false;
  return std::ranges::all_of(observation.stamps, [&](const FileStamp& stamp) {
    return std::max(stamp.changed, stamp.modified) + kTickOfTheClock < observation.time;
  });
}

const std::string* IniAnswers::Find(const Question& question) const {
  const auto found = answers_.find(question);
  if (found == answers_.end()) return nullptr;
  const auto& [observation, value] = found->second;
  if (!IsSettled(observation) || StampsOf(observation.sources) != observation.stamps) {
    return nullptr;
  }
  // A name that was spelt in another case may exist as it was spelt by now.
  const std::string& asked = std::get<0>(question);
  if (asked != observation.sources.file && NameExists(asked)) return nullptr;
  return &value;
}

const std::string* IniAnswers::FindOld(const Question& question) const {
  const auto found = answers_.find(question);
  return found == answers_.end() ? nullptr : &found->second.value;
}

}  // namespace tallowin::platform::linux_host
