// A host in memory: what the system asks of it is kept here, and tests change it as they like.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "forms/Questions.h"
#include "platform/DialUp.h"
#include "platform/EventLoop.h"
#include "platform/Files.h"
#include "platform/Host.h"
#include "platform/IniFiles.h"
#include "platform/OperatingSystem.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/RegionalSettings.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/SingleInstance.h"
#include "platform/Smtp.h"
#include "platform/Sound.h"
#include "platform/SystemShutdown.h"
#include "platform/Winsock.h"
#include "support/FakeEchoes.h"

namespace tallowin::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FakeLoop : public platform::EventLoop {
 public:
  std::deque<std::function<void()>> pending;  ///< what the next pass delivers
  std::function<void(std::chrono::milliseconds)> whileAsleep;
  bool nested = false;

  void DoEvents() override {
    if (ended_) throw platform::ProgramEnded();
    for (auto now = std::exchange(pending, {}); !now.empty(); now.pop_front()) {
      Deliver(now.front());
    }
    if (ended_) throw platform::ProgramEnded();
  }
  void RunUntil(const std::function<bool()>& done) override {
    while (!done()) DoEvents();
  }
  void Deliver(const std::function<void()>& handler) override {
    try {
      handler();
    } catch (const platform::RunTimeError& error) {
      if (!unhandled_) throw;
      Deliver([&] { unhandled_(error); });
    } catch (const platform::ProgramEnded&) {
    }
  }
  void Post(std::function<void()> handler) override { pending.push_back(std::move(handler)); }
  [[nodiscard]] bool Nested() const override { return nested; }
  [[noreturn]] void End(int exitStatus) override {
    if (!std::exchange(ended_, true)) exitStatus_ = exitStatus;
    throw platform::ProgramEnded();
  }
  [[nodiscard]] bool Ended() const override { return ended_; }
  [[nodiscard]] int ExitStatus() const override { return exitStatus_; }
  void OnUnhandledError(std::function<void(const platform::RunTimeError&)> handler) override {
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
  std::function<void(const platform::RunTimeError&)> unhandled_;
  bool ended_ = false;
  int exitStatus_ = -1;
};

/// Values in the order of their first writing, under the path in lower case; those of the machine
/// under "machine:" and the path.
class FakeRegistry : public platform::Registry {
 public:
  using Values = std::vector<std::pair<std::string, platform::RegistryValue>>;
  std::map<std::string, Values> keys;

  static std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
  }
  static std::string Place(platform::RegistryRoot root, std::string_view path) {
    return (root == platform::RegistryRoot::LocalMachine ? "machine:" : "") + Lower(path);
  }
  static platform::RegistryValue* Find(Values& values, std::string_view name) {
    for (auto& [stored, value] : values) {
      if (Lower(stored) == Lower(name)) return &value;
    }
    return nullptr;
  }

  /// Places that cannot be opened, for want of rights.
  std::set<std::string> locked;
  /// What a deletion of a value gives in place of its true result; success leaves it be.
  platform::RegistryResult deletion = platform::registry::kSuccess;
  /// The same for a query of a value.
  platform::RegistryResult query = platform::registry::kSuccess;

  platform::RegistryResult OpenKey(platform::RegistryRoot root, std::string_view path,
                                   std::unique_ptr<platform::RegistryKey>& key) override {
    key.reset();
    const auto found = keys.find(Place(root, path));
    if (found == keys.end()) return platform::registry::kNotFound;
    if (locked.contains(found->first)) return platform::registry::kAccessDenied;
    key = std::make_unique<Key>(*this, found->first);
    return platform::registry::kSuccess;
  }
  platform::RegistryResult CreateKey(platform::RegistryRoot root, std::string_view path,
                                     std::unique_ptr<platform::RegistryKey>& key) override {
    keys[Place(root, path)];
    return OpenKey(root, path, key);
  }
  platform::RegistryResult DeleteTree(platform::RegistryRoot root, std::string_view path) override {
    return keys.erase(Place(root, path)) == 0 ? platform::registry::kNotFound
                                              : platform::registry::kSuccess;
  }

 private:
  class Key : public platform::RegistryKey {
   public:
    Key(FakeRegistry& store, std::string place)
        : store_(store), place_(std::move(place)), values_(store.keys[place_]) {}
    platform::RegistryResult QueryValue(std::string_view name,
                                        platform::RegistryValue& value) override {
      if (store_.query != platform::registry::kSuccess) return store_.query;
      const auto* found = Find(values_, name);
      if (found == nullptr) return platform::registry::kNotFound;
      value = *found;
      return platform::registry::kSuccess;
    }
    platform::RegistryResult SetValue(std::string_view name,
                                      const platform::RegistryValue& value) override {
      if (auto* found = Find(values_, name)) {
        *found = value;
      } else {
        values_.emplace_back(name, value);
      }
      return platform::registry::kSuccess;
    }
    platform::RegistryResult DeleteValue(std::string_view name) override {
      if (store_.deletion != platform::registry::kSuccess) return store_.deletion;
      return std::erase_if(
                 values_, [&](const auto& entry) { return Lower(entry.first) == Lower(name); }) == 0
                 ? platform::registry::kNotFound
                 : platform::registry::kSuccess;
    }
    platform::RegistryResult EnumValue(std::uint32_t index, std::string& name,
                                       platform::RegistryValue& value) override {
      if (index >= values_.size()) return platform::registry::kNoMoreItems;
      std::tie(name, value) = values_[index];
      return platform::registry::kSuccess;
    }
    platform::RegistryResult EnumKey(std::uint32_t index, std::string& name) override {
      for (const auto& [place, values] : store_.keys) {
        if (!place.starts_with(place_ + "\\")) continue;
        name = place.substr(place_.size() + 1);
        if (name.find('\\') == std::string::npos && index-- == 0) {
          return platform::registry::kSuccess;
        }
      }
      return platform::registry::kNoMoreItems;
    }

   private:
    FakeRegistry& store_;
    std::string place_;
    Values& values_;
  };
};

class FakePaths : public platform::Paths {
 public:
  explicit FakePaths(std::string folder) : folder_(std::move(folder)) {}
  [[nodiscard]] char Separator() const override { return '/'; }
  [[nodiscard]] std::string ProgramFolder() const override { return folder_; }
  [[nodiscard]] std::string WindowsFolder() const override { return folder_ + "/windows"; }
  [[nodiscard]] std::string SystemFolder() const override { return folder_ + "/system"; }
  [[nodiscard]] std::string DriveC() const override { return folder_; }
  [[nodiscard]] bool Find(std::string_view path) const override {
    return std::filesystem::exists(path) || patterns.contains(path);
  }
  std::set<std::string, std::less<>>
      patterns;  ///< which a search finds, though no file is called so
  std::string MakeTempFile(std::string_view, std::string_view) override { return {}; }
  std::map<std::string, std::string, std::less<>> searchPath;  ///< where a search finds a name
  [[nodiscard]] std::string SearchPath(std::string_view name) const override {
    const auto found = searchPath.find(name);
    return found == searchPath.end() ? "" : found->second;
  }
  [[nodiscard]] std::string FullPath(std::string_view path) const override {
    return path.starts_with('/') ? std::string(path) : folder_ + "/" + std::string(path);
  }
  [[nodiscard]] std::string ShortPath(std::string_view path) const override {
    return std::filesystem::exists(path) ? std::string(path) : std::string();
  }

 private:
  std::string folder_;
};

/// Time stands still, in forms of a fixed region.
class FakeRegional : public platform::RegionalSettings {
 public:
  std::string time = "9:41:07 PM";
  [[nodiscard]] TimePoint Now() const override { return {}; }
  [[nodiscard]] std::string LongDate(TimePoint) const override {
    return "Saturday, September 16, 2000";
  }
  [[nodiscard]] std::string ShortDate(TimePoint) const override { return "9/16/2000"; }
  [[nodiscard]] std::string DefaultTime(TimePoint) const override { return time; }
  [[nodiscard]] std::string TwelveHourTime(TimePoint) const override { return "09:41:07 PM"; }
};
inline constexpr const char* kStamp = "Saturday, September 16, 2000 09:41:07 PM :";

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
  std::function<void()> whileAsking;

  forms::Answer MsgBox(const std::string& text, forms::MessageBoxStyle style,
                       const std::string& title) override {
    asked.push_back({text, style, title});
    if (whileAsking) whileAsking();
    if (answers.empty()) return forms::Answer::Ok;
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

/// Sockets that a test plays the network for. Each keeps what was done to it.
class FakeSockets : public platform::SocketFactory {
 public:
  class Socket : public platform::Winsock {
   public:
    explicit Socket(FakeSockets& network) : network_(network) { network_.all.push_back(this); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() override { std::erase(network_.all, this); }

    platform::SocketEvents events;
    platform::SocketState state = platform::SocketState::Closed;
    int localPort = 0;
    int remotePort = 0;
    std::string remoteHost;
    std::string remoteIP;
    std::string sent;
    std::string received;

    void SetEvents(platform::SocketEvents newEvents) override { events = std::move(newEvents); }
    [[nodiscard]] platform::SocketState State() const override { return state; }
    [[nodiscard]] int LocalPort() const override { return localPort; }
    void SetLocalPort(int port) override { localPort = port; }
    [[nodiscard]] int RemotePort() const override { return remotePort; }
    void SetRemotePort(int port) override {
      if (port < 0 || port > 65535) throw platform::RunTimeError(380, "Invalid property value");
      remotePort = port;
    }
    [[nodiscard]] std::string RemoteHost() const override { return remoteHost; }
    void SetRemoteHost(std::string host) override { remoteHost = std::move(host); }
    [[nodiscard]] std::string RemoteHostIP() const override { return remoteIP; }
    void Listen() override {
      if (network_.takenPorts[localPort]) {
        throw platform::RunTimeError(10048, "Address already in use");
      }
      state = platform::SocketState::Listening;
    }
    void Accept(std::int32_t) override {
      if (state != platform::SocketState::Closed) {
        throw platform::RunTimeError(10056, "Socket is already connected");
      }
      state = platform::SocketState::Connected;
    }
    void Connect() override {
      if (state != platform::SocketState::Closed) {
        throw platform::RunTimeError(10022, "Invalid argument");
      }
      state = platform::SocketState::Connecting;
    }
    void SendData(std::string_view data) override {
      if (state != platform::SocketState::Connected) {
        throw platform::RunTimeError(10057, "Socket is not connected");
      }
      sent += data;
    }
    std::string GetData() override { return std::exchange(received, {}); }
    void Close() override { state = platform::SocketState::Closed; }

    // What the server at the other end does. The handlers may destroy the socket.
    void ServerAccepts() { Raise(platform::SocketState::Connected, events.Connect); }
    void ServerSends(std::string data) {
      received += data;
      Raise(state, events.DataArrival, static_cast<std::int32_t>(data.size()));
    }
    void ServerCloses() { Raise(platform::SocketState::Closing, events.Close); }
    void ServerFails(int number, const std::string& description) {
      Raise(platform::SocketState::Error, events.Error, number, description);
    }

   private:
    template <typename Handler, typename... Args>
    void Raise(platform::SocketState newState, Handler handler, Args... args) {
      state = newState;
      if (handler) handler(args...);
    }
    FakeSockets& network_;
  };

  std::vector<Socket*> all;
  std::map<int, bool> takenPorts;

  std::unique_ptr<platform::Winsock> MakeWinsock() override {
    return std::make_unique<Socket>(*this);
  }
  [[nodiscard]] Socket* ConnectingTo(const std::string& host) const {
    for (auto* socket : all) {
      if (socket->remoteHost == host && socket->state == platform::SocketState::Connecting) {
        return socket;
      }
    }
    return nullptr;
  }
  [[nodiscard]] Socket* ListeningOn(int port) const {
    for (auto* socket : all) {
      if (socket->localPort == port && socket->state == platform::SocketState::Listening) {
        return socket;
      }
    }
    return nullptr;
  }
};

class FakeIniFiles : public platform::IniFiles {
 public:
  std::map<std::string, std::string> values;  ///< under "file section key", in lower case
  bool writable = true;

  static std::string Place(std::string_view file, std::string_view section, std::string_view key) {
    return FakeRegistry::Lower(file.substr(file.rfind('/') + 1)) + " " +
           FakeRegistry::Lower(section) + " " + FakeRegistry::Lower(key);
  }
  std::string GetPrivateProfileString(std::string_view file, std::string_view section,
                                      std::string_view key, std::size_t bufferSize) override {
    const auto found = values.find(Place(file, section, key));
    return found == values.end() ? "" : found->second.substr(0, bufferSize - 1);
  }
  bool WritePrivateProfileString(std::string_view file, std::string_view section,
                                 std::string_view key, std::string_view value) override {
    if (writable) values[Place(file, section, key)] = value;
    return writable;
  }
};

class FakeShell : public platform::Shell {
 public:
  std::vector<std::string> ran;  ///< command lines

  std::int32_t Execute(std::string_view, std::string_view, std::int32_t) override { return 42; }
  bool RunAndWait(std::string_view commandLine, std::chrono::milliseconds) override {
    ran.emplace_back(commandLine);
    return true;
  }
};

struct FakeInstance : platform::SingleInstance {
  bool first = true;
  bool Claim() override { return first; }
};

struct FakeSystem : platform::OperatingSystem {
  platform::OsVersion version{1, 4, 10};
  [[nodiscard]] platform::OsVersion GetVersion() const override { return version; }
};

/// Keeps each mail. What a test does in `whileSending` happens where the real one would block.
struct FakeSmtp : platform::Smtp {
  std::vector<std::string> calls;
  std::vector<platform::SmtpMail> mails;
  std::deque<std::int16_t> statuses;  ///< of the next sendings; 0 where there is none
  std::function<void()> whileSending;

  void SmtpInit(std::string_view form) override { calls.push_back("init " + std::string(form)); }
  std::int16_t SmtpSendMail(const platform::SmtpMail& mail) override {
    calls.push_back("send " + mail.szTo);
    mails.push_back(mail);
    if (whileSending) whileSending();
    if (statuses.empty()) return 0;
    const auto status = statuses.front();
    statuses.pop_front();
    return status;
  }
  void SmtpRelease() override { calls.emplace_back("release"); }
};

struct FakeSound : platform::Sound {
  std::vector<std::string> played;
  bool PlaySound(std::string_view file) override {
    played.emplace_back(file);
    return true;
  }
};

struct FakeShutdown : platform::SystemShutdown {
  std::vector<std::uint32_t> asked;  ///< the flags of each call
  bool ExitWindowsEx(std::uint32_t flags, std::uint32_t) override {
    asked.push_back(flags);
    return false;
  }
};

struct FakeDialUp : platform::DialUp {
  std::vector<platform::RasConnection> links;
  std::vector<std::string> hungUp;
  bool supported = true;
  platform::RasResult result = platform::ras::kSuccess;
  platform::RasResult RasEnumConnections(std::span<platform::RasConnection> connections,
                                         std::size_t& count) override {
    if (!supported) throw platform::RunTimeError(53, "File not found");
    count = std::min(links.size(), connections.size());
    std::copy_n(links.begin(), count, connections.begin());
    return result;
  }
  platform::RasResult RasHangUp(const platform::RasConnection& connection) override {
    hungUp.push_back(connection.hRasConn);
    return platform::ras::kSuccess;
  }
};

/// Files as they lie on the disk, unless a test says that one cannot be read or deleted.
struct FakeFiles : platform::Files {
  std::set<std::string, std::less<>> unreadable;
  std::set<std::string, std::less<>> undeletable;
  std::vector<std::string> deleted;

  [[nodiscard]] platform::FileContents Read(std::string_view path) override {
    const std::string text = ReadFile(path);
    if (text.empty() || unreadable.contains(path)) {
      throw platform::RunTimeError(9, "Subscript out of range");
    }
    auto* data = static_cast<char*>(std::malloc(text.size()));
    std::copy(text.begin(), text.end(), data);
    return {data, text.size()};
  }
  void Delete(std::string_view path) override {
    if (undeletable.contains(path)) throw platform::RunTimeError(75, "Path/File access error");
    if (!std::filesystem::remove(path)) throw platform::RunTimeError(53, "File not found");
    deleted.emplace_back(path);
  }
};

/// The processes that a test makes up. Ending one takes it out of the list.
struct FakeProcesses : platform::Processes {
  std::vector<platform::ProcessEntry> running;
  std::map<std::uint32_t, std::vector<platform::ModuleEntry>> modules;
  std::uint32_t modulesResult = platform::processes::kSuccess;
  bool snapshots = true;
  std::vector<std::uint32_t> terminated;

  [[nodiscard]] std::optional<std::vector<platform::ProcessEntry>> Snapshot() override {
    return snapshots ? std::optional(running) : std::nullopt;
  }
  std::uint32_t Modules(std::uint32_t processId,
                        std::vector<platform::ModuleEntry>& found) override {
    if (modulesResult == platform::processes::kSuccess) found = modules[processId];
    return modulesResult;
  }
  void Terminate(const platform::ProcessEntry& entry) override {
    terminated.push_back(entry.processId);
    std::erase_if(running, [&](const auto& other) { return other.processId == entry.processId; });
  }
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

  [[nodiscard]] platform::Host Host() { return Host(loop, sockets); }
  /// With another network in place of the fake one.
  [[nodiscard]] platform::Host Host(platform::EventLoop& onLoop,
                                    platform::SocketFactory& onSockets) {
    return {onLoop, onSockets, registry, iniFiles, paths, shell, regional, instance, system,
            sound,  shutdown,  dialUp,   smtp,     icmp,  names, files,    processes};
  }

  /// The registry as the presets leave it: all switches as given, all slots empty.
  void ImportPresets(std::uint32_t portSentry, std::uint32_t verbose);
  platform::RegistryValue& Setting(const std::string& name);
  platform::RegistryValue& Port(int slot, const std::string& name);
};

}  // namespace tallowin::test
