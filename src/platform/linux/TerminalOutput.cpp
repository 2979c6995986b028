#include "platform/linux/TerminalOutput.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tallowin::platform::linux_host {
namespace {

// A pipe that polls as writable takes a page without waiting; a terminal may take less.
constexpr std::size_t kPipeChunk = 4096;
constexpr std::size_t kTerminalChunk = 512;
constexpr int kMomentAtTheEnd = 500;  // milliseconds

}  // namespace

TerminalOutput::TerminalOutput(LinuxEventLoop& loop, int descriptor)
    : loop_(loop),
      descriptor_(descriptor),
      chunk_(isatty(descriptor) != 0 ? kTerminalChunk : kPipeChunk) {}

TerminalOutput::~TerminalOutput() { Flush(kMomentAtTheEnd); }

void TerminalOutput::Write(std::string_view text) {
  const std::size_t waits = waiting_.size() - written_;
  if (waits > 0 && waits + text.size() > WaitingLimit) {
    leftOut_ += text.size();
    return;
  }
  waiting_ += text;
  Flush(0);
}

void TerminalOutput::Flush(int millisecondsToWait) {
  pollfd output{descriptor_, POLLOUT, 0};
  while (written_ < waiting_.size()) {
    if (poll(&output, 1, millisecondsToWait) <= 0) break;
    if (!WriteChunk()) written_ = waiting_.size();
    if (written_ == waiting_.size()) TellWhatIsLeftOut();
  }
  if (written_ == waiting_.size()) {
    waiting_.clear();
    written_ = 0;
    watch_.reset();
  } else if (!watch_) {
    try {
      watch_ = loop_.Poller().Add(descriptor_, Interest::Write, [this](Readiness) { Flush(0); });
    } catch (const RunTimeError&) {
      // It cannot be waited for; the next line of the log tries again.
    }
  }
}

bool TerminalOutput::WriteChunk() {
  const std::size_t size = std::min(chunk_, waiting_.size() - written_);
  const ssize_t count = write(descriptor_, waiting_.data() + written_, size);
  if (count >= 0) written_ += static_cast<std::size_t>(count);
  return count >= 0 || errno == EINTR || errno == EAGAIN;
}

void TerminalOutput::TellWhatIsLeftOut() {
  if (leftOut_ == 0) return;
  waiting_ +=
      "[" + std::to_string(leftOut_) + " bytes were not read in time and are left out here]\n";
  leftOut_ = 0;
}

}  // namespace tallowin::platform::linux_host
