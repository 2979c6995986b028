// Values that were read from INI files, remembered while nothing on the way to them has changed.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {

/// The watch of the autostart places asks for the same few values again and again. As long as the
/// file and the folders that lead to its name keep their stamps, an answer costs a few looks at
/// those instead of a search, a reading and a parsing.
class IniAnswers {
 public:
  /// Nanoseconds since 1970.
  using Clock = std::function<std::int64_t()>;
  [[nodiscard]] static std::int64_t SystemTime();

  /// File, section, key, size of the buffer.
  using Question = std::tuple<std::string, std::string, std::string, std::size_t>;

  /// What an answer rests on.
  struct Sources {
    std::string file;                  ///< the name that the file has in truth
    std::vector<std::string> folders;  ///< those in which the parts of that name were searched
  };

  explicit IniAnswers(Clock clock) : clock_(std::move(clock)) {}

  /// To be called before the sources are read: what changes afterwards is seen then.
  void Observe(Sources sources);
  /// The answer that came from the sources observed last.
  void Keep(const Question& question, const std::string& value);

  /// Null where the sources may have changed since.
  [[nodiscard]] const std::string* Find(const Question& question) const;
  /// Whether they have changed or not; null if there is none.
  [[nodiscard]] const std::string* FindOld(const Question& question) const;

  void Clear() { answers_.clear(); }

 private:
  struct Observation {
    Sources sources;
    std::vector<FileStamp> stamps;
    std::int64_t time = 0;
  };
  struct Answer {
    Observation observation;
    std::string value;
  };
  [[nodiscard]] bool IsSettled(const Observation& observation) const;

  Clock clock_;
  Observation observed_;
  std::map<Question, Answer> answers_;
};

}  // namespace tallowin::platform::linux_host
