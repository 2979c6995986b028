// Attempts per second: the running terminal program beside a bare loop that accepts, looks the
// caller's name up, sends one echo, logs a line and closes, and one that leaves the name and the
// echo out; all called by the same eight threads over loopback in turns of the same run. Then what
// many attempts leave in memory, besides the text of the log and the list of callers.
//
//     AttemptRate PROGRAM-FOLDER [ATTEMPTS [ATTEMPTS-FOR-MEMORY]]
//
// The folder holds tallowin-console and tallowin-reg. The log lines of all go to /dev/null, and for
// the memory to a reader that counts them. Prints one JSON object a line.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
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

/// Runs `child` in a process of its own, with its output going to `output`, or nowhere.
pid_t Spawn(const std::function<void()>& child, int output = -1) {
  const pid_t process = fork();
  if (process != 0) return process;
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDIN_FILENO);
  dup2(output < 0 ? nowhere : output, STDOUT_FILENO);
  child();
  _exit(127);
}

/// Gives the seconds of processor time that the process has used.
double End(pid_t process) {
  kill(process, SIGTERM);
  rusage used{};
  wait4(process, nullptr, 0, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

void LookUp(const sockaddr_in& address) {
  char name[NI_MAXHOST];
  (void)getnameinfo(reinterpret_cast<const sockaddr*>(&address), sizeof address, name, sizeof name,
                    nullptr, 0, NI_NAMEREQD);
}

/// One echo with the 32 zero bytes behind it that the program sends, up to its answer.
void Ping(int echoes, const sockaddr_in& address) {
  char packet[8 + 32] = {ICMP_ECHO};
  packet[2] = static_cast<char>(~ICMP_ECHO);  // the checksum, and the byte behind it
  packet[3] = static_cast<char>(0xFF);
  if (sendto(echoes, packet, sizeof packet, 0, reinterpret_cast<const sockaddr*>(&address),
             sizeof address) < 0) {
    return;
  }
  char received[128];
  pollfd waiting{.fd = echoes, .events = POLLIN, .revents = 0};
  constexpr int kMilliseconds = 1000;
  if (poll(&waiting, 1, kMilliseconds) > 0) (void)!recv(echoes, received, sizeof received, 0);
}

int OpenEchoes() {
  const int ordinary = socket(AF_INET, SOCK_DGRAM, IPPROTO_ICMP);
  if (ordinary >= 0) return ordinary;
  const int raw = socket(AF_INET, SOCK_RAW, IPPROTO_ICMP);
  const int onlyAnswers = static_cast<int>(~(1U << ICMP_ECHOREPLY));
  constexpr int kIcmpFilter = 1;
  (void)setsockopt(raw, SOL_RAW, kIcmpFilter, &onlyAnswers, sizeof onlyAnswers);
  return raw;
}

struct Treatment {
  const char* name;
  const char* action;
  bool refuse;
};

[[noreturn]] void BareLoop(int port, bool refuse, bool withTools) {
  const int echoes = withTools ? OpenEchoes() : -1;
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  const int on = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const sockaddr_in address = Loopback(port);
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) _exit(1);
  listen(listener, SOMAXCONN);
  for (;;) {
    sockaddr_in from{};
    socklen_t size = sizeof from;
    const int caller = accept(listener, reinterpret_cast<sockaddr*>(&from), &size);
    if (withTools) {
      LookUp(from);
      Ping(echoes, from);
    }
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

struct Cost {
  double rate = 0;
  double microseconds = 0;  // of processor time, for one attempt

  void Add(pid_t process, int port, int attempts) {
    WaitUntilOpen(port);
    rate += AttemptsPerSecond(port, attempts) / kTurns;
    microseconds += End(process) * 1e6 / attempts / kTurns;
  }
  void Print(const char* treatment, const char* who) const {
    std::printf(R"({"name": "%s, %s", "per_second": %.0f, "cpu_seconds": %.7f})"
                "\n",
                treatment, who, rate, microseconds / 1e6);
  }

  static constexpr int kTurns = 3;  // in turns, so that all see the same machine
};

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

  [[nodiscard]] pid_t Start(int output = -1) const {
    return Spawn(
        [this] { execl((folder_ / "tallowin-console").c_str(), "tallowin-console", nullptr); },
        output);
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

void Compare(const Home& home, const Treatment& treatment, int attempts) {
  Cost bare;
  Cost bareWithTools;
  Cost ours;
  for (int turn = 0; turn < Cost::kTurns; ++turn) {
    for (const bool withTools : {false, true}) {
      const int port = FreePort();
      auto& cost = withTools ? bareWithTools : bare;
      cost.Add(Spawn([&] { BareLoop(port, treatment.refuse, withTools); }), port, attempts);
    }
    const int port = FreePort();
    home.UseSlot(port, treatment.action);
    ours.Add(home.Start(), port, attempts);
  }
  bare.Print(treatment.name, "bare loop");
  bareWithTools.Print(treatment.name, "bare loop with name and echo");
  ours.Print(treatment.name, "tallowin-console");
}

long ResidentBytes(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  long pages = 0;
  file >> pages >> pages;
  return pages * sysconf(_SC_PAGESIZE);
}

/// Counts what comes out of a pipe, with two bytes for each line end as the log has them.
class Counter {
 public:
  explicit Counter(int pipe) : pipe_(pipe), thread_([this] { Run(); }) {}
  Counter(const Counter&) = delete;
  Counter& operator=(const Counter&) = delete;
  ~Counter() { thread_.join(); }

  [[nodiscard]] long Bytes() const { return bytes_; }

 private:
  void Run() {
    char buffer[65536];
    for (ssize_t size = 0; (size = read(pipe_, buffer, sizeof buffer)) > 0;) {
      bytes_ += size + std::count(buffer, buffer + size, '\n');
    }
  }

  int pipe_;
  std::atomic<long> bytes_ = 0;
  std::thread thread_;
};

void PrintMemory(const Home& home, const Treatment& treatment, int attempts) {
  const int port = FreePort();
  home.UseSlot(port, treatment.action);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) std::exit(1);
  const pid_t process = home.Start(ends[1]);
  close(ends[1]);
  const Counter text(ends[0]);
  WaitUntilOpen(port);
  AttemptsPerSecond(port, attempts / 10);  // buffers, pools and tables have their size then
  const long before = ResidentBytes(process);
  const long textBefore = text.Bytes();
  AttemptsPerSecond(port, attempts);
  const long grown = ResidentBytes(process) - before;
  const long textGrown = text.Bytes() - textBefore;
  std::printf(
      R"({"name": "memory, %s", "attempts": %d, "before": %ld, "grown": %ld, "text": %ld, "each": %.1f})"
      "\n",
      treatment.name, attempts, before, grown, textGrown,
      static_cast<double>(grown - textGrown) / attempts);
  End(process);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: AttemptRate PROGRAM-FOLDER [ATTEMPTS [ATTEMPTS-FOR-MEMORY]]\n");
    return 2;
  }
  const int attempts = argc > 2 ? std::atoi(argv[2]) : 10000;
  const int forMemory = argc > 3 ? std::atoi(argv[3]) : 100000;
  const Treatment refused{"refused", "Don't accept connection", true};
  const Treatment answered{"answered", "Accept connection send packet then disconnect", false};
  const Home home(argv[1]);
  if (attempts > 0) {
    Compare(home, refused, attempts);
    Compare(home, answered, attempts);
  }
  if (forMemory > 0) PrintMemory(home, answered, forMemory);
  return 0;
}
