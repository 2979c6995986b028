#include "platform/linux/LinuxEventLoop.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "LoopTest.h"
#include "platform/linux/LinuxTerminal.h"

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;

using LinuxEventLoopTest = LoopTest;

TEST_F(LinuxEventLoopTest, EndLeavesEveryHandlerThatIsUnderWay) {
  std::string ran;
  loop.Post([&] {
    ran += "outer ";
    loop.Post([&] {
      ran += "inner ";
      loop.Post([&] { ran += "queued "; });
      loop.End(3);
    });
    loop.DoEvents();
    ran += "behind ";
  });
  EXPECT_THROW(loop.RunUntil([] { return false; }), ProgramEnded);
  EXPECT_EQ(ran, "outer inner ");
  loop.Deliver([&] { ran += "late"; });
  EXPECT_THROW(loop.DoEvents(), ProgramEnded);
  EXPECT_THROW(loop.End(5), ProgramEnded);
  EXPECT_EQ(ran, "outer inner ");
  EXPECT_EQ(loop.ExitStatus(), 3);
}

TEST_F(LinuxEventLoopTest, UnhandledErrorsGoToTheirHandlerWhichMayAskQuestions) {
  std::vector<int> numbers;
  loop.OnUnhandledError([&](const RunTimeError& error) {
    numbers.push_back(error.Number());
    bool answered = false;
    loop.Post([&] { answered = true; });
    loop.RunUntil([&] { return answered; });
    if (numbers.size() == 2) loop.End(7);
  });
  loop.Deliver([] { throw RunTimeError(9, "Subscript out of range"); });
  EXPECT_FALSE(loop.Ended());
  RunProgram([] { throw std::logic_error("a fault of our own"); });
  EXPECT_EQ(numbers, (std::vector{9, 51}));
  EXPECT_EQ(loop.ExitStatus(), 7);
}

TEST_F(LinuxEventLoopTest, PostedHandlersRunInOrderInLaterPasses) {
  std::string ran;
  std::function<void()> again = [&] {
    ran += "a";
    loop.Post(again);
  };
  again();
  loop.Post([&] { ran += "b"; });
  EXPECT_EQ(ran, "a");
  loop.DoEvents();
  EXPECT_EQ(ran, "aab");

  std::thread poster([&] { loop.Post([&] { ran += "c"; }); });
  loop.RunUntil([&] { return ran.ends_with('c'); });
  poster.join();
}

TEST_F(LinuxEventLoopTest, ATickIsHeldBackWhileTheOneBeforeItRuns) {
  int ticks = 0;
  int depth = 0;
  std::unique_ptr<Timer> timer = loop.MakeTimer(50ms, [&] {
    EXPECT_EQ(++depth, 1);
    ++ticks;
    const auto start = std::chrono::steady_clock::now();
    if (ticks == 1) {
      EXPECT_TRUE(Until([&] { return std::chrono::steady_clock::now() - start > 60ms; }));
    }
    --depth;
  });
  EXPECT_FALSE(timer->Enabled());
  timer->SetEnabled(true);
  ASSERT_TRUE(Until([&] { return ticks == 1; }));
  loop.DoEvents();
  EXPECT_GE(ticks, 2) << "The tick that fell due meanwhile is made up for at once.";

  bool ran = false;
  timer = loop.MakeTimer(1ms, [&] {
    timer.reset();
    ran = true;
  });
  timer->SetEnabled(true);
  EXPECT_TRUE(Until([&] { return ran; }));
}

TEST_F(LinuxEventLoopTest, NoTickComesEarlyBehindALateOne) {
  constexpr auto kInterval = 60ms;
  std::vector<std::chrono::steady_clock::time_point> ticks;
  const auto timer =
      loop.MakeTimer(kInterval, [&] { ticks.push_back(std::chrono::steady_clock::now()); });
  timer->SetEnabled(true);
  std::this_thread::sleep_for(kInterval * 9 / 5);  // the stall
  ASSERT_TRUE(Until([&] { return ticks.size() == 3; }));
  // One that kept to its first plan would come after a fifth. A handler may itself be held up.
  EXPECT_GE(ticks[1] - ticks[0], kInterval / 2);
  EXPECT_GE(ticks[2] - ticks[1], kInterval / 2);
}

TEST_F(LinuxEventLoopTest, ASecondRequestToEndDoesNotWaitForTheFirst) {
  int requests = 0;
  loop.OnTerminationRequest([&] { ++requests; });
  raise(SIGHUP);
  ASSERT_TRUE(Until([&] { return requests == 1; }));

  loop.OnTerminationRequest([&] {
    ++requests;
    raise(SIGINT);
    loop.RunUntil([] { return false; });
  });
  raise(SIGTERM);
  EXPECT_THROW(loop.RunUntil([] { return false; }), ProgramEnded);
  EXPECT_EQ(requests, 2);
  EXPECT_EQ(loop.ExitStatus(), 1);
}

class LinuxTerminalTest : public LoopTest {
 protected:
  LinuxTerminalTest() {
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    readEnd = FileDescriptor(ends[0]);
    writeEnd = FileDescriptor(ends[1]);
  }

  std::vector<std::string> ReadAll(int input) {
    LinuxTerminal terminal(loop, input);
    std::vector<std::string> lines;
    int ended = 0;
    terminal.ReadLines([&](const std::string& line) { lines.push_back(line); }, [&] { ++ended; });
    EXPECT_TRUE(Until([&] { return ended > 0; }));
    loop.DoEvents();
    EXPECT_EQ(ended, 1);
    return lines;
  }

  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

TEST_F(LinuxTerminalTest, ReadsLinesFromPipesAndFiles) {
  const std::string longest(std::size_t{1} << 20U, 'x');
  const std::string text = "one\r\n\ntwo\rthree\n" + longest + "\r\n" + longest + "yz\r\nlast";
  const std::vector<std::string> lines{"one", "", "two\rthree", longest, longest, "last"};

  std::thread writer([&] {
    std::string_view left = text;
    while (!left.empty()) {
      left.remove_prefix(static_cast<std::size_t>(write(writeEnd.Get(), left.data(), left.size())));
    }
    writeEnd = FileDescriptor();
  });
  EXPECT_TRUE(ReadAll(readEnd.Get()) == lines);
  writer.join();

  const std::unique_ptr<FILE, int (*)(FILE*)> file(tmpfile(), fclose);
  fputs(text.c_str(), file.get());
  rewind(file.get());
  EXPECT_TRUE(ReadAll(fileno(file.get())) == lines);
  const FileDescriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(ReadAll(nothing.Get()).empty());
}

TEST_F(LinuxTerminalTest, NeverWaitsForAReaderAndTellsWhatItLeavesOut) {
  auto terminal = std::make_unique<LinuxTerminal>(loop, -1, writeEnd.Get());
  const std::string line(100000, 'w');
  const std::size_t lines = 2 * TerminalOutput::WaitingLimit / line.size();
  for (std::size_t i = 0; i < lines; ++i) terminal->Write(line);

  fcntl(readEnd.Get(), F_SETFL, O_NONBLOCK);
  std::string got;
  const auto read = [&] {
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(readEnd.Get(), buffer.data(), buffer.size());
    if (count > 0) got.append(buffer.data(), static_cast<std::size_t>(count));
    return got.ends_with("left out here]\n");
  };
  ASSERT_TRUE(Until(read));
  const std::size_t shown = got.find('[');
  EXPECT_EQ(shown % line.size(), 0U) << "a line is left out whole";
  EXPECT_GE(shown, TerminalOutput::WaitingLimit - line.size());
  EXPECT_EQ(got.substr(shown, got.find(' ', shown) - shown),
            "[" + std::to_string(lines * line.size() - shown));

  got.clear();
  terminal->Write("again");
  (void)read();
  EXPECT_EQ(got, "again");
  readEnd = FileDescriptor();
  terminal->Write("nobody reads this, and nothing happens");
}

}  // namespace
}  // namespace tallowin::platform::linux_host
