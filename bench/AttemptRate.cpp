// Attempts per second: the running terminal program beside a bare loop that accepts, logs a line
// and closes, both called by the same eight threads over loopback in turns of the same run.
//
//     AttemptRate PROGRAM-FOLDER [ATTEMPTS]
//
// The folder holds tallowin-console and tallowin-reg. The log lines of both go to /dev/null.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int kThreads = 8;
constexpr const char* kPacket = "login: ";
constexpr const char* kSlotKey =
    "HKEY_CURRENT_USER\\Software\\Marrowind Software\\Tallowin\\Ports\\Setting ";

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int FreePort() {
  static int next = 20000 + getpid() % 8000;
  for (;; ++next) {
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(next);
    const bool bound =
        bind(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    if (bound) return next++;
  }
}

int Connect(int port) {
  const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(port);
  if (connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return client;
  }
  close(client);
  return -1;
}

/// One attempt: connect, read until the other end is done.
bool Attempt(int port) {
  const int client = Connect(port);
  if (client < 0) return false;
  char buffer[256];
  while (read(client, buffer, sizeof buffer) > 0) {
  }
  close(client);
  return true;
}

double AttemptsPerSecond(int port, int attempts) {
  std::atomic<int> left = attempts;
  const auto start = std::chrono::steady_clock::now();
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      while (left.fetch_sub(1) > 0) Attempt(port);
    });
  }
  for (auto& thread : threads) thread.join();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  return attempts / time.count();
}

/// Runs `child` in a process of its own, with its output going nowhere.
pid_t Spawn(const std::function<void()>& child) {
  const pid_t process = fork();
  if (process != 0) return process;
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDIN_FILENO);
  dup2(nowhere, STDOUT_FILENO);
  child();
  _exit(127);
}

void End(pid_t process) {
  kill(process, SIGTERM);
  waitpid(process, nullptr, 0);
}

[[noreturn]] void BareLoop(int port, bool refuse) {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  const int on = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const sockaddr_in address = Loopback(port);
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) _exit(1);
  listen(listener, SOMAXCONN);
  for (;;) {
    const int caller = accept(listener, nullptr, nullptr);
    char line[128];
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::size_t length = std::strftime(line, sizeof line, "%A, %B %d, %Y %I:%M:%S %p ", &local);
    length += static_cast<std::size_t>(
        std::snprintf(line + length, sizeof line - length, "caller on port %d\n", port));
    if (write(STDOUT_FILENO, line, length) < 0) _exit(1);
    if (refuse) {
      const linger reset{1, 0};
      setsockopt(caller, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    } else if (send(caller, kPacket, std::char_traits<char>::length(kPacket), MSG_NOSIGNAL) < 0) {
      std::perror("send");
    }
    close(caller);
  }
}

void WaitUntilOpen(int port) {
  for (int i = 0; i < 5000; ++i) {
    if (Attempt(port)) return;
    usleep(1000);
  }
  std::fprintf(stderr, "nobody listens on port %d\n", port);
  std::exit(1);
}

double Measure(pid_t process, int port, int attempts) {
  WaitUntilOpen(port);
  const double rate = AttemptsPerSecond(port, attempts);
  End(process);
  return rate;
}

/// A home of its own for the program, with one slot in use.
class Home {
 public:
  explicit Home(const fs::path& programs) {
    std::string pattern = (fs::temp_directory_path() / "tallowin-bench-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    for (const char* name : {"tallowin-console", "tallowin-reg", "defaults.reg"}) {
      fs::copy(programs / name, folder_ / name);
    }
    setenv("HOME", folder_.c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_DATA_HOME");
    Reg({"import", folder_ / "defaults.reg"});
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;
  ~Home() { fs::remove_all(folder_); }

  void UseSlot(int port, const char* action) const {
    for (int slot = 1; slot <= 15; ++slot) {
      const std::string number = std::to_string(slot == 1 ? port : 0);
      Reg({"set", kSlotKey + std::to_string(slot), "Socket Number", "REG_DWORD", number});
    }
    Reg({"set", kSlotKey + std::string("1"), "Action", "REG_SZ", action});
    Reg({"set", kSlotKey + std::string("1"), "Packet To Send", "REG_SZ", kPacket});
  }

  [[nodiscard]] pid_t Start() const {
    return Spawn(
        [this] { execl((folder_ / "tallowin-console").c_str(), "tallowin-console", nullptr); });
  }

 private:
  void Reg(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), folder_ / "tallowin-reg");
    std::vector<char*> argv;
    for (auto& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    int status = 0;
    waitpid(Spawn([&] { execv(argv[0], argv.data()); }), &status, 0);
    if (status != 0) std::exit(1);
  }

  fs::path folder_;
};

void Compare(const Home& home, const char* what, const char* action, bool refuse, int attempts) {
  double bare = 0;
  double ours = 0;
  constexpr int kTurns = 3;  // in turns, so that both see the same machine
  for (int turn = 0; turn < kTurns; ++turn) {
    const int barePort = FreePort();
    bare += Measure(Spawn([&] { BareLoop(barePort, refuse); }), barePort, attempts) / kTurns;
    const int port = FreePort();
    home.UseSlot(port, action);
    ours += Measure(home.Start(), port, attempts) / kTurns;
  }
  std::printf("%-10s  bare loop %8.0f /s   tallowin-console %8.0f /s   ratio %.2f\n", what, bare,
              ours, ours / bare);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: AttemptRate PROGRAM-FOLDER [ATTEMPTS]\n");
    return 2;
  }
  const int attempts = argc > 2 ? std::atoi(argv[2]) : 10000;
  const Home home(argv[1]);
  Compare(home, "refused", "Don't accept connection", true, attempts);
  Compare(home, "answered", "Accept connection send packet then disconnect", false, attempts);
  return 0;
}
