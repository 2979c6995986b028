#include "platform/linux/LinuxTerminal.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/linux/LineReader.h"

namespace tallowin::platform::linux_host {
namespace {

bool HasInput(int descriptor) {
  pollfd input{descriptor, POLLIN, 0};
  return poll(&input, 1, 0) > 0;
}

}  // namespace

/// Shared with the handlers that it has posted, which are skipped once the terminal is gone.
class LinuxTerminal::Input : public std::enable_shared_from_this<Input> {
 public:
  Input(LinuxEventLoop& loop, int descriptor, std::function<void(std::string)> line,
        std::function<void()> ended)
      : loop_(loop), descriptor_(descriptor), line_(std::move(line)), ended_(std::move(ended)) {}

  void Start() {
    try {
      watch_ = loop_.Poller().Add(descriptor_, Interest::Read, [this](Readiness) { Read(); });
    } catch (const RunTimeError&) {
      ReadLater();  // A file: it cannot be waited for, and need not be.
    }
  }

 private:
  void ReadLater() {
    Post([](Input& self) {
      self.Read();
      if (!self.over_) self.ReadLater();
    });
  }

  void Read() {
    // A nested pass may have taken what was there, and the descriptor is one that blocks.
    if (over_ || !HasInput(descriptor_)) return;
    std::array<char, 65536> buffer;
    const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
    if (count > 0) {
      lines_.Add({buffer.data(), static_cast<std::size_t>(count)}, postLine_);
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
      Finish();
    }
  }

  void Finish() {
    over_ = true;
    lines_.Finish(postLine_);
    Post([](Input& self) {
      const auto ended = self.ended_;
      if (ended) ended();
    });
    watch_.reset();
  }

  /// Each line is an event of its own, so that a line can come while the one before still runs.
  void PostLine(std::string line) {
    Post([line = std::move(line)](Input& self) { self.line_(line); });
  }

  void Post(std::function<void(Input&)> handler) {
    loop_.Post([weak = weak_from_this(), handler = std::move(handler)] {
      if (const auto self = weak.lock()) handler(*self);
    });
  }

  LinuxEventLoop& loop_;
  int descriptor_;
  std::function<void(std::string)> line_;
  std::function<void()> ended_;
  bool over_ = false;
  LineReader lines_;
  LineReader::LineHandler postLine_ = [this](std::string line) { PostLine(std::move(line)); };
  std::unique_ptr<EventPoller::Watch> watch_;
};

LinuxTerminal::LinuxTerminal(LinuxEventLoop& loop, int input, int output)
    : loop_(loop), inputDescriptor_(input), output_(loop, output) {}

LinuxTerminal::~LinuxTerminal() = default;

void LinuxTerminal::ReadLines(std::function<void(std::string line)> line,
                              std::function<void()> ended) {
  input_ = std::make_shared<Input>(loop_, inputDescriptor_, std::move(line), std::move(ended));
  input_->Start();
}

void LinuxTerminal::Write(std::string_view text) { output_.Write(text); }

}  // namespace tallowin::platform::linux_host
