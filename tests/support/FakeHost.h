// A host in memory: what the system asks of it is kept here, and tests change it as they like.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "forms/Controls.h"
#include "forms/Questions.h"
#include "platform/EventLoop.h"
#include "platform/Host.h"
#include "platform/OperatingSystem.h"
#include "platform/RegionalSettings.h"
#include "platform/Registry.h"
#include "platform/SingleInstance.h"
#include "platform/Sound.h"
#include "platform/SystemClock.h"
#include "platform/SystemShutdown.h"
#include "support/FakeFiles.h"
#include "support/FakeNetwork.h"

namespace tallowin::test {

using namespace platform;

class FakeLoop : public EventLoop {
 public:
  std::deque<std::function<void()>> pending;  ///< what the next pass delivers
  std::function<void(std::chrono::milliseconds)> whileAsleep;
  bool nested = false;

  void DoEvents() override {
    if (ended_) throw ProgramEnded();
    for (auto left = pending.size(); left > 0 && !pending.empty(); --left) {
      const auto event = std::move(pending.front());
      pending.pop_front();
      Deliver(event);
      if (ended_) throw ProgramEnded();
    }
  }
  void RunUntil(const std::function<bool()>& done) override {
    while (!done()) DoEvents();
  }
  void Deliver(const std::function<void()>& handler) override {
    if (ended_) return;
    try {
      handler();
    } catch (const RunTimeError& error) {
      if (!unhandled_) throw;
      Deliver([&] { unhandled_(error); });
    } catch (const ProgramEnded&) {
    }
  }
  void Post(std::function<void()> handler) override { pending.push_back(std::move(handler)); }
  [[nodiscard]] bool Nested() const override { return nested; }
  [[noreturn]] void End(int exitStatus) override {
    if (!std::exchange(ended_, true)) exitStatus_ = exitStatus;
    throw ProgramEnded();
  }
  [[nodiscard]] bool Ended() const override { return ended_; }
  [[nodiscard]] int ExitStatus() const override { return exitStatus_; }
  void OnUnhandledError(std::function<void(const RunTimeError&)> handler) override {
    unhandled_ = std::move(handler);
  }
  void OnTerminationRequest(std::function<void()>) override {}
  void Sleep(std::chrono::milliseconds time) override {
    if (whileAsleep) whileAsleep(time);
  }
  std::unique_ptr<platform::Timer> MakeTimer(std::chrono::milliseconds interval,
                                             std::function<void()> tick) override {
    return std::make_unique<Timer>(*this, interval, std::move(tick));
  }
  /// Time passes for the enabled timers of this interval: each ticks once.
  void Tick(std::chrono::milliseconds interval) {
    for (Timer* timer : std::vector(timers_)) {
      if (timer->interval == interval && timer->Enabled()) Deliver(timer->tick);
    }
  }
  [[nodiscard]] bool Ticks(std::chrono::milliseconds interval) const {
    return std::any_of(timers_.begin(), timers_.end(), [&](const Timer* timer) {
      return timer->interval == interval && timer->Enabled();
    });
  }

 private:
  struct Timer : platform::Timer {
    Timer(FakeLoop& owner, std::chrono::milliseconds period, std::function<void()> handler)
        : interval(period), tick(std::move(handler)), loop(owner) {
      loop.timers_.push_back(this);
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() override { std::erase(loop.timers_, this); }
    void SetEnabled(bool value) override { enabled = value; }
    [[nodiscard]] bool Enabled() const override { return enabled; }
    std::chrono::milliseconds interval;
    std::function<void()> tick;
    FakeLoop& loop;
    bool enabled = false;
  };

  std::vector<Timer*> timers_;
  std::function<void(const RunTimeError&)> unhandled_;
  bool ended_ = false;
  int exitStatus_ = -1;
};

/// Values in the order of their first writing, under the path in lower case; those of the machine
/// under "machine:" and the path.
class FakeRegistry : public Registry {
 public:
  using Values = std::vector<std::pair<std::string, RegistryValue>>;
  std::map<std::string, Values> keys;

  static std::string Place(RegistryRoot root, std::string_view path) {
    return (root == RegistryRoot::LocalMachine ? "machine:" : "") + Lower(path);
  }
  static RegistryValue* Find(Values& values, std::string_view name) {
    for (auto& [stored, value] : values) {
      if (Lower(stored) == Lower(name)) return &value;
    }
    return nullptr;
  }

  /// Places that cannot be opened, for want of rights.
  std::set<std::string> locked;
  /// What a deletion of a value gives in place of its true result; success leaves it be.
  RegistryResult deletion = registry::kSuccess;
  RegistryResult query = registry::kSuccess;

  RegistryResult OpenKey(RegistryRoot root, std::string_view path,
                         std::unique_ptr<RegistryKey>& key) override {
    key.reset();
    const auto found = keys.find(Place(root, path));
    if (found == keys.end()) return registry::kNotFound;
    if (locked.contains(found->first)) return registry::kAccessDenied;
    key = std::make_unique<Key>(*this, found->first);
    return registry::kSuccess;
  }
  RegistryResult CreateKey(RegistryRoot root, std::string_view path,
                           std::unique_ptr<RegistryKey>& key) override {
    keys[Place(root, path)];
    return OpenKey(root, path, key);
  }
  RegistryResult DeleteTree(RegistryRoot root, std::string_view path) override {
    return keys.erase(Place(root, path)) == 0 ? registry::kNotFound : registry::kSuccess;
  }

 private:
  class Key : public RegistryKey {
   public:
    Key(FakeRegistry& store, std::string place)
        : store_(store), place_(std::move(place)), values_(store.keys[place_]) {}
    RegistryResult QueryValue(std::string_view name, RegistryValue& value) override {
      if (store_.query != registry::kSuccess) return store_.query;
      const auto* found = Find(values_, name);
      if (found == nullptr) return registry::kNotFound;
      value = *found;
      return registry::kSuccess;
    }
    RegistryResult SetValue(std::string_view name, const RegistryValue& value) override {
      if (auto* found = Find(values_, name)) {
        *found = value;
      } else {
        values_.emplace_back(name, value);
      }
      return registry::kSuccess;
    }
    RegistryResult DeleteValue(std::string_view name) override {
      if (store_.deletion != registry::kSuccess) return store_.deletion;
      return std::erase_if(
                 values_, [&](const auto& entry) { return Lower(entry.first) == Lower(name); }) == 0
                 ? registry::kNotFound
                 : registry::kSuccess;
    }
    RegistryResult EnumValue(std::uint32_t index, std::string& name,
                             RegistryValue& value) override {
      if (index >= values_.size()) return registry::kNoMoreItems;
      std::tie(name, value) = values_[index];
      return registry::kSuccess;
    }
    RegistryResult EnumKey(std::uint32_t index, std::string& name) override {
      for (const auto& [place, values] : store_.keys) {
        if (!place.starts_with(place_ + "\\")) continue;
        name = place.substr(place_.size() + 1);
        if (name.find('\\') == std::string::npos && index-- == 0) {
          return registry::kSuccess;
        }
      }
      return registry::kNoMoreItems;
    }

   private:
    FakeRegistry& store_;
    std::string place_;
    Values& values_;
  };
};

/// Time stands still, in forms of a fixed region.
class FakeRegional : public RegionalSettings {
 public:
  std::string time = "9:41:07 PM";
  [[nodiscard]] TimePoint Now() const override { return {}; }
  [[nodiscard]] std::string LongDate(TimePoint date) const override {
    return "Saturday, September 16, 2000" + After(date);
  }
  [[nodiscard]] std::string ShortDate(TimePoint) const override { return "9/16/2000"; }
  [[nodiscard]] std::string DefaultTime(TimePoint date) const override {
    return time + After(date);
  }
  /// Shows which time was meant; nothing for the one that is now.
  [[nodiscard]] static std::string After(TimePoint date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date.time_since_epoch()).count();
    return seconds == 0 ? std::string() : "+" + std::to_string(seconds);
  }
  [[nodiscard]] std::string TwelveHourTime(TimePoint) const override { return "09:41:07 PM"; }
  [[nodiscard]] NumberMarks Numbers() const override { return {}; }
  WallTime now = std::chrono::local_days(std::chrono::year(2000) / 9 / 16);
  [[nodiscard]] WallTime ToWallTime(TimePoint) const override { return now; }
  [[nodiscard]] std::string GeneralDate(WallTime wall) const override {
    const auto day = std::chrono::floor<std::chrono::days>(wall);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(wall - day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d-%u-%u %d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
  }
  /// Knows November only.
  [[nodiscard]] WallTime ReadDate(std::string_view text) const override {
    unsigned day = 0;
    int year = 0, hours = 0, minutes = 0, seconds = 0;
    if (std::sscanf(std::string(text).c_str(), "%u/Nov/%d %d:%d:%d", &day, &year, &hours, &minutes,
                    &seconds) != 5) {
      throw RunTimeError(13, "Type mismatch");
    }
    return std::chrono::local_days(std::chrono::year(year) / 11 / static_cast<int>(day)) +
           std::chrono::hours(hours) + std::chrono::minutes(minutes) +
           std::chrono::seconds(seconds);
  }
};
inline constexpr const char* kStamp = "Saturday, September 16, 2000 09:41:07 PM :";

inline std::vector<std::string> Items(const forms::ItemList& list) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < list.ListCount(); ++i) items.push_back(list.List(i));
  return items;
}

/// Answers each question with the next answer of the script, or Ok; remembers what was asked.
class ScriptedQuestions : public forms::Questions {
 public:
  struct Asked {
    std::string text;
    forms::MessageBoxStyle style;
    std::string title;
  };
  std::vector<Asked> asked;
  std::deque<forms::Answer> answers;
  /// What is typed into input boxes and file dialogs; nothing left is a cancelled one.
  std::deque<std::string> typed;
  std::function<void()> whileAsking;

  std::string InputBox(const std::string& prompt, const std::string& title) override {
    asked.push_back({prompt, forms::MessageBoxStyle::Plain, title});
    return Typed();
  }
  std::string OpenFileName(const std::string& title) override {
    asked.push_back({{}, forms::MessageBoxStyle::Plain, title});
    return Typed();
  }

  std::vector<const forms::MenuItem*> poppedUp;
  void PopupMenu(forms::Form&, forms::MenuItem& menu) override {
    poppedUp.push_back(&menu);
    if (whileAsking) whileAsking();
  }

  forms::Answer MsgBox(const std::string& text, forms::MessageBoxStyle style,
                       const std::string& title) override {
    asked.push_back({text, style, title});
    if (whileAsking) whileAsking();
    if (answers.empty()) return forms::Answer::Ok;
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
  }

 private:
  std::string Typed() {
    if (whileAsking) whileAsking();
    if (typed.empty()) return {};
    auto text = std::move(typed.front());
    typed.pop_front();
    return text;
  }
};

struct FakeInstance : SingleInstance {
  bool first = true;
  bool Claim() override { return first; }
};

struct FakeSystem : OperatingSystem {
  OsVersion version{1, 4, 10};
  [[nodiscard]] OsVersion GetVersion() const override { return version; }
};

struct FakeSound : Sound {
  std::vector<std::string> played;
  bool PlaySound(std::string_view file) override {
    played.emplace_back(file);
    return true;
  }
  int beeps = 0;
  void Beep() override { ++beeps; }
};

struct FakeShutdown : SystemShutdown {
  std::vector<std::uint32_t> asked;  ///< the flags of each call
  bool ExitWindowsEx(std::uint32_t flags, std::uint32_t) override {
    asked.push_back(flags);
    return false;
  }
};

struct FakeClock : SystemClock {
  std::int32_t bias = 0;
  std::vector<std::chrono::seconds> times;
  std::vector<std::chrono::year_month_day> dates;
  bool allowed = true;

  [[nodiscard]] std::int32_t TimeZoneBias() const override { return bias; }
  void SetTime(std::chrono::seconds timeOfDay) override {
    if (!allowed) throw RunTimeError(70, "Permission denied");
    times.push_back(timeOfDay);
  }
  void SetDate(std::chrono::year_month_day date) override { dates.push_back(date); }
};

struct FakeHost {
  TemporaryFolder folder;
  FakeLoop loop;
  FakeSockets sockets;
  FakeRegistry registry;
  FakeIniFiles iniFiles;
  FakePaths paths{folder.Path()};
  FakeShell shell;
  FakeRegional regional;
  FakeInstance instance;
  FakeSystem system;
  FakeSound sound;
  FakeShutdown shutdown;
  FakeDialUp dialUp;
  FakeSmtp smtp;
  FakeIcmp icmp;
  FakeNames names;
  FakeFiles files;
  FakeProcesses processes;
  FakeFileFacts fileFacts;
  FakeVersionInfo versionInfo;
  FakeModules modules;
  FakeIpStatistics ipStatistics;
  FakeClock clock;
  FakeHttp http;

  [[nodiscard]] platform::Host Host() {
    return {loop,      sockets,   registry,    iniFiles, paths,        shell, regional, instance,
            system,    sound,     shutdown,    dialUp,   smtp,         icmp,  names,    files,
            processes, fileFacts, versionInfo, modules,  ipStatistics, clock, http};
  }

  /// The registry as the presets leave it: all switches as given, all slots empty.
  void ImportPresets(std::uint32_t portSentry, std::uint32_t verbose);
  RegistryValue& Setting(const std::string& name);
  RegistryValue& Port(int slot, const std::string& name);
  void SetSlot(int slot, int port, const char* action = "", const char* packet = "");
};

}  // namespace tallowin::test
